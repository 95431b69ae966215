#include "tools/asphost/web/encoding.h"

#include <algorithm>
#include <charconv>

namespace oxaqrycln::asphost {
namespace {

constexpr std::size_t kMostFields = 1000;

bool IsUnreserved(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.' || c == '_';
}

template <typename Character>
std::basic_string<Character> Encode(std::basic_string_view<Character> text) {
  std::basic_string<Character> encoded;
  encoded.reserve(text.size());
  const auto add = [&](std::string_view entity) { encoded.append(entity.begin(), entity.end()); };
  for (const Character c : text) {
    switch (c) {
      case '<':
        add("&lt;");
        break;
      case '>':
        add("&gt;");
        break;
      case '&':
        add("&amp;");
        break;
      case '"':
        add("&quot;");
        break;
      case '\'':
        add("&#39;");
        break;
      default:
        encoded.push_back(c);
    }
  }
  return encoded;
}

std::string Decode(std::string_view text, char plus) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned code = 0;
    const char* const digits = text.data() + i + 1;
    if (text[i] == '+') {
      decoded += plus;
    } else if (text[i] == '%' && i + 2 < text.size() &&
               std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
      decoded += static_cast<char>(code);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

Fields Parse(std::string_view text, char separator) {
  Fields fields;
  while (!text.empty() && fields.size() < kMostFields) {
    const std::size_t end = std::min(text.find(separator), text.size());
    std::string_view field = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (separator == ';') field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
    if (field.empty()) continue;
    const std::size_t equals = std::min(field.find('='), field.size());
    fields.emplace_back(UrlDecode(field.substr(0, equals)),
                        UrlDecode(field.substr(std::min(equals + 1, field.size()))));
  }
  return fields;
}

}  // namespace

std::string AsciiLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::wstring HtmlEncode(std::wstring_view text) { return Encode(text); }
std::string HtmlEncode(std::string_view text) { return Encode(text); }

std::string UrlEncode(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : bytes) {
    if (IsUnreserved(c)) {
      encoded += c;
    } else if (c == ' ') {
      encoded += '+';
    } else {
      const auto code = static_cast<unsigned char>(c);
      encoded.append({'%', kDigits[code >> 4], kDigits[code & 15]});
    }
  }
  return encoded;
}

std::string PathDecode(std::string_view text) { return Decode(text, '+'); }
std::string UrlDecode(std::string_view text) { return Decode(text, ' '); }

Fields ParseForm(std::string_view text) { return Parse(text, '&'); }
Fields ParseCookies(std::string_view text) { return Parse(text, ';'); }

std::optional<std::string> ValueOf(const Fields& fields, std::string_view name) {
  const std::string wanted = AsciiLowerCase(name);
  std::optional<std::string> value;
  for (const auto& [fieldName, fieldValue] : fields) {
    if (AsciiLowerCase(fieldName) != wanted) continue;
    value = value ? *value + ", " + fieldValue : fieldValue;
  }
  return value;
}

}  // namespace oxaqrycln::asphost

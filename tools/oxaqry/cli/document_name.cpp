#include "tools/oxaqry/cli/document_name.h"

#include <algorithm>

#include "tools/oxaqry/cli/text.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string Resolved(std::string_view part) {
  std::string text;
  for (std::size_t i = 0; i < part.size(); ++i) {
    const std::string_view code = part.substr(i, 3);
    if (code == "%25" || code == "%2F" || code == "%2f") {
      text += code == "%25" ? '%' : '/';
      i += 2;
    } else {
      text += part[i];
    }
  }
  return text;
}

std::string Escaped(std::string_view part) {
  std::string text;
  for (const char character : part) {
    if (character == '/' || character == '%') {
      text += character == '/' ? "%2F" : "%25";
    } else {
      text += character;
    }
  }
  return text;
}

}  // namespace

std::vector<std::string> SplitName(std::string_view text) {
  std::vector<std::string> parts = SplitText(text, "/");
  for (std::string& part : parts) part = Resolved(part);
  return parts;
}

std::optional<DocumentName> ParseDocumentName(std::string_view text) {
  std::vector<std::string> parts = SplitName(text);
  if (parts.size() < 3 || parts.size() > 4 || std::ranges::any_of(parts, &std::string::empty)) return std::nullopt;
  parts.resize(4);
  return DocumentName{parts[0], parts[1], parts[2], parts[3]};
}

std::string ArchiveText(std::string_view channel, std::string_view archive) {
  return Escaped(channel) + "/" + Escaped(archive);
}

std::string ToText(const DocumentName& name) {
  std::string text = ArchiveText(name.channel, name.archive) + "/" + Escaped(name.id);
  if (!name.version.empty()) text += "/" + Escaped(name.version);
  return text;
}

}  // namespace oxaqrycln::oxaqry

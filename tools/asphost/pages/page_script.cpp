#include "tools/asphost/pages/page_script.h"

#include <algorithm>
#include <charconv>

#include "tools/asphost/pages/page_error.h"
#include "tools/asphost/pages/page_parts.h"
#include "tools/asphost/pages/site_path.h"
#include "tools/asphost/web/encoding.h"

namespace oxaqrycln::asphost {
namespace {

constexpr std::size_t kDeepestInclude = 16;
constexpr std::size_t kMostFiles = 200;
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

// Takes NAME=VALUE or NAME="VALUE" off the start of the text; false when there is none.
bool TakeSetting(std::string_view& text, std::string& name, std::string& value) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  name = AsciiLowerCase(Trim(text.substr(0, equals)));
  text = Trim(text.substr(equals + 1));
  const bool isQuoted = text.starts_with('"');
  if (isQuoted) text.remove_prefix(1);
  const std::size_t end = isQuoted ? text.find('"') : std::min(text.find_first_of(kBlanks), text.size());
  if (end == std::string_view::npos) return false;
  value = AsciiLowerCase(text.substr(0, end));
  text = Trim(text.substr(std::min(end + (isQuoted ? 1 : 0), text.size())));
  return true;
}

}  // namespace

PageScript::PageScript(const std::string& sitePath, const ReadSource& read) { Include(sitePath, read, 0); }

SourcePosition PageScript::PositionOf(std::size_t line) const {
  if (origins_.empty()) return {files_.front(), 0};
  // An error at the end of the script belongs to its last line.
  const Origin& origin = origins_[std::min(line, origins_.size() - 1)];
  return {files_[origin.file], origin.line};
}

void PageScript::Include(const std::string& sitePath, const ReadSource& read, std::size_t depth) {
  const auto content = read(sitePath);
  if (!content) throw PageError(sitePath, 0, "the file cannot be read");
  std::string_view source = *content;
  if (source.starts_with(kByteOrderMark)) source.remove_prefix(kByteOrderMark.size());
  const std::size_t file = files_.size();
  files_.push_back(sitePath);
  bool isFirst = depth == 0;
  for (const PagePart& part : SplitPage(sitePath, source)) {
    switch (part.kind) {
      case PartKind::Text:
        AddLines("Response.WriteBlock " + std::to_string(blocks_.size()), {file, part.line});
        blocks_.emplace_back(part.text);
        break;
      case PartKind::Statements:
        AddLines(part.text, {file, part.line});
        break;
      case PartKind::Expression:
        if (Trim(part.text).empty()) throw PageError(sitePath, part.line, "\"<%=\" has no value");
        AddLines("Response.Write(" + std::string(Trim(part.text)) + ")", {file, part.line});
        break;
      case PartKind::Directive:
        if (!isFirst) throw PageError(sitePath, part.line, "\"<%@\" must be at the start of the page");
        ApplyDirective(sitePath, part.line, Trim(part.text));
        break;
      case PartKind::IncludeFile:
      case PartKind::IncludeVirtual: {
        const std::string path = (part.kind == PartKind::IncludeVirtual ? "/" : "") + std::string(part.text);
        const auto target = ResolveSitePath(sitePath, path);
        if (!target) throw PageError(sitePath, part.line, "the include leaves the site");
        if (depth + 1 >= kDeepestInclude || files_.size() >= kMostFiles) {
          throw PageError(sitePath, part.line, "includes are nested too deeply or too many");
        }
        try {
          Include(*target, read, depth + 1);
        } catch (const PageError& error) {
          if (error.line() != 0) throw;
          throw PageError(sitePath, part.line, "the include \"" + path + "\" cannot be read");
        }
        break;
      }
    }
    isFirst = false;
  }
}

void PageScript::ApplyDirective(const std::string& sitePath, int line, std::string_view text) {
  std::string name;
  std::string value;
  while (!text.empty()) {
    if (!TakeSetting(text, name, value)) throw PageError(sitePath, line, "\"<%@\" needs NAME=VALUE");
    if (name == "language") {
      if (value != "vbscript") throw PageError(sitePath, line, "the only language is VBScript");
    } else if (name == "codepage") {
      long number = 0;
      std::from_chars(value.data(), value.data() + value.size(), number);
      if (!IsCodePage(number)) throw PageError(sitePath, line, "the code page must be 1252 or 65001");
      codePage_ = static_cast<unsigned>(number);
    } else if (name == "enablesessionstate") {
      usesSession_ = value != "false";
    } else {
      throw PageError(sitePath, line, "\"<%@\" does not know " + name);
    }
  }
}

void PageScript::AddLines(std::string_view text, Origin origin) {
  for (bool isLast = false; !isLast; ++origin.line) {
    const std::size_t end = text.find('\n');
    isLast = end == std::string_view::npos;
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    statements_.append(line).append("\n");
    origins_.push_back(origin);
    if (!isLast) text.remove_prefix(end + 1);
  }
}

}  // namespace oxaqrycln::asphost

#include "tools/asphost/pages/page_parts.h"

#include <algorithm>
#include <optional>
#include <string>

#include "tools/asphost/pages/page_error.h"
#include "tools/asphost/web/encoding.h"

namespace oxaqrycln::asphost {
namespace {

constexpr std::string_view kComment = "<!--";
constexpr std::string_view kWhitespace = " \t\r\n";

std::string_view TrimStart(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kWhitespace), text.size()));
}

// The text without the word at its start, in any letter case; nothing if it starts otherwise.
std::optional<std::string_view> Behind(std::string_view text, std::string_view word) {
  if (AsciiLowerCase(text.substr(0, word.size())) != word) return std::nullopt;
  return TrimStart(text.substr(word.size()));
}

class Splitter {
 public:
  Splitter(std::string_view file, std::string_view source) : file_(file), source_(source) {}

  std::vector<PagePart> Split() {
    while (at_ < source_.size()) {
      const std::size_t mark = source_.find('<', at_);
      if (mark == std::string_view::npos) break;
      const std::string_view rest = source_.substr(mark);
      if (rest.starts_with("<%")) {
        TakeScript(mark);
      } else if (!rest.starts_with(kComment) || !TakeInclude(mark)) {
        at_ = mark + 1;
      }
    }
    AddText(source_.size());
    return std::move(parts_);
  }

 private:
  int LineAt(std::size_t position) {
    line_ += static_cast<int>(std::count(source_.begin() + static_cast<std::ptrdiff_t>(counted_),
                                         source_.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
    counted_ = position;
    return line_;
  }

  void Add(PartKind kind, std::string_view text) {
    parts_.push_back({kind, text, LineAt(static_cast<std::size_t>(text.data() - source_.data()))});
  }

  void AddText(std::size_t end) {
    if (end > textStart_) Add(PartKind::Text, source_.substr(textStart_, end - textStart_));
  }

  void TakeScript(std::size_t mark) {
    AddText(mark);
    std::size_t start = mark + 2;
    PartKind kind = PartKind::Statements;
    if (start < source_.size() && source_[start] == '=') kind = PartKind::Expression;
    if (start < source_.size() && source_[start] == '@') kind = PartKind::Directive;
    if (kind != PartKind::Statements) ++start;
    const std::size_t end = source_.find("%>", start);
    if (end == std::string_view::npos) throw PageError(std::string(file_), LineAt(mark), "\"<%\" has no \"%>\"");
    Add(kind, source_.substr(start, end - start));
    at_ = textStart_ = end + 2;
  }

  // Whether the comment at the mark is an include.
  bool TakeInclude(std::size_t mark) {
    const std::size_t end = source_.find("-->", mark);
    if (end == std::string_view::npos) return false;
    const std::size_t start = mark + kComment.size();
    const auto words = Behind(TrimStart(source_.substr(start, std::max(end, start) - start)), "#include");
    if (!words) return false;
    AddText(mark);
    auto path = Behind(*words, "file");
    const PartKind kind = path ? PartKind::IncludeFile : PartKind::IncludeVirtual;
    if (!path) path = Behind(*words, "virtual");
    if (path) path = Behind(*path, "=");
    const std::size_t close = path && path->starts_with('"') ? path->find('"', 1) : std::string_view::npos;
    if (close == std::string_view::npos || close == 1) {
      throw PageError(std::string(file_), LineAt(mark), "an include needs file=\"...\" or virtual=\"...\"");
    }
    Add(kind, path->substr(1, close - 1));
    at_ = textStart_ = end + 3;
    return true;
  }

  std::string_view file_;
  std::string_view source_;
  std::size_t at_ = 0;
  std::size_t textStart_ = 0;
  std::size_t counted_ = 0;  // line_ is the line of this position
  int line_ = 1;
  std::vector<PagePart> parts_;
};

}  // namespace

std::vector<PagePart> SplitPage(std::string_view file, std::string_view source) {
  return Splitter(file, source).Split();
}

}  // namespace oxaqrycln::asphost

// page_script.h - the one script that a page and its includes become, with the origin of each of its lines.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_SCRIPT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_SCRIPT_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::asphost {

// The code pages that a page may choose with <%@ CodePage=... %>.
inline constexpr unsigned kWindows1252 = 1252;
inline constexpr unsigned kUtf8 = 65001;
inline bool IsCodePage(long number) { return number == kWindows1252 || number == kUtf8; }

struct SourcePosition {
  std::string file;  // site path
  int line = 0;      // the first one is 1
};

class PageScript {
 public:
  // The content of a file of the site; nothing if it cannot be read.
  using ReadSource = std::function<std::optional<std::string>(const std::string& sitePath)>;

  // Raises PageError.
  PageScript(const std::string& sitePath, const ReadSource& read);

  // VBScript in the page's code page. A text of the page is written by "Response.WriteBlock NUMBER".
  const std::string& statements() const noexcept { return statements_; }
  const std::vector<std::string>& blocks() const noexcept { return blocks_; }
  unsigned codePage() const noexcept { return codePage_; }
  bool usesSession() const noexcept { return usesSession_; }

  // Where a line of the statements comes from; the first line is 0.
  SourcePosition PositionOf(std::size_t line) const;

 private:
  struct Origin {
    std::size_t file;
    int line;
  };

  void Include(const std::string& sitePath, const ReadSource& read, std::size_t depth);
  void ApplyDirective(const std::string& sitePath, int line, std::string_view text);
  void AddLines(std::string_view text, Origin origin);

  std::string statements_;
  std::vector<std::string> blocks_;
  std::vector<std::string> files_;
  std::vector<Origin> origins_;
  unsigned codePage_ = kWindows1252;
  bool usesSession_ = true;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_SCRIPT_H_

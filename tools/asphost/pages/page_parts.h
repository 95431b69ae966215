// page_parts.h - a page's source cut into text, script and includes. Knows nothing of other files.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_PARTS_H_
#define OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_PARTS_H_

#include <string_view>
#include <vector>

namespace oxaqrycln::asphost {

enum class PartKind {
  Text,            // goes to the visitor as it is
  Statements,      // <% ... %>
  Expression,      // <%= ... %>
  Directive,       // <%@ ... %>
  IncludeFile,     // <!-- #include file="..." -->: from the folder of the including file
  IncludeVirtual,  // <!-- #include virtual="..." -->: from the root of the site
};

// A view of the source; of an include, the path.
struct PagePart {
  PartKind kind;
  std::string_view text;
  int line;  // where text begins, the first line being 1
};

// Raises PageError, naming the file, for a "<%" without "%>" and an include without a path.
std::vector<PagePart> SplitPage(std::string_view file, std::string_view source);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_PARTS_H_

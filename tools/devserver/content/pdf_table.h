// pdf_table.h - a table as a PDF document: A4 pages in landscape, each with the title, the column heads and its number.
// Text is Windows-1252. Knows nothing of hit lists.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

struct PdfTable {
  std::string title;
  std::vector<std::vector<std::string>> rows;  // the first one is the column heads; missing cells are empty
};

// Hands the document's bytes to take, piece by piece; the same for the same table. A cell that its column is too narrow
// for runs over up to six lines, and what does not fit there is cut off with an ellipsis. Raises ServerError.
void WritePdf(const PdfTable& table, const std::function<void(std::string_view bytes)>& take);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_

// pdf_table.h - a table as a PDF document: A4 pages in landscape, each with the title, the column heads and its number.
// Text is Windows-1252. Knows nothing of hit lists.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_

#include <string>
#include <vector>

namespace oxaqrycln::devserver {

struct PdfTable {
  std::string title;
  std::vector<std::vector<std::string>> rows;  // the first row is the column heads; missing cells are empty
};

// The bytes of the document; equal tables give equal bytes. A text that is too wide for its column continues on up to
// six lines, and is then cut off with an ellipsis. Raises ServerError.
std::string MakePdf(const PdfTable& table);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PDF_TABLE_H_

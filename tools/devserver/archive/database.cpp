#include "tools/devserver/archive/database.h"

#include "values/code_page.h"

namespace oxaqrycln::devserver {

Database OpenDatabase(const std::string& file) {
  constexpr int kBusyTimeoutMilliseconds = 2000;
  Database database(file.empty() ? ":memory:" : file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE,
                    kBusyTimeoutMilliseconds);
  // An acknowledged change must survive a power failure.
  database.exec("PRAGMA synchronous = EXTRA; PRAGMA foreign_keys = ON; PRAGMA temp_store = MEMORY");
  return database;
}

// Falls back to converting character by character, so that one unknown character does not lose the whole text.
std::string Statement::Text(int column) const {
  const std::string utf8 = getColumn(column).getString();
  if (auto whole = FromUtf8(utf8)) return *whole;
  std::string text;
  for (std::size_t start = 0, end = 0; start < utf8.size(); start = end) {
    end = start + 1;
    while (end < utf8.size() && (static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U) ++end;
    text += FromUtf8(utf8.substr(start, end - start)).value_or("?");
  }
  return text;
}

std::vector<std::string> Statement::Texts() const {
  std::vector<std::string> texts;
  for (int column = 0; column < getColumnCount(); ++column) texts.push_back(Text(column));
  return texts;
}

void Statement::BindOne(int parameter, std::string_view text) { bind(parameter, ToUtf8(text)); }

}  // namespace oxaqrycln::devserver

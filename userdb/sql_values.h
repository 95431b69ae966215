// sql_values.h - values as parts of SQL statements. A value that could change the meaning of a statement is refused
// before the database sees it; every other value is inserted unchanged.
#ifndef OXAQRYCLN_USERDB_SQL_VALUES_H_
#define OXAQRYCLN_USERDB_SQL_VALUES_H_

#include <string>

#include "platform/database/database.h"
#include "values/variant.h"

namespace oxaqrycln {

// The text between single quotes. Raises Invalid procedure call for a text that contains a single quote or a NUL, and
// for one that contains a backslash if the database takes it as an escape character.
std::string SqlText(const Connection& database, const Variant& value);
// A whole number in decimal digits, with or without a sign. Raises Type mismatch for anything else.
std::string SqlNumber(const Variant& value);
// The name of a table or column: a letter or "_", then letters, digits and "_". Raises Invalid procedure call.
std::string SqlName(const Variant& value);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_USERDB_SQL_VALUES_H_

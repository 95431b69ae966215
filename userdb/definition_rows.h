// definition_rows.h - what the methods on document rights, search rights and outliners share: the conditions that
// select definitions, and the order and form of the lists that pages get.
#ifndef OXAQRYCLN_USERDB_DEFINITION_ROWS_H_
#define OXAQRYCLN_USERDB_DEFINITION_ROWS_H_

#include <initializer_list>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/database/database.h"
#include "values/variant.h"

namespace oxaqrycln {

// The condition for rows whose columns Channel and Archive cover an archive; an empty or Null column covers all.
// Raises as SqlText does.
std::string CoversArchive(const Connection& database, const Variant& channel, const Variant& archive);

// A SELECT of the definitions that a table assigns to a user or to the groups of the user. The ID becomes a part of it
// unchanged.
std::string DefinitionsOfUser(std::string_view table, std::string_view definitionColumn, const std::string& userId);

// Keys that order rows independently of the database's collation. IDs: Null, then numbers by size, then texts by
// character code; the last element is the text. Names: by the upper-case text, as channel lists are, then by the text.
using IdKey = std::tuple<int, double, std::string>;
using NameKey = std::tuple<std::string, std::string>;
IdKey IdKeyOf(const Variant& id);
NameKey NameKeyOf(std::string name);

// "^text^,^text^".
std::string CaretQuoted(std::initializer_list<std::string_view> texts);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_USERDB_DEFINITION_ROWS_H_

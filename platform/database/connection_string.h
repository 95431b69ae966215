// connection_string.h - the connection strings that administrators write, as the driver manager takes them.
#ifndef OXAQRYCLN_PLATFORM_DATABASE_CONNECTION_STRING_H_
#define OXAQRYCLN_PLATFORM_DATABASE_CONNECTION_STRING_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxaqrycln {

// The "name=value" attributes of a connection string, in order; a value in braces or double quotes comes without them.
// Raises Invalid procedure call for an attribute without a name and for an unterminated quote.
std::vector<std::pair<std::string, std::string>> ConnectionAttributes(std::string_view text);

// The ODBC connection string for one that is ODBC already, or names an ODBC source ("Provider=MSDASQL;...") or a SQL
// Server ("Provider=SQLOLEDB;Data Source=...;Initial Catalog=..."). Raises an error that names any other provider.
std::string OdbcConnectionString(std::string_view text);

// The passwords in a connection string, including those in its extended properties and libpq options.
// Raises as ConnectionAttributes does.
std::vector<std::string> ConnectionPasswords(std::string_view text);

// The text with the passwords of the connection string replaced by "***".
std::string WithoutPasswords(std::string_view text, std::string_view connectionString);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_DATABASE_CONNECTION_STRING_H_

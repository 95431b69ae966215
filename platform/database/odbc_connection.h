// odbc_connection.h - the "ADODB.Connection" that is built in: any database with an ODBC driver.
#ifndef OXAQRYCLN_PLATFORM_DATABASE_ODBC_CONNECTION_H_
#define OXAQRYCLN_PLATFORM_DATABASE_ODBC_CONNECTION_H_

#include <chrono>
#include <memory>

#include "platform/database/database.h"

namespace oxaqrycln {

// How long a database may take before the call ends in an error. Where the driver has no such limit, or its server has
// frozen, the call is abandoned after the grace period; the connection is then closed, and the driver's call ends on a
// thread of its own.
struct OdbcLimits {
  std::chrono::seconds logon{15};
  std::chrono::seconds statement{30};
  std::chrono::seconds grace{5};
  // For an SQLite file that another program has locked, unless the connection string has a Timeout of its own; the
  // driver itself would wait for minutes.
  std::chrono::milliseconds lock{2000};
};

// A closed connection. Open takes the strings of connection_string.h. The rows of a query are read whole by Execute, so
// that nothing stays locked in the database. The column's type decides between Integer, Long, Double and Boolean, and a
// whole number of another type is a Long where it fits; anything else is text, or a ByteArray. No error text shows a
// password of the connection string or a text of a statement.
std::shared_ptr<Connection> MakeOdbcConnection();
std::shared_ptr<Connection> MakeOdbcConnectionWith(const OdbcLimits& limits);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_DATABASE_ODBC_CONNECTION_H_

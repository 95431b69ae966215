// odbc_connection.h - the "ADODB.Connection" that is built in: any database with an ODBC driver.
#ifndef OXAQRYCLN_PLATFORM_ODBC_CONNECTION_H_
#define OXAQRYCLN_PLATFORM_ODBC_CONNECTION_H_

#include <memory>

#include "platform/database.h"

namespace oxaqrycln {

// A closed connection. Open takes the strings of connection_string.h. The rows of a query are read whole by Execute, so
// that nothing stays locked in the database; an Integer, Long, Double or Boolean is told by the column's type, a
// whole number of another type by its size; anything else is text, or a ByteArray.
std::shared_ptr<Connection> MakeOdbcConnection();

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_ODBC_CONNECTION_H_

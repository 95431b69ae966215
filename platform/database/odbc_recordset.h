// odbc_recordset.h - the rows of an executed statement, read whole.
#ifndef OXAQRYCLN_PLATFORM_DATABASE_ODBC_RECORDSET_H_
#define OXAQRYCLN_PLATFORM_DATABASE_ODBC_RECORDSET_H_

#include <memory>

#include "platform/database/database.h"
#include "platform/database/odbc_call.h"

namespace oxaqrycln {

// How text is exchanged with a driver: through the wide calls, or as UTF-8 through the narrow ones.
enum class OdbcText { Wide, Utf8 };

std::shared_ptr<Recordset> ReadRows(const OdbcHandle& statement, OdbcText text);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_DATABASE_ODBC_RECORDSET_H_

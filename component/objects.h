// objects.h - the registry by which external objects are made from their programmatic identifiers. Built in are
// "ADODB.Connection" (database.h), "DES56Lib.DES56" and "DES56Lib.Base64" (cipher_objects.h).
#ifndef OXAQRYCLN_COMPONENT_OBJECTS_H_
#define OXAQRYCLN_COMPONENT_OBJECTS_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "values/variant.h"

namespace oxaqrycln {

using ObjectMaker = std::function<std::shared_ptr<Object>()>;

// Registers or replaces the maker for an identifier, whatever its letter case. Safe from any thread.
void RegisterObject(std::string_view programId, ObjectMaker maker);
// Takes an identifier out of the registry; false when it was not there.
bool UnregisterObject(std::string_view programId);
// A new object. Raises 429 when the identifier is not registered or its maker gives none.
std::shared_ptr<Object> CreateObject(std::string_view programId);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_OBJECTS_H_

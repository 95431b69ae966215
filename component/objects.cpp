#include "component/objects.h"

#include <map>
#include <mutex>
#include <utility>

#include "platform/ciphers/cipher_objects.h"
#include "platform/database/odbc_connection.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

struct Registry {
  std::mutex mutex;
  std::map<std::string, ObjectMaker> makers = {
      // by upper-cased identifier
      {"ADODB.CONNECTION", MakeOdbcConnection},
      {"DES56LIB.DES56", MakeDesObject},
      {"DES56LIB.BASE64", MakeBase64Object},
  };
};

// Never destroyed: an instance may be made or end while the process ends.
Registry& TheRegistry() {
  static auto* const registry = new Registry;  // NOLINT
  return *registry;
}

}  // namespace

void RegisterObject(std::string_view programId, ObjectMaker maker) {
  Registry& registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  registry.makers[UpperCase(programId)] = std::move(maker);
}

bool UnregisterObject(std::string_view programId) {
  Registry& registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  return registry.makers.erase(UpperCase(programId)) > 0;
}

std::shared_ptr<Object> CreateObject(std::string_view programId) {
  ObjectMaker maker;
  {
    Registry& registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    const auto found = registry.makers.find(UpperCase(programId));
    if (found != registry.makers.end()) maker = found->second;
  }
  auto object = maker ? maker() : nullptr;
  if (object == nullptr) throw RuntimeError(error::kCannotCreateObject);
  return object;
}

}  // namespace oxaqrycln

#include "component/query_state.h"

#include <span>

namespace oxaqrycln {

QueryState::QueryState(const clsQuery& query)
    : apartment(Apartment::Current()),
      log(query.strDebugLogPath, query.strSessionID, apartment->clock),
      execution(apartment, query.lngRequestTimeout, {query.strSessionID, query.strTELOUser, query.strTELOPwd}, log) {}

bool QueryState::Load(std::initializer_list<Variant> elements, Variant* status, SendSource* data) {
  const std::string request = BuildRequest(std::span(elements.begin(), elements.size()), log);
  std::string errorText;
  const bool loaded = InitBuffer(request, execution, log, buffer, errorText, data);
  if (!loaded) WriteText(status, errorText);
  return loaded;
}

}  // namespace oxaqrycln

#include "component/query_state.h"

#include <span>

namespace oxaqrycln {

QueryState::QueryState(const clsQuery& query)
    : apartment(Apartment::Current()),
      log(query.strDebugLogPath, query.strSessionID, apartment->clock, &firstError),
      execution(apartment, query.lngRequestTimeout, {query.strSessionID, query.strTELOUser, query.strTELOPwd}, log) {}

bool QueryState::Load(std::initializer_list<Variant> elements, Variant* status) {
  const std::string request = BuildRequest(std::span(elements.begin(), elements.size()), log);
  // A part that memory cut short must not reach a server.
  if (firstError.number == error::kOutOfMemory) throw RuntimeError(error::kOutOfMemory);
  std::string errorText;
  const bool loaded = InitBuffer(request, execution, log, buffer, errorText);
  if (!loaded) WriteText(status, errorText);
  return loaded;
}

void QueryState::Drop(std::unique_ptr<QueryState> state, std::string logPath, std::string sessionId) noexcept {
  state->isDropped_ = true;
  state->logPath_ = std::move(logPath);
  state->sessionId_ = std::move(sessionId);
  state->log.ReferTo(state->logPath_, state->sessionId_);
  state->execution.Abandon();
  QueryState* const released = state.release();
  if (released->runningMethods_ == 0) End(released);
}

void QueryState::End(QueryState* state) noexcept {
  const std::unique_ptr<QueryState> owner(state);
  Trap(state->log, "Class_Terminate", [&] {
    state->log.Write(bytInfo, "Terminating OXAQryCln instance for session id ", state->log.sessionId());
    // The slot is given back whatever the database says.
    struct SlotLease {
      QueryState& owner;
      ~SlotLease() { owner.apartment->controls.ReleaseControl(owner.execution.slot()); }
    };
    {
      const SlotLease lease{*state};
      if (state->database != nullptr && state->database->State() != Connection::kClosed) state->database->Close();
    }
    state->log.Write(bytInfo, "Releasing control instance #", state->execution.slot());
  });
}

}  // namespace oxaqrycln

#include "component/clsQuery.h"

#include <chrono>
#include <utility>

#include "component/objects.h"
#include "component/query_state.h"
#include "component/version.h"
#include "platform/module_info.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::chrono::milliseconds kReleaseInterval(30000);

void WriteStartLine(const QueryState& state, const std::string& sessionId) {
  if (!state.log.Active()) return;
  const ModuleInfo module = ThisModule();
  state.log.Write(bytInfo, "Initializing new ", module.directory, "\\", module.fileName, " v", kVersionMajor, ".",
                  kVersionMinor, ".", kVersionRevision, " instance with handle id ", module.handle, " and thread id ",
                  CurrentThreadId(), " for session id ", sessionId);
}

std::shared_ptr<Connection> MakeConnection() {
  auto connection = std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"));
  if (connection == nullptr) throw RuntimeError(error::kCannotCreateObject);
  return connection;
}

}  // namespace

clsQuery::clsQuery() : state_(std::make_unique<QueryState>(*this)) {}

clsQuery::~clsQuery() { QueryState::Drop(std::move(state_), std::move(strDebugLogPath), std::move(strSessionID)); }

bool clsQuery::Init(const Variant& blnParamDBInit) {
  return state_->Run(false, [&](QueryState& state, bool& result) {
    WriteStartLine(state, strSessionID);
    if (blnParamDBInit.IsMissing() || blnParamDBInit.ToBoolean()) {
      state.database = MakeConnection();
      state.log.Write(bytInfo, "Opening database connection: ", strDBConnect);
      state.database->Open(strDBConnect);
    }
    frmControls& controls = state.apartment->controls;
    // A second Init keeps the slot of the first.
    const std::int32_t slot = state.execution.slot() != 0 ? state.execution.slot() : controls.GetFreeControl();
    if (slot == -1) throw RuntimeError(controls.LastError());
    state.execution.UseSlot(static_cast<std::int16_t>(slot));
    state.log.Write(bytInfo, "Assigning control instance #", slot);
    ConnectionSlot& record = controls.Slot(slot);
    record.socket.Close();
    record.debugLogPath = strDebugLogPath;
    record.sessionId = strSessionID;
    controls.ReleaseTimer().SetInterval(kReleaseInterval);
    controls.ReleaseTimer().Enable(true);
    result = true;
  });
}

void clsQuery::OnStartPage(const Variant& PassedScriptingContext) {
  state_->Run([&](QueryState& state) {
    auto context = std::dynamic_pointer_cast<ScriptingContext>(PassedScriptingContext.ToObject());
    if (context == nullptr) throw RuntimeError(error::kTypeMismatch);
    state.pageRequest = context->Request();
    state.context = std::move(context);
  });
}

void clsQuery::OnEndPage() {
  state_->Run([&](QueryState& state) {
    state.pageRequest.reset();
    state.context.reset();
  });
}

void clsQuery::RemoteHosts(const Variant& strRemoteHosts) {
  state_->RunAs("Let RemoteHosts", false, [&](QueryState& state, bool& /*unused*/) {
    std::string scratch;
    state.apartment->servers.Load(strRemoteHosts.TextView(scratch), state.log);
  });
}

}  // namespace oxaqrycln

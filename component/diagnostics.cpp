#include <cstdint>
#include <string>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "platform/files/files.h"

namespace oxaqrycln {

std::string clsQuery::LiveCheck() {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    Variant errorText;
    if (state.Load({"LiveCheck"}, &errorText)) {
      result = state.buffer.Line(0);
    } else {
      result = errorText.ToText();
    }
  });
}

std::string clsQuery::HelloWorld() { return "Hello World!"; }

std::string clsQuery::DirectQuery(const Variant& strQueryString) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    std::string scratch;
    std::string errorText;
    if (!InitBuffer(strQueryString.TextView(scratch), state.execution, state.log, state.buffer, errorText)) {
      result = errorText;
      return;
    }
    for (std::int32_t i = 0; i < state.buffer.Count(); ++i) {
      if (i > 0) result += "\r\n";
      result += state.buffer.Line(i);
    }
  });
}

void clsQuery::WriteTest() {
  state_->Run([&](QueryState& state) {
    const std::string file = strBlobPathLocal + "\\WriteTest.txt";
    state.log.Write(bytInfo, "Writing test file '", file, "'");
    WriteFile(file, "\"WriteTest\"\r\n");
    state.log.Write(bytInfo, "Deleting test file '", file, "'");
    RemoveFile(file);
  });
}

}  // namespace oxaqrycln

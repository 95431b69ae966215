// The public face of the text and file helpers, and of the log writer.
#include <string>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "support/file_helpers.h"
#include "support/text_helpers.h"

namespace oxaqrycln {
namespace {

// The level of a line; any other value counts as information.
int Level(const Variant& value) noexcept {
  if (value.IsMissing()) return bytInfo;
  try {
    const double level = value.ToDouble();
    for (const int each : {bytWarning, bytError, bytExtended}) {
      if (level == each) return each;
    }
  } catch (...) {  // no number
  }
  return bytInfo;
}

}  // namespace

std::string clsQuery::Encode(const Variant& strText) {
  return state_->Run(std::string(), [&](std::string& result) {
    std::string scratch;
    result = oxaqrycln::Encode(strText.TextView(scratch));
  });
}

std::string clsQuery::Decode(const Variant& strText) {
  return state_->Run(std::string(), [&](std::string& result) {
    std::string scratch;
    result = oxaqrycln::Decode(strText.TextView(scratch));
  });
}

void clsQuery::DeleteFTPObjects(const Variant& strFile) {
  state_->Run([&](QueryState& state) {
    const std::string pattern = strFile.ToText();
    state.log.Write(bytInfo, "Deleting FTP objects '", pattern, "'");
    DeleteMatchingFiles(pattern);
  });
}

void clsQuery::WriteLog(const Variant& strLogLine, const Variant& bytLogType) {
  try {
    std::string scratch;
    state_->log.Write(Level(bytLogType), strLogLine.TextView(scratch));
  } catch (...) {  // the line is lost, as with every other failure of the log
  }
}

}  // namespace oxaqrycln

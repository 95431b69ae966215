#include "tools/oxaqry/cli/answers.h"

#include "tools/oxaqry/cli/settings.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// What a person can do about an error of the transport; "" for another error.
std::string Advice(const std::string& errorText) {
  const bool isTransport = errorText.starts_with("Winsock Error") || errorText.starts_with("Timeout of ");
  if (errorText.ends_with(" - Disk full)")) return "";
  if (isTransport) return " (\"oxaqry servers\" shows the state of each server)";
  if (IsNoConnection(errorText)) return " (none accepts a connection; \"oxaqry servers\" shows the state of each)";
  return "";
}

}  // namespace

// Nobody shares this process's servers: they are marked busy by connects that failed.
bool IsNoConnection(const std::string& errorText) { return errorText == "All query servers are currently busy"; }

// A diagnostic method returns answer and error text alike. What tells them apart: the records that a ...Next method
// reads are those of the answer, and none after an error.
Answer CheckLive(clsQuery& query) {
  std::string text = query.LiveCheck();
  const bool isAnswer = !text.empty() && query.TELOGetAllArchivesNext() == text;
  return {!isAnswer, std::move(text)};
}

Answer AskDirect(clsQuery& query, const std::string& commandPart) {
  std::string text = query.DirectQuery(commandPart);
  const bool startsWithEmptyLine = text.empty() || text.starts_with("\r\n");
  const bool isAnswer = startsWithEmptyLine || !query.TELOGetAllArchivesNext().empty();
  return {!isAnswer, std::move(text)};
}

void Fail(const std::string& errorText) {
  const std::string reason = errorText.empty()
                                 ? "the query server gave no usable answer (--log-dir keeps a log that tells why)"
                                 : Printable(errorText);
  throw CommandError(reason + Advice(errorText));
}

std::int32_t Count(const Variant& result, const Variant& status) {
  const std::int32_t count = result.ToLong();
  if (count < 0) Fail(status.ToText());
  return count;
}

}  // namespace oxaqrycln::oxaqry

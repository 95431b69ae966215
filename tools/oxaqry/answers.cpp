#include "tools/oxaqry/answers.h"

#include "platform/code_page.h"
#include "tools/oxaqry/settings.h"
#include "tools/oxaqry/table.h"

namespace oxaqrycln {
namespace {

bool IsTransportError(const std::string& text) {
  return text.starts_with("Winsock Error") || text.starts_with("Timeout of ") || text.starts_with("All query servers ");
}

}  // namespace

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
  std::string message = errorText.empty() ? "the query server gave no usable answer" : Printable(errorText);
  if (IsTransportError(errorText)) message += " (\"oxaqry servers\" shows the state of each server)";
  throw CommandError(message);
}

std::int32_t Count(const Variant& result, const Variant& status) {
  const std::int32_t count = result.ToLong();
  if (count < 0) Fail(status.ToText());
  return count;
}

}  // namespace oxaqrycln

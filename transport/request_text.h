// request_text.h - composition of request texts: caret-quoted fields joined by commas, without any escaping.
#ifndef OXAQRYCLN_TRANSPORT_REQUEST_TEXT_H_
#define OXAQRYCLN_TRANSPORT_REQUEST_TEXT_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "support/log_writer.h"
#include "transport/server_table.h"
#include "values/variant.h"

namespace oxaqrycln {

// The account an instance brings along.
struct Account {
  const std::string& sessionId;
  const std::string& user;
  const std::string& password;
};

// The command part: "^element^" for each element, joined by ",". The first element is the command word. On failure the
// part built so far, and a line in the log.
std::string BuildRequest(std::span<const Variant> elements, const SessionLog& log);

// The request prefix for a server of the table: session id, user and encoded password, the server's own account where
// it has one. "" on failure, and a line in the log.
std::string BuildRequestPre(std::int32_t serverNumber, ServerTable& servers, const Account& account,
                            const SessionLog& log);

// The n-th field, counted from 1, of a caret-quoted text without its carets; "{Err}" when there is none.
std::string GetRequestField(std::string_view text, std::int32_t number);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_REQUEST_TEXT_H_

// requester.h - a page's settings with an initialised request execution, for tests below the public class.
#ifndef OXAQRYCLN_TESTS_SUPPORT_REQUESTER_H_
#define OXAQRYCLN_TESTS_SUPPORT_REQUESTER_H_

#include <memory>
#include <string>

#include "support/response_buffer.h"
#include "tests/support/temporary_directory.h"
#include "transport/apartment.h"
#include "transport/request.h"

namespace oxaqrycln::testing {

// Owns an apartment of its own, so that no test sees another one's servers.
struct Requester {
  explicit Requester(const std::string& hosts, std::int32_t timeoutSeconds = 10) : timeout(timeoutSeconds) {
    apartment->servers.Load(hosts, log);
    execution.UseSlot(static_cast<std::int16_t>(apartment->controls.GetFreeControl()));
    apartment->controls.StrDebugLogPath(execution.slot(), directory);
    apartment->controls.StrSessionID(execution.slot(), session);
  }

  // True and the answer's text in text, or false and the error text in error.
  bool Request(std::string_view request) {
    error.clear();
    const bool done = execution.Request({.request = request}, &error);
    text = done ? std::string(execution.TakeResponse().View()) : std::string();
    return done;
  }
  std::string Log() const { return logs.Read("S1.log"); }

  std::shared_ptr<Apartment> apartment = std::make_shared<Apartment>();
  std::int32_t timeout;
  TemporaryDirectory logs;
  std::string directory{logs.path()};
  std::string session = "S1";
  std::string user = "webuser";
  std::string password = "secret";
  SessionLog log{directory, session, apartment->clock};
  RequestExecution execution{apartment, timeout, {session, user, password}, log};
  std::string text;
  std::string error;
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_REQUESTER_H_

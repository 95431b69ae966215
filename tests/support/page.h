// page.h - a clsQuery as a page uses it, against a scripted query server that gives one answer to every request.
#ifndef OXAQRYCLN_TESTS_SUPPORT_PAGE_H_
#define OXAQRYCLN_TESTS_SUPPORT_PAGE_H_

#include <string>
#include <utility>
#include <vector>

#include "component/clsQuery.h"
#include "tests/support/in_own_thread.h"
#include "tests/support/scripted_server.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {

// What most methods return on failure.
inline const Variant kFailed = Variant::Integer(-1);

struct Page {
  explicit Page(std::vector<ScriptedServer::Script> scripts) : server(std::move(scripts)) {
    query.strSessionID = "S1";
    query.strTELOUser = "webuser";
    query.lngRequestTimeout = 10;
    query.strDebugLogPath = logs.path();
    query.strBlobPathLocal = blobs.path();
    query.RemoteHosts(server.Host());
    initialised = query.Init(false);
  }
  std::string Log() const { return logs.Read("S1.log"); }
  // The command part of the last request.
  std::string LastCommand() {
    const auto requests = server.Requests();
    if (requests.empty()) return {};
    return requests.back().substr(std::string("^S1^,^webuser^,^^,").size());
  }

  TemporaryDirectory logs;
  TemporaryDirectory blobs;
  ScriptedServer server;
  clsQuery query;
  bool initialised = false;
};

// Runs body(page) on a thread of its own, with a server that answers every request with the lines.
template <typename Body>
void WithAnswer(const std::vector<std::string>& lines, Body&& body) {
  InOwnThread([&] {
    Page page({ScriptedServer::Replies(Answer(lines))});
    body(page);
  });
}

// The same with one answer a request, the last one repeated.
template <typename Body>
void WithAnswers(const std::vector<std::string>& framed, Body&& body) {
  InOwnThread([&] {
    std::vector<ScriptedServer::Script> scripts;
    for (const std::string& each : framed) scripts.push_back(ScriptedServer::Replies(each));
    Page page(std::move(scripts));
    body(page);
  });
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_PAGE_H_

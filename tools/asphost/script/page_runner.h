// page_runner.h - answers one request of a site: runs the page, or sends the file.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUNNER_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUNNER_H_

#include <functional>
#include <string>

#include "tools/asphost/script/class_cache.h"
#include "tools/asphost/script/site.h"
#include "tools/asphost/web/messages.h"

namespace oxaqrycln::asphost {

// Receives a line, without its end, for each page that failed.
using ReportFailure = std::function<void(const std::string& line)>;

// The calling thread must be a single-threaded apartment, and the classes its own.
WebAnswer AnswerRequest(Site& site, ClassCache& classes, const WebRequest& request, const ReportFailure& report);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUNNER_H_

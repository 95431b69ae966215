#include "tools/asphost/script/page_runner.h"

#include "tools/asphost/pages/page_error.h"
#include "tools/asphost/pages/site_path.h"
#include "tools/asphost/script/page_object.h"
#include "tools/asphost/script/page_run.h"
#include "tools/asphost/script/script_engine.h"

namespace oxaqrycln::asphost {
namespace {

WebAnswer NotFound() { return ErrorPage(404, "Not found", "There is nothing to be seen at this address."); }

WebAnswer Failed(const ReportFailure& report, const std::string& file, int line, const std::string& text) {
  const std::string place = "/" + file + (line > 0 ? ", line " + std::to_string(line) : "");
  report(place + ": " + text);
  return ErrorPage(500, "The page failed", place + ": " + text);
}

void AddCookies(PageRun& run) {
  for (const auto& cookie : run.newCookies) run.answer.headers.emplace_back("Set-Cookie", HeaderOf(*cookie));
}

// The script and everything it made have ended when this returns.
std::optional<ScriptFailure> RunStatements(const std::shared_ptr<PageRun>& run) {
  struct EndOfPage {
    PageRun& run;
    ~EndOfPage() { run.End(); }
  };
  const ComReference<ScriptObjectBase> global = MakeObject<GlobalObject>(run);
  const EndOfPage end{*run};
  return RunScript(run->classes, run->Wide(run->script.statements()), *global.get());
}

WebAnswer RunPage(Site& site, ClassCache& classes, const WebRequest& request, const std::string& sitePath,
                  const ReportFailure& report) {
  const PageScript script(sitePath, [&](const std::string& path) { return site.ReadSource(path); });
  const auto run = std::make_shared<PageRun>(site, classes, request, sitePath, script);
  if (!run->TakeSession()) return ErrorPage(503, "Busy", "Another page of this session is still running.");
  const auto failure = RunStatements(run);
  if (failure && !run->IsStopped()) {
    const SourcePosition position = script.PositionOf(failure->line);
    return Failed(report, position.file, position.line, failure->text);
  }
  AddCookies(*run);
  if (!run->charset.empty()) run->answer.contentType += "; charset=" + run->charset;
  return std::move(run->answer);
}

}  // namespace

WebAnswer AnswerRequest(Site& site, ClassCache& classes, const WebRequest& request, const ReportFailure& report) {
  const auto sitePath = SitePathOfRequest(request.path);
  if (!sitePath) return NotFound();
  if (!IsPage(*sitePath)) {
    const auto type = StaticContentType(*sitePath);
    auto content = type ? site.Read(*sitePath) : std::nullopt;
    if (!content) return NotFound();
    WebAnswer answer;
    answer.contentType = *type;
    answer.body = std::move(*content);
    return answer;
  }
  try {
    return RunPage(site, classes, request, *sitePath, report);
  } catch (const PageError& error) {
    if (error.line() == 0 && error.file() == *sitePath) return NotFound();
    return Failed(report, error.file(), error.line(), error.what());
  } catch (const ScriptError& error) {
    return Failed(report, *sitePath, 0, ToBytes(error.text, CP_UTF8));
  } catch (const std::exception& error) {
    return Failed(report, *sitePath, 0, error.what());
  }
}

}  // namespace oxaqrycln::asphost

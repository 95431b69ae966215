// page_run.h - one page while it runs: what was asked, what will be answered, and what must be released at its end.
// Shared by the objects of its script, which may outlive the run in a component that keeps them.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUN_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUN_H_

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tools/asphost/pages/page_script.h"
#include "tools/asphost/script/class_cache.h"
#include "tools/asphost/script/com_owners.h"
#include "tools/asphost/script/script_object.h"
#include "tools/asphost/script/site.h"
#include "tools/asphost/web/encoding.h"
#include "tools/asphost/web/messages.h"

namespace oxaqrycln::asphost {

inline constexpr std::string_view kSessionCookie = "ASPSESSIONID";

class PageRun {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  PageRun(Site& pageSite, ClassCache& threadClasses, const WebRequest& pageRequest, std::string path,
          const PageScript& pageScript);

  // Takes the visitor's session when he has one. False when another page kept it until the time-out.
  bool TakeSession();
  // The visitor's session, begun now if he has none. Throws ScriptError for a page without sessions.
  SessionState& Session();
  void EndSession();
  void SetSessionTimeOut(std::chrono::minutes timeOut);

  // Throws ScriptError after Response.End, the page's time-out and its end.
  void RequireRunning() const;
  // Stops the script: this call and every later one throw.
  [[noreturn]] void Stop();
  bool IsStopped() const noexcept { return isStopped_; }
  void SetTimeOut(std::chrono::seconds timeOut);
  std::chrono::seconds timeOut() const noexcept { return timeOut_; }
  TimePoint deadline() const noexcept { return started_ + timeOut_; }

  // Calls OnEndPage of the created objects and releases them, unlocks the application, and refuses further calls.
  void End() noexcept;

  std::wstring Wide(std::string_view bytes) const { return ToWide(bytes, codePage); }
  std::string Bytes(std::wstring_view text) const { return ToBytes(text, codePage); }

  Site& site;
  ClassCache& classes;
  const WebRequest& request;
  const std::string sitePath;
  const PageScript& script;
  const Fields query;
  const Fields form;
  const Fields cookies;
  unsigned codePage;
  WebAnswer answer;
  std::string charset;
  std::vector<std::shared_ptr<Cookie>> newCookies;
  std::size_t bytesRead = 0;  // by BinaryRead
  std::vector<ComReference<IDispatch>> createdObjects;

 private:
  const TimePoint started_ = std::chrono::steady_clock::now();
  std::chrono::seconds timeOut_;
  std::string sessionId_;
  std::shared_ptr<SessionState> session_;
  std::unique_lock<std::timed_mutex> sessionLock_;
  bool isStopped_ = false;
  bool hasEnded_ = false;
};

// Calls a method without arguments, or with one, if the object has it; ignores its result and failure.
void CallIfPresent(IDispatch& object, const wchar_t* name, IDispatch* argument = nullptr) noexcept;

// The base of every object of a page.
template <class Object>
class PageObject : public ScriptObject<Object> {
 public:
  explicit PageObject(std::shared_ptr<PageRun> run) : run_(std::move(run)) {}

 protected:
  void BeforeCall() override { run_->RequireRunning(); }
  PageRun& run() const noexcept { return *run_; }
  const std::shared_ptr<PageRun>& sharedRun() const noexcept { return run_; }

 private:
  const std::shared_ptr<PageRun> run_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_RUN_H_

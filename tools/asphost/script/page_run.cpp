#include "tools/asphost/script/page_run.h"

#include <utility>

namespace oxaqrycln::asphost {
namespace {

Fields FormOf(const WebRequest& request) {
  const bool isForm = AsciiLowerCase(request.contentType).starts_with("application/x-www-form-urlencoded");
  return isForm ? ParseForm(request.body) : Fields();
}

}  // namespace

PageRun::PageRun(Site& pageSite, ClassCache& threadClasses, const WebRequest& pageRequest, std::string path,
                 const PageScript& pageScript)
    : site(pageSite),
      classes(threadClasses),
      request(pageRequest),
      sitePath(std::move(path)),
      script(pageScript),
      query(ParseForm(pageRequest.queryString)),
      form(FormOf(pageRequest)),
      cookies(ParseCookies(pageRequest.cookies)),
      codePage(pageScript.codePage()),
      timeOut_(pageSite.options.scriptTimeOut) {}

bool PageRun::TakeSession() {
  if (!script.usesSession()) return true;
  const std::string id = ValueOf(cookies, kSessionCookie).value_or("");
  session_ = site.sessions.Find(id, started_);
  if (session_ == nullptr) return true;
  sessionId_ = id;
  sessionLock_ = std::unique_lock(session_->inUse, deadline());
  return sessionLock_.owns_lock();
}

SessionState& PageRun::Session() {
  if (!script.usesSession()) throw ScriptError{kIllegalCall, L"The page does not use sessions"};
  if (session_ == nullptr) {
    session_ = std::make_shared<SessionState>();
    session_->timeOut = std::chrono::duration_cast<std::chrono::minutes>(site.options.sessionTimeOut);
    sessionLock_ = std::unique_lock(session_->inUse);
    sessionId_ = site.sessions.Add(session_, started_);
    Cookie cookie;
    cookie.name = kSessionCookie;
    cookie.value = sessionId_;
    cookie.isHttpOnly = true;
    newCookies.push_back(std::make_shared<Cookie>(std::move(cookie)));
  }
  return *session_;
}

void PageRun::EndSession() {
  // The values stay until the end of the page.
  if (session_ != nullptr) site.sessions.Remove(sessionId_);
}

void PageRun::SetSessionTimeOut(std::chrono::minutes timeOut) {
  Session().timeOut = timeOut;
  site.sessions.SetTimeOut(sessionId_, timeOut, std::chrono::steady_clock::now());
}

void PageRun::RequireRunning() const {
  if (isStopped_ || hasEnded_) throw ScriptError{kIllegalCall, L"The page has ended"};
  if (std::chrono::steady_clock::now() > deadline()) throw ScriptError{kIllegalCall, L"The script timed out"};
}

void PageRun::Stop() {
  isStopped_ = true;
  throw ScriptError{kIllegalCall, L"The page has ended"};
}

void PageRun::SetTimeOut(std::chrono::seconds timeOut) { timeOut_ = timeOut; }

void PageRun::End() noexcept {
  for (const auto& object : createdObjects) CallIfPresent(*object.get(), L"OnEndPage");
  createdObjects.clear();
  site.application.Unlock(this);
  hasEnded_ = true;
  sessionLock_ = {};
}

void CallIfPresent(IDispatch& object, const wchar_t* name, IDispatch* argument) noexcept {
  auto* names = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  if (FAILED(object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member))) return;
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = argument;
  DISPPARAMS parameters{&value, nullptr, argument == nullptr ? 0U : 1U, 0};
  EXCEPINFO details{};
  object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, &details, nullptr);
  SysFreeString(details.bstrSource);
  SysFreeString(details.bstrDescription);
  SysFreeString(details.bstrHelpFile);
}

}  // namespace oxaqrycln::asphost

// archive_query.h - the component connected to the query servers, for one command.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_QUERY_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_QUERY_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "component/clsQuery.h"
#include "component/query_watch.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

class ArchiveQuery {
 public:
  // Connects to the query servers of the settings, or to those of a list. Raises CommandError.
  ArchiveQuery(const Settings& settings, const Output& output);
  ArchiveQuery(const Settings& settings, const Output& output, std::string_view servers);

  clsQuery* operator->() noexcept { return query_.get(); }
  clsQuery& query() noexcept { return *query_; }

  // Ends a request when a signal has come, and reports its progress about ten times a second.
  void Watch(const Interruption& interruption, std::function<void(const RequestProgress&)> onProgress = nullptr);

  // The output of a method for its error text.
  Variant* status() noexcept { return &status_; }
  // What a method returned that makes a request: -1 for a failure. Raises CommandError for it, with the error text and
  // the servers that were tried, and Interrupted when a signal ended the request.
  std::int32_t Count(const Variant& result);
  // The same for a method that returns the text of an answer or of an error.
  std::string Answer(std::string text);
  // Calls next(number) for the records 1 to count of an answer. Raises CommandError, with what a record is, when the
  // method that it calls last cannot read its record.
  template <typename Next>
  void ForEach(std::int32_t count, const char* what, Next&& next) {
    for (std::int32_t number = 1; number <= count; ++number) {
      next(number);
      CheckRecord(what, number);
    }
  }
  const RequestOutcome& LastRequest() const noexcept { return watch_.LastRequest(); }

 private:
  void CheckMemory() const;
  void CheckRecord(const char* what, std::int32_t number) const;
  // After a request: prints its attempts with --verbose, and raises what its failure is.
  void CheckRequest(bool succeeded, const std::string& errorText) const;

  const Output& output_;
  const std::unique_ptr<clsQuery> query_;
  QueryWatch watch_;
  const Interruption* interruption_ = nullptr;
  Variant status_;
};

// One line for each attempt of the request: the server, what came of it, the milliseconds.
void PrintAttempts(const RequestOutcome& request, std::ostream& out);
// Why the request failed, with the servers that were tried; UTF-8.
std::string FailureText(const RequestOutcome& request, const std::string& errorText);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_QUERY_H_

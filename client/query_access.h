// query_access.h - an instance of the class with its watch, and the one place where failures of the class become
// exceptions of this layer. Not installed.
#ifndef OXAQRYCLN_CLIENT_QUERY_ACCESS_H_
#define OXAQRYCLN_CLIENT_QUERY_ACCESS_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "client/errors.h"
#include "client/settings.h"
#include "component/clsQuery.h"
#include "component/query_watch.h"

namespace oxaqrycln::client {

class QueryAccess {
 public:
  // Opens the database when the settings name one. Without hosts no request can be made. Raises BadArgument,
  // DatabaseFailed, Error.
  explicit QueryAccess(const Settings& settings);

  clsQuery* operator->() noexcept { return &query_; }
  const clsQuery& query() const noexcept { return query_; }
  clsQuery& query() noexcept { return query_; }
  QueryWatch& watch() noexcept { return watch_; }

  // The output of the next method for its error text.
  Variant* status() noexcept {
    status_ = Variant();
    return &status_;
  }
  // Of a method that makes a request: its count. Raises what the failure was.
  std::int32_t Count(const Variant& result);
  // The same for a method that returns the text of an answer or of an error, in UTF-8.
  std::string Answer(const std::string& result);
  // Of a method that makes no request: raises an Error when the method failed.
  void CheckOwn(const std::string& what) const;
  // Of a method on the database. Raises DatabaseFailed when it handled an error, BadArgument for a text that must not
  // be part of a statement.
  Variant FromDatabase(Variant result) const;

  // Called after each request.
  void OnRequest(std::function<void(const RequestReport&)> call) { onRequest_ = std::move(call); }

  // Calls next() for the records of an answer. Raises Error when the method that it calls last cannot read its record.
  template <typename Next>
  void ForEach(std::int32_t count, const char* what, Next&& next) {
    for (std::int32_t number = 1; number <= count; ++number) {
      next();
      if (watch_.LastError().number != 0) RaiseMalformed(what, number);
    }
  }

 private:
  void ReportRequest();  // to onRequest_, when there was a new one
  void CheckSameServers(const std::string& hosts);
  void OpenDatabase();
  [[noreturn]] void RaiseMalformed(const char* what, std::int32_t number) const;
  [[noreturn]] void RaiseOwnFailure() const;
  [[noreturn]] void RaiseFailure(const std::string& text) const;

  clsQuery query_;
  QueryWatch watch_;
  Variant status_;
  std::function<void(const RequestReport&)> onRequest_;
  std::int64_t reported_ = 0;  // the number of the last request that onRequest_ was told
};

// An optional output in UTF-8, "" when it was not written.
std::string TextOf(const Variant& output);
// The lines of a list from the database, each a record of that many fields; UTF-8. Raises DatabaseFailed for another
// one.
std::vector<std::vector<std::string>> Records(const Variant& list, std::size_t fieldCount);
// The whole number that an output spells, 0 when it spells none.
std::int64_t NumberOf(const Variant& output) noexcept;

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_QUERY_ACCESS_H_

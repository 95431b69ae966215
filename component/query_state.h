// query_state.h - the private state of a clsQuery, for the sources that implement its methods.
// Not installed; owned by the instance.
#ifndef OXAQRYCLN_COMPONENT_QUERY_STATE_H_
#define OXAQRYCLN_COMPONENT_QUERY_STATE_H_

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "component/clsQuery.h"
#include "component/hit_list_store.h"
#include "component/outliner_list.h"
#include "component/scripting_context.h"
#include "component/text_list.h"
#include "platform/database/database.h"
#include "support/log_writer.h"
#include "support/response_buffer.h"
#include "support/trap.h"
#include "transport/apartment.h"
#include "transport/request.h"
#include "values/errors.h"

namespace oxaqrycln {

struct QueryState {
  explicit QueryState(const clsQuery& query);

  // Runs body(state, result), or body(result), of the public method that calls this; see trap.h. The body uses the
  // state that it gets, not the instance's, because the instance may end inside one of its yields. The log names the
  // method, which the compiler fills in. The overload without a failure value is for a method without a result.
  template <typename Result, typename Body>
  Result Run(const Result& failure, Body&& body, const char* method = __builtin_FUNCTION()) {
    return RunAs(method, failure, std::forward<Body>(body));
  }
  template <typename Body>
  void Run(Body&& body, const char* method = __builtin_FUNCTION()) {
    RunAs(method, false, [&](bool& /*unused*/) { Call(body); });
  }
  // The same under another name.
  template <typename Result, typename Body>
  Result RunAs(std::string_view routine, const Result& failure, Body&& body) {
    const RunningMethod method(*this);
    return Trap(log, routine, failure, [&](Result& result) {
      if constexpr (std::is_same_v<Result, std::string>) {
        spareText.assign(result);
        result.swap(spareText);
      }
      Call(body, result);
    });
  }

  // The instance of this state ends. When that happens inside a yield of one of its own methods, the state lives until
  // the method has returned; a request that is running ends with an error of its own.
  static void Drop(std::unique_ptr<QueryState> state, std::string logPath, std::string sessionId) noexcept;

  // Composes the command part of the elements, sends it and fills the buffer. The status output, when given, receives
  // the error text of a failure; after a success the caller sets it.
  bool Load(std::initializer_list<Variant> elements, Variant* status);

  // A whole method that sends the elements and reads no line of the answer: Long 1 and an empty status, or Integer -1.
  template <typename... Elements>
  Variant Send(std::string_view routine, Variant* status, const Elements&... elements) {
    return RunAs(routine, Variant::Integer(-1), [&](Variant& result) {
      if (!Load({elements...}, status)) return;
      result = Variant::Long(1);
      if (status != nullptr) status->AssignText("");
    });
  }

  // The web user database. Raises Object variable not set when Init did not open it.
  Connection& Database() const {
    if (database == nullptr) throw RuntimeError(error::kObjectNotSet);
    return *database;
  }

  std::shared_ptr<Apartment> apartment;
  HandledError firstError;  // of the method that runs or ran last
  SessionLog log;
  RequestExecution execution;
  ResponseBuffer buffer;
  HitListStore hits;       // those of the last query
  HitListStore givenHits;  // those that the page gave to be sorted
  TextList texts;
  LineRange maskFields;  // the fields of the mask that is being read
  OutlinerList outliner;
  std::string segmentLineBreak = "\r\n";
  std::string spareText;            // memory for the next text that a method returns
  std::string transferDescription;  // the file that was received last, "<path>"
  std::shared_ptr<Connection> database;
  std::shared_ptr<ScriptingContext> context;
  std::shared_ptr<PageRequest> pageRequest;

 private:
  // A method of the instance that is on the stack.
  class RunningMethod {
   public:
    explicit RunningMethod(QueryState& state) noexcept : state_(state) {
      if (state_.runningMethods_++ == 0) state_.firstError.number = 0;
    }
    ~RunningMethod() {
      if (--state_.runningMethods_ == 0 && state_.isDropped_) End(&state_);
    }
    RunningMethod(const RunningMethod&) = delete;
    RunningMethod& operator=(const RunningMethod&) = delete;

   private:
    QueryState& state_;
  };

  template <typename Body, typename... Result>
  void Call(Body& body, Result&... result) {
    if constexpr (std::is_invocable_v<Body&, QueryState&, Result&...>) {
      body(*this, result...);
    } else {
      body(result...);
    }
  }
  static void End(QueryState* state) noexcept;

  int runningMethods_ = 0;
  bool isDropped_ = false;
  // Of a dropped instance: the values of its public variables.
  std::string logPath_;
  std::string sessionId_;
};

// What an archive operation returns on failure.
inline Variant Failed() noexcept { return Variant::Integer(-1); }

// An input, or a text that is sent in its place when it was left out.
inline Variant OrText(const Variant& value, std::string_view text) { return value.IsMissing() ? Variant(text) : value; }

// Writes an output unless it was left out.
inline void WriteText(Variant* output, std::string_view text) {
  if (output != nullptr) output->AssignText(text);
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_QUERY_STATE_H_

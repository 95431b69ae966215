// The functions for queries: variables and calls.
#include "automation/c/queries.h"

#include <cstddef>
#include <utility>

#include "automation/c/values.h"
#include "values/code_page.h"

namespace oxaqrycln::c {
namespace {

// Calls a method; then runs after(arguments).
template <typename After>
std::int32_t CallMethod(oxaqry_query* handle, std::int32_t number, const GivenValues& given, After&& after) noexcept {
  return WithQuery(handle, [&](Query& query, const Finder& finder) -> std::int32_t {
    const MethodEntry* const method = query.MethodOf(number);
    if (method == nullptr) return OXAQRY_E_MEMBER;
    Arguments& arguments = query.arguments();
    const std::int32_t code = arguments.Take(finder, *method, given);
    if (code != OXAQRY_OK) return code;
    struct Releasing {
      Arguments& taken;
      ~Releasing() { taken.Release(); }
    };
    const Releasing atEnd{arguments};
    query.Run([&] {
      Variant returned = method->call(query.instance(), arguments.pointers());
      if (Variant* const result = arguments.result()) result->Replace(returned);
      query.Reuse(returned);  // the text, or the memory of the former text of result
    });
    after(arguments);
    return OXAQRY_OK;
  });
}

}  // namespace

Query::Query() : watch_(instance_) {
  watch_.OnWait([this](const RequestProgress& progress) {
    TakeCancellation();
    KeepProgress(progress);
  });
}

std::string_view Query::Keep(std::size_t place, std::string_view windows1252) {
  std::string& text = texts_.at(place);
  text.clear();
  AppendUtf8(text, windows1252);
  return text;
}

void Query::TakeCancellation() noexcept {
  const bool isCancelled = IsCancelled();
  if (isCancelled == isCancelled_) return;
  isCancelled_ = isCancelled;
  if (isCancelled) {
    watch_.Cancel();
  } else {
    watch_.Resume();
  }
}

void Query::KeepProgress(const RequestProgress& progress) noexcept {
  handle_.shared->sent.store(progress.sent, std::memory_order_relaxed);
  handle_.shared->received.store(progress.received, std::memory_order_relaxed);
  handle_.shared->announced.store(progress.announced, std::memory_order_relaxed);
}

const MethodEntry* Query::FindMethod(std::int32_t number) {
  const MethodEntry* const method = FindMember(number).method;
  if (method != nullptr && !method->isProperty) return lastMethod_ = method;
  Fail(OXAQRY_E_MEMBER, {"there is no method ", std::to_string(number)});
  return nullptr;
}

}  // namespace oxaqrycln::c

using namespace oxaqrycln;
using namespace oxaqrycln::c;

int32_t oxaqry_query_new(oxaqry_query** query) {
  const std::int32_t code = Make<Query>(query);
  if (code != OXAQRY_OK) return code;
  return With<Query>(*query, [&](Query& made) {
    made.Connect(FindShared(*query, HandleKind::Query));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_query_free(oxaqry_query* query) { return FreeHandle(query, HandleKind::Query); }

int32_t oxaqry_get_variable(oxaqry_query* query, int32_t member, oxaqry_value* value) {
  return WithQuery(query, [&](Query& source) {
    return With<Value>(value, [&](Value& target) -> std::int32_t {
      const VariableEntry* const variable = FindMember(member).variable;
      if (variable == nullptr) return Fail(OXAQRY_E_MEMBER, {"there is no variable ", std::to_string(member)});
      target.variant = variable->get(source.instance());
      return OXAQRY_OK;
    });
  });
}

int32_t oxaqry_set_variable(oxaqry_query* query, int32_t member, oxaqry_value* value) {
  return WithQuery(query, [&](Query& target) {
    return With<Value>(value, [&](Value& source) -> std::int32_t {
      const Member found = FindMember(member);
      if (found.variable != nullptr) {
        found.variable->set(target.instance(), source.variant);
      } else if (found.method != nullptr && found.method->isProperty) {
        Variant* const argument = &source.variant;
        target.Run([&] { found.method->call(target.instance(), {&argument, 1}); });
      } else {
        return Fail(OXAQRY_E_MEMBER, {"there is no variable or property ", std::to_string(member)});
      }
      return OXAQRY_OK;
    });
  });
}

int32_t oxaqry_call(oxaqry_query* query, int32_t method, oxaqry_value** values, int32_t count, oxaqry_value* result) {
  return CallMethod(query, method, {values, count, result}, [](const Arguments& /*arguments*/) {});
}

int32_t oxaqry_call_for_texts(oxaqry_query* query, int32_t method, oxaqry_value** values, int32_t count,
                              oxaqry_value* result, int32_t encoding, const char** texts, size_t* lengths) {
  if (texts == nullptr || lengths == nullptr) return IsNull("a list");
  if (!IsEncoding(encoding)) return IsNoEncoding();
  return CallMethod(query, method, {values, count, result},
                    [&](const Arguments& arguments) { arguments.GiveTexts(encoding, texts, lengths); });
}

// The functions for queries: variables and calls.
#include "automation/c/queries.h"

#include <cstddef>
#include <utility>

#include "automation/c/values.h"
#include "values/code_page.h"

namespace oxaqrycln::c {
namespace {

// No method has more parameters.
constexpr std::size_t kMostArguments = 24;

bool IsOutput(ParameterKind kind) noexcept {
  return kind == ParameterKind::OptionalOut || kind == ParameterKind::InOut;
}

bool IsRequired(ParameterKind kind) noexcept { return kind == ParameterKind::In || kind == ParameterKind::InOut; }

// The values of one call, which are in use as long as this lives.
class UsedValues {
 public:
  // Leaves the array as it is, because clearing it takes as long as a short call.
  explicit UsedValues(const Finder& finder) noexcept : finder_(finder) {}  // NOLINT
  ~UsedValues() {
    for (std::size_t i = 0; i < count_; ++i) values_[i]->uses = values_[i]->uses < 0 ? 0 : values_[i]->uses - 1;
  }
  UsedValues(const UsedValues&) = delete;
  UsedValues& operator=(const UsedValues&) = delete;

  // Null after Fail(), with the code.
  Value* Take(const oxaqry_value* handle, bool isWritten, std::int32_t& code) noexcept {
    const FoundObject found = finder_.Find(handle, HandleKind::Value);
    code = found.code;
    if (found.object == nullptr) return nullptr;
    auto& value = static_cast<Value&>(*found.object);
    if (value.uses < 0 || (isWritten && value.uses > 0)) {
      code = Fail(OXAQRY_E_BUSY, {"a value that is written is given twice, or is in use by a running call"});
      return nullptr;
    }
    value.uses = isWritten ? -1 : value.uses + 1;
    values_[count_++] = &value;
    return &value;
  }

 private:
  const Finder& finder_;
  std::array<Value*, kMostArguments + 1> values_;  // the first count_ of them
  std::size_t count_ = 0;
};

class Arguments {
 public:
  explicit Arguments(const Finder& finder) noexcept : used_(finder) {}  // NOLINT: as for UsedValues
  // Reads the values of the caller; returns a code.
  std::int32_t Read(const MethodEntry& method, oxaqry_value* const* values, std::int32_t count) noexcept {
    const std::size_t most = method.parameters.size();
    if (count < 0 || (count > 0 && values == nullptr)) return Fail(OXAQRY_E_ARGUMENT, {"there are no such arguments"});
    if (static_cast<std::size_t>(count) > most || most > kMostArguments) {
      return Fail(OXAQRY_E_COUNT, {"there are too many arguments for ", method.name});
    }
    count_ = static_cast<std::size_t>(count);
    for (std::size_t i = 0; i < most; ++i) {
      const ParameterEntry& parameter = method.parameters[i];
      pointers_[i] = nullptr;
      if (i < count_ && values[i] != nullptr) {
        std::int32_t code = OXAQRY_OK;
        Value* const value = used_.Take(values[i], IsOutput(parameter.kind), code);
        if (value == nullptr) return code;
        pointers_[i] = &value->variant;
      } else if (IsRequired(parameter.kind)) {
        return Fail(OXAQRY_E_COUNT, {"the argument ", parameter.name, " of ", method.name, " is left out"});
      }
    }
    return OXAQRY_OK;
  }
  // Also takes the value for the result, unless it is null.
  std::int32_t ReadResult(const oxaqry_value* handle) noexcept {
    if (handle == nullptr) return OXAQRY_OK;
    std::int32_t code = OXAQRY_OK;
    result_ = used_.Take(handle, true, code);
    return code;
  }

  std::span<Variant* const> pointers() const noexcept { return std::span(pointers_).first(count_); }
  Variant* result() const noexcept { return result_ == nullptr ? nullptr : &result_->variant; }

 private:
  UsedValues used_;
  std::size_t count_ = 0;
  std::array<Variant*, kMostArguments> pointers_;  // as many as the method has parameters
  Value* result_ = nullptr;
};

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
  const bool isCancelled = handle_.shared->cancelled.load(std::memory_order_relaxed) == handle_.generation;
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

const MethodEntry* Query::MethodOf(std::int32_t number) {
  if (lastMethod_ != nullptr && lastMethod_->number == number) return lastMethod_;
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
  const Finder finder;
  finder.ReleaseQueued();
  return With<Query>(finder, query, [&](Query& target) -> std::int32_t {
    const MethodEntry* const entry = target.MethodOf(method);
    if (entry == nullptr) return OXAQRY_E_MEMBER;
    Arguments arguments(finder);
    if (const std::int32_t code = arguments.Read(*entry, values, count); code != OXAQRY_OK) return code;
    if (const std::int32_t code = arguments.ReadResult(result); code != OXAQRY_OK) return code;
    target.Run([&] {
      Variant returned = entry->call(target.instance(), arguments.pointers());
      if (arguments.result() != nullptr) {
        target.Reuse(std::move(*arguments.result()));
        *arguments.result() = std::move(returned);
      } else {
        target.Reuse(std::move(returned));
      }
    });
    return OXAQRY_OK;
  });
}

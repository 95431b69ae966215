// arguments.h - the values of a query's last call, found, checked and in use while the call runs.
// A page that reads a list calls one method over and over with the same values, which are not looked up again then.
#ifndef OXAQRYCLN_AUTOMATION_C_ARGUMENTS_H_
#define OXAQRYCLN_AUTOMATION_C_ARGUMENTS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "automation/c/handle_table.h"
#include "automation/c/values.h"
#include "automation/method_table.h"

namespace oxaqrycln::c {

// What a caller passes for a call; see oxaqry_call().
struct GivenValues {
  oxaqry_value* const* values;
  std::int32_t count;
  const oxaqry_value* result;
};

class Arguments {
 public:
  // Finds the values and takes them into use; returns a code, and uses none when that is no OXAQRY_OK.
  std::int32_t Take(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept;
  // Ends their use.
  void Release() noexcept;

  std::span<Variant* const> pointers() const noexcept { return std::span(pointers_).first(count_); }
  Variant* result() const noexcept { return outputs_[0] == nullptr ? nullptr : &outputs_[0]->variant; }
  // Writes the texts of the result and of the outputs, as oxaqry_call_for_texts() does. Raises Type mismatch.
  void GiveTexts(std::int32_t encoding, const char** texts, std::size_t* lengths) const;

 private:
  static constexpr std::size_t kMost = 24;  // no method has more parameters
  struct Used {
    Value* value;
    bool isWritten;
  };

  bool TakeAgain(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept;
  std::int32_t Find(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept;
  // Null after Fail(), with the code.
  Value* Use(const Finder& finder, const oxaqry_value* handle, bool isWritten, std::int32_t& code) noexcept;
  void Keep(const Finder& finder, const MethodEntry& method, const GivenValues& given) noexcept;

  std::size_t count_ = 0;
  std::array<Variant*, kMost> pointers_{};   // count_ of them
  std::array<Value*, kMost + 1> outputs_{};  // the result, then count_ of them; null for an input and what is left out
  std::array<Used, kMost + 1> used_{};
  std::size_t usedCount_ = 0;

  // What the caller passed for these; method_ is null when it cannot be used again.
  const MethodEntry* method_ = nullptr;
  std::array<const oxaqry_value*, kMost + 1> handles_{};  // the result, then count_ values
  std::uint64_t releases_ = 0;                            // of the thread, when they were found
};

}  // namespace oxaqrycln::c

#endif  // OXAQRYCLN_AUTOMATION_C_ARGUMENTS_H_

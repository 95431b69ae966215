// argument_list.h - the arguments of one call: read from automation before the method runs, and written back after it.
// An instance keeps one list for all its calls, because making it takes as long as a short call.
#ifndef OXAQRYCLN_AUTOMATION_COM_ARGUMENT_LIST_H_
#define OXAQRYCLN_AUTOMATION_COM_ARGUMENT_LIST_H_

#include <ole2.h>

#include <array>
#include <cstddef>
#include <span>

#include "automation/com/com_values.h"
#include "automation/method_table.h"

namespace oxaqrycln::com {

class ArgumentList {
 public:
  ArgumentList() { values_.fill(Missing); }

  // Takes positional, named and omitted arguments, and reads the value of each input. The list is empty before. Raises
  // 450, Type mismatch, Overflow; FailedAt() is then the position in parameters.rgvarg.
  void Read(const MethodEntry& method, const DISPPARAMS& parameters);
  UINT FailedAt() const noexcept { return failedAt_; }

  // For MethodEntry::call: null where an argument was left out.
  std::span<Variant* const> Pointers() const noexcept { return std::span(pointers_).first(count_); }

  // Converts the outputs that the method wrote to the types of their variables. Raises Type mismatch, Overflow; nothing
  // has been written then.
  void ConvertOutputs();
  // Writes them. An output that was passed by value is skipped.
  void WriteOutputs() noexcept;

  // Releases all values.
  void Clear() noexcept;

 private:
  // More than any method has.
  static constexpr std::size_t kMost = 20;

  void Take(VARIANT& given, std::size_t position);

  const MethodEntry* method_ = nullptr;
  std::size_t count_ = 0;  // the last argument that is given is the last one here
  UINT failedAt_ = 0;
  std::array<Variant, kMost> values_;
  std::array<Variant*, kMost> pointers_{};
  std::array<VARIANT*, kMost> targets_{};  // where an output is written: a variable, or a typed reference
  std::array<OwnedVariant, kMost> outputs_;
  std::array<BSTR, kMost> overwritten_{};  // a text of an output's new length, which takes its characters
};

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_ARGUMENT_LIST_H_

// values.h - what a handle of a value or of rows stands for, and texts in the encodings of the C interface.
#ifndef OXAQRYCLN_AUTOMATION_C_VALUES_H_
#define OXAQRYCLN_AUTOMATION_C_VALUES_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/c/handle_table.h"
#include "values/code_page.h"
#include "values/variant.h"

namespace oxaqrycln::c {

struct Value final : HandleObject {
  static constexpr HandleKind kKind = HandleKind::Value;
  Variant variant;
  std::string text;  // what was handed out last, when variant does not hold it

  // In an encoding; valid until the value changes or this is called again. Raises Type mismatch.
  std::string_view Text(std::int32_t encoding) {
    const std::string_view windows1252 = variant.TextView(text);
    return encoding == OXAQRY_WINDOWS_1252 || IsAscii(windows1252) ? windows1252 : KeptUtf8(windows1252);
  }

 private:
  std::string_view KeptUtf8(std::string_view windows1252);
};

// Texts one behind the other. Unlike a std::string it grows without clearing memory that is written next.
class TextBlock {
 public:
  const char* data() const noexcept { return bytes_.get(); }
  std::size_t size() const noexcept { return size_; }
  std::size_t capacity() const noexcept { return capacity_; }
  // Keeps the memory.
  void Clear() noexcept { size_ = 0; }
  // Adds a text of the component in an encoding.
  void Add(std::string_view text, bool isUtf8);

 private:
  void Grow(std::size_t room);

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

// What a list is written into.
struct RowMemory {
  TextBlock block;
  std::vector<std::uint32_t> offsets;
};

class Rows final : public HandleObject {
 public:
  static constexpr HandleKind kKind = HandleKind::Rows;

  // Takes the memory of spare, which its query keeps, and gives it back at its end: a page that reads list after list
  // uses the same.
  explicit Rows(std::shared_ptr<RowMemory> spare);
  ~Rows() override;

  // Adds a text of the component. Raises std::bad_alloc, also when all have more than 4 GiB.
  void Add(std::string_view text, bool isUtf8);
  void Reserve(std::size_t textCount) { memory_.offsets.reserve(textCount + 1); }

  const char* block() const noexcept { return memory_.block.data(); }
  const std::uint32_t* offsets() const noexcept { return memory_.offsets.data(); }

  std::int32_t rowCount = 0;
  std::int32_t columnCount = 0;

 private:
  RowMemory memory_;
  const std::shared_ptr<RowMemory> spare_;
};

inline bool IsEncoding(std::int32_t encoding) noexcept {
  return encoding == OXAQRY_UTF8 || encoding == OXAQRY_WINDOWS_1252;
}

}  // namespace oxaqrycln::c

#endif  // OXAQRYCLN_AUTOMATION_C_VALUES_H_

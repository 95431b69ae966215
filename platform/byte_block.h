// byte_block.h - a growing sequence of bytes that is not initialised: reserving takes addresses, not memory. Growing a
// large block moves its pages, not its bytes.
#ifndef OXAQRYCLN_PLATFORM_BYTE_BLOCK_H_
#define OXAQRYCLN_PLATFORM_BYTE_BLOCK_H_

#include <cstddef>
#include <string_view>
#include <utility>

namespace oxaqrycln {

class ByteBlock {
 public:
  ByteBlock() noexcept = default;
  ~ByteBlock() { Release(); }
  ByteBlock(ByteBlock&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  ByteBlock& operator=(ByteBlock&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
  }

  char* data() noexcept { return data_; }
  const char* data() const noexcept { return data_; }
  std::size_t size() const noexcept { return size_; }
  std::size_t capacity() const noexcept { return capacity_; }
  std::string_view View() const noexcept { return {data_, size_}; }

  // Room for at least this many bytes in all; the bytes held stay. Raises Out of memory.
  void Reserve(std::size_t byteCount);
  // Appends, growing by half as much again when there is no room.
  void Append(std::string_view bytes);
  // Counts bytes that were written after the present ones, inside the capacity.
  void Extend(std::size_t byteCount) noexcept { size_ += byteCount; }
  // Populates the pages for the next bytes, as far as there is room, which costs less than a page fault for each.
  // Returns the position up to which pages are populated, which is after size() unless the block is full.
  std::size_t MakePages(std::size_t byteCount) noexcept;
  void Clear() noexcept { size_ = 0; }
  // Gives the memory back.
  void Release() noexcept;

 private:
  char* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_BYTE_BLOCK_H_

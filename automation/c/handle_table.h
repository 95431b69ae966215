// handle_table.h - the table of all live handles. A handle is no pointer but a place in the table and the number of
// handles that had the place before, so that any value is recognised as live or not. Objects belong to the threads that
// made them; the table is shared by all.
#ifndef OXAQRYCLN_AUTOMATION_C_HANDLE_TABLE_H_
#define OXAQRYCLN_AUTOMATION_C_HANDLE_TABLE_H_

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include "automation/c/boundary.h"

namespace oxaqrycln::c {

enum class HandleKind : std::uint8_t { None, Query, Value, Rows };

// What other threads and signal handlers read and write of a query. Its memory is never freed; another query may use
// it later.
struct SharedState {
  std::atomic<std::uint32_t> cancelled = 0;  // the generation of the handle that is cancelled
  std::atomic<std::int64_t> sent = 0;
  std::atomic<std::int64_t> received = 0;
  std::atomic<std::int64_t> announced = 0;
};

struct HandleObject {
  HandleObject() = default;
  HandleObject(const HandleObject&) = delete;
  HandleObject& operator=(const HandleObject&) = delete;
  virtual ~HandleObject() = default;
  int uses = 0;  // by running calls: readers, or -1 for one that writes
};

// A thread that made handles, as far as other sources see it.
struct ThreadState {
  std::atomic<bool> hasQueue = false;  // other threads have freed handles of it
  std::uint64_t releases = 0;          // how often handles of it were released; of the thread
};
struct ThreadRecord;

// A place in the table. Its memory is never freed, because other threads look at it.
struct alignas(64) Slot {
  std::atomic<std::uint64_t> tag = 0;  // TagOf(); of the last handle, with the kind None when it is not live
  std::atomic<ThreadState*> owner = nullptr;
  std::uint32_t index = 0;
  // Of the owner. The object is owned by the place, which has no destructor, because it must outlive every thread.
  HandleObject* object = nullptr;
  Slot* next = nullptr;
  Slot* previous = nullptr;
  Slot* nextQueued = nullptr;  // guarded by the owner's mutex
  Slot* nextFree = nullptr;    // guarded by the table's mutex
  SharedState shared;
};

// A handle holds an odd number, as no pointer to an object does: 1, the index, the generation.
constexpr unsigned kWordBits = std::numeric_limits<std::uintptr_t>::digits;
constexpr unsigned kGenerationBits = kWordBits == 64 ? 32 : 12;
constexpr unsigned kIndexBits = kWordBits - 1 - kGenerationBits;
constexpr std::uintptr_t kIndexMask = (std::uintptr_t{1} << kIndexBits) - 1;
constexpr std::uint32_t kLastGeneration = kGenerationBits == 32 ? 0xFFFFFFFF : (1U << kGenerationBits) - 1;

// The first places are part of the library, where they are found without a further look; the others are made in blocks.
constexpr std::uint32_t kBlockSize = 2048;
constexpr std::uint32_t kBlocks = kWordBits == 64 ? 0x1000 : (1U << kIndexBits) / kBlockSize;

extern constinit std::array<Slot, kBlockSize> firstSlots;
extern constinit std::array<std::atomic<Slot*>, kBlocks> slotBlocks;  // from the second one on
extern constinit thread_local ThreadState* current;                   // null before the first handle of the thread

constexpr std::uint64_t TagOf(std::uint32_t generation, HandleKind kind) noexcept {
  return std::uint64_t{generation} << 8U | static_cast<std::uint8_t>(kind);
}
struct Live {
  Slot* slot = nullptr;  // null for a handle that is not live, or of another kind
  std::uint64_t tag = 0;
};
inline Live FindSlot(const void* handle, HandleKind kind) noexcept {
  const auto number = reinterpret_cast<std::uintptr_t>(handle);
  const std::uintptr_t index = (number >> 1U) & kIndexMask;
  Slot* block = firstSlots.data();
  if (index >= kBlockSize) {
    if (index >= std::uintptr_t{kBlocks} * kBlockSize) return {};
    block = slotBlocks[index / kBlockSize].load(std::memory_order_acquire);
    if (block == nullptr) return {};
  }
  if ((number & 1U) == 0) return {};
  Slot& slot = block[index % kBlockSize];
  const std::uint64_t tag = TagOf(static_cast<std::uint32_t>(number >> (kIndexBits + 1)), kind);
  return slot.tag.load(std::memory_order_acquire) == tag ? Live{&slot, tag} : Live{};
}

// A live handle as every thread may see it; shared is null when there is none, and code tells why.
struct SharedHandle {
  SharedState* shared = nullptr;
  std::uint32_t generation = 0;
  std::int32_t code = OXAQRY_OK;
};

// To be called before the first object of a thread is made. Raises std::bad_alloc.
void EnterThread();
// Makes a handle of the calling thread. Raises std::bad_alloc.
const void* NewHandle(std::unique_ptr<HandleObject> object, HandleKind kind);
// The state and generation of a live handle, from any thread and in a signal handler.
SharedHandle FindShared(const void* handle, HandleKind kind) noexcept;
// The object of a live handle of the calling thread; null else, and code tells why.
struct FoundObject {
  HandleObject* object = nullptr;
  std::int32_t code = OXAQRY_OK;
};
// Keeps why the calling thread cannot use a handle, whose place is slot when it is live; returns the code.
std::int32_t Refused(const void* handle, const Slot* slot) noexcept;
// Releases what other threads have freed of the calling thread's objects, unless a running call uses it.
void ReleaseQueuedObjects() noexcept;

// Finds objects of the calling thread. It is asked for only once, because that takes as long as to find an object.
class Finder {
 public:
  FoundObject Find(const void* handle, HandleKind kind) const noexcept {
    const Live live = FindSlot(handle, kind);
    if (live.slot == nullptr || live.slot->owner.load(std::memory_order_relaxed) != thread_) [[unlikely]] {
      return {.code = Refused(handle, live.slot)};
    }
    return {live.slot->object};
  }
  // To be called before a function finds its objects.
  void ReleaseQueued() const noexcept {
    if (thread_ != nullptr && thread_->hasQueue.load(std::memory_order_relaxed)) [[unlikely]] {
      ReleaseQueuedObjects();
    }
  }
  // Another number than before when an object that was found may have been released since.
  std::uint64_t releases() const noexcept { return thread_ == nullptr ? 0 : thread_->releases; }

 private:
  const ThreadState* const thread_ = current;
};

// Frees the object of a handle; that of another thread is freed by its thread. From any thread; null is accepted.
std::int32_t FreeHandle(const void* handle, HandleKind kind) noexcept;

// Runs body(object) with the object of a handle that no running call uses.
template <typename Type, typename Body>
std::int32_t With(const Finder& finder, const void* handle, Body&& body) noexcept {
  const FoundObject found = finder.Find(handle, Type::kKind);
  if (found.object == nullptr) return found.code;
  if (found.object->uses != 0) return IsInUse();
  return Guarded([&] { return body(static_cast<Type&>(*found.object)); });
}
template <typename Type, typename Body>
std::int32_t With(const void* handle, Body&& body) noexcept {
  return With<Type>(Finder(), handle, std::forward<Body>(body));
}

// Hands an object out as a new handle. *handle is written only when that succeeds.
template <typename Type, typename Handle>
std::int32_t HandOut(std::unique_ptr<Type> object, Handle** handle) {
  // The caller sees a pointer to an incomplete type, which is never followed.
  *handle = static_cast<Handle*>(const_cast<void*>(NewHandle(std::move(object), Type::kKind)));  // NOLINT
  return OXAQRY_OK;
}

// The same with an object that is made for it.
template <typename Type, typename Handle>
std::int32_t Make(Handle** handle) noexcept {
  if (handle == nullptr) return IsNull("the place for the handle");
  return Guarded([&] {
    EnterThread();
    return HandOut(std::make_unique<Type>(), handle);
  });
}

}  // namespace oxaqrycln::c

#endif  // OXAQRYCLN_AUTOMATION_C_HANDLE_TABLE_H_

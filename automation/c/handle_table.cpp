#include "automation/c/handle_table.h"

#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <mutex>
#include <utility>

#include "component/query_watch.h"
#include "platform/threads/process_fork.h"
#include "platform/threads/thread_exit.h"

namespace oxaqrycln::c {
namespace {

struct ThreadRecord;

// A place in the table. Its memory is never freed, because other threads look at it.
struct Slot {
  std::atomic<std::uint32_t> generation = 0;  // odd while a handle is live
  std::atomic<HandleKind> kind = HandleKind::None;
  std::atomic<ThreadRecord*> owner = nullptr;
  std::uint32_t index = 0;
  SharedState shared;
  // Of the owner.
  std::unique_ptr<HandleObject> object;
  Slot* next = nullptr;
  Slot* previous = nullptr;
  // Guarded by the owner's mutex.
  bool isQueued = false;
  Slot* nextQueued = nullptr;
  // Guarded by the table's mutex.
  Slot* nextFree = nullptr;
};

// A thread that made handles. Its memory is never freed; another thread may use it later.
struct ThreadRecord {
  std::atomic<std::uint32_t> process = 0;  // ForkCount() in the process of the thread
  Slot* first = nullptr;                   // all live handles of the thread
  ThreadRecord* nextFree = nullptr;        // guarded by the table's mutex
  std::atomic<bool> hasQueue = false;
  std::mutex mutex;       // guards the end of a generation, and the queue
  Slot* queue = nullptr;  // what other threads have freed
};

// A handle holds an odd number, as no pointer to an object does: 1, the index, the generation.
constexpr unsigned kWordBits = std::numeric_limits<std::uintptr_t>::digits;
constexpr unsigned kGenerationBits = kWordBits == 64 ? 32 : 12;
constexpr unsigned kIndexBits = kWordBits - 1 - kGenerationBits;
constexpr std::uintptr_t kIndexMask = (std::uintptr_t{1} << kIndexBits) - 1;
constexpr std::uint32_t kLastGeneration = kGenerationBits == 32 ? 0xFFFFFFFF : (1U << kGenerationBits) - 1;

// Block k has 256 * 2^k slots.
constexpr std::uint32_t kFirstBlock = 256;
constexpr unsigned kBlocks = 22;

struct Table {
  std::array<std::atomic<Slot*>, kBlocks> blocks{};
  std::mutex mutex;  // guards what follows
  std::uint32_t count = 0;
  Slot* freeSlots = nullptr;
  ThreadRecord* freeRecords = nullptr;
  bool watchesForks = false;
};
constinit Table table;

constinit thread_local ThreadRecord* current = nullptr;

struct Place {
  unsigned block;
  std::uint32_t offset;
};
constexpr Place PlaceOf(std::uint32_t index) noexcept {
  const auto block = static_cast<unsigned>(std::bit_width(index / kFirstBlock + 1)) - 1;
  return {block, index - kFirstBlock * ((1U << block) - 1)};
}

const void* HandleOf(const Slot& slot, std::uint32_t generation) noexcept {
  const std::uintptr_t number =
      (std::uintptr_t{generation} << (kIndexBits + 1)) | (std::uintptr_t{slot.index} << 1U) | 1U;
  return reinterpret_cast<const void*>(number);
}

struct Live {
  Slot* slot = nullptr;  // null for a handle that is not live, or of another kind
  std::uint32_t generation = 0;
};
Live FindSlot(const void* handle, HandleKind kind) noexcept {
  const auto number = reinterpret_cast<std::uintptr_t>(handle);
  const auto generation = static_cast<std::uint32_t>(number >> (kIndexBits + 1));
  const std::uintptr_t index = (number >> 1U) & kIndexMask;
  if ((number & 1U) == 0 || (generation & 1U) == 0 || index > 0xFFFFFF00U) return {};
  const Place place = PlaceOf(static_cast<std::uint32_t>(index));
  if (place.block >= kBlocks) return {};
  Slot* const block = table.blocks[place.block].load(std::memory_order_acquire);
  if (block == nullptr) return {};
  Slot& slot = block[place.offset];
  if (slot.generation.load(std::memory_order_acquire) != generation) return {};
  if (slot.kind.load(std::memory_order_relaxed) != kind) return {};
  return {&slot, generation};
}

std::int32_t NotLive(const void* handle) noexcept {
  return Fail(OXAQRY_E_HANDLE,
              {handle == nullptr ? "the handle is NULL" : "the handle is freed, or no handle of this type"});
}

std::int32_t Forked() noexcept {
  return Fail(OXAQRY_E_FORKED, {"the handle belongs to the parent process; make another one after fork()"});
}

// Takes a place, with its object; raises std::bad_alloc.
Slot& TakeSlot() {
  const std::lock_guard lock(table.mutex);
  if (Slot* const slot = table.freeSlots) {
    table.freeSlots = slot->nextFree;
    return *slot;
  }
  const Place place = PlaceOf(table.count);
  if (place.block >= kBlocks || table.count > kIndexMask) throw std::bad_alloc();
  std::atomic<Slot*>& block = table.blocks[place.block];
  if (block == nullptr) block = new Slot[kFirstBlock << place.block];  // NOLINT: never freed
  Slot& slot = block[place.offset];
  slot.index = table.count++;
  return slot;
}

// Frees the object of a handle of the calling thread. False when another thread has freed it already.
bool Remove(ThreadRecord& owner, Slot& slot, bool isFromQueue) noexcept {
  const std::uint32_t generation = slot.generation.load(std::memory_order_relaxed);
  {
    const std::lock_guard lock(owner.mutex);
    if (slot.isQueued && !isFromQueue) return false;
    slot.isQueued = false;
    slot.generation.store(generation + 1, std::memory_order_release);
  }
  (slot.previous != nullptr ? slot.previous->next : owner.first) = slot.next;
  if (slot.next != nullptr) slot.next->previous = slot.previous;
  slot.object.reset();
  if (generation >= kLastGeneration - 2) return true;  // the place is used up
  const std::lock_guard lock(table.mutex);
  slot.nextFree = std::exchange(table.freeSlots, &slot);
  return true;
}

// Frees what other threads have freed. What a running call uses stays in the queue.
void FreeQueued(ThreadRecord& mine) noexcept {
  if (mine.process != ForkCount()) return;
  Slot* queue = nullptr;
  {
    const std::lock_guard lock(mine.mutex);
    queue = std::exchange(mine.queue, nullptr);
    mine.hasQueue = false;
  }
  while (queue != nullptr) {
    Slot& slot = *queue;
    queue = slot.nextQueued;
    if (slot.object->uses == 0) {
      Remove(mine, slot, true);
      continue;
    }
    const std::lock_guard lock(mine.mutex);
    slot.nextQueued = std::exchange(mine.queue, &slot);
    mine.hasQueue = true;
  }
}

void EndThread(void* ended) noexcept {
  auto& record = *static_cast<ThreadRecord*>(ended);
  if (record.process != ForkCount()) return;
  FreeQueued(record);
  for (Slot* slot = record.first; slot != nullptr;) {
    Slot* const next = slot->next;
    // A call may be running: a signal handler or a message loop has ended the process.
    if (slot->object->uses == 0) Remove(record, *slot, true);
    slot = next;
  }
  current = nullptr;
  {
    const std::lock_guard lock(record.mutex);
    record.queue = nullptr;
    record.hasQueue = false;
  }
  if (record.first != nullptr) return;
  const std::lock_guard lock(table.mutex);
  record.nextFree = std::exchange(table.freeRecords, &record);
}

void LockTable() { table.mutex.lock(); }
void UnlockTable() { table.mutex.unlock(); }
void UnlockTableOfChild() {
  table.freeRecords = nullptr;  // a thread that the child does not have may hold the mutex of one
  table.mutex.unlock();
}

ThreadRecord& TakeRecord() {
  const std::lock_guard lock(table.mutex);
  if (!table.watchesForks) WatchForks(&LockTable, &UnlockTable, &UnlockTableOfChild);
  table.watchesForks = true;
  if (ThreadRecord* const record = table.freeRecords) {
    table.freeRecords = record->nextFree;
    return *record;
  }
  return *new ThreadRecord;  // NOLINT: never freed
}

// That of the calling thread, made with its first handle in a process.
ThreadRecord& MyRecord() {
  if (current != nullptr && current->process == ForkCount()) return *current;
  ThreadRecord& record = TakeRecord();
  AtThreadExit(&EndThread, &record);
  record.process = ForkCount();
  if (std::exchange(current, &record) != nullptr) QueryWatch::ForgetParentProcess();
  return record;
}

}  // namespace

void EnterThread() { MyRecord(); }

const void* NewHandle(std::unique_ptr<HandleObject> object, HandleKind kind) {
  ThreadRecord& mine = MyRecord();
  if (mine.hasQueue) FreeQueued(mine);
  Slot& slot = TakeSlot();
  slot.object = std::move(object);
  slot.previous = nullptr;
  slot.next = std::exchange(mine.first, &slot);
  if (slot.next != nullptr) slot.next->previous = &slot;
  slot.kind.store(kind, std::memory_order_relaxed);
  slot.owner.store(&mine, std::memory_order_relaxed);
  slot.shared.sent = slot.shared.received = slot.shared.announced = 0;
  const std::uint32_t generation = slot.generation.load(std::memory_order_relaxed) + 1;
  slot.generation.store(generation, std::memory_order_release);
  return HandleOf(slot, generation);
}

SharedHandle FindShared(const void* handle, HandleKind kind) noexcept {
  const Live live = FindSlot(handle, kind);
  if (live.slot == nullptr) return {.code = NotLive(handle)};
  if (live.slot->owner.load(std::memory_order_relaxed)->process != ForkCount()) return {.code = Forked()};
  return {&live.slot->shared, live.generation};
}

FoundObject FindObject(const void* handle, HandleKind kind) noexcept {
  ThreadRecord* const mine = current;
  if (mine != nullptr && mine->hasQueue.load(std::memory_order_relaxed)) [[unlikely]] {
    FreeQueued(*mine);
  }
  const Live live = FindSlot(handle, kind);
  if (live.slot == nullptr) return {.code = NotLive(handle)};
  const ThreadRecord* const owner = live.slot->owner.load(std::memory_order_relaxed);
  if (owner->process.load(std::memory_order_relaxed) != ForkCount()) return {.code = Forked()};
  if (owner != mine) return {.code = Fail(OXAQRY_E_THREAD, {"the handle belongs to another thread"})};
  return {live.slot->object.get()};
}

std::int32_t FreeHandle(const void* handle, HandleKind kind) noexcept {
  if (handle == nullptr) return OXAQRY_OK;
  const Live live = FindSlot(handle, kind);
  if (live.slot == nullptr) return NotLive(handle);
  Slot& slot = *live.slot;
  ThreadRecord& owner = *slot.owner.load(std::memory_order_relaxed);
  if (owner.process != ForkCount()) return Forked();
  if (&owner == current) {
    if (slot.object->uses != 0) return Fail(OXAQRY_E_BUSY, {"a call that uses the handle is running"});
    return Remove(owner, slot, false) ? OXAQRY_OK : NotLive(handle);
  }
  const std::lock_guard lock(owner.mutex);
  const bool isStillLive = slot.generation.load(std::memory_order_relaxed) == live.generation;
  if (!isStillLive || slot.isQueued || slot.owner.load(std::memory_order_relaxed) != &owner) return NotLive(handle);
  slot.isQueued = true;
  slot.nextQueued = std::exchange(owner.queue, &slot);
  owner.hasQueue = true;
  return OXAQRY_OK;
}

}  // namespace oxaqrycln::c

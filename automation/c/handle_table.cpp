#include "automation/c/handle_table.h"

#include <array>
#include <cstddef>
#include <mutex>
#include <utility>

#include "component/query_watch.h"
#include "platform/module_info.h"
#include "platform/threads/process_fork.h"
#include "platform/threads/thread_exit.h"

namespace oxaqrycln::c {

// A thread that made handles. Its memory is never freed; another thread may use it later.
struct ThreadRecord final : ThreadState {
  std::atomic<std::uint32_t> process = 0;  // ForkCount() in the process of the thread
  Slot* first = nullptr;                   // all live handles of the thread
  ThreadRecord* nextFree = nullptr;        // guarded by the table's mutex
  std::mutex mutex;                        // guards the queue
  Slot* queue = nullptr;                   // what other threads have freed: no longer live, and still to be released
};

constinit std::array<Slot, kBlockSize> firstSlots{};
constinit std::array<std::atomic<Slot*>, kBlocks> slotBlocks{};
constinit thread_local ThreadState* current = nullptr;

namespace {

struct Table {
  std::mutex mutex;  // guards what follows
  std::uint32_t count = 0;
  Slot* freeSlots = nullptr;
  ThreadRecord* freeRecords = nullptr;
  bool isPrepared = false;  // for forks, and never to be unloaded
};
// Made with the first handle, and never destroyed: threads may end after the static objects.
Table& TheTable() {
  static auto* const made = new Table;  // NOLINT
  return *made;
}

constexpr std::uint32_t GenerationOf(std::uint64_t tag) noexcept { return static_cast<std::uint32_t>(tag >> 8U); }

const void* HandleOf(const Slot& slot, std::uint32_t generation) noexcept {
  const std::uintptr_t number =
      (std::uintptr_t{generation} << (kIndexBits + 1)) | (std::uintptr_t{slot.index} << 1U) | 1U;
  return reinterpret_cast<const void*>(number);  // NOLINT: never followed
}

std::int32_t NotLive(const void* handle) noexcept {
  return Fail(OXAQRY_E_HANDLE,
              {handle == nullptr ? "the handle is NULL" : "the handle is freed, or no handle of this type"});
}

std::int32_t Forked() noexcept {
  return Fail(OXAQRY_E_FORKED, {"the handle belongs to the parent process; make another one after fork()"});
}

ThreadRecord& OwnerOf(const Slot& slot) noexcept {
  return static_cast<ThreadRecord&>(*slot.owner.load(std::memory_order_relaxed));
}

// Raises std::bad_alloc.
Slot& TakeSlot() {
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  if (Slot* const slot = table.freeSlots) {
    table.freeSlots = slot->nextFree;
    return *slot;
  }
  if (table.count == kBlocks * kBlockSize) throw std::bad_alloc();
  std::atomic<Slot*>& block = slotBlocks[table.count / kBlockSize];
  if (table.count >= kBlockSize && block == nullptr) block = new Slot[kBlockSize];  // NOLINT: never freed
  Slot& slot = (table.count < kBlockSize ? firstSlots.data() : block.load())[table.count % kBlockSize];
  slot.index = table.count++;
  return slot;
}

// Ends the handle with that tag; false when it has ended.
bool EndHandle(Slot& slot, std::uint64_t tag) noexcept {
  return slot.tag.compare_exchange_strong(tag, TagOf(GenerationOf(tag), HandleKind::None));
}

// Releases the object of a handle of the calling thread that has ended, and its place.
void Release(ThreadRecord& owner, Slot& slot) noexcept {
  ++owner.releases;
  (slot.previous != nullptr ? slot.previous->next : owner.first) = slot.next;
  if (slot.next != nullptr) slot.next->previous = slot.previous;
  const std::unique_ptr<HandleObject> object(std::exchange(slot.object, nullptr));
  if (GenerationOf(slot.tag) == kLastGeneration) return;  // the place is used up
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  slot.nextFree = std::exchange(table.freeSlots, &slot);
}

// Releases what other threads have freed. What a running call uses stays in the queue.
void ReleaseQueued(ThreadRecord& mine) noexcept {
  ++mine.releases;  // what stays in the queue is no longer live, either
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
      Release(mine, slot);
      continue;
    }
    const std::lock_guard lock(mine.mutex);
    slot.nextQueued = std::exchange(mine.queue, &slot);
    mine.hasQueue = true;
  }
}

void EndThread(void* ended) noexcept {
  auto& record = *static_cast<ThreadRecord*>(ended);
  if (&record != current) return;  // that of the parent process
  for (Slot* slot = record.first; slot != nullptr;) {
    Slot* const next = slot->next;
    const std::uint64_t tag = slot->tag;
    // A call may be running: a signal handler or a message loop has ended the process.
    const bool isLive = tag != TagOf(GenerationOf(tag), HandleKind::None);
    if (isLive && EndHandle(*slot, tag) && slot->object->uses == 0) Release(record, *slot);
    slot = next;
  }
  ReleaseQueued(record);
  current = nullptr;
  if (record.first != nullptr) return;
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  record.nextFree = std::exchange(table.freeRecords, &record);
}

void LockTable() { TheTable().mutex.lock(); }
void UnlockTable() { TheTable().mutex.unlock(); }
void UnlockTableOfChild() {
  if (std::exchange(current, nullptr) != nullptr) QueryWatch::ForgetParentProcess();
  TheTable().freeRecords = nullptr;  // a thread that the child does not have may hold the mutex of one
  UnlockTable();
}

ThreadRecord& TakeRecord() {
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  if (!table.isPrepared) {
    WatchForks(&LockTable, &UnlockTable, &UnlockTableOfChild);
    KeepThisModule();
    table.isPrepared = true;
  }
  if (ThreadRecord* const record = table.freeRecords) {
    table.freeRecords = record->nextFree;
    return *record;
  }
  return *new ThreadRecord;  // NOLINT: never freed
}

// That of the calling thread, made with its first handle in a process.
ThreadRecord& MyRecord() {
  if (current != nullptr) return static_cast<ThreadRecord&>(*current);
  ThreadRecord& record = TakeRecord();
  AtThreadExit(&EndThread, &record);
  record.process = ForkCount();
  current = &record;
  return record;
}

}  // namespace

void EnterThread() { MyRecord(); }

std::int32_t Refused(const void* handle, const Slot* slot) noexcept {
  if (slot == nullptr) return NotLive(handle);
  if (OwnerOf(*slot).process != ForkCount()) return Forked();
  return Fail(OXAQRY_E_THREAD, {"the handle belongs to another thread"});
}

void ReleaseQueuedObjects() noexcept { ReleaseQueued(static_cast<ThreadRecord&>(*current)); }

const void* NewHandle(std::unique_ptr<HandleObject> object, HandleKind kind) {
  ThreadRecord& mine = MyRecord();
  if (mine.hasQueue) ReleaseQueued(mine);
  Slot& slot = TakeSlot();
  slot.object = object.release();
  slot.previous = nullptr;
  slot.next = std::exchange(mine.first, &slot);
  if (slot.next != nullptr) slot.next->previous = &slot;
  slot.owner.store(&mine, std::memory_order_relaxed);
  slot.shared.sent = slot.shared.received = slot.shared.announced = 0;
  const std::uint32_t generation = GenerationOf(slot.tag.load(std::memory_order_relaxed)) + 1;
  slot.tag.store(TagOf(generation, kind), std::memory_order_release);
  return HandleOf(slot, generation);
}

SharedHandle FindShared(const void* handle, HandleKind kind) noexcept {
  const Live live = FindSlot(handle, kind);
  if (live.slot == nullptr) return {.code = NotLive(handle)};
  if (OwnerOf(*live.slot).process != ForkCount()) return {.code = Forked()};
  return {&live.slot->shared, GenerationOf(live.tag)};
}

std::int32_t FreeHandle(const void* handle, HandleKind kind) noexcept {
  if (handle == nullptr) return OXAQRY_OK;
  const Live live = FindSlot(handle, kind);
  if (live.slot == nullptr) return NotLive(handle);
  Slot& slot = *live.slot;
  ThreadRecord& owner = OwnerOf(slot);
  if (owner.process != ForkCount()) return Forked();
  if (&owner == current) {
    if (slot.object->uses != 0) return IsInUse();
    if (!EndHandle(slot, live.tag)) return NotLive(handle);
    Release(owner, slot);
    if (owner.hasQueue) ReleaseQueued(owner);
    return OXAQRY_OK;
  }
  const std::lock_guard lock(owner.mutex);
  if (!EndHandle(slot, live.tag)) return NotLive(handle);
  slot.nextQueued = std::exchange(owner.queue, &slot);
  owner.hasQueue = true;
  return OXAQRY_OK;
}

}  // namespace oxaqrycln::c

// handle_table.h - the table of all live handles. A handle is no pointer but a place in the table and the number of
// handles that had the place before, so that any value is recognised as live or not. Objects belong to the threads that
// made them; the table is shared by all.
#ifndef OXAQRYCLN_AUTOMATION_C_HANDLE_TABLE_H_
#define OXAQRYCLN_AUTOMATION_C_HANDLE_TABLE_H_

#include <atomic>
#include <cstdint>
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
FoundObject FindObject(const void* handle, HandleKind kind) noexcept;
// Frees the object of a handle; that of another thread is freed by its thread. From any thread; null is accepted.
std::int32_t FreeHandle(const void* handle, HandleKind kind) noexcept;

// Runs body(object) with the object of a handle that no running call uses.
template <typename Type, typename Handle, typename Body>
std::int32_t With(Handle* handle, Body&& body) noexcept {
  const FoundObject found = FindObject(handle, Type::kKind);
  if (found.object == nullptr) return found.code;
  if (found.object->uses != 0) return Fail(OXAQRY_E_BUSY, {"a call that uses the handle is running"});
  return Guarded([&] { return body(static_cast<Type&>(*found.object)); });
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

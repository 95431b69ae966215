// com_owners.h - what holds a reference or a value of automation, and releases it.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_

#include <ole2.h>

#include <utility>

namespace oxaqrycln::asphost {

// A reference to an object, or none.
template <typename Interface>
class ComReference {
 public:
  ComReference() = default;
  // Adds a reference.
  explicit ComReference(Interface* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComReference(ComReference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComReference& operator=(ComReference&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComReference() {
    if (object_ != nullptr) object_->Release();
  }

  Interface* get() const noexcept { return object_; }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  // For a function that returns a reference; of an owner without one only.
  Interface** Receive() noexcept { return &object_; }
  void** ReceiveVoid() noexcept { return reinterpret_cast<void**>(&object_); }

 private:
  Interface* object_ = nullptr;
};

class OwnedVariant {
 public:
  OwnedVariant() noexcept { value_.vt = VT_EMPTY; }
  // Takes over what the value holds.
  explicit OwnedVariant(const VARIANT& value) noexcept : value_(value) {}
  OwnedVariant(OwnedVariant&& other) noexcept : value_(other.Release()) {}
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~OwnedVariant() {
    if (value_.vt != VT_EMPTY) VariantClear(&value_);
  }

  const VARIANT& get() const noexcept { return value_; }
  // For a function that does not change the value, though its declaration would allow it to.
  VARIANT* ForReading() const noexcept { return const_cast<VARIANT*>(&value_); }
  // For a function that returns a value; of an Empty one only.
  VARIANT* Receive() noexcept { return &value_; }
  VARIANT Release() noexcept {
    const VARIANT released = value_;
    value_.vt = VT_EMPTY;
    return released;
  }

 private:
  VARIANT value_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_

// com_owners.h - what holds a reference, a value or the elements of an array of automation, and releases it.
#ifndef OXAQRYCLN_AUTOMATION_COM_COM_OWNERS_H_
#define OXAQRYCLN_AUTOMATION_COM_COM_OWNERS_H_

#include <ole2.h>

#include <utility>

namespace oxaqrycln::com {

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

// The elements of an array, which stays locked meanwhile.
class ArrayData {
 public:
  explicit ArrayData(SAFEARRAY* array) noexcept : result(SafeArrayAccessData(array, &data)), array_(array) {}
  ~ArrayData() {
    if (SUCCEEDED(result)) SafeArrayUnaccessData(array_);
  }
  ArrayData(const ArrayData&) = delete;
  ArrayData& operator=(const ArrayData&) = delete;

  void* data = nullptr;  // only when the result is a success
  const HRESULT result;

 private:
  SAFEARRAY* const array_;
};

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_COM_OWNERS_H_

// script_object.h - the base of the objects that a script sees: names, arguments and errors of automation.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_OBJECT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_OBJECT_H_

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tools/asphost/script/com_owners.h"
#include "tools/asphost/script/script_values.h"

namespace oxaqrycln::asphost {

// The arguments of one call, the first one being 0. Methods that read one which was not given throw ScriptError.
class Arguments {
 public:
  Arguments(const DISPPARAMS& parameters, WORD flags);

  // Whether the call assigns to a property; assigned() is then the new value, which count() leaves out.
  bool IsAssignment() const noexcept { return isAssignment_; }
  const VARIANT& assigned() const noexcept { return parameters_.rgvarg[0]; }

  std::size_t count() const noexcept { return count_; }
  const VARIANT& At(std::size_t position) const;
  std::wstring Text(std::size_t position) const { return TextOf(At(position)); }
  long Number(std::size_t position) const { return NumberOf(At(position)); }

  void RequireCount(std::size_t least, std::size_t most) const;
  // For a property that can only be read.
  void RefuseAssignment() const;

 private:
  const DISPPARAMS& parameters_;
  bool isAssignment_;
  std::size_t count_;
};

class ScriptObjectBase : public IDispatch {
 public:
  ScriptObjectBase() = default;
  ScriptObjectBase(const ScriptObjectBase&) = delete;
  ScriptObjectBase& operator=(const ScriptObjectBase&) = delete;
  virtual ~ScriptObjectBase() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* details, UINT*) override;

  // Calls the default member. Throws ScriptError.
  OwnedVariant CallDefault(Arguments& arguments);

 protected:
  // The position of a name, or -1.
  virtual DISPID Find(std::wstring_view name) const = 0;
  virtual OwnedVariant Call(DISPID member, Arguments& arguments) = 0;
  // Called before every member: throws when the page must not go on.
  virtual void BeforeCall() {}
  // What "For Each" walks through; by default the object has nothing of the kind.
  virtual std::vector<std::wstring> Keys();

 private:
  ULONG references_ = 0;  // an object belongs to the thread of its page
};

// Whether two names are the same, whatever their letter case.
bool IsSameName(std::wstring_view left, std::wstring_view right) noexcept;

template <class Object>
struct Member {
  std::wstring_view name;
  OwnedVariant (Object::*call)(Arguments& arguments);
};

// Object has a function `static std::span<const Member<Object>> Members()`. The first member is the default one.
template <class Object>
class ScriptObject : public ScriptObjectBase {
 protected:
  DISPID Find(std::wstring_view name) const override {
    const auto members = Object::Members();
    for (std::size_t i = 0; i < members.size(); ++i) {
      if (IsSameName(members[i].name, name)) return static_cast<DISPID>(i);
    }
    return DISPID_UNKNOWN;
  }

  OwnedVariant Call(DISPID member, Arguments& arguments) override {
    const auto members = Object::Members();
    if (member < 0 || static_cast<std::size_t>(member) >= members.size()) {
      throw ScriptError{kNotSupported, L"Object doesn't support this property or method"};
    }
    return (static_cast<Object&>(*this).*members[static_cast<std::size_t>(member)].call)(arguments);
  }
};

template <class Object, typename... Values>
ComReference<ScriptObjectBase> MakeObject(Values&&... values) {
  return ComReference<ScriptObjectBase>(std::make_unique<Object>(std::forward<Values>(values)...).release());
}

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_OBJECT_H_

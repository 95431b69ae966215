// registration.h - the entries of class and type library in the system's registry.
#ifndef OXAQRYCLN_AUTOMATION_COM_REGISTRATION_H_
#define OXAQRYCLN_AUTOMATION_COM_REGISTRATION_H_

#include <ole2.h>

namespace oxaqrycln::com {

enum class RegisteredFor { Machine, User };

// Enters the library under its present path. A failure leaves no entry. Raises std::bad_alloc.
HRESULT Register(RegisteredFor whom);
// Removes the entries of this class only: a name that has come to mean another class stays.
HRESULT Unregister(RegisteredFor whom);

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_REGISTRATION_H_

// class_factory.h - makes instances of the class for CoCreateInstance.
#ifndef OXAQRYCLN_AUTOMATION_COM_CLASS_FACTORY_H_
#define OXAQRYCLN_AUTOMATION_COM_CLASS_FACTORY_H_

#include <ole2.h>

namespace oxaqrycln::com {

// The one factory. It has no state and lives as long as the library.
IClassFactory& TheClassFactory() noexcept;

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_CLASS_FACTORY_H_

// script_engine.h - runs one script in the system's VBScript engine.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_ENGINE_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_ENGINE_H_

#include <cstddef>
#include <optional>
#include <string>

#include "tools/asphost/script/class_cache.h"
#include "tools/asphost/script/com_owners.h"

namespace oxaqrycln::asphost {

struct ScriptFailure {
  std::size_t line = 0;  // of the statements, the first one being 0
  std::string text;      // in UTF-8: what the engine says, with the number of the error
};

// Runs the statements with the members of the global object as global names. Returns the error that ended them.
// The thread must have been initialized for COM. Throws ScriptError when there is no engine.
std::optional<ScriptFailure> RunScript(ClassCache& classes, const std::wstring& statements, IDispatch& global);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_ENGINE_H_

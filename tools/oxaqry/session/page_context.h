// page_context.h - a page's scripting context whose request has a given body.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SESSION_PAGE_CONTEXT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SESSION_PAGE_CONTEXT_H_

#include <memory>

#include "component/scripting_context.h"

namespace oxaqrycln::oxaqry {

std::shared_ptr<ScriptingContext> MakePageContext(Variant::Bytes body);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SESSION_PAGE_CONTEXT_H_

// search_arguments.h - the arguments of the commands that run a query.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_ARGUMENTS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_ARGUMENTS_H_

#include "client/archive.h"
#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {

void AddSearchArguments(CLI::App& command, client::SearchOptions& options);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_SEARCH_ARGUMENTS_H_

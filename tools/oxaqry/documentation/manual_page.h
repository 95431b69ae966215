// manual_page.h - the manual page of oxaqry, made from its commands.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_MANUAL_PAGE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_MANUAL_PAGE_H_

#include <CLI/CLI.hpp>
#include <iosfwd>

namespace oxaqrycln::oxaqry {

// Copies the template and replaces three kinds of lines: "@COMMAND search" by the heading of that command, "@OPTIONS
// search" by a list of its options without the settings, "@SETTINGS" by a list of the settings. Raises
// std::runtime_error for an unknown command and when the template leaves a command or its options out.
void WriteManualPage(const CLI::App& app, std::istream& page, std::ostream& out);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_MANUAL_PAGE_H_

// output.h - where a command prints its result and asks its questions.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_OUTPUT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_OUTPUT_H_

#include <iosfwd>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

struct Output {
  std::ostream& out;
  bool json;
  std::istream& in;   // where a question is answered
  std::ostream& err;  // where questions and progress are shown
  Terminals terminals;
  bool color;            // out is a terminal that may be driven
  bool verbose = false;  // err shows every attempt of every request
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_OUTPUT_H_

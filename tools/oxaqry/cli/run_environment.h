// run_environment.h - the streams, terminals and environment variables of a run.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_

#include <iosfwd>

#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

// Which of the streams are terminals.
struct Terminals {
  bool in = false;
  bool out = false;
  bool err = false;
};

struct RunEnvironment {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  Settings::Environment environment;
  Terminals terminals = {};
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_RUN_ENVIRONMENT_H_

// surroundings.h - what a run of oxaqry has around it: streams, terminals, environment.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SURROUNDINGS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SURROUNDINGS_H_

#include <iosfwd>

#include "tools/oxaqry/settings.h"

namespace oxaqrycln {

// Which of the streams a person sits at.
struct Terminals {
  bool in = false;
  bool out = false;
  bool err = false;
};

struct Surroundings {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  Settings::Environment environment;
  Terminals terminals = {};
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SURROUNDINGS_H_

// commands.h - what oxaqry does for people: each command talks to the query servers and prints what came.
// A table, or with Output::json one JSON document. Each returns the exit status and raises CommandError or ValueError
// when it cannot do its work. The texts that a person gave are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_COMMANDS_H_

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>

#include "tools/oxaqry/settings.h"
#include "tools/oxaqry/surroundings.h"

namespace oxaqrycln {

struct Output {
  std::ostream& out;
  bool json;
  std::istream& in;   // where a question is answered
  std::ostream& err;  // where questions and progress are shown
  Terminals terminals;
  bool color;  // out is a terminal that may be driven
};

// Arguments that do not fit together; the exit status is 2.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct SearchRequest {
  std::string query;
  std::int32_t maxLines = 100;
  std::int32_t maxHits = 1000;
  std::string format;
  std::string rights;
  std::string layoutId;
  std::string layoutFieldId;
  std::optional<std::string> sort;  // "COLUMN[:desc]"
};

int Live(const Settings& settings, const Output& output);
int Direct(const Settings& settings, const std::string& text, const Output& output);
int Channels(const Settings& settings, const Output& output);
int AllArchives(const Settings& settings, const Output& output);
// Every channel with its archives and their comments.
int ArchivesByChannel(const Settings& settings, const Output& output);
int Formats(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output);
int Properties(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output);
int Search(const Settings& settings, const SearchRequest& request, const Output& output);
// One check of each server; 1 when a server did not answer.
int Servers(const Settings& settings, const Output& output);
int WriteTest(const Settings& settings, const Output& output);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_COMMANDS_H_

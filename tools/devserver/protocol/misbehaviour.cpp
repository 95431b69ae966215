#include "tools/devserver/protocol/misbehaviour.h"

#include <limits>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

enum class Argument { kNone, kNumber, kOptionalNumber, kText };

struct ModeName {
  std::string_view name;
  Misbehaviour::Mode mode;
  Argument argument;
};

constexpr ModeName kModeNames[] = {
    {"none", Misbehaviour::Mode::kNone, Argument::kNone},
    {"refuse", Misbehaviour::Mode::kRefuse, Argument::kNone},
    {"delay", Misbehaviour::Mode::kDelay, Argument::kNumber},
    {"silent", Misbehaviour::Mode::kSilent, Argument::kNone},
    {"cut", Misbehaviour::Mode::kCut, Argument::kNumber},
    {"reset", Misbehaviour::Mode::kReset, Argument::kNumber},
    {"bytewise", Misbehaviour::Mode::kBytewise, Argument::kOptionalNumber},
    {"count", Misbehaviour::Mode::kCount, Argument::kText},
    {"no-header", Misbehaviour::Mode::kNoHeader, Argument::kNone},
    {"never-read", Misbehaviour::Mode::kNeverRead, Argument::kNone},
};

std::uint32_t NumberOf(std::string_view mode, std::string_view text) {
  const auto number = ParseNumber(text);
  if (!number || *number > std::numeric_limits<std::uint32_t>::max()) {
    throw ServerError("misbehaviour '" + std::string(mode) + "' needs a number, as in '" + std::string(mode) + ":100'");
  }
  return static_cast<std::uint32_t>(*number);
}

}  // namespace

Misbehaviour ParseMisbehaviour(std::string_view text) {
  const std::size_t colon = text.find(':');
  const bool hasArgument = colon != std::string_view::npos;
  const std::string_view name = text.substr(0, colon);
  const std::string_view argument = hasArgument ? text.substr(colon + 1) : std::string_view();
  for (const ModeName& known : kModeNames) {
    if (known.name != name) continue;
    Misbehaviour misbehaviour{known.mode, 0, {}};
    if (known.argument == Argument::kNone && hasArgument) {
      throw ServerError("misbehaviour '" + std::string(name) + "' takes no argument");
    }
    if (known.argument == Argument::kNumber || (known.argument == Argument::kOptionalNumber && hasArgument)) {
      misbehaviour.number = NumberOf(name, argument);
    }
    if (known.argument == Argument::kText) {
      if (!hasArgument) throw ServerError("misbehaviour 'count' needs a text, as in 'count:-5'");
      misbehaviour.text = argument;
    }
    return misbehaviour;
  }
  throw ServerError("unknown misbehaviour '" + std::string(name) + "'");
}

std::string WireBytes(std::string_view answer, const Misbehaviour& misbehaviour) {
  if (misbehaviour.mode == Misbehaviour::Mode::kNoHeader) return std::string(answer);
  const bool lies = misbehaviour.mode == Misbehaviour::Mode::kCount;
  std::string bytes = "TotalBytes:" + (lies ? misbehaviour.text : std::to_string(answer.size())) + "\r\n";
  bytes += answer;
  return bytes;
}

}  // namespace oxaqrycln::devserver

#include "tools/devserver/protocol/misbehaviour.h"

#include <algorithm>
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

using Mode = Misbehaviour::Mode;

constexpr ModeName kModes[] = {
    {"none", Mode::kNone, Argument::kNone},
    {"refuse", Mode::kRefuse, Argument::kNone},
    {"delay", Mode::kDelay, Argument::kNumber},
    {"silent", Mode::kSilent, Argument::kNone},
    {"cut", Mode::kCut, Argument::kNumber},
    {"reset", Mode::kReset, Argument::kNumber},
    {"bytewise", Mode::kBytewise, Argument::kOptionalNumber},
    {"count", Mode::kCount, Argument::kText},
    {"no-header", Mode::kNoHeader, Argument::kNone},
    {"never-read", Mode::kNeverRead, Argument::kNone},
};

}  // namespace

Misbehaviour ParseMisbehaviour(std::string_view text) {
  const std::size_t colon = std::min(text.find(':'), text.size());
  const bool hasArgument = colon < text.size();
  const std::string name(text.substr(0, colon));
  const auto* const known = std::ranges::find(kModes, name, &ModeName::name);
  if (known == std::end(kModes)) throw ServerError("unknown misbehaviour '" + name + "'");
  Misbehaviour misbehaviour{known->mode, 0, {}};
  if (known->argument == Argument::kNone && hasArgument) {
    throw ServerError("misbehaviour '" + name + "' takes no argument");
  }
  if (known->argument == Argument::kText && !hasArgument) {
    throw ServerError("misbehaviour '" + name + "' needs a text, as in '" + name + ":-5'");
  }
  if (hasArgument) misbehaviour.text = text.substr(colon + 1);
  if (known->argument == Argument::kNumber || (known->argument == Argument::kOptionalNumber && hasArgument)) {
    const auto number = ParseNumber(misbehaviour.text);
    if (!number || *number > std::numeric_limits<std::uint32_t>::max()) {
      throw ServerError("misbehaviour '" + name + "' needs a number, as in '" + name + ":100'");
    }
    misbehaviour.number = static_cast<std::uint32_t>(*number);
  }
  return misbehaviour;
}

std::string WireBytes(std::string_view answer, const Misbehaviour& misbehaviour) {
  if (misbehaviour.mode == Mode::kNoHeader) return std::string(answer);
  const bool lies = misbehaviour.mode == Mode::kCount;
  return "TotalBytes:" + (lies ? misbehaviour.text : std::to_string(answer.size())) + "\r\n" + std::string(answer);
}

}  // namespace oxaqrycln::devserver

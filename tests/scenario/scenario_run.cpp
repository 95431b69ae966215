#include "tests/scenario/scenario_run.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include "component/memory_request.h"

namespace oxaqrycln::testing {
namespace {

std::string Escaped(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string result;
  for (const char each : text) {
    const auto byte = static_cast<std::uint8_t>(each);
    if (byte >= 32 && byte < 127 && each != '"' && each != '\\') {
      result += each;
    } else {
      result.append("\\x").append(1, kHex[byte / 16]).append(1, kHex[byte % 16]);
    }
  }
  return "\"" + result + "\"";
}

std::string Shown(const Variant& value) {
  const std::string kind(value.TypeName());
  switch (value.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null:
      return kind;
    case Variant::Type::Date:
      return kind + " " + value.ToDate().ToIso();
    case Variant::Type::String:
      return kind + " " + Escaped(value.ToText());
    default:
      return kind + " " + value.ToText();
  }
}

}  // namespace

ScenarioRun::ScenarioRun(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const std::size_t end = argument.find('=');
    texts_.emplace(argument.substr(0, end), argument.substr(end + 1));
  }
  New("q");
}

std::string ScenarioRun::Filled(std::string_view text) const {
  std::string filled(text);
  for (const auto& [name, value] : texts_) {
    const std::string mark = "{" + name + "}";
    for (std::size_t at; (at = filled.find(mark)) != std::string::npos;) filled.replace(at, mark.size(), value);
  }
  return filled;
}

void ScenarioRun::Say(std::string_view line) const {
  std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
  std::fflush(stdout);  // so that the transcript of a program that ends early is complete
}

void ScenarioRun::Show(std::string_view title, const Variant& result,
                       std::initializer_list<const Variant*> outputs) const {
  std::vector<Variant> values;
  for (const Variant* const output : outputs) values.push_back(*output);
  Show(title, result, values);
}

void ScenarioRun::Show(std::string_view title, const Variant& result, std::span<const Variant> outputs) const {
  std::string line = std::string(title) + " = " + Shown(result);
  for (const Variant& output : outputs) line += "; " + Shown(output);
  Say(line);
}

Variant PageWithBody(std::string_view body) { return Variant::ObjectRef(MemoryContext(std::string(body))); }

}  // namespace oxaqrycln::testing

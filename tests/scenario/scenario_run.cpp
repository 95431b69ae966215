#include "tests/scenario/scenario_run.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "component/scripting_context.h"

namespace oxaqrycln::testing {
namespace {

class BodyRequest final : public PageRequest {
 public:
  explicit BodyRequest(std::string_view body) : body_(body) {}
  std::int64_t TotalBytes() const override { return static_cast<std::int64_t>(body_.size()); }
  Variant::Bytes BinaryRead(std::int64_t byteCount) override {
    const std::string piece = body_.substr(position_, static_cast<std::size_t>(byteCount));
    position_ += piece.size();
    return {piece.begin(), piece.end()};
  }

 private:
  const std::string body_;
  std::size_t position_ = 0;
};

class BodyPage final : public ScriptingContext {
 public:
  explicit BodyPage(std::string_view body) : request_(std::make_shared<BodyRequest>(body)) {}
  std::shared_ptr<PageRequest> Request() override { return request_; }

 private:
  std::shared_ptr<PageRequest> request_;
};

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
  std::string line = std::string(title) + " = " + Shown(result);
  for (const Variant* const output : outputs) line += "; " + Shown(*output);
  Say(line);
}

Variant PageWithBody(std::string_view body) { return Variant::ObjectRef(std::make_shared<BodyPage>(body)); }

}  // namespace oxaqrycln::testing

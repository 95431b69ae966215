#include "tools/oxaqry/session/session.h"

#include <array>
#include <initializer_list>
#include <istream>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "automation/method_table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/session/argument.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string Quoted(const std::string& name) { return "\"" + name + "\""; }

const std::string& NameFrom(const Json& json, const char* what) {
  if (!json.is_string()) throw ValueError(std::string(what) + " must be a text");
  return json.get_ref<const std::string&>();
}

Json Parse(const std::string& line) {
  const auto boundDepth = [](int depth, Json::parse_event_t event, const Json&) {
    const bool opens = event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
    if (opens && depth >= kMaxJsonDepth) throw ValueError("the line is nested too deeply");
    return true;
  };
  try {
    Json request = Json::parse(line, boundDepth);
    if (!request.is_object()) throw ValueError("the line is not a JSON object");
    return request;
  } catch (const Json::exception& error) {
    throw ValueError(std::string("the line is not JSON: ") + error.what());
  }
}

// Refuses a misspelt member, which would otherwise be ignored.
void AllowMembers(const Json& request, std::initializer_list<const char*> names) {
  for (const auto& member : request.items()) {
    bool isKnown = false;
    for (const char* const name : names) isKnown = isKnown || member.key() == name;
    if (!isKnown) throw ValueError("unknown member " + Quoted(member.key()));
  }
}

void Assign(clsQuery& query, const std::string& name, const Json& json) {
  const Argument argument = ArgumentFromJson(json);
  if (argument.isLeftOut || argument.isReference) throw ValueError(Quoted(name) + " needs a value");
  Variant value = argument.value;
  const MethodEntry* const property = FindMethod(name);
  if (const VariableEntry* const variable = FindVariable(name)) {
    variable->set(query, value);
  } else if (property != nullptr && property->isProperty) {
    const std::array<Variant*, 1> arguments{&value};
    property->call(query, arguments);
  } else {
    throw ValueError("there is no public variable " + Quoted(name));
  }
}

class Session {
 public:
  Session() { instances_.emplace("q", std::make_unique<clsQuery>()); }

  // The answer to one line; never fails.
  Json Answer(const std::string& line) {
    try {
      return Dispatch(Parse(line));
    } catch (const RuntimeError& error) {
      return {{"error", std::to_string(error.number()) + " - " + error.description()}};
    } catch (const std::exception& error) {
      return {{"error", error.what()}};
    }
  }

 private:
  Json Dispatch(const Json& request) {
    if (request.contains("new")) {
      AllowMembers(request, {"new"});
      return New(request["new"]);
    }
    if (request.contains("drop")) {
      AllowMembers(request, {"drop"});
      return Drop(request["drop"]);
    }
    if (request.contains("set")) return Set(request);
    if (request.contains("get")) return Get(request);
    if (request.contains("call")) return Call(request);
    throw ValueError(R"(the line asks for nothing: give "new", "set", "get", "call" or "drop")");
  }

  Json New(const Json& json) {
    const std::string& name = NameFrom(json, "an instance's name");
    if (instances_.contains(name)) throw ValueError("the instance " + Quoted(name) + " exists already");
    instances_.emplace(name, std::make_unique<clsQuery>());
    return {{"ok", true}};
  }

  Json Drop(const Json& json) {
    const std::string& name = NameFrom(json, "an instance's name");
    if (instances_.erase(name) == 0) throw ValueError("there is no instance " + Quoted(name));
    return {{"ok", true}};
  }

  clsQuery& Instance(const Json& request) {
    const std::string name = request.contains("on") ? NameFrom(request["on"], "\"on\"") : "q";
    const auto found = instances_.find(name);
    if (found == instances_.end()) throw ValueError("there is no instance " + Quoted(name));
    return *found->second;
  }

  Json Set(const Json& request) {
    AllowMembers(request, {"set", "on"});
    const Json& values = request["set"];
    if (!values.is_object()) throw ValueError(R"("set" must be an object of names and values)");
    clsQuery& query = Instance(request);
    for (const auto& member : values.items()) Assign(query, member.key(), member.value());
    return {{"ok", true}};
  }

  Json Get(const Json& request) {
    AllowMembers(request, {"get", "on"});
    const Json& names = request["get"];
    if (!names.is_array()) throw ValueError(R"("get" must be a list of names)");
    const clsQuery& query = Instance(request);
    Json values = Json::object();
    for (const Json& json : names) {
      const std::string& name = NameFrom(json, "a variable's name");
      const VariableEntry* const variable = FindVariable(name);
      if (variable == nullptr) throw ValueError("there is no readable public variable " + Quoted(name));
      values[name] = TypedJsonFromValue(variable->get(query));
    }
    return {{"values", std::move(values)}};
  }

  Json Call(const Json& request) {
    AllowMembers(request, {"call", "args", "on"});
    const std::string& name = NameFrom(request["call"], "a method's name");
    const MethodEntry* const method = FindMethod(name);
    if (method == nullptr || method->isProperty) throw ValueError("there is no method " + Quoted(name));
    const Json given = request.contains("args") ? request["args"] : Json::array();
    if (!given.is_array()) throw ValueError(R"("args" must be a list of arguments)");
    std::vector<Argument> arguments;
    arguments.reserve(given.size());
    for (const Json& json : given) arguments.push_back(ArgumentFromJson(json));
    std::vector<Variant*> pointers;
    for (Argument& argument : arguments) pointers.push_back(argument.isLeftOut ? nullptr : &argument.value);

    const Variant result = method->call(Instance(request), pointers);
    Json refs = Json::array();
    for (const Argument& argument : arguments) {
      if (argument.isReference) refs.push_back(TypedJsonFromValue(argument.value));
    }
    return {{"result", JsonFromValue(result)}, {"type", std::string(result.TypeName())}, {"refs", std::move(refs)}};
  }

  std::map<std::string, std::unique_ptr<clsQuery>> instances_;
};

enum class LineState { Read, TooLong, End };

// The next line without its end. Takes what has arrived instead of waiting for a full buffer.
LineState ReadLine(std::istream& in, std::string& line) {
  line.clear();
  bool isTooLong = false;
  std::vector<char> piece(std::size_t{64} << 10);
  for (;;) {
    in.getline(piece.data(), static_cast<std::streamsize>(piece.size()));
    const auto count = static_cast<std::size_t>(in.gcount());
    const bool endsLine = in.good();
    const bool isCutShort = !endsLine && !in.eof() && !in.bad() && count + 1 == piece.size();
    isTooLong = isTooLong || line.size() + count > kMaxLineBytes;
    if (isTooLong) {
      line.clear();
    } else {
      line.append(piece.data(), endsLine ? count - 1 : count);
    }
    if (isCutShort) {
      in.clear();
      continue;
    }
    if (!endsLine && line.empty() && !isTooLong) return LineState::End;
    return isTooLong ? LineState::TooLong : LineState::Read;
  }
}

}  // namespace

int RunSession(std::istream& in, std::ostream& out) {
  Session session;
  std::string line;
  for (LineState state = ReadLine(in, line); state != LineState::End; state = ReadLine(in, line)) {
    const Json answer =
        state == LineState::TooLong ? Json{{"error", "the line is longer than 64 MiB"}} : session.Answer(line);
    out << answer.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
    if (!out) return 1;
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry

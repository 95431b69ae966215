#include "tests/scenario/c_scenario_run.h"

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tests/scenario/scenario_run.h"

using namespace oxaqrycln;

namespace {

testing::ScenarioRun* run = nullptr;  // fills texts and prints lines
std::map<std::string, oxaqry_query*> instances;

void Check(std::int32_t code) {
  if (code == OXAQRY_OK) return;
  std::cerr << oxaqry_last_error() << '\n';
  std::exit(1);
}

oxaqry_value* NewValue() {
  oxaqry_value* value = nullptr;
  Check(oxaqry_value_new(&value));
  return value;
}

std::int32_t MemberOf(std::string_view name) {
  std::int32_t found = 0;
  Check(oxaqry_find_member(name.data(), name.size(), &found));
  return found;
}

// What a value holds, read through the C interface in its own kind.
Variant Content(oxaqry_value* value) {
  std::int32_t kind = 0;
  std::int32_t number = 0;
  std::int64_t seconds = 0;
  const char* bytes = nullptr;
  std::size_t length = 0;
  Check(oxaqry_value_kind(value, &kind));
  switch (kind) {
    case OXAQRY_EMPTY:
      return {};
    case OXAQRY_NULL:
      return Variant::Null();
    case OXAQRY_DATE:
      Check(oxaqry_value_get_date(value, &seconds));
      return DateTime::FromSeconds(seconds);
    case OXAQRY_TEXT:
      Check(oxaqry_value_get_text(value, OXAQRY_WINDOWS_1252, &bytes, &length));
      return std::string(bytes, length);
    default:
      Check(oxaqry_value_get_long(value, &number));
      if (kind == OXAQRY_BOOLEAN) return number != 0;
      if (kind == OXAQRY_BYTE) return static_cast<std::uint8_t>(number);
      return kind == OXAQRY_INTEGER ? Variant(static_cast<std::int16_t>(number)) : Variant(number);
  }
}

}  // namespace

void begin(int argc, char** argv) {
  run = new testing::ScenarioRun(argc, argv);  // NOLINT: until the end
  new_instance("q");
}

void new_instance(const char* name) { Check(oxaqry_query_new(&instances[name])); }

void drop_instance(const char* name) { Check(oxaqry_query_free(instances.at(name))); }

oxaqry_value* text(const char* bytes, size_t length) {
  const std::string filled = run->Filled({bytes, length});
  oxaqry_value* const value = NewValue();
  Check(oxaqry_value_set_text(value, filled.data(), filled.size(), OXAQRY_WINDOWS_1252));
  return value;
}

oxaqry_value* request(const char* body, size_t length) {
  oxaqry_value* const value = NewValue();
  Check(oxaqry_value_set_request(value, body, length));
  return value;
}

oxaqry_value* date(const char* iso) {
  oxaqry_value* const value = NewValue();
  Check(oxaqry_value_set_date(value, DateTime::FromIso(iso)->seconds()));
  return value;
}

oxaqry_value* number(int32_t kind, int32_t content) {
  oxaqry_value* const value = NewValue();
  if (kind == OXAQRY_NULL) Check(oxaqry_value_set_null(value));
  if (kind == OXAQRY_BOOLEAN) Check(oxaqry_value_set_boolean(value, content));
  if (kind == OXAQRY_BYTE) Check(oxaqry_value_set_byte(value, static_cast<std::uint8_t>(content)));
  if (kind == OXAQRY_INTEGER) Check(oxaqry_value_set_integer(value, static_cast<std::int16_t>(content)));
  if (kind == OXAQRY_LONG) Check(oxaqry_value_set_long(value, content));
  return value;
}

void say(const char* line) { run->Say(line); }

void set(const char* instance, const char* variable, oxaqry_value* value) {
  Check(oxaqry_set_variable(instances.at(instance), MemberOf(variable), value));
  Check(oxaqry_value_free(value));
}

void show(const char* title, const char* instance, const char* variable) {
  oxaqry_value* const value = NewValue();
  Check(oxaqry_get_variable(instances.at(instance), MemberOf(variable), value));
  run->Show(title, Content(value), std::span<const Variant>());
  Check(oxaqry_value_free(value));
}

void call(const char* title, const char* instance, const char* method, oxaqry_value** values, int32_t count,
          const int32_t* shown, int32_t shown_count) {
  oxaqry_value* const result = NewValue();
  Check(oxaqry_call(instances.at(instance), MemberOf(method), values, count, result));
  std::vector<Variant> outputs;
  for (std::int32_t i = 0; i < shown_count; ++i) outputs.push_back(Content(values[shown[i]]));
  run->Show(title, Content(result), outputs);
  for (std::int32_t i = 0; i < count; ++i) Check(oxaqry_value_free(values[i]));
  Check(oxaqry_value_free(result));
}

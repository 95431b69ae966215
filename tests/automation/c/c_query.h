// c_query.h - a query and its values through the C interface, for tests. Every code other than OXAQRY_OK that a test
// does not ask for is a failure.
#ifndef OXAQRYCLN_TESTS_AUTOMATION_C_C_QUERY_H_
#define OXAQRYCLN_TESTS_AUTOMATION_C_C_QUERY_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/c/oxaqrycln.h"

namespace oxaqrycln::testing {

inline void Ok(std::int32_t code) { EXPECT_EQ(code, OXAQRY_OK) << oxaqry_last_error(); }

inline std::int32_t MemberOf(std::string_view name) {
  std::int32_t number = 0;
  Ok(oxaqry_find_member(name.data(), name.size(), &number));
  return number;
}

class CValue {
 public:
  CValue() { Ok(oxaqry_value_new(&handle_)); }
  explicit CValue(std::string_view text) : CValue() {
    Ok(oxaqry_value_set_text(handle_, text.data(), text.size(), OXAQRY_UTF8));
  }
  ~CValue() { oxaqry_value_free(handle_); }
  CValue(const CValue&) = delete;
  CValue& operator=(const CValue&) = delete;

  operator oxaqry_value*() const noexcept { return handle_; }
  std::string Text(std::int32_t encoding = OXAQRY_UTF8) const {
    const char* text = nullptr;
    std::size_t length = 0;
    Ok(oxaqry_value_get_text(handle_, encoding, &text, &length));
    return {text, length};
  }

 private:
  oxaqry_value* handle_ = nullptr;
};

class CQuery {
 public:
  explicit CQuery(std::string_view hosts = "") {
    Ok(oxaqry_query_new(&handle_));
    Set("strSessionID", "S1");
    Set("lngRequestTimeout", "10");
    if (!hosts.empty()) Set("RemoteHosts", hosts);
  }
  ~CQuery() { oxaqry_query_free(handle_); }
  CQuery(const CQuery&) = delete;
  CQuery& operator=(const CQuery&) = delete;

  operator oxaqry_query*() const noexcept { return handle_; }
  void Set(std::string_view variable, std::string_view text) {
    Ok(oxaqry_set_variable(handle_, MemberOf(variable), CValue(text)));
  }
  // Calls with values or null pointers; returns the result as a text.
  std::string Call(std::string_view method, std::vector<oxaqry_value*> values = {}) {
    const CValue result;
    Ok(oxaqry_call(handle_, MemberOf(method), values.data(), static_cast<std::int32_t>(values.size()), result));
    return result.Text();
  }
  std::string Init() {
    const CValue noDatabase("False");
    return Call("Init", {noDatabase});
  }
  std::int32_t Outcome() {
    std::int32_t kind = -1;
    Ok(oxaqry_outcome(handle_, &kind, nullptr, nullptr, nullptr));
    return kind;
  }

 private:
  oxaqry_query* handle_ = nullptr;
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_AUTOMATION_C_C_QUERY_H_

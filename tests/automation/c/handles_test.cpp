#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/automation/c/c_query.h"
#include "tests/support/allocations.h"
#include "tests/support/in_own_thread.h"
#include "tests/support/scripted_server.h"
#include "transport/apartment.h"

namespace oxaqrycln::testing {
namespace {

// A function that takes a handle, with otherwise sound arguments.
struct HandleCall {
  const char* name;
  std::function<std::int32_t(void*)> call;
};

oxaqry_query* AsQuery(void* handle) { return static_cast<oxaqry_query*>(handle); }
oxaqry_value* AsValue(void* handle) { return static_cast<oxaqry_value*>(handle); }

std::int32_t Fetch(oxaqry_query* query) {
  oxaqry_rows* rows = nullptr;
  const std::int32_t code =
      oxaqry_fetch_rows(query, MemberOf("TELOGetChannelsNext"), 1, nullptr, 0, OXAQRY_UNTIL_END, OXAQRY_UTF8, &rows);
  oxaqry_rows_free(rows);
  return code;
}

const std::vector<HandleCall> kQueryCalls = {
    {"call", [](void* it) { return oxaqry_call(AsQuery(it), MemberOf("HelloWorld"), nullptr, 0, nullptr); }},
    {"call_for_texts",
     [](void* it) {
       const char* text = nullptr;
       std::size_t length = 0;
       return oxaqry_call_for_texts(AsQuery(it), MemberOf("HelloWorld"), nullptr, 0, nullptr, OXAQRY_UTF8, &text,
                                    &length);
     }},
    {"check_servers",
     [](void* it) {
       oxaqry_rows* rows = nullptr;
       const std::int32_t code = oxaqry_check_servers(AsQuery(it), "", 0, &rows);
       oxaqry_rows_free(rows);
       return code;
     }},
    {"get_variable", [](void* it) { return oxaqry_get_variable(AsQuery(it), 1, CValue()); }},
    {"set_variable", [](void* it) { return oxaqry_set_variable(AsQuery(it), 1, CValue("1")); }},
    {"fetch_rows", [](void* it) { return Fetch(AsQuery(it)); }},
    {"outcome", [](void* it) { return oxaqry_outcome(AsQuery(it), nullptr, nullptr, nullptr, nullptr); }},
    {"outcome_text", [](void* it) { return oxaqry_outcome_text(AsQuery(it), nullptr, nullptr); }},
    {"handled_error", [](void* it) { return oxaqry_handled_error(AsQuery(it), nullptr, nullptr, nullptr); }},
    {"set_sick_servers", [](void* it) { return oxaqry_set_sick_servers(AsQuery(it), OXAQRY_TRIED_LAST); }},
};

const std::vector<HandleCall> kValueCalls = {
    {"set_long", [](void* it) { return oxaqry_value_set_long(AsValue(it), 1); }},
    {"set_text", [](void* it) { return oxaqry_value_set_text(AsValue(it), "x", 1, OXAQRY_UTF8); }},
    {"kind",
     [](void* it) {
       std::int32_t kind = 0;
       return oxaqry_value_kind(AsValue(it), &kind);
     }},
    {"in a call",
     [](void* it) {
       oxaqry_value* values[] = {AsValue(it), AsValue(it)};
       return oxaqry_call(CQuery(), MemberOf("WriteLog"), values, it == nullptr ? -1 : 2, nullptr);
     }},
};

TEST(CHandles, ThatAreNotLiveAreRefusedByEveryFunction) {
  oxaqry_query* freedQuery = nullptr;
  oxaqry_value* freedValue = nullptr;
  Ok(oxaqry_query_new(&freedQuery));
  Ok(oxaqry_query_free(freedQuery));
  Ok(oxaqry_value_new(&freedValue));
  Ok(oxaqry_value_free(freedValue));
  const CQuery query;  // may have the place of a freed one
  const CValue value;
  int local = 0;
  struct Case {
    const char* name;
    void* query;
    void* value;
  };
  for (const Case& test : {
           Case{"null", nullptr, nullptr},
           Case{"freed", freedQuery, freedValue},
           Case{"of the other type", value, query},
           Case{"a pointer", &local, &local},
           Case{"an odd number", reinterpret_cast<void*>(~std::uintptr_t{0}), reinterpret_cast<void*>(1)},
       }) {
    for (const HandleCall& each : kQueryCalls) {
      EXPECT_EQ(each.call(test.query), OXAQRY_E_HANDLE) << each.name << ": " << test.name;
    }
    for (const HandleCall& each : kValueCalls) {
      const bool isLeftOut = test.value == nullptr && std::string_view(each.name) == "in a call";
      EXPECT_EQ(each.call(test.value), isLeftOut ? OXAQRY_E_ARGUMENT : OXAQRY_E_HANDLE)
          << each.name << ": " << test.name;
    }
    const std::int32_t freed = test.query == nullptr ? OXAQRY_OK : OXAQRY_E_HANDLE;
    EXPECT_EQ(oxaqry_query_free(AsQuery(test.query)), freed) << test.name;
    EXPECT_EQ(oxaqry_value_free(AsValue(test.value)), freed) << test.name;
    EXPECT_EQ(oxaqry_cancel(AsQuery(test.query)), OXAQRY_E_HANDLE) << test.name;
  }
}

TEST(CHandles, OfAnotherThreadAreRefusedAndStayAsTheyAre) {
  CQuery query;
  const CValue value("kept");
  InOwnThread([&] {
    for (const HandleCall& each : kQueryCalls) EXPECT_EQ(each.call(query), OXAQRY_E_THREAD) << each.name;
    for (const HandleCall& each : kValueCalls) EXPECT_EQ(each.call(value), OXAQRY_E_THREAD) << each.name;
  });
  EXPECT_EQ(value.Text(), "kept");
  EXPECT_EQ(query.Call("HelloWorld"), "Hello World!");
}

TEST(CHandles, FreedByAnotherThreadAreReleasedAtTheNextCallOfTheirOwn) {
  const std::string text(1000000, 'x');
  const AllocationPeak peak;
  CQuery other;
  for (int i = 0; i < 20; ++i) {
    oxaqry_query* query = nullptr;
    Ok(oxaqry_query_new(&query));
    Ok(oxaqry_set_variable(query, MemberOf("strUserName"), CValue(text)));
    std::int32_t again = OXAQRY_OK;
    InOwnThread([&] {
      EXPECT_EQ(oxaqry_query_free(query), OXAQRY_OK);
      again = oxaqry_query_free(query);
    });
    EXPECT_EQ(again, OXAQRY_E_HANDLE);
    EXPECT_EQ(oxaqry_outcome(query, nullptr, nullptr, nullptr, nullptr), OXAQRY_E_HANDLE);
  }
  EXPECT_LT(peak.ByteCount(), 5 * text.size());
}

// While a request waits, as from a message loop of the host.
TEST(CHandles, ThatARunningCallUsesAreBusy) {
  InOwnThread([] {
    const ScriptedServer server(ScriptedServer::Replies(Answer({"Mail,x"})));
    CQuery query(server.Host());
    query.Init();
    const CValue status("untouched");
    std::vector<std::int32_t> codes;
    Apartment::Current()->loop.Post([&] {
      for (const HandleCall& each : kQueryCalls) codes.push_back(each.call(query));
      codes.push_back(oxaqry_query_free(query));
      codes.push_back(oxaqry_value_set_long(status, 1));
      codes.push_back(oxaqry_value_free(status));
      std::thread([&] { Ok(oxaqry_query_free(query)); }).join();
      EXPECT_EQ(kQueryCalls[0].call(query), OXAQRY_E_HANDLE);
    });
    EXPECT_EQ(query.Call("TELOGetChannelsInit", {status}), "1");
    EXPECT_EQ(codes, std::vector<std::int32_t>(kQueryCalls.size() + 3, OXAQRY_E_BUSY));
  });
}

// Lets each allocation of a call fail in turn.
TEST(CHandles, WithoutMemoryNothingChanges) {
  const std::string longText(1000, 'x');
  const CValue umlauts("\xC3\xA4 and more than a short text has");
  const CValue target("kept");
  oxaqry_query* made = nullptr;
  const char* text = nullptr;
  std::size_t length = 0;
  struct Case {
    const char* name;
    std::function<std::int32_t()> call;
  };
  for (const Case& test : {
           Case{"a reading", [&] { return oxaqry_value_get_text(umlauts, OXAQRY_UTF8, &text, &length); }},
           Case{"a query", [&] { return oxaqry_query_new(&made); }},
           Case{"a text", [&] { return oxaqry_value_set_text(target, longText.data(), 1000, OXAQRY_WINDOWS_1252); }},
       }) {
    bool hasFailed = true;
    int failures = 0;
    for (int after = 0; hasFailed; ++after) {
      ASSERT_LT(after, 200);
      std::int32_t code = OXAQRY_OK;
      {
        const AllocationFailure failure(after);
        code = test.call();
        hasFailed = failure.HasHappened();
      }
      if (!hasFailed) continue;
      ++failures;
      EXPECT_EQ(code, OXAQRY_E_MEMORY) << test.name << ": " << after;
      EXPECT_STREQ(oxaqry_last_error(), "out of memory");
      EXPECT_EQ(target.Text(), "kept");
    }
    EXPECT_GT(failures, 0) << test.name;
  }
  Ok(oxaqry_query_free(made));
}

}  // namespace
}  // namespace oxaqrycln::testing

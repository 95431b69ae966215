#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tests/automation/c/c_query.h"
#include "tests/support/in_own_thread.h"
#include "tests/support/scripted_server.h"

namespace oxaqrycln::testing {
namespace {

using ::testing::HasSubstr;

TEST(CMembers, AreFoundByTheirNamesAndNumbers) {
  std::int32_t count = 0;
  Ok(oxaqry_member_count(&count));
  EXPECT_EQ(count, 100);
  for (std::int32_t number = 1; number <= count; ++number) {
    const char* name = nullptr;
    std::size_t length = 0;
    Ok(oxaqry_member_text(number, OXAQRY_MEMBER_NAME, &name, &length));
    EXPECT_EQ(MemberOf({name, length}), number);
  }
  struct Case {
    const char* name;
    std::int32_t kind;
    std::int32_t type;
    std::int32_t parameterCount;
  };
  for (const Case& test : {
           Case{"datUserLoginTime", OXAQRY_MEMBER_VARIABLE, OXAQRY_TYPE_DATE, 0},
           Case{"REMOTEHOSTS", OXAQRY_MEMBER_PROPERTY, OXAQRY_TYPE_NONE, 1},
           Case{"TELOEditDocument", OXAQRY_MEMBER_METHOD, OXAQRY_TYPE_VARIANT, 3},
       }) {
    std::int32_t kind = -1;
    std::int32_t type = -1;
    std::int32_t parameterCount = -1;
    Ok(oxaqry_member(MemberOf(test.name), &kind, &type));
    Ok(oxaqry_parameter_count(MemberOf(test.name), &parameterCount));
    EXPECT_EQ((std::vector{kind, type, parameterCount}), (std::vector{test.kind, test.type, test.parameterCount}));
  }
  std::int32_t number = 0;
  EXPECT_EQ(oxaqry_find_member("Init\0x", 6, &number), OXAQRY_E_MEMBER);
  for (const std::int32_t none : {0, -1, 101, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(oxaqry_member(none, nullptr, nullptr), OXAQRY_E_MEMBER) << none;
    EXPECT_EQ(oxaqry_parameter(MemberOf("Init"), none, nullptr, nullptr, nullptr), none == 0 ? 0 : OXAQRY_E_ARGUMENT);
  }
}

TEST(CValues, TakeTextsOfTheCodePageAndNameTheWrongCharacter) {
  struct Case {
    const char* name;
    std::string utf8;
    std::string windows1252;
    std::size_t wrong;
  };
  for (const Case& test : {
           Case{"ASCII", "plain text", "plain text", 0},
           Case{"two and three bytes", "a\xC3\xA4\xE2\x82\xAC", "a\xE4\x80", 0},
           Case{"an undefined byte of the code page", "\xC2\x81", "\x81", 0},
           Case{"NUL", std::string("a\0\xC3\xA4", 4), std::string("a\0\xE4", 3), 0},
           Case{"no place in the code page", "\xC3\xA4\xC3\xA4\xE6\xBC\xA2", "", 3},
           Case{"cut short", "ab\xC3", "", 3},
           Case{"overlong", "\xC0\xAF", "", 1},
           Case{"four bytes", "x\xF0\x9F\x98\x80", "", 2},
       }) {
    const CValue value("kept");
    const std::int32_t code = oxaqry_value_set_text(value, test.utf8.data(), test.utf8.size(), OXAQRY_UTF8);
    EXPECT_EQ(code, test.wrong == 0 ? OXAQRY_OK : OXAQRY_E_TEXT) << test.name;
    EXPECT_EQ(value.Text(OXAQRY_WINDOWS_1252), test.wrong == 0 ? test.windows1252 : "kept") << test.name;
    if (test.wrong == 0) {
      EXPECT_EQ(value.Text(), test.utf8) << test.name;
      continue;
    }
    std::size_t position = 0;
    Ok(oxaqry_error_position(&position));
    EXPECT_EQ(position, test.wrong) << test.name;
  }
}

TEST(CValues, HoldTextsOf64MiBAndRefuseLengthsThatNoTextHas) {
  const std::string large = std::string((std::size_t{64} << 20) - 1, 'x') + '\xE4';
  const CValue value("kept");
  EXPECT_EQ(oxaqry_value_set_text(value, "x", SIZE_MAX, OXAQRY_UTF8), OXAQRY_E_ARGUMENT);
  EXPECT_EQ(oxaqry_value_set_text(value, nullptr, 1, OXAQRY_UTF8), OXAQRY_E_ARGUMENT);
  EXPECT_EQ(oxaqry_value_set_text(value, "x", 1, 2), OXAQRY_E_ARGUMENT);
  EXPECT_EQ(value.Text(), "kept");
  Ok(oxaqry_value_set_text(value, large.data(), large.size(), OXAQRY_WINDOWS_1252));
  EXPECT_EQ(value.Text().size(), large.size() + 1);
  Ok(oxaqry_value_set_text(value, nullptr, 0, OXAQRY_UTF8));
  EXPECT_EQ(value.Text(), "");
}

TEST(CValues, AreConvertedByTheAutomationRules) {
  constexpr std::int64_t kDate = 46341LL * 86400 + 20 * 3600 + 31 * 60 + 7;  // 15.11.2026 20:31:07
  struct Case {
    const char* name;
    std::int32_t (*set)(oxaqry_value* value);
    std::int32_t kind;
    const char* text;
    std::int32_t longCode;
    std::int32_t number;
  };
  for (const Case& test : {
           Case{"Null", [](oxaqry_value* it) { return oxaqry_value_set_null(it); }, OXAQRY_NULL, "", OXAQRY_E_TYPE, 0},
           Case{"True", [](oxaqry_value* it) { return oxaqry_value_set_boolean(it, 7); }, OXAQRY_BOOLEAN, "True",
                OXAQRY_OK, -1},
           Case{"Double", [](oxaqry_value* it) { return oxaqry_value_set_double(it, 2.5); }, OXAQRY_DOUBLE, "2.5",
                OXAQRY_OK, 2},
           Case{"not a number", [](oxaqry_value* it) { return oxaqry_value_set_double(it, NAN); }, OXAQRY_DOUBLE, "NAN",
                OXAQRY_E_TYPE, 0},
           Case{"Date", [](oxaqry_value* it) { return oxaqry_value_set_date(it, kDate); }, OXAQRY_DATE,
                "15.11.2026 20:31:07", OXAQRY_OK, 46342},
           Case{"text", [](oxaqry_value* it) { return oxaqry_value_set_text(it, "1e2", 3, 0); }, OXAQRY_TEXT, "1e2",
                OXAQRY_OK, 100},
       }) {
    const CValue value;
    std::int32_t kind = -1;
    std::int32_t number = 0;
    Ok(test.set(value));
    Ok(oxaqry_value_kind(value, &kind));
    EXPECT_EQ(kind, test.kind) << test.name;
    EXPECT_EQ(value.Text(), test.text) << test.name;
    EXPECT_EQ(oxaqry_value_get_long(value, &number), test.longCode) << test.name;
    EXPECT_EQ(number, test.number) << test.name;
  }
  const CValue value("15.11.2026 20:31:07");
  std::int64_t seconds = 0;
  Ok(oxaqry_value_get_date(value, &seconds));
  EXPECT_EQ(seconds, kDate);
  EXPECT_EQ(oxaqry_value_set_date(value, INT64_MAX), OXAQRY_E_ARGUMENT);
}

TEST(CCalls, CheckTheirArguments) {
  const CQuery query;
  const CValue text("abc");
  const CValue result;
  struct Case {
    const char* name;
    const char* method;
    std::vector<oxaqry_value*> values;
    std::int32_t count;
    std::int32_t code;
  };
  for (const Case& test : {
           Case{"sound", "Encode", {text}, 1, OXAQRY_OK},
           Case{"a required one left out", "Encode", {}, 0, OXAQRY_E_COUNT},
           Case{"a required one is NULL", "Encode", {nullptr}, 1, OXAQRY_E_COUNT},
           Case{"too many", "Encode", {text, text}, 2, OXAQRY_E_COUNT},
           Case{"far too many", "Encode", {text}, INT32_MAX, OXAQRY_E_COUNT},
           Case{"a negative count", "Encode", {text}, -1, OXAQRY_E_ARGUMENT},
           Case{"a variable", "strSessionID", {text}, 1, OXAQRY_E_MEMBER},
           Case{"the property", "RemoteHosts", {text}, 1, OXAQRY_E_MEMBER},
           Case{"one value for two inputs", "Encrypt", {text, text}, 2, OXAQRY_OK},
           Case{"one value for two outputs", "TELOQueryArchiveNext", {text, text}, 2, OXAQRY_E_BUSY},
           Case{"the result among the arguments", "Encode", {result}, 1, OXAQRY_E_BUSY},
       }) {
    auto values = test.values;
    EXPECT_EQ(oxaqry_call(query, MemberOf(test.method), values.data(), test.count, result), test.code) << test.name;
    EXPECT_EQ(text.Text(), "abc") << test.name;
  }
}

TEST(CCalls, ThatAreRepeatedWithTheSameValuesNoticeWhichAreFreed) {
  const CQuery query;
  const std::int32_t encode = MemberOf("Encode");
  for (const bool inOtherThread : {false, true}) {
    const CValue result;
    oxaqry_value* text = nullptr;
    Ok(oxaqry_value_new(&text));
    Ok(oxaqry_value_set_text(text, "abc", 3, OXAQRY_UTF8));
    for (int i = 0; i < 3; ++i) Ok(oxaqry_call(query, encode, &text, 1, result));
    EXPECT_EQ(oxaqry_call(query, encode, &text, 1, text), OXAQRY_E_BUSY);
    Ok(oxaqry_call(query, encode, &text, 1, nullptr));
    Ok(oxaqry_call(query, encode, &text, 1, result));
    if (inOtherThread) {
      std::thread([text] { Ok(oxaqry_value_free(text)); }).join();
    } else {
      Ok(oxaqry_value_free(text));
    }
    EXPECT_EQ(oxaqry_call(query, encode, &text, 1, result), OXAQRY_E_HANDLE) << inOtherThread;
  }
}

TEST(CCalls, ReadTheTextsOfTheResultAndOfOutputs) {
  InOwnThread([] {
    const ScriptedServer server(
        ScriptedServer::Replies(Answer({"^1^,^\xC4^,^B^,^C^,^x^", "^2^,^\xC4^,^B^,^C^,^y^", "^3^,^D^,^E^,^F^,^z^"})));
    CQuery query(server.Host());
    query.Init();
    const CValue result;
    const CValue first("x");
    const CValue second("9");
    const CValue third;
    std::vector<std::string> found;
    std::int32_t code = OXAQRY_OK;
    const auto call = [&](const char* method, std::vector<oxaqry_value*> values, std::int32_t encoding) {
      std::vector<const char*> texts(values.size() + 1);
      std::vector<std::size_t> lengths(texts.size());
      code = oxaqry_call_for_texts(query, MemberOf(method), values.data(), static_cast<std::int32_t>(values.size()),
                                   result, encoding, texts.data(), lengths.data());
      found.clear();
      for (std::size_t i = 0; i < texts.size() && code == OXAQRY_OK; ++i) found.emplace_back(texts[i], lengths[i]);
    };
    call("OstranaQueryFahrauftraegeInit", {first, second, third}, OXAQRY_UTF8);
    EXPECT_EQ(found, (std::vector<std::string>{"3", "", "", ""})) << "inputs and an empty status";
    call("OstranaQueryFahrauftraegeNext", {first, nullptr, third}, OXAQRY_UTF8);
    EXPECT_EQ(found, (std::vector<std::string>{"^1^,^x^", "\xC3\x84", "", "C"}));
    call("OstranaQueryFahrauftraegeNext", {first}, OXAQRY_WINDOWS_1252);
    EXPECT_EQ(found, (std::vector<std::string>{"^2^,^y^", "\xC4"}));
    Ok(oxaqry_value_set_bytes(first, "b", 1));
    call("OstranaQueryFahrauftraegeNext", {first}, OXAQRY_UTF8);
    EXPECT_EQ(found, (std::vector<std::string>{"^3^,^z^", "D"}));
    Ok(oxaqry_value_set_bytes(first, "b", 1));
    call("OstranaQueryFahrauftraegeNext", {first}, OXAQRY_UTF8);
    EXPECT_EQ(code, OXAQRY_E_TYPE) << "bytes that the method left as they were at the end";
  });
}

TEST(CCalls, ConvertWhatAVariableIsAssigned) {
  CQuery query;
  const CValue value;
  query.Set("lngRequestTimeout", " 2.5 ");
  Ok(oxaqry_get_variable(query, MemberOf("lngRequestTimeout"), value));
  EXPECT_EQ(value.Text(), "2");
  EXPECT_EQ(oxaqry_set_variable(query, MemberOf("lngRequestTimeout"), CValue("many")), OXAQRY_E_TYPE);
  EXPECT_EQ(oxaqry_set_variable(query, MemberOf("Init"), value), OXAQRY_E_MEMBER);
  EXPECT_EQ(oxaqry_get_variable(query, MemberOf("RemoteHosts"), value), OXAQRY_E_MEMBER);
}

std::vector<std::string> TextsOf(oxaqry_rows* rows) {
  std::int32_t count = 0;
  std::int32_t columns = 0;
  const char* block = nullptr;
  const std::uint32_t* offsets = nullptr;
  Ok(oxaqry_rows_read(rows, &count, &columns, &block, &offsets));
  std::vector<std::string> texts;
  for (std::int32_t i = 0; i < count * columns; ++i) texts.emplace_back(block + offsets[i], block + offsets[i + 1]);
  return texts;
}

TEST(CRows, HoldAListUpToItsEndItsLimitOrAFaultyRecord) {
  InOwnThread([] {
    const std::string answer = Answer({"^1^,^A^,^B^,^C^,^x^", "^2^,^\xE4^,^E^,^F^,^y^", "^3^", "^4^,^G^,^H^,^I^,^z^"});
    const ScriptedServer server(ScriptedServer::Replies(answer));
    CQuery query(server.Host());
    query.Init();
    struct Case {
      const char* name;
      std::int32_t end;
      std::int32_t max;
      std::vector<std::int32_t> columns;
      std::int32_t code;
      std::vector<std::string> texts;
      std::int32_t error;
    };
    for (const Case& test : {
             Case{"one of three outputs", OXAQRY_UNTIL_END, 1, {0}, OXAQRY_OK, {"^1^,^x^", "A"}, 0},
             Case{"outputs in another order", OXAQRY_UNTIL_END, 1, {2, 0}, OXAQRY_OK, {"^1^,^x^", "C", "A"}, 0},
             Case{"up to a faulty record",
                  OXAQRY_EVERY_ROW,
                  9,
                  {0},
                  OXAQRY_OK,
                  {"^1^,^x^", "A", "^2^,^y^", "\xC3\xA4"},
                  9},
             Case{"none", OXAQRY_UNTIL_END, 0, {}, OXAQRY_OK, {}, 0},
             Case{"an output twice", OXAQRY_UNTIL_END, 9, {0, 0}, OXAQRY_E_ARGUMENT, {}, 0},
             Case{"no such output", OXAQRY_UNTIL_END, 9, {3}, OXAQRY_E_ARGUMENT, {}, 0},
             Case{"a negative limit", OXAQRY_UNTIL_END, -1, {0}, OXAQRY_E_ARGUMENT, {}, 0},
         }) {
      const CValue text("x");
      const CValue limit("9");
      query.Call("OstranaQueryFahrauftraegeInit", {text, limit});
      oxaqry_rows* rows = nullptr;
      const std::int32_t code =
          oxaqry_fetch_rows(query, MemberOf("OstranaQueryFahrauftraegeNext"), test.max, test.columns.data(),
                            static_cast<std::int32_t>(test.columns.size()), test.end, OXAQRY_UTF8, &rows);
      EXPECT_EQ(code, test.code) << test.name;
      if (code != OXAQRY_OK) continue;
      EXPECT_EQ(TextsOf(rows), test.texts) << test.name;
      std::int32_t error = -1;
      Ok(oxaqry_handled_error(query, &error, nullptr, nullptr));
      EXPECT_EQ(error, test.error) << test.name;
      Ok(oxaqry_rows_free(rows));
    }
  });
}

TEST(CRows, CanHoldEmptyTexts) {
  CQuery query;
  const CValue lines("0\r\nTitle\r\n\r\nb\r\n");
  const CValue column("1");
  query.Call("TELOSortHitlist2Init", {lines, column});
  oxaqry_rows* rows = nullptr;
  Ok(oxaqry_fetch_rows(query, MemberOf("TELOSortHitlist2Next"), 3, nullptr, 0, OXAQRY_EVERY_ROW, OXAQRY_UTF8, &rows));
  EXPECT_EQ(TextsOf(rows).size(), 3U);
  Ok(oxaqry_rows_free(rows));
}

TEST(CWatch, TellsWhatBecameOfARequest) {
  const ScriptedServer sound(ScriptedServer::Replies(Answer({"Mail,x"})));
  const ScriptedServer refusing(ScriptedServer::Replies(Framed("Status: no \xE4rchive\r\n")));
  const ScriptedServer silent(ScriptedServer::Silent());
  struct Case {
    const char* name;
    std::string host;
    std::int32_t kind;
    std::int32_t wasSent;
    const char* text;
  };
  for (const Case& test : {
           Case{"sound", sound.Host(), OXAQRY_SUCCEEDED, 1, ""},
           Case{"refused", refusing.Host(), OXAQRY_REFUSED, 1, "no \xC3\xA4rchive"},
           Case{"silent", silent.Host(), OXAQRY_TIMED_OUT, 1, ""},
           Case{"nobody", "127.0.0.1," + std::to_string(UnusedPort()), OXAQRY_CONNECTION_FAILED, 0, ""},
           Case{"no server", "", OXAQRY_ALL_BUSY, 0, ""},
       }) {
    InOwnThread([&] {
      CQuery query(test.host);
      query.Set("lngRequestTimeout", "1");
      query.Init();
      EXPECT_EQ(query.Outcome(), OXAQRY_NO_REQUEST);
      query.Call("TELOGetChannelsInit");
      query.Call("HelloWorld");
      std::int64_t number = -1;
      Ok(oxaqry_request_number(query, &number));
      EXPECT_EQ(number, 1) << test.name;
      std::int32_t kind = -1;
      std::int32_t wasSent = -1;
      std::int32_t attempts = -1;
      std::int64_t milliseconds = -1;
      const char* text = nullptr;
      std::size_t length = 0;
      Ok(oxaqry_outcome(query, &kind, &milliseconds, &wasSent, &attempts));
      Ok(oxaqry_outcome_text(query, &text, &length));
      EXPECT_EQ(kind, test.kind) << test.name;
      EXPECT_EQ(wasSent, test.wasSent) << test.name;
      EXPECT_THAT(std::string(text, length), HasSubstr(test.text)) << test.name;
      EXPECT_GE(milliseconds, 0) << test.name;
      for (std::int32_t i = 0; i < attempts; ++i) {
        Ok(oxaqry_attempt(query, i, &text, &length, nullptr, nullptr, nullptr, nullptr));
        EXPECT_EQ(std::string(text, length), "127.0.0.1") << test.name;
      }
      EXPECT_EQ(attempts > 0, !test.host.empty()) << test.name;
      EXPECT_EQ(oxaqry_attempt(query, attempts, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
                OXAQRY_E_ARGUMENT);
    });
  }
}

TEST(CWatch, ChecksEachServerOfAListApartFromThoseOfTheThread) {
  const ScriptedServer sound(ScriptedServer::Replies(Framed("Status: OK\r\n\xE4live")));
  const ScriptedServer refusing(ScriptedServer::Replies(Framed("Status: closed\r\n")));
  const ScriptedServer silent(ScriptedServer::Silent());
  InOwnThread([&] {
    CQuery query(silent.Host());
    query.Set("lngRequestTimeout", "1");
    const auto check = [&](std::string_view hosts) {
      oxaqry_rows* rows = nullptr;
      Ok(oxaqry_check_servers(query, hosts.data(), hosts.size(), &rows));
      std::vector<std::string> texts = TextsOf(rows);
      Ok(oxaqry_rows_free(rows));
      return texts;
    };
    EXPECT_TRUE(check("").empty());
    const auto texts = check(sound.Host() + "|" + refusing.Host() + "|" + silent.Host() + "|nobody,x");
    ASSERT_EQ(texts.size(), 20U);
    const auto alive = [&](std::size_t row) { return texts[5 * row + 2] + " " + texts[5 * row + 3]; };
    EXPECT_EQ(texts[0] + "," + texts[1], sound.Host());
    EXPECT_EQ(alive(0), "1 \xC3\xA4live");
    EXPECT_EQ(alive(1), "0 closed");
    EXPECT_THAT(alive(2), HasSubstr("0 Timeout of 1 seconds"));
    EXPECT_THAT(alive(3), HasSubstr("0 13 - "));
    EXPECT_EQ(texts[15], "nobody");
    Ok(oxaqry_cancel(query));
    EXPECT_THAT(check(silent.Host()).at(3), HasSubstr("cancelled"));
    EXPECT_EQ(query.Outcome(), OXAQRY_NO_REQUEST);
    oxaqry_rows* none = nullptr;
    EXPECT_EQ(oxaqry_check_servers(query, "\xFF", 1, &none), OXAQRY_E_TEXT);
  });
}

TEST(CWatch, CancelsFromAnotherThreadUntilItIsResumed) {
  InOwnThread([] {
    const ScriptedServer server({[](Peer& peer) {
                                   peer.ReadRequest();
                                   peer.Send("TotalBytes:500000\r\nStatus: OK\r\n" + std::string(1000, 'x'));
                                   peer.WaitForClose();
                                 },
                                 ScriptedServer::Replies(Answer({"Mail,x"}))});
    CQuery query(server.Host());
    query.Init();
    oxaqry_query* const handle = query;
    std::thread canceller([handle] {
      std::int64_t announced = 0;
      while (announced == 0) {
        Ok(oxaqry_progress(handle, nullptr, nullptr, &announced));
        std::this_thread::yield();
      }
      EXPECT_EQ(announced, 500000);
      Ok(oxaqry_cancel(handle));
    });
    EXPECT_EQ(query.Call("TELOGetChannelsInit"), "-1");
    canceller.join();
    EXPECT_EQ(query.Outcome(), OXAQRY_CANCELLED);
    EXPECT_EQ(query.Call("TELOGetChannelsInit"), "-1") << "still cancelled";
    Ok(oxaqry_resume(query));
    EXPECT_EQ(query.Call("TELOGetChannelsInit"), "1");
  });
}

}  // namespace
}  // namespace oxaqrycln::testing

#include "tools/oxaqry/session/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// The answer lines to an input, from a session in an apartment of its own.
std::vector<std::string> Answers(const std::string& input) {
  std::istringstream in(input);
  std::stringstream out;
  std::thread([&] { EXPECT_EQ(RunSession(in, out), 0); }).join();
  std::vector<std::string> lines;
  for (std::string line; std::getline(out, line);) lines.push_back(line);
  return lines;
}

struct Exchange {
  const char* name;
  std::string request;
  std::string answer;
};

// Sends the requests of all rows in one session and compares each answer; one with "*" is compared up to there.
void ExpectExchanges(const std::vector<Exchange>& exchanges) {
  std::string input;
  for (const Exchange& exchange : exchanges) input += exchange.request + "\n";
  const std::vector<std::string> answers = Answers(input);
  ASSERT_EQ(answers.size(), exchanges.size());
  for (std::size_t i = 0; i < answers.size(); ++i) {
    SCOPED_TRACE(exchanges[i].name);
    EXPECT_TRUE(Json::accept(answers[i])) << answers[i];
    const std::size_t star = exchanges[i].answer.find('*');
    EXPECT_EQ(answers[i].substr(0, star), exchanges[i].answer.substr(0, star));
  }
}

TEST(Session, KeepsNamedInstancesApart) {
  ExpectExchanges({
      {"new", R"({"new":"a"})", R"({"ok":true})"},
      {"new again", R"({"new":"a"})", R"({"error":"the instance \"a\" exists already"})"},
      {"set on a", R"({"set":{"strSessionID":"S1","RemoteHosts":"localhost,2001"},"on":"a"})", R"({"ok":true})"},
      {"get from a", R"({"get":["strSessionID"],"on":"a"})",
       R"({"values":{"strSessionID":{"type":"String","value":"S1"}}})"},
      {"get from q", R"({"get":["strSessionID"]})", R"({"values":{"strSessionID":{"type":"String","value":""}}})"},
      {"drop a", R"({"drop":"a"})", R"({"ok":true})"},
      {"a is gone", R"({"get":[],"on":"a"})", R"({"error":"there is no instance \"a\""})"},
      {"drop q", R"({"drop":"q"})", R"({"ok":true})"},
      {"q is gone", R"({"call":"HelloWorld"})", R"({"error":"there is no instance \"q\""})"},
  });
}

TEST(Session, CarriesEveryTypeThroughVariables) {
  ExpectExchanges({
      {"set",
       R"({"set":{"strUserName":"Käse €","strUserIP":true,"lngRequestTimeout":{"Integer":-5},)"
       R"("strTELOUser":{"Byte":255},"strTELOPwd":1.5,"datUserLoginTime":{"Date":"2026-11-15T20:31:07"}}})",
       R"({"ok":true})"},
      {"get",
       R"({"get":["strUserName","strUserIP","lngRequestTimeout","strTELOUser","strTELOPwd","datUserLoginTime"]})",
       R"({"values":{"strUserName":{"type":"String","value":"Käse €"},"strUserIP":{"type":"String","value":"True"},)"
       R"("lngRequestTimeout":{"type":"Long","value":-5},"strTELOUser":{"type":"String","value":"255"},)"
       R"("strTELOPwd":{"type":"String","value":"1.5"},)"
       R"("datUserLoginTime":{"type":"Date","value":"2026-11-15T20:31:07"}}})"},
      {"no number", R"({"set":{"lngRequestTimeout":"x"}})", R"({"error":"13 - Type mismatch"})"},
  });
}

TEST(Session, PassesVariablesByReference) {
  ExpectExchanges({
      {"written", R"({"call":"TELOGetAllArchivesExtNext","args":[{"ref":null},{"ref":"x"}]})",
       R"({"result":-1,"type":"Integer","refs":[{"type":"String","value":""},{"type":"String","value":""}]})"},
      {"only the second", R"({"call":"TELOGetAllArchivesExtNext","args":[null,{"ref":7}]})",
       R"({"result":-1,"type":"Integer","refs":[{"type":"String","value":""}]})"},
      {"untouched keeps its type", R"({"call":"TELOGetChannelsNext","args":[{"ref":{"Byte":9}}]})",
       R"({"result":"","type":"String","refs":[{"type":"Byte","value":9}]})"},
      {"Boolean result", R"({"call":"Init","args":[false]})", R"({"result":true,"type":"Boolean","refs":[]})"},
      {"no result", R"({"call":"OnEndPage"})", R"({"result":null,"type":"Empty","refs":[]})"},
      {"context", R"({"call":"OnStartPage","args":[{"context":{"body":"QUJDRA=="}}]})",
       R"({"result":null,"type":"Empty","refs":[]})"},
  });
}

TEST(Session, AnswersWhatIsWrongAndGoesOn) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "[";
  const std::string unknownMethod = R"({"error":"there is no method *)";
  ExpectExchanges({
      {"no JSON", "hello", R"({"error":"the line is not JSON*)"},
      {"invalid UTF-8", "{\"call\":\"\xC3(\"}", R"({"error":"the line is not JSON*)"},
      {"no object", "[1]", R"({"error":"the line is not a JSON object"})"},
      {"nested too deeply", deep, R"({"error":"the line is nested too deeply"})"},
      {"nothing asked", "{}", R"({"error":"the line asks for nothing*)"},
      {"unknown member", R"({"call":"HelloWorld","arg":[]})", R"({"error":"unknown member \"arg\""})"},
      {"unknown method", R"({"call":"Nothing"})", unknownMethod},
      {"property called", R"({"call":"RemoteHosts","args":["h,1"]})", unknownMethod},
      {"unknown variable", R"({"set":{"strX":""}})", R"({"error":"there is no public variable \"strX\""})"},
      {"write-only", R"({"get":["RemoteHosts"]})", R"({"error":"there is no readable public variable*)"},
      {"set to null", R"({"set":{"strUserName":null}})", R"({"error":"\"strUserName\" needs a value"})"},
      {"args are no list", R"({"call":"HelloWorld","args":{}})", R"({"error":"\"args\" must be a list*)"},
      {"argument left out", R"({"call":"Encode","args":[null]})", R"({"error":"449 - *)"},
      {"outside the code page", R"({"call":"Encode","args":["\u4e2d"]})", R"({"error":"a text holds a character*)"},
      {"beyond 64 bits", R"({"call":"Encode","args":[18446744073709551616]})",
       R"({"error":"1.8*is not a whole number*)"},
      {"beyond 64 bits", R"({"call":"Encode","args":[18446744073709551615]})",
       R"({"error":"18446744073709551615 is *)"},
      {"beyond a byte", R"({"call":"Encode","args":[{"Byte":256}]})", R"({"error":"256 is not a whole number*)"},
      {"fraction as Integer", R"({"call":"Encode","args":[{"Integer":1.5}]})",
       R"({"error":"1.5 is not a whole number*)"},
      {"no such day", R"({"call":"Encode","args":[{"Date":"2026-02-30"}]})",
       R"({"error":"\"2026-02-30\" is not a date*)"},
      {"unknown type", R"({"call":"Encode","args":[{"Single":1}]})", R"({"error":"unknown type \"Single\""})"},
      {"bad Base64", R"({"call":"OnStartPage","args":[{"context":{"body":"QUJ"}}]})",
       R"({"error":"the context's body*)"},
      {"context without body", R"({"call":"OnStartPage","args":[{"context":{}}]})",
       R"({"error":"a context is written*)"},
      {"still alive", R"({"call":"HelloWorld"})", R"({"result":"Hello World!","type":"String","refs":[]})"},
  });
}

TEST(Session, ReadsLongLinesAndALastOneWithoutAnEndButNoEndlessOne) {
  const std::string name(200000, 'n');
  const std::string tooLong = "\"" + std::string(kMaxLineBytes, 'x') + "\"\n";
  EXPECT_THAT(Answers(tooLong + R"({"set":{"strUserName":")" + name + "\"}}\r\n" + R"({"get":["strUserName"]})"),
              ElementsAre(R"({"error":"the line is longer than 64 MiB"})", R"({"ok":true})", HasSubstr(name)));
}

TEST(Session, EndsWhenNobodyReadsItsAnswers) {
  std::istringstream in("{}\n{}\n");
  std::ostream out(nullptr);
  EXPECT_EQ(RunSession(in, out), 1);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry

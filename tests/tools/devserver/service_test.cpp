#include "tools/devserver/server/service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/text_helpers.h"
#include "tests/support/temporary_directory.h"
#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/protocol/errors.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class ServiceTest : public ::testing::Test {
 protected:
  std::string Ask(const std::string& command, const std::string& user = "webuser",
                  const std::string& encoded = Encode("secret")) {
    return service_.Answer("^S1^,^" + user + "^,^" + encoded + "^,^" + command + "^").text;
  }
  // In UTF-8.
  std::vector<std::string> AskLines(const std::string& command) {
    std::istringstream answer(ToUtf8(Ask(FromUtf8(command).value_or(""))));
    std::vector<std::string> lines;
    for (std::string line; std::getline(answer, line); lines.push_back(line)) {
      EXPECT_THAT(line, ::testing::EndsWith("\r"));
      line.pop_back();
    }
    return lines;
  }
  // The number of hits of a query, or its status line.
  std::string Hits(const std::string& query, const std::string& format = "", const std::string& rights = "") {
    const auto lines = AskLines("QueryArchive^,^" + query + "^,^1^,^0^,^^,^" + format + "^,^" + rights + "^,^");
    return lines.size() > 1 ? lines[1] : lines[0];
  }

  const std::string umlauts_ = FromUtf8("grüße").value_or("");
  Service service_{OpenArchive(""), {{"webuser", "secret"}, {"m\xFCller", umlauts_}}};
};

TEST_F(ServiceTest, AdmitsOnlyItsAccounts) {
  EXPECT_THAT(Ask("LiveCheck"), StartsWith("Status: OK\r\nOXA development archive server "));
  EXPECT_THAT(Ask("LiveCheck", "m\xFCller", Encode(umlauts_)), StartsWith("Status: OK\r\n"));
  EXPECT_EQ(Ask("LiveCheck", "webuser", Encode("Secret")), "Status: Access denied for user 'webuser'\r\n");
  EXPECT_EQ(Ask("LiveCheck", "webuser", "secret"), "Status: Access denied for user 'webuser'\r\n");
  EXPECT_EQ(Ask("LiveCheck", "x\r\nStatus: OK"), "Status: Access denied for user 'x..Status: OK'\r\n");
}

TEST_F(ServiceTest, ListsChannelsArchivesAndTheirProperties) {
  EXPECT_THAT(AskLines("getchannels"),
              ::testing::ElementsAre("Status: OK", "Mail,Incoming and outgoing mail",
                                     "Finance,Invoices, orders and contracts", "Technik,Zeichnungen und Prüfberichte",
                                     "Büro,Protokolle, Aushänge", "Projects,Nothing filed here yet"));
  EXPECT_EQ(AskLines("GetAllArchives").size(), 10U);
  EXPECT_THAT(AskLines("GetAllArchives"), ::testing::Contains("$(#Technik)\\Prüfberichte"));
  EXPECT_THAT(Ask("GetAllArchivesExt"), HasSubstr("#Mail,Incoming and outgoing mail\r\nInbox,Letters received\r\n"));
  EXPECT_THAT(AskLines("GetQueryFormatList^,^finance^,^ORDERS"),
              ::testing::ElementsAre("Status: OK", "Full text", "Title", "People", "Order data"));
  EXPECT_THAT(AskLines("GetArchiveProperties^,^Büro^,^Protokolle"), ::testing::ElementsAre("Status: OK", "1,1,1,0,30"));
}

TEST_F(ServiceTest, FormatsHits) {
  const auto lines = AskLines("QueryArchive^,^*^,^2^,^0^,^13^,^^,^$(#Finance)\\Invoices^,^2");
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[1], "30");
  EXPECT_EQ(lines[2], "12=Customer;10=Title;14=Date;15=Amount;13=Type");
  EXPECT_EQ(lines[3], "1");
  EXPECT_EQ(lines[4], "^0^,^0^,^0^,^0^,^0^,^1024^,^512^,^0^");
  EXPECT_EQ(lines[5], "^Reference^,^Document^,^Version^,^Customer^,^Title^,^Date^,^Amount^,^Type^");
  EXPECT_THAT(lines[6],
              ::testing::MatchesRegex("\\^\\$\\(#Finance\\)\\\\Invoices\\^,\\^[0-9]+\\^,\\^[1-3]\\^,\\^.+\\^,"
                                      "\\^Invoice for .+\\^,\\^[0-9.]+\\^,\\^[0-9]+,[0-9]+\\^,\\^Invoice\\^"));
}

TEST_F(ServiceTest, RestrictsByFormatAndFolderRights) {
  const char* const cases[][4] = {
      {"*", "", "", "270"},
      {"*", "order data", "", "90"},
      {"zeichnung", "", "", "30"},
      {"zeichnung", "People", "", "0"},
      {"title:zeichnung", "Title", "", "30"},
      {"*", "", "$(#Mail)", "90"},
      {"*", "", "$(#mail)\\*;$(#BÜRO)\\protokolle;", "120"},
      {"*", "", "$(#Nowhere)\\Inbox", "0"},
      {"zeichnung", "", "$(#Mail)", "0"},
      {"*", "", "Mail", "Status: Folder rights: 'Mail' is not of the form $(#Channel)\\Archive"},
      {"*", "", "$(#Mail)Inbox", "Status: Folder rights: '$(#Mail)Inbox' is not of the form $(#Channel)\\Archive"},
      {"*", "", "$(#Mail);;$(#Finance)", "Status: Folder rights: '' is not of the form $(#Channel)\\Archive"},
      {"*", "", "$(#)\\x", "Status: Folder rights: '$(#)\\x' is not of the form $(#Channel)\\Archive"},
      {"*", "Nothing", "", "Status: There is no query format 'Nothing'"},
  };
  for (const auto& [query, format, rights, hits] : cases) {
    EXPECT_EQ(Hits(query, format, rights), hits) << query << " " << format << " " << rights;
  }
}

TEST_F(ServiceTest, EnforcesTheLimitsOfAQuery) {
  EXPECT_EQ(AskLines("QueryArchive^,^*^,^0^,^270^,^^,^^,^^,^").size(), 276U);
  EXPECT_EQ(AskLines("QueryArchive^,^*^,^^,^^,^^,^^,^^,^").size(), 276U);
  EXPECT_EQ(AskLines("QueryArchive^,^*^,^7^,^0^,^^,^^,^^,^").size(), 13U);
  EXPECT_EQ(Ask("QueryArchive^,^*^,^7^,^269^,^^,^^,^^,^"),
            "Status: The query has 270 hits, more than the 269 allowed\r\n");
  EXPECT_EQ(Ask("QueryArchive^,^*^,^-1^,^0^,^^,^^,^^,^"), "Status: Max lines '-1' is not a number of 0 or more\r\n");
  EXPECT_EQ(Ask("QueryArchive^,^*^,^1^,^1x^,^^,^^,^^,^"), "Status: Query max '1x' is not a number of 0 or more\r\n");
}

TEST_F(ServiceTest, RefusesInvalidRequests) {
  const char* const cases[][2] = {
      {"", "Status: Unknown command ''\r\n"},
      {"GetChannels^,^x", "Status: GetChannels takes 0 parameters, not 1\r\n"},
      {"GetQueryFormatList^,^Mail^,^Nowhere", "Status: There is no archive $(#Mail)\\Nowhere\r\n"},
      {"QueryArchive^,^red)^,^0^,^0^,^^,^^,^^,^", "Status: Query: ')' without '('\r\n"},
      {"QueryArchive^,^red^,^0^,^0^,^99^,^^,^^,^", "Status: There is no layout field '99'\r\n"},
      {"QueryArchive^,^red^,^0^,^0^,^^,^^,^^,^9", "Status: There is no layout '9'\r\n"},
  };
  for (const auto& [command, answer] : cases) EXPECT_EQ(Ask(command), answer) << command;
}

TEST(SampleArchive, IsKeptInItsFileAndOverwritesNoOther) {
  const oxaqrycln::testing::TemporaryDirectory directory;
  const std::string kept = directory.File("kept");
  OpenArchive(kept, 9).exec("DELETE FROM document WHERE id = 1001");
  EXPECT_EQ(OpenArchive(kept, 9).execAndGet("SELECT count(*) FROM document").getInt(), 8);

  const std::string other = directory.File("other");
  OpenDatabase(other).exec("CREATE TABLE other (x)");
  EXPECT_THROW(OpenArchive(other), ServerError);
  EXPECT_TRUE(OpenDatabase(other).tableExists("other"));
  directory.Write("text", "no database at all, but a text of some length");
  EXPECT_THROW(OpenArchive(directory.File("text")), ServerError);
}

}  // namespace
}  // namespace oxaqrycln::devserver

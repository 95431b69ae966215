#include "tools/devserver/commands/handlers.h"

#include <gmock/gmock.h>

#include <utility>

#include "tests/support/temporary_directory.h"
#include "tests/tools/devserver/fetched_content.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;

class OrdersTest : public ContentTest {
 protected:
  // The IDs of the orders that a query finds, or the status line.
  std::string Ids(const std::string& query, const std::string& maxLines = "0") const {
    std::istringstream answer(server_.Ask("QueryFahrauftraege^,^" + query + "^,^" + maxLines));
    std::string line;
    std::getline(answer, line);
    if (line != "Status: OK\r") return line;
    std::string ids;
    while (std::getline(answer, line)) ids += line.substr(1, line.find('^', 1) - 1) + " ";
    return ids;
  }
};

TEST_F(OrdersTest, AreFoundByTheirFields) {
  const char* const cases[][3] = {
      {"*", "3", "FA-0001 FA-0002 FA-0003 "},
      {"id:fa-0007", "", "FA-0007 "},
      {"FA-0001 OR 0003", "0", "FA-0001 FA-0003 "},
      {"origin:brandach destination:gr\xF6\xDFling status:open", "0", "FA-0006 "},
      {"weight:\"17,6\" NOT status:open", "0", "FA-0064 "},
      {"nobody", "", ""},
      {"", "", "Status: Query: it is empty ('*' finds every document)\r"},
      {"title:x", "",
       "Status: Query: there is no field 'title' (fields are id, status, customer, origin, destination, "
       "date, weight)\r"},
      {"*", "x", "Status: Max lines 'x' is not a number of 0 or more\r"},
  };
  for (const auto& [query, maxLines, ids] : cases) EXPECT_EQ(Ids(query, maxLines), ids) << query;
  EXPECT_EQ(server_.Ask("QueryFahrauftraege^,^FA-0002^,^1"),
            "Status: OK\r\n^FA-0002^,^delivered^,^1003^,^1^,^Nordlicht Optik^,^F\xF8nsby, Denmark^,^Ostwind, Kai 3^,"
            "^13.05.2023^,^4,2^\r\n");
}

TEST_F(OrdersTest, KeepANewStatus) {
  EXPECT_EQ(server_.Ask("UpdateFahrauftraegeStatus^,^fa-0002^,^LOADED"), "Status: OK\r\n");
  EXPECT_THAT(server_.Ask("QueryFahrauftraege^,^FA-0002 status:loaded^,^"),
              HasSubstr("\r\n^FA-0002^,^loaded^,^1003^,"));
  EXPECT_EQ(Ids("FA-0002 status:delivered"), "");
  for (const char* status : {"", "lost", "open,loaded", "open^"}) {
    EXPECT_THAT(server_.Ask(std::string("UpdateFahrauftraegeStatus^,^FA-0002^,^") + status),
                HasSubstr("is not a status of a transport order (open, accepted, loaded, delivered, cancelled)"));
  }
  for (const std::string& order : {std::string("FA-9999"), std::string("' OR '1'='1")}) {
    EXPECT_EQ(server_.Ask("UpdateFahrauftraegeStatus^,^" + order + "^,^open"),
              "Status: There is no transport order '" + order + "'\r\n");
  }
  EXPECT_EQ(Ids("FA-0002 status:loaded"), "FA-0002 ");
}

TEST(Orders, AreKeptWhenTheServerRestarts) {
  const oxaqrycln::testing::TemporaryDirectory directory;
  const auto ask = [&](const std::string& command) {
    Service service(OpenArchive(directory.File("archive"), 30), {{"webuser", "secret"}});
    return service.Answer(Request(command)).text;
  };
  EXPECT_EQ(ask("UpdateFahrauftraegeStatus^,^FA-0001^,^delivered"), "Status: OK\r\n");
  EXPECT_THAT(ask("QueryFahrauftraege^,^FA-0001 status:delivered^,^"), HasSubstr("\r\n^FA-0001^,^delivered^,"));
}

TEST_F(OrdersTest, HaveThePagesOfTheirDocuments) {
  // The document of the first order has one page, that of the second three, that of the third none.
  const char* const cases[][3] = {
      {"FA-0001", "FA-0001.tif", "416g "},
      {"fa-0002 , FA-0001", "FA-0002_and_1.tif", "416g 416g 416g 416g "},
      {"FA-0001,FA-0003,FA-0001", "FA-0001_and_2.tif", "416g 416g "},
  };
  for (const auto& [ids, name, found] : cases) {
    const auto file = Fetch(std::string("GetFahrauftraegeMultiTIFF^,^") + ids + "^,^");
    EXPECT_EQ(file.filename(), name);
    EXPECT_EQ(DescribeTiff(file), found) << ids;
  }
  EXPECT_EQ(Content(server_.BlobPath("FA-0001.tif")),
            Content(Fetch("GetSegmentMultiTIF^,^Mail^,^Inbox^,^1001^,^^,^^,^")));
  EXPECT_NE(Fetch("GetFahrauftraegeMultiTIFF^,^FA-0001^,^").filename(), "FA-0001.tif");

  const std::pair<std::string, const char*> refused[] = {
      {"FA-0003^,^", "Status: The transport orders have no pages\r\n"},
      {"^,^", "Status: The list of transport orders is empty\r\n"},
      {"FA-0001,^,^", "Status: There is no transport order ''\r\n"},
      {"FA-0001,FA-9999^,^", "Status: There is no transport order 'FA-9999'\r\n"},
      {"FA-0001^,^/tmp", "Status: '/tmp' is not the blob directory of this server\r\n"},
      {"FA-0001" + Repeat(",FA-0001", 200) + "^,^", "Status: More than 200 transport orders\r\n"},
  };
  for (const auto& [parameters, answer] : refused) {
    EXPECT_EQ(server_.Ask("GetFahrauftraegeMultiTIFF^,^" + parameters), answer) << parameters;
  }
}

}  // namespace
}  // namespace oxaqrycln::devserver

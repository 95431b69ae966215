#include "tools/devserver/commands/handlers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <string>
#include <tuple>

#include "tests/tools/devserver/fetched_content.h"
#include "tests/tools/devserver/wire_client.h"
#include "tools/devserver/archive/import_file.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kOrders = "@DB,$(#Finance)\\Orders\r\n";

class ChangesTest : public ::testing::Test {
 protected:
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(server_.BlobPath(name), std::ios::binary) << content;
  }
  std::string Create(const std::string& import) const {
    Write("a.imp", import);
    return server_.Ask("CreateDocument^,^a.imp");
  }
  std::string Edit(const std::string& import, const std::string& identifier) const {
    Write("a.imp", import);
    return server_.Ask("EditDocument^,^a.imp^,^" + identifier);
  }
  std::string Hits(const std::string& query) const {
    const std::string answer = server_.Ask("QueryArchive^,^" + query + "^,^0^,^0^,^^,^^,^^,^3");
    return answer.substr(12, answer.find("\r\n", 12) - 12);
  }
  std::string Texts(const std::string& document) const {
    return server_.Ask("GetSegmentText^,^Finance^,^Orders^,^" + document + "^,^^,^^,^^,^").substr(12);
  }

  RunningServer server_;  // its next document is 1091
};

TEST_F(ChangesTest, CreatesDocumentsFromImportFiles) {
  Write("list.csv", "1;2");
  const std::tuple<const char*, std::string, std::string, std::string> cases[] = {
      {"title only", kOrders + "@FOLDER,FT:One\r\n\r\n", "OK\r\n1091,1", ""},
      {"comma in the title", kOrders + "@FOLDER,FT:Two, and more,1:11\r\nAnna\r\n", "OK\r\n1092,1", "^Anna^\r\n"},
      {"several lines", kOrders + "@FOLDER,FT:T,1:16\r\n\r\none\r\n\r\ntwo^,^\r\n\r\n", "OK\r\n1093,1",
       "^\r\none\r\n\r\ntwo , ^\r\n"},
      {"named fields",
       "@CHARSET,ANSI\n" + kOrders + "@FOLDER,FT:T,1:11,3:30,1:99\n@FIELD,11\nEva\n@FIELD,30\nlist.csv\n",
       "OK\r\n1094,1", "^Eva^\r\n^^\r\n"},
      {"UTF-8", "@CHARSET,utf-8\r\n" + kOrders + "@FOLDER,FT:T,1:11\r\nJ\xC3\xB6rg \xE2\x82\xAC\r\n", "OK\r\n1095,1",
       "^J\xF6rg \x80^\r\n"},
      {"two documents", kOrders + "@FOLDER,FT:A\r\n\r\n" + kOrders + "@FOLDER,FT:B\r\n\r\n", "OK\r\n1096,1\r\n1097,1",
       ""},
      {"empty", "\r\n", "Import file: it is empty", ""},
      {"no archive line", "@FOLDER,FT:T\r\n", "Import file: the line @DB,$(#CHANNEL)\\ARCHIVE is expected", ""},
      {"no folder line", kOrders, "Import file: the line @FOLDER,FT:TITLE is expected", ""},
      {"unknown archive", "@DB,$(#Mail)\\No\r\n@FOLDER,FT:T\r\n", "There is no archive $(#Mail)\\No", ""},
      {"closed archive", "@DB,$(#Mail)\\Fax\r\n@FOLDER,FT:T\r\n", "Documents cannot be created in $(#Mail)\\Fax", ""},
      {"character set", "@CHARSET,EBCDIC\r\n" + kOrders, "Import file: unknown character set 'EBCDIC'", ""},
      {"no UTF-8", "@CHARSET,UTF-8\r\n" + kOrders + "@FOLDER,FT:\xFF\r\n",
       "Import file: '\xFF' is not UTF-8 text of Windows-1252 characters", ""},
      {"type", kOrders + "@FOLDER,FT:T,9:11\r\n", "Import file: field type 9 is not 1, 2 or 3", ""},
      {"field ID", kOrders + "@FOLDER,FT:T,1:40000\r\n", "Import file: field ID 40000 is not between 1 and 32767", ""},
      {"order", kOrders + "@FOLDER,FT:T,1:11,1:16\r\n@FIELD,16\r\nx\r\n",
       "Import file: '@FIELD,16' does not follow the order of the folder line", ""},
      {"a field too many", kOrders + "@FOLDER,FT:T,1:11\r\n@FIELD,11\r\nx\r\n@FIELD,11\r\nx\r\n",
       "Import file: '@FIELD,11' does not follow the order of the folder line", ""},
      {"content without a field", kOrders + "@FOLDER,FT:T\r\nx\r\n",
       "Import file: there is content before the first @FIELD line", ""},
      {"date", kOrders + "@FOLDER,FT:T,1:14\r\n30.02.2026\r\n",
       "Import file: '30.02.2026' is not a date in the form dd.mm.yyyy", ""},
      {"no file", kOrders + "@FOLDER,FT:T,3:30\r\n\r\n", "Import file: field 30 names no file", ""},
      {"file elsewhere", kOrders + "@FOLDER,FT:T,3:30\r\n/etc/passwd\r\n",
       "'/etc' is not the blob directory of this server", ""},
      {"missing file", kOrders + "@FOLDER,FT:T,3:30\r\nno.csv\r\n", "There is no file 'no.csv' in the blob directory",
       ""},
      {"no image", kOrders + "@FOLDER,FT:T,2:20\r\nlist.csv\r\n", "'list.csv': Not a TIFF file", ""},
      {"the second of two", kOrders + "@FOLDER,FT:A\r\n\r\n" + kOrders + "@FOLDER,FT:T,3:30\r\nno.csv\r\n",
       "There is no file 'no.csv' in the blob directory", ""},
  };
  for (const auto& [name, import, answer, texts] : cases) {
    EXPECT_EQ(Create(import), "Status: " + answer + "\r\n") << name;
    if (texts.empty()) continue;
    EXPECT_EQ(Texts(answer.substr(4, 4) + "^,^"), texts) << name;
  }
  EXPECT_EQ(server_.Ask("CreateDocument^,^/etc/passwd"), "Status: '/etc' is not the blob directory of this server\r\n");
  // Refused imports have neither left a document nor used a number.
  EXPECT_EQ(Hits("*"), "97");
  EXPECT_EQ(Create(kOrders + "@FOLDER,FT:T\r\n"), "Status: OK\r\n1098,1\r\n");
}

TEST(ImportFile, IsReadOrRefusedWhenDamaged) {
  const std::string sound = "@CHARSET,UTF-8\r\n" + kOrders + "@FOLDER,FT:T,1:11,3:30\r\n@FIELD,11\r\nJ\xC3\xB6rg\r\n" +
                            "@FIELD,30\r\nlist.csv\r\n" + kOrders + "@FOLDER,FT:T,1:16\r\none\r\ntwo\r\n";
  ASSERT_EQ(ParseImportFile(sound).size(), 2U);
  std::mt19937 random(815);
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string damaged = sound;
    for (int change = 0; change < 3; ++change) {
      damaged[random() % damaged.size()] = "@,:\n\r0^\xFF"[random() % 8];
      damaged.erase(random() % damaged.size(), random() % 3);
    }
    try {
      ParseImportFile(damaged);
    } catch (const ServerError& error) {
      ++refused;
      EXPECT_THAT(error.what(), StartsWith("Import file: "));
    }
  }
  EXPECT_GT(refused, 100);
  EXPECT_LT(refused, 3000);
}

TEST_F(ChangesTest, EditsReplaceTheFieldsTheyName) {
  Write("list.csv", "1;2");
  Create(kOrders +
         "@FOLDER,FT:Offer,1:11,1:14,1:16,3:30\r\n@FIELD,11\r\nAnna\r\n@FIELD,14\r\n24.12.2025\r\n"
         "@FIELD,16\r\nzebra\r\n@FIELD,30\r\nlist.csv\r\n");
  EXPECT_EQ(Hits("zebra author:anna date:24.12.2025"), "1");
  EXPECT_EQ(
      Edit(kOrders + "@FOLDER,FT:,1:16,1:16,1:50\r\n@FIELD,16\r\nlion\r\n@FIELD,16\r\ntiger\r\n@FIELD,50\r\nowl\r\n",
           "1091,1"),
      "Status: OK\r\n1091,2\r\n");
  EXPECT_EQ(Texts("1091^,^"), "^Anna^\r\n^24.12.2025^\r\n^lion^\r\n^tiger^\r\n^owl^\r\n");
  EXPECT_EQ(Texts("1091^,^1"), "^Anna^\r\n^24.12.2025^\r\n^zebra^\r\n");
  // A search finds the newest version only.
  EXPECT_EQ(Hits("zebra"), "0");
  EXPECT_EQ(Hits("title:offer lion tiger owl author:anna"), "1");
  EXPECT_THAT(server_.Ask("GetDocumentInfo^,^Finance^,^Orders^,^1091^,^2"), HasSubstr("^,^Offer^,^6^,^5^,^0^,^1^"));

  const std::string import = kOrders + "@FOLDER,FT:T\r\n";
  EXPECT_EQ(Edit(import, "1091,1"), "Status: The newest version of document 1091 is 2\r\n");
  EXPECT_EQ(Edit(import, "1091,7"), "Status: Document 1091 has no version '7'\r\n");
  EXPECT_EQ(Edit(import, "x"), "Status: There is no document 'x' in $(#Finance)\\Orders\r\n");
  EXPECT_EQ(Edit(import, ""), "Status: There is no document '' in $(#Finance)\\Orders\r\n");
  EXPECT_EQ(Edit(import + "\r\n" + import, "1091,2"), "Status: The import file contains 2 documents\r\n");
  EXPECT_EQ(Edit("@DB,$(#Finance)\\Invoices\r\n@FOLDER,FT:T\r\n", "1004,1"),
            "Status: Documents cannot be edited in $(#Finance)\\Invoices\r\n");
}

TEST_F(ChangesTest, FilesOfAnyLengthComeBackUnchanged) {
  std::size_t document = 1091;
  for (const std::size_t length : {0U, 1U, 1U << 20U, (1U << 20U) + 1, 3'000'000U}) {
    std::string bytes(length, '\0');
    std::ranges::generate(bytes, [random = std::minstd_rand(1)]() mutable { return static_cast<char>(random()); });
    Write("long.bin", bytes);
    Create(kOrders + "@FOLDER,FT:T,3:30\r\nlong.bin\r\n");
    const std::string place = "Finance^,^Orders^,^" + std::to_string(document++);
    const std::string name = std::to_string(document - 1) + "_1_1.bin";
    EXPECT_EQ(server_.Ask("GetSegmentData^,^" + place + "^,^1^,^1^,^"),
              "Status: OK\r\n" + std::to_string(length) + "\r\n" + name + "\r\n");
    EXPECT_TRUE(Content(server_.BlobPath(name)) == bytes) << length;
  }
}

TEST_F(ChangesTest, DeletesAVersionOrTheWholeDocument) {
  Create(kOrders + "@FOLDER,FT:Offer,1:16\r\nzebra\r\n");
  Edit(kOrders + "@FOLDER,FT:Other,1:16\r\nlion\r\n", "1091,1");
  EXPECT_EQ(server_.Ask("DeleteDocument^,^Finance^,^Orders^,^1091^,^2"), "Status: OK\r\n");
  EXPECT_EQ(Hits("zebra title:offer"), "1");
  EXPECT_EQ(Hits("lion OR title:other"), "0");
  EXPECT_EQ(server_.Ask("DeleteDocument^,^Finance^,^Orders^,^1091^,^1"), "Status: OK\r\n");
  EXPECT_EQ(Hits("zebra"), "0");
  EXPECT_THAT(server_.Ask("GetNotes^,^Finance^,^Orders^,^1091^,^"), StartsWith("Status: There is no document"));
  EXPECT_EQ(server_.Ask("DeleteDocument^,^Finance^,^Orders^,^1005^,^"), "Status: OK\r\n");
  EXPECT_EQ(server_.Ask("DeleteDocument^,^Mail^,^Inbox^,^1001^,^"),
            "Status: Documents cannot be deleted in $(#Mail)\\Inbox\r\n");
  // A number is never reused.
  EXPECT_EQ(Create(kOrders + "@FOLDER,FT:T\r\n"), "Status: OK\r\n1092,1\r\n");
}

TEST_F(ChangesTest, NotesKeepTheirLineBreaks) {
  const std::string document = "^,^Mail^,^Inbox^,^1001^,^";
  const char* const cases[][3] = {
      {"one", "\r\n", "^one^"},       {"one\r\ntwo\r\n", "\r\n", "^one\r\ntwo^"}, {"one##two##", "##", "^one\r\ntwo^"},
      {"one##two", "", "^one##two^"}, {"one^\r\n^two", "##", "^one \r\n two^"},
  };
  for (const auto& [note, lineBreak, lines] : cases) {
    EXPECT_EQ(server_.Ask("WriteNote" + document + "^,^" + note + "^,^" + lineBreak), "Status: OK\r\n");
    EXPECT_THAT(server_.Ask("GetNotes" + document), ::testing::EndsWith(std::string("\r\n") + lines + "\r\n"));
  }
  EXPECT_THAT(server_.Ask("GetNotes" + document), ::testing::ContainsRegex("\r\nwebuser,[0-9.]+ [0-9:]+\r\n"));
  EXPECT_THAT(server_.Ask("GetSegmentDescription" + document + "^,^"), StartsWith("Status: OK\r\n5\r\n"));
  EXPECT_EQ(server_.Ask("WriteNote" + document + "^,^^,^"), "Status: The note is empty\r\n");
  EXPECT_EQ(server_.Ask("WriteNote" + document + "^,^" + std::string(8000, 'x') + "^,^"), "Status: OK\r\n");
  EXPECT_EQ(server_.Ask("WriteNote" + document + "^,^" + std::string(8001, 'x') + "^,^"),
            "Status: The note is longer than 8000 characters\r\n");
  EXPECT_EQ(server_.Ask("DeleteNotes" + document), "Status: OK\r\n");
  EXPECT_EQ(server_.Ask("GetNotes" + document), "Status: OK\r\n");
}

}  // namespace
}  // namespace oxaqrycln::devserver

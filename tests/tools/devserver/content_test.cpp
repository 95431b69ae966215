#include "tools/devserver/commands/handlers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/file_size_limit.h"
#include "tests/tools/devserver/fetched_content.h"
#include "tools/devserver/content/page_image.h"
#include "tools/devserver/protocol/errors.h"
#include "values/errors.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kEnquiry = "^,^Mail^,^Inbox^,^1262^,^^,^";

TEST_F(ContentTest, MultiPageTiffContainsTheRequestedPages) {
  // Document 1003 has three pages, 1094 one.
  const char* const cases[][3] = {
      {"Mail^,^Fax^,^1003", "", "416g 416g 416g "},
      {"Mail^,^Fax^,^1003", "2", "416g "},
      {"Mail^,^Fax^,^1003", "3,1,3,3", "416g 416g 416g 416g "},
      {"Finance^,^Invoices^,^1094", "", "416g "},
  };
  for (const auto& [document, pages, found] : cases) {
    const auto file = Fetch(std::string("GetSegmentMultiTIF^,^") + document + "^,^^,^" + pages + "^,^");
    EXPECT_EQ(DescribeTiff(file), found) << document << " " << pages;
  }
  // A page of the file is the page of that number.
  const auto third = Fetch("GetSegmentMultiTIF^,^Mail^,^Fax^,^1003^,^^,^3^,^");
  EXPECT_EQ(Content(third), Content(Fetch("GetSegmentData^,^Mail^,^Fax^,^1003^,^^,^7^,^")));
  EXPECT_NE(Content(third), Content(Fetch("GetSegmentMultiTIF^,^Mail^,^Fax^,^1003^,^^,^1^,^")));
}

TEST_F(ContentTest, IsFetchedByPositionExtensionAndField) {
  EXPECT_THAT(Content(Fetch("GetSegmentData" + kEnquiry + "1^,^")), "Mia Kr\xE4henb\xFChl");
  EXPECT_THAT(Content(Fetch("GetSegmentData" + kEnquiry + "4^,^")), HasSubstr("month.\r\nThe goods"));
  const std::string file = Content(Fetch("GetSegmentFirstBLOB" + kEnquiry + "^,^"));
  EXPECT_EQ(file, "Position;Article;Pieces\r\n1;oak shelves;22\r\n2;packing;1\r\n");
  EXPECT_EQ(Content(Fetch("GetSegmentFirstBLOB" + kEnquiry + ".CSV^,^")), file);
  EXPECT_THAT(
      Content(Fetch("GetSegmentPrintfile2" + kEnquiry + "11^,^")),
      ::testing::AllOf(HasSubstr("\r\nAuthor: Mia Kr\xE4henb\xFChl\r\n"), ::testing::Not(HasSubstr("Customer"))));
  const std::string directory = server_.BlobPath("").string();
  EXPECT_THAT(server_.Ask("GetSegmentData" + kEnquiry + "1^,^" + directory), StartsWith("Status: OK\r\n"));
  const std::pair<std::string, const char*> refused[] = {
      {"GetSegmentData" + kEnquiry + "9^,^", "1262 has no segment '9'"},
      {"GetSegmentFirstBLOB" + kEnquiry + "pdf^,^", "1262 has no stored file with the extension 'pdf'"},
      {"GetSegmentPrintfile2" + kEnquiry + "77^,^", "1262 has no field '77'"},
      {"GetSegmentMultiTIF" + kEnquiry + "2^,^", "1262 has no page '2' (number of pages: 1)"},
      {"GetSegmentMultiTIF^,^Finance^,^Orders^,^1005^,^^,^^,^", "1005 has no pages"},
  };
  for (const auto& [command, answer] : refused)
    EXPECT_EQ(server_.Ask(command), std::string("Status: Document ") + answer + "\r\n");
}

TEST_F(ContentTest, IsStoredInANewFileForEachRequest) {
  // The name of the first file, and the pattern of the others while that name is in use.
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {"GetSegmentData" + kEnquiry + "6^,^", "1262_2_6.csv", "1262_2_6-[0-9a-f]{8}\\.csv"},
      {"GetSegmentPrintfile2" + kEnquiry + "^,^", "1262_2_print.txt", "1262_2_print-[0-9a-f]{8}\\.txt"},
      {"GetSegmentMultiTIF^,^Mail^,^Fax^,^1003^,^^,^1,3^,^", "1003_1_pages.tif", "1003_1_pages-[0-9a-f]{8}\\.tif"},
  };
  for (const auto& [command, name, others] : cases) {
    const auto first = Fetch(command);
    const auto second = Fetch(command);
    EXPECT_EQ(first.filename(), name);
    EXPECT_TRUE(std::regex_match(second.filename().string(), std::regex(others))) << second;
    EXPECT_EQ(Content(first), Content(second)) << name;
    std::filesystem::remove(second);
    // A client that changes extensions would overwrite this file with the next one of its name.
    const auto renamed = std::filesystem::path(first).replace_extension(".other");
    std::filesystem::rename(first, renamed);
    EXPECT_TRUE(std::regex_match(Fetch(command).filename().string(), std::regex(others))) << name;
    std::filesystem::remove(renamed);
    EXPECT_EQ(Fetch(command).filename(), name);
  }
  std::ofstream(server_.BlobPath("1262_2_1.txt")) << "not read yet";
  EXPECT_NE(Fetch("GetSegmentData" + kEnquiry + "1^,^").filename(), "1262_2_1.txt");
  EXPECT_EQ(Content(server_.BlobPath("1262_2_1.txt")), "not read yet");
}

// Like several servers that share a directory.
TEST(BlobDirectory, GivesConcurrentFilesOfOneNameDifferentNames) {
  const BlobDirectory owner = BlobDirectory::Private();
  constexpr int kThreads = 4;
  constexpr int kFiles = 40;
  const auto store = [&](int thread) {
    const BlobDirectory directory = BlobDirectory::At(owner.path());
    for (int file = 0; file < kFiles; ++file) {
      const std::string name = directory.Store("page.tif", std::to_string(thread * kFiles + file));
      // Now the name is free again for all threads.
      std::error_code lost;
      const std::string own = owner.path() + "/" + std::to_string(thread * kFiles + file);
      if (name == "page.tif") std::filesystem::rename(owner.path() + "/page.tif", own, lost);
    }
  };
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) threads.emplace_back(store, thread);
  for (std::thread& thread : threads) thread.join();
  std::set<std::string> contents;
  for (const auto& entry : std::filesystem::directory_iterator(owner.path())) contents.insert(Content(entry.path()));
  EXPECT_EQ(contents.size(), static_cast<std::size_t>(kThreads * kFiles));
}

TEST(BlobDirectory, LeavesNothingOfContentThatTheDiskCannotHold) {
  const BlobDirectory directory = BlobDirectory::Private();
  const oxaqrycln::testing::FileSizeLimit limit(1000);
  EXPECT_THROW(directory.Store("page.tif", std::string(1001, 'x')), RuntimeError);
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
  EXPECT_EQ(directory.Store("page.tif", std::string(1000, 'x')), "page.tif");
}

TEST_F(ContentTest, IsWrittenToTheSharedDirectoryOnly) {
  const std::string directory = server_.BlobPath("").string();
  for (const std::string& place : {std::string("/"), std::string("/tmp"), directory + "..", directory + "x",
                                   std::string("C:\\blobs"), std::string("x\0y", 3), std::string(5000, 'x')}) {
    for (const char* command : {"GetSegmentData^,^Mail^,^Inbox^,^1262^,^^,^1", "UploadFile"}) {
      const std::string rest = std::string(command) == "UploadFile" ? "^,^name^,^0" : "";
      EXPECT_THAT(server_.Ask(command + ("^,^" + place + rest), rest.empty() ? "" : "\r\n"),
                  HasSubstr("is not the blob directory of this server\r\n"))
          << command << " " << place.substr(0, 80);
    }
  }
  for (const char* name : {"..", ".", "", "a/b", "a\\b", "/etc/passwd", "a:b", "con"}) {
    EXPECT_THAT(server_.Ask(std::string("UploadFile^,^^,^") + name + "^,^0", "\r\n"),
                HasSubstr("is not a valid file name\r\n"))
        << name;
  }
}

TEST_F(ContentTest, IsTransferredWithoutAHeaderOrNotAtAll) {
  std::string bytes(300000, '\0');
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<char>(at * 7 + at / 251);
  std::ofstream(server_.BlobPath("big.bin"), std::ios::binary) << bytes;
  std::filesystem::create_symlink("/etc/passwd", server_.BlobPath("link"));
  std::filesystem::create_directory(server_.BlobPath("directory"));
  std::ofstream(server_.BlobPath("empty.bin")) << "";
  const auto transfer = [&](const std::string& request, int error = 0) {
    Client client = server_.Send(request);
    std::string received = client.Receive();
    EXPECT_EQ(client.error(), error) << request;
    return received;
  };
  EXPECT_EQ(transfer(Request("TransferBLOB^,^" + server_.BlobPath("").string() + "\\big.bin")), bytes);
  EXPECT_EQ(transfer(Request("transferblob^,^big.bin")), bytes);
  EXPECT_EQ(transfer(Request("TransferBLOB^,^\\empty.bin")), "");
  for (const char* name : {"missing", "link", "directory", "..", "/etc/passwd", ""}) {
    EXPECT_EQ(transfer(Request(std::string("TransferBLOB^,^") + name), ECONNRESET), "") << name;
  }
  EXPECT_EQ(transfer(Request("TransferBLOB"), ECONNRESET), "");
  EXPECT_EQ(transfer("^S1^,^nobody^,^x^,^TransferBLOB^,^big.bin^", ECONNRESET), "");
}

TEST(TransferBlob, IsSubjectToMisbehaviour) {
  // Longer than the pieces in which a file is read.
  for (const auto& [mode, length] : {std::pair("cut:100", 100), {"reset:66000", 66000}, {"bytewise", 70000}}) {
    const RunningServer server(WithLimits({.linger = std::chrono::milliseconds(10)}), mode);
    std::ofstream(server.BlobPath("big.bin"), std::ios::binary) << std::string(70000, 'x');
    Client client = server.Send(Request("TransferBLOB^,^big.bin"));
    EXPECT_EQ(client.Receive().size(), static_cast<std::size_t>(length)) << mode;
  }
}

// Any stored image is either read or refused.
TEST(PageImages, SurviveDamagedFiles) {
  PageImage colours{300, 40, true, std::vector<std::uint8_t>(std::size_t{300} * 40 * 3)};
  for (std::size_t at = 0; at < colours.bytes.size(); ++at) colours.bytes[at] = static_cast<std::uint8_t>(at * 31);
  TiffWriter writer;
  writer.Add(colours);
  writer.Add(DrawSamplePage(1001, 2));
  const std::string bytes = writer.Finish();
  TiffReader reader(bytes);
  ASSERT_EQ(reader.pageCount(), 2);
  EXPECT_EQ(reader.Read(0).bytes, colours.bytes);
  EXPECT_EQ(reader.Read(1).bytes, DrawSamplePage(1001, 2).bytes);

  std::mt19937 random(20261121);
  int refused = 0;
  for (int round = 0; round < 300; ++round) {
    std::string damaged = bytes;
    for (int change = 0; change < 4; ++change) damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
    // The directories, which matter most, are at the end of the file.
    for (int change = 0; change < 2; ++change)
      damaged[damaged.size() - 1 - random() % 220] = static_cast<char>(random() % 256);
    if (round % 3 == 0) damaged.resize(random() % damaged.size());
    try {
      TiffReader damagedReader(damaged);
      for (std::int64_t page = 0; page < std::min<std::int64_t>(damagedReader.pageCount(), 3); ++page) {
        damagedReader.Read(page);
      }
    } catch (const ServerError&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace oxaqrycln::devserver

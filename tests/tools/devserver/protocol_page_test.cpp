#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "component/version.h"
#include "tests/tools/devserver/wire_client.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

// Has the length that the byte count on the page assumes.
constexpr const char* kPageVersion = "0.0.0";

std::string Replace(std::string text, const std::string& old, const std::string& replacement) {
  for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + replacement.size())) {
    text.replace(at, old.size(), replacement);
  }
  return text;
}

// The lines from the position up to the line "```"; the position moves past it.
std::string Block(const std::string& page, std::size_t& position) {
  const std::size_t start = page.find('\n', position) + 1;
  const std::size_t end = page.find("\n```\n", start - 1);
  position = end + 5;
  return end < start ? std::string() : page.substr(start, end + 1 - start);
}

// What the server sends for the bytes, up to the end of the answer that its header announces, or of a file.
std::string Exchange(const RunningServer& server, const std::string& bytes, bool isFile) {
  Client client = server.Send(bytes);
  if (isFile) return client.Receive();
  const std::string answer = Replace(client.Answer(), kVersionText, kPageVersion);
  return "TotalBytes:" + std::to_string(answer.size()) + "\r\n" + answer;
}

TEST(ProtocolPage, ShowsTheBytesThatTheServerSends) {
  std::ostringstream file;
  file << std::ifstream(DEVSERVER_PROTOCOL_PAGE).rdbuf();
  const std::string page = FromUtf8(file.str()).value_or("");
  const RunningServer server({}, "none", kSampleDocumentCount);
  int exampleCount = 0;
  // One server carries out all requests in turn, since some depend on earlier ones.
  for (std::size_t position = 0; (position = page.find("\n```request\n", position)) != std::string::npos;) {
    std::string request = Replace(Block(page, ++position), "\n", "\r\n");
    // A request ends with its caret, an uploaded file with its last line.
    if (request.find("^,^UploadFile^,^") == std::string::npos) request.resize(request.size() - 2);
    const bool isFile = page.compare(position, 8, "```file\n") == 0;
    ASSERT_TRUE(isFile || page.compare(position, 10, "```answer\n") == 0) << request;
    const std::string shown = Replace(Replace(Block(page, position), "\n", "\r\n"), "VERSION", kPageVersion);
    EXPECT_EQ(shown, Exchange(server, request, isFile)) << request;
    ++exampleCount;
  }
  EXPECT_EQ(exampleCount, 36);
}

}  // namespace
}  // namespace oxaqrycln::devserver

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "component/version.h"
#include "platform/code_page.h"
#include "tools/devserver/misbehaviour.h"
#include "tools/devserver/sample_archive.h"
#include "tools/devserver/service.h"

namespace oxaqrycln::devserver {
namespace {

std::string Replace(std::string text, const std::string& old, const std::string& replacement) {
  for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + replacement.size())) {
    text.replace(at, old.size(), replacement);
  }
  return text;
}

// The text between the next line "```name" and the line "```" that closes it; moves past it. "" when there is none.
std::string NextBlock(const std::string& page, const std::string& name, std::size_t& position) {
  const std::string opening = "\n```" + name + "\n";
  const std::size_t start = page.find(opening, position);
  if (start == std::string::npos) return {};
  position = page.find("\n```\n", start + opening.size()) + 1;
  return page.substr(start + opening.size(), position - start - opening.size());
}

TEST(ProtocolPage, ShowsTheBytesThatTheServerSends) {
  std::ostringstream page;
  page << std::ifstream(DEVSERVER_PROTOCOL_PAGE).rdbuf();
  const std::string text = FromUtf8(page.str()).value_or("");
  Service service(OpenArchive(""), {{"webuser", "secret"}});
  int exampleCount = 0;
  std::size_t position = 0;
  for (std::string request; !(request = NextBlock(text, "request", position)).empty(); ++exampleCount) {
    request.pop_back();
    const std::string shown = Replace(NextBlock(text, "answer", position), "VERSION", "0.0.0");
    const std::string answer = Replace(service.Answer(request), kVersionText, "0.0.0");
    EXPECT_EQ(Replace(shown, "\n", "\r\n"), WireBytes(answer, {})) << request;
  }
  EXPECT_EQ(exampleCount, 10);
}

}  // namespace
}  // namespace oxaqrycln::devserver

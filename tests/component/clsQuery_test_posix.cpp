// What an instance makes of the way in which its program was started, and of a full disk.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "component/query_watch.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/page.h"
#include "tests/support/process_state.h"

namespace oxaqrycln::testing {
namespace {

TEST(Instance, LogsAnAbsolutePathAlsoInAProgramThatWasFoundThroughPath) {
  const std::string command =
      "PATH='" + ProgramPath().parent_path().string() +
      "' component_test --gtest_color=no --gtest_filter=Instance.LogsItsLifeFromInitToItsEnd 2>&1";
  FILE* const program = popen(command.c_str(), "r");
  std::string output;
  for (int c = fgetc(program); c != EOF; c = fgetc(program)) output += static_cast<char>(c);
  EXPECT_EQ(pclose(program), 0) << output;
  EXPECT_NE(output.find("[  PASSED  ] 1 test."), std::string::npos) << output;
}

TEST(WriteTest, LeavesNothingBehindOnAFullDisk) {
  WithAnswer({}, [](Page& page) {
    const QueryWatch watch(page.query);
    {
      const FileSizeLimit limit(5);
      page.query.WriteTest();
    }
    EXPECT_EQ(watch.LastError().number, 61);
    EXPECT_TRUE(std::filesystem::is_empty(page.blobs.path()));
  });
}

}  // namespace
}  // namespace oxaqrycln::testing

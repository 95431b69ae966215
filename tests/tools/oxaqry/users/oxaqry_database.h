// oxaqry_database.h - runs "oxaqry user" on the private database of a test.
#ifndef OXAQRYCLN_TESTS_TOOLS_OXAQRY_USERS_OXAQRY_DATABASE_H_
#define OXAQRYCLN_TESTS_TOOLS_OXAQRY_USERS_OXAQRY_DATABASE_H_

#include <string>
#include <vector>

#include "tests/support/test_database.h"
#include "tests/tools/oxaqry/run_oxaqry.h"

namespace oxaqrycln::oxaqry {

// Has the tables of the schema unless the constructor is given false.
class UserTestDatabase : public TestDatabase {
 public:
  using TestDatabase::TestDatabase;

  ToolRun Command(const std::vector<std::string>& arguments, const std::string& input = "") const {
    return With({}, arguments, input);
  }
  // With further environment variables.
  ToolRun With(std::map<std::string, std::string> environment, const std::vector<std::string>& arguments,
               const std::string& input = "", Terminals terminals = {}) const {
    environment.emplace("OXAQRY_DATABASE", connectionString());
    return RunOxaqry(arguments, environment, input, terminals);
  }
  ToolRun User(const std::vector<std::string>& arguments, const std::string& input = "") const {
    return Command(Joined({"user"}, arguments), input);
  }
  // Sets up a test.
  void Must(const std::vector<std::string>& arguments, const std::string& input = "") const {
    const ToolRun run = User(arguments, input);
    ASSERT_EQ(run.status, 0) << run.err;
  }
  std::int32_t Count(const std::string& table) const { return Run("SELECT COUNT(*) FROM " + table).ToLong(); }
};

// The run failed with the status and the message on standard error, and printed nothing else.
inline void ExpectError(const ToolRun& run, int status, const std::string& message) {
  EXPECT_EQ(run.status, status);
  EXPECT_THAT(run.err, ::testing::AllOf(::testing::StartsWith("oxaqry: "), ::testing::HasSubstr(message)));
  EXPECT_EQ(run.out, "");
}

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TESTS_TOOLS_OXAQRY_USERS_OXAQRY_DATABASE_H_

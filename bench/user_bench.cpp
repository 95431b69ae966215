// Logon and rights of one web user among a thousand and among a hundred thousand.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "component/clsQuery.h"
#include "component/objects.h"
#include "platform/database/database.h"
#include "support/text_helpers.h"
#include "values/text_parts.h"

namespace oxaqrycln::bench {
namespace {

constexpr int kGroups = 100;

// An SQLite file with users "u1", "u2", ..., each a member of two of the groups.
class UserDatabase {
 public:
  explicit UserDatabase(int users)
      : path_((std::filesystem::temp_directory_path() / ("oxaqrycln-bench-" + std::string(6, 'X'))).string()) {
    const int made = mkstemp(path_.data());
    if (made < 0) std::abort();
    std::ifstream file(OXAQRYCLN_SCHEMA);
    const std::string schema{std::istreambuf_iterator<char>(file), {}};
    const auto connection = std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"));
    connection->Open(connectionString());
    for (const std::string_view statement : Split(schema, ';')) {
      if (statement.find("CREATE") != std::string_view::npos)
        connection->Execute(statement.substr(statement.find("CREATE")));
    }
    const std::string numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<";
    const std::string groups = std::to_string(kGroups);
    for (const std::string& each :
         {"INSERT INTO Users(UserID,UserName,Passwd) " + numbers + std::to_string(users + kGroups) +
              ") SELECT i, 'u' || i, '" + Encode("secret") + "' FROM n",
          "INSERT INTO UserGroups " + numbers + std::to_string(users) + ") SELECT i+" + groups + ", 1+i%" + groups +
              " FROM n",
          "INSERT INTO UserRights " + numbers + groups + ") SELECT i, i%7 FROM n",
          "INSERT INTO UserRights " + numbers + std::to_string(users) + ") SELECT i+" + groups + ", 10+i%7 FROM n"}) {
      connection->Execute(each);
    }
    connection->Close();
  }
  ~UserDatabase() { std::filesystem::remove(path_); }
  UserDatabase(const UserDatabase&) = delete;
  UserDatabase& operator=(const UserDatabase&) = delete;
  std::string connectionString() const { return "Driver={SQLite3};Database=" + path_; }

 private:
  std::string path_;
};

void LogonAndRights(benchmark::State& state) {
  const auto users = static_cast<int>(state.range(0));
  const UserDatabase database(users);
  clsQuery query;
  query.strDBConnect = database.connectionString();
  query.Init();
  int user = 0;
  for (auto _ : state) {
    user = (user + 7919) % users;
    const Variant id = query.CheckLogon("u" + std::to_string(kGroups + 1 + user), "secret");
    Variant rights;
    if (id.ToLong() == 0 || query.GetUserRights(id, &rights) != Variant::Long(2)) state.SkipWithError("not logged on");
  }
}
BENCHMARK(LogonAndRights)->Arg(1000)->Arg(100'000)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench

// oxaqrycln_worker HOSTS SPREAD SECONDS: a worker of a web site, which searches again and again. SPREAD is 1 or 0.
// Prints a line "PORT REQUESTS" for each server that answered. The script bench/workers starts several of them.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "client/archive.h"

int main(int argc, char** argv) try {
  namespace client = oxaqrycln::client;
  if (argc != 4) return 2;
  client::Settings settings;
  settings.hosts = argv[1];
  settings.spread = std::string_view(argv[2]) == "1";
  settings.user = "webuser";
  settings.password = "secret";
  std::map<int, long> answers;
  client::Archive archive(settings);
  archive.OnRequest([&](const client::RequestReport& request) {
    for (const client::Attempt& attempt : request.attempts) {
      if (attempt.error.empty()) ++answers[attempt.port];
    }
  });
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoi(argv[3]));
  while (std::chrono::steady_clock::now() < end) archive.Search({.query = "copper", .max = 10});
  for (const auto& [port, count] : answers) std::printf("%d %ld\n", port, count);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "oxaqrycln_worker: %s\n", error.what());
  return 1;
}

#include "tools/devserver/command_line.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iostream>
#include <vector>

#include "component/version.h"
#include "platform/net/socket_address.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

std::string FromArgument(const std::string& text) {
  const auto converted = FromUtf8(text);
  if (!converted) throw ServerError("'" + text + "' contains a character outside Windows-1252");
  return *converted;
}

void AddAccount(const std::string& text, Accounts& accounts) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) throw ServerError("account '" + text + "' is not of the form USER:PASSWORD");
  accounts[FromArgument(text.substr(0, colon))] = FromArgument(text.substr(colon + 1));
}

// A whole number of a range. The parser's own messages name its types.
CLI::Validator From(std::int64_t least, std::int64_t most) {
  const std::string range = " is no number from " + std::to_string(least) + " to " + std::to_string(most);
  const auto check = [least, most, range](const std::string& text) {
    const std::optional<std::int64_t> number = ParseNumber(text);
    return number && *number >= least && *number <= most ? std::string() : "\"" + text + "\"" + range;
  };
  return CLI::Validator(check, "");
}

// An option whose values are passed to the reader; a value that it refuses is a usage error.
CLI::Option* AddOption(CLI::App& app, const std::string& name, const std::string& help,
                       const std::function<void(const std::string& text)>& read) {
  const auto readAll = [name, read](const std::vector<std::string>& texts) {
    try {
      std::ranges::for_each(texts, read);
    } catch (const ServerError& error) {
      throw CLI::ValidationError(name, error.what());
    }
  };
  return app.add_option_function<std::vector<std::string>>(name, readAll, help);
}

}  // namespace

void AddOptions(CLI::App& app, CommandLine& line) {
  app.set_version_flag("--version", std::string("devserver ") + kVersionText);
  const auto isAddress = [](const std::string& text) {
    return NumericAddress(text) ? "" : "'" + text + "' is not a numeric address to listen on";
  };
  app.add_option("--listen", line.server.address, "Numeric address to listen on")
      ->type_name("ADDRESS")
      ->check(CLI::Validator(isAddress, ""))
      ->capture_default_str();
  app.add_option("--port", line.server.port, "TCP port; 0 takes any free one")
      ->type_name("PORT")
      ->check(From(0, 65535))
      ->capture_default_str();
  app.add_option("--database", line.database, "SQLite file, created and filled when new (default: in memory)")
      ->type_name("FILE");
  app.add_option(
         "--blob-dir", line.blobDirectory,
         "Directory shared with the web server, created when missing\n(default: DATABASE.blobs; a temporary one "
         "for a database in memory)")
      ->type_name("DIRECTORY");
  app.add_option("--documents", line.documentCount, "Sample documents in a new database, at most 1000000")
      ->type_name("N")
      ->check(From(0, 1000000))
      ->capture_default_str();
  AddOption(app, "--account", "An account, repeatable (default: webuser:secret)",
            [&](const std::string& text) { AddAccount(text, line.accounts); })
      ->type_name("USER:PASSWORD")
      ->allow_extra_args(false);
  app.add_option("--max-connections", line.server.maxConnections, "Clients served at once, 1 to 10000")
      ->type_name("N")
      ->check(From(1, 10000))
      ->capture_default_str();
  app.add_flag("--log", line.log, "Write each request (without its password) and its status to standard error");
  AddOption(app, "--misbehave",
            "Break the protocol: refuse, delay:MS, silent, cut:N, reset:N,\nbytewise[:MS], count:TEXT, "
            "no-header or never-read",
            [&](const std::string& text) { line.server.misbehaviour = ParseMisbehaviour(text); })
      ->expected(1)
      ->type_name("MODE")
      ->default_str("none");
  app.footer(
      "Prints \"listening on ADDRESS:PORT\" when it is ready; ends on SIGINT or SIGTERM.\n"
      "All its documents are invented. The protocol is described in docs/protocol.md.");
}

std::optional<int> Parse(CLI::App& app, int argumentCount, const char* const* arguments) {
  try {
    app.parse(argumentCount, arguments);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return std::cout.flush() ? 0 : 1;
    }
    const std::vector<std::string> unknown = app.remaining();
    std::string reason = error.what();
    if (!unknown.empty()) {
      const bool isOption = unknown.front().starts_with('-');
      reason = std::string(isOption ? "unknown option" : "unexpected argument") + " \"" + unknown.front() + "\"";
    }
    std::cerr << "devserver: " << reason << "\nTry \"devserver --help\".\n";
    return 2;
  }
}

}  // namespace oxaqrycln::devserver

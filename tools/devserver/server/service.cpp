#include "tools/devserver/server/service.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "support/text_helpers.h"
#include "tools/devserver/commands/commands.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {

std::string ErrorAnswer(std::string_view text) {
  std::string line = "Status: " + std::string(text);
  std::replace_if(
      line.begin(), line.end(), [](char character) { return character == '\r' || character == '\n'; }, ' ');
  return line + "\r\n";
}

// Passwords are compared in their encoded form, because the encoding of some characters is not reversible.
Service::Service(Database database, Accounts accounts, BlobDirectory blobs)
    : database_(std::move(database)), encoded_(std::move(accounts)), blobs_(std::move(blobs)) {
  for (auto& [user, password] : encoded_) password = Encode(password);
}

Reply Service::Answer(std::string_view request) noexcept {
  const RequestFields split = SplitRequest(request);
  try {
    if (!split.ended) throw ServerError("The request is not a list of caret-quoted fields");
    if (split.fields.size() <= kPrefixFieldCount) throw ServerError("The request contains no command");
    return Dispatch(split.fields);
  } catch (const std::exception& error) {
    const bool isDatabase = dynamic_cast<const SQLite::Exception*>(&error) != nullptr;
    Reply reply(ErrorAnswer((isDatabase ? "Database: " : "") + std::string(error.what())));
    const bool hasCommand = split.fields.size() > kPrefixFieldCount;
    const Command* command = hasCommand ? FindCommand(split.fields[kPrefixFieldCount]) : nullptr;
    reply.isRaw = command != nullptr && command->shape.form == Form::kRawAnswer;
    return reply;
  }
}

Reply Service::Dispatch(const std::vector<std::string>& fields) {
  const auto account = encoded_.find(fields[1]);
  if (account == encoded_.end() || account->second != fields[2]) {
    throw ServerError("Access denied for user '" + Printable(fields[1]) + "'");
  }
  const Command* command = FindCommand(fields[kPrefixFieldCount]);
  if (command == nullptr) throw ServerError("Unknown command '" + Printable(fields[kPrefixFieldCount]) + "'");
  std::vector<std::string> parameters(fields.begin() + kPrefixFieldCount + 1, fields.end());
  if (command->shape.form == Form::kRows) parameters = JoinRows(std::move(parameters));
  if (parameters.size() != command->shape.parameterCount) {
    throw ServerError(std::string(command->name) + " takes " + std::to_string(command->shape.parameterCount) +
                      " parameters, not " + std::to_string(parameters.size()));
  }
  Reply reply = command->handler({database_, blobs_, account->first, parameters});
  reply.text.insert(0, "Status: OK\r\n");
  return reply;
}

}  // namespace oxaqrycln::devserver

// scripted_archive.h - a query server for oxaqry's tests that answers command by command, with a blob directory.
#ifndef OXAQRYCLN_TESTS_TOOLS_OXAQRY_SCRIPTED_ARCHIVE_H_
#define OXAQRYCLN_TESTS_TOOLS_OXAQRY_SCRIPTED_ARCHIVE_H_

#include <functional>
#include <mutex>

#include "client/text.h"
#include "tests/support/scripted_server.h"
#include "tests/tools/oxaqry/run_oxaqry.h"

namespace oxaqrycln::oxaqry {

using Fields = std::vector<std::string>;

// The fields of a request from its command word on.
inline Fields CommandFields(const std::string& request) {
  const Fields fields = client::Fields(request);
  return fields.size() < 3 ? Fields{} : Fields(fields.begin() + 3, fields.end());
}

class ScriptedArchive {
 public:
  using Reply = std::function<void(Peer&, const Fields&, const TemporaryDirectory& blobs)>;

  // One that takes "UploadFile" answers nothing else.
  explicit ScriptedArchive(std::map<std::string, Reply> replies)
      : replies_(std::move(replies)), server_([this](Peer& peer) { Serve(peer); }) {}

  static Reply Sends(const std::string& bytes) {
    return [bytes](Peer& peer, const Fields&, auto&) { peer.Send(bytes); };
  }
  // A reply of these lines.
  static Reply Lines(const std::vector<std::string>& lines) { return Sends(Answer(lines)); }
  static Reply Error(const std::string& text) { return Sends(Framed("Status: " + text + "\r\n")); }
  // The server's part of a fetch: the file appears in the blob directory, and the answer names it.
  static Reply Puts(const std::string& name, const std::string& content) {
    return [name, content](Peer& peer, const Fields&, const TemporaryDirectory& directory) {
      directory.Write(name, content);
      peer.Send(Answer({std::to_string(content.size()), "D:\\blobs\\" + name}));
    };
  }

  ToolRun Run(const std::vector<std::string>& arguments, const std::string& input = "", Terminals terminals = {},
              std::map<std::string, std::string> environment = {}, std::stringbuf* errorBuffer = nullptr) {
    environment.insert({{"OXAQRY_REMOTE_HOSTS", Hosts()},
                        {"OXAQRY_TIMEOUT", "10"},
                        {"OXAQRY_BLOB_LOCAL", blobs.path()},
                        {"OXAQRY_BLOB_REMOTE", "D:\\blobs"}});
    return RunOxaqry(arguments, environment, input, terminals, errorBuffer);
  }
  std::string Hosts() const { return server_.Host() + ",1"; }  // prints, too
  // The commands received so far, their fields joined by "|".
  std::vector<std::string> Commands() {
    std::vector<std::string> commands;
    const std::lock_guard lock(mutex_);
    for (const std::string& request : requests_) {
      std::string line;
      for (const std::string& field : CommandFields(request)) line += (line.empty() ? "" : "|") + field;
      commands.push_back(line);
    }
    return commands;
  }

  TemporaryDirectory blobs;  // the local blob directory

 private:
  // A file follows its request at once, so that the end of the request has to be looked for.
  static std::string ReadUploadRequest(Peer& peer) {
    std::string request;
    for (std::string next = "^"; !next.empty() && !request.ends_with("^\r\n"); request += next)
      next = peer.ReadBytes(1);
    request.resize(std::max<std::size_t>(request.size(), 2) - 2);
    return request;
  }

  void Serve(Peer& peer) {
    const std::string request = replies_.contains("UploadFile") ? ReadUploadRequest(peer) : peer.ReadRequest();
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    const Fields fields = CommandFields(request);
    const auto reply = fields.empty() ? replies_.end() : replies_.find(fields.front());
    if (reply == replies_.end()) return;
    reply->second(peer, fields, blobs);
    peer.WaitForClose();
  }

  const std::map<std::string, Reply> replies_;
  std::mutex mutex_;
  std::vector<std::string> requests_;
  ScriptedServer server_;
};

// The names in a directory, hidden ones too.
inline std::vector<std::string> NamesIn(const std::string& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) names.push_back(entry.path().filename());
  return names;
}

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TESTS_TOOLS_OXAQRY_SCRIPTED_ARCHIVE_H_

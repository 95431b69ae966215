// reply.h - what a request leads to: a text, the bytes of a file, or a file that the client is about to send.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/devserver/content/blob_directory.h"

namespace oxaqrycln::devserver {

// A file on its way from a client into the blob directory. Ending before Finish leaves nothing.
class Upload {
 public:
  Upload(std::unique_ptr<PendingFile> file, std::int64_t byteCount) : file_(std::move(file)), missing_(byteCount) {}
  std::int64_t missing() const noexcept { return missing_; }
  // Takes at most the missing bytes. Raises ServerError, as Finish does.
  void Take(std::string_view bytes);
  // The answer's text, once no byte is missing.
  std::string Finish();

 private:
  std::unique_ptr<PendingFile> file_;
  std::int64_t missing_;
};

struct Reply {
  Reply(std::string answer) : text(std::move(answer)) {}  // NOLINT: a text is an answer wherever one is asked for

  std::string text;                    // the answer without its header line; for the log only when isRaw
  bool isRaw = false;                  // no text goes out: only the file's bytes, if there is one, and then the end
  std::unique_ptr<ReadableFile> file;  // with isRaw only
  std::unique_ptr<Upload> upload;      // its Finish gives the answer
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_

// reply.h - what a request leads to: a text, the bytes of a file, or a file that the client is about to send.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/replacement_file.h"

namespace oxaqrycln::devserver {

// A file that a client is sending to the blob directory. Nothing is left of it unless Finish is called.
class Upload {
 public:
  Upload(std::unique_ptr<ReplacementFile> file, std::string name, std::size_t byteCount)
      : file_(std::move(file)), name_(std::move(name)), byteCount_(byteCount), missing_(byteCount) {}
  std::size_t missing() const noexcept { return missing_; }
  // Stores the missing bytes and ignores any after them.
  void Take(std::string_view bytes) {
    bytes = bytes.substr(0, missing_);
    file_->Write(bytes);
    missing_ -= bytes.size();
  }
  // Stores the file and returns the answer; to be called when no byte is missing.
  std::string Finish() {
    file_->Commit();
    return "Status: OK\r\n" + std::to_string(byteCount_) + "\r\n" + name_ + "\r\n";
  }

 private:
  std::unique_ptr<ReplacementFile> file_;
  std::string name_;
  std::size_t byteCount_;
  std::size_t missing_;
};

struct Reply {
  Reply(std::string answer) : text(std::move(answer)) {}  // NOLINT: implicit, because most replies are a text

  std::string text;                 // the answer without its header line; for the log only when isRaw
  bool isRaw = false;               // no text is sent, only the bytes of the file, if there is one
  std::unique_ptr<InputFile> file;  // with isRaw only
  std::unique_ptr<Upload> upload;   // its Finish returns the answer
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_REPLY_H_

#include "tools/devserver/commands/reply.h"

namespace oxaqrycln::devserver {

void Upload::Take(std::string_view bytes) {
  file_->Write(bytes);
  missing_ -= static_cast<std::int64_t>(bytes.size());
}

std::string Upload::Finish() {
  const std::int64_t byteCount = file_->Commit();
  return "Status: OK\r\n" + std::to_string(byteCount) + "\r\n" + file_->name() + "\r\n";
}

}  // namespace oxaqrycln::devserver

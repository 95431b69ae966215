// user_import_progress.h - one line on a terminal that tells how many rows of a file are done; nothing anywhere else,
// and nothing for what takes no time.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_IMPORT_PROGRESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_IMPORT_PROGRESS_H_

#include <chrono>
#include <cstddef>
#include <ostream>

#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

class ImportProgress {
 public:
  ImportProgress(const Output& output, const char* what, std::size_t total)
      : out_(output.terminals.err ? &output.err : nullptr), what_(what), total_(total) {}
  ~ImportProgress() {
    if (isShown_) *out_ << "\r\x1B[K" << std::flush;
  }
  ImportProgress(const ImportProgress&) = delete;
  ImportProgress& operator=(const ImportProgress&) = delete;

  void Show(std::size_t done) {
    const auto now = std::chrono::steady_clock::now();
    if (out_ == nullptr || now < next_) return;
    next_ = now + kBetweenDrawings;
    isShown_ = true;
    *out_ << '\r' << what_ << "  " << done << " of " << total_ << " users\x1B[K" << std::flush;
  }

 private:
  static constexpr std::chrono::milliseconds kBetweenDrawings{100};

  std::ostream* const out_;
  const char* const what_;
  const std::size_t total_;
  std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + kBetweenDrawings;
  bool isShown_ = false;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_IMPORT_PROGRESS_H_

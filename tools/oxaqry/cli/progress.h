// progress.h - one line on a terminal that tells how far a file has come; nothing anywhere else.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

class Progress {
 public:
  // What is shown in front, UTF-8, and the number of bytes in all, where it is known. Shows the start at once.
  Progress(const Output& output, std::string what, std::optional<std::int64_t> total);
  // Takes the line away.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // The number of bytes done, or nothing where only the time is known. Cheap: the line is drawn ten times a second.
  void Show(std::optional<std::int64_t> done);

 private:
  void Draw(std::optional<std::int64_t> done);

  std::ostream* const out_;  // nullptr without a terminal
  const std::string what_;
  const std::optional<std::int64_t> total_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point next_ = start_;
};

// "812 bytes", "3.4 MB"
std::string ByteText(std::int64_t byteCount);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_

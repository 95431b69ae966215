// progress.h - one line on a terminal that shows how much is done; nothing where standard error is no terminal, and
// nothing for what is done within a tenth of a second.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

class Progress {
 public:
  // The text in front, UTF-8, and the total where it is known: in bytes, or in what is counted ("users").
  Progress(const Output& output, std::string what, std::optional<std::int64_t> total, std::string counted = "");
  // Removes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // What is done of the total, or nothing where only the time is known. Cheap: draws at most ten times a second.
  void Show(std::optional<std::int64_t> done);

 private:
  std::string AmountText(std::int64_t amount) const;

  std::ostream* const out_;  // nullptr without a terminal
  const std::string what_;
  const std::optional<std::int64_t> total_;
  const std::string counted_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point next_;
  bool isShown_ = false;
};

// "812 bytes", "3.4 MB"
std::string ByteText(std::int64_t byteCount);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_PROGRESS_H_

#include "tools/oxaqry/cli/progress.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::chrono::milliseconds kBetweenDrawings{100};
constexpr std::int64_t kBarWidth = 24;

std::string Bar(std::int64_t done, std::int64_t total) {
  const std::int64_t filled = total == 0 ? kBarWidth : std::clamp(done, std::int64_t{0}, total) * kBarWidth / total;
  return "[" + std::string(static_cast<std::size_t>(filled), '#') +
         std::string(static_cast<std::size_t>(kBarWidth - filled), '.') + "]";
}

}  // namespace

std::string ByteText(std::int64_t byteCount) {
  constexpr std::array kUnits{"kB", "MB", "GB"};
  if (byteCount < 1000) return std::to_string(byteCount) + (byteCount == 1 ? " byte" : " bytes");
  double amount = static_cast<double>(byteCount) / 1000;
  std::size_t unit = 0;
  while (amount >= 999.95 && unit + 1 < kUnits.size()) {
    amount /= 1000;
    ++unit;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f %s", amount, kUnits[unit]);
  return text.data();
}

Progress::Progress(const Output& output, std::string what, std::optional<std::int64_t> total, std::string counted)
    : out_(output.terminals.err ? &output.err : nullptr),
      what_(std::move(what)),
      total_(total),
      counted_(std::move(counted)),
      next_(start_ + kBetweenDrawings) {}

Progress::~Progress() {
  if (isShown_) *out_ << "\r\x1B[K" << std::flush;
}

void Progress::Show(std::optional<std::int64_t> done) {
  const auto now = std::chrono::steady_clock::now();
  if (out_ == nullptr || now < next_) return;
  next_ = now + kBetweenDrawings;
  isShown_ = true;
  *out_ << '\r' << what_ << "  ";
  if (done && total_) *out_ << Bar(*done, *total_) << "  " << AmountText(*done) << " of ";
  if (total_) *out_ << AmountText(*total_) << (counted_.empty() ? "" : " ") << counted_ << "  ";
  *out_ << std::chrono::duration_cast<std::chrono::seconds>(now - start_).count() << " s\x1B[K" << std::flush;
}

std::string Progress::AmountText(std::int64_t amount) const {
  return counted_.empty() ? ByteText(amount) : std::to_string(amount);
}

}  // namespace oxaqrycln::oxaqry

#include "archive/hit_row.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "support/text_helpers.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

// Channel, archive, document id, version, display columns, and the number of the error that ended the reading.
struct Outcome {
  std::array<Variant, 4> outputs;
  std::string columns;
  std::int32_t error = 0;
  bool operator==(const Outcome&) const = default;
};

// A row is cut into fields and its columns are found by two plain searches, with nothing shared.
void ReadPlainly(const std::string& line, bool isTitle, const std::array<bool, 4>& wanted, Outcome& outcome) {
  std::vector<std::string> fields;
  const std::string closed = "^," + line + ",^";
  for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 3) {
    end = closed.find("^,^", start);
    fields.push_back(closed.substr(start, end - start));
  }
  const auto field = [&](std::size_t number) {
    if (number >= fields.size()) throw RuntimeError(error::kSubscriptOutOfRange);
    return fields[number];
  };
  if (wanted[2]) outcome.outputs[2] = field(2);
  if (wanted[3]) outcome.outputs[3] = field(3);
  if (isTitle) {
    if (wanted[0]) outcome.outputs[0] = "Channel";
    if (wanted[1]) outcome.outputs[1] = "Archive";
  } else if (wanted[0] || wanted[1]) {
    const std::string reference = field(1);
    const std::size_t middle = reference.find(")\\");
    if (wanted[0]) {
      if (middle == std::string::npos || middle < 3) throw RuntimeError(error::kInvalidProcedureCall);
      outcome.outputs[0] = reference.substr(3, middle - 3);
    }
    if (wanted[1]) {
      const std::size_t start = middle == std::string::npos ? 1 : middle + 2;
      if (start > reference.size()) throw RuntimeError(error::kInvalidProcedureCall);
      outcome.outputs[1] = reference.substr(start);
    }
  }
  const auto third = static_cast<std::size_t>(InStrExt(line + ",^", "^,^", 3));
  outcome.columns = line.substr(std::min(line.size(), third + 1));
}

void Read(const std::string& line, bool isTitle, const std::array<bool, 4>& wanted, Outcome& outcome) {
  // A copy that ends where its memory ends, so that a sanitizer sees it when a byte behind the line is read.
  const std::vector<char> exact(line.begin(), line.end());
  const auto output = [&](std::size_t i) { return wanted[i] ? &outcome.outputs[i] : nullptr; };
  ReadHitRow({exact.data(), exact.size()}, isTitle, {output(0), output(1), output(2), output(3)}, outcome.columns);
}

template <typename Reader>
Outcome OutcomeOf(Reader&& reader, const std::string& line, bool isTitle, const std::array<bool, 4>& wanted) {
  Outcome outcome;
  try {
    reader(line, isTitle, wanted, outcome);
  } catch (const RuntimeError& error) {
    outcome.error = error.number();
  }
  return outcome;
}

TEST(HitRow, IsReadAsAPlainSearchReadsAnyLine) {
  std::mt19937 random(2003);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  constexpr std::array<std::string_view, 9> kPieces = {"^", ",", "^,^", "^,^,^", "$(#", ")\\", ")", "\\", "word"};
  for (int round = 0; round < 10'000; ++round) {
    std::string line = below(4) == 0 ? "" : "^";
    for (std::size_t pieces = below(24); pieces > 0; --pieces) {
      line += kPieces[below(kPieces.size())];
      if (below(12) == 0) line.append(below(40), 'x');
    }
    const bool isTitle = below(4) == 0;
    const std::array<bool, 4> wanted{below(2) == 0, below(2) == 0, below(2) == 0, below(2) == 0};
    ASSERT_EQ(OutcomeOf(Read, line, isTitle, wanted), OutcomeOf(ReadPlainly, line, isTitle, wanted)) << line;
  }
}

}  // namespace
}  // namespace oxaqrycln::testing

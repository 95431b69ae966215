// answers.h - the answers that the benchmarks' server gives: hit lists of any length, and channel lists.
#ifndef OXAQRYCLN_BENCH_ANSWERS_H_
#define OXAQRYCLN_BENCH_ANSWERS_H_

#include <string>

namespace oxaqrycln::bench {

// The text of a query's answer with this many hits, status line included; 73 bytes a row.
std::string HitList(int rows);
// Lines "name,description" in no order, without a status line.
std::string ChannelLines(int lines);
// The text of an answer with this many segments of three lines each.
std::string Segments(int segments);
// The text after its header line.
std::string Framed(const std::string& text);

}  // namespace oxaqrycln::bench

#endif  // OXAQRYCLN_BENCH_ANSWERS_H_

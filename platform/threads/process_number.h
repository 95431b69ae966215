// process_number.h - a number of the running process.
#ifndef OXAQRYCLN_PLATFORM_THREADS_PROCESS_NUMBER_H_
#define OXAQRYCLN_PLATFORM_THREADS_PROCESS_NUMBER_H_

#include <cstddef>

namespace oxaqrycln {

// No two processes of the machine have the same one at a time; processes that are started one after the other mostly
// have numbers that follow each other.
std::size_t ProcessNumber() noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_PROCESS_NUMBER_H_

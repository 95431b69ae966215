// process_state.h - what the system says about the test program itself.
#ifndef OXAQRYCLN_TESTS_SUPPORT_PROCESS_STATE_H_
#define OXAQRYCLN_TESTS_SUPPORT_PROCESS_STATE_H_

#include <chrono>
#include <cstddef>
#include <filesystem>

namespace oxaqrycln::testing {

std::filesystem::path ProgramPath();
// The open descriptors of any kind; on Windows the open sockets.
std::size_t OpenDescriptors();
std::size_t ThreadCount();
// The memory that the program has at this moment.
std::size_t ResidentBytes();
// The processor time that the calling thread has used.
std::chrono::nanoseconds ThreadTime();

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_PROCESS_STATE_H_

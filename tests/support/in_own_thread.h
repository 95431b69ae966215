// in_own_thread.h - runs a test's body on a thread of its own, and so in an apartment of its own.
#ifndef OXAQRYCLN_TESTS_SUPPORT_IN_OWN_THREAD_H_
#define OXAQRYCLN_TESTS_SUPPORT_IN_OWN_THREAD_H_

#include <thread>
#include <utility>

namespace oxaqrycln::testing {

template <typename Body>
void InOwnThread(Body&& body) {
  std::thread(std::forward<Body>(body)).join();
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_IN_OWN_THREAD_H_

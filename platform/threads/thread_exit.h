// thread_exit.h - a call at the end of the calling thread.
#ifndef OXAQRYCLN_PLATFORM_THREADS_THREAD_EXIT_H_
#define OXAQRYCLN_PLATFORM_THREADS_THREAD_EXIT_H_

namespace oxaqrycln {

// Has release(what) called when the calling thread ends, where the system allows that: on Windows, where code of a
// library must not run at the detach of a thread, it is never called. Several calls are made in the order in which they
// were asked for; they may ask for further ones. Raises std::bad_alloc.
void AtThreadExit(void (*release)(void*) noexcept, void* what);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_THREADS_THREAD_EXIT_H_

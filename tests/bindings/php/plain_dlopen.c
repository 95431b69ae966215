/* For a PHP that loads a library with sanitizers: their runtime refuses RTLD_DEEPBIND, with which PHP opens libraries. */
#define _GNU_SOURCE
#include <dlfcn.h>

typedef void* open_function(const char*, int);

void* dlopen(const char* file, int mode) {
  open_function* const next = (open_function*)dlsym(RTLD_NEXT, "dlopen");
  return next(file, mode & ~RTLD_DEEPBIND);
}

#include <sys/wait.h>
#include <unistd.h>

#include "tests/automation/c/program.h"

int greet_in_children(int (*body)(void)) {
  int i;
  for (i = 0; i < 100; ++i) {
    int status = -1;
    const pid_t child = fork();
    if (child == 0) _exit(body());
    if (waitpid(child, &status, 0) != child || status != 0) return 1;
  }
  return 0;
}

#include "tests/automation/c/program.h"

int greet_in_children(int (*greet)(void)) { return greet == 0; }

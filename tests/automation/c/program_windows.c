#include "tests/automation/c/program.h"

int greet_in_children(int (*body)(void)) { return body == 0; }

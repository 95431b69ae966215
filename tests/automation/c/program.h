// program.h - the part of the C program that only some systems have.
#ifndef OXAQRYCLN_TESTS_AUTOMATION_C_PROGRAM_H_
#define OXAQRYCLN_TESTS_AUTOMATION_C_PROGRAM_H_

// Runs body() in a hundred child processes, one after the other, where the system has such; 0 when all returned 0.
int greet_in_children(int (*body)(void));

#endif  // OXAQRYCLN_TESTS_AUTOMATION_C_PROGRAM_H_

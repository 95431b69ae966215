// c_scenario_run.h - what the C program of the scenario stands on: its instances, and its transcript on standard
// output. Uses the C interface alone; a misuse ends the program.
#ifndef OXAQRYCLN_TESTS_SCENARIO_C_SCENARIO_RUN_H_
#define OXAQRYCLN_TESTS_SCENARIO_C_SCENARIO_RUN_H_

#include "automation/c/oxaqrycln.h"

#ifdef __cplusplus
extern "C" {
#endif

// The arguments are NAME=TEXT: what stands for {NAME} in a text. Makes the instance "q".
void begin(int argc, char** argv);
void new_instance(const char* name);
void drop_instance(const char* name);

// New values, for the functions below, which free them. A text is in Windows-1252.
oxaqry_value* text(const char* bytes, size_t length);
oxaqry_value* request(const char* body, size_t length);
oxaqry_value* date(const char* iso);
// A whole number of a kind, a Boolean, Empty or Null.
oxaqry_value* number(int32_t kind, int32_t content);

void say(const char* line);
void set(const char* instance, const char* variable, oxaqry_value* value);
void show(const char* title, const char* instance, const char* variable);
// The last ones of values are those that are shown after the call, by their positions.
void call(const char* title, const char* instance, const char* method, oxaqry_value** values, int32_t count,
          const int32_t* shown, int32_t shown_count);

#ifdef __cplusplus
}
#endif

#endif  // OXAQRYCLN_TESTS_SCENARIO_C_SCENARIO_RUN_H_

/* The C interface from a program in C: the header is C99, loading the library has no effect, and a process may fork
   before its first query. Prints what fails. */
#include <stdio.h>
#include <string.h>

#include "oxaqrycln.h"
#include "tests/automation/c/program.h"

static int fails(const char *what) {
  fprintf(stderr, "%s: %s\n", what, oxaqry_last_error());
  return 1;
}

/* Says hello through a query of its own; 0 when that worked. */
static int greet(void) {
  static const char name[] = "HelloWorld";
  oxaqry_query *query = NULL;
  oxaqry_value *result = NULL;
  const char *text = NULL;
  size_t length = 0;
  int32_t method = 0;
  if (oxaqry_query_new(&query) != OXAQRY_OK || oxaqry_value_new(&result) != OXAQRY_OK) return fails("new");
  if (oxaqry_find_member(name, strlen(name), &method) != OXAQRY_OK) return fails("find_member");
  if (oxaqry_call(query, method, NULL, 0, result) != OXAQRY_OK) return fails("call");
  if (oxaqry_value_get_text(result, OXAQRY_UTF8, &text, &length) != OXAQRY_OK) return fails("get_text");
  if (length != 12 || memcmp(text, "Hello World!", length) != 0) return fails("text");
  if (oxaqry_value_free(result) != OXAQRY_OK || oxaqry_query_free(query) != OXAQRY_OK) return fails("free");
  return 0;
}

int main(void) {
  oxaqry_query *query = NULL;
  if (oxaqry_abi_version() != 1) return fails("abi_version");
  if (greet_in_children(greet) != 0) return fails("a child");
  if (greet() != 0) return 1;
  /* This one is left to the end of the process. */
  return oxaqry_query_new(&query) == OXAQRY_OK ? 0 : fails("query_new");
}

/* Lists the channels of the archive, then the hits of a query: hit_list HOST,PORT QUERY */
#include <oxaqrycln.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Ends the program on a misuse of the interface. Failures of the archive are results. */
static void check(int32_t code) {
  if (code == OXAQRY_OK) return;
  fprintf(stderr, "%s\n", oxaqry_last_error());
  exit(2);
}

static int32_t member(const char *name) {
  int32_t number = 0;
  check(oxaqry_find_member(name, strlen(name), &number));
  return number;
}

static oxaqry_value *text(const char *utf8) {
  oxaqry_value *value = NULL;
  check(oxaqry_value_new(&value));
  check(oxaqry_value_set_text(value, utf8, strlen(utf8), OXAQRY_UTF8));
  return value;
}

static void set(oxaqry_query *query, const char *variable, const char *utf8) {
  oxaqry_value *value = text(utf8);
  check(oxaqry_set_variable(query, member(variable), value));
  check(oxaqry_value_free(value));
}

/* Calls a method with texts as its inputs; returns its result as a number. */
static int32_t call(oxaqry_query *query, const char *method, const char **inputs, int32_t count) {
  oxaqry_value *values[8] = {NULL};
  oxaqry_value *result = text("");
  int32_t number = 0, i;
  for (i = 0; i < count; ++i) values[i] = text(inputs[i]);
  check(oxaqry_call(query, member(method), values, count, result));
  check(oxaqry_value_get_long(result, &number));
  for (i = 0; i < count; ++i) check(oxaqry_value_free(values[i]));
  check(oxaqry_value_free(result));
  return number;
}

/* Prints a list, which a ...Next method reads, with some of its outputs. */
static void print_list(oxaqry_query *query, const char *next, int32_t max, const int32_t *columns, int32_t count) {
  oxaqry_rows *rows = NULL;
  const char *block = NULL;
  const uint32_t *offsets = NULL;
  int32_t row_count = 0, column_count = 0, i;
  check(oxaqry_fetch_rows(query, member(next), max, columns, count, OXAQRY_UNTIL_END, OXAQRY_UTF8, &rows));
  check(oxaqry_rows_read(rows, &row_count, &column_count, &block, &offsets));
  for (i = 0; i < row_count * column_count; ++i) {
    printf("%.*s%c", (int)(offsets[i + 1] - offsets[i]), block + offsets[i], (i + 1) % column_count == 0 ? '\n' : '\t');
  }
  check(oxaqry_rows_free(rows));
}

static int failed(oxaqry_query *query, const char *what) {
  const char *why = NULL;
  size_t length = 0;
  check(oxaqry_outcome_text(query, &why, &length));
  fprintf(stderr, "%s: %.*s\n", what, (int)length, why);
  oxaqry_query_free(query);
  return 1;
}

int main(int argc, char **argv) {
  static const int32_t description[] = {0}, channel_archive_id[] = {0, 1, 2};
  const char *password = getenv("ARCHIVE_PASSWORD");
  const char *no_database[] = {"False"};
  const char *search[] = {NULL, "20", "1000", "Full text", ""};
  oxaqry_query *query = NULL;
  int32_t rows;
  if (argc != 3) return fprintf(stderr, "usage: hit_list HOST,PORT QUERY\n"), 2;
  check(oxaqry_query_new(&query));
  set(query, "RemoteHosts", argv[1]);
  set(query, "strTELOUser", "webuser");
  set(query, "strTELOPwd", password != NULL ? password : "");
  set(query, "lngRequestTimeout", "30");
  call(query, "Init", no_database, 1);

  if (call(query, "TELOGetChannelsInit", NULL, 0) < 0) return failed(query, "channels");
  print_list(query, "TELOGetChannelsNext", 1000, description, 1);

  search[0] = argv[2];
  rows = call(query, "TELOQueryArchiveInit", search, 5);
  if (rows < 0) return failed(query, "search");
  printf("%d hits\n", (int)rows - 1);
  print_list(query, "TELOQueryArchiveNext", rows, channel_archive_id, 3);
  check(oxaqry_query_free(query));
  return 0;
}

#include "tests/scenario/c_scenario_run.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum { MOST_INSTANCES = 8, LONGEST_TEXT = 1 << 16 };

static char **names_and_texts;
static int name_count;
static struct {
  const char *name;
  oxaqry_query *query;
} instances[MOST_INSTANCES];

static void fail(const char *what) {
  fprintf(stderr, "%s\n", what);
  exit(1);
}

static void check(int32_t code) {
  if (code != OXAQRY_OK) fail(oxaqry_last_error());
}

/* The position of an instance; name NULL finds a free one. */
static int find_instance(const char *name) {
  int i;
  for (i = 0; i < MOST_INSTANCES; ++i) {
    if (name == NULL ? instances[i].name == NULL : instances[i].name != NULL && !strcmp(instances[i].name, name)) return i;
  }
  fail("there is no such instance");
  return 0;
}

void new_instance(const char *name) {
  const int place = find_instance(NULL);
  instances[place].name = name;
  check(oxaqry_query_new(&instances[place].query));
}

void drop_instance(const char *name) {
  const int place = find_instance(name);
  instances[place].name = NULL;
  check(oxaqry_query_free(instances[place].query));
}

void begin(int argc, char **argv) {
  names_and_texts = argv + 1;
  name_count = argc - 1;
  new_instance("q");
}

static oxaqry_value *new_value(void) {
  oxaqry_value *value = NULL;
  check(oxaqry_value_new(&value));
  return value;
}

/* What stands at the place of {NAME}; length receives the length of {NAME}. NULL for any other text. */
static const char *filling(const char *place, size_t left, size_t *length) {
  int i;
  for (i = 0; i < name_count; ++i) {
    const size_t name = strcspn(names_and_texts[i], "=");
    if (name + 2 > left || place[0] != '{' || place[name + 1] != '}') continue;
    if (strncmp(place + 1, names_and_texts[i], name) != 0) continue;
    *length = name + 2;
    return names_and_texts[i] + name + 1;
  }
  return NULL;
}

oxaqry_value *text(const char *bytes, size_t length) {
  static char filled[LONGEST_TEXT];
  oxaqry_value *value = new_value();
  size_t size = 0, at = 0;
  while (at < length) {
    size_t skipped = 1;
    const char *found = filling(bytes + at, length - at, &skipped);
    const size_t added = found == NULL ? 1 : strlen(found);
    if (size + added > LONGEST_TEXT) fail("a text is too long");
    memcpy(filled + size, found == NULL ? bytes + at : found, added);
    size += added;
    at += skipped;
  }
  check(oxaqry_value_set_text(value, filled, size, OXAQRY_WINDOWS_1252));
  return value;
}

oxaqry_value *request(const char *body, size_t length) {
  oxaqry_value *value = new_value();
  check(oxaqry_value_set_request(value, body, length));
  return value;
}

oxaqry_value *date(const char *iso) {
  oxaqry_value *value = text(iso, strlen(iso));
  int64_t seconds = 0;
  check(oxaqry_value_get_date(value, &seconds));
  check(oxaqry_value_set_date(value, seconds));
  return value;
}

oxaqry_value *number(int32_t kind, int32_t content) {
  oxaqry_value *value = new_value();
  if (kind == OXAQRY_NULL) check(oxaqry_value_set_null(value));
  if (kind == OXAQRY_BOOLEAN) check(oxaqry_value_set_boolean(value, content));
  if (kind == OXAQRY_BYTE) check(oxaqry_value_set_byte(value, (uint8_t)content));
  if (kind == OXAQRY_INTEGER) check(oxaqry_value_set_integer(value, (int16_t)content));
  if (kind == OXAQRY_LONG) check(oxaqry_value_set_long(value, content));
  return value;
}

static void print_text(const char *bytes, size_t length) {
  size_t i;
  putchar('"');
  for (i = 0; i < length; ++i) {
    const unsigned char byte = (unsigned char)bytes[i];
    printf(byte >= 32 && byte < 127 && byte != '"' && byte != '\\' ? "%c" : "\\x%02X", byte);
  }
  putchar('"');
}

static void print_date(oxaqry_value *value) {
  const int64_t days_to_1970 = 25569;
  int64_t seconds = 0;
  time_t since_1970;
  char iso[40];
  check(oxaqry_value_get_date(value, &seconds));
  since_1970 = (time_t)(seconds - days_to_1970 * 86400);
  strftime(iso, sizeof iso, "%Y-%m-%dT%H:%M:%S", gmtime(&since_1970));
  fputs(iso, stdout);
}

static void print_value(oxaqry_value *value) {
  static const char *const kinds[] = {"Empty",  "Null", "Boolean", "Byte",   "Integer", "Long",
                                      "Double", "Date", "String",  "Byte()", "Object"};
  const char *content = NULL;
  size_t length = 0;
  int32_t kind = 0;
  check(oxaqry_value_kind(value, &kind));
  fputs(kinds[kind], stdout);
  if (kind == OXAQRY_EMPTY || kind == OXAQRY_NULL) return;
  putchar(' ');
  if (kind == OXAQRY_DATE) {
    print_date(value);
    return;
  }
  check(oxaqry_value_get_text(value, OXAQRY_WINDOWS_1252, &content, &length));
  if (kind == OXAQRY_TEXT) {
    print_text(content, length);
  } else {
    printf("%.*s", (int)length, content);
  }
}

void say(const char *line) {
  printf("%s\n", line);
  fflush(stdout); /* so that the transcript of a program that ends early is complete */
}

static int32_t member(const char *name) {
  int32_t found = 0;
  check(oxaqry_find_member(name, strlen(name), &found));
  return found;
}

void set(const char *instance, const char *variable, oxaqry_value *value) {
  check(oxaqry_set_variable(instances[find_instance(instance)].query, member(variable), value));
  check(oxaqry_value_free(value));
}

void show(const char *title, const char *instance, const char *variable) {
  oxaqry_value *value = new_value();
  check(oxaqry_get_variable(instances[find_instance(instance)].query, member(variable), value));
  printf("%s = ", title);
  print_value(value);
  say("");
  check(oxaqry_value_free(value));
}

void call(const char *title, const char *instance, const char *method, oxaqry_value **values, int32_t count,
          const int32_t *shown, int32_t shown_count) {
  oxaqry_value *result = new_value();
  int32_t i;
  check(oxaqry_call(instances[find_instance(instance)].query, member(method), values, count, result));
  printf("%s = ", title);
  print_value(result);
  for (i = 0; i < shown_count; ++i) {
    fputs("; ", stdout);
    print_value(values[shown[i]]);
  }
  say("");
  for (i = 0; i < count; ++i) check(oxaqry_value_free(values[i]));
  check(oxaqry_value_free(result));
}

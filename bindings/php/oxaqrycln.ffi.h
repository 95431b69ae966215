typedef struct oxaqry_query oxaqry_query;
typedef struct oxaqry_value oxaqry_value;
typedef struct oxaqry_rows oxaqry_rows;
enum oxaqry_code {
  OXAQRY_OK = 0,
  OXAQRY_E_HANDLE = -1,
  OXAQRY_E_ARGUMENT = -2,
  OXAQRY_E_MEMBER = -3,
  OXAQRY_E_COUNT = -4,
  OXAQRY_E_TYPE = -5,
  OXAQRY_E_TEXT = -6,
  OXAQRY_E_THREAD = -7,
  OXAQRY_E_FORKED = -8,
  OXAQRY_E_BUSY = -9,
  OXAQRY_E_MEMORY = -10,
  OXAQRY_E_INTERNAL = -11
};
enum oxaqry_encoding { OXAQRY_UTF8 = 0, OXAQRY_WINDOWS_1252 = 1 };
int32_t oxaqry_abi_version(void);
const char* oxaqry_version(void);
const char* oxaqry_last_error(void);
int32_t oxaqry_error_position(size_t* position);
enum oxaqry_member_kind {
  OXAQRY_MEMBER_VARIABLE = 0,
  OXAQRY_MEMBER_METHOD = 1,
  OXAQRY_MEMBER_PROPERTY = 2
};
enum oxaqry_member_text_kind {
  OXAQRY_MEMBER_NAME = 0,
  OXAQRY_MEMBER_GROUP = 1,
  OXAQRY_MEMBER_DOCUMENTATION = 2,
  OXAQRY_MEMBER_SIGNATURE = 3
};
enum oxaqry_parameter_kind {
  OXAQRY_PARAMETER_IN = 0,
  OXAQRY_PARAMETER_OPTIONAL_IN = 1,
  OXAQRY_PARAMETER_OPTIONAL_OUT = 2,
  OXAQRY_PARAMETER_IN_OUT = 3
};
enum oxaqry_member_type_kind {
  OXAQRY_TYPE_NONE = 0,
  OXAQRY_TYPE_BOOLEAN = 1,
  OXAQRY_TYPE_LONG = 2,
  OXAQRY_TYPE_DATE = 3,
  OXAQRY_TYPE_TEXT = 4,
  OXAQRY_TYPE_VARIANT = 5
};
int32_t oxaqry_member_count(int32_t* count);
int32_t oxaqry_find_member(const char* name, size_t length, int32_t* number);
int32_t oxaqry_member(int32_t number, int32_t* kind, int32_t* type);
int32_t oxaqry_member_text(int32_t number, int32_t what, const char** text, size_t* length);
int32_t oxaqry_parameter_count(int32_t number, int32_t* count);
int32_t oxaqry_parameter(int32_t number, int32_t position, int32_t* kind, const char** name, size_t* length);
enum oxaqry_kind {
  OXAQRY_EMPTY = 0,
  OXAQRY_NULL = 1,
  OXAQRY_BOOLEAN = 2,
  OXAQRY_BYTE = 3,
  OXAQRY_INTEGER = 4,
  OXAQRY_LONG = 5,
  OXAQRY_DOUBLE = 6,
  OXAQRY_DATE = 7,
  OXAQRY_TEXT = 8,
  OXAQRY_BYTES = 9,
  OXAQRY_OBJECT = 10
};
int32_t oxaqry_value_new(oxaqry_value** value);
int32_t oxaqry_value_free(oxaqry_value* value);
int32_t oxaqry_value_set_empty(oxaqry_value* value);
int32_t oxaqry_value_set_null(oxaqry_value* value);
int32_t oxaqry_value_set_boolean(oxaqry_value* value, int32_t is_true);
int32_t oxaqry_value_set_byte(oxaqry_value* value, uint8_t number);
int32_t oxaqry_value_set_integer(oxaqry_value* value, int16_t number);
int32_t oxaqry_value_set_long(oxaqry_value* value, int32_t number);
int32_t oxaqry_value_set_double(oxaqry_value* value, double number);
int32_t oxaqry_value_set_date(oxaqry_value* value, int64_t seconds);
int32_t oxaqry_value_set_text(oxaqry_value* value, const char* text, size_t length, int32_t encoding);
int32_t oxaqry_value_set_bytes(oxaqry_value* value, const void* bytes, size_t length);
int32_t oxaqry_value_set_request(oxaqry_value* value, const void* body, size_t length);
int32_t oxaqry_value_kind(oxaqry_value* value, int32_t* kind);
int32_t oxaqry_value_get_boolean(oxaqry_value* value, int32_t* is_true);
int32_t oxaqry_value_get_long(oxaqry_value* value, int32_t* number);
int32_t oxaqry_value_get_double(oxaqry_value* value, double* number);
int32_t oxaqry_value_get_date(oxaqry_value* value, int64_t* seconds);
int32_t oxaqry_value_get_text(oxaqry_value* value, int32_t encoding, const char** text, size_t* length);
int32_t oxaqry_value_get_texts(oxaqry_value** values, int32_t count, int32_t encoding, const char** texts,
                                          size_t* lengths);
int32_t oxaqry_value_get_bytes(oxaqry_value* value, const uint8_t** bytes, size_t* length);
int32_t oxaqry_query_new(oxaqry_query** query);
int32_t oxaqry_query_free(oxaqry_query* query);
int32_t oxaqry_get_variable(oxaqry_query* query, int32_t member, oxaqry_value* value);
int32_t oxaqry_set_variable(oxaqry_query* query, int32_t member, oxaqry_value* value);
int32_t oxaqry_call(oxaqry_query* query, int32_t method, oxaqry_value** values, int32_t count,
                               oxaqry_value* result);
enum oxaqry_rows_end {
  OXAQRY_UNTIL_END = 0,
  OXAQRY_EVERY_ROW = 1
};
int32_t oxaqry_fetch_rows(oxaqry_query* query, int32_t method, int32_t max, const int32_t* columns,
                                     int32_t column_count, int32_t end, int32_t encoding, oxaqry_rows** rows);
int32_t oxaqry_rows_read(oxaqry_rows* rows, int32_t* row_count, int32_t* column_count, const char** block,
                                    const uint32_t** offsets);
int32_t oxaqry_rows_free(oxaqry_rows* rows);
enum oxaqry_outcome_kind {
  OXAQRY_NO_REQUEST = 0,
  OXAQRY_SUCCEEDED = 1,
  OXAQRY_REFUSED = 2,
  OXAQRY_TIMED_OUT = 3,
  OXAQRY_CONNECTION_FAILED = 4,
  OXAQRY_ALL_BUSY = 5,
  OXAQRY_CANCELLED = 6,
  OXAQRY_FAILED = 7
};
enum oxaqry_sick_servers {
  OXAQRY_CLAIMED_IN_ORDER = 0,
  OXAQRY_TRIED_LAST = 1
};
int32_t oxaqry_outcome(oxaqry_query* query, int32_t* kind, int64_t* milliseconds, int32_t* was_sent,
                                  int32_t* attempt_count);
int32_t oxaqry_outcome_text(oxaqry_query* query, const char** text, size_t* length);
int32_t oxaqry_attempt(oxaqry_query* query, int32_t index, const char** host, size_t* host_length,
                                  int32_t* port, const char** error, size_t* error_length, int64_t* milliseconds);
int32_t oxaqry_handled_error(oxaqry_query* query, int32_t* number, const char** text, size_t* length);
int32_t oxaqry_progress(oxaqry_query* query, int64_t* sent, int64_t* received, int64_t* announced);
int32_t oxaqry_cancel(oxaqry_query* query);
int32_t oxaqry_resume(oxaqry_query* query);
int32_t oxaqry_server_count(oxaqry_query* query, int32_t* count);
int32_t oxaqry_server(oxaqry_query* query, int32_t index, const char** host, size_t* host_length,
                                 int32_t* port, int32_t* takes_print_requests, int32_t* is_busy, int64_t* since,
                                 const char** session, size_t* session_length);
int32_t oxaqry_server_failures(oxaqry_query* query, int32_t index, int32_t* failures);
int32_t oxaqry_set_sick_servers(oxaqry_query* query, int32_t policy);

// oxaqrycln.h - the component for C and for every language that calls C functions.
// C99 and C++. Without the lines that begin with "#" and without the word OXAQRY_API it is plain declarations, which
// readers without a preprocessor take.
//
// A query is an instance of the component, for one page request. Its members (variables and methods) are reached by
// their numbers, which never change; oxaqry_find_member() gives the number of a name. docs/methods.md describes them.
//
// Results. A function returns OXAQRY_OK (0), or a negative code when this interface was misused or memory is short. It
// has then changed nothing, unless its description says otherwise, and oxaqry_last_error() tells what was wrong. A
// failure of the archive, the database or a file is not a code: the call succeeds, the method's result and status text
// report the failure as docs/methods.md describes, and the watch below tells more.
// Every function that takes a handle may return OXAQRY_E_HANDLE (for NULL, a freed handle, or anything that is not a
// handle of the type), OXAQRY_E_THREAD, OXAQRY_E_FORKED, OXAQRY_E_BUSY, OXAQRY_E_MEMORY and OXAQRY_E_INTERNAL.
//
// Ownership. What a ..._new or oxaqry_fetch_rows() hands out is owned by the caller, who frees it with the function of
// its type. Every pointer to a text, bytes or offsets that a function hands out is borrowed: it belongs to the library
// and is valid as long as the function says.
//
// Threads. A handle belongs to the thread that made it; another thread gets OXAQRY_E_THREAD. Exceptions:
// - oxaqry_cancel(), oxaqry_resume() and oxaqry_progress() take a query from any thread, also in a signal handler.
// - A ..._free function takes a handle from any thread, and the handle is invalid at once. When that thread is not the
//   owner, the owner releases the object when it next makes a call with a query, or a new handle, or ends.
// When a thread ends, everything that it made is freed. (On Windows it is not: free it before.) In a child process
// after fork(), handles of the parent give OXAQRY_E_FORKED, and new ones can be made. Loading the library has no
// effect. While a call of a query runs, other calls with the same query or with a value that the call uses, which a
// message loop or a signal handler may make, give OXAQRY_E_BUSY.
//
// Texts are a pointer and a number of bytes, and may hold any character, NUL included; NULL with 0 bytes is the empty
// text. Where a function takes an encoding, it is OXAQRY_UTF8 or OXAQRY_WINDOWS_1252. The component's own texts are of
// the Windows-1252 code page; its five undefined bytes are the control characters U+0081, 8D, 8F, 90, 9D. All texts of
// functions without an encoding are UTF-8. A text that is handed out has no NUL at its end.
#ifndef OXAQRYCLN_AUTOMATION_C_OXAQRYCLN_H_
#define OXAQRYCLN_AUTOMATION_C_OXAQRYCLN_H_

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define OXAQRY_LINKAGE extern "C"
#else
#define OXAQRY_LINKAGE extern
#endif
#ifdef __ELF__
#define OXAQRY_API OXAQRY_LINKAGE __attribute__((visibility("default")))
#else
#define OXAQRY_API OXAQRY_LINKAGE
#endif

typedef struct oxaqry_query oxaqry_query;  // NOLINT: this is C
typedef struct oxaqry_value oxaqry_value;  // NOLINT: this is C
typedef struct oxaqry_rows oxaqry_rows;    // NOLINT: this is C

enum oxaqry_code {
  OXAQRY_OK = 0,
  OXAQRY_E_HANDLE = -1,    // NULL, a freed handle, or no handle of this type
  OXAQRY_E_ARGUMENT = -2,  // a required pointer is NULL, or a number or count is out of range
  OXAQRY_E_MEMBER = -3,    // there is no such member, or it is of another kind
  OXAQRY_E_COUNT = -4,     // too many arguments of a method, or a required one is left out
  OXAQRY_E_TYPE = -5,      // a value cannot be converted to the type that is asked for
  OXAQRY_E_TEXT = -6,      // not UTF-8, or a character without a place in Windows-1252; see oxaqry_error_position()
  OXAQRY_E_THREAD = -7,    // the handle belongs to another thread
  OXAQRY_E_FORKED = -8,    // the handle was made before fork(), in the parent process
  OXAQRY_E_BUSY = -9,      // a call that uses the handle is running
  OXAQRY_E_MEMORY = -10,   // no memory
  OXAQRY_E_INTERNAL = -11  // an error of the library
};

enum oxaqry_encoding { OXAQRY_UTF8 = 0, OXAQRY_WINDOWS_1252 = 1 };

// ---- Versions and errors; from any thread ----

// The number of this interface, which changes when a program that was built for it must be changed: 1.
OXAQRY_API int32_t oxaqry_abi_version(void);
// The version of the component, "1.2.3", with a NUL at its end. Valid for ever.
OXAQRY_API const char* oxaqry_version(void);
// What was wrong in the last call of the calling thread that returned a code: UTF-8 with a NUL at its end, "" before
// the first one. Valid until the next call that returns a code on this thread.
OXAQRY_API const char* oxaqry_last_error(void);
// When that code was OXAQRY_E_TEXT, the place of the wrong character in its text, counted in characters from 1; else 0.
// A text that is no UTF-8 is wrong at the character that is cut short or malformed.
OXAQRY_API int32_t oxaqry_error_position(size_t* position);

// ---- Members: introspection, from any thread; texts are valid for ever ----

enum oxaqry_member_kind {
  OXAQRY_MEMBER_VARIABLE = 0,  // oxaqry_get_variable(), oxaqry_set_variable()
  OXAQRY_MEMBER_METHOD = 1,    // oxaqry_call()
  OXAQRY_MEMBER_PROPERTY = 2   // write-only: oxaqry_set_variable() alone
};

enum oxaqry_member_text_kind {
  OXAQRY_MEMBER_NAME = 0,
  OXAQRY_MEMBER_GROUP = 1,          // the heading in the reference
  OXAQRY_MEMBER_DOCUMENTATION = 2,  // paragraphs with an empty line between them
  // "Name(input, [optional input], [out output], inout variable) -> Type"; "" for a variable.
  OXAQRY_MEMBER_SIGNATURE = 3
};

enum oxaqry_parameter_kind {
  OXAQRY_PARAMETER_IN = 0,  // must be given
  OXAQRY_PARAMETER_OPTIONAL_IN = 1,
  OXAQRY_PARAMETER_OPTIONAL_OUT = 2,  // the value is written, or keeps what it holds
  OXAQRY_PARAMETER_IN_OUT = 3         // must be given; read and replaced
};

// Types of variables and results.
enum oxaqry_member_type_kind {
  OXAQRY_TYPE_NONE = 0,  // a method without a result, and a property
  OXAQRY_TYPE_BOOLEAN = 1,
  OXAQRY_TYPE_LONG = 2,
  OXAQRY_TYPE_DATE = 3,
  OXAQRY_TYPE_TEXT = 4,
  OXAQRY_TYPE_VARIANT = 5  // a result whose kind depends; the documentation says on what
};

// How many members there are. Their numbers are 1 to count, in the order of the reference.
OXAQRY_API int32_t oxaqry_member_count(int32_t* count);
// The number of the member of that name, whatever its letter case. OXAQRY_E_MEMBER when there is none.
OXAQRY_API int32_t oxaqry_find_member(const char* name, size_t length, int32_t* number);
// An oxaqry_member_kind, and an oxaqry_member_type_kind: of a variable or of the result of a method. Either may be
// NULL.
OXAQRY_API int32_t oxaqry_member(int32_t number, int32_t* kind, int32_t* type);
// what: an oxaqry_member_text_kind.
OXAQRY_API int32_t oxaqry_member_text(int32_t number, int32_t what, const char** text, size_t* length);
// How many parameters a method has; 1 for the property, 0 for a variable.
OXAQRY_API int32_t oxaqry_parameter_count(int32_t number, int32_t* count);
// The parameter at a position from 0: an oxaqry_parameter_kind, and its name. Each pointer may be NULL.
OXAQRY_API int32_t oxaqry_parameter(int32_t number, int32_t position, int32_t* kind, const char** name, size_t* length);

// ---- Values: arguments, results and contents of variables ----

enum oxaqry_kind {
  OXAQRY_EMPTY = 0,
  OXAQRY_NULL = 1,
  OXAQRY_BOOLEAN = 2,
  OXAQRY_BYTE = 3,     // 0 to 255
  OXAQRY_INTEGER = 4,  // 16 bits
  OXAQRY_LONG = 5,     // 32 bits
  OXAQRY_DOUBLE = 6,
  OXAQRY_DATE = 7,  // local time, to the second
  OXAQRY_TEXT = 8,
  OXAQRY_BYTES = 9,
  OXAQRY_OBJECT = 10  // the context of a page request
};

// A new value, which is Empty. Owned: oxaqry_value_free().
OXAQRY_API int32_t oxaqry_value_new(oxaqry_value** value);
// From any thread; NULL is accepted.
OXAQRY_API int32_t oxaqry_value_free(oxaqry_value* value);

// Each of these replaces what the value holds. A text in UTF-8 must have Windows-1252 characters only: OXAQRY_E_TEXT.
// Texts and bytes are copied; they have at most 2147483647 bytes.
OXAQRY_API int32_t oxaqry_value_set_empty(oxaqry_value* value);
OXAQRY_API int32_t oxaqry_value_set_null(oxaqry_value* value);
OXAQRY_API int32_t oxaqry_value_set_boolean(oxaqry_value* value, int32_t is_true);
OXAQRY_API int32_t oxaqry_value_set_byte(oxaqry_value* value, uint8_t number);
OXAQRY_API int32_t oxaqry_value_set_integer(oxaqry_value* value, int16_t number);
OXAQRY_API int32_t oxaqry_value_set_long(oxaqry_value* value, int32_t number);
OXAQRY_API int32_t oxaqry_value_set_double(oxaqry_value* value, double number);
// Seconds since 30.12.1899 00:00:00 in local time, counted without changes to daylight saving time; years 100 to 9999.
OXAQRY_API int32_t oxaqry_value_set_date(oxaqry_value* value, int64_t seconds);
OXAQRY_API int32_t oxaqry_value_set_text(oxaqry_value* value, const char* text, size_t length, int32_t encoding);
OXAQRY_API int32_t oxaqry_value_set_bytes(oxaqry_value* value, const void* bytes, size_t length);
// A scripting context whose request has this body, for the methods OnStartPage and then UploadFile.
OXAQRY_API int32_t oxaqry_value_set_request(oxaqry_value* value, const void* body, size_t length);

// An oxaqry_kind.
OXAQRY_API int32_t oxaqry_value_kind(oxaqry_value* value, int32_t* kind);
// Each of these converts by the automation rules: Empty is 0, "" and the zero date, True is -1, texts are read as
// numbers and dates, fractions are rounded to the even whole number. OXAQRY_E_TYPE when that is impossible (Null as a
// number), and for a number that does not fit. Null as a text is "", True "True".
// is_true receives 1 or 0.
OXAQRY_API int32_t oxaqry_value_get_boolean(oxaqry_value* value, int32_t* is_true);
OXAQRY_API int32_t oxaqry_value_get_long(oxaqry_value* value, int32_t* number);
OXAQRY_API int32_t oxaqry_value_get_double(oxaqry_value* value, double* number);
// Seconds as in oxaqry_value_set_date().
OXAQRY_API int32_t oxaqry_value_get_date(oxaqry_value* value, int64_t* seconds);
// Borrowed until the value is read as a text again, changed (also by a call) or freed.
OXAQRY_API int32_t oxaqry_value_get_text(oxaqry_value* value, int32_t encoding, const char** text, size_t* length);
// Of a value of the kind OXAQRY_BYTES only. Borrowed until the value is changed or freed.
OXAQRY_API int32_t oxaqry_value_get_bytes(oxaqry_value* value, const uint8_t** bytes, size_t* length);

// ---- Queries ----

// A new query. Owned: oxaqry_query_free(). The caller assigns its variables, then calls the method Init.
OXAQRY_API int32_t oxaqry_query_new(oxaqry_query** query);
// From any thread; NULL is accepted. Closes what the query has open and gives its query server back. OXAQRY_E_BUSY from
// inside a running call of the query.
OXAQRY_API int32_t oxaqry_query_free(oxaqry_query* query);
// value receives the content of a variable.
OXAQRY_API int32_t oxaqry_get_variable(oxaqry_query* query, int32_t member, oxaqry_value* value);
// Assigns a variable, converted to its type (else OXAQRY_E_TYPE), or the write-only property RemoteHosts, whose failure
// oxaqry_handled_error() tells.
OXAQRY_API int32_t oxaqry_set_variable(oxaqry_query* query, int32_t member, oxaqry_value* value);

// Calls a method. values are its first count arguments in order; NULL in it, and each argument beyond count, is left
// out. Outputs are written through the values: one that the method does not write keeps what it holds. A value may be
// given several times when all those are inputs; else OXAQRY_E_BUSY. result, unless it is NULL, receives the result,
// Empty of a method without one; it must not be among the values. A method that makes a request returns when that has
// ended. values may be NULL when count is 0. OXAQRY_E_COUNT when a required argument is left out or there are too many.
OXAQRY_API int32_t oxaqry_call(oxaqry_query* query, int32_t method, oxaqry_value** values, int32_t count,
                               oxaqry_value* result);
// The same, and reads the texts of the result and of the outputs as oxaqry_value_get_text() does: texts and lengths
// have room for count + 1 of them. The first one is that of the result, the others belong to the values; for NULL and
// for inputs they receive the empty text. OXAQRY_E_TYPE when one of them cannot be read as a text, although the call
// has been made.
OXAQRY_API int32_t oxaqry_call_for_texts(oxaqry_query* query, int32_t method, oxaqry_value** values, int32_t count,
                                         oxaqry_value* result, int32_t encoding, const char** texts, size_t* lengths);

// ---- Rows: a whole list in one call ----

enum oxaqry_rows_end {
  OXAQRY_UNTIL_END = 0,  // the result "" or a negative number is the end of the list, and no row
  OXAQRY_EVERY_ROW = 1  // only max ends it: for methods that also return "" for an empty text; max is what Init counted
};

// Calls a method without required arguments, one that reads the next record of a list, until the list ends or max rows
// are read. A row is the result of the method, then its outputs at column_count positions among the parameters, counted
// from 0 and each named once; columns may be NULL when column_count is 0. Everything becomes text as in
// oxaqry_value_get_text(); an output that the method does not write keeps the text of the row before, "" in the first
// one. end: an oxaqry_rows_end. When the method fails at a record, the rows before it are returned, and
// oxaqry_handled_error() tells the error; its number is 0 when all is well. OXAQRY_E_MEMORY also when the texts have
// more than 4 GiB; the list then continues behind the records that were read. Owned: oxaqry_rows_free().
OXAQRY_API int32_t oxaqry_fetch_rows(oxaqry_query* query, int32_t method, int32_t max, const int32_t* columns,
                                     int32_t column_count, int32_t end, int32_t encoding, oxaqry_rows** rows);
// All texts in one block: text number row * columns + column, both from 0, begins at offsets[number] and ends at
// offsets[number + 1]; there are rows * columns + 1 offsets. columns counts the result, too, as column 0. In
// Windows-1252 a character is one byte, so offsets also count characters. Borrowed until the rows are freed. Each
// pointer may be NULL.
OXAQRY_API int32_t oxaqry_rows_read(oxaqry_rows* rows, int32_t* row_count, int32_t* column_count, const char** block,
                                    const uint32_t** offsets);
// From any thread; NULL is accepted.
OXAQRY_API int32_t oxaqry_rows_free(oxaqry_rows* rows);

// ---- The watch: what became of the last request, and control over the running one ----
// Texts are borrowed until the next call with the query. Each output pointer may be NULL.

enum oxaqry_outcome_kind {
  OXAQRY_NO_REQUEST = 0,         // none was made
  OXAQRY_SUCCEEDED = 1,          // the whole answer arrived, and the server reports success
  OXAQRY_REFUSED = 2,            // the server reports an error, which is the text
  OXAQRY_TIMED_OUT = 3,          // lngRequestTimeout passed
  OXAQRY_CONNECTION_FAILED = 4,  // no server could be connected to, or the connection broke
  OXAQRY_ALL_BUSY = 5,           // no server was free, and none was tried
  OXAQRY_CANCELLED = 6,
  OXAQRY_FAILED = 7  // an error of the component itself
};

enum oxaqry_sick_servers {
  // A request claims the first free server, whatever became of earlier requests to it. What every query starts with.
  OXAQRY_CLAIMED_IN_ORDER = 0,
  // A connect gets an equal share of the remaining time for each server that could still be tried, at least a second. A
  // server that failed is passed over for 30 seconds, doubled by each further failure up to five minutes, while a
  // healthy one is free. All queries of the thread know of it. A request that was sent is never sent again.
  OXAQRY_TRIED_LAST = 1
};

// The last request of the query: an oxaqry_outcome_kind; its duration, all servers included; 1 in was_sent when the
// request was handed to a connection, so that a server may have carried it out; how many attempts were made.
OXAQRY_API int32_t oxaqry_outcome(oxaqry_query* query, int32_t* kind, int64_t* milliseconds, int32_t* was_sent,
                                  int32_t* attempt_count);
// How many requests the query has made: the number of the last one.
OXAQRY_API int32_t oxaqry_request_number(oxaqry_query* query, int64_t* number);
// What went wrong in it; "" after a success. Of a refused request the server's own text.
OXAQRY_API int32_t oxaqry_outcome_text(oxaqry_query* query, const char** text, size_t* length);
// An attempt from 0 in the order in which servers were tried: the server, its error ("10061 - ..."; "" without one),
// and the time from the claim of the server to the end of the attempt.
OXAQRY_API int32_t oxaqry_attempt(oxaqry_query* query, int32_t index, const char** host, size_t* host_length,
                                  int32_t* port, const char** error, size_t* error_length, int64_t* milliseconds);
// The first error that the last method of the query handled; number 0 and "" without one. It tells success from failure
// where a result cannot. 7 is want of memory: a list that it ended is not complete.
OXAQRY_API int32_t oxaqry_handled_error(oxaqry_query* query, int32_t* number, const char** text, size_t* length);

// From any thread and in a signal handler. Bytes of the running request, or of the last one, as they were at most about
// a tenth of a second ago; announced is the length of the answer, 0 while that is unknown.
OXAQRY_API int32_t oxaqry_progress(oxaqry_query* query, int64_t* sent, int64_t* received, int64_t* announced);
// From any thread and in a signal handler. Ends the running request within about a fifth of a second, or each later one
// at once, until oxaqry_resume(): its method returns its failure value.
OXAQRY_API int32_t oxaqry_cancel(oxaqry_query* query);
OXAQRY_API int32_t oxaqry_resume(oxaqry_query* query);

// How many query servers the thread of the query has; 0 before RemoteHosts was assigned.
OXAQRY_API int32_t oxaqry_server_count(oxaqry_query* query, int32_t* count);
// The server at a position from 0: 1 or 0 in takes_print_requests and is_busy; since when (as oxaqry_value_set_date()
// counts) and for which session it is busy, 0 and "" while it is not.
OXAQRY_API int32_t oxaqry_server(oxaqry_query* query, int32_t index, const char** host, size_t* host_length,
                                 int32_t* port, int32_t* takes_print_requests, int32_t* is_busy, int64_t* since,
                                 const char** session, size_t* session_length);
// How many of its last connects and requests failed in a row, by oxaqry_server()'s index; 0 when it is healthy.
OXAQRY_API int32_t oxaqry_server_failures(oxaqry_query* query, int32_t index, int32_t* failures);
// Asks each server of a list whether it is alive, up to 16 at once, whatever servers the thread has. hosts, in UTF-8,
// is a list as RemoteHosts takes it. Account, session, log and time-out are those of the variables of the query, of
// which nothing else is used or changed. A row for each entry of the list, in its order: host, port, "1" or "0", the
// server's answer or why there is none, and milliseconds. oxaqry_cancel() ends it. Owned: oxaqry_rows_free().
OXAQRY_API int32_t oxaqry_check_servers(oxaqry_query* query, const char* hosts, size_t length, oxaqry_rows** rows);
// How the query chooses a server from now on: an oxaqry_sick_servers.
OXAQRY_API int32_t oxaqry_set_sick_servers(oxaqry_query* query, int32_t policy);

#endif  // OXAQRYCLN_AUTOMATION_C_OXAQRYCLN_H_

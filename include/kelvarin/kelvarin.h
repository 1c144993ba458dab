/* Columnar files, expressions and graphs for programs in C and in every language that calls C.
 *
 * Tables go in and out as Arrow C streams: numbers as float64, keys as uint32, texts as UTF-8.
 *
 * Handles: a number that the library looks up. A handle that is zero, closed, or of another kind is
 * answered with KELVARIN_WRONG_HANDLE and nothing else happens. Closing one while a stream that was
 * made of it lives is allowed: the stream keeps what it needs.
 *
 * Threads: every function may be called on any thread. Calls with one handle on several threads are
 * safe; where they would disturb one another, one waits for the other. A stream is pulled by one
 * thread at a time, which may be another one at each call; calls at the same time wait for each
 * other. Streams given to the library are pulled by one thread at a time, any of its own.
 * Callbacks come from threads of the library too, one at a time for each call or run, until that
 * has returned, or the stream was released, or the run closed. They must not call the library with
 * the handle or the stream that they belong to, but may request a stop. No function may be called
 * in a signal handler.
 *
 * Errors: a function returns a status. Where it is not KELVARIN_OK and `error` is not null,
 * `*error` says more, and the caller frees it; else `*error` is set to null. Outputs are set only
 * where the status is KELVARIN_OK. Functions of streams return numbers of errno (EIO; ECANCELED
 * where the work was stopped; EINVAL), and kelvarin_stream_error() has the details.
 *
 * Texts: UTF-8 with a NUL behind. Where a text may have a NUL in itself, its size comes with it.
 * What the library returns as `const char*` belongs to the handle or the error that it came from
 * and lives as long; what it returns as `char*` is freed by kelvarin_free().
 *
 * Options: structures begin with their size, so that fields can be added at the end. Initialise one
 * by its macro, KELVARIN_SCAN_OPTIONS_INIT for instance, and set what differs. Null options stand
 * for those of the macro.
 */
#ifndef KELVARIN_H
#define KELVARIN_H

#include <stddef.h>
#include <stdint.h>

#include "arrow_c_data.h"

#define KELVARIN_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Of this header: functions and fields are added, none is changed, as long as it is the same. */
#define KELVARIN_ABI 1

/* The same of the library at hand. */
KELVARIN_API int32_t kelvarin_abi(void);
/* Of the product, "0.1.0". Lives as long as the library. */
KELVARIN_API const char* kelvarin_version(void);

/* ---- Status and errors ---- */

typedef int32_t kelvarin_status;

enum {
  KELVARIN_OK = 0,
  KELVARIN_WRONG_ARGUMENT = 1,   /* a null pointer, a number out of range, an unknown name */
  KELVARIN_WRONG_HANDLE = 2,     /* zero, closed, or of another kind */
  KELVARIN_FAILED = 3,           /* the work failed: a file, a row, a stream */
  KELVARIN_WRONG_EXPRESSION = 4, /* an expression does not compile */
  KELVARIN_STOPPED = 5,          /* somebody asked for the end */
  KELVARIN_NOT_FINISHED = 6,     /* the run still goes on */
  KELVARIN_NO_MEMORY = 7,
  KELVARIN_NOT_INSTALLED = 8, /* a part of the product is missing or of another version */
  KELVARIN_INTERNAL = 9       /* a fault of the library */
};

/* What went wrong. Numbers are -1 and texts empty where they are not known. */
typedef struct kelvarin_error kelvarin_error;

KELVARIN_API kelvarin_status kelvarin_error_status(const kelvarin_error* error);
/* What a user should read: what happened, where, and what to do. */
KELVARIN_API const char* kelvarin_error_message(const kelvarin_error* error);
/* The name of the action in the graph. */
KELVARIN_API const char* kelvarin_error_action(const kelvarin_error* error);
/* The output of an expression action, or "condition". */
KELVARIN_API const char* kelvarin_error_output(const kelvarin_error* error);
/* The expression as it was written. */
KELVARIN_API const char* kelvarin_error_expression(const kelvarin_error* error);
/* The token at fault, and its position in the expression: in 16-bit units, counted from 0. */
KELVARIN_API const char* kelvarin_error_token(const kelvarin_error* error);
KELVARIN_API int64_t kelvarin_error_position(const kelvarin_error* error);
/* The column of the table. */
KELVARIN_API const char* kelvarin_error_column(const kelvarin_error* error);
/* The number of the row, counted from 0. */
KELVARIN_API int64_t kelvarin_error_row(const kelvarin_error* error);
/* All of it as one JSON object with the keys status, message, action, output, expression, token,
 * position, column, row, values (of the row's variables, by name) and log (all that was logged: a
 * list of objects with level, action and text); what is not known is left out. */
KELVARIN_API const char* kelvarin_error_json(const kelvarin_error* error);
/* Null is allowed, here and above. */
KELVARIN_API void kelvarin_error_free(kelvarin_error* error);

/* For texts returned as `char*`; null is allowed. */
KELVARIN_API void kelvarin_free(char* text);

/* ---- Stopping, logging, progress ---- */

/* By which any thread ends work: a read, a write, an application, a run. */
typedef struct kelvarin_stop {
  uint64_t id;
} kelvarin_stop;

KELVARIN_API kelvarin_status kelvarin_stop_new(kelvarin_stop* out);
/* Whatever has this stop in its options ends soon with KELVARIN_STOPPED, or ECANCELED. For good. */
KELVARIN_API kelvarin_status kelvarin_stop_request(kelvarin_stop stop);
KELVARIN_API kelvarin_status kelvarin_stop_close(kelvarin_stop stop);

enum { KELVARIN_LOG_ERROR = 1, KELVARIN_LOG_WARNING = 2, KELVARIN_LOG_INFORMATION = 3 };

/* `action` and `text` live until it returns. */
typedef void (*kelvarin_log_function)(void* context, int32_t level, const char* action,
                                      const char* text);

typedef struct kelvarin_log {
  kelvarin_log_function function; /* null: nobody listens */
  void* context;
} kelvarin_log;

/* `fraction` is 0 to 1, or -1 where it is not known. Some ten times a second. */
typedef void (*kelvarin_progress_function)(void* context, int64_t rows_read, double fraction);

typedef struct kelvarin_progress {
  kelvarin_progress_function function; /* null: nobody listens */
  void* context;
} kelvarin_progress;

/* ---- Streams ---- */

/* How texts leave the library. */
enum {
  KELVARIN_TEXT_VIEWS = 0, /* "vu": views of 16 bytes, into the bytes as they were decoded */
  KELVARIN_TEXT_UTF8 = 1,  /* "u": offsets of 32 bits; batches are cut where they do not suffice */
  KELVARIN_TEXT_LARGE = 2  /* "U": offsets of 64 bits */
};

/* Why the last call for a stream of this library failed. KELVARIN_OK with a null error: none has.
 * KELVARIN_WRONG_ARGUMENT: the stream is null, released, or of somebody else. */
KELVARIN_API kelvarin_status kelvarin_stream_error(const struct ArrowArrayStream* stream,
                                                   kelvarin_error** error);

/* ---- Columnar files ---- */

/* An opened columnar file. */
typedef struct kelvarin_table {
  uint64_t id;
} kelvarin_table;

enum { KELVARIN_NUMBER = 'F', KELVARIN_KEY = 'K', KELVARIN_TEXT = 'U' };

enum { KELVARIN_UNSORTED = 0, KELVARIN_ASCENDING = 1, KELVARIN_DESCENDING = -1 };

typedef struct kelvarin_table_options {
  size_t size;
  int32_t accepts_incomplete; /* 1: a file that its writer has not finished is read as far as it is
                                 there */
} kelvarin_table_options;

#define KELVARIN_TABLE_OPTIONS_INIT {sizeof(kelvarin_table_options), 0}

/* Reads the header, the columns and the descriptors of all blocks. */
KELVARIN_API kelvarin_status kelvarin_table_open(const char* path,
                                                 const kelvarin_table_options* options,
                                                 kelvarin_table* out, kelvarin_error** error);
KELVARIN_API kelvarin_status kelvarin_table_close(kelvarin_table table);

/* The caller sets `size` before the call, in this structure and in those below. */
typedef struct kelvarin_table_info {
  size_t size;
  int64_t rows;
  int64_t blocks;
  int32_t columns;
  int32_t rows_in_block; /* at most */
  int32_t column_sets;
  int32_t is_complete; /* 0: its writer has not finished it */
} kelvarin_table_info;

KELVARIN_API kelvarin_status kelvarin_table_get_info(kelvarin_table table, kelvarin_table_info* out,
                                                     kelvarin_error** error);

typedef struct kelvarin_column_info {
  size_t size;
  const char* name;      /* of the table */
  int32_t type;          /* KELVARIN_NUMBER, KELVARIN_KEY or KELVARIN_TEXT */
  int32_t order;         /* KELVARIN_ASCENDING where the rows are sorted on it, or DESCENDING */
  int32_t sort_position; /* among the columns that they are sorted on; -1 for none of them */
  int32_t column_set;
} kelvarin_column_info;

/* `column` counts from 0 in the order of the rows, here and below. */
KELVARIN_API kelvarin_status kelvarin_table_get_column(kelvarin_table table, int32_t column,
                                                       kelvarin_column_info* out,
                                                       kelvarin_error** error);

typedef struct kelvarin_block_info {
  size_t size;
  int64_t first_row;
  int64_t rows;
  int32_t is_damaged; /* its descriptor is lost: there are no statistics */
} kelvarin_block_info;

KELVARIN_API kelvarin_status kelvarin_table_get_block(kelvarin_table table, int64_t block,
                                                      kelvarin_block_info* out,
                                                      kelvarin_error** error);

/* What the file says about a column's values in a block. The bounds of texts may be cut, so that
 * they only enclose the values. */
typedef struct kelvarin_statistics {
  size_t size;
  int32_t has_nulls;
  int32_t has_bounds; /* 0: there are no values, or nothing is known about them */
  double min_number;  /* of numbers and keys */
  double max_number;
  const char* min_text; /* of texts; of the table */
  int64_t min_text_size;
  const char* max_text;
  int64_t max_text_size;
  int32_t has_nan; /* numbers beside the bounds, which are no numbers */
} kelvarin_statistics;

KELVARIN_API kelvarin_status kelvarin_table_get_statistics(kelvarin_table table, int64_t block,
                                                           int32_t column, kelvarin_statistics* out,
                                                           kelvarin_error** error);

typedef struct kelvarin_scan_options {
  size_t size;
  const char* const* columns; /* their names in the order of the stream; null: all */
  int32_t column_count;
  int32_t text_format; /* KELVARIN_TEXT_VIEWS, _UTF8 or _LARGE */
  int64_t first_row;   /* rows from it to before end_row are read; end_row -1: to the last */
  int64_t end_row;
  int64_t first_block; /* and of these the ones in blocks from it to before end_block */
  int64_t end_block;
  const char* block_filter; /* null: none; "price_max > 5 && date_min < 20130201": blocks for which
                               it is false are skipped, all rows of the others come */
  int32_t skips_damage; /* 0: damage fails the stream; 1: damaged rows are left out and logged */
  int32_t threads;      /* 0: as many as there are processors; 1: only the caller's */
  int64_t batch_rows;   /* rows of a batch at most; 0: as the library likes it */
  const char* row_number_column; /* null: none; the name of a last column with the number of each
                                    row in the file, counted from 0, as float64 */
  kelvarin_stop stop;            /* zero: nobody stops it */
  kelvarin_log log;
  int32_t gathers_rows; /* 1: for who wants all rows, which then come in one batch, each column in
                           one piece of memory; in several where damaged rows are left out, offsets
                           of 32 bits do not suffice, or batch_rows is set */
} kelvarin_scan_options;

#define KELVARIN_SCAN_OPTIONS_INIT \
  {sizeof(kelvarin_scan_options),  \
   NULL,                           \
   0,                              \
   KELVARIN_TEXT_VIEWS,            \
   0,                              \
   -1,                             \
   0,                              \
   -1,                             \
   NULL,                           \
   0,                              \
   0,                              \
   0,                              \
   NULL,                           \
   {0},                            \
   {NULL, NULL},                   \
   0}

/* Rows of the table as a stream, which is read while it is pulled. Releasing it early ends its
 * tasks. */
KELVARIN_API kelvarin_status kelvarin_table_scan(kelvarin_table table,
                                                 const kelvarin_scan_options* options,
                                                 struct ArrowArrayStream* out,
                                                 kelvarin_error** error);

/* Other types than float64, uint32 and texts become these as the action ReadArrow reads them. */
typedef struct kelvarin_column_option {
  const char* name;
  int32_t type; /* 0: by the type in the stream; KELVARIN_NUMBER, KELVARIN_KEY or KELVARIN_TEXT */
} kelvarin_column_option;

/* Verified row by row: rows in another order fail the work. */
typedef struct kelvarin_sort_option {
  const char* column;
  int32_t order; /* KELVARIN_ASCENDING or KELVARIN_DESCENDING */
} kelvarin_sort_option;

/* How the columns of a stream are read. */
typedef struct kelvarin_input_options {
  size_t size;
  const kelvarin_column_option* columns; /* those whose type is chosen */
  int32_t column_count;
  const kelvarin_sort_option* sorted_by;
  int32_t sorted_by_count;
  int32_t takes_bad_values_as_null; /* 0: a value that its column cannot hold, such as an integer
                                       beyond 2^53 in one of numbers, fails the work */
} kelvarin_input_options;

#define KELVARIN_INPUT_OPTIONS_INIT {sizeof(kelvarin_input_options), NULL, 0, NULL, 0, 0}

enum { KELVARIN_SPLIT_NONE = 0, KELVARIN_SPLIT_BY_SIZE = 1, KELVARIN_SPLIT_BY_VALUE = 2 };

typedef struct kelvarin_write_options {
  size_t size;
  const kelvarin_input_options* input; /* null: the defaults */
  int32_t rows_in_block;               /* 0: 20000 */
  int32_t threads;                     /* 0: as many as there are processors */
  int32_t split;                       /* into several files: see KELVARIN_SPLIT_NONE */
  double split_mebibytes;              /* of a file, when splitting by size */
  const char* split_column;            /* when splitting by its values */
  int32_t separates_columns;           /* 1: each column has a file of its own beside the table's */
  int32_t creates_folder;              /* 1: of the file, where it does not exist */
  int32_t disk_wait_seconds;           /* how long to wait for space on a full disk; -1: 60 */
  kelvarin_stop stop;
  kelvarin_log log;
  kelvarin_progress progress;
} kelvarin_write_options;

#define KELVARIN_WRITE_OPTIONS_INIT                                                              \
  {                                                                                              \
    sizeof(kelvarin_write_options), NULL, 0, 0, KELVARIN_SPLIT_NONE, 100.0, NULL, 0, 0, -1, {0}, \
        {NULL, NULL}, {                                                                          \
      NULL, NULL                                                                                 \
    }                                                                                            \
  }

/* Writes all rows of `input` to a columnar file. It takes the stream and releases it in every case.
 * All or nothing: until the end, and where it fails, a file of that name stays as it was. A stream
 * without rows removes it: there is no table of no rows. `rows` may be null; it receives their
 * number. */
KELVARIN_API kelvarin_status kelvarin_write(const char* path, struct ArrowArrayStream* input,
                                            const kelvarin_write_options* options, int64_t* rows,
                                            kelvarin_error** error);

/* ---- Expressions ---- */

/* Expressions that have been compiled against a schema: outputs, a condition, or both. */
typedef struct kelvarin_expressions {
  uint64_t id;
} kelvarin_expressions;

typedef struct kelvarin_output_option {
  const char* name; /* of the column; one of the input with this name is replaced */
  const char* expression;
  int32_t type; /* 0: that of the result; KELVARIN_NUMBER, KELVARIN_KEY or KELVARIN_TEXT */
} kelvarin_output_option;

/* An attribute of the actions Calculator and FilterRows, such as dateFormat or seed. */
typedef struct kelvarin_setting {
  const char* name;
  const char* value;
} kelvarin_setting;

typedef struct kelvarin_expression_options {
  size_t size;
  const kelvarin_output_option* outputs;
  int32_t output_count;
  const char* condition; /* null: all rows stay; it sees the outputs */
  const kelvarin_setting* settings;
  int32_t setting_count;
  const kelvarin_input_options* input; /* null: the defaults */
} kelvarin_expression_options;

#define KELVARIN_EXPRESSION_OPTIONS_INIT \
  {sizeof(kelvarin_expression_options), NULL, 0, NULL, NULL, 0, NULL}

/* `schema` is that of a stream; it is only looked at. */
KELVARIN_API kelvarin_status kelvarin_expressions_compile(
    const kelvarin_expression_options* options, const struct ArrowSchema* schema,
    kelvarin_expressions* out, kelvarin_error** error);
KELVARIN_API kelvarin_status kelvarin_expressions_close(kelvarin_expressions expressions);

/* Of the rows that come out, with texts as `text_format` says. */
KELVARIN_API kelvarin_status kelvarin_expressions_get_schema(kelvarin_expressions expressions,
                                                             int32_t text_format,
                                                             struct ArrowSchema* out,
                                                             kelvarin_error** error);

/* Why a result depends on more than the values of its row. */
enum {
  KELVARIN_DEPENDS_ON_RANDOM = 1,       /* rand, sampling */
  KELVARIN_DEPENDS_ON_EARLIER_ROWS = 2, /* an assignment to a variable, truncate */
  KELVARIN_DEPENDS_ON_ROW_NUMBER = 4,   /* _n: right where first_row is */
  KELVARIN_DEPENDS_ON_FILES = 8,        /* load and its like */
  KELVARIN_DEPENDS_ON_TIME = 16         /* _now and what else differs by run */
};

typedef struct kelvarin_expression_info {
  size_t size;
  const char* name;             /* of the output; "condition" for the last one */
  const char* engine;           /* that evaluates it */
  const char* slowed_by;        /* the token that a faster engine does not know; empty: none */
  const char* reason;           /* why no faster engine; empty for the fastest one */
  int32_t is_by_batch;          /* 0: row by row */
  const char* batch_refusal;    /* the token that forbids it; may be empty */
  int32_t type;                 /* of the result; 0 for the condition */
  int32_t dependence;           /* the sum of KELVARIN_DEPENDS_ON_... */
  const char* dependence_token; /* the first token, or the setting, that it comes from */
  int64_t dependence_position;  /* of the token; -1 for a setting, and where there is none */
} kelvarin_expression_info;

/* Outputs in their order, then the condition. KELVARIN_WRONG_ARGUMENT behind the last. */
KELVARIN_API kelvarin_status kelvarin_expressions_get_info(kelvarin_expressions expressions,
                                                           int32_t index,
                                                           kelvarin_expression_info* out,
                                                           kelvarin_error** error);

typedef struct kelvarin_apply_options {
  size_t size;
  int64_t first_row;   /* the number of the first row, for `_n` and in messages */
  int32_t text_format; /* KELVARIN_TEXT_VIEWS, _UTF8 or _LARGE */
  int32_t threads;     /* 0: as many as there are processors; 1: only the caller's */
  int64_t batch_rows;  /* rows of a batch at most; 0: as the library likes it */
  kelvarin_stop stop;
  kelvarin_log log;
} kelvarin_apply_options;

#define KELVARIN_APPLY_OPTIONS_INIT                                      \
  {                                                                      \
    sizeof(kelvarin_apply_options), 0, KELVARIN_TEXT_VIEWS, 0, 0, {0}, { \
      NULL, NULL                                                         \
    }                                                                    \
  }

/* The rows of `input`, whose columns are those of the schema, with the outputs, and without those
 * for which the condition is false: computed while `out` is pulled. Takes the input in every case
 * and releases it at the latest with `out`. */
KELVARIN_API kelvarin_status kelvarin_expressions_apply(kelvarin_expressions expressions,
                                                        struct ArrowArrayStream* input,
                                                        const kelvarin_apply_options* options,
                                                        struct ArrowArrayStream* out,
                                                        kelvarin_error** error);

/* ---- Graphs ---- */

/* A graph and one run of it. */
typedef struct kelvarin_run {
  uint64_t id;
} kelvarin_run;

typedef struct kelvarin_run_options {
  size_t size;
  const kelvarin_setting* parameters; /* of the graph, in place of the values in its file */
  int32_t parameter_count;
  int32_t threads;           /* 0: as many as there are processors */
  int32_t disk_wait_seconds; /* how long to wait for space on a full disk; -1: 60 */
  kelvarin_stop stop;
  kelvarin_log log;
  kelvarin_progress progress;
} kelvarin_run_options;

#define KELVARIN_RUN_OPTIONS_INIT                                      \
  {                                                                    \
    sizeof(kelvarin_run_options), NULL, 0, 0, -1, {0}, {NULL, NULL}, { \
      NULL, NULL                                                       \
    }                                                                  \
  }

/* Reads a graph file and checks all that can be checked without running it. */
KELVARIN_API kelvarin_status kelvarin_run_open(const char* path,
                                               const kelvarin_run_options* options,
                                               kelvarin_run* out, kelvarin_error** error);
/* The same for a document in memory; `path` is its name in messages, and relative names start from
 * its folder. */
KELVARIN_API kelvarin_status kelvarin_run_open_document(const char* document, int64_t size,
                                                        const char* path,
                                                        const kelvarin_run_options* options,
                                                        kelvarin_run* out, kelvarin_error** error);
/* Stops the run and waits for its end. Streams that were bound end. */
KELVARIN_API kelvarin_status kelvarin_run_close(kelvarin_run run);

typedef struct kelvarin_action_info {
  size_t size;
  const char* name;
  const char* type;
  int32_t inputs;  /* pins */
  int32_t outputs; /* pins */
} kelvarin_action_info;

/* In the graph's order. KELVARIN_WRONG_ARGUMENT behind the last. */
KELVARIN_API kelvarin_status kelvarin_run_get_action(kelvarin_run run, int32_t index,
                                                     kelvarin_action_info* out,
                                                     kelvarin_error** error);

/* The source `action` yields the rows of the stream instead of those that it would read. Takes the
 * stream in every case. Before the start. */
KELVARIN_API kelvarin_status kelvarin_run_bind_input(kelvarin_run run, const char* action,
                                                     struct ArrowArrayStream* input,
                                                     const kelvarin_input_options* options,
                                                     kelvarin_error** error);

typedef struct kelvarin_stream_options {
  size_t size;
  int32_t text_format; /* KELVARIN_TEXT_VIEWS, _UTF8 or _LARGE */
  int64_t batch_rows;  /* rows of a batch at most; 0: as the library likes it */
} kelvarin_stream_options;

#define KELVARIN_STREAM_OPTIONS_INIT {sizeof(kelvarin_stream_options), KELVARIN_TEXT_VIEWS, 0}

/* The rows that reach the sink `action` come out of the stream instead of being written. The run
 * waits for whoever pulls it; a stream that is released drops its rows. Before the start. */
KELVARIN_API kelvarin_status kelvarin_run_bind_output(kelvarin_run run, const char* action,
                                                      const kelvarin_stream_options* options,
                                                      struct ArrowArrayStream* out,
                                                      kelvarin_error** error);

/* Begins the run on a thread of its own; once. */
KELVARIN_API kelvarin_status kelvarin_run_start(kelvarin_run run, kelvarin_error** error);
/* Ends it soon. */
KELVARIN_API kelvarin_status kelvarin_run_stop(kelvarin_run run);
/* Waits for its end, or so long; -1: without a limit. KELVARIN_NOT_FINISHED: it goes on. Bound
 * outputs must be pulled meanwhile. KELVARIN_OK, KELVARIN_FAILED or KELVARIN_STOPPED say how it
 * has ended; each time it is asked. */
KELVARIN_API kelvarin_status kelvarin_run_wait(kelvarin_run run, int64_t milliseconds,
                                               kelvarin_error** error);
/* The report that `kelvarin run --json` prints; of a run that has ended, however. */
KELVARIN_API kelvarin_status kelvarin_run_result(kelvarin_run run, char** json,
                                                 kelvarin_error** error);
/* Where it stands, some ten times a second new: {"rowsRead", "fraction", "actions": [{"name",
 * "phase", "rowsIn", "rowsOut", "fraction"}]}. */
KELVARIN_API kelvarin_status kelvarin_run_progress(kelvarin_run run, char** json,
                                                   kelvarin_error** error);

#ifdef __cplusplus
}
#endif

#endif /* KELVARIN_H */

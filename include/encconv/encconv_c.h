/**
 * @file
 * The C interface of encconv: the same conversions as the C++ interface, with explicit sizes. C89
 * but for the types of <stdint.h>.
 *
 * Nothing here keeps global state but the mapping tables. Functions may be called from any thread;
 * a stream belongs to one thread at a time.
 *
 * Structures begin with their size, so that they can grow: the caller sets struct_size to sizeof,
 * or begins with the initialiser that stands below each, and a library that knows more or fewer
 * members keeps to those that both know.
 *
 * Marks: a byte order mark at the beginning of a Unicode source tells the byte order of UTF-16 and
 * UTF-32, and is taken off; where source and target are the same, it stays. The output begins with
 * one when byte_order_mark asks for it.
 *
 * Lines: end with U+000A, however the source encodes it. U+000D and U+0085 end none.
 */
#ifndef ENCCONV_ENCCONV_C_H_
#define ENCCONV_ENCCONV_C_H_

#include <stddef.h>
#include <stdint.h>

#include "encconv/export.h"
#include "encconv/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How a conversion ended, or stands. */
typedef enum encconv_status {
  ENCCONV_OK = 0,             /**< all of the input was converted or treated */
  ENCCONV_STOPPED,            /**< by input that could not be converted, under "stop" */
  ENCCONV_UNKNOWN_SOURCE,     /**< the source encoding is not known or cannot be read */
  ENCCONV_UNKNOWN_TARGET,     /**< the target encoding is not known or cannot be written */
  ENCCONV_UNKNOWN_ALTERNATE,  /**< the alternate encoding can be neither read nor written */
  ENCCONV_INVALID_SUBSTITUTE, /**< the substitute is not UTF-8, or the target cannot hold it */
  ENCCONV_INVALID_ON_ERROR,   /**< encconv_options.on_error is not one of the treatments */
  ENCCONV_OUT_OF_MEMORY,      /**< the output may be incomplete */
  ENCCONV_MISUSE,             /**< a stream was used after its end, a pointer is null, or a
                                   structure has no size that the library knows */
  ENCCONV_OUTPUT_FULL         /**< there is too little room for the output */
} encconv_status;

/** How to convert. Null in place of it means the initialiser. */
typedef struct encconv_options {
  size_t struct_size;   /**< sizeof(encconv_options) */
  const char* on_error; /**< what to do about text that cannot be converted, as behind the tool's
                             --on-error: "stop", "drop", "substitute", "substitute=TEXT",
                             "substitute=0xHH...", "hex", "alternate=ENCODING" or "raw", each also
                             behind "compose,", "best-fit," and "translit,"; null
                             means "stop". Is not needed when the call is over. */
  int byte_order_mark;  /**< 1: begin the output with the mark of a Unicode target */
  int pdf_passthrough;  /**< 1: copy input that begins "%PDF-1" */
} encconv_options;
/** Stops at what cannot be converted; no mark. */
#define ENCCONV_OPTIONS_INIT \
  { sizeof(encconv_options), NULL, 0, 0 }

/** A piece of input that could not be converted. */
typedef struct encconv_problem {
  size_t struct_size;      /**< sizeof(encconv_problem) */
  uint64_t offset;         /**< where it begins, in bytes of the input */
  uint64_t line;           /**< of the text, counted from 1 */
  uint32_t length;         /**< bytes */
  int32_t code_point;      /**< of the character that the target lacks; -1 when malformed */
  int malformed;           /**< 1: the input is no text of its encoding */
  uint32_t byte_count;     /**< valid entries of bytes */
  unsigned char bytes[16]; /**< the first bytes of the piece */
  int approximated;        /**< 1: the target lacks the character, and others were written for it */
  char written[48];        /**< those, or none, in UTF-8 that ends with NUL */
} encconv_problem;
/** No problem. */
#define ENCCONV_PROBLEM_INIT                                 \
  {                                                          \
    sizeof(encconv_problem), 0, 0, 0, 0, 0, 0, {0}, 0, { 0 } \
  }

/** What became of a conversion. */
typedef struct encconv_result {
  size_t struct_size;             /**< sizeof(encconv_result) */
  encconv_problem* first_problem; /**< set by the caller: where the first problem goes, or null.
                                       Its length becomes 0 when there was none. */
  uint64_t problem_count;         /**< pieces that could not be converted */
  encconv_problem* first_approximation; /**< likewise for the first character that another was
                                             written for */
  uint64_t approximation_count;         /**< such characters */
} encconv_result;
/** With no place for the first problem. */
#define ENCCONV_RESULT_INIT \
  { sizeof(encconv_result), NULL, 0, NULL, 0 }

/** What is known of an encoding. The texts end with NUL, are the library's own and stay valid. */
typedef struct encconv_code_page {
  size_t struct_size;      /**< sizeof(encconv_code_page) */
  int number;              /**< by which conversions name it: 1252, 932, 65001, ... */
  const char* name;        /**< its preferred name */
  const char* aliases;     /**< its other names, separated by single spaces */
  const char* kind;        /**< "unicode", "single-byte", "double-byte", "multi-byte"
                                or "stateful" */
  const char* description; /**< a few words for people */
  int can_read;            /**< 1: may be the source of a conversion */
  int can_write;           /**< 1: may be the target */
} encconv_code_page;
/** No encoding. */
#define ENCCONV_CODE_PAGE_INIT \
  { sizeof(encconv_code_page), 0, NULL, NULL, NULL, NULL, 0, 0 }

/** A conversion under way. */
typedef struct encconv_stream encconv_stream;

/** The version of the library that runs, such as "2.0.0". */
ENCCONV_API const char* encconv_version(void);
/** A few words for people about a status. */
ENCCONV_API const char* encconv_describe(encconv_status status);

/**
 * The number of the encoding that a name means ("utf-8", "Shift_JIS", "cp1252", "1252", ...); 0
 * when it is not known. Case, punctuation and leading zeros do not matter.
 */
ENCCONV_API int encconv_find_code_page(const char* name);
/** How many encodings there are. */
ENCCONV_API size_t encconv_code_page_count(void);
/**
 * Fills in the encoding at an index below the count, in ascending order of number; 0 for any other
 * index, else 1.
 */
ENCCONV_API int encconv_code_page_at(size_t index, encconv_code_page* page);

/**
 * Converts size bytes. *output becomes the converted bytes, to be freed with encconv_free(), and
 * *output_size their number; up to the problem when stopped. Both are set whatever the status but
 * ENCCONV_MISUSE, null and 0 when there is nothing. options and result may be null.
 */
ENCCONV_API encconv_status encconv_convert(int from, int to, const void* data, size_t size,
                                           const encconv_options* options, unsigned char** output,
                                           size_t* output_size, encconv_result* result);
/** Frees the output of encconv_convert(). Null is ignored. */
ENCCONV_API void encconv_free(unsigned char* output);

/**
 * Converts size bytes into the capacity bytes at output, which must not overlap them. *output_size
 * becomes the number of bytes written; where the status is not ENCCONV_OK they are a part of the
 * output. Nothing is written behind the capacity; ENCCONV_OUTPUT_FULL when it is too little.
 * options and result may be null.
 */
ENCCONV_API encconv_status encconv_convert_into(int from, int to, const void* data, size_t size,
                                                const encconv_options* options, void* output,
                                                size_t capacity, size_t* output_size,
                                                encconv_result* result);
/**
 * A capacity that is enough for size bytes of any text, unless "hex", "raw", "alternate" or a
 * substitute of several characters puts more in place of what cannot be converted. 0 for an
 * encoding that is not known.
 */
ENCCONV_API size_t encconv_max_output_size(size_t size, int from, int to);

/**
 * Begins a conversion piece by piece. Null, with *status saying why, when it cannot be done;
 * options and status may be null. To be closed with encconv_close().
 */
ENCCONV_API encconv_stream* encconv_open(int from, int to, const encconv_options* options,
                                         encconv_status* status);
/**
 * Begins another conversion, whatever became of the one before; its memory is used again, the
 * output is emptied, and the handler of encconv_on_problem() stays. Any status but ENCCONV_OK
 * leaves a stream that only encconv_begin() and encconv_close() can use.
 */
ENCCONV_API encconv_status encconv_begin(encconv_stream* stream, int from, int to,
                                         const encconv_options* options);

/** Is told of a problem, which is valid during the call; context is the caller's own. */
typedef void (*encconv_problem_handler)(const encconv_problem* problem, void* context);
/**
 * Has handler called for each piece that cannot be converted, in the order of the text, before its
 * treatment is written; null: no longer. To be set before the first encconv_push(); the handler
 * must not use the stream and must not throw or jump out.
 */
ENCCONV_API void encconv_on_problem(encconv_stream* stream, encconv_problem_handler handler,
                                    void* context);

/**
 * Converts the next size bytes. Any status but ENCCONV_OK ends the stream; what was converted until
 * then is in the output.
 */
ENCCONV_API encconv_status encconv_push(encconv_stream* stream, const void* data, size_t size);
/** Ends the stream: converts what waited for more, and writes what the target ends with. */
ENCCONV_API encconv_status encconv_finish(encconv_stream* stream);
/**
 * The output that has gathered since it was last cleared: its first byte, valid until the next call
 * for the stream, and in *size the number of bytes. Never null.
 */
ENCCONV_API const unsigned char* encconv_output(const encconv_stream* stream, size_t* size);
/** Empties the output. */
ENCCONV_API void encconv_clear_output(encconv_stream* stream);
/** How many pieces could not be converted so far. */
ENCCONV_API uint64_t encconv_problem_count(const encconv_stream* stream);
/** Fills in the first of them; 0 when there is none, else 1. */
ENCCONV_API int encconv_first_problem(const encconv_stream* stream, encconv_problem* problem);
/** How many characters others were written for so far. */
ENCCONV_API uint64_t encconv_approximation_count(const encconv_stream* stream);
/** Fills in the first of them; 0 when there is none, else 1. */
ENCCONV_API int encconv_first_approximation(const encconv_stream* stream, encconv_problem* problem);
/** Frees the stream, finished or not. Null is ignored. */
ENCCONV_API void encconv_close(encconv_stream* stream);

/** What bytes turned out to be. */
typedef enum encconv_detected_kind {
  ENCCONV_DETECTED_EMPTY = 0, /**< there are none */
  ENCCONV_DETECTED_ASCII,     /**< nothing but ASCII: the same text in nearly every encoding */
  ENCCONV_DETECTED_TEXT,      /**< text, in the encoding of the first candidate as far as its
                                   confidence goes */
  ENCCONV_DETECTED_BINARY,    /**< no text: a picture, a program, compressed data */
  ENCCONV_DETECTED_UNKNOWN    /**< perhaps text, but no encoding suggests itself */
} encconv_detected_kind;

/** What speaks for a candidate most. */
typedef enum encconv_evidence {
  ENCCONV_EVIDENCE_MARK = 0,    /**< a byte order mark */
  ENCCONV_EVIDENCE_DECLARATION, /**< the text names its encoding, and is well formed in it */
  ENCCONV_EVIDENCE_STRUCTURE,   /**< the bytes have a form that hardly anything else has */
  ENCCONV_EVIDENCE_STATISTICS   /**< the frequencies of letters */
} encconv_evidence;

/** An encoding that a text may be in. Its texts are the detection's own. */
typedef struct encconv_candidate {
  size_t struct_size; /**< sizeof(encconv_candidate) */
  int code_page;      /**< by which conversions name it; 0 for one that cannot be converted */
  const char* name;   /**< its preferred name */
  double confidence;  /**< from 0 to 1 */
  encconv_evidence evidence; /**< what speaks for it most */
  const char* reason;        /**< a few words for people */
} encconv_candidate;
/** No encoding. */
#define ENCCONV_CANDIDATE_INIT \
  { sizeof(encconv_candidate), 0, NULL, 0, ENCCONV_EVIDENCE_STATISTICS, NULL }

/** The confidence from which a candidate may be taken without asking anybody. */
#define ENCCONV_SUFFICIENT_CONFIDENCE 0.5

/** What encconv_detect() found. */
typedef struct encconv_detection encconv_detection;

/**
 * Finds out which encoding size bytes of text are in, or that they are no text. is_beginning: 1
 * when the text goes on behind them, perhaps within a character. Looks at the first MiB, and at
 * samples of what follows. Null when memory is short, or when data is null and size is not 0. To be
 * freed with encconv_detection_free().
 */
ENCCONV_API encconv_detection* encconv_detect(const void* data, size_t size, int is_beginning);
/** What the bytes are. */
ENCCONV_API encconv_detected_kind encconv_detection_kind(const encconv_detection* detection);
/** Why there are no candidates, in a few words for people; valid as long as the detection. */
ENCCONV_API const char* encconv_detection_reason(const encconv_detection* detection);
/** How many candidates there are; each reads the bytes as another text. */
ENCCONV_API size_t encconv_candidate_count(const encconv_detection* detection);
/**
 * Fills in the candidate at an index below the count, the likeliest first; 0 for any other index or
 * when candidate has no size, else 1.
 */
ENCCONV_API int encconv_candidate_at(const encconv_detection* detection, size_t index,
                                     encconv_candidate* candidate);
/** Frees a detection. Null is ignored. */
ENCCONV_API void encconv_detection_free(encconv_detection* detection);

/** Bytes of one encoding that were taken for those of another, so that text became garbled. */
typedef struct encconv_misreading {
  int written; /**< the code page that the bytes were in */
  int read;    /**< the one that they were taken for */
} encconv_misreading;

/** A text that may have become a garbled one. What it points to is the trace's own. */
typedef struct encconv_origin {
  size_t struct_size;                    /**< sizeof(encconv_origin) */
  const char* text;                      /**< in UTF-8; a NUL byte follows it */
  size_t text_size;                      /**< bytes */
  const encconv_misreading* misreadings; /**< what happened to it, in that order */
  size_t misreading_count;               /**< one or more */
  double confidence;                     /**< from 0 to 1 */
} encconv_origin;
/** None. */
#define ENCCONV_ORIGIN_INIT \
  { sizeof(encconv_origin), NULL, 0, NULL, 0, 0 }

/** What encconv_trace_back() found. */
typedef struct encconv_trace encconv_trace;

/**
 * Traces size bytes of garbled UTF-8 text back: which encodings were mixed up, also several times
 * over, and what the text was. Null when memory is short, or when text is null and size is not 0.
 * To be freed with encconv_trace_free().
 */
ENCCONV_API encconv_trace* encconv_trace_back(const char* text, size_t size);
/** How many origins there are; 0 when the text is likelier as it is. */
ENCCONV_API size_t encconv_origin_count(const encconv_trace* trace);
/**
 * Fills in the origin at an index below the count, the likeliest first; 0 for any other index or
 * when origin has no size, else 1.
 */
ENCCONV_API int encconv_origin_at(const encconv_trace* trace, size_t index, encconv_origin* origin);
/** Frees a trace. Null is ignored. */
ENCCONV_API void encconv_trace_free(encconv_trace* trace);

#ifdef __cplusplus
}
#endif

#endif /* ENCCONV_ENCCONV_C_H_ */

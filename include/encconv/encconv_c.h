/// @file
/// The C interface of encconv: the same conversions as the C++ interface, with explicit sizes.
///
/// Nothing here keeps global state but the mapping tables. Functions may be called from any thread;
/// a stream belongs to one thread at a time.
#ifndef ENCCONV_ENCCONV_C_H_
#define ENCCONV_ENCCONV_C_H_

#include <stddef.h>
#include <stdint.h>

#include "encconv/export.h"
#include "encconv/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/// How a conversion ended, or stands.
typedef enum encconv_status {
  ENCCONV_OK = 0,              ///< all of the input was converted or treated
  ENCCONV_STOPPED,             ///< by input that could not be converted, under "stop"
  ENCCONV_UNKNOWN_SOURCE,      ///< the source encoding is not known or cannot be read
  ENCCONV_UNKNOWN_TARGET,      ///< the target encoding is not known or cannot be written
  ENCCONV_UNKNOWN_ALTERNATE,   ///< the alternate encoding can be neither read nor written
  ENCCONV_INVALID_SUBSTITUTE,  ///< the substitute is not UTF-8, or the target cannot hold it
  ENCCONV_INVALID_TREATMENT,   ///< the treatment is not one
  ENCCONV_OUT_OF_MEMORY,       ///< the output may be incomplete
  ENCCONV_MISUSE,              ///< a stream was used after its end, or a pointer is null
  ENCCONV_OUTPUT_FULL          ///< there is too little room for the output
} encconv_status;

/// A piece of input that could not be converted.
typedef struct encconv_problem {
  uint64_t offset;          ///< where it begins, in bytes of the input
  uint64_t line;            ///< of the text, counted from 1
  uint32_t length;          ///< bytes
  int32_t code_point;       ///< of the character that the target lacks; -1 when malformed
  int malformed;            ///< 1: the input is no text of its encoding
  uint32_t byte_count;      ///< valid entries of bytes
  unsigned char bytes[16];  ///< the first bytes of the piece
} encconv_problem;

/// What is known of an encoding. The texts end with NUL, are the library's own and stay valid.
typedef struct encconv_code_page {
  int number;               ///< by which conversions name it: 1252, 932, 65001, ...
  const char* name;         ///< its preferred name
  const char* kind;         ///< "unicode", "single-byte", "double-byte" or "stateful"
  const char* description;  ///< a few words for people
  int can_read;             ///< 1: may be the source of a conversion
  int can_write;            ///< 1: may be the target
} encconv_code_page;

/// A conversion under way.
typedef struct encconv_stream encconv_stream;

/// The version of the library that runs, such as "1.0.0".
ENCCONV_API const char* encconv_version(void);
/// A few words for people about a status.
ENCCONV_API const char* encconv_describe(encconv_status status);

/// The number of the encoding that a name or a number written out means; 0 when it is not known.
ENCCONV_API int encconv_find_code_page(const char* name);
/// How many encodings there are.
ENCCONV_API size_t encconv_code_page_count(void);
/// Fills in the encoding at an index below the count, in ascending order of number; 0 for any other
/// index, else 1.
ENCCONV_API int encconv_code_page_at(size_t index, encconv_code_page* page);

/// Converts size bytes. treatment says what to do about text that cannot be converted, as behind
/// the tool's --on-error: "stop", "drop", "substitute", "substitute=TEXT", "substitute=0xHH...",
/// "hex", "alternate=CODEPAGE" or "raw"; null means "stop". *output becomes the converted bytes, to
/// be freed with encconv_free(), and *output_size their number; both are set whatever the status,
/// null and 0 when there is nothing. first_problem may be null; it is filled in when there was a
/// problem, else its length becomes 0.
ENCCONV_API encconv_status encconv_convert(int from, int to, const void* data, size_t size,
                                           const char* treatment, unsigned char** output,
                                           size_t* output_size, encconv_problem* first_problem);
/// Frees the output of encconv_convert(). Null is ignored.
ENCCONV_API void encconv_free(unsigned char* output);

/// Converts size bytes into the capacity bytes at output, which must not overlap them; treatment
/// and first_problem as above. *output_size becomes the number of bytes written; where the status
/// is not ENCCONV_OK they are a part of the output. Nothing is written behind the capacity;
/// ENCCONV_OUTPUT_FULL when it is too little.
ENCCONV_API encconv_status encconv_convert_into(int from, int to, const void* data, size_t size,
                                                const char* treatment, void* output,
                                                size_t capacity, size_t* output_size,
                                                encconv_problem* first_problem);
/// A capacity that is enough for size bytes of any text, unless "hex", "raw", "alternate" or a
/// substitute of several characters puts more in place of what cannot be converted. 0 for an
/// encoding that is not known.
ENCCONV_API size_t encconv_max_output_size(size_t size, int from, int to);

/// Begins a conversion piece by piece; treatment as above. Null, with *status saying why, when it
/// cannot be done; status may be null. To be closed with encconv_close().
ENCCONV_API encconv_stream* encconv_open(int from, int to, const char* treatment,
                                         encconv_status* status);
/// Begins another conversion, whatever became of the one before; its memory is used again, and the
/// output is emptied. Any status but ENCCONV_OK leaves a stream that only encconv_begin() and
/// encconv_close() can use.
ENCCONV_API encconv_status encconv_begin(encconv_stream* stream, int from, int to,
                                         const char* treatment);
/// Converts the next size bytes. Any status but ENCCONV_OK ends the stream; what was converted
/// until then is in the output.
ENCCONV_API encconv_status encconv_push(encconv_stream* stream, const void* data, size_t size);
/// Ends the stream: converts what waited for more, and writes what the target ends with.
ENCCONV_API encconv_status encconv_finish(encconv_stream* stream);
/// The output that has gathered since it was last cleared: its first byte, valid until the next
/// call for the stream, and in *size the number of bytes. Never null.
ENCCONV_API const unsigned char* encconv_output(const encconv_stream* stream, size_t* size);
/// Empties the output.
ENCCONV_API void encconv_clear_output(encconv_stream* stream);
/// How many pieces could not be converted so far.
ENCCONV_API uint64_t encconv_problem_count(const encconv_stream* stream);
/// Fills in the first of them; 0 when there is none, else 1.
ENCCONV_API int encconv_first_problem(const encconv_stream* stream, encconv_problem* problem);
/// Frees the stream, finished or not. Null is ignored.
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

#ifdef __cplusplus
}
#endif

#endif /* ENCCONV_ENCCONV_C_H_ */

// Where the members of the public structures stand. Programs have these places compiled into them:
// a member of a structure of C is added at its end, with a line here, and the others stay where
// they are; a structure of C++ changes only together with the first number of the version.
#include <cstddef>
#include <cstdint>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "encconv/records.h"

#define AT(structure, member, place) \
  static_assert(offsetof(structure, member) == (place), #structure "." #member " has moved")
#define SIZE(structure, bytes) \
  static_assert(sizeof(structure) == (bytes), #structure " has another size")

// As on all 64-bit systems but Windows, where long is shorter; no member is a long.
#if SIZE_MAX == UINT64_MAX
AT(encconv_options, struct_size, 0);
AT(encconv_options, on_error, 8);
AT(encconv_options, byte_order_mark, 16);
AT(encconv_options, pdf_passthrough, 20);
SIZE(encconv_options, 24);

AT(encconv_problem, struct_size, 0);
AT(encconv_problem, offset, 8);
AT(encconv_problem, line, 16);
AT(encconv_problem, length, 24);
AT(encconv_problem, code_point, 28);
AT(encconv_problem, malformed, 32);
AT(encconv_problem, byte_count, 36);
AT(encconv_problem, bytes, 40);
AT(encconv_problem, approximated, 56);
AT(encconv_problem, written, 60);
SIZE(encconv_problem, 112);

AT(encconv_result, struct_size, 0);
AT(encconv_result, first_problem, 8);
AT(encconv_result, problem_count, 16);
AT(encconv_result, first_approximation, 24);
AT(encconv_result, approximation_count, 32);
SIZE(encconv_result, 40);

AT(encconv_code_page, struct_size, 0);
AT(encconv_code_page, number, 8);
AT(encconv_code_page, name, 16);
AT(encconv_code_page, aliases, 24);
AT(encconv_code_page, kind, 32);
AT(encconv_code_page, description, 40);
AT(encconv_code_page, can_read, 48);
AT(encconv_code_page, can_write, 52);
SIZE(encconv_code_page, 56);

AT(encconv_candidate, struct_size, 0);
AT(encconv_candidate, code_page, 8);
AT(encconv_candidate, name, 16);
AT(encconv_candidate, confidence, 24);
AT(encconv_candidate, evidence, 32);
AT(encconv_candidate, reason, 40);
SIZE(encconv_candidate, 48);

AT(encconv_misreading, written, 0);
AT(encconv_misreading, read, 4);
SIZE(encconv_misreading, 8);

AT(encconv_origin, struct_size, 0);
AT(encconv_origin, text, 8);
AT(encconv_origin, text_size, 16);
AT(encconv_origin, misreadings, 24);
AT(encconv_origin, misreading_count, 32);
AT(encconv_origin, confidence, 40);
SIZE(encconv_origin, 48);

#ifdef __GLIBCXX__
SIZE(encconv::CodePage, 88);
SIZE(encconv::Encoding, 4);
SIZE(encconv::Options, 64);
SIZE(encconv::Problem, 104);
SIZE(encconv::Result, 280);
SIZE(encconv::Utf16Result, 280);
SIZE(encconv::IntoResult, 256);
SIZE(encconv::Candidate, 72);
SIZE(encconv::Detection, 64);
SIZE(encconv::DetectOptions, 1);
SIZE(encconv::Misreading, 8);
SIZE(encconv::Origin, 64);
SIZE(encconv::StreamConverter, 8);
SIZE(encconv::RecordProblem, 240);
SIZE(encconv::RecordFormat, 12);
SIZE(encconv::RecordReader, 8);
SIZE(encconv::RecordWriter, 80);
SIZE(encconv::RecordText, 8);
SIZE(encconv::Decimal, 48);
SIZE(encconv::Field, 72);
SIZE(encconv::FieldLayout, 24);
SIZE(encconv::FieldOptions, 88);
SIZE(encconv::FieldDecoder, 8);
SIZE(encconv::FieldEncoder, 8);
SIZE(encconv::TableWriter, 32);
SIZE(encconv::TableReader, 8);
#endif
#endif

// Values are compiled into programs as well.
static_assert(ENCCONV_OK == 0 && ENCCONV_STOPPED == 1 && ENCCONV_UNKNOWN_SOURCE == 2 &&
              ENCCONV_UNKNOWN_TARGET == 3 && ENCCONV_UNKNOWN_ALTERNATE == 4 &&
              ENCCONV_INVALID_SUBSTITUTE == 5 && ENCCONV_INVALID_ON_ERROR == 6 &&
              ENCCONV_OUT_OF_MEMORY == 7 && ENCCONV_MISUSE == 8 && ENCCONV_OUTPUT_FULL == 9);
static_assert(ENCCONV_DETECTED_EMPTY == 0 && ENCCONV_DETECTED_ASCII == 1 &&
              ENCCONV_DETECTED_TEXT == 2 && ENCCONV_DETECTED_BINARY == 3 &&
              ENCCONV_DETECTED_UNKNOWN == 4);
static_assert(ENCCONV_EVIDENCE_MARK == 0 && ENCCONV_EVIDENCE_DECLARATION == 1 &&
              ENCCONV_EVIDENCE_STRUCTURE == 2 && ENCCONV_EVIDENCE_STATISTICS == 3);
static_assert(int(encconv::OnError::stop) == 0 && int(encconv::OnError::drop) == 1 &&
              int(encconv::OnError::substitute) == 2 && int(encconv::OnError::hex) == 3 &&
              int(encconv::OnError::alternate) == 4 && int(encconv::OnError::raw) == 5);
static_assert(int(encconv::Status::ok) == 0 && int(encconv::Status::stopped) == 1 &&
              int(encconv::Status::unknown_source) == 2 &&
              int(encconv::Status::unknown_target) == 3 &&
              int(encconv::Status::unknown_alternate) == 4 &&
              int(encconv::Status::invalid_substitute) == 5 &&
              int(encconv::Status::out_of_memory) == 6 && int(encconv::Status::misuse) == 7 &&
              int(encconv::Status::output_full) == 8);

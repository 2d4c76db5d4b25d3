// Plan: a pair of encodings, resolved once for all threads: tables, kernels, and what is special
// about the pair. Every conversion begins with finding its plan.
#ifndef ENCODING_PLAN_H_
#define ENCODING_PLAN_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "encoding/codecs/encoding_row.h"
#include "encoding/kernels/kernels.h"
#include "encoding/tables/flat_tables.h"

namespace fast {

// What the pivot is on every host: UTF-16 little endian.
struct Decoding {
  EncodingForm form = EncodingForm::kUtf16;
  bool bigEndian = false;
  Decoder table;
};
struct Encoding {
  EncodingForm form = EncodingForm::kUtf16;
  bool bigEndian = false;
  Encoder table;
  const EncodingRow* tableRow = nullptr;  // of the table
  // Of streams, where the table leaves out what would be written as something else: the table with
  // all of it, and what is read for its codes. Else empty.
  Encoder approximating;
  Decoder reading;
};

struct Plan;

// Converts clean text by one kernel, straight from the source to the target; the contract is that
// of a kernel.
using Direct = KernelResult(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                            unsigned char* out, unsigned char* outEnd);

// Converts a text of at most kShortBytes as a whole and returns the end of the output, which has
// room for kWorstFactor times the length and kKernelSlack; null for a text that is not clean. Where
// there is a codec the text is all there is, and no piece of a longer one, and null is also for one
// that needs more room.
using ShortConvert = unsigned char*(const Plan& plan, const unsigned char* in, std::size_t length,
                                    unsigned char* out, unsigned char* outEnd);
inline constexpr unsigned int kShortBytes = 256;
inline constexpr unsigned int kWorstFactor = 4;

struct Plan {
  int from = 0;
  int to = 0;
  Reader reader = Reader::kEngine;
  const Plan* next = nullptr;  // of the same chain
  const EncodingRow* source = nullptr;
  const EncodingRow* target = nullptr;
  const Kernels* kernels = nullptr;

  // The two steps between which the pivot lies; where an encoding has a codec, those of the code
  // page behind it.
  Decoding decoding;
  Encoding encoding;
  bool isCopy = false;            // both steps are of one code page: text is only checked
  Direct* direct = nullptr;       // null where the pivot is needed
  ShortConvert* whole = nullptr;  // null where something has to be looked at first, but for marks
  bool isOrdinary = false;        // isOrdinaryPair()
  bool isPlain = false;           // isPlainPair()
  ByteMap byteMap;                // of two single-byte code pages

  bool hasLineFeed =
      false;  // some byte of the source, lineFeed, is U+000A; not for UTF-16 and UTF-32
  unsigned char lineFeed = 0;

  // The first two bytes, each with its lowest bit set, of texts that may begin with a byte order
  // mark; no bytes for encodings without marks.
  std::uint32_t markFirst = 0x100;
  std::uint32_t markSecond = 0x100;

  // Whether something has to be remembered from piece to piece.
  bool hasCodec() const {
    return source->form == EncodingForm::kCodec || target->form == EncodingForm::kCodec;
  }

  // Whether a text may begin with a byte order mark.
  bool mayBeginWithMark(const unsigned char* in, std::size_t length) const {
    return (in[0] | 1u) == markFirst && length > 1 && (in[1] | 1u) == markSecond;
  }
};

// The plans of all threads, for each reader in chains by pair: put in front, complete, and kept
// until forgetPlans().
inline constexpr unsigned int kPlanBits = 10;
extern std::atomic<const Plan*> g_plans[2][1u << kPlanBits];

inline std::atomic<const Plan*>& planChain(int from, int to, Reader reader) {
  const unsigned int pair = static_cast<unsigned int>(from) << 16 ^ static_cast<unsigned int>(to);
  return g_plans[static_cast<unsigned int>(reader)][pair * 0x9E3779B1u >> (32 - kPlanBits)];
}

// The plan of a pair that was seen before, or null. Any thread may call.
inline const Plan* findPlan(int from, int to, Reader reader = Reader::kEngine) {
  const Plan* plan = planChain(from, to, reader).load(std::memory_order_acquire);
  while (plan != nullptr && (plan->from != from || plan->to != to)) plan = plan->next;
  return plan;
}

// Whether a pair is one between UTF-8, UTF-16 little endian and tables; and one for which
// EncConvert does nothing but the two steps. No table is built for an answer.
bool isOrdinaryPair(int from, int to);
bool isPlainPair(int from, int to);

// The plan of any pair: found, or made, with the tables that are missing. Null when one of the two
// cannot be converted, or when memory is short. Any thread may call.
const Plan* openPlan(int from, int to, Reader reader = Reader::kEngine);

// Converts a short text as a stream does, that is clean and begins with no mark. Returns the end of
// the output, for which out has kShortOutput bytes; null, with nothing done, for any other text,
// and for a pair that no stream opened yet.
inline constexpr std::size_t kShortOutput = kWorstFactor * kShortBytes + kKernelSlack;
unsigned char* convertShort(int from, int to, const char* data, std::size_t length,
                            unsigned char* out);

// The most that length bytes may become, with a mark, and with default substitutes for what cannot
// be converted. 0 for encodings that are not known.
std::uint64_t maxOutputSize(std::size_t length, int from, int to);

// Releases all plans. Whoever releases tables or chooses other kernels calls this; it must not
// overlap any conversion.
void forgetPlans();

// The steps of a plan. The input of decode() may be anything; what stops it is what stops the
// kernels, and unpaired surrogates of UTF-16 are let through. A pair of surrogates is not cut.
KernelResult decode(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                    unsigned char* out, unsigned char* outEnd);
KernelResult encode(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                    unsigned char* out, unsigned char* outEnd);

}  // namespace fast

#endif  // ENCODING_PLAN_H_

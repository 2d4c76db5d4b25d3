// Repertoire: which characters a target can hold, whether it has a table, a codec, or both.
#ifndef ENCODING_REPERTOIRE_H_
#define ENCODING_REPERTOIRE_H_

#include <cstdint>

#include "encoding/codecs/codec.h"
#include "encoding/plan.h"
#include "support/data_buffer.h"

namespace fast {

// Of the target of one plan for streams. An object is cheap to open again; one thread uses it at a
// time.
class Repertoire {
 public:
  // Of a character in the text that the target's codec takes, or in the target's own.
  static constexpr std::size_t kMaxBytes = kKernelSlack + 16;

  // False when memory is short.
  bool open(const Plan& plan);

  const EncodingRow& target() const { return *m_plan->target; }
  const Encoding& encoding() const { return m_plan->encoding; }
  // Null where the target has none.
  const Codec* codec() const { return m_codec; }

  // Whether a character but U+0000 has a place; it is no surrogate.
  bool has(std::uint32_t scalar);
  // Whether it has one in the table, which is all that encodings without a codec ask for.
  bool isInTable(std::uint32_t scalar) const {
    if (m_plan->encoding.tableRow == nullptr) return true;
    return scalar <= 0xFFFF && codeOf(m_plan->encoding.table, scalar) != 0;
  }
  // Writes a character that is in the table; returns how many bytes that was.
  std::uint32_t write(std::uint32_t scalar, unsigned char (&bytes)[kMaxBytes]) const;

  // True once memory was short: a character may have seemed to be lacking.
  bool hasFailed() const { return m_scratch.hasFailed(); }

 private:
  const Plan* m_plan = nullptr;  // by which text of the target, or for its codec, is written
  const Codec* m_codec = nullptr;
  DataBuffer m_scratch;
};

}  // namespace fast

#endif  // ENCODING_REPERTOIRE_H_

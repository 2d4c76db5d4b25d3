#include "encoding/clean_conversion.h"

#include <algorithm>
#include <cstdint>

#include "encoding/error_action.h"
#include "encoding/pump.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace fast {
namespace {

bool g_enabled = true;

// Beyond this many bytes of output the reference converters, which append what fits to the last
// byte, finish.
constexpr unsigned int kNearlyFull = 0xFFFFFFFFu - 64 * 1024;

// Where the UTF-16 between the steps may be longer than a buffer, the reference converters, which
// hold all of it, find out; and what a codec makes of a text may be twice as long.
constexpr unsigned int kMaxLength = 0x7FFFFFFD;
constexpr unsigned int kMaxCodecLength = 0x3FFFFFFF;

std::size_t bytesBetween(const unsigned char* begin, const unsigned char* end) {
  return static_cast<std::size_t>(end - begin);
}

// Adds what lies before a stretch to the offsets that the reference converters report of it.
class ShiftedObserver : public ConversionObserver {
 public:
  ShiftedObserver(ConversionObserver& target, std::size_t decoded, std::size_t encoded)
      : m_target(target), m_decoded(decoded), m_encoded(encoded) {}
  void onUnconvertible(const UnconvertibleInput& piece) override {
    UnconvertibleInput shifted = piece;
    shifted.offset +=
        static_cast<unsigned int>(piece.step == ConversionStep::kDecode ? m_decoded : m_encoded);
    m_target.onUnconvertible(shifted);
  }

 private:
  ConversionObserver& m_target;
  std::size_t m_decoded, m_encoded;
};

// The unit that an encoder reads as an escape when it comes out of a pivot.
bool isEscapeUnit(const unsigned char* unit) { return unit[0] == 0xFD && unit[1] == 0xEF; }

// One conversion between two ordinary encodings.
class CleanConversion {
 public:
  CleanConversion(const Conversion& conversion, const Plan& plan)
      : m_c(conversion),
        m_converter(conversion.converter),
        m_plan(plan),
        m_begin(conversion.data),
        m_end(conversion.data + conversion.length),
        m_output(conversion.out),
        m_isDecoding(isPivot(*plan.target)),
        m_isEncoding(isPivot(*plan.source)) {}

  bool run() {
    m_c.setPivotFlags(false, false);
    m_pump.start(m_plan, m_block, m_begin, m_end);
    const bool ok = runPump();
    if (hasTwoSteps()) m_c.setPivotFlags(false, false);
    return ok;
  }

 private:
  using Stop = Pump::Stop;

  static bool isPivot(const EncodingRow& row) { return row.form == EncodingForm::kUtf16; }
  bool hasTwoSteps() const { return !m_isDecoding && !m_isEncoding; }
  bool isToUtf8() const { return m_plan.encoding.form == EncodingForm::kUtf8; }
  DataBuffer& out() { return m_output.content(); }

  bool runPump() {
    while (true) {
      const Stop stop = m_pump.run(m_output);
      if (stop == Stop::kEnd) return m_result;
      if (stop == Stop::kFull) return !out().hasFailed() && finish();
      const bool isLastByte = bytesBetween(m_pump.unit(), m_pump.unitEnd()) == 1;
      if (m_isEncoding && isLastByte) return finishOddLength() && m_result;
      const bool isEscape =
          stop == Stop::kUnmappable && hasTwoSteps() && !isToUtf8() && isEscapeUnit(m_pump.unit());
      if (out().getSize() > kNearlyFull || !mayResume() || isEscape) return finish();
      if (stop == Stop::kUnmappable) {
        treatUnmappable();
      } else if (!treatMalformed()) {
        return false;
      }
    }
  }

  // Whether the pump may go on behind a piece that the error action treated. Not with an action
  // that converts again, which changes the flags that later pieces see, nor where what is written
  // into the pivot would be read together with its neighbours; not with an observer, who is told of
  // the pieces step by step; nor where pieces stand so close, for so long, that stopping for each
  // takes longer than the reference converters do. To be asked once a piece.
  bool mayResume() {
    constexpr std::size_t kMany = 1024;
    constexpr std::size_t kClose = 8;  // bytes of the source
    const unsigned char* const at = m_isEncoding ? m_pump.unit() : m_pump.in();
    if (++m_stops >= kMany && bytesBetween(m_begin, at) < kClose * m_stops) return false;
    const int action = m_converter.m_errorAction;
    if (m_converter.m_observer != nullptr) return false;
    if (action == kSubstitute) return !hasTwoSteps() || isHarmless();
    return action == 0 || (action >= 3 && action <= 5);
  }

  // Whether the substitution bytes with their escape are whole units that mean nothing to the
  // second step beyond their own end.
  bool isHarmless() const {
    const int count = m_converter.m_defBytesLen;
    if (count == 0) return true;
    const unsigned char* bytes = m_converter.m_defBytes;
    return count % 2 == 1 && std::none_of(bytes, bytes + count, [](unsigned char byte) {
             return byte == 0xFD || byte == 0xEF || (byte >= 0xD8 && byte <= 0xDF);
           });
  }

  // ---- The reference converters, on a part of the text. ----

  bool decodeByReference(const unsigned char* data, std::size_t length, DataBuffer& to) {
    const auto count = static_cast<unsigned int>(length);
    return m_plan.decoding.form == EncodingForm::kUtf8
               ? m_converter.cv_utf8_to_utf16(data, count, to, m_c.log)
               : m_converter.convertToUnicodeHC(m_c.from, data, count, to, m_c.log);
  }

  bool encodeByReference(const unsigned char* data, std::size_t length) {
    const auto count = static_cast<unsigned int>(length);
    return isToUtf8() ? m_converter.cv_utf16_to_utf8(data, count, out(), m_c.log)
                      : m_converter.convertFromUnicodeHC(m_c.to, data, count, out(), m_c.log);
  }

  // Everything that is left.
  bool finish() {
    const unsigned char* const in = m_pump.in();
    const unsigned char* const unit = m_pump.unit();
    const auto decoded = bytesBetween(m_begin, in);
    if (m_isEncoding) {
      const auto offset = bytesBetween(m_begin, unit);
      return observed(offset, offset,
                      [&] { return encodeByReference(unit, bytesBetween(unit, m_end)); }) &&
             m_result;
    }
    if (m_isDecoding) {
      return observed(decoded, decoded,
                      [&] { return decodeByReference(in, bytesBetween(in, m_end), out()); }) &&
             m_result;
    }
    const std::size_t pivot = m_pump.pivotOffset();
    ScratchBuffer units(out());
    units.append(unit, static_cast<unsigned int>(bytesBetween(unit, m_pump.unitEnd())));
    m_c.setPivotFlags(true, false);
    return observed(decoded, pivot, [&] {
      if (!decodeByReference(in, bytesBetween(in, m_end), units) || units.hasFailed()) return false;
      m_c.setPivotFlags(false, true);
      if (pivot != 0 && units.getSize() == 1) return finishOddLength() && m_result;
      return encodeByReference(units.getData2(), units.getSize()) && m_result;
    });
  }

  // What the reference converters make of an odd length differs between targets: to UTF-8 it is an
  // error; a table's encoder ignores the last byte, unless it is all.
  bool finishOddLength() const {
    return !isToUtf8() && (hasTwoSteps() || m_pump.unit() != m_begin);
  }

  template <class Rest>
  bool observed(std::size_t decoded, std::size_t encoded, Rest rest) {
    ConversionObserver* const observer = m_converter.m_observer;
    if (observer == nullptr) return rest();
    ShiftedObserver shifted(*observer, decoded, encoded);
    m_converter.m_observer = &shifted;
    const bool ok = rest();
    m_converter.m_observer = observer;
    return ok;
  }

  // ---- One piece. ----

  // What the decoder stopped at. False when memory is short.
  bool treatMalformed() {
    if (m_isDecoding) return decodePiece(out());
    m_piece.clear();
    m_c.setPivotFlags(true, false);
    if (!decodePiece(m_piece)) return false;
    m_c.setPivotFlags(false, true);
    // Mostly each piece becomes the same substitution, which the second step need not see every
    // time.
    const unsigned int size = m_piece.getSize();
    if (m_knownPiece.getSize() == size &&
        std::equal(m_piece.getData2(), m_piece.getData2() + size, m_knownPiece.getData2())) {
      out().append(m_encodedPiece);
      return true;
    }
    const unsigned int sizeBefore = out().getSize();
    if (!encodeByReference(m_piece.getData2(), size)) m_result = false;
    m_knownPiece.clear();
    m_encodedPiece.clear();
    m_encodedPiece.append(out().getData2() + sizeBefore, out().getSize() - sizeBefore);
    m_knownPiece.append(m_piece);
    return true;
  }

  // The reference decoder's step.
  bool decodePiece(DataBuffer& to) {
    const unsigned char* const in = m_pump.in();
    unsigned int used = 0;
    if (m_plan.decoding.form != EncodingForm::kUtf8) {
      const bool isSingle =
          m_plan.decoding.form == EncodingForm::kSingleByte || bytesBetween(in, m_end) == 1;
      used = m_converter.handleUndecodable(in, isSingle, to, m_c.log);
    } else if (_zvUtf::utf16FromUtf8(in, static_cast<unsigned int>(bytesBetween(in, m_end)),
                                     used) != 0) {
      m_converter.cv_utf8_to_utf16(in, used, to, m_c.log);
    } else {
      m_converter.m_foundErrors = true;
      if (m_converter.m_errorAction != 0) {
        m_converter.handleErrorFromUtf8(in, static_cast<int>(used), to, m_c.log);
      }
    }
    m_pump.skip(used);
    return !to.hasFailed();
  }

  // What the encoder stopped at: the reference encoder's step. What the tables of the kernels lack,
  // those of the reference lack too, but for the unit of an escape.
  void treatUnmappable() {
    if (hasTwoSteps()) m_c.setPivotFlags(false, true);
    const unsigned char* const unit = m_pump.unit();
    const std::size_t count = unitsAt(unit, m_pump.unitEnd());
    if (isToUtf8() && (unit[1] & 0xF8) == 0xD8) {
      for (std::size_t i = 0; i < count; i += 2) appendThreeByteForm(unit + i);
    } else if (isToUtf8() || isEscapeUnit(unit)) {
      if (!encodeByReference(unit, count)) m_result = false;
    } else {
      m_result = false;
      m_converter.m_foundErrors = true;
      m_converter.handleUnmappableUnit(unit, out(), m_c.log);
    }
    m_pump.skipUnits(count);
  }

  // The bytes of UTF-16 that the second step reads as one: a high surrogate takes the next unit
  // with it on the way to UTF-8, and zero units, which vanish there, go in one.
  std::size_t unitsAt(const unsigned char* unit, const unsigned char* unitEnd) const {
    const std::size_t left = bytesBetween(unit, unitEnd);
    if (!isToUtf8() || left < 4) return 2;
    if ((unit[1] & 0xFC) == 0xD8) return 4;
    std::size_t zeros = 0;
    while (zeros + 1 < left && (unit[zeros] | unit[zeros + 1]) == 0) zeros += 2;
    return std::max<std::size_t>(zeros, 2);
  }

  // What the reference encoder makes of surrogates that are no pair.
  void appendThreeByteForm(const unsigned char* unit) {
    const unsigned char form[3] = {
        static_cast<unsigned char>(0xE0 | unit[1] >> 4),
        static_cast<unsigned char>(0x80 | (unit[1] & 0x0F) << 2 | unit[0] >> 6),
        static_cast<unsigned char>(0x80 | (unit[0] & 0x3F))};
    out().append(form, 3);
  }

  const Conversion& m_c;
  EncodingConvert& m_converter;
  const Plan& m_plan;
  const unsigned char* const m_begin;
  const unsigned char* const m_end;
  DataBufferOutput m_output;
  const bool m_isDecoding, m_isEncoding;  // the one step is
  ScratchBuffer m_piece{m_c.out};         // what the first step made of the piece at hand
  // An earlier one that the second step has seen, and what that made of it.
  ScratchBuffer m_knownPiece{m_c.out}, m_encodedPiece{m_c.out};
  std::size_t m_stops = 0;  // of the pump
  bool m_result = true;
  Pump m_pump;
  PumpBlock m_block;
};

// Whether the plan of a pair may be followed by this converter: the four-byte forms of pairs may be
// switched off, and the decompositions of Vietnamese belong to the destination of the whole
// conversion, not to the table.
bool isFor(const Plan& plan, const EncodingConvert& converter) {
  if (plan.target->form == EncodingForm::kUtf8) {
    return g_allow_4byte_utf8 && converter.m_allow4ByteUtf8;
  }
  const EncodingRow* const destination = findEncodingRow(converter.m_toCodePage);
  const bool decomposes = destination != nullptr && destination->decomposesVietnamese;
  return !hasTable(*plan.target) || plan.target->decomposesVietnamese == decomposes;
}

}  // namespace

bool isOpen() { return g_enabled && !zvIsBigEndian(); }

bool isOpen(const LogBase& log) {
  return isOpen() && log.m_verboseLogging == 0 && !log.m_wantsContexts;
}

void setFastPathForTesting(bool enabled) { g_enabled = enabled; }

bool convertByPlan(const Conversion& conversion, const Plan& plan) {
  return CleanConversion(conversion, plan).run();
}

Outcome convertClean(const Conversion& c) {
  if (!isOpen(c.log) || c.from == c.to) return Outcome::kNotTaken;
  if (c.length > kMaxLength && c.from != kUtf16Le) return Outcome::kNotTaken;
  if (!isOrdinaryPair(c.from, c.to)) return Outcome::kNotTaken;
  const Plan* const plan = openPlan(c.from, c.to);
  if (plan == nullptr || !isFor(*plan, c.converter)) return Outcome::kNotTaken;
  return convertByPlan(c, *plan) ? Outcome::kDone : Outcome::kFailed;
}

bool convertShort(const Conversion& c, const Plan& plan) {
  if (c.out.getSize() <= kNearlyFull) {
    unsigned char* const tail = c.out.reserveTail(kWorstFactor * c.length + kKernelSlack);
    if (tail == nullptr) return false;
    const unsigned char* const end =
        plan.whole(plan, c.data, c.length, tail, tail + c.out.getTailRoom());
    if (end != nullptr) {
      c.out.commitTail(static_cast<unsigned int>(end - tail));
      return !c.out.hasFailed();
    }
  }
  return convertByPlan(c, plan) && !c.out.hasFailed();
}

// ---- Beginnings. ----

namespace {

constexpr unsigned int kBlockBytes = 16384;  // of input, for codecs

// The first bytes of a text in a codec's code page decide whether it passes for PDF.
constexpr unsigned int kPdfBytes = 7;

bool isUnicode(const EncodingRow& row) {
  return row.form == EncodingForm::kUtf8 || row.form == EncodingForm::kUtf16 ||
         row.form == EncodingForm::kUtf32;
}

// On the way to UTF-32 everything but UTF-8 and UTF-32 itself passes through a UTF-8 that has lost
// its zeros.
bool losesZeros(const Plan& plan) {
  return plan.encoding.form == EncodingForm::kUtf32 && plan.decoding.form != EncodingForm::kUtf8 &&
         plan.decoding.form != EncodingForm::kUtf32;
}

bool hasZeroUnit(const unsigned char* in, const unsigned char* inEnd) {
  unsigned int zeros = 0;
  for (; in != inEnd; in += 2) zeros += (in[0] | in[1]) == 0 ? 1u : 0u;
  return zeros != 0;
}

// Takes the first count bytes away.
void dropFront(DataBuffer& buffer, unsigned int count) {
  if (count == 0) return;
  DataBuffer kept;
  kept.append(buffer.getData2() + count, buffer.getSize() - count);
  buffer.clear();
  buffer.append(kept);
  if (kept.hasFailed()) buffer.latchFailure();
}

// Converts whole blocks, and returns how much of the source they were.
std::size_t convertBlocks(const Conversion& c, const Plan& plan) {
  Pump pump;
  PumpBlock block;
  pump.start(plan, block, c.data, c.data + c.length, true);
  unsigned int size = c.out.getSize();
  const unsigned char* reached = c.data;
  while (true) {
    Pump::Stop stop;
    {
      DataBufferOutput output(c.out);
      stop = pump.run(output);
    }
    const bool isExact = plan.direct != nullptr;  // stops at a place of the source
    if (stop == Pump::Stop::kFull || (stop == Pump::Stop::kUnmappable && !isExact)) break;
    if (losesZeros(plan) && stop == Pump::Stop::kBlock &&
        hasZeroUnit(pump.blockBegin(), pump.unitEnd())) {
      break;
    }
    reached = stop == Pump::Stop::kUnmappable ? pump.sourceOf(pump.unit()) : pump.in();
    size = c.out.getSize();
    if (stop != Pump::Stop::kBlock) break;
  }
  c.out.truncate(size);
  return bytesBetween(c.data, reached);
}

}  // namespace

unsigned int convertBeginning(const Conversion& c) {
  // The observer is told of the pieces step by step, with the offsets of whole texts.
  if (!isOpen(c.log) || c.converter.m_observer != nullptr || c.from == c.to) return 0;
  if (c.length > kMaxLength) return 0;
  const EncodingRow* const source = findEncodingRow(c.from);
  const EncodingRow* const target = findEncodingRow(c.to);
  const auto isServed = [](const EncodingRow* row) {
    return row != nullptr && row->inEngine && (isUnicode(*row) || hasTable(*row));
  };
  if (!isServed(source) || !isServed(target)) return 0;
  // A UTF-16 of odd length makes the whole conversion fail, with nothing written.
  if (c.from == kUtf16Le && c.length % 2 != 0) return 0;
  if (beginsWithMark(*source, c.data, c.length)) return 0;
  const Plan* const plan = openPlan(c.from, c.to);
  if (plan == nullptr || !isFor(*plan, c.converter)) return 0;
  const unsigned int sizeBefore = c.out.getSize();
  const std::size_t done = convertBlocks(c, *plan);
  // A byte order mark at the beginning of what is left would be read as one, and not as text.
  if (done != c.length && beginsWithMark(*source, c.data + done, c.length - done)) {
    c.out.truncate(sizeBefore);
    return 0;
  }
  return static_cast<unsigned int>(done);
}

unsigned int readBeginning(const Conversion& c, const Codec& codec, CodecState& state,
                           DataBuffer& rest, bool& isBegun) {
  isBegun = false;
  if (c.to == codec.codePage || !isOpen(c.log) || c.length > kMaxCodecLength) return 0;
  const bool isUtf16 = codec.codePage == kUtf16Le;
  if (isUtf16 && ::isUtf16(c.to)) return 0;
  unsigned int used = 0;
  while (used != c.length && !c.out.hasFailed()) {
    const unsigned int count = std::min(c.length - used, kBlockBytes);
    const unsigned int read =
        codec.read(c.data + used, count, used + count == c.length, state, rest, nullptr);
    used += read;
    if (rest.hasFailed()) break;
    if (!isUtf16 && !isBegun) {
      if (used != c.length && rest.getSize() < kPdfBytes) continue;
      if (rest.getSize() != 0 && rest.getData2()[0] == '%') break;
    }
    const unsigned int done = convertBeginning(
        {c.converter, codec.codePage, c.to, rest.getData2(), rest.getSize(), c.out, c.log});
    isBegun = isBegun || done != 0;
    dropFront(rest, done);
    // Of UTF-16 the first half of a pair waits for the second.
    if (rest.getSize() > (isUtf16 ? 2u : 0u) || (isUtf16 && done == 0 && read != 0)) break;
  }
  return used;
}

unsigned int writeBeginning(const Conversion& c, const Codec& codec, CodecState& state,
                            DataBuffer& rest) {
  const EncodingRow* const source = findEncodingRow(c.from);
  if (source == nullptr || !isOpen(c.log) || c.length > kMaxCodecLength) return 0;
  if (source->form == EncodingForm::kUtf16 && c.length % 2 != 0) return 0;
  const unsigned int sizeBefore = c.out.getSize();
  unsigned int used = 0;
  while (used != c.length && !rest.hasFailed() && !c.out.hasFailed()) {
    const unsigned int count = std::min(c.length - used, kBlockBytes);
    const unsigned int done =
        convertBeginning({c.converter, c.from, codec.codePage, c.data + used, count, rest, c.log});
    if (done == 0) break;
    used += done;
    dropFront(rest, codec.write(rest.getData2(), rest.getSize(), false, state, c.out, nullptr));
  }
  // Converting again may leave half a unit, which the reference converters take for a failure when
  // it is all; and they could take what is left for a byte order mark.
  const bool isWholeNeeded = c.converter.m_errorAction == kConvertAlternate;
  const bool maybeMark =
      used != c.length && isUnicode(*source) && (c.data[used] == 0 || c.data[used] >= 0xEF);
  if (used != 0 && used != c.length && (isWholeNeeded || maybeMark)) {
    c.out.truncate(sizeBefore);
    rest.clear();
    state = {};
    return 0;
  }
  return used;
}

}  // namespace fast

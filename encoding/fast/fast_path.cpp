// Clean stretches of a conversion go through the kernels, a block at a time; each piece of input
// that a kernel stops at is given to the plain loops, so that whatever is special about it is said
// in one place only. The blocks of UTF-16 between two legs stay in the first-level cache.
#include "encoding/fast/fast_path.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "encoding/error_action.h"
#include "encoding/fast/conversion_side.h"
#include "encoding/kernels/cpu_dispatch.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
#include "support/zv_utf.h"

namespace fast {
namespace {

constexpr unsigned int kBlockBytes = 8192;  // of UTF-16
constexpr std::uint64_t kMaxLength = 0xFFFFFFFFu;
constexpr std::size_t kByteMapPays = 2048;  // bytes of input

// Adds what lies before a stretch to the offsets that the legs report of it.
class ShiftedObserver : public ConversionObserver {
 public:
  ShiftedObserver(ConversionObserver& target, unsigned int decoded, unsigned int encoded)
      : m_target(target), m_decoded(decoded), m_encoded(encoded) {}
  void onUnconvertible(const UnconvertibleInput& piece) override {
    UnconvertibleInput shifted = piece;
    shifted.offset += piece.leg == ConversionLeg::kDecode ? m_decoded : m_encoded;
    m_target.onUnconvertible(shifted);
  }

 private:
  ConversionObserver& m_target;
  unsigned int m_decoded, m_encoded;
};

class FastConversion {
 public:
  FastConversion(EncodingConvert& converter, int from, int to, const Side& source,
                 const Side& target, const unsigned char* data, unsigned int length,
                 DataBuffer& out, LogBase& log)
      : m_converter(converter),
        m_from(from),
        m_to(to),
        m_source(source),
        m_target(target),
        m_begin(data),
        m_in(data),
        m_end(data + length),
        m_out(out),
        m_log(log),
        m_kernels(kernels()) {}

  bool run() {
    setPivotFlags(false, false);
    if (m_source.kind == Side::kUtf16 || m_target.kind == Side::kUtf16) return runOneLeg();
    const bool ok = runTwoLegs();
    setPivotFlags(false, false);
    return ok;
  }

 private:
  // ---- Kernels ----

  KernelResult decode(const unsigned char* in, unsigned char* out, unsigned char* outEnd) const {
    return fast::decode(m_kernels, m_source, in, m_end, out, outEnd);
  }

  KernelResult encode(const unsigned char* in, const unsigned char* inEnd, unsigned char* out,
                      unsigned char* outEnd) const {
    return fast::encode(m_kernels, m_target, in, inEnd, out, outEnd);
  }

  // ---- Output ----

  // Writing space for at least count bytes and the kernels' slack; null when memory is short.
  unsigned char* room(std::uint64_t count) {
    const std::uint64_t left = kMaxLength - m_out.getSize();
    return m_out.reserveTail(static_cast<unsigned int>(std::min(count + kKernelSlack, left)));
  }

  // The first guess at the whole output's length, from its ratio so far or from the encodings'.
  std::uint64_t estimate() const {
    const auto left = static_cast<std::uint64_t>(m_end - m_in);
    const auto done = static_cast<std::uint64_t>(m_in - m_begin);
    const std::uint64_t written = m_out.getSize() - m_firstSize;
    if (done > 1024) return left * written / done + left / 16 + 256;
    if (m_target.kind == Side::kUtf16) return 2 * left;
    return m_source.kind == Side::kUtf16 ? left / 2 + left / 4 : left + left / 8;
  }

  // Runs a kernel until it stops at a piece of input that it does not treat, or at the end. False
  // when memory is short.
  template <class RunKernel>
  bool runKernel(RunKernel kernel) {
    while (m_in != m_end) {
      unsigned char* tail =
          room(m_out.getTailRoom() < kKernelSlack || m_in == m_begin ? estimate() : 0);
      if (tail == nullptr) return false;
      unsigned char* const tailEnd = tail + m_out.getTailRoom();
      const KernelResult r = kernel(m_in, tail, tailEnd);
      m_in = r.in;
      m_out.commitTail(static_cast<unsigned int>(r.out - tail));
      if (tailEnd - r.out >= static_cast<std::ptrdiff_t>(kKernelSlack) || isNearlyFull()) break;
    }
    return true;
  }

  bool isNearlyFull() const { return m_out.getSize() > kNearlyFull; }

  // ---- The plain legs, on a part of the input ----

  bool plainDecode(const unsigned char* data, std::size_t length, DataBuffer& out) {
    const auto count = static_cast<unsigned int>(length);
    return m_source.kind == Side::kUtf8
               ? m_converter.cv_utf8_to_utf16(data, count, out, m_log)
               : m_converter.convertToUnicodeHC(m_from, data, count, out, m_log);
  }

  bool plainEncode(const unsigned char* data, std::size_t length) {
    const auto count = static_cast<unsigned int>(length);
    return m_target.kind == Side::kUtf8
               ? m_converter.cv_utf16_to_utf8(data, count, m_out, m_log)
               : m_converter.convertFromUnicodeHC(m_to, data, count, m_out, m_log);
  }

  // Whether the kernels may go on behind a piece that the error action treated. Not with an action
  // that converts again, which changes the flags that later pieces see, nor where what is written
  // into the pivot would be read together with its neighbours; and not with an observer, who is
  // told of the pieces leg by leg; nor where pieces stand so close, for so long, that stopping for
  // each takes longer than the plain legs do. To be asked once a piece.
  bool mayResume(bool isPivot) {
    constexpr std::ptrdiff_t kMany = 1024;
    constexpr std::ptrdiff_t kClose = 8;  // bytes of the source
    ++m_stops;
    if (m_stops >= kMany && m_in - m_begin < kClose * m_stops) return false;
    const int action = m_converter.m_errorAction;
    if (m_converter.m_observer != nullptr) return false;
    if (action == kSubstitute) return !isPivot || isHarmless();
    return action == 0 || (action >= 3 && action <= 5);
  }

  // Whether the substitution bytes with their escape are whole units that mean nothing to the
  // second leg beyond their own end.
  bool isHarmless() const {
    const int count = m_converter.m_defBytesLen;
    if (count == 0) return true;
    const unsigned char* bytes = m_converter.m_defBytes;
    return count % 2 == 1 && std::none_of(bytes, bytes + count, [](unsigned char byte) {
             return byte == 0xFD || byte == 0xEF || (byte >= 0xD8 && byte <= 0xDF);
           });
  }

  // The plain decoder's step at m_in, where a kernel stopped.
  bool decodePiece(DataBuffer& out) {
    if (m_source.kind == Side::kUtf8) {
      unsigned int used = 0;
      if (_zvUtf::utf16FromUtf8(m_in, static_cast<unsigned int>(m_end - m_in), used) != 0) {
        m_converter.cv_utf8_to_utf16(m_in, used, out, m_log);
      } else {
        m_converter.m_foundErrors = true;
        if (m_converter.m_errorAction != 0) {
          m_converter.handleErrorFromUtf8(m_in, static_cast<int>(used), out, m_log);
        }
      }
      m_in += used;
    } else {
      const bool isSingle = m_source.kind == Side::kSingleByte || m_end - m_in == 1;
      m_in += m_converter.handleUndecodable(m_in, isSingle, out, m_log);
    }
    return !out.hasFailed();
  }

  // The bytes of UTF-16 at in that the second leg reads as one: a high surrogate takes the next
  // unit with it on the way to UTF-8, and zero units, which vanish there, go in one.
  std::size_t unitsAt(const unsigned char* in, const unsigned char* inEnd) const {
    const auto left = static_cast<std::size_t>(inEnd - in);
    if (m_target.kind != Side::kUtf8 || left < 4) return std::min<std::size_t>(left, 2);
    if ((in[1] & 0xFC) == 0xD8) return 4;
    std::size_t zeros = 0;
    while (zeros + 1 < left && (in[zeros] | in[zeros + 1]) == 0) zeros += 2;
    return std::max<std::size_t>(zeros, 2);
  }

  // The plain encoder's step at in, where a kernel stopped: the bytes that it takes. What the
  // tables of the kernels lack, those of the encoder lack too, but for the unit of an escape.
  std::size_t encodePiece(const unsigned char* in, const unsigned char* inEnd) {
    const std::size_t count = unitsAt(in, inEnd);
    if (m_target.kind == Side::kUtf8 && count >= 2 && (in[1] & 0xF8) == 0xD8) {
      for (std::size_t i = 0; i < count; i += 2) appendThreeByteForm(in + i);
    } else if (m_target.kind == Side::kUtf8 || count < 2 || isMark(in)) {
      if (!plainEncode(in, count)) m_result = false;
    } else {
      m_result = false;
      m_converter.m_foundErrors = true;
      m_converter.handleUnmappableUnit(in, m_out, m_log);
    }
    return count;
  }

  // What the plain encoder makes of surrogates that are no pair.
  void appendThreeByteForm(const unsigned char* unit) {
    const unsigned char form[3] = {
        static_cast<unsigned char>(0xE0 | unit[1] >> 4),
        static_cast<unsigned char>(0x80 | (unit[1] & 0x0F) << 2 | unit[0] >> 6),
        static_cast<unsigned char>(0x80 | (unit[0] & 0x3F))};
    m_out.append(form, 3);
  }

  template <class Rest>
  bool observed(std::size_t decoded, std::size_t encoded, Rest rest) {
    ConversionObserver* const observer = m_converter.m_observer;
    if (observer == nullptr) return rest();
    ShiftedObserver shifted(*observer, static_cast<unsigned int>(decoded),
                            static_cast<unsigned int>(encoded));
    m_converter.m_observer = &shifted;
    const bool ok = rest();
    m_converter.m_observer = observer;
    return ok;
  }

  // ---- One leg: the source or the target is UTF-16 ----

  bool runOneLeg() {
    const bool decoding = m_target.kind == Side::kUtf16;
    while (true) {
      const bool hasMemory =
          runKernel([&](const unsigned char* in, unsigned char* out, unsigned char* outEnd) {
            return decoding ? decode(in, out, outEnd) : encode(in, m_end, out, outEnd);
          });
      if (!hasMemory) return false;
      if (m_in == m_end) return m_result;
      const auto done = static_cast<std::size_t>(m_in - m_begin);
      const auto left = static_cast<std::size_t>(m_end - m_in);
      if (!decoding && left == 1) return finishOddLength() && m_result;
      if (isNearlyFull() || !mayResume(false)) {
        return observed(done, done,
                        [&] {
                          return decoding ? plainDecode(m_in, left, m_out)
                                          : plainEncode(m_in, left);
                        }) &&
               m_result;
      }
      if (decoding) {
        if (!decodePiece(m_out)) return false;
      } else {
        m_in += encodePiece(m_in, m_end);
      }
    }
  }

  // What the plain loops make of an odd length differs between targets: to UTF-8 it is an error; a
  // table's encoder ignores the last byte, unless it is all.
  bool finishOddLength() const { return m_target.kind != Side::kUtf8 && m_in != m_begin; }

  // ---- Two legs ----

  bool runTwoLegs() {
    if (m_source.kind == Side::kSingleByte) {
      if (m_target.kind == Side::kUtf8) {
        const SingleByteDecoder& table = *m_source.decoder.singleByte;
        return runDirect([&](const unsigned char* in, unsigned char* out, unsigned char* outEnd) {
          return m_kernels.singleByteToUtf8(table, in, m_end, out, outEnd);
        });
      }
      if (m_target.kind == Side::kSingleByte &&
          m_end - m_in >= static_cast<std::ptrdiff_t>(kByteMapPays)) {
        ByteMap map;
        fillByteMap(map);
        return runDirect([&](const unsigned char* in, unsigned char* out, unsigned char* outEnd) {
          return m_kernels.mapBytes(map, in, m_end, out, outEnd);
        });
      }
    }
    return runBlocks();
  }

  void fillByteMap(ByteMap& map) const {
    for (int byte = 0; byte < 256; ++byte) {
      const std::uint16_t unit = m_source.decoder.singleByte->units[byte];
      // The unit of an escape is in no encoder, and an unmapped byte not in a byte map.
      map.bytes[byte] = unit != 0 ? m_target.encoder.singleByte->bytes[unit] : 0;
    }
  }

  // Both legs in one kernel. The pivot has one unit for each byte of the source.
  template <class RunKernel>
  bool runDirect(RunKernel kernel) {
    while (true) {
      if (!runKernel(kernel)) return false;
      if (m_in == m_end) return m_result;
      const std::size_t pivot = 2 * static_cast<std::size_t>(m_in - m_begin);
      ScratchBuffer none(m_out);
      if (isNearlyFull() || !mayResume(true)) return finishPlain(none, pivot);
      // The kernel knows only what both legs can do; a byte that the first leg decodes is no error
      // of that leg.
      const std::uint16_t unit = m_source.decoder.singleByte->units[*m_in];
      if (unit != 0 || *m_in == 0) {
        const unsigned char bytes[2] = {static_cast<unsigned char>(unit & 0xFF),
                                        static_cast<unsigned char>(unit >> 8)};
        if (isEscape(bytes)) return finishPlain(none, pivot);
        setPivotFlags(false, true);
        encodePiece(bytes, bytes + 2);
        ++m_in;
      } else if (!treatUndecodable()) {
        return false;
      }
    }
  }

  // The unit that an encoder reads as an escape when it comes out of a pivot.
  bool isEscape(const unsigned char* unit) const {
    return m_target.kind != Side::kUtf8 && isMark(unit);
  }
  static bool isMark(const unsigned char* unit) { return unit[0] == 0xFD && unit[1] == 0xEF; }

  // A piece that the first leg cannot decode, through both plain legs. Mostly each piece becomes
  // the same substitution, which the second leg need not see every time.
  bool treatUndecodable() {
    m_piece.clear();
    setPivotFlags(true, false);
    if (!decodePiece(m_piece)) return false;
    setPivotFlags(false, true);
    const unsigned int size = m_piece.getSize();
    if (m_knownPiece.getSize() == size &&
        std::equal(m_piece.getData2(), m_piece.getData2() + size, m_knownPiece.getData2())) {
      m_out.append(m_encodedPiece);
      return true;
    }
    const unsigned int sizeBefore = m_out.getSize();
    if (!plainEncode(m_piece.getData2(), size)) m_result = false;
    m_knownPiece.clear();
    m_encodedPiece.clear();
    m_encodedPiece.append(m_out.getData2() + sizeBefore, m_out.getSize() - sizeBefore);
    m_knownPiece.append(m_piece);
    return true;
  }

  // Everything that is left, through whole plain legs: first the units that are decoded already,
  // which lie pivot bytes from the beginning of the UTF-16.
  bool finishPlain(DataBuffer& units, std::size_t pivot) {
    setPivotFlags(true, false);
    return observed(static_cast<std::size_t>(m_in - m_begin), pivot, [&] {
      if (!plainDecode(m_in, static_cast<std::size_t>(m_end - m_in), units)) return false;
      if (units.hasFailed()) return false;
      setPivotFlags(false, true);
      if (pivot != 0 && units.getSize() == 1) return finishOddLength() && m_result;
      return plainEncode(units.getData2(), units.getSize()) && m_result;
    });
  }

  bool runBlocks() {
    alignas(32) unsigned char block[kBlockBytes + kKernelSlack];
    if (room(estimate()) == nullptr) return false;
    while (m_in != m_end) {
      const KernelResult r = decode(m_in, block, block + sizeof block);
      m_in = r.in;
      const bool stopped = m_in != m_end && block + sizeof block - r.out >=
                                                static_cast<std::ptrdiff_t>(kKernelSlack);
      switch (encodeBlock(block, r.out)) {
        case Block::kEncoded:
          break;
        case Block::kFinished:
          return m_result;
        case Block::kFailed:
          return false;
      }
      m_pivotBytes += static_cast<std::size_t>(r.out - block);
      if (!stopped) continue;
      if (!mayResume(true)) {
        ScratchBuffer none(m_out);
        return finishPlain(none, m_pivotBytes);
      }
      if (!treatUndecodable()) return false;
    }
    return m_result;
  }

  enum class Block : unsigned char { kEncoded, kFinished, kFailed };

  Block encodeBlock(const unsigned char* block, const unsigned char* blockEnd) {
    const unsigned char* in = block;
    while (in != blockEnd) {
      unsigned char* tail = room(static_cast<std::uint64_t>(blockEnd - in) * 3 / 2);
      if (tail == nullptr) return Block::kFailed;
      const KernelResult r = encode(in, blockEnd, tail, tail + m_out.getTailRoom());
      m_out.commitTail(static_cast<unsigned int>(r.out - tail));
      in = r.in;
      if (in == blockEnd) break;
      if (isNearlyFull() || !mayResume(true) || isEscape(in)) {
        ScratchBuffer units(m_out);
        units.append(in, static_cast<unsigned int>(blockEnd - in));
        m_result = finishPlain(units, m_pivotBytes + static_cast<std::size_t>(in - block));
        return Block::kFinished;
      }
      setPivotFlags(false, true);
      in += encodePiece(in, blockEnd);
    }
    return Block::kEncoded;
  }

  void setPivotFlags(bool toUtf16, bool fromUtf16) {
    m_converter.m_pivotToUtf16 = toUtf16;
    m_converter.m_pivotFromUtf16 = fromUtf16;
  }

  EncodingConvert& m_converter;
  const int m_from, m_to;
  const Side m_source, m_target;
  const unsigned char* const m_begin;
  const unsigned char* m_in;
  const unsigned char* const m_end;
  DataBuffer& m_out;
  LogBase& m_log;
  const Kernels& m_kernels;
  const unsigned int m_firstSize = m_out.getSize();
  ScratchBuffer m_piece{m_out};  // what the first leg made of the piece at hand
  // An earlier one that the second leg has seen, and what that made of it.
  ScratchBuffer m_knownPiece{m_out}, m_encodedPiece{m_out};
  std::size_t m_pivotBytes = 0;  // UTF-16 given to the second leg so far
  std::ptrdiff_t m_stops = 0;    // of the kernels, at pieces that they could not treat
  bool m_result = true;
};

}  // namespace

Outcome convert(EncodingConvert& converter, int from, int to, const unsigned char* data,
                unsigned int length, DataBuffer& out, LogBase& log) {
  if (!isFastPathOpen(log) || from == to) return Outcome::kNotTaken;
  // Lengths that the plain legs refuse, because twice of them is no 32-bit number.
  if (length > 0x7FFFFFFD && from != kUtf16Le) return Outcome::kNotTaken;
  Side source, target;
  if (!openSource(from, log, source) || source.kind > Side::kDoubleByte ||
      !openTarget(to, converter, log, target) || target.kind > Side::kDoubleByte) {
    return Outcome::kNotTaken;
  }
  return convertBetween(converter, from, to, source, target, data, length, out, log)
             ? Outcome::kDone
             : Outcome::kFailed;
}

bool convertBetween(EncodingConvert& converter, int from, int to, const Side& source,
                    const Side& target, const unsigned char* data, unsigned int length,
                    DataBuffer& out, LogBase& log) {
  return FastConversion(converter, from, to, source, target, data, length, out, log).run();
}

}  // namespace fast

#include "encoding/codecs/web_encodings.h"

#include "encoding/codecs/unit_text.h"

namespace {

constexpr bool isIn(unsigned int byte, unsigned int first, unsigned int last) {
  return byte >= first && byte <= last;
}

unsigned int pairPiece(bool isLead, const unsigned char* bytes, std::size_t known, bool last) {
  if (!isLead) return 1;
  if (known < 2) return last ? 1 : 0;
  return bytes[1] < 0x80 ? 1 : 2;
}

// ---- replacement ----

// What follows the first byte is part of the malformed piece, which is told of as soon as it
// begins.
struct ReplacementReader : UnitReader {
  using UnitReader::UnitReader;

  bool step() {
    if (!state.shiftedOut) refuse(1);
    state.shiftedOut = true;
    p = end;
    return true;
  }
  void finish() { state.shiftedOut = false; }
};

}  // namespace

unsigned int webPairPiece(const unsigned char* bytes, std::size_t known, bool last) {
  return pairPiece(isIn(bytes[0], 0x81, 0xFE), bytes, known, last);
}

unsigned int webShiftJisPiece(const unsigned char* bytes, std::size_t known, bool last) {
  const bool isLead = isIn(bytes[0], 0x81, 0x9F) || isIn(bytes[0], 0xE0, 0xFC);
  return pairPiece(isLead, bytes, known, last);
}

unsigned int webEucJpPiece(const unsigned char* bytes, std::size_t known, bool last) {
  const bool isLong = bytes[0] == 0x8F && known > 1 && isIn(bytes[1], 0xA1, 0xFE);
  if (!isLong) {
    const bool isLead = bytes[0] == 0x8E || bytes[0] == 0x8F || isIn(bytes[0], 0xA1, 0xFE);
    return pairPiece(isLead, bytes, known, last);
  }
  if (known < 3) return last ? 2 : 0;
  return bytes[2] < 0x80 ? 2 : 3;
}

unsigned int webGb18030Piece(const unsigned char* bytes, std::size_t known, bool last) {
  const bool isLong = isIn(bytes[0], 0x81, 0xFE) && known > 1 && isIn(bytes[1], '0', '9');
  if (!isLong) return webPairPiece(bytes, known, last);
  if (known > 2 && !isIn(bytes[2], 0x81, 0xFE)) return 1;
  if (known < 4) return last ? static_cast<unsigned int>(known) : 0;
  return isIn(bytes[3], '0', '9') ? 4 : 1;
}

extern const Codec kWebReplacementCodec = {
    .codePage = 1200,
    .read = runCodec<ReplacementReader>,
    .isState = [](const void*, const CodecState& state, bool) {
      return hasOnly(state, {.shiftedOut = true});  // behind the first byte
    }};

// Conversion: reading one character.
#include <algorithm>
#include <cstring>

#include "iconv/conversion_character.h"
#include "iconv/lent_buffer.h"
#include "support/utf.h"

namespace iconv_layer {
namespace {

bool endsWithinPair(const unsigned char* units, std::size_t bytes) {
  return bytes >= 2 && isHighSurrogate(unitAt(units + bytes - 2));
}

// The piece of UTF-8 at p: how many bytes the lead byte asks for, and how many there are.
struct Utf8Form {
  std::size_t wanted;  // 0: no lead byte
  std::size_t there;   // the lead byte and what may follow it
};
Utf8Form utf8FormAt(const unsigned char* p, std::size_t left) {
  constexpr std::size_t kLongestRun = 5;
  const std::size_t wanted = p[0] < 0x80   ? 1
                             : p[0] < 0xC2 ? 0
                             : p[0] < 0xE0 ? 2
                             : p[0] < 0xF0 ? 3
                             : p[0] < 0xF8 ? 4
                                           : 0;
  const std::size_t most = std::min(left, wanted == 0 ? kLongestRun : wanted);
  std::size_t there = 1;
  while (there < most && isContinuation(p[there])) ++there;
  return {wanted, there};
}

}  // namespace

bool isText(const unsigned char* units, std::size_t bytes) {
  if (bytes % 2 != 0) return false;
  for (std::size_t i = 0; i < bytes; i += 2) {
    const std::uint32_t unit = unitAt(units + i);
    if (!isSurrogate(unit)) continue;
    if (!isHighSurrogate(unit) || i + 2 == bytes || !isLowSurrogate(unitAt(units + i + 2))) {
      return false;
    }
    i += 2;
  }
  return true;
}

void Conversion::read(const Place& place, Character& character) const {
  character.reading = m_reading;
  if (reader() != nullptr) {
    readByCodec(place.in, place.left(), character);
  } else {
    readPlain(place.in, place.left(), character);
  }
}

void Conversion::readPlain(const unsigned char* in, std::size_t left, Character& character) const {
  using Kind = Character::Kind;
  std::size_t length = 1;
  bool isCut = false;
  switch (m_plan->decoding.form) {
    case EncodingForm::kUtf8: {
      const Utf8Form form = utf8FormAt(in, left);
      isCut = form.there == left && form.there < form.wanted;
      character.length = form.there;
      length = form.wanted == form.there ? form.there : 0;
      break;
    }
    case EncodingForm::kUtf16: {
      isCut = left < 2;
      length = 2;
      character.length = 2;
      const auto at = [&](std::size_t i) {
        return m_plan->decoding.bigEndian ? in[i] * 256u | in[i + 1] : unitAt(in + i);
      };
      if (isCut || !isSurrogate(at(0))) break;
      if (!isHighSurrogate(at(0)) || m_route.from.isUcs2) {
        length = 0;
      } else if (left < 4) {
        isCut = true;
      } else {
        length = isLowSurrogate(at(2)) ? 4 : 0;
      }
      break;
    }
    case EncodingForm::kUtf32:
      isCut = left < 4;
      character.length = length = 4;
      break;
    case EncodingForm::kDoubleByte: {
      const fast::DoubleByteDecoder& table = *m_plan->decoding.table.doubleByte;
      if (in[0] < 0x80) break;
      if (!table.isLead(in[0]) && !table.mayBegin[in[0]]) break;
      isCut = left < table.decisiveLength(in[0]);
      character.length = table.lackingLength(in, left);
      length = table.isLead(in[0]) ? 2 : 1;
      break;
    }
    default:
      break;
  }
  if (isCut) {
    character.kind = Kind::kCut;
    return;
  }
  if (length == 0) return;
  const fast::KernelResult r = fast::decode(*m_plan, in, in + length, character.units,
                                            character.units + sizeof character.units);
  if (r.in != in + length) return;
  character.kind = Kind::kText;
  character.length = length;
  character.unitBytes = static_cast<std::size_t>(r.out - character.units);
  std::memcpy(character.text, in, length);
  character.textBytes = length;
}

// Makes a character, or several, of the text of a reader; false where that has half a pair.
bool Conversion::takeRead(const DataBuffer& text, Character& character) const {
  character.textBytes = text.getSize();
  std::memcpy(character.text, text.getData2(), character.textBytes);
  const unsigned char* const end = character.text + character.textBytes;
  const fast::KernelResult r = fast::decode(*m_plan, character.text, end, character.units,
                                            character.units + sizeof character.units);
  character.unitBytes = static_cast<std::size_t>(r.out - character.units);
  return r.in == end && isText(character.units, character.unitBytes);
}

// Reads as little as the codec goes on with.
void Conversion::readByCodec(const unsigned char* in, std::size_t left,
                             Character& character) const {
  using Kind = Character::Kind;
  const Codec::Convert& convert = strictReader();
  character.kind = Kind::kCut;
  const auto most = static_cast<unsigned int>(std::min(left, kLongest));
  LentBuffer<4096 + 128> text;
  unsigned int half = 0;  // of a pair of surrogates, in bytes of the source
  CodecState behindHalf;
  bool isFromStart = m_tooFew == 0;
  for (unsigned int length = m_tooFew + 1u; length <= most; ++length) {
    text.clear();
    MarkCounter marks;
    CodecState state = m_reading;
    unsigned int used = convert(in, length, false, state, text, &marks);
    if (used == 0) continue;
    // What has decided that there is a mark may have been read as well, and what waited in front.
    const ReplacedInput& mark = marks.first();
    const bool isMalformed = marks.count() != 0 && (mark.markOffset == 0 || mark.offset == 0);
    if (marks.count() != 0) {
      const unsigned int end = isMalformed ? mark.offset + mark.length : mark.offset;
      if (used != end) state = stateBehind(in, end);
      used = end;
      if (!isMalformed) text.truncate(mark.markOffset);
    }
    character.length = used;
    character.reading = state;
    if (isMalformed) {
      character.kind = Kind::kMalformed;
      return;
    }
    if (text.getSize() > sizeof character.text) return;
    character.kind = Kind::kText;
    if (text.getSize() == 0 || takeRead(text, character)) return;
    const bool isHalf = m_plan->decoding.form == EncodingForm::kUtf16 &&
                        endsWithinPair(character.text, character.textBytes);
    // In fewer bytes half a pair is to be seen.
    if (!isFromStart) {
      isFromStart = true;
      length = 0;
      character.kind = Kind::kCut;
      continue;
    }
    if (isHalf && half == 0) {
      half = used;
      behindHalf = state;
    }
    if (isHalf && marks.count() == 0) {
      character.kind = Kind::kCut;
      continue;
    }
    character.kind = Kind::kMalformed;
    if (half != 0) {
      character.length = half;
      character.reading = behindHalf;
    }
    return;
  }
}

// What the reader's state is when it has seen so many bytes.
CodecState Conversion::stateBehind(const unsigned char* in, unsigned int length) const {
  LentBuffer<4096 + 128> text;
  CodecState state = m_reading;
  strictReader()(in, length, false, state, text, nullptr);
  return state;
}

}  // namespace iconv_layer

// The codecs whole and in pieces; and UTF-7, UTF-32 and GSM there and back. Settings: the number of
// an encoding, in three bytes, and the size of the pieces.
#include <algorithm>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/gsm.h"
#include "fuzz/codec_checks.h"
#include "support/zv_utf.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

void utf7(Bytes text) {
  DataBuffer raw, utf16, again, utf7;
  raw.append(text.data(), sizeOf(text));
  _zvUtf::Utf7ToUtf16_xe(raw, utf16);
  check(_zvUtf::Utf16XEToUtf7(raw, utf7) == (text.size() % 2 == 0), "false for odd lengths only");
  check(_zvUtf::Utf7ToUtf16_xe(utf7, again), "what was written can be read");
  check(viewOf(again) == viewOf(raw).substr(0, text.size() & ~std::size_t{1}), "there and back");
}

void utf32(Bytes text) {
  LogBase log;
  for (const bool bigEndian : {false, true}) {
    DataBuffer utf32, utf8, again;
    _zvUtf::utf8toUtf32(bigEndian, text.data(), sizeOf(text), utf32);
    if (bigEndian) continue;
    check(_zvUtf::Utf32ToUtf8(utf32, utf8, log), "what was written can be read");
    _zvUtf::Utf8toUtf32(false, utf8, again);
    check(viewOf(again) == viewOf(utf32), "there and back");
  }
  DataBuffer utf8, utf32;
  _zvUtf::utf32ToUtf8(text.data(), sizeOf(text) / 4, utf8, log);
  check(_zvUtf::utf8toUtf32(false, utf8.getData2(), utf8.getSize(), utf32),
        "what was written can be read");
  check(utf32.getSize() == (text.size() & ~std::size_t{3}), "a unit gives a character");
}

void gsm(Bytes text) {
  LogBase log;
  DataBuffer utf8, coded, again;
  const bool clean = _zvUtf::gsm_to_utf8(text.data(), sizeOf(text), utf8, log);
  _zvUtf::utf8_to_gsm(utf8.getData2(), utf8.getSize(), coded, log);
  _zvUtf::gsm_to_utf8(coded.getData2(), coded.getSize(), again, log);
  check(!clean || viewOf(again) == viewOf(utf8), "there and back");
  coded.clear();
  _zvUtf::utf8_to_gsm(text.data(), sizeOf(text), coded, log);
  check(coded.getSize() <= 2 * text.size(), "at most two septets a byte");
}

// Those of all encodings, each once, and GSM over UTF-8.
const std::vector<const Codec*> kCodecs = [] {
  std::vector<const Codec*> codecs{&kGsmUtf8Codec};
  for (const EncodingRow& row : encodingRows()) {
    if (row.codec != nullptr && std::ranges::find(codecs, row.codec) == codecs.end()) {
      codecs.push_back(row.codec);
    }
  }
  return codecs;
}();

// That of an encoding, so that seeds can name it; of the other numbers each codec has as many.
const Codec& codecNamed(unsigned int number) {
  const EncodingRow* const row = findEncodingRow(static_cast<int>(number));
  if (row != nullptr && row->codec != nullptr) return *row->codec;
  return *kCodecs[number % kCodecs.size()];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  unsigned int number = input.byte();
  number |= input.byte() << 8;
  number |= input.byte() << 16;
  const Codec& codec = codecNamed(number);
  const std::size_t step = input.byte() % 16 + 1;
  const Bytes text = input.rest();
  Converted whole, cut;
  for (const Codec::Convert convert : {codec.read, codec.readStrictly, codec.write}) {
    if (convert)
      checkPieces(
          convert, text, [&] { return step; }, whole, cut);
  }
  // The calls that convert what these do, or no codec does.
  if (&codec == &codecOf(65000)) utf7(text);
  if (&codec == &codecOf(55000)) gsm(text);
  if (&codec == &kGsmUtf8Codec) utf32(text);
  return 0;
}

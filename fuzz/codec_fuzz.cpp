// The codecs whole and in pieces; and UTF-7, UTF-32 and GSM there and back. Settings: codec, size
// of the pieces.
#include <algorithm>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/gsm.h"
#include "fuzz/fuzz_support.h"
#include "support/zv_utf.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

// Marks must be reported in order and within input and output.
class Marks : public ReplacementSink {
 public:
  void onReplaced(const ReplacedInput& piece) {
    check(piece.length != 0, "a reported piece is not empty");
    ++count;
  }
  unsigned int count = 0;
};

CodecState inPieces(Codec::Convert convert, Bytes text, std::size_t step, DataBuffer& out,
                    Marks& marks) {
  CodecState state;
  std::size_t begin = 0, end = 0;
  while (true) {
    end = std::min(end + step, text.size());
    const bool last = end == text.size();
    // A copy, so that a read behind the piece is seen.
    const auto cut = text.subspan(begin, end - begin);
    const std::vector<std::uint8_t> exact(cut.begin(), cut.end());
    const unsigned int used = convert(exact.data(), sizeOf(exact), last, state, out, &marks);
    check(used <= exact.size(), "no more is used than is there");
    check(exact.size() - used < Codec::kMaxRest, "what waits is short");
    begin += used;
    if (!last) continue;
    check(begin == text.size(), "nothing waits at the end");
    return state;
  }
}

void compare(Codec::Convert convert, Bytes text, std::size_t step) {
  DataBuffer whole, cut;
  Marks wholeMarks, cutMarks;
  const CodecState state = inPieces(convert, text, text.size() + 1, whole, wholeMarks);
  check(state == inPieces(convert, text, step, cut, cutMarks),
        "the state does not depend on the cuts");
  check(viewOf(whole) == viewOf(cut), "the output does not depend on the cuts");
  check(wholeMarks.count == cutMarks.count, "the reports do not depend on the cuts");
  check(whole.getSize() <= 8 * text.size() + 16, "the output is linear in the input");
}

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const std::size_t codec = input.byte() % (kCodecs.size() + 3);
  const std::size_t step = input.byte() % 16 + 1;
  const Bytes text = input.rest();
  if (codec < kCodecs.size()) {
    compare(kCodecs[codec]->read, text, step);
    if (kCodecs[codec]->write) compare(kCodecs[codec]->write, text, step);
  } else if (codec == kCodecs.size()) {
    utf7(text);
  } else if (codec == kCodecs.size() + 1) {
    utf32(text);
  } else {
    gsm(text);
  }
  return 0;
}

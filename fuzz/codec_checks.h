// What must hold of a codec, whatever the text: fed in pieces it does what it does at once.
#ifndef FUZZ_CODEC_CHECKS_H_
#define FUZZ_CODEC_CHECKS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "encoding/codecs/codec.h"
#include "fuzz/fuzz_support.h"

// What became of a text, in one direction. It may be used again, which saves its memory.
struct Converted : ReplacementSink {
  // A piece without a form: where it stands in the text, and the mark for it in the output.
  struct Place {
    std::size_t offset;
    unsigned int length, mark;
    bool operator==(const Place&) const = default;
  };

  void clear() {
    state = {};
    out.clear();
    places.clear();
    used = 0;
  }
  void onReplaced(const ReplacedInput& piece) override {
    check(piece.length != 0, "a reported piece is not empty");
    places.push_back({used + piece.offset, piece.length, piece.markOffset});
  }

  CodecState state;
  DataBuffer out;
  std::vector<Place> places;
  std::size_t used = 0;
};

// Feeds a codec as a stream would, in pieces of the sizes that nextSize() gives.
template <class NextSize>
void convertPieces(Codec::Convert convert, std::span<const std::uint8_t> text, NextSize nextSize,
                   Converted& result) {
  result.clear();
  for (std::size_t end = 0; true;) {
    end += std::min<std::size_t>(nextSize(), text.size() - end);
    const bool last = end == text.size();
    // A copy, so that a read behind the piece is seen.
    const auto piece = text.subspan(result.used, end - result.used);
    const std::vector<std::uint8_t> exact(piece.begin(), piece.end());
    const unsigned int used =
        convert(exact.data(), sizeOf(exact), last, result.state, result.out, &result);
    check(used <= exact.size(), "no more is used than is there");
    check(exact.size() - used < Codec::kMaxRest, "what waits is short");
    result.used += used;
    if (!last) continue;
    check(result.used == text.size(), "nothing waits at the end");
    return;
  }
}

// Converts a text at once into `whole`, and in pieces.
template <class NextSize>
void checkPieces(Codec::Convert convert, std::span<const std::uint8_t> text, NextSize nextSize,
                 Converted& whole, Converted& cut) {
  convertPieces(
      convert, text, [&] { return text.size(); }, whole);
  convertPieces(convert, text, nextSize, cut);
  check(whole.state == cut.state, "the state does not depend on the cuts");
  check(viewOf(whole.out) == viewOf(cut.out), "the output does not depend on the cuts");
  check(whole.places == cut.places, "the reports do not depend on the cuts");
  check(whole.out.getSize() <= 8 * text.size() + 16, "the output is linear in the input");
}

#endif  // FUZZ_CODEC_CHECKS_H_

// StreamConverter: a stream in pieces against the stream in one piece, and that against EncConvert.
// Settings: source, target, treatment, alternate code page, flags, size of the pieces, substitute.
#include <algorithm>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/encoding_convert.h"
#include "fuzz/stream_checks.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

Bytes bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// One EncConvert of everything; what that does not know by its codec, and what EncConvert cannot do
// by UTF-8.
std::string whole(int from, int to, const std::string& text) {
  const auto* data = bytesOf(text).data();
  const unsigned int size = sizeOf(bytesOf(text));
  DataBuffer out;
  LogBase log;
  if (from == to) return text;
  if (!findEncodingRow(from)->inEngine) {
    convertWhole(codecOf(from).read, data, size, out);
    return whole(codecOf(from).codePage, to, std::string(viewOf(out)));
  }
  if (!findEncodingRow(to)->inEngine) {
    const std::string behind = whole(from, codecOf(to).codePage, text);
    convertWhole(codecOf(to).write, bytesOf(behind).data(), sizeOf(bytesOf(behind)), out);
    return std::string(viewOf(out));
  }
  if ((from == 1201 || from == 65000) && (to == 1200 || to == 1201 || to == 65000)) {
    return whole(65001, to, whole(from, 65001, text));
  }
  EncodingConvert().EncConvert(from, to, data, size, out, log);
  return std::string(viewOf(out));
}

// The code page that the text is written in, before a codec takes it.
int pageBehind(int page) {
  const EncodingRow& row = *findEncodingRow(page);
  return row.codec != nullptr ? row.codec->codePage : page;
}

bool hasShifts(int page) {
  return page == 65000 || (page >= 50220 && page <= 50225) || page == kCodePageHz;
}

StreamedText dropped(int from, int to, const std::string& text) {
  const StreamSettings settings{.from = from, .to = to, .treatment = StreamTreatment::kDrop};
  return streamPieces(settings, bytesOf(text), [&] { return text.size(); });
}

// Whether the text has what the two treat differently on purpose: U+0000, the unit that begins the
// escapes of a pivot, byte order marks, files that are copied. Nor can the two be compared where
// the text itself has what a target with shifts is read by: ESC, SO and SI.
bool differsOnPurpose(int from, int to, const std::string& text) {
  for (const char* beginning : {"%PDF-1", "\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE", "+/v"}) {
    if (text.starts_with(beginning)) return true;
  }
  if (text.starts_with(std::string_view("\0\0\xFE\xFF", 4))) return true;
  const std::string points = dropped(from, 12000, text).out;
  for (std::size_t at = 0; at + 3 < points.size(); at += 4) {
    const std::string_view point = std::string_view(points).substr(at, 4);
    if (point == std::string_view("\0\0\0\0", 4) || point == std::string_view("\xFD\xEF\0\0", 4)) {
      return true;
    }
    if (hasShifts(to) &&
        (point == std::string_view("\x1B\0\0\0", 4) || point == std::string_view("\x0E\0\0\0", 4) ||
         point == std::string_view("\x0F\0\0\0", 4))) {
      return true;
    }
  }
  return false;
}

// Whether whole() can convert: EncConvert knows the code page, or the one behind its codec.
bool isKnownToWhole(int page) {
  const EncodingRow* const row = findEncodingRow(page);
  return row != nullptr && (row->inEngine || row->codec != nullptr);
}

// What a stream drops, and the characters that it writes others for, are all that parts it from
// EncConvert.
void compareWithEncConvert(int from, int to, std::string text) {
  if (from == 0) from = to;
  if (to == 0) to = from;
  if (!isKnownToWhole(from) || !isKnownToWhole(to)) return;
  StreamedText result = dropped(from, to, text);
  if (result.status != StreamStatus::kGood || result.isApproximated) return;
  if (differsOnPurpose(from, to, text)) return;
  // Taking pieces out changes what stands behind a shift, or in a run that is turned round.
  if (!result.errors.empty() && (hasShifts(from) || from == 10004)) return;
  std::sort(result.errors.rbegin(), result.errors.rend());
  for (const StreamedPiece& piece : result.errors) text.erase(piece.offset, piece.length);
  if (differsOnPurpose(from, to, text)) return;
  // EncConvert knows the codes only that are written.
  if (from != pageBehind(to) && findEncodingRow(from)->onlyReadText != nullptr) {
    text = whole(65001, from, dropped(from, 65001, text).out);
  }
  std::string expected = whole(from, to, text), got = result.out;
  if (hasShifts(to)) {  // escapes may stand elsewhere
    expected = whole(to, 65001, expected);
    got = whole(to, 65001, got);
  }
  check(got == expected, "a stream is what EncConvert makes of it");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  StreamSettings settings;
  settings.from = input.choice(kFuzzCodePages);
  settings.to = input.choice(kFuzzCodePages);
  const unsigned int treatment = input.byte();
  settings.treatment = static_cast<StreamTreatment>(treatment % 6);
  settings.compose = (treatment & 0x40) != 0;
  settings.bestFit = (treatment & 0x80) != 0;
  settings.translit = (treatment & 0x20) != 0;
  settings.alternate = input.choice(kFuzzCodePages);
  const unsigned int flags = input.byte();
  if ((flags & 1) != 0) settings.from = kCodePageHz;
  if ((flags & 2) != 0) settings.to = kCodePageHz;
  if ((flags & 64) != 0) settings.from = kCodePageEucJp;
  if ((flags & 128) != 0) settings.to = kCodePageEucJp;
  settings.writeMark = (flags & 4) != 0;
  settings.pdfPassthrough = (flags & 8) != 0;
  settings.hasSubstitute = (flags & 16) != 0;
  settings.substituteIsRaw = (flags & 32) != 0;
  const std::size_t step = input.byte() % 24 + 1;
  settings.substitute = textOf(input.bytes(input.byte() % 8));
  const auto text = input.rest();

  const StreamedText atOnce = streamPieces(settings, text, [&] { return text.size(); });
  check(streamPieces(settings, text, [&] { return step; }) == atOnce,
        "the result does not depend on the cuts");
  compareWithEncConvert(settings.from, settings.to, textOf(text));
  return 0;
}

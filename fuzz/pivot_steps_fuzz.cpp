// The reference converters, each by itself and in any state of the converter: the decoder and the
// encoder of every code page, the UTF transforms (on hosts of both byte orders), and the error
// handlers. Settings: which one, code page, source and target under way, error action, flags,
// substitution bytes.
#include "encoding/encoding_convert.h"
#include "fuzz/fuzz_support.h"
#include "support/zv_base.h"

namespace {

class Bounds : public ConversionObserver {
 public:
  // isRewritten: the converter works on a copy in which it has changed units.
  Bounds(std::span<const std::uint8_t> text, bool isRewritten)
      : m_text(text), m_isRewritten(isRewritten) {}
  void onUnconvertible(const UnconvertibleInput& piece) override {
    check(piece.offset + std::uint64_t{piece.length} <= m_text.size(),
          "a reported piece lies in the input of its converter");
    check(m_isRewritten ||
              std::equal(piece.bytes, piece.bytes + piece.length, m_text.begin() + piece.offset),
          "a reported piece is that of the input");
  }

 private:
  std::span<const std::uint8_t> m_text;
  bool m_isRewritten;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const unsigned int which = input.byte() % 6;
  const int codePage = input.choice(kFuzzCodePages);
  EncodingConvert converter;
  converter.m_fromCodePage = input.choice(kFuzzCodePages);
  converter.m_toCodePage = input.choice(kFuzzCodePages);
  converter.setErrorAction(static_cast<int>(input.byte() % 10));
  const unsigned int flags = input.byte();
  converter.m_pivotToUtf16 = (flags & 1) != 0;
  converter.m_pivotFromUtf16 = (flags & 2) != 0;
  const auto defBytes = input.bytes(input.byte() % 8);
  converter.setDefBytes(defBytes.data(), static_cast<int>(defBytes.size()));
  const auto text = input.rest();
  if (text.empty()) return 0;

  LogBase log;
  DataBuffer out;
  const bool foldsDigits = codePage == 28596 || codePage == 1256;
  Bounds bounds(text, which == 1 && foldsDigits);
  converter.m_observer = &bounds;
  switch (which) {
    case 0:
      converter.convertToUnicodeHC(codePage, text.data(), sizeOf(text), out, log);
      break;
    case 1:
      converter.convertFromUnicodeHC(codePage, text.data(), sizeOf(text), out, log);
      break;
    case 2:
      if ((flags & 4) != 0 && converter.m_errorAction != 6) zvSetBigEndianForTesting(true);
      check(converter.cv_utf8_to_utf16(text.data(), sizeOf(text), out, log), "always true");
      zvSetBigEndianForTesting(false);
      break;
    case 3:
      if ((flags & 4) != 0) zvSetBigEndianForTesting(true);
      check(
          converter.cv_utf16_to_utf8(text.data(), sizeOf(text), out, log) == (text.size() % 2 == 0),
          "false for odd lengths only");
      zvSetBigEndianForTesting(false);
      break;
    case 4: {
      const unsigned int used =
          converter.handleErrorFromUtf8(text.data(), static_cast<int>(text.size()), out, log);
      check(used >= 1 && used <= text.size(), "a handler skips what is there");
      converter.handleErrorFromSingleByte(text.data(), out, log);
      break;
    }
    default:
      if (text.size() < 2) break;
      check(converter.handleErrorFromUnknown(text.data(), out, log) <= 2, "at most two bytes");
      converter.handleErrorFromUnicode(text.data(), out, log);
      break;
  }
  if (which < 2 && converter.m_errorAction == 0) {
    check(out.getSize() <= 2 * text.size(), "dropping does not grow the text");
  }
  return 0;
}

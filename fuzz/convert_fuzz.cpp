// EncConvert: any pair, settings and input. Settings: source, target, error action, alternate code
// page, flags, and the number of substitution bytes with the bytes.
#include "encoding/clean_conversion.h"
#include "encoding/encoding_convert.h"
#include "fuzz/fuzz_support.h"

namespace {

// No conversion writes more bytes for a byte of its input: 100 substitution bytes that, as units of
// a pivot, are replaced by 100 bytes each, and then escaped one by one.
constexpr std::uint64_t kWorstFactor = 100u * 53 * 4 + 64;

struct Settings {
  int from, to, action, alternate;
  unsigned int flags;
  std::span<const std::uint8_t> defBytes;
};

class Recorder : public ConversionObserver {
 public:
  explicit Recorder(bool keepsOrder) : m_keepsOrder(keepsOrder) {}
  void onUnconvertible(const UnconvertibleInput& piece) override {
    check(piece.length != 0 && piece.bytes != nullptr, "a reported piece is not empty");
    const std::uint64_t place =
        (std::uint64_t{piece.offset} << 1) | (piece.step == ConversionStep::kEncode ? 1u : 0u);
    reports = reports * 31 + place * 7 + piece.length + (m_keepsOrder ? 1 : 0);
  }
  std::uint64_t reports = 0;

 private:
  bool m_keepsOrder;
};

struct Result {
  bool ok, foundErrors, pivotToUtf16, pivotFromUtf16;
  std::uint64_t reports;
  std::string out;
  bool operator==(const Result&) const = default;
};

void configure(EncodingConvert& converter, const Settings& settings) {
  converter.setErrorAction(settings.action);
  converter.setAltDestCodepage(settings.alternate);
  converter.setDefBytes(settings.defBytes.data(), static_cast<int>(settings.defBytes.size()));
  converter.m_allow4ByteUtf8 = (settings.flags & 1) == 0;
}

Result run(EncodingConvert& converter, const Settings& settings,
           std::span<const std::uint8_t> text) {
  LogBase log;
  log.m_verboseLogging = (settings.flags & 2) != 0 ? 1 : 0;
  Recorder recorder(true);
  converter.m_observer = (settings.flags & 4) != 0 ? &recorder : nullptr;
  DataBuffer out;
  const bool ok =
      converter.EncConvert(settings.from, settings.to, text.data(), sizeOf(text), out, log);
  converter.m_observer = nullptr;
  check(!out.hasFailed(), "memory suffices");
  check(out.getSize() <= kWorstFactor * text.size() + 64, "the output is linear in the input");
  return {ok,
          converter.m_foundErrors,
          converter.m_pivotToUtf16,
          converter.m_pivotFromUtf16,
          recorder.reports,
          std::string(viewOf(out))};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  Settings settings{};
  settings.from = input.choice(kFuzzCodePages);
  settings.to = input.choice(kFuzzCodePages);
  settings.action = static_cast<int>(input.byte() % 10);
  settings.alternate = input.choice(kFuzzCodePages);
  settings.flags = input.byte();
  settings.defBytes = input.bytes(input.byte() % 104);
  const std::span<const std::uint8_t> text = input.rest();

  EncodingConvert converter;
  configure(converter, settings);
  const Result first = run(converter, settings, text);
  check(run(converter, settings, text) == first, "a conversion repeats itself");
  fast::setFastPathForTesting(false);
  EncodingConvert plain;
  configure(plain, settings);
  const Result plainly = run(plain, settings, text);
  fast::setFastPathForTesting(true);
  check(plainly == first, "clean text by plan gives what the reference converters give");
  return 0;
}

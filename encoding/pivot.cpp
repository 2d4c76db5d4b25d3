// convert_a: byte order marks, direct pairs, and the pivot through UTF-16 little endian.
#include <algorithm>
#include <cstdint>

#include "encoding/clean_conversion.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace {

// What a step is expected to write that makes UTF-16 of single bytes, or single bytes of UTF-16.
// Often it is less: where it is too much, only what is really appended decides.
std::uint64_t doubled(unsigned int length) { return std::uint64_t{length} * 2; }
std::uint64_t halved(unsigned int length) { return std::uint64_t{length} / 2 + 4; }

// A 1201 source that is marked as little endian stays a 1201 source that nothing swaps, and so ends
// as a code page without a table.
void stripByteOrderMark(Conversion& c) {
  const EncodingRow* const row = findEncodingRow(c.from);
  if (row == nullptr) return;
  c.bigEndian = row->bigEndian;
  const std::string_view text(reinterpret_cast<const char*>(c.data), c.length);
  for (const Mark& mark : marksOf(*row)) {
    if (!text.starts_with(mark.bytes)) continue;
    c.bigEndian = mark.bigEndian;
    return c.skip(static_cast<unsigned int>(mark.bytes.size()));
  }
}

bool convertGsm(Conversion& c) {
  ScratchBuffer utf8(c.out);
  if (c.from == kGsm) {
    if (c.to == kUtf8) return _zvUtf::gsm_to_utf8(c.data, c.length, c.out, c.log);
    _zvUtf::gsm_to_utf8(c.data, c.length, utf8, c.log);
    return !utf8.hasFailed() &&
           c.converter.convert_a(kUtf8, c.to, utf8.getData2(), utf8.getSize(), c.out, c.log);
  }
  if (c.from == kUtf8) {
    _zvUtf::utf8_to_gsm(c.data, c.length, c.out, c.log);
    return true;
  }
  if (!c.converter.convert_a(c.from, kUtf8, c.data, c.length, utf8, c.log) || utf8.hasFailed()) {
    return false;
  }
  _zvUtf::utf8_to_gsm(utf8.getData2(), utf8.getSize(), c.out, c.log);
  return true;
}

bool copyUsAscii(Conversion& c) {
  c.out.append(c.data, c.length);
  if (c.to == kUtf8) c.out.drop_non_usascii();
  return true;
}

enum class Normalised { kReady, kEmpty, kFailed };

bool needsNormalising(const Conversion& c) {
  return (isUtf16(c.from) && c.bigEndian) || isUtf32(c.from) || c.from == kUtf7;
}

// Makes the source UTF-16 little endian, UTF-8 or a table-driven code page; scratch holds it.
Normalised normaliseSource(Conversion& c, CodecState& utf7, DataBuffer& scratch) {
  ScratchBuffer raw(c.out);
  if (isUtf16(c.from)) {
    if (c.length < 2) return Normalised::kEmpty;
    if (!swapUnits(c.data, c.length & ~1u, scratch)) return Normalised::kFailed;
    c.setSource(kUtf16Le, scratch);
  } else if (isUtf32(c.from)) {
    if (c.bigEndian) {
      if (c.length < 4) return Normalised::kEmpty;
      if (!swapUnits(c.data, c.length & ~3u, raw, 4)) return Normalised::kFailed;
    } else {
      raw.borrowData(c.data, c.length);
    }
    _zvUtf::Utf32ToUtf8(raw, scratch, c.log);
    c.setSource(kUtf8, scratch);
  } else if (zvIsLittleEndian()) {  // UTF-7
    codecOf(kUtf7).read(c.data, c.length, true, utf7, scratch, nullptr);
    c.setSource(kUtf16Le, scratch);
  } else {
    raw.borrowData(c.data, c.length);
    _zvUtf::Utf7ToUtf16_xe(raw, scratch);
    c.setSource(kUtf16Be, scratch);
  }
  return scratch.hasFailed() ? Normalised::kFailed : Normalised::kReady;
}

// The encoder of a pivot, on what the decoder wrote.
bool encodePivot(const Conversion& c, const DataBuffer& utf16) {
  if (utf16.hasFailed()) return false;
  c.setPivotFlags(false, true);
  c.out.expect(halved(utf16.getSize()));
  const bool ok =
      c.converter.convertFromUnicodeHC(c.to, utf16.getData2(), utf16.getSize(), c.out, c.log);
  c.setPivotFlags(false, false);
  return ok;
}

// Decoder and encoder, for a source that a table decodes.
bool pivotThroughTables(Conversion& c) {
  c.info("Converting by using utf-16 as a pivot table...");
  c.setPivotFlags(true, false);
  ScratchBuffer utf16(c.out);
  utf16.expect(doubled(c.length) + 4);
  if (!c.converter.convertToUnicodeHC(c.from, c.data, c.length, utf16, c.log)) return false;
  return encodePivot(c, utf16);
}

bool pivotToUtf8(Conversion& c) {
  c.info("Converting to utf-8 using utf-16 as a pivot table...");
  const bool verbose = c.log.m_verboseLogging != 0;
  c.setPivotFlags(true, false);
  ScratchBuffer utf16(c.out);
  utf16.expect(doubled(c.length) + 4);
  if (!c.converter.convertToUnicodeHC(c.from, c.data, c.length, utf16, c.log)) {
    if (verbose) c.log.LogError("convertToUnicodeHC failed.");
    return false;
  }
  if (utf16.hasFailed()) return false;
  if (verbose) c.log.LogDataLong("szUtf16_inBytes", static_cast<int>(utf16.getSize()));
  c.setPivotFlags(false, true);
  c.out.expect(halved(utf16.getSize()));
  const bool ok = c.converter.cv_utf16_to_utf8(utf16.getData2(), utf16.getSize(), c.out, c.log);
  if (!ok && verbose) c.log.LogError("convertFromUnicode failed.");
  if (verbose) c.log.LogDataLong("szResult_inBytes", static_cast<int>(c.out.getSize()));
  c.setPivotFlags(false, false);
  return ok;
}

bool pivotFromUtf8(Conversion& c) {
  c.info("Converting from utf-8 using utf-16 as a pivot table...");
  ScratchBuffer utf16(c.out);
  utf16.expect(doubled(c.length) + 4);
  c.setPivotFlags(true, false);
  c.converter.cv_utf8_to_utf16(c.data, c.length, utf16, c.log);
  return encodePivot(c, utf16);
}

bool convertFromUtf16(Conversion& c) {
  c.setPivotFlags(false, false);
  if (c.to == kUtf16Le) {
    // The normalised text first, then whatever the two steps add after it: nothing, since no table
    // decodes UTF-16, and so the call fails with the text in the output.
    c.out.append(c.data, c.length);
    return pivotThroughTables(c);
  }
  c.out.expect(halved(c.length));
  if (c.to == kUtf8) {
    c.info("converting from utf-16 to utf-8");
    return c.converter.cv_utf16_to_utf8(c.data, c.length, c.out, c.log);
  }
  return c.converter.convertFromUnicodeHC(c.to, c.data, c.length, c.out, c.log);
}

bool convertFromUtf8(Conversion& c) {
  if (c.to == kUtf8) return c.out.append(c.data, c.length);
  if (c.to != kUtf16Le && c.to != kUtf32Le) return pivotFromUtf8(c);
  c.setPivotFlags(false, false);  // so that an earlier, failed call cannot change the reports here
  if (c.to == kUtf16Le) {
    c.info("converting from utf-8 to utf-16");
    c.out.expect(doubled(c.length));
    c.converter.cv_utf8_to_utf16(c.data, c.length, c.out, c.log);
    return true;
  }
  c.info("converting from utf-8 to utf-32");
  return _zvUtf::utf8toUtf32(false, c.data, c.length, c.out);
}

bool convertFromTable(Conversion& c) {
  if (c.to == kUtf16Le || c.to == kUtf32Le) {
    c.setPivotFlags(false, false);
    c.out.expect(doubled(c.length));
    return c.converter.convertToUnicodeHC(c.from, c.data, c.length, c.out, c.log);
  }
  return c.to == kUtf8 ? pivotToUtf8(c) : pivotThroughTables(c);
}

// A source of UTF-16 little endian, UTF-8 or a table-driven code page.
bool convertNormalised(Conversion& c) {
  switch (fast::convertClean(c)) {
    case fast::Outcome::kDone:
      return true;
    case fast::Outcome::kFailed:
      return false;
    case fast::Outcome::kNotTaken:
      break;
  }
  if (c.from == kUtf16Le) return convertFromUtf16(c);
  if (c.from == kUtf8) return convertFromUtf8(c);
  return convertFromTable(c);
}

// The clean beginning of a source needs no normalised copy. True when it was all of the source.
// Of UTF-7 normalised gets what is decoded but not converted, and utf7 the state behind that.
bool convertBeginning(Conversion& c, CodecState& utf7, DataBuffer& normalised) {
  if (isUtf32(c.to) || c.to == kUtf16Be) return false;  // EncConvert's business
  if (c.from == kUtf7) {
    bool isBegun = false;
    const unsigned int used = fast::readBeginning(c, codecOf(kUtf7), utf7, normalised, isBegun);
    c.skip(used);
    if (used == 0 || c.length != 0 || normalised.getSize() != 0) return false;
    c.setPivotFlags(false, false);
    return true;
  }
  // From UTF-16 to UTF-16 the reference converters write the text and then fail.
  if (isUtf16(c.from) && c.to == kUtf16Le) return false;
  Conversion beginning = c;
  beginning.from = isUtf16(c.from) ? kUtf16Be : c.bigEndian ? kUtf32Be : kUtf32Le;
  const unsigned int done = fast::convertBeginning(beginning);
  if (done == 0) return false;
  if (isUtf16(c.from) || c.to != kUtf8) c.setPivotFlags(false, false);  // else there are no steps
  c.skip(done);
  return c.length == 0;
}

}  // namespace

bool EncodingConvert::convert_a(int from, int to, const unsigned char* data, unsigned int length,
                                DataBuffer& out, LogBase& log) {
  if (data == nullptr || length == 0) return true;
  LogContextExitor context(log, "convert_a", log.m_verboseLogging != 0);
  Conversion c{*this, from, to, data, length, out, log};
  stripByteOrderMark(c);
  if (c.length == 0) return true;
  if (c.from == c.to) {
    c.out.append(c.data, c.length);
    return true;
  }
  if (c.from == kGsm || c.to == kGsm) return convertGsm(c);
  if (c.from == kUsAscii && copiesUsAscii(c.to)) return copyUsAscii(c);

  if (!needsNormalising(c)) return convertNormalised(c);
  ScratchBuffer normalised(out);
  CodecState utf7;
  if (convertBeginning(c, utf7, normalised)) return true;
  switch (normaliseSource(c, utf7, normalised)) {
    case Normalised::kEmpty:
      return true;
    case Normalised::kFailed:
      return false;
    case Normalised::kReady:
      break;
  }
  return convertNormalised(c);
}

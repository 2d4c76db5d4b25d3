// The front end: settings, and the dispatch that settles the cases that need no table.
#include "encoding/encoding_convert.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "encoding/clean_conversion.h"
#include "encoding/codecs/mac_arabic.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
#include "support/compiler.h"
#include "support/japanese.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

bool g_allow_4byte_utf8 = true;

EncodingConvert::EncodingConvert()
    : m_allow4ByteUtf8(true),
      m_errorAction(0),
      m_altDestCodepage(0),
      m_defBytesLen(0),
      m_fromCodePage(0),
      m_toCodePage(0),
      m_pivotToUtf16(false),
      m_pivotFromUtf16(false),
      m_foundErrors(false),
      m_observer(nullptr) {
  // In halves, because for the whole of it compilers take a string instruction, which takes longer
  // to start than all else here.
  constexpr std::size_t kHalf = sizeof m_defBytes / 2;
  std::memset(m_defBytes, 0, kHalf);
  std::memset(m_defBytes + kHalf, 0, sizeof m_defBytes - kHalf);
}

EncodingConvert::~EncodingConvert() = default;

void EncodingConvert::setErrorAction(int action) { m_errorAction = action; }

void EncodingConvert::setAltDestCodepage(int codePage) { m_altDestCodepage = codePage; }

namespace {

bool isPdf(const unsigned char* data, unsigned int length) {
  return length >= 7 && data[0] == '%' &&
         zvStrNCmp(reinterpret_cast<const char*>(data), "%PDF-1", 6) == 0;
}

bool isRefused(int codePage) { return codePage < 100 && codePage != 37; }

// Converts to an intermediate code page. A step that fails, or whose output is incomplete for lack
// of memory, is recorded as an error of the conversion.
bool convertTo(const Conversion& c, int to, DataBuffer& scratch) {
  const bool ok =
      c.converter.convert_a(c.from, to, c.data, c.length, scratch, c.log) && !scratch.hasFailed();
  if (!ok) c.converter.m_foundErrors = true;
  return ok;
}

bool dispatch(Conversion c);

// What the two steps leave behind, also where too little follows the clean beginning for them to
// run. Where a text is only copied into the intermediate code page there are none.
void finishBeginning(const Conversion& c) { c.setPivotFlags(false, false); }

bool fromIso2022(const Codec& codec, const Conversion& c) {
  if (c.length > INT_MAX) return false;
  ScratchBuffer scratch(c.out);
  CodecState state;
  bool isBegun = false;
  const unsigned int used = fast::readBeginning(c, codec, state, scratch, isBegun);
  if (used != c.length && !scratch.hasFailed()) {
    codec.read(c.data + used, c.length - used, true, state, scratch, nullptr);
  }
  if (scratch.hasFailed()) return false;
  if (!isBegun) {
    if (scratch.getSize() == 0) return true;
    return c.converter.EncConvert(codec.codePage, c.to, scratch.getData2(), scratch.getSize(),
                                  c.out, c.log);
  }
  if (scratch.getSize() != 0) {
    return dispatch(
        {c.converter, codec.codePage, c.to, scratch.getData2(), scratch.getSize(), c.out, c.log});
  }
  c.converter.m_fromCodePage = codec.codePage;
  c.converter.m_toCodePage = c.to == kUtf16Be ? kUtf16Le : c.to;
  finishBeginning(c);
  return true;
}

bool fromIso2022Jp(const Conversion& c) {
  if (c.log.m_verboseLogging != 0) c.log.LogInfo("Converting from iso-2022-*");
  if (c.to != kShiftJis) return fromIso2022(codecOf(c.from), c);
  if (c.length > INT_MAX) return false;
  Japanese().Iso2022ToShiftJis(c.data, static_cast<int>(c.length), c.out, c.log);
  return !c.out.hasFailed();
}

bool toUtf7(Conversion c) {
  const Codec& codec = codecOf(kUtf7);
  const unsigned int sizeBefore = c.out.getSize();
  ScratchBuffer utf16(c.out);
  CodecState state;
  // From UTF-16 there are no steps.
  if (!isUtf16(c.from)) {
    const unsigned int used = fast::writeBeginning(c, codec, state, utf16);
    c.skip(used);
    if (used != 0) finishBeginning(c);
  }
  if (c.length != 0 && !convertTo(c, zvIsLittleEndian() ? kUtf16Le : kUtf16Be, utf16)) {
    c.out.truncate(sizeBefore);  // a step that fails leaves nothing
    return false;
  }
  if (!zvIsLittleEndian()) return _zvUtf::Utf16XEToUtf7(utf16, c.out);
  codec.write(utf16.getData2(), utf16.getSize(), true, state, c.out, nullptr);
  return !state.replaced && !c.out.hasFailed();
}

// Converts the clean beginning without an intermediate copy. True when it was all of the input.
bool convertBeginning(Conversion& c) {
  const unsigned int done = fast::convertBeginning(c);
  c.skip(done);
  const bool isCopy = isUtf32(c.to) ? c.from == kUtf8 || isUtf32(c.from) : isUtf16(c.from);
  if (done != 0 && !isCopy) finishBeginning(c);
  return c.length == 0;
}

bool toUtf32(Conversion c) {
  const unsigned int sizeBefore = c.out.getSize();
  // US-ASCII is copied into the UTF-8.
  if (c.from != kUsAscii && convertBeginning(c)) return true;
  ScratchBuffer utf8(c.out);
  if (c.from == kUtf8) {
    utf8.borrowData(c.data, c.length);
  } else if (!convertTo(c, kUtf8, utf8)) {
    c.out.truncate(sizeBefore);  // a step that fails leaves nothing
    return false;
  }
  return _zvUtf::Utf8toUtf32(findEncodingRow(c.to)->bigEndian, utf8, c.out);
}

// A partial result counts as success: m_foundErrors tells the difference.
bool toUtf16Be(Conversion c) {
  c.converter.m_toCodePage = kUtf16Le;
  if (convertBeginning(c)) return true;
  ScratchBuffer utf16(c.out);
  convertTo(c, kUtf16Le, utf16);
  if (utf16.hasFailed()) return false;
  const unsigned int even = utf16.getSize() & ~1u;
  if (even == 0 || utf16.getData2() == nullptr) return true;
  ScratchBuffer swapped(c.out);
  if (!swapUnits(utf16.getData2(), even, swapped)) return false;
  return c.out.append(swapped);
}

// The result is that of the conversion into the double-byte code page; what it could convert is
// written all the same.
bool toIso2022(const Codec& codec, Conversion c) {
  ScratchBuffer scratch(c.out);
  CodecState state;
  const unsigned int used = fast::writeBeginning(c, codec, state, scratch);
  c.skip(used);
  if (used != 0) finishBeginning(c);
  const bool ok = c.length == 0 || convertTo(c, codec.codePage, scratch);
  if (scratch.hasFailed() || scratch.getSize() > INT_MAX) return false;
  codec.write(scratch.getData2(), scratch.getSize(), true, state, c.out, nullptr);
  return ok;
}

bool convertResolved(const Conversion& c) {
  if (isIso2022Jp(c.from)) return fromIso2022Jp(c);
  if (c.from == kIso2022Kr) return fromIso2022(codecOf(c.from), c);

  c.converter.m_pivotFromUtf16 = false;
  c.converter.m_fromCodePage = c.from;
  c.converter.m_toCodePage = c.to;
  if (c.to == kUtf7) return toUtf7(c);
  if (isUtf32(c.to)) return toUtf32(c);
  if (c.to == kUtf16Be) return toUtf16Be(c);
  if (isIso2022Jp(c.to) || c.to == kIso2022Kr) return toIso2022(codecOf(c.to), c);
  return c.converter.convert_a(c.from, c.to, c.data, c.length, c.out, c.log);
}

// Everything behind the PDF test.
bool dispatch(Conversion c) {
  LogContextExitor context(c.log, "EncConvert", c.log.m_verboseLogging != 0);
  if (c.log.m_verboseLogging != 0) {
    c.log.LogDataLong("fromCodePage", c.from);
    c.log.LogDataLong("toCodePage", c.to);
  }
  if (c.to == 0) c.to = c.from;
  if (c.from == 0) c.from = c.to;
  if (c.from == c.to) {
    c.out.append(c.data, c.length);
    return true;
  }
  if (isRefused(c.from) || isRefused(c.to)) return false;
  if (c.from != kMacArabic) return convertResolved(c);

  unsigned char* copy = zvNewUnsignedChar(c.length);
  if (copy == nullptr) {
    c.out.latchFailure();
    return false;
  }
  DataBuffer rewritten;
  rewritten.takeData(copy, c.length);
  std::memcpy(copy, c.data, c.length);
  StringBuffer run;
  if (!rewriteMacArabic(copy, c.length, run)) {
    c.out.latchFailure();
    return false;
  }
  c.data = copy;
  return convertResolved(c);
}

// Whether a text may be converted as one. Without the four-byte forms of pairs UTF-8 is written by
// the reference converters.
inline bool mayBeShort(const EncodingConvert& converter, unsigned int length, const LogBase& log) {
  return length <= fast::kShortBytes && fast::isOpen(log) && converter.m_allow4ByteUtf8 &&
         g_allow_4byte_utf8;
}

}  // namespace

bool EncodingConvert::EncConvert(int fromCodePage, int toCodePage, const unsigned char* data,
                                 unsigned int length, DataBuffer& out, LogBase& log) {
  m_foundErrors = false;
  if (data == nullptr || length == 0) return true;
  if (mayBeShort(*this, length, log)) {
    const fast::Plan* const plan = fast::findPlan(fromCodePage, toCodePage);
    if (plan != nullptr && plan->isPlain && data[0] != '%' &&
        !plan->mayBeginWithMark(data, length)) {
      m_fromCodePage = fromCodePage;
      m_toCodePage = toCodePage;
      m_pivotToUtf16 = m_pivotFromUtf16 = false;
      return fast::convertShort({*this, fromCodePage, toCodePage, data, length, out, log}, *plan);
    }
  }
  return convertLong(fromCodePage, toCodePage, data, length, out, log);
}

COMPILER_NO_INLINE bool EncodingConvert::convertLong(int fromCodePage, int toCodePage,
                                                     const unsigned char* data, unsigned int length,
                                                     DataBuffer& out, LogBase& log) {
  if (isPdf(data, length)) return out.append(data, length);
  const Conversion c{*this, fromCodePage, toCodePage, data, length, out, log};
  // Where nothing stands between the caller and the two steps of a plan: no byte order mark to
  // strip, no pre-pass and no copy.
  if (fast::isPlainPair(fromCodePage, toCodePage) &&
      !beginsWithMark(*findEncodingRow(fromCodePage), data, length)) {
    const std::int32_t from = m_fromCodePage;
    const std::int32_t to = m_toCodePage;
    m_fromCodePage = fromCodePage;
    m_toCodePage = toCodePage;
    const fast::Outcome outcome = fast::convertClean(c);
    if (outcome != fast::Outcome::kNotTaken) {
      return outcome == fast::Outcome::kDone && !out.hasFailed();
    }
    m_fromCodePage = from;
    m_toCodePage = to;
  }
  // The loops do not test their appends; a hole in the output is found here.
  return dispatch(c) && !out.hasFailed();
}

// The front end: settings, and the dispatch that settles the cases that need no table.
#include "encoding/encoding_convert.h"

#include <climits>
#include <cstring>

#include "encoding/clean_blocks.h"
#include "encoding/codecs/iso2022_jp.h"
#include "encoding/codecs/iso2022_kr.h"
#include "encoding/codecs/utf7.h"
#include "encoding/fast/fast_path.h"
#include "encoding/fast/short_path.h"
#include "encoding/mac_arabic.h"
#include "encoding/scratch_buffer.h"
#include "encoding/special_code_pages.h"
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

// One conversion as EncConvert was asked for it, with the code pages resolved.
struct Request {
  int from;
  int to;
  const unsigned char* data;
  unsigned int length;
  DataBuffer& out;
  LogBase& log;
};

bool isPdf(const unsigned char* data, unsigned int length) {
  return length >= 7 && data[0] == '%' &&
         zvStrNCmp(reinterpret_cast<const char*>(data), "%PDF-1", 6) == 0;
}

bool isRefused(int codePage) { return codePage < 100 && codePage != 37; }

// Converts to an intermediate code page. A leg that fails, or whose output is incomplete for lack
// of memory, is recorded as an error of the conversion.
bool runLeg(EncodingConvert& converter, const Request& request, int to, DataBuffer& scratch) {
  const bool ok =
      converter.convert_a(request.from, to, request.data, request.length, scratch, request.log) &&
      !scratch.hasFailed();
  if (!ok) converter.m_foundErrors = true;
  return ok;
}

bool dispatch(EncodingConvert& converter, Request request);

// What the two legs leave behind when nothing was wrong.
void finishClean(EncodingConvert& converter) {
  converter.m_pivotToUtf16 = converter.m_pivotFromUtf16 = false;
}

bool fromIso2022(EncodingConvert& converter, const Codec& codec, const Request& request) {
  if (request.length > INT_MAX) return false;
  ScratchBuffer scratch(request.out);
  CodecState state;
  bool isBegun = false;
  const unsigned int used =
      readCleanBlocks(converter, codec, request.to, request.data, request.length, request.out,
                      request.log, state, scratch, isBegun);
  if (used != request.length && !scratch.hasFailed()) {
    codec.read(request.data + used, request.length - used, true, state, scratch, nullptr);
  }
  if (scratch.hasFailed()) return false;
  if (!isBegun) {
    if (scratch.getSize() == 0) return true;
    return converter.EncConvert(codec.codePage, request.to, scratch.getData2(), scratch.getSize(),
                                request.out, request.log);
  }
  if (scratch.getSize() != 0) {
    return dispatch(converter, {codec.codePage, request.to, scratch.getData2(), scratch.getSize(),
                                request.out, request.log});
  }
  converter.m_fromCodePage = codec.codePage;
  converter.m_toCodePage = request.to == kUtf16Be ? kUtf16Le : request.to;
  finishClean(converter);
  return true;
}

bool fromIso2022Jp(EncodingConvert& converter, const Request& request) {
  if (request.log.m_verboseLogging != 0) request.log.LogInfo("Converting from iso-2022-*");
  if (request.to != kShiftJis) return fromIso2022(converter, kIso2022JpCodec, request);
  if (request.length > INT_MAX) return false;
  Japanese().Iso2022ToShiftJis(request.data, static_cast<int>(request.length), request.out,
                               request.log);
  return !request.out.hasFailed();
}

bool toUtf7(EncodingConvert& converter, Request request) {
  const unsigned int sizeBefore = request.out.getSize();
  ScratchBuffer utf16(request.out);
  CodecState state;
  // From UTF-16 there are no legs.
  if (zvIsLittleEndian() && !isUtf16(request.from)) {
    const unsigned int used =
        writeCleanBlocks(converter, kUtf7Codec, request.from, request.data, request.length,
                         request.out, request.log, state, utf16);
    request.data += used;
    request.length -= used;
  }
  if (request.length == 0) {
    finishClean(converter);
  } else if (!runLeg(converter, request, zvIsLittleEndian() ? kUtf16Le : kUtf16Be, utf16)) {
    request.out.truncate(sizeBefore);  // a failed leg leaves nothing
    return false;
  }
  if (!zvIsLittleEndian()) return _zvUtf::Utf16XEToUtf7(utf16, request.out);
  kUtf7Codec.write(utf16.getData2(), utf16.getSize(), true, state, request.out, nullptr);
  return !state.replaced && !request.out.hasFailed();
}

// Converts the clean beginning without an intermediate copy. True when it was all of the input.
bool convertCleanBeginning(EncodingConvert& converter, Request& request) {
  const unsigned int done = fast::convertPrefix(converter, request.from, request.to, request.data,
                                                request.length, request.out, request.log);
  request.data += done;
  request.length -= done;
  if (request.length != 0) return false;
  // From UTF-8 to UTF-32 there are no legs.
  if (request.from != kUtf8 || !isUtf32(request.to)) finishClean(converter);
  return true;
}

bool toUtf32(EncodingConvert& converter, Request request) {
  const unsigned int sizeBefore = request.out.getSize();
  if (convertCleanBeginning(converter, request)) return true;
  ScratchBuffer utf8(request.out);
  if (request.from == kUtf8) {
    utf8.borrowData(request.data, request.length);
  } else if (!runLeg(converter, request, kUtf8, utf8)) {
    request.out.truncate(sizeBefore);  // a failed leg leaves nothing
    return false;
  }
  return _zvUtf::Utf8toUtf32(isUtf32Be(request.to), utf8, request.out);
}

// A partial result counts as success: m_foundErrors tells the difference.
bool toUtf16Be(EncodingConvert& converter, Request request) {
  converter.m_toCodePage = kUtf16Le;
  if (convertCleanBeginning(converter, request)) return true;
  ScratchBuffer utf16(request.out);
  runLeg(converter, request, kUtf16Le, utf16);
  if (utf16.hasFailed()) return false;
  const unsigned int even = utf16.getSize() & ~1u;
  if (even == 0 || utf16.getData2() == nullptr) return true;
  ScratchBuffer swapped(request.out);
  if (!swapUnits(utf16.getData2(), even, swapped)) return false;
  return request.out.append(swapped);
}

// The result is that of the conversion into the double-byte code page; what it could convert is
// written all the same.
bool toIso2022(EncodingConvert& converter, const Codec& codec, Request request) {
  ScratchBuffer scratch(request.out);
  CodecState state;
  const unsigned int used =
      writeCleanBlocks(converter, codec, request.from, request.data, request.length, request.out,
                       request.log, state, scratch);
  request.data += used;
  request.length -= used;
  bool ok = true;
  if (request.length == 0) {
    finishClean(converter);
  } else {
    ok = runLeg(converter, request, codec.codePage, scratch);
  }
  if (scratch.hasFailed() || scratch.getSize() > INT_MAX) return false;
  codec.write(scratch.getData2(), scratch.getSize(), true, state, request.out, nullptr);
  return ok;
}

bool convertResolved(EncodingConvert& converter, const Request& request) {
  if (isIso2022Jp(request.from)) return fromIso2022Jp(converter, request);
  if (request.from == kIso2022Kr) return fromIso2022(converter, kIso2022KrCodec, request);

  converter.m_pivotFromUtf16 = false;
  converter.m_fromCodePage = request.from;
  converter.m_toCodePage = request.to;
  if (request.to == kUtf7) return toUtf7(converter, request);
  if (isUtf32(request.to)) return toUtf32(converter, request);
  if (request.to == kUtf16Be) return toUtf16Be(converter, request);
  if (isIso2022Jp(request.to)) return toIso2022(converter, kIso2022JpCodec, request);
  if (request.to == kIso2022Kr) return toIso2022(converter, kIso2022KrCodec, request);
  return converter.convert_a(request.from, request.to, request.data, request.length, request.out,
                             request.log);
}

// Everything behind the PDF test.
bool dispatch(EncodingConvert& converter, Request request) {
  LogContextExitor context(request.log, "EncConvert", request.log.m_verboseLogging != 0);
  if (request.log.m_verboseLogging != 0) {
    request.log.LogDataLong("fromCodePage", request.from);
    request.log.LogDataLong("toCodePage", request.to);
  }
  if (request.to == 0) request.to = request.from;
  if (request.from == 0) request.from = request.to;
  if (request.from == request.to) {
    request.out.append(request.data, request.length);
    return true;
  }
  if (isRefused(request.from) || isRefused(request.to)) return false;
  if (request.from != kMacArabic) return convertResolved(converter, request);

  unsigned char* copy = zvNewUnsignedChar(request.length);
  if (copy == nullptr) {
    request.out.latchFailure();
    return false;
  }
  DataBuffer rewritten;
  rewritten.takeData(copy, request.length);
  std::memcpy(copy, request.data, request.length);
  StringBuffer run;
  if (!rewriteMacArabic(copy, request.length, run)) {
    request.out.latchFailure();
    return false;
  }
  request.data = copy;
  return convertResolved(converter, request);
}

// Whether nothing stands between the caller and the two legs: no byte order mark to strip, no
// pre-pass, no copy, and nobody who wants to know which operations run.
bool isOrdinary(const Request& request) {
  if (request.log.m_wantsContexts || request.from == kMacArabic) return false;
  if (request.from == kUsAscii && copiesUsAscii(request.to)) return false;
  return !markBegin(request.from).begins(request.data, request.length);
}

// What dispatch and convert_a come to for such a pair, without the way there, which counts for
// short texts.
fast::Outcome convertOrdinary(EncodingConvert& converter, const Request& request) {
  const std::int32_t from = converter.m_fromCodePage;
  const std::int32_t to = converter.m_toCodePage;
  converter.m_fromCodePage = request.from;
  converter.m_toCodePage = request.to;
  const fast::Outcome outcome = fast::convert(converter, request.from, request.to, request.data,
                                              request.length, request.out, request.log);
  if (outcome == fast::Outcome::kNotTaken) {
    converter.m_fromCodePage = from;
    converter.m_toCodePage = to;
  }
  return outcome;
}

// Whether a text may go by a route, but for its first bytes. Without the four-byte forms of pairs
// UTF-8 is written the plain way.
inline bool mayBeShort(const EncodingConvert& converter, unsigned int length, const LogBase& log) {
  return length <= fast::kShortBytes && !log.m_wantsContexts && log.m_verboseLogging == 0 &&
         converter.m_allow4ByteUtf8 && g_allow_4byte_utf8;
}

}  // namespace

bool EncodingConvert::EncConvert(int fromCodePage, int toCodePage, const unsigned char* data,
                                 unsigned int length, DataBuffer& out, LogBase& log) {
  m_foundErrors = false;
  if (data == nullptr || length == 0) return true;
  if (mayBeShort(*this, length, log)) {
    const fast::Route* route = fast::findRoute(fromCodePage, toCodePage);
    if (route != nullptr && route->takes(data, length)) {
      m_fromCodePage = fromCodePage;
      m_toCodePage = toCodePage;
      m_pivotToUtf16 = m_pivotFromUtf16 = false;
      return route->convert(*route, *this, data, length, out, log);
    }
  }
  return convertLong(fromCodePage, toCodePage, data, length, out, log);
}

[[gnu::noinline]] bool EncodingConvert::convertLong(int fromCodePage, int toCodePage,
                                                    const unsigned char* data, unsigned int length,
                                                    DataBuffer& out, LogBase& log) {
  if (isPdf(data, length)) return out.append(data, length);
  const Request request{fromCodePage, toCodePage, data, length, out, log};
  fast::Outcome outcome = fast::Outcome::kNotTaken;
  if (isOrdinary(request)) {
    if (mayBeShort(*this, length, log) && fast::openRoute(*this, fromCodePage, toCodePage)) {
      return EncConvert(fromCodePage, toCodePage, data, length, out, log);  // by that route
    }
    outcome = convertOrdinary(*this, request);
  }
  if (outcome != fast::Outcome::kNotTaken) {
    return outcome == fast::Outcome::kDone && !out.hasFailed();
  }
  // The loops do not test their appends; a hole in the output is found here.
  return dispatch(*this, request) && !out.hasFailed();
}

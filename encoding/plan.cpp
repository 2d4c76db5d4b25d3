#include "encoding/plan.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>

#include "encoding/accent_pairs.h"
#include "encoding/codecs/codec.h"
#include "encoding/kernels/cpu_dispatch.h"
#include "encoding/special_code_pages.h"
#include "encoding/tables/table_registry.h"
#include "support/log_base.h"

namespace fast {

constinit std::atomic<const Plan*> g_plans[2][1u << kPlanBits];

namespace {

constexpr std::size_t kSlack = kKernelSlack;

// ---- The two steps. ----

template <std::size_t unitSize>
void copySwapped(const unsigned char* in, std::size_t count, unsigned char* out) {
  for (std::size_t i = 0; i < count * unitSize; i += unitSize) {
    for (std::size_t j = 0; j < unitSize; ++j) out[i + j] = in[i + unitSize - 1 - j];
  }
}

KernelResult decodeUtf16(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                         unsigned char* out, unsigned char* outEnd) {
  const auto room = static_cast<std::size_t>(outEnd - out) - kSlack;
  const std::size_t count = std::min(static_cast<std::size_t>(inEnd - in), room) & ~std::size_t{1};
  KernelResult r{in + count, out + count};
  if (plan.decoding.bigEndian) {
    r = plan.kernels->swapUtf16(in, in + count, out, outEnd);
  } else {
    std::memcpy(out, in, count);
  }
  if (r.out - out >= 2 && (r.out[-1] & 0xFC) == 0xD8) return {r.in - 2, r.out - 2};
  return r;
}

// From UTF-32 by a kernel, which reads little endian only.
KernelResult convertUtf32(const Plan& plan, Kernel* kernel, const unsigned char* in,
                          const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd) {
  if (!plan.decoding.bigEndian) return kernel(in, inEnd, out, outEnd);
  constexpr std::size_t kSwapBytes = 4096;
  unsigned char swapped[kSwapBytes];
  while (in != inEnd && outEnd - out >= static_cast<std::ptrdiff_t>(kSlack)) {
    const auto units = std::min(static_cast<std::size_t>(inEnd - in), kSwapBytes) / 4;
    copySwapped<4>(in, units, swapped);
    const KernelResult r = kernel(swapped, swapped + units * 4, out, outEnd);
    const auto done = r.in - swapped;
    in += done;
    out = r.out;
    if (done == 0 || r.in != swapped + units * 4) break;
  }
  return {in, out};
}

}  // namespace

KernelResult decode(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                    unsigned char* out, unsigned char* outEnd) {
  const Kernels& k = *plan.kernels;
  switch (plan.decoding.form) {
    case EncodingForm::kUtf8:
      return k.utf8ToUtf16(in, inEnd, out, outEnd);
    case EncodingForm::kUtf16:
      return decodeUtf16(plan, in, inEnd, out, outEnd);
    case EncodingForm::kUtf32:
      return convertUtf32(plan, k.utf32ToUtf16, in, inEnd, out, outEnd);
    case EncodingForm::kSingleByte:
      return k.singleByteToUtf16(*plan.decoding.table.singleByte, in, inEnd, out, outEnd);
    case EncodingForm::kDoubleByte:
      return k.doubleByteToUtf16(*plan.decoding.table.doubleByte, in, inEnd, out, outEnd);
    case EncodingForm::kCodec:
      break;  // the step is that of the code page behind the codec
  }
  return {in, out};
}

KernelResult encode(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                    unsigned char* out, unsigned char* outEnd) {
  const Kernels& k = *plan.kernels;
  switch (plan.encoding.form) {
    case EncodingForm::kUtf8:
      return k.utf16ToUtf8(in, inEnd, out, outEnd);
    case EncodingForm::kUtf16: {
      if (plan.encoding.bigEndian) return k.swapUtf16(in, inEnd, out, outEnd);
      const auto room = static_cast<std::size_t>(outEnd - out);
      const std::size_t count =
          std::min(static_cast<std::size_t>(inEnd - in), room) & ~std::size_t{1};
      std::memcpy(out, in, count);
      return {in + count, out + count};
    }
    case EncodingForm::kUtf32: {
      const KernelResult r = k.utf16ToUtf32(in, inEnd, out, outEnd);
      if (plan.encoding.bigEndian) {
        for (unsigned char* p = out; p != r.out; p += 4) std::reverse(p, p + 4);
      }
      return r;
    }
    case EncodingForm::kSingleByte:
      return k.utf16ToSingleByte(*plan.encoding.table.singleByte, in, inEnd, out, outEnd);
    case EncodingForm::kDoubleByte:
      return k.utf16ToDoubleByte(*plan.encoding.table.doubleByte, in, inEnd, out, outEnd);
    case EncodingForm::kCodec:
      break;
  }
  return {in, out};
}

namespace {

// ---- Pairs that need no pivot. ----

KernelResult directDecode(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                          unsigned char* out, unsigned char* outEnd) {
  return decode(plan, in, inEnd, out, outEnd);
}

KernelResult directSingleByteToUtf8(const Plan& plan, const unsigned char* in,
                                    const unsigned char* inEnd, unsigned char* out,
                                    unsigned char* outEnd) {
  return plan.kernels->singleByteToUtf8(*plan.decoding.table.singleByte, in, inEnd, out, outEnd);
}

KernelResult directUtf8ToUtf32(const Plan& plan, const unsigned char* in,
                               const unsigned char* inEnd, unsigned char* out,
                               unsigned char* outEnd) {
  return plan.kernels->utf8ToUtf32(in, inEnd, out, outEnd);
}

KernelResult directUtf32ToUtf8(const Plan& plan, const unsigned char* in,
                               const unsigned char* inEnd, unsigned char* out,
                               unsigned char* outEnd) {
  return convertUtf32(plan, plan.kernels->utf32ToUtf8, in, inEnd, out, outEnd);
}

KernelResult directMapBytes(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                            unsigned char* out, unsigned char* outEnd) {
  return plan.kernels->mapBytes(plan.byteMap, in, inEnd, out, outEnd);
}

// UTF-16 to UTF-16, of which surrogates have to be looked at.
KernelResult directUtf16(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                         unsigned char* out, unsigned char* outEnd) {
  constexpr std::size_t kBlock = 8192;
  const bool isSwapped = plan.decoding.bigEndian != plan.encoding.bigEndian;
  unsigned char block[kBlock + kSlack];
  while (outEnd - out >= static_cast<std::ptrdiff_t>(kSlack)) {
    const auto room = static_cast<std::size_t>(outEnd - out);
    const std::size_t count =
        std::min({static_cast<std::size_t>(inEnd - in), room, kBlock}) & ~std::size_t{1};
    // The text in little endian is what the kernel looks at.
    const unsigned char* text = in;
    if (plan.decoding.bigEndian) {
      plan.kernels->swapUtf16(in, in + count, block, block + sizeof block);
      text = block;
    }
    const auto good =
        static_cast<std::size_t>(plan.kernels->pairedUtf16(text, text + count) - text);
    if (plan.decoding.bigEndian == isSwapped) {
      std::memcpy(out, text, good);
    } else if (isSwapped) {
      plan.kernels->swapUtf16(in, in + good, out, out + good + kSlack);
    } else {
      std::memcpy(out, in, good);
    }
    in += good;
    out += good;
    // A pair that the block cut in two is whole in the next one.
    if (good + 2 < count || count < 4) break;
  }
  return {in, out};
}

// UTF-8 to itself. In parts that are still near when they are copied.
KernelResult directUtf8Copy(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                            unsigned char* out, unsigned char* outEnd) {
  constexpr std::ptrdiff_t kPart = 16 * 1024;
  while (in != inEnd) {
    const std::ptrdiff_t count = std::min({inEnd - in, outEnd - out, kPart});
    // What the end of a part cuts is whole in the next one.
    const std::ptrdiff_t good = plan.kernels->wellFormedUtf8(in, in + count) - in;
    std::memcpy(out, in, static_cast<std::size_t>(good));
    in += good;
    out += good;
    if (good == 0 || count - good > 3) break;
  }
  return {in, out};
}

// One encoding to itself: decoded to see whether it is text, and copied.
KernelResult directCopy(const Plan& plan, const unsigned char* in, const unsigned char* inEnd,
                        unsigned char* out, unsigned char* outEnd) {
  unsigned char block[4096 + kSlack];
  while (in != inEnd && outEnd - out >= static_cast<std::ptrdiff_t>(kSlack)) {
    const unsigned char* const end = in + std::min(inEnd - in, outEnd - out);
    const KernelResult r = decode(plan, in, end, block, block + sizeof block);
    const auto done = static_cast<std::size_t>(r.in - in);
    std::memcpy(out, in, done);
    in += done;
    out += done;
    const bool isFull = block + sizeof block - r.out < static_cast<std::ptrdiff_t>(kSlack);
    if (!isFull) break;
  }
  return {in, out};
}

// The text of a codec that reads no surrogates but pairs.
KernelResult directUnits(const Plan& /*plan*/, const unsigned char* in, const unsigned char* inEnd,
                         unsigned char* out, unsigned char* outEnd) {
  const auto count = static_cast<std::size_t>(std::min(inEnd - in, outEnd - out));
  std::memcpy(out, in, count);
  return {in + count, out + count};
}

Direct* findDirect(const Plan& plan) {
  const EncodingForm from = plan.decoding.form;
  const EncodingForm to = plan.encoding.form;
  const bool isUtf16Pair = from == EncodingForm::kUtf16 && to == EncodingForm::kUtf16;
  if (isUtf16Pair) {
    const Codec* const reader = plan.source->codec;
    const bool isCopied = reader != nullptr && reader->readsPairs && !plan.encoding.bigEndian;
    return isCopied ? directUnits : directUtf16;
  }
  if (plan.isCopy) return from == EncodingForm::kUtf8 ? directUtf8Copy : directCopy;
  // A codec behind the target asks for the places of units.
  if (plan.target->form == EncodingForm::kCodec) return nullptr;
  if (to == EncodingForm::kUtf16 && !plan.encoding.bigEndian) return directDecode;
  if (from == EncodingForm::kUtf8 && to == EncodingForm::kUtf32 && !plan.encoding.bigEndian) {
    return directUtf8ToUtf32;
  }
  if (from == EncodingForm::kUtf32 && to == EncodingForm::kUtf8) return directUtf32ToUtf8;
  if (from != EncodingForm::kSingleByte) return nullptr;
  if (to == EncodingForm::kUtf8) return directSingleByteToUtf8;
  return to == EncodingForm::kSingleByte ? directMapBytes : nullptr;
}

// ---- Short texts. ----

const EncodingRow* rowBehindCodec(const EncodingRow* row) {
  const bool hasCodec = row != nullptr && row->form == EncodingForm::kCodec;
  return hasCodec ? findEncodingRow(row->codec->codePage) : row;
}

unsigned char* wholeDirect(const Plan& plan, const unsigned char* in, std::size_t length,
                           unsigned char* out, unsigned char* outEnd) {
  const KernelResult r = plan.direct(plan, in, in + length, out, outEnd);
  return r.in == in + length ? r.out : nullptr;
}

unsigned char* wholeEncode(const Plan& plan, const unsigned char* in, std::size_t length,
                           unsigned char* out, unsigned char* outEnd) {
  const KernelResult r = encode(plan, in, in + length, out, outEnd);
  return r.in == in + length ? r.out : nullptr;
}

template <std::size_t maxLength>
unsigned char* twoSteps(const Plan& plan, const unsigned char* in, std::size_t length,
                        unsigned char* out, unsigned char* outEnd) {
  alignas(32) unsigned char utf16[2 * maxLength + kSlack];
  const KernelResult decoded = decode(plan, in, in + length, utf16, utf16 + sizeof utf16);
  if (decoded.in != in + length) return nullptr;
  const KernelResult r = encode(plan, utf16, decoded.out, out, outEnd);
  return r.in == decoded.out ? r.out : nullptr;
}

constexpr ShortConvert* wholeTwoSteps = twoSteps<kShortBytes>;

// The most of a text that a codec has read from a short one.
constexpr std::size_t kReadBytes = kWorstFactor * kShortBytes;

// From and to the code page of a codec on either side, with the codec.
unsigned char* wholeByCodec(const Plan& plan, const unsigned char* in, std::size_t length,
                            unsigned char* out, unsigned char* outEnd) {
  unsigned char readStorage[kReadBytes];
  DataBuffer read;
  read.lendStorage(readStorage, sizeof readStorage);
  if (plan.source->form == EncodingForm::kCodec) {
    const Codec& codec = *plan.source->codec;
    const Codec::Convert convert = codec.readStrictly ? codec.readStrictly : codec.read;
    if (!convertWhole(convert, in, static_cast<std::int64_t>(length), read)) return nullptr;
    // To itself: second codes stay as they are.
    if (plan.source == plan.target && codec.isStateless) {
      return std::copy_n(in, static_cast<std::uint32_t>(length), out);
    }
    in = read.getData2();
    length = read.getSize();
    if (length > kReadBytes) return nullptr;
  }
  ShortConvert* const convertRest = plan.direct != nullptr ? wholeDirect : twoSteps<kReadBytes>;
  if (plan.target->form != EncodingForm::kCodec) {
    return convertRest(plan, in, length, out, outEnd);
  }
  unsigned char text[kWorstFactor * kReadBytes + kSlack];
  const unsigned char* const end = convertRest(plan, in, length, text, text + sizeof text);
  if (end == nullptr) return nullptr;
  DataBuffer written;
  written.lendStorage(out, static_cast<unsigned int>(outEnd - out));
  const bool isWritten = convertWhole(plan.target->codec->write, text, end - text, written);
  return isWritten && written.getData2() == out ? out + written.getSize() : nullptr;
}

ShortConvert* findWhole(const Plan& plan) {
  const EncodingForm from = plan.source->form;
  // Marks of four bytes, and letters that are joined or put in order, are a stream's business.
  if (from == EncodingForm::kUtf32 || plan.source->reordersMacArabic) return nullptr;
  if (rowBehindCodec(plan.source)->form != plan.decoding.form) return nullptr;
  if (plan.target->writesMark) return nullptr;
  if (plan.hasCodec()) {
    const bool isWritable =
        plan.target->form != EncodingForm::kCodec || bool{plan.target->codec->write};
    return plan.reader == Reader::kStream && isWritable ? wholeByCodec : nullptr;
  }
  if (plan.direct != nullptr) return wholeDirect;
  const bool isPivot = from == EncodingForm::kUtf16 && !plan.decoding.bigEndian;
  return isPivot ? wholeEncode : wholeTwoSteps;
}

// ---- Making a plan. ----

// The row of the text that the decoder reads. Streams join accents and letters first.
const EncodingRow* decodedRow(const Plan& plan) {
  constexpr int kUtf16 = 1200;
  const bool isJoined =
      plan.reader == Reader::kStream && plan.from != plan.to && hasAccentPairs(*plan.source);
  return isJoined ? findEncodingRow(kUtf16) : rowBehindCodec(plan.source);
}

bool openDecoding(const EncodingRow& row, Reader reader, Decoding& decoding) {
  LogBase silent;
  decoding.form = row.form;
  decoding.bigEndian = row.bigEndian;
  if (!hasTable(row)) return true;
  if (!ensureToUnicode(row, silent)) return false;
  decoding.table = decoderFor(row, reader);
  return decoding.table.singleByte != nullptr || decoding.table.doubleByte != nullptr;
}

bool openEncoding(const EncodingRow& row, Reader reader, Encoding& encoding) {
  LogBase silent;
  encoding.form = row.form;
  encoding.bigEndian = row.bigEndian;
  if (!hasTable(row)) return true;
  if (!ensureFromUnicode(row, silent)) return false;
  encoding.table = encoderFor(row);
  encoding.tableRow = &row;
  if (encoding.table.doubleByte != nullptr) encoding.form = EncodingForm::kDoubleByte;
  if (reader == Reader::kStream && mayApproximate(encoding.table)) {
    if (!ensureToUnicode(row, silent)) return false;
    encoding.approximating = encoding.table;
    encoding.reading = decoderFor(row);
    encoding.table = exactEncoderFor(row);
  }
  return encoding.table.singleByte != nullptr || encoding.table.doubleByte != nullptr;
}

void fillByteMap(Plan& plan) {
  const std::uint16_t* const units = plan.decoding.table.singleByte->units;
  for (unsigned int byte = 0; byte < 256; ++byte) {
    plan.byteMap.bytes[byte] =
        units[byte] != 0 ? plan.encoding.table.singleByte->bytes[units[byte]] : std::uint8_t{0};
  }
}

void findLineFeed(Plan& plan) {
  constexpr unsigned char kLineFeed = 0x0A;
  plan.hasLineFeed = true;
  plan.lineFeed = kLineFeed;
  const SingleByteDecoder* const table = plan.decoding.table.singleByte;
  if (table == nullptr) return;
  const auto* const found = std::find(std::begin(table->units), std::end(table->units), kLineFeed);
  plan.hasLineFeed = found != std::end(table->units);
  plan.lineFeed = static_cast<unsigned char>(found - table->units);
}

bool fill(Plan& plan) {
  const EncodingRow* const source = decodedRow(plan);
  const EncodingRow* const target = rowBehindCodec(plan.target);
  plan.kernels = &kernels();
  // UTF-8 of the web has no surrogates that would be written otherwise.
  const bool isWebUtf8 = source->hasWebRules && source->form == EncodingForm::kUtf8;
  plan.isCopy = source == target || (isWebUtf8 && target->form == EncodingForm::kUtf8);
  LogBase silent;
  if (source != plan.source && !ensureToUnicode(*plan.source, silent)) return false;
  if (!openDecoding(*source, plan.reader, plan.decoding)) return false;
  if (!plan.isCopy && !openEncoding(*target, plan.reader, plan.encoding)) return false;
  if (plan.isCopy) {
    plan.encoding.form = plan.decoding.form;
    plan.encoding.bigEndian = plan.decoding.bigEndian;
  } else if (plan.encoding.table.singleByte != nullptr &&
             plan.decoding.form == EncodingForm::kSingleByte) {
    fillByteMap(plan);
  }
  findLineFeed(plan);
  plan.direct = findDirect(plan);
  plan.whole = findWhole(plan);
  plan.isOrdinary = isOrdinaryPair(plan.from, plan.to);
  plan.isPlain = isPlainPair(plan.from, plan.to);
  for (const Mark& mark : marksOf(*plan.source)) {
    plan.markFirst = static_cast<unsigned char>(mark.bytes[0]) | 1u;
    plan.markSecond = static_cast<unsigned char>(mark.bytes[1]) | 1u;
  }
  return true;
}

}  // namespace

bool isOrdinaryPair(int from, int to) {
  const auto isServed = [](const EncodingRow* row) {
    if (row == nullptr || !row->inEngine) return false;
    return row->form == EncodingForm::kUtf8 || hasTable(*row) ||
           (row->form == EncodingForm::kUtf16 && !row->bigEndian);
  };
  return from != to && isServed(findEncodingRow(from)) && isServed(findEncodingRow(to));
}

bool isPlainPair(int from, int to) {
  const bool isAsciiCopy = from == kUsAscii && copiesUsAscii(to);
  return isOrdinaryPair(from, to) && !isAsciiCopy && !findEncodingRow(from)->reordersMacArabic;
}

const Plan* openPlan(int from, int to, Reader reader) {
  if (const Plan* const plan = findPlan(from, to, reader)) return plan;
  onKernelsChanged(forgetPlans);
  std::unique_ptr<Plan> made(new (std::nothrow) Plan());
  if (made == nullptr) return nullptr;
  made->from = from;
  made->to = to;
  made->reader = reader;
  made->source = findEncodingRow(from);
  made->target = findEncodingRow(to);
  if (made->source == nullptr || made->target == nullptr || !made->target->isWritten ||
      !fill(*made)) {
    return nullptr;
  }
  std::atomic<const Plan*>& chain = planChain(from, to, reader);
  made->next = chain.load(std::memory_order_acquire);
  while (!chain.compare_exchange_weak(made->next, made.get(), std::memory_order_acq_rel)) {
    // Another thread was faster.
    if (const Plan* const other = findPlan(from, to, reader)) return other;
  }
  return made.release();
}

unsigned char* convertShort(int from, int to, const char* data, std::size_t length,
                            unsigned char* out) {
  const Plan* const plan = findPlan(from, to, Reader::kStream);
  if (plan == nullptr || plan->whole == nullptr || length - 1 >= kShortBytes) return nullptr;
  const auto* const in = reinterpret_cast<const unsigned char*>(data);
  if (plan->mayBeginWithMark(in, length)) return nullptr;
  return plan->whole(*plan, in, length, out, out + kShortOutput);
}

std::uint64_t maxOutputSize(std::size_t length, int from, int to) {
  // A byte is one code unit of UTF-16 at most, but in a few codecs; then what one unit may become:
  // with its shift sequences in a codec, as a letter and a mark in a code page. A header or a mark
  // comes once.
  constexpr std::uint64_t kOnce = 16;
  const EncodingRow* const source = findEncodingRow(from);
  const EncodingRow* const row = findEncodingRow(to);
  if (row == nullptr || source == nullptr) return 0;
  if (source->codec != nullptr) length *= source->codec->unitsPerByte;
  switch (row->form) {
    case EncodingForm::kUtf8:
      return length * std::uint64_t{3} + kOnce;
    case EncodingForm::kUtf16:
    case EncodingForm::kSingleByte:
    case EncodingForm::kDoubleByte:
      return length * std::uint64_t{2} + kOnce;
    case EncodingForm::kUtf32:
      return length * std::uint64_t{4} + kOnce;
    case EncodingForm::kCodec:
      break;
  }
  return length * std::uint64_t{8} + kOnce;
}

void forgetPlans() {
  for (auto& chains : g_plans) {
    for (std::atomic<const Plan*>& chain : chains) {
      const Plan* plan = chain.exchange(nullptr, std::memory_order_acq_rel);
      while (plan != nullptr) {
        const Plan* const next = plan->next;
        delete plan;
        plan = next;
      }
    }
  }
}

}  // namespace fast

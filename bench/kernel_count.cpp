// Converts one text some times over, by one converter, for an emulator to count the instructions.
//
//   kernel_count WAY KERNEL ROUNDS FILE
//
// WAY is a form of the kernels ("scalar", "neon"), "iconv" of the C library, or "icu". KERNEL is
// one of the list below, which says between which encodings; FILE has the text, in UTF-8. Prints
// the bytes that are converted in one round. What the beginning takes is told apart by counting
// twice, with different ROUNDS. The kernels stand alone here, with tables that are made by asking
// iconv.
#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/kernels/cpu_dispatch.h"

namespace {

using Byte = unsigned char;
using Bytes = std::vector<Byte>;
using Convert = std::function<bool(const Bytes& in, Bytes& out)>;

constexpr const char* kUtf8 = "UTF-8";
constexpr const char* kUtf16 = "UTF-16LE";
constexpr const char* kUtf32 = "UTF-32LE";
constexpr const char* kSingle = "KOI8-R";
constexpr const char* kOtherSingle = "WINDOWS-1251";
constexpr const char* kDouble = "SHIFT_JIS";

// Empty for what iconv does not convert.
Bytes convertByIconv(const char* from, const char* to, const Bytes& input) {
  const iconv_t call = iconv_open(to, from);
  Bytes output(4 * input.size() + 16);
  char* in = const_cast<char*>(reinterpret_cast<const char*>(input.data()));
  char* out = reinterpret_cast<char*>(output.data());
  std::size_t left = input.size(), room = output.size();
  const bool isDone = iconv(call, &in, &left, &out, &room) == 0 && left == 0;
  iconv_close(call);
  output.resize(isDone ? output.size() - room : 0);
  return output;
}

// ---- Tables ----

// The unit of a code; 0 for none.
std::uint16_t unitOf(const char* encoding, const Bytes& code) {
  const Bytes unit = convertByIconv(encoding, kUtf16, code);
  return unit.size() == 2 ? static_cast<std::uint16_t>(unit[0] | unit[1] << 8) : std::uint16_t{0};
}

template <class Put>
void forEachByte(const char* encoding, Put put) {
  for (unsigned int byte = 1; byte < 256; ++byte) {
    const auto code = static_cast<Byte>(byte);
    if (const std::uint16_t unit = unitOf(encoding, {code})) put(code, unit);
  }
}

template <class Put>
void forEachPair(const char* encoding, Put put) {
  for (unsigned int pair = 0x8140; pair < 0xFD00; ++pair) {
    const auto first = static_cast<Byte>(pair >> 8), second = static_cast<Byte>(pair);
    if (const std::uint16_t unit = unitOf(encoding, {first, second})) {
      put(static_cast<std::uint16_t>(first | second << 8), unit);
    }
  }
}

void fill(fast::SingleByteDecoder& table) {
  forEachByte(kSingle, [&](Byte byte, std::uint16_t unit) { table.units[byte] = unit; });
  table.prepare();
}
void fill(fast::SingleByteEncoder& table) {
  forEachByte(kSingle, [&](Byte byte, std::uint16_t unit) { table.bytes[unit] = byte; });
  table.prepare();
}
void fill(fast::ByteMap& table) {
  for (unsigned int byte = 1; byte < 256; ++byte) {
    const Bytes other = convertByIconv(kSingle, kOtherSingle, {static_cast<Byte>(byte)});
    table.bytes[byte] = other.empty() ? std::uint8_t{0} : other[0];
  }
}
void fill(fast::DoubleByteDecoder& table) {
  forEachPair(kDouble, [&](std::uint16_t code, std::uint16_t unit) { table.units[code] = unit; });
  forEachByte(kDouble, [&](Byte byte, std::uint16_t unit) { table.singles[byte] = unit; });
  table.prepare();
}
void fill(fast::DoubleByteEncoder& table) {
  forEachPair(kDouble, [&](std::uint16_t code, std::uint16_t unit) { table.codes[unit] = code; });
  forEachByte(kDouble, [&](Byte byte, std::uint16_t unit) { table.codes[unit] = byte; });
  table.prepare();
}

// ---- The kernels ----

using fast::Kernels;

struct Row {
  std::string_view kernel;
  const char *from, *to;
  // The kernel of a form, with its table.
  Convert (*open)(const Kernels& form);
};

template <auto member>
Convert withoutTable(const Kernels& form) {
  return [kernel = form.*member](const Bytes& in, Bytes& out) {
    const Byte* const end = in.data() + in.size();
    return kernel(in.data(), end, out.data(), out.data() + out.size()).in == end;
  };
}
template <auto member, class Table>
Convert withTable(const Kernels& form) {
  static Table table = {};
  fill(table);
  return [kernel = form.*member](const Bytes& in, Bytes& out) {
    const Byte* const end = in.data() + in.size();
    return kernel(table, in.data(), end, out.data(), out.data() + out.size()).in == end;
  };
}
// The header in front of the text is the codec's.
Convert withShifts(const Kernels& form) {
  constexpr std::ptrdiff_t kHeader = 4;
  return [kernel = form.unshiftPairs](const Bytes& in, Bytes& out) {
    bool inPairs = false;
    const Byte *const begin = in.data() + kHeader, *const end = in.data() + in.size();
    return kernel(inPairs, begin, end, out.data(), out.data() + out.size()).in == end;
  };
}
template <auto member, auto... value>
Convert reader(const Kernels& form) {
  return [kernel = form.*member](const Bytes& in, Bytes& /*out*/) {
    return kernel(in.data(), in.data() + in.size(), value...) != 0;
  };
}

constexpr Row kRows[] = {
    {"utf8ToUtf16", kUtf8, kUtf16, withoutTable<&Kernels::utf8ToUtf16>},
    {"utf16ToUtf8", kUtf16, kUtf8, withoutTable<&Kernels::utf16ToUtf8>},
    {"swapUtf16", kUtf16, "UTF-16BE", withoutTable<&Kernels::swapUtf16>},
    {"utf32ToUtf16", kUtf32, kUtf16, withoutTable<&Kernels::utf32ToUtf16>},
    {"utf16ToUtf32", kUtf16, kUtf32, withoutTable<&Kernels::utf16ToUtf32>},
    {"utf8ToUtf32", kUtf8, kUtf32, withoutTable<&Kernels::utf8ToUtf32>},
    {"utf32ToUtf8", kUtf32, kUtf8, withoutTable<&Kernels::utf32ToUtf8>},
    {"singleByteToUtf16", kSingle, kUtf16,
     withTable<&Kernels::singleByteToUtf16, fast::SingleByteDecoder>},
    {"singleByteToUtf8", kSingle, kUtf8,
     withTable<&Kernels::singleByteToUtf8, fast::SingleByteDecoder>},
    {"mapBytes", kSingle, kOtherSingle, withTable<&Kernels::mapBytes, fast::ByteMap>},
    {"utf16ToSingleByte", kUtf16, kSingle,
     withTable<&Kernels::utf16ToSingleByte, fast::SingleByteEncoder>},
    {"doubleByteToUtf16", kDouble, kUtf16,
     withTable<&Kernels::doubleByteToUtf16, fast::DoubleByteDecoder>},
    {"utf16ToDoubleByte", kUtf16, kDouble,
     withTable<&Kernels::utf16ToDoubleByte, fast::DoubleByteEncoder>},
    {"unshiftPairs", "ISO-2022-KR", "EUC-KR", withShifts},
    // What only reads has no peers.
    {"pairedUtf16", kUtf16, "", reader<&Kernels::pairedUtf16>},
    {"wellFormedUtf8", kUtf8, "", reader<&Kernels::wellFormedUtf8>},
    {"countByte", kUtf8, "", reader<&Kernels::countByte, std::uint8_t{0x0A}>},
    {"countUnit", kUtf16, "", reader<&Kernels::countUnit, std::uint16_t{0x0A}>},
    {"countScalar", kUtf32, "", reader<&Kernels::countScalar, std::uint32_t{0x0A}>},
    {"utf8Length", kUtf16, "", reader<&Kernels::utf8Length>},
};

// ---- The peers ----

Convert openIconv(const Row& row) {
  const iconv_t call = iconv_open(row.to, row.from);
  return [call](const Bytes& input, Bytes& output) {
    char* in = const_cast<char*>(reinterpret_cast<const char*>(input.data()));
    char* out = reinterpret_cast<char*>(output.data());
    std::size_t left = input.size(), room = output.size();
    return iconv(call, &in, &left, &out, &room) == 0 && left == 0;
  };
}

// Between UTF-8 and UTF-16 ICU has calls that take less than its converters.
Convert openIcu(const Row& row) {
  if (row.kernel == "utf8ToUtf16") {
    return [](const Bytes& input, Bytes& output) {
      UErrorCode error = U_ZERO_ERROR;
      std::int32_t length = 0;
      u_strFromUTF8(reinterpret_cast<UChar*>(output.data()),
                    static_cast<std::int32_t>(output.size() / 2), &length,
                    reinterpret_cast<const char*>(input.data()),
                    static_cast<std::int32_t>(input.size()), &error);
      return U_SUCCESS(error) != 0;
    };
  }
  if (row.kernel == "utf16ToUtf8") {
    return [](const Bytes& input, Bytes& output) {
      UErrorCode error = U_ZERO_ERROR;
      std::int32_t length = 0;
      u_strToUTF8(reinterpret_cast<char*>(output.data()), static_cast<std::int32_t>(output.size()),
                  &length, reinterpret_cast<const UChar*>(input.data()),
                  static_cast<std::int32_t>(input.size() / 2), &error);
      return U_SUCCESS(error) != 0;
    };
  }
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const from = ucnv_open(row.from, &error);
  UConverter* const to = ucnv_open(row.to, &error);
  if (U_FAILURE(error)) return {};
  return [from, to](const Bytes& input, Bytes& output) {
    UErrorCode failure = U_ZERO_ERROR;
    const char* in = reinterpret_cast<const char*>(input.data());
    const char* const inEnd = in + input.size();
    char* out = reinterpret_cast<char*>(output.data());
    UChar pivot[1024];
    UChar *pivotFrom = pivot, *pivotTo = pivot;
    ucnv_convertEx(to, from, &out, out + output.size(), &in, inEnd, pivot, &pivotFrom, &pivotTo,
                   pivot + std::size(pivot), 1, 1, &failure);
    return U_SUCCESS(failure) && in == inEnd;
  };
}

Convert open(const Row& row, std::string_view way) {
  const bool hasPeers = *row.to != '\0';
  if (way == "iconv") return hasPeers ? openIconv(row) : Convert();
  if (way == "icu") return hasPeers ? openIcu(row) : Convert();
  for (const Kernels* form : fast::runnableKernels()) {
    if (way == form->name) return row.open(*form);
  }
  return {};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  std::ifstream file(argv[4], std::ios::binary);
  const Bytes text{std::istreambuf_iterator<char>(file), {}};
  for (const Row& row : kRows) {
    if (row.kernel != argv[2]) continue;
    const Bytes input = convertByIconv(kUtf8, row.from, text);
    Bytes output(4 * input.size() + 4096);
    const Convert convert = open(row, argv[1]);
    if (!convert || input.empty()) return 2;
    for (unsigned long rounds = std::strtoul(argv[3], nullptr, 10); rounds != 0; --rounds) {
      if (!convert(input, output)) return 1;
    }
    std::printf("%zu\n", input.size());
    return 0;
  }
  return 2;
}

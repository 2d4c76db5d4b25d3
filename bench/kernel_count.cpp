// Converts one text some times over, by one converter, for an emulator to count the instructions.
//
//   kernel_count WAY KERNEL ROUNDS FILE
//
// WAY is a form of the kernels ("scalar", "neon"), "iconv" of the C library, or "icu". KERNEL is one
// of the list below, which says between which encodings; FILE has the text, in UTF-8. Prints the bytes
// that are converted in one round. What the beginning takes is told apart by counting twice, with
// different ROUNDS.
#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/encconv.h"
#include "encoding/kernels/cpu_dispatch.h"

namespace {

struct Row {
  std::string_view kernel;
  int from, to;
  const char *fromName, *toName;  // for iconv and ICU
};
constexpr Row kRows[] = {
    {"utf8ToUtf16", 65001, 1200, "UTF-8", "UTF-16LE"},
    {"utf16ToUtf8", 1200, 65001, "UTF-16LE", "UTF-8"},
    {"swapUtf16", 1200, 1201, "UTF-16LE", "UTF-16BE"},
    {"utf32ToUtf16", 12000, 1200, "UTF-32LE", "UTF-16LE"},
    {"utf16ToUtf32", 1200, 12000, "UTF-16LE", "UTF-32LE"},
    {"utf8ToUtf32", 65001, 12000, "UTF-8", "UTF-32LE"},
    {"utf32ToUtf8", 12000, 65001, "UTF-32LE", "UTF-8"},
    {"singleByteToUtf16", 20866, 1200, "KOI8-R", "UTF-16LE"},
    {"singleByteToUtf8", 20866, 65001, "KOI8-R", "UTF-8"},
    {"mapBytes", 20866, 1251, "KOI8-R", "WINDOWS-1251"},
    {"utf16ToSingleByte", 1200, 20866, "UTF-16LE", "KOI8-R"},
    {"doubleByteToUtf16", 51932, 1200, "EUC-JP", "UTF-16LE"},
    {"utf16ToDoubleByte", 1200, 51932, "UTF-16LE", "EUC-JP"},
};

using Bytes = std::vector<char>;
using Convert = std::function<bool(const Bytes& in, Bytes& out)>;

Convert openIconv(const Row& row) {
  const iconv_t call = iconv_open(row.toName, row.fromName);
  if (call == reinterpret_cast<iconv_t>(-1)) return {};
  return [call](const Bytes& input, Bytes& output) {
    char* in = const_cast<char*>(input.data());
    char* out = output.data();
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
                    static_cast<std::int32_t>(output.size() / 2), &length, input.data(),
                    static_cast<std::int32_t>(input.size()), &error);
      return U_SUCCESS(error) != 0;
    };
  }
  if (row.kernel == "utf16ToUtf8") {
    return [](const Bytes& input, Bytes& output) {
      UErrorCode error = U_ZERO_ERROR;
      std::int32_t length = 0;
      u_strToUTF8(output.data(), static_cast<std::int32_t>(output.size()), &length,
                  reinterpret_cast<const UChar*>(input.data()),
                  static_cast<std::int32_t>(input.size() / 2), &error);
      return U_SUCCESS(error) != 0;
    };
  }
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const from = ucnv_open(row.fromName, &error);
  UConverter* const to = ucnv_open(row.toName, &error);
  if (U_FAILURE(error)) return {};
  return [from, to](const Bytes& input, Bytes& output) {
    UErrorCode failure = U_ZERO_ERROR;
    const char* in = input.data();
    char* out = output.data();
    UChar pivot[1024];
    UChar *pivotFrom = pivot, *pivotTo = pivot;
    ucnv_convertEx(to, from, &out, output.data() + output.size(), &in, in + input.size(), pivot,
                   &pivotFrom, &pivotTo, pivot + std::size(pivot), 1, 1, &failure);
    return U_SUCCESS(failure) && in == input.data() + input.size();
  };
}

Convert openOurs(const Row& row, const char* form) {
  if (!fast::setKernelsForTesting(form)) return {};
  return [&row](const Bytes& input, Bytes& output) {
    const encconv::IntoResult result =
        encconv::convert_into({input.data(), input.size()}, output.data(), output.size(),
                              encconv::Encoding(row.from), encconv::Encoding(row.to));
    return !result.first_problem;
  };
}

// What only reads has no peers.
Convert openReader(std::string_view kernel, const char* form) {
  if (!fast::setKernelsForTesting(form)) return {};
  return [kernel, &kernels = fast::kernels()](const Bytes& input, Bytes& /*output*/) {
    const auto* const in = reinterpret_cast<const unsigned char*>(input.data());
    const auto* const end = in + input.size();
    if (kernel == "pairedUtf16") return kernels.pairedUtf16(in, end) == end;
    if (kernel == "countByte") return kernels.countByte(in, end, '\n') != 0;
    if (kernel == "countUnit") return kernels.countUnit(in, end, u'\n') != 0;
    if (kernel == "countScalar") return kernels.countScalar(in, end, U'\n') != 0;
    return kernel == "utf8Length" && kernels.utf8Length(in, end) != 0;
  };
}

int run(const char* way, std::string_view kernel, unsigned long rounds, const std::string& text) {
  const Row* row = nullptr;
  for (const Row& each : kRows) row = each.kernel == kernel ? &each : row;
  const int from = row != nullptr ? row->from : kernel == "countScalar" ? 12000 : 1200;
  const std::string source =
      encconv::convert(text, encconv::Encoding(65001), encconv::Encoding(from)).text;
  const Bytes input(source.begin(), source.end());
  Bytes output(4 * input.size() + 64);
  const std::string_view name = way;
  Convert convert;
  if (row == nullptr) {
    convert = openReader(kernel, way);
  } else {
    convert = name == "iconv" ? openIconv(*row)
              : name == "icu" ? openIcu(*row)
                              : openOurs(*row, way);
  }
  if (!convert) return 2;
  for (; rounds != 0; --rounds) {
    if (!convert(input, output)) return 1;
  }
  std::printf("%zu\n", input.size());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  std::ifstream file(argv[4], std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return run(argv[1], argv[2], std::strtoul(argv[3], nullptr, 10), text);
}

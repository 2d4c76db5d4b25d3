#include "encoding/detect/binary_files.h"

namespace detection {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  std::string_view format;
  std::size_t offset = 0;
};

// Formats that files are often given, and those whose beginning has no NUL bytes that would tell.
// None is a beginning that text has: PDF and archives of ar begin with ASCII, but not with prose.
constexpr Signature kSignatures[] = {
    {"\x7F"
     "ELF"sv,
     "ELF"},
    {"\x89PNG\r\n\x1A\n"sv, "PNG"},
    {"GIF87a"sv, "GIF"},
    {"GIF89a"sv, "GIF"},
    {"\xFF\xD8\xFF"sv, "JPEG"},
    {"II*\0"sv, "TIFF"},
    {"MM\0*"sv, "TIFF"},
    {"\0\0\1\0"sv, "icon"},
    {"RIFF"sv, "RIFF"},
    {"OggS"sv, "Ogg"},
    {"ID3\2"sv, "MP3"},
    {"ID3\3"sv, "MP3"},
    {"ID3\4"sv, "MP3"},
    {"fLaC\0"sv, "FLAC"},
    {"MThd\0\0"sv, "MIDI"},
    {"\x1A\x45\xDF\xA3"sv, "Matroska"},
    {"ftyp"sv, "MP4", 4},
    {"%PDF-"sv, "PDF"},
    {"\xF7\2\1\x83"sv, "DVI"},
    {"PK\3\4"sv, "ZIP"},
    {"PK\5\6"sv, "ZIP"},
    {"\x1F\x8B\x08"sv, "gzip"},
    {"\x1F\x9D"sv, "compress"},
    {"1AY&SY"sv, "bzip2", 4},
    {"\xFD"
     "7zXZ\0"sv,
     "xz"},
    {"\x28\xB5\x2F\xFD"sv, "Zstandard"},
    {"\x04\x22\x4D\x18"sv, "LZ4"},
    {"\x5D\0\0"sv, "LZMA"},
    {"7z\xBC\xAF\x27\x1C"sv, "7z"},
    {"Rar!\x1A\x07"sv, "RAR"},
    {"MSCF\0"sv, "cabinet"},
    {"ustar"sv, "tar", 257},
    {"!<arch>\n"sv, "ar archive"},
    {"\xED\xAB\xEE\xDB"sv, "RPM"},
    {"SQLite format 3\0"sv, "SQLite"},
    {"\xDE\x12\x04\x95"sv, "message catalogue"},
    {"\x95\x04\x12\xDE"sv, "message catalogue"},
    {"\r\r\n"sv, "Python bytecode", 1},
    {"\r\n"sv, "Python bytecode", 2},  // with NUL bytes behind it, see below
    {"\xCA\xFE\xBA\xBE"sv, "Java class"},
    {"\xCE\xFA\xED\xFE"sv, "Mach-O"},
    {"\xCF\xFA\xED\xFE"sv, "Mach-O"},
    {"MZ"sv, "Windows program"},  // likewise
    {"\0asm"sv, "WebAssembly"},
    {"BC\xC0\xDE"sv, "LLVM bitcode"},
    {"\x1BLua"sv, "Lua bytecode"},
    {"\0\1\0\0\0"sv, "TrueType"},
    {"OTTO\0"sv, "OpenType"},
    {"ttcf\0"sv, "TrueType"},
    {"wOFF"sv, "WOFF"},
    {"wOF2"sv, "WOFF"},
    {"\x80\1"sv, "PostScript font"},
    {"\1\xFC"
     "p"sv,
     "X11 font"},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "compound document"},
    {"TZif"sv, "time zone"},
    {"\x1A\1"sv, "terminfo"},
    {"\x1E\2"sv, "terminfo"},
    {"PACK\0\0\0"sv, "git pack"},
    {"DIRC\0\0\0"sv, "git index"},
    {"\xFFtOc"sv, "git pack index"},
    {"hsqs"sv, "squashfs"},
};

// Beginnings that text may have as well.
bool needsNul(std::string_view format) {
  return format == "Python bytecode" || format == "Windows program" || format == "RIFF" ||
         format == "MP4" || format == "terminfo" || format == "PostScript font" ||
         format == "WOFF" || format == "squashfs" || format == "compress";
}

}  // namespace

std::string_view binaryFormat(Bytes head) {
  constexpr std::size_t kBeginning = 64;
  const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
  for (const Signature& signature : kSignatures) {
    if (text.size() < signature.offset ||
        !text.substr(signature.offset).starts_with(signature.bytes)) {
      continue;
    }
    if (!needsNul(signature.format) ||
        text.substr(0, kBeginning).find('\0') != std::string_view::npos) {
      return signature.format;
    }
  }
  return {};
}

bool hasTooManyControls(const Sample& sample) {
  // Not counted: tab, line ends, backspace, the shifts and ESC, and the end mark of DOS.
  std::uint64_t controls = 0;
  for (unsigned int byte = 0; byte < 0x20; ++byte) {
    const bool isUsual = (byte >= 0x08 && byte <= 0x0F) || byte == 0x1A || byte == 0x1B;
    if (!isUsual) controls += sample.counts[byte];
  }
  controls += sample.counts[0x7F];
  return controls * 25 > sample.size;
}

}  // namespace detection

// The calls of iconv. They never touch errno but to tell of a failure.
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string_view>

#include "encconv/export.h"
#include "encconv/iconv.h"
#include "encoding/code_page_list.h"
#include "iconv/charset.h"
#include "iconv/conversion.h"
#include "iconv/route.h"

namespace {

using iconv_layer::Conversion;
using iconv_layer::OpenStatus;
using iconv_layer::Route;

constexpr auto kFailed = static_cast<std::size_t>(-1);

iconv_t noDescriptor() { return reinterpret_cast<iconv_t>(-1); }  // NOLINT: as iconv_open says

// What is left of the value that errno had before a call that went well.
class KeptErrno {
 public:
  ~KeptErrno() { m_place = m_value; }
  void fail(int error) { m_value = error; }

 private:
  int& m_place = errno;
  int m_value = m_place;
};

struct Descriptor {
  // Tells a descriptor from one that the C library made by a call of its own.
  static constexpr std::uint64_t kTag = 0x76636E6F63436E45u;
  std::uint64_t tag;
  Conversion conversion;
  bool countsIgnored;  // //IGNORE is no error
};
static_assert(sizeof(Descriptor) < 1024);

Descriptor* descriptorOf(iconv_t cd) {
  if (cd == noDescriptor() || cd == nullptr) return nullptr;
  auto* const descriptor = static_cast<Descriptor*>(cd);
  return descriptor->tag == Descriptor::kTag ? descriptor : nullptr;
}

iconv_t open(const char* toCode, const char* fromCode, bool countsIgnored) {
  KeptErrno kept;
  Route route;
  const OpenStatus status = iconv_layer::findRoute(toCode, fromCode, route);
  void* const memory = status == OpenStatus::kGood ? std::malloc(sizeof(Descriptor)) : nullptr;
  if (memory == nullptr) {
    kept.fail(status == OpenStatus::kUnknownName ? EINVAL : ENOMEM);
    return noDescriptor();
  }
  return new (memory) Descriptor{Descriptor::kTag, Conversion(route), countsIgnored};
}

int close(iconv_t cd) {
  Descriptor* const descriptor = descriptorOf(cd);
  if (descriptor == nullptr) {
    errno = EBADF;
    return -1;
  }
  KeptErrno kept;
  descriptor->tag = 0;
  std::free(descriptor);
  return 0;
}

int errorOf(Conversion::Status status, bool countsIgnored) {
  switch (status) {
    case Conversion::Status::kGood:
      return 0;
    case Conversion::Status::kIgnored:
      return countsIgnored ? 0 : EILSEQ;
    case Conversion::Status::kFull:
      return E2BIG;
    case Conversion::Status::kCut:
      return EINVAL;
    case Conversion::Status::kBad:
      break;
  }
  return EILSEQ;
}

unsigned char* bytesAt(char* text) { return reinterpret_cast<unsigned char*>(text); }

// The text and the room that a call is given, of which either may be missing.
struct Given {
  char** inbuf;
  std::size_t* inLeft;
  char** outbuf;
  std::size_t* outLeft;

  bool hasText() const { return inbuf != nullptr && *inbuf != nullptr; }
  bool hasRoom() const { return outbuf != nullptr && *outbuf != nullptr; }
  Conversion::Place place() const {
    Conversion::Place place{};
    if (hasText()) {
      place.in = bytesAt(*inbuf);
      place.inEnd = place.in + *inLeft;
    }
    if (hasRoom()) {
      place.out = bytesAt(*outbuf);
      place.outEnd = place.out + *outLeft;
    }
    return place;
  }
  // Says how far a call has come.
  void moveTo(const Conversion::Place& place) const {
    if (hasText()) {
      *inLeft = place.left();
      *inbuf += place.in - bytesAt(*inbuf);
    }
    if (hasRoom()) {
      *outLeft = place.room();
      *outbuf += place.out - bytesAt(*outbuf);
    }
  }
};

std::size_t convert(iconv_t cd, const Given& given) {
  Descriptor* const descriptor = descriptorOf(cd);
  if (descriptor == nullptr) {
    errno = EBADF;
    return kFailed;
  }
  Conversion& conversion = descriptor->conversion;
  Conversion::Place place = given.place();
  Conversion::Status status = Conversion::Status::kGood;
  // Nothing in there sets errno, unless memory is short.
  if (given.hasText() && given.hasRoom() && conversion.convertShort(place, status) &&
      status == Conversion::Status::kGood) {
    given.moveTo(place);
    return 0;
  }
  KeptErrno kept;
  std::size_t irreversible = 0;
  if (status == Conversion::Status::kGood) {
    if (given.hasText()) {
      status = conversion.convert(place, irreversible);
    } else if (given.hasRoom()) {
      status = conversion.finish(place);
    } else {
      conversion.restart();
    }
  }
  given.moveTo(place);
  const int error = errorOf(status, descriptor->countsIgnored);
  if (error == 0) return irreversible;
  kept.fail(error);
  return kFailed;
}

int control(iconv_t cd, int request, void* argument) {
  Descriptor* const descriptor = descriptorOf(cd);
  if (descriptor == nullptr) {
    errno = EBADF;
    return -1;
  }
  iconv_layer::Suffixes& suffixes = descriptor->conversion.suffixes();
  const Route& route = descriptor->conversion.route();
  auto* const value = static_cast<int*>(argument);
  switch (request) {
    case ICONV_TRIVIALP:
      *value = route.from.row == route.to.row && route.from.hasMark == route.to.hasMark ? 1 : 0;
      return 0;
    case ICONV_GET_TRANSLITERATE:
      *value = suffixes.transliterates ? 1 : 0;
      return 0;
    case ICONV_SET_TRANSLITERATE:
      suffixes.transliterates = *value != 0;
      return 0;
    case ICONV_GET_DISCARD_ILSEQ:
      *value = suffixes.ignores ? 1 : 0;
      return 0;
    case ICONV_SET_DISCARD_ILSEQ:
      suffixes.ignores = *value != 0;
      return 0;
    default:
      errno = EINVAL;
      return -1;
  }
}

using ListVisitor = int (*)(unsigned int namescount, const char* const* names, void* data);

// A name as a text that ends with 0, behind those before it; null when there is no more room.
const char* keepName(std::string_view name, char*& next, const char* end) {
  if (static_cast<std::size_t>(end - next) <= name.size()) return nullptr;
  char* const kept = next;
  next = std::copy(name.begin(), name.end(), next);
  *next++ = 0;
  return kept;
}

void list(ListVisitor visit, void* data) {
  constexpr std::size_t kMostNames = 64;
  constexpr std::size_t kMostBytes = 2048;
  for (const CharsetNames& charset : streamCodePages()) {
    const char* names[kMostNames];
    char text[kMostBytes];
    char* next = text;
    unsigned int count = 0;
    names[count++] = charset.preferredName.data();
    for (const std::string_view alias : charset.aliases) {
      const char* const name = keepName(alias, next, text + sizeof text);
      if (name != nullptr && count < kMostNames) names[count++] = name;
    }
    if (visit(count, names, data) != 0) return;
  }
}

}  // namespace

extern "C" {

ENCCONV_API iconv_t iconv_open(const char* tocode, const char* fromcode) {
  return open(tocode, fromcode, false);
}
ENCCONV_API std::size_t iconv(iconv_t cd, char** inbuf, std::size_t* inbytesleft, char** outbuf,
                              std::size_t* outbytesleft) {
  return convert(cd, {inbuf, inbytesleft, outbuf, outbytesleft});
}
ENCCONV_API int iconv_close(iconv_t cd) { return close(cd); }

ENCCONV_API iconv_t libiconv_open(const char* tocode, const char* fromcode) {
  return open(tocode, fromcode, true);
}
ENCCONV_API std::size_t libiconv(iconv_t cd, char** inbuf, std::size_t* inbytesleft, char** outbuf,
                                 std::size_t* outbytesleft) {
  return convert(cd, {inbuf, inbytesleft, outbuf, outbytesleft});
}
ENCCONV_API int libiconv_close(iconv_t cd) { return close(cd); }

ENCCONV_API int iconvctl(iconv_t cd, int request, void* argument) {
  return control(cd, request, argument);
}
ENCCONV_API int libiconvctl(iconv_t cd, int request, void* argument) {
  return control(cd, request, argument);
}

ENCCONV_API void iconvlist(ListVisitor visit, void* data) { list(visit, data); }
ENCCONV_API void libiconvlist(ListVisitor visit, void* data) { list(visit, data); }

ENCCONV_API const char* iconv_canonicalize(const char* name) {
  return iconv_layer::canonicalName(name);
}

}  // extern "C"

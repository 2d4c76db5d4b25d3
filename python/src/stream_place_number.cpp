#include "python/src/stream_place_number.h"

#include <cstring>
#include <string>

#include "encoding/codecs/python_iso2022.h"

namespace {

// What most encodings need comes first: text files of Python want numbers of 31 bits to tell where
// they are.
constexpr std::size_t kBytes = 4 + 4 + 4 + 8 * 4;

enum Flag : unsigned char { kBegun = 1, kOtherOrder = 2, kShiftedOut = 4, kHeaderWritten = 8 };

void store(std::uint32_t value, unsigned char* to) {
  for (int i = 0; i < 4; ++i) to[i] = static_cast<unsigned char>(value >> (8 * i));
}
std::uint32_t load(const unsigned char* from) {
  return from[0] | from[1] * 0x100u | from[2] * 0x10000u | from[3] * 0x1000000u;
}

}  // namespace

PyObject* numberOfPlace(const EncodingEntry& entry, const StreamPlace& place) {
  const bool isBegun = place.hasBegun && (entry.hasMark || entry.row->writesMark);
  const CodecState& state = place.state;
  unsigned char bytes[kBytes] = {};
  bytes[0] = static_cast<unsigned char>(
      (isBegun ? kBegun : 0) | (place.isOtherOrder ? kOtherOrder : 0) |
      (state.shiftedOut ? kShiftedOut : 0) | (state.headerWritten ? kHeaderWritten : 0));
  bytes[1] = state.set;
  bytes[2] = state.bitCount;
  store(state.bits, bytes + 4);
  store(place.repeated, bytes + 8);
  for (std::size_t i = 0; i < state.windows.size(); ++i)
    store(state.windows[i], bytes + 12 + 4 * i);
  std::size_t count = kBytes;
  while (count != 0 && bytes[count - 1] == 0) --count;
  if (count == 0) return PyLong_FromLong(0);
  return PyObject_CallMethod(reinterpret_cast<PyObject*>(&PyLong_Type), "from_bytes", "y#s", bytes,
                             pySize(count), "little");
}

bool placeOfNumber(const EncodingEntry& entry, PyObject* number, StreamPlace& place) {
  if (!PyLong_Check(number)) {
    PyErr_SetString(PyExc_TypeError, "the state must be an int");
    return false;
  }
  place = {};
  const long small = PyLong_AsLong(number);
  if (small == 0) return true;
  PyErr_Clear();
  const Reference packed(PyObject_CallMethod(number, "to_bytes", "ns", pySize(kBytes), "little"));
  if (packed == nullptr) return false;
  unsigned char bytes[kBytes];
  std::memcpy(bytes, PyBytes_AS_STRING(packed.get()), kBytes);
  place.hasBegun = true;
  place.isOtherOrder = (bytes[0] & kOtherOrder) != 0;
  place.repeated = load(bytes + 8);
  if (entry.isStateless) return true;
  place.state.shiftedOut = (bytes[0] & kShiftedOut) != 0;
  place.state.headerWritten = (bytes[0] & kHeaderWritten) != 0;
  place.state.set = bytes[1];
  place.state.bitCount = bytes[2];
  place.state.bits = load(bytes + 4);
  for (std::size_t i = 0; i < place.state.windows.size(); ++i) {
    place.state.windows[i] = load(bytes + 12 + 4 * i);
  }
  return true;
}

// ---- The encoders of Python. ----

namespace {

// The marks of G0 to G3, of which those of G0 and G1 are there from the beginning, and flags.
constexpr int kPythonPlaces = 4, kPythonInitialPlaces = 2;
constexpr unsigned int kShifted = 1, kInEscape = 2;
// Of encodings that begin with a mark. 0, which files set where they append, is behind it.
constexpr long kMarkFollows = 1;

// Whether a text begins with a header that is no mark, as in ISO-2022-KR.
bool writesHeader(const EncodingEntry& entry) {
  const Codec* const codec = entry.row->codec;
  return codec != nullptr && isStateOf(*codec, {.headerWritten = true}, true);
}

// The other way round for the number: 0 is behind the header as well.
StreamPlace withHeaderTurned(StreamPlace place) {
  place.state.headerWritten = !place.state.headerWritten;
  place.hasBegun = place.state.headerWritten;
  return place;
}

}  // namespace

bool hasPythonState(const EncodingEntry& entry) {
  const Codec* const codec = entry.row->codec;
  if (codec == nullptr) return false;
  return codec->write == Codec::Convert(writePythonIso2022, codec->write.parameters());
}

PyObject* numberOfPythonPlace(const EncodingEntry& entry, const StreamPlace& place) {
  if (entry.row->writesMark) return PyLong_FromLong(place.hasBegun ? 0 : kMarkFollows);
  if (writesHeader(entry)) return numberOfPlace(entry, withHeaderTurned(place));
  if (!hasPythonState(entry)) return numberOfPlace(entry, place);
  const CodecState& state = place.state;
  unsigned long long number = 0;
  for (int i = 0; i < kPythonPlaces; ++i) {
    unsigned long long mark = state.bits >> 8 * i & 0xFF;
    if (mark == 0 && i < kPythonInitialPlaces) mark = kPythonAsciiMark;
    number |= mark << 8 * i;
  }
  const unsigned int flags =
      (state.shiftedOut ? kShifted : 0) | (state.set == kPythonInEscape ? kInEscape : 0);
  number |= static_cast<unsigned long long>(flags) << 8 * kPythonPlaces;
  return PyLong_FromUnsignedLongLong(number);
}

bool placeOfPythonNumber(const EncodingEntry& entry, PyObject* number, StreamPlace& place) {
  if (entry.row->writesMark && PyLong_Check(number)) {
    place = {};
    place.hasBegun = PyLong_AsLong(number) != kMarkFollows;
    return PyErr_Occurred() == nullptr;
  }
  if (writesHeader(entry)) {
    if (!placeOfNumber(entry, number, place)) return false;
    place = withHeaderTurned(place);
    return true;
  }
  if (!hasPythonState(entry) || !PyLong_Check(number)) return placeOfNumber(entry, number, place);
  const unsigned long long packed = PyLong_AsUnsignedLongLong(number);
  if (PyErr_Occurred() != nullptr) return false;
  place = {};
  place.hasBegun = packed != 0;
  for (int i = 0; i < kPythonPlaces; ++i) {
    const auto mark = static_cast<std::uint32_t>(packed >> 8 * i & 0xFF);
    if (mark != kPythonAsciiMark) place.state.bits |= mark << 8 * i;
  }
  const auto flags = static_cast<unsigned int>(packed >> 8 * kPythonPlaces);
  place.state.shiftedOut = (flags & kShifted) != 0;
  place.state.set = (flags & kInEscape) != 0 ? kPythonInEscape : std::uint8_t{0};
  return true;
}

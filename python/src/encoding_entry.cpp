#include "python/src/encoding_entry.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_names.h"
#include "encoding/special_code_pages.h"
#include "support/zv_base.h"

const HostUnits kHostUnits =
    zvIsBigEndian() ? HostUnits{819, 1201, 12001} : HostUnits{819, 1200, 12000};

namespace {

bool isStatelessRow(const EncodingRow& row) {
  if (row.reordersMacArabic) return false;
  return row.form != EncodingForm::kCodec || row.codec->isStateless;
}

// Whether what one encoding has for 00 to 7F, in a row, another has for the same as ASCII.
bool keepsAscii(int from, int to, std::size_t unitBytes, bool isReading) {
  constexpr unsigned char kCount = 0x80;
  std::string ascii;
  std::string units;
  for (unsigned char i = 0; i < kCount; ++i) {
    ascii += static_cast<char>(i);
    units += static_cast<char>(i);
    units.append(unitBytes - 1, '\0');
  }
  const std::string& source = isReading ? ascii : units;
  StreamSettings settings;
  settings.from = from;
  settings.to = to;
  StreamConverter stream;
  DataBuffer text;
  const bool isConverted = stream.begin(settings) == StreamStatus::kGood &&
                           stream.push(reinterpret_cast<const unsigned char*>(source.data()),
                                       source.size(), text) == StreamStatus::kGood;
  const std::string_view found(reinterpret_cast<const char*>(text.getData2()), text.getSize());
  return isConverted && found == (isReading ? units : ascii);
}

// Entries by code page; they stay where they are.
std::map<int, EncodingEntry>& entries() {
  static std::map<int, EncodingEntry> all;
  return all;
}

EncodingEntry* entryOf(int codePage) {
  const auto known = entries().find(codePage);
  if (known != entries().end()) return &known->second;
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row == nullptr || row->name[0] == '\0') return nullptr;
  EncodingEntry entry;
  entry.codePage = codePage;
  entry.row = row;
  entry.isSingleByte = row->form == EncodingForm::kSingleByte;
  entry.isStateless = isStatelessRow(*row);
  entry.mayHavePairs = !hasTable(*row);
  entry.hasMark = !marksOf(*row).empty();
  entry.readsAscii = entry.isStateless && keepsAscii(codePage, kUtf16Le, 2, true);
  return &entries().emplace(codePage, entry).first->second;
}

EncodingEntry* lookUp(PyObject* encoding) {
  if (PyLong_Check(encoding)) {
    int overflow = 0;
    const long number = PyLong_AsLongAndOverflow(encoding, &overflow);
    const bool isNumber = overflow == 0 && std::in_range<int>(number);
    EncodingEntry* const entry = isNumber ? entryOf(static_cast<int>(number)) : nullptr;
    if (entry == nullptr && PyErr_Occurred() == nullptr) {
      PyErr_Format(PyExc_LookupError, "unknown encoding: %R", encoding);
    }
    return entry;
  }
  if (!PyUnicode_Check(encoding)) {
    PyErr_Format(PyExc_TypeError, "encoding must be str or int, not %.100s",
                 Py_TYPE(encoding)->tp_name);
    return nullptr;
  }
  Py_ssize_t size = 0;
  const char* const name = PyUnicode_AsUTF8AndSize(encoding, &size);
  if (name == nullptr) return nullptr;
  const int codePage = streamCodePage({name, static_cast<std::size_t>(size)});
  EncodingEntry* const entry = codePage == 0 ? nullptr : entryOf(codePage);
  if (entry == nullptr) PyErr_Format(PyExc_LookupError, "unknown encoding: %U", encoding);
  return entry;
}

// The names that were seen last, by the object that they are: a name in a program's text is one
// object for all its calls.
struct SeenName {
  PyObject* name = nullptr;  // owned, so that no other object comes to its address
  EncodingEntry* entry = nullptr;
};
constexpr std::size_t kSeenNames = 64;
std::array<SeenName, kSeenNames> g_seen;

std::vector<std::unique_ptr<StreamConverter>>& idleStreams() {
  static std::vector<std::unique_ptr<StreamConverter>> idle;
  return idle;
}

}  // namespace

bool EncodingEntry::openReadingFirst() {
  reading = fast::openPlan(codePage, kHostUnits.utf16, fast::Reader::kStream);
  if (reading == nullptr) PyErr_NoMemory();
  const bool isTable = isSingleByte && isStateless && codePage != kHostUnits.bytes;
  if (reading != nullptr && isTable && reading->decoding.form == EncodingForm::kSingleByte) {
    readingLatin1 = fast::openPlan(codePage, kHostUnits.bytes, fast::Reader::kStream);
  }
  return reading != nullptr;
}

bool EncodingEntry::openWritingFirst() {
  if (!isStreamTarget(codePage)) {
    PyErr_Format(PyExc_LookupError, "encoding can only be read: %s", row->name);
    return false;
  }
  writing1 = fast::openPlan(kHostUnits.bytes, codePage, fast::Reader::kStream);
  writing2 = fast::openPlan(kHostUnits.utf16, codePage, fast::Reader::kStream);
  if (writing1 == nullptr || writing2 == nullptr) {
    writing2 = nullptr;
    PyErr_NoMemory();
    return false;
  }
  writesAscii = readsAscii && keepsAscii(kUtf16Le, codePage, 2, false);
  return writing2 != nullptr;
}

EncodingEntry* findEntry(PyObject* encoding) {
  const std::size_t place = reinterpret_cast<std::uintptr_t>(encoding) / 16 % kSeenNames;
  SeenName& seen = g_seen[place];
  if (seen.name == encoding) return seen.entry;
  EncodingEntry* const entry = lookUp(encoding);
  if (entry == nullptr || !PyUnicode_CheckExact(encoding)) return entry;
  Py_INCREF(encoding);
  Py_XSETREF(seen.name, encoding);
  seen.entry = entry;
  return entry;
}

BorrowedStream::BorrowedStream() {
  auto& idle = idleStreams();
  if (idle.empty()) {
    m_stream = new StreamConverter;
    return;
  }
  m_stream = idle.back().release();
  idle.pop_back();
}

BorrowedStream::~BorrowedStream() {
  constexpr std::size_t kMostIdle = 4;
  std::unique_ptr<StreamConverter> stream(m_stream);
  if (idleStreams().size() < kMostIdle) idleStreams().push_back(std::move(stream));
}

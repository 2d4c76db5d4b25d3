// A program whose own classes and functions have the names of the engine's, and are something else:
// neither may be taken for the other.
#include <encconv/encconv.h>
#include <encconv/encconv_c.h>

#include <cstdint>
#include <iostream>

int g_calls = 0;

struct DataBuffer {
  bool append(const void* data, unsigned int length);
  bool grow(unsigned int size);
  void clear();
  ~DataBuffer();
};
bool DataBuffer::append(const void*, unsigned int) { return ++g_calls != 0; }
bool DataBuffer::grow(unsigned int) { return ++g_calls != 0; }
void DataBuffer::clear() { ++g_calls; }
DataBuffer::~DataBuffer() { ++g_calls; }

class StreamConverter {
 public:
  StreamConverter();
  virtual ~StreamConverter() = default;
  std::uint64_t errorCount() const;
};
StreamConverter::StreamConverter() { ++g_calls; }
std::uint64_t StreamConverter::errorCount() const { return 4711; }

// Inline, of which the linker keeps one for all that have the name.
struct Output {
  virtual ~Output() { ++g_calls; }
  virtual bool append(const void*, unsigned long) { return ++g_calls == 0; }
};
inline const char* findEncodingRow(int) { return ++g_calls != 0 ? "mine" : ""; }
int streamCodePage = 3;

int main() {
  std::string text;
  for (int i = 0; i < 50000; ++i) text += "\x93\xFA\x85\x40";
  encconv::Options options;
  options.on_error = encconv::OnError::hex;
  const encconv::Result result = encconv::convert(text, "shift_jis", 50225, options);
  encconv::Result utf8 = encconv::to_utf8(text.substr(0, 2), 932);
  bool ok = result && result.problem_count == 50000 && utf8.text == "\xE6\x97\xA5";
  encconv_stream* const stream = encconv_open(932, 65001, nullptr, nullptr);
  ok = ok && encconv_push(stream, text.data(), 2) == ENCCONV_OK;
  encconv_close(stream);
  ok = ok && g_calls == 0;
  {
    DataBuffer buffer;
    ok = ok && buffer.append("", 0) && buffer.grow(1) && StreamConverter().errorCount() == 4711 &&
         *findEncodingRow(932) == 'm' && !Output().append("", 0) && streamCodePage == 3;
  }
  ok = ok && g_calls == 7;
  std::cout << (ok ? "ok" : "wrong") << "\n";
  return ok ? 0 : 1;
}

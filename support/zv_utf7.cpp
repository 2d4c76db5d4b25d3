// _zvUtf: UTF-16 in host order to and from UTF-7.
#include "encoding/codecs/utf7.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace {

// Appends UTF-16 with the bytes of each unit the other way round; an odd byte at the end stays.
void appendSwapped(const DataBuffer& units, DataBuffer& out) {
  const unsigned char* const data = units.getData2();
  const unsigned int size = units.getSize(), whole = size & ~1u;
  for (unsigned int i = 0; i < size; ++i) out.appendChar(data[i < whole ? i ^ 1 : i]);
}

}  // namespace

bool _zvUtf::Utf16XEToUtf7(DataBuffer& in, DataBuffer& out) {
  DataBuffer swapped;
  if (zvIsBigEndian()) appendSwapped(in, swapped);
  if (swapped.hasFailed()) out.latchFailure();
  const DataBuffer& units = zvIsBigEndian() ? swapped : in;
  return convertWhole(kUtf7Codec.write, units.getData2(), units.getSize(), out);
}

bool _zvUtf::Utf7ToUtf16_xe(DataBuffer& in, DataBuffer& out) {
  if (!zvIsBigEndian()) return convertWhole(kUtf7Codec.read, in.getData2(), in.getSize(), out);
  DataBuffer units;
  const bool ok = convertWhole(kUtf7Codec.read, in.getData2(), in.getSize(), units);
  appendSwapped(units, out);
  if (units.hasFailed()) out.latchFailure();
  return ok && !out.hasFailed();
}

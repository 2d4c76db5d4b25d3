// The loops over bytes that all conversions are made of: pure functions, without objects, logs or
// errors.
#ifndef ENCODING_KERNELS_KERNELS_H_
#define ENCODING_KERNELS_KERNELS_H_

#include <cstdint>

#include "encoding/tables/kernel_tables.h"

// Each kernel reads [in, inEnd) and writes [out, outEnd), and nothing outside of them; the ranges
// do not overlap. It goes on for as long as it can and returns how far it came. It stops for one of
// three reasons only:
//   - the input is used up (in == inEnd);
//   - fewer than kKernelSlack bytes of output space are left;
//   - the character at the returned place is unmapped, malformed, cut short by inEnd, or a special
//     case named with the kernel.
// So a caller that finds input left and at least kKernelSlack bytes of space has to treat the next
// character itself, and may call again behind it. The returned place always lies between two
// characters. Bytes of the output range behind the returned place may have been overwritten.
//
// UTF-16 is little endian here, on every host and at any address; an odd last byte is cut short
// input. "Unit 0" below is U+0000.
namespace fast {

inline constexpr unsigned int kKernelSlack = 192;

struct KernelResult {
  const unsigned char* in;  // first byte that was not consumed
  unsigned char* out;       // first byte that was not written
};

using Kernel = KernelResult(const unsigned char* in, const unsigned char* inEnd, unsigned char* out,
                            unsigned char* outEnd);
template <class Table>
using TableKernel = KernelResult(const Table& table, const unsigned char* in,
                                 const unsigned char* inEnd, unsigned char* out,
                                 unsigned char* outEnd);
using ShiftKernel = KernelResult(bool& inPairs, const unsigned char* in, const unsigned char* inEnd,
                                 unsigned char* out, unsigned char* outEnd);

// Read-only kernels, for inputs of any size.
using Scan = const unsigned char*(const unsigned char* in, const unsigned char* inEnd);
template <class Value>
using Count = std::uint64_t(const unsigned char* in, const unsigned char* inEnd, Value value);
using Measure = std::uint64_t(const unsigned char* in, const unsigned char* inEnd);

// One form of all kernels. All forms give the same results, save for where they stop for lack of
// output space.
struct Kernels {
  const char* name;

  // Byte 00 becomes unit 0. Stops before malformed sequences and three-byte forms of surrogates.
  Kernel* utf8ToUtf16;
  // Pairs become four bytes. Stops before unit 0 and before surrogates that are not a pair.
  Kernel* utf16ToUtf8;
  // Swaps the bytes of each unit.
  Kernel* swapUtf16;

  // UTF-32 little endian. As input it stops the kernel before a unit that is cut short, a surrogate
  // and a value above 10FFFF; other input stops it as with the kernels above. U+0000 passes in all.
  Kernel* utf32ToUtf16;
  Kernel* utf16ToUtf32;
  Kernel* utf8ToUtf32;
  Kernel* utf32ToUtf8;

  TableKernel<SingleByteDecoder>* singleByteToUtf16;
  // Stops before bytes that stand for unit 0, as utf16ToUtf8 does.
  TableKernel<SingleByteDecoder>* singleByteToUtf8;
  TableKernel<ByteMap>* mapBytes;
  TableKernel<SingleByteEncoder>* utf16ToSingleByte;
  TableKernel<DoubleByteDecoder>* doubleByteToUtf16;
  TableKernel<DoubleByteEncoder>* utf16ToDoubleByte;

  // Of text in seven bits in which SO and SI turn to pairs and back: pairs get their high bits, the
  // shifts go. Stops before ESC, bytes from 80, and pairs other than 21 or 30..7E, 21..7E. inPairs
  // is the state at in, and becomes that at the returned place.
  ShiftKernel* unshiftPairs;

  // The first surrogate that is not of a pair (the upper half of one at the end included) or an odd
  // last byte; inEnd when there is neither.
  Scan* pairedUtf16;
  // The first byte of what stops utf8ToUtf16; inEnd when nothing does.
  Scan* wellFormedUtf8;

  // How many bytes, or little-endian units of 16 or 32 bits, have a value; of a text that is big
  // endian, by the value with its bytes swapped. What is left of a unit at the end does not count.
  Count<std::uint8_t>* countByte;
  Count<std::uint16_t>* countUnit;
  Count<std::uint32_t>* countScalar;

  // How many bytes UTF-16 has as UTF-8, each surrogate standing for half of a pair.
  Measure* utf8Length;
};

// The form that is there for every processor, and is the reference of the others.
const Kernels& scalarKernels();

}  // namespace fast

#endif  // ENCODING_KERNELS_KERNELS_H_

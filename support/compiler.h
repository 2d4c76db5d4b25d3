// Every extension of a compiler that the sources use, by a name that says what it is for. g++ and
// clang have them all; a compiler that has not needs its own forms here.
//
// The public headers have theirs in include/encconv/export.h, and what processors have is in
// encoding/kernels, in a folder for each.
#ifndef SUPPORT_COMPILER_H_
#define SUPPORT_COMPILER_H_

#include <cstdint>

#if defined(__GNUC__)

// In front of a function: it is never copied into what calls it; it always is; all that it calls is
// copied into it. Speed alone depends on these.
#define COMPILER_NO_INLINE [[gnu::noinline]]
#define COMPILER_INLINE [[gnu::always_inline]]
#define COMPILER_FLATTEN [[gnu::flatten]]
// In front of a function: it is called when the library that it is in has been loaded.
#define COMPILER_AT_LOAD [[gnu::constructor]]
// Has the memory at an address fetched, which will be written.
#define COMPILER_EXPECT_WRITE(address) __builtin_prefetch(address, 1)
// Whether the processor has something, by its usual name in lower case.
#define COMPILER_CPU_HAS(name) __builtin_cpu_supports(name)
// Bytes in the other order.
inline std::uint32_t compilerSwapBytes(std::uint32_t number) { return __builtin_bswap32(number); }
inline std::uint64_t compilerSwapBytes(std::uint64_t number) { return __builtin_bswap64(number); }
#if defined(__SIZEOF_INT128__)
// An integer of 128 bits, where processors have a word of 64.
__extension__ typedef unsigned __int128 CompilerUint128;
#endif

// Lanes of a type, kBytes long together: CompilerVector<T, kBytes>::Type. With it come operators
// lane by lane, comparisons whose lanes have all bits set or none, the choice by ?:, and casts
// between vectors of one length; lanes.h and pair_runs.h use these, and everything else lanes.h.
template <class T, unsigned int kBytes>
struct CompilerVector {
  typedef T Type __attribute__((vector_size(kBytes)));
};
// The lanes of two vectors whose numbers follow.
#define COMPILER_SHUFFLE(...) __builtin_shufflevector(__VA_ARGS__)

#elif defined(_MSC_VER)

#include <stdlib.h>

#define COMPILER_NO_INLINE [[msvc::noinline]]
#define COMPILER_INLINE [[msvc::forceinline]]
#define COMPILER_FLATTEN [[msvc::flatten]]
#define COMPILER_EXPECT_WRITE(address) static_cast<void>(address)
#define COMPILER_CPU_HAS(name) false
inline std::uint32_t compilerSwapBytes(std::uint32_t number) { return _byteswap_ulong(number); }
inline std::uint64_t compilerSwapBytes(std::uint64_t number) { return _byteswap_uint64(number); }
#error "CompilerVector has no form for this compiler yet, nor has COMPILER_SHUFFLE"

#else
#error "support/compiler.h does not know this compiler"
#endif

#endif  // SUPPORT_COMPILER_H_

// The contestants: the ways that people use this library, and the peers.
#ifndef BENCH_CONTESTANTS_H_
#define BENCH_CONTESTANTS_H_

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

// What is measured; an entry of the tables says in which modes it takes part.
enum Mode : unsigned {
  kSpeed = 1,    // whole texts that are clean
  kLarge = 2,    // a text and a large one
  kShort = 4,    // texts of a few bytes, over and over
  kDrop = 8,     // whole texts; what the target lacks is dropped
  kBad = 16,     // a clean text and one with malformed or unmappable pieces
  kFirst = 32,   // the first text of a process
  kMemory = 64,  // what is allocated
  kFile = 128,   // a process that converts a file
  kStart = 256,  // a process that has next to nothing to do
  kCount = 512   // instructions, by callgrind
};

struct Encoding {
  int codePage;
  std::string iconv, icu, encodingRs;  // the peers' names for it; empty: the peer is not asked
};

// What a contestant has to convert.
struct Task {
  Encoding from, to;
  std::string treatment;  // as encconv::parse_on_error() takes it
  std::size_t longest;    // bytes of the longest text
  std::string file;       // the first text; for processes
};

// Converts a whole text (aligned for UTF-16 and UTF-32) and, when asked to, appends the output to
// copy. False when the converter stopped at something.
using Convert = std::function<bool(std::string_view input, std::string* copy)>;

// The "treatment" of an entry whose output is not compared with any other's.
inline constexpr const char* kOwnOutput = "-";

struct Entry {
  const char* name;  // two ways of one peer may share it; the better result counts
  unsigned modes;
  Convert (*open)(const Task& task);  // returns nothing when the pair or treatment is not known
  const char* treatment = "";         // if it is not the mode's
  bool holdsOutput = true;            // at the end the whole output is in memory
};

std::span<const Entry> ownEntries();   // ours, in own.cpp; the first is the reference for outputs
std::span<const Entry> peerEntries();  // in peers.cpp

// A process with its standard output thrown away, or read for copy.
Convert openProcess(std::initializer_list<std::string> command);

#endif  // BENCH_CONTESTANTS_H_

// The contestants: this engine and its peers behind one interface.
#ifndef BENCH_CONVERTERS_H_
#define BENCH_CONVERTERS_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct Encoding {
  int codePage;
  std::string iconv, icu, encodingRs;  // the peers' names for it; empty: the peer is not asked
};

class Converter {
 public:
  virtual ~Converter() = default;
  // Converts a whole text (aligned for UTF-16 and UTF-32), the output replacing the last one's.
  // False when the converter stopped at something.
  virtual bool convert(std::string_view input) = 0;
  virtual std::string_view output() const = 0;
  // Closes and opens the converter, for callers that need it for a single text.
  virtual void reopen() = 0;

  const char* name = "";  // of the contestant; two ways of one peer have two names
};

// Every converter that knows both encodings, ours first, open and with room for capacity bytes of
// output. Peers that lack the pair are left out. The encodings outlive the converters.
std::vector<std::unique_ptr<Converter>> openConverters(const Encoding& from, const Encoding& to,
                                                       std::size_t capacity);

// This engine alone, with an error action; action 1 writes a question mark.
std::unique_ptr<Converter> openEngine(const Encoding& from, const Encoding& to, int errorAction);

#endif  // BENCH_CONVERTERS_H_

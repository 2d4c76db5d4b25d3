// --records, --to-records and --fields: conversions whose input or output is divided into records.
#ifndef APPS_ENCCONV_RECORD_CONVERSION_H_
#define APPS_ENCCONV_RECORD_CONVERSION_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "apps/encconv/options.h"

namespace tool {

// The conversion of one input: records to lines, to rows of a table or to other records, and lines
// or rows to records.
class RecordConversion {
 public:
  // Is told of each problem, with its place in the input.
  using Handler = std::function<void(const encconv::RecordProblem&)>;

  // isFirst: the output begins with this input. Null, with the reason in why, when it cannot be
  // done. options must outlive the object.
  static std::unique_ptr<RecordConversion> make(const Options& options, int fromCodePage,
                                                bool isFirst, Handler handler, std::string& why);
  virtual ~RecordConversion() = default;

  // Whether whole records, converted in parts, give what they give together.
  static bool canDivide(const Options& options);

  // Appends to out what the next bytes of the input become. False when a problem ends it.
  virtual bool push(std::string_view piece, bool isLast, std::string& out) = 0;
  // How many records, lines or rows there were.
  virtual std::uint64_t count() const = 0;
};

// What --fields names, a file or the fields themselves, into options.layout. False with the reason
// in why.
bool readLayout(Options& options, std::string& why);

}  // namespace tool

#endif  // APPS_ENCCONV_RECORD_CONVERSION_H_

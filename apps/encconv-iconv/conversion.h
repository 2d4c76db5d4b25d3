// Conversion: files through a descriptor of iconv, in constant memory.
#ifndef APPS_ENCCONV_ICONV_CONVERSION_H_
#define APPS_ENCCONV_ICONV_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "apps/encconv-iconv/command_line.h"
#include "encconv/iconv.h"

namespace iconv_command {

// One thread uses an object, for one run of the program.
class Conversion {
 public:
  explicit Conversion(const Options& options) : m_options(options) {}
  ~Conversion();
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  // Converts all files into the output, and says what is wrong. Returns the exit status.
  int run();

 private:
  bool open();
  bool convertNamed(const std::string& name);
  bool convertFile(int file);
  bool convertBlock(bool isLast);
  bool endText();
  bool write(const char* end);
  bool write(const char* bytes, std::size_t count);
  bool writeHeld();
  bool isOutput(const std::string& name) const;
  bool readOn(int file, bool& isEnd);
  bool closeOutput();

  const Options& m_options;
  iconv_t m_descriptor = nullptr;
  bool m_ignores = false;         // what is invalid does not end the text
  std::FILE* m_output = nullptr;  // opened for the first bytes
  bool m_isHeld = false;  // nothing is written until all inputs are read that are the output
  std::string m_held;     // what is to be written then
  int m_status = 0;

  // The file at hand.
  std::vector<char> m_input;     // what was read and is not converted yet
  std::uint64_t m_position = 0;  // where that begins
  bool m_hasIgnored = false;
  std::vector<char> m_written;
};

}  // namespace iconv_command

#endif  // APPS_ENCCONV_ICONV_CONVERSION_H_

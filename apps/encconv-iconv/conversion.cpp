#include "apps/encconv-iconv/conversion.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace iconv_command {
namespace {

constexpr std::size_t kBlock = 64u << 10;
// So large that a block fits nearly always, as a call tells of what it left out only if it does.
constexpr std::size_t kRoom = 8 * kBlock;
constexpr auto kFailed = static_cast<std::size_t>(-1);

}  // namespace

Conversion::~Conversion() {
  if (m_descriptor != nullptr) iconv_close(m_descriptor);
}

int Conversion::run() {
  if (!open()) return 1;
  std::vector<std::string> files = m_options.files;
  if (files.empty()) files.emplace_back("-");
  // Once the output is opened, what is not read yet of its text is lost.
  std::size_t held = files.size();
  while (held != 0 && !isOutput(files[held - 1])) --held;
  m_isHeld = held != 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (m_options.isVerbose && !m_options.files.empty()) {
      std::fprintf(stderr, "%s:\n", files[i].c_str());
    }
    if (convertNamed(files[i]) && (i + 1 != held || writeHeld())) continue;
    m_status = 1;
    break;
  }
  if (!writeHeld() || !closeOutput()) m_status = 1;
  return m_status;
}

bool Conversion::open() {
  m_written.resize(kRoom);
  const iconv_t descriptor = iconv_open(m_options.to.c_str(), m_options.from.c_str());
  if (descriptor == reinterpret_cast<iconv_t>(-1)) {  // NOLINT: as iconv_open says
    say("failed to start conversion processing");
    return false;
  }
  m_descriptor = descriptor;
  int ignores = m_options.omitsInvalid ? 1 : 0;
  if (ignores != 0) iconvctl(m_descriptor, ICONV_SET_DISCARD_ILSEQ, &ignores);
  iconvctl(m_descriptor, ICONV_GET_DISCARD_ILSEQ, &ignores);
  m_ignores = ignores != 0;
  return true;
}

// False when the files behind it are not to be converted. One that cannot be opened is passed over.
bool Conversion::convertNamed(const std::string& name) {
  if (name == "-") return convertFile(STDIN_FILENO);
  const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    say("cannot open input file `" + name + "'", errno);
    m_status = 1;
    return true;
  }
  const bool isConverted = convertFile(file);
  ::close(file);
  return isConverted;
}

bool Conversion::convertFile(int file) {
  m_input.clear();
  m_position = 0;
  m_hasIgnored = false;
  bool isEnd = false;
  while (!isEnd) {
    if (!readOn(file, isEnd) || !convertBlock(isEnd)) return false;
  }
  if (!endText()) return false;
  if (!m_hasIgnored || m_options.omitsInvalid) return true;
  say("illegal input sequence at position " + std::to_string(m_position));
  return false;
}

bool Conversion::isOutput(const std::string& name) const {
  struct stat input, output;
  const int found = name == "-" ? ::fstat(STDIN_FILENO, &input) : ::stat(name.c_str(), &input);
  return found == 0 && !m_options.output.empty() &&
         ::stat(m_options.output.c_str(), &output) == 0 && input.st_dev == output.st_dev &&
         input.st_ino == output.st_ino && S_ISREG(input.st_mode);
}

bool Conversion::readOn(int file, bool& isEnd) {
  const std::size_t size = m_input.size();
  m_input.resize(size + kBlock);
  ssize_t count;
  do {
    count = ::read(file, m_input.data() + size, kBlock);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    say("error while reading the input", errno);
    return false;
  }
  m_input.resize(size + static_cast<std::size_t>(count));
  isEnd = count == 0;
  return true;
}

// Converts what was read, but for a character that may go on in the next block.
bool Conversion::convertBlock(bool isLast) {
  char* in = m_input.data();
  std::size_t left = m_input.size();
  bool isCut = false;
  while (left != 0 && !isCut) {
    const std::size_t before = left;
    char* out = m_written.data();
    std::size_t room = m_written.size();
    const std::size_t result = iconv(m_descriptor, &in, &left, &out, &room);
    const int error = result == kFailed ? errno : 0;
    if (!write(out)) return false;
    if (error == EILSEQ && !m_ignores) {
      const std::uint64_t position = m_position + (m_input.size() - left);
      say("illegal input sequence at position " + std::to_string(position));
      return false;
    }
    m_hasIgnored = m_hasIgnored || error == EILSEQ;
    const bool isStuck = left == before && error != E2BIG;
    isCut = error == EINVAL || isStuck;
  }
  m_position += m_input.size() - left;
  m_input.erase(m_input.begin(), m_input.end() - static_cast<std::ptrdiff_t>(left));
  if (!isLast || left == 0) return true;
  say("incomplete character or shift sequence at end of buffer");
  return false;
}

// Leaves the shift state; the next file is a text of its own.
bool Conversion::endText() {
  char* out = m_written.data();
  std::size_t room = m_written.size();
  iconv(m_descriptor, nullptr, nullptr, &out, &room);
  return write(out);
}

// Writes m_written up to its end.
bool Conversion::write(const char* end) {
  const auto count = static_cast<std::size_t>(end - m_written.data());
  if (!m_isHeld) return write(m_written.data(), count);
  m_held.append(m_written.data(), count);
  return true;
}

bool Conversion::write(const char* bytes, std::size_t count) {
  if (count == 0) return true;
  if (m_output == nullptr) {
    m_output = m_options.output.empty() ? stdout : std::fopen(m_options.output.c_str(), "we");
  }
  if (m_output == nullptr) {
    say("cannot open output file", errno);
    return false;
  }
  if (std::fwrite(bytes, 1, count, m_output) == count) return true;
  say("conversion stopped due to problem in writing the output");
  return false;
}

bool Conversion::writeHeld() {
  m_isHeld = false;
  const std::string held = std::move(m_held);
  m_held.clear();
  return write(held.data(), held.size());
}

bool Conversion::closeOutput() {
  std::FILE* const output = m_output == nullptr ? stdout : m_output;
  m_output = nullptr;
  if (std::fclose(output) == 0) return true;
  say("error while closing output file", errno);
  return false;
}

}  // namespace iconv_command

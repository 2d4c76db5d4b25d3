// Files and standard streams for the tool: reading in pieces, and writing that is all or nothing.
#ifndef APPS_ENCCONV_FILE_IO_H_
#define APPS_ENCCONV_FILE_IO_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "apps/encconv/system/files.h"

namespace tool {

// Operations return false after storing one clear line, which names the file, in error(). Objects
// are used by one thread at a time.

// A file, or standard input for the name "-".
class InputFile {
 public:
  InputFile() = default;
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // Fails for a directory as well as for what cannot be opened.
  bool open(const std::string& name);
  // Reads up to buffer.size() bytes and sets count; 0 means the end.
  bool read(std::span<unsigned char> buffer, std::size_t& count);
  // Reads until the buffer is full or the end comes.
  bool readFully(std::span<unsigned char> buffer, std::size_t& count);

  // As the command line calls it.
  const std::string& name() const { return m_name; }
  // How messages call it: the name as it can be shown, or "standard input".
  const std::string& label() const { return m_label; }
  // Size in bytes when it is a regular file, else -1.
  std::int64_t size() const { return m_status.isRegular() ? m_status.size : -1; }
  const FileStatus& status() const { return m_status; }
  const std::string& error() const { return m_error; }

 private:
  int m_fd = -1;
  FileStatus m_status;
  std::string m_name;
  std::string m_label;
  std::string m_error;
};

// Whether InputFile::open() would succeed, and what it would open; found out without opening,
// because a pipe can be opened only once. Otherwise the line that says why not is stored in error.
bool inspectInput(const std::string& name, FileStatus& status, std::string& error);

// A file, or standard output for the empty name and for "-". A regular file is written under a
// temporary name beside it and appears, whole, on commit(); destruction without commit, and the
// usual ending signals, leave what was there before. Anything else (a device, a pipe) is written
// directly.
class OutputFile {
 public:
  OutputFile() = default;
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // A file that exists keeps its access rights, and what else it has as far as may be; a symbolic
  // link stays, and what it points to is replaced or made.
  bool open(const std::string& name);
  // For another text of a regular file: everything but the text must stay. Fails when its owner,
  // rights or attributes cannot be kept, when it has other hard links, and when there is a file
  // already under its name with the suffix, under which commit() keeps the original. An empty
  // suffix keeps none.
  bool openInPlace(const std::string& name, const std::string& backupSuffix);
  bool write(std::string_view bytes);
  // Writes text in UTF-8 for people, which a console shows whatever its code page.
  bool writeText(std::string_view text);
  // Gives the file the times of another one.
  bool keepTimes(const FileStatus& status);
  // Puts the file in place. In place, a file whose text is what it was is left alone, and one that
  // others changed meanwhile is not replaced. After this only the destructor and isUnchanged() may
  // be called.
  bool commit();

  // After commit(): the text is what it was, and the file was left alone.
  bool isUnchanged() const { return m_isUnchanged; }
  // True when this output replaces or changes the regular file with this status.
  bool isFile(const FileStatus& status) const;
  // True when an output with this name, or standard output, would be the same file, be it there
  // already or not.
  bool isAt(const std::string& name) const;
  const std::string& error() const { return m_error; }

 private:
  bool openTemporary();
  bool hasOriginalText();
  bool isOriginalUntouched();
  bool backUp();
  bool fail();
  bool fail(const std::string& reason);

  int m_fd = -1;
  bool m_ownsFd = false;
  FileStatus m_status;  // of what is replaced or written to
  bool m_exists = false;
  bool m_isInPlace = false;
  bool m_isUnchanged = false;
  bool m_isMoved = false;  // the original has the name of the backup only
  std::string m_label;
  std::string m_path;       // final name, links resolved
  std::string m_temporary;  // empty when written directly
  std::string m_backupSuffix;
  int m_cleanupSlot = -1;
  std::string m_error;
};

}  // namespace tool

#endif  // APPS_ENCCONV_FILE_IO_H_

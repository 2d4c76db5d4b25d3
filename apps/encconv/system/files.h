// What the tool asks of the system about files. files_posix.cpp and files_windows.cpp answer.
//
// Names are those of the command line: any bytes on POSIX, UTF-8 on Windows, where half a pair of
// surrogates has the form that UTF-8 would give it, and a name may have any length. Operations that
// return false, or a negative number, leave the reason in errno. Any thread may call.
#ifndef APPS_ENCCONV_SYSTEM_FILES_H_
#define APPS_ENCCONV_SYSTEM_FILES_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tool {

enum class FileKind : unsigned char { kRegular, kDirectory, kLink, kOther };

struct FileTime {
  std::int64_t seconds = 0;      // since 1970
  std::int64_t nanoseconds = 0;  // below 1,000,000,000
  bool operator==(const FileTime&) const = default;
};

// Two files are the same when this is.
using FileId = std::pair<std::uint64_t, std::uint64_t>;

struct FileStatus {
  FileKind kind = FileKind::kOther;
  std::int64_t size = 0;  // in bytes
  FileId id;
  std::uint64_t links = 1;  // names that the file has
  FileTime accessed;
  FileTime modified;
  // POSIX: whose it is, and who may do what.
  std::uint32_t owner = 0;
  std::uint32_t group = 0;
  std::uint32_t mode = 0;

  bool isRegular() const { return kind == FileKind::kRegular; }
  bool isDirectory() const { return kind == FileKind::kDirectory; }
};

namespace files {

inline constexpr int kStandardInput = 0;
inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

bool getStatus(int fd, FileStatus& status);
bool getStatus(const std::string& name, FileStatus& status);
// Of a link, not of what it points to.
bool getStatusOfLink(const std::string& name, FileStatus& status);
// Found out without opening what can be opened only once.
bool isReadable(const std::string& name);
bool isWritable(const std::string& name);

int openToRead(const std::string& name);
// Something that is there and no regular file.
int openToWrite(const std::string& name);
// A new file beside path, whose name is put into temporary. As long as it is not released, it does
// not survive the process, as far as the system can see to that.
int openTemporary(const std::string& path, std::string& temporary);
// Lets a temporary file stay.
bool release(int fd);
void close(int fd);
// As close, for a file that was written.
bool closeWritten(int fd);

// Bytes read, at most buffer.size(); 0 at the end.
std::ptrdiff_t read(int fd, std::span<unsigned char> buffer);
// The same from a place in a file, which need not be the one where read() stands.
std::ptrdiff_t readAt(int fd, std::span<unsigned char> buffer, std::int64_t offset);
// Bytes written, at least one.
std::ptrdiff_t write(int fd, std::string_view bytes);
// Writes all of a text in UTF-8, so that it can be read where fd is a console.
bool writeText(int fd, std::string_view text);
bool isTerminal(int fd);
// Waits until what was written would outlast a failure of the machine.
bool flush(int fd);
bool setTimes(int fd, const FileStatus& status);
// Gives a temporary file the access rights that new files get.
bool setDefaultRights(int fd);
// Gives it what the file at path, which has this status, has besides its text and its times, as far
// as replace() does not see to that. Empty when all of it could be given; else the first thing that
// could not, in words that go behind "cannot keep its". Goes on after that, so that the file has as
// much as may be.
std::string copyAttributes(const std::string& path, const FileStatus& status, int fd);

// The name behind all links, of something that is there.
bool resolve(const std::string& name, std::string& resolved);
// The name behind all links, of which the last may point to nothing yet.
bool followLinks(std::string& name);
// Whether two names, of which there may be no files yet, mean the same place.
bool isSamePlace(const std::string& one, const std::string& other);

// Gives a file another name, which nothing has yet; fails with EEXIST when something has. With
// addName() the old one stays, where the file system can do that.
bool addName(const std::string& from, const std::string& to);
bool rename(const std::string& from, const std::string& to);
// Puts a closed temporary file in the place of path, whole, whatever happens meanwhile. mustKeep:
// fails when the new file could not be given what the old one has besides its text; otherwise goes
// on then.
bool replace(const std::string& temporary, const std::string& path, bool mustKeep);
bool remove(const std::string& name);

// A directory, and with makeDirectories() those that it is in; no failure when it is there.
bool makeDirectory(const std::string& name);
bool makeDirectories(const std::string& name);
// The names in a directory but "." and "..", in any order; false may leave some of them.
bool listDirectory(const std::string& name, std::vector<std::string>& names);
// The part of a name behind the last separator, and before it; "" where there is none.
std::string lastPart(const std::string& name);
std::string parentOf(const std::string& name);
std::string join(const std::string& directory, const std::string& name);
// A pattern of a shell: * ? [...].
bool matches(const std::string& pattern, const std::string& name);
// The files that a name on the command line means, where shells leave patterns to programs; the
// name itself when there are none.
std::vector<std::string> expandPattern(const std::string& name);

// How many files may be converted at once, of wanted.
std::size_t usableJobs(std::size_t wanted);

}  // namespace files
}  // namespace tool

#endif  // APPS_ENCCONV_SYSTEM_FILES_H_

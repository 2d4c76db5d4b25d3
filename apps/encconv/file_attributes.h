// What a file has besides its text: owner, access rights, access control lists, extended
// attributes.
#ifndef APPS_ENCCONV_FILE_ATTRIBUTES_H_
#define APPS_ENCCONV_FILE_ATTRIBUTES_H_

#include <sys/stat.h>

#include <string>

namespace tool {

// Gives the open file fd what the file at path, which has this status, has besides its text and its
// times. Empty when all of it could be given; else the first thing that could not, in words that go
// behind "cannot keep its". Goes on after that, so that the file has as much as may be.
std::string copyAttributes(const std::string& path, const struct stat& status, int fd);

}  // namespace tool

#endif  // APPS_ENCCONV_FILE_ATTRIBUTES_H_

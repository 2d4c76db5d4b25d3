// Memory that JavaScript puts texts in, and reads them from.
#include <cstdlib>

#include "npm/native/exports.h"

BlockOutput& output() {
  static BlockOutput out;
  return out;
}

void reply(std::string_view text) {
  output().truncate(0);
  output().append(text.data(), text.size());
}

ENCCONV_EXPORT(allocate) void* allocate(unsigned int size) { return std::malloc(size); }
ENCCONV_EXPORT(release) void releaseMemory(void* block) { std::free(block); }

ENCCONV_EXPORT(outputSize) unsigned int outputSize() { return output().written(); }
ENCCONV_EXPORT(outputBegin) const unsigned char* outputBegin() {
  return output().next - output().written();
}
// Gives the memory of a large output back.
ENCCONV_EXPORT(shrinkOutput) void shrinkOutput() {
  std::size_t size = 0;
  std::free(output().release(size));
}

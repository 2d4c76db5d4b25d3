// Mappings whose images are in files of their own, for programs that are loaded over a network: the
// program reads the files, and gives them to the engine before it converts. A mapping without its
// file is as if memory were short.
#ifndef ENCODING_CODECS_MAPPING_FILES_H_
#define ENCODING_CODECS_MAPPING_FILES_H_

#include <cstddef>
#include <cstdint>

#include "encoding/codecs/code_table.h"
#include "encoding/codecs/mapping_visitor.h"

struct MappingFile {
  const char* name;  // as in "euc-tw.table"
  std::uint32_t size;
  std::uint32_t checksum;
};

// Tells every mapping that conversions from and to an encoding look up, those that others change
// included; one may be told several times.
void visitMappings(const EncodingRow& row, MappingVisitor& visitor);

// Takes a copy of the image of a mapping with a file, and keeps it. False, with nothing done, when
// the bytes are not that file, or when memory is short. Any thread may call.
bool provideImage(const Mapping& mapping, const unsigned char* bytes, std::size_t size);

// Whether no mapping of an encoding waits for its file. Any thread may call.
bool hasImages(const EncodingRow& row);

// The image of a mapping; null for one whose file was not provided. Any thread may call.
const char* imageOf(const Mapping& mapping);

#endif  // ENCODING_CODECS_MAPPING_FILES_H_

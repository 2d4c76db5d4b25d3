// The code pages that streams convert: those of the engine, and HZ.
#ifndef ENCODING_STREAM_STREAM_CODE_PAGES_H_
#define ENCODING_STREAM_STREAM_CODE_PAGES_H_

#include <cstddef>
#include <string_view>

#include "encoding/code_page_list.h"

// HZ (RFC 1843, "hz-gb-2312") has no number among the engine's code pages.
inline constexpr int kCodePageHz = 1052936;

// Any thread may call these; nothing is allocated.

// The code page of a charset name or number: what CharsetNaming knows, and HZ. 0 when unknown.
int streamCodePage(std::string_view name);

// Whether streams convert it. StreamConverter copies text from any other code page to itself.
bool isStreamCodePage(int codePage);

// The number of code pages, and the one at an index below it, in ascending order of number.
std::size_t streamCodePageCount();
CodePageInfo streamCodePageAt(std::size_t index);

#endif  // ENCODING_STREAM_STREAM_CODE_PAGES_H_

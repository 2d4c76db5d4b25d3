// What JavaScript calls (npm/src/core.ts). Texts are UTF-8, given by place and length; what a
// function answers with stands in the output until the next call.
#ifndef NPM_NATIVE_EXPORTS_H_
#define NPM_NATIVE_EXPORTS_H_

#include <string_view>

#include "interface/outputs.h"

// A function that JavaScript sees under its own name.
#define ENCCONV_EXPORT(name) extern "C" __attribute__((used, export_name(#name)))

// What was written last. It is one block, which is used again.
BlockOutput& output();

// Empties the output, and puts a text there.
void reply(std::string_view text);

inline std::string_view textAt(const char* text, unsigned int length) { return {text, length}; }

#endif  // NPM_NATIVE_EXPORTS_H_

// The listing of code pages: encconv --list.
#ifndef APPS_ENCCONV_LIST_COMMAND_H_
#define APPS_ENCCONV_LIST_COMMAND_H_

#include <ostream>
#include <string_view>

// Prints the code pages that the filter selects (see codePageMatches; empty: all of them), as text
// for people or as a JSON array for programs. Returns the exit status of the tool: 0, or 1 when the
// filter selects none, which leaves the text form empty and the JSON form an empty array. Errors of
// the stream are left to the caller, in the stream's state.
int printCodePageList(std::ostream& out, bool json, std::string_view filter);

#endif  // APPS_ENCCONV_LIST_COMMAND_H_

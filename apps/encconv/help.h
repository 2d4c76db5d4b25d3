// The texts of --help.
#ifndef APPS_ENCCONV_HELP_H_
#define APPS_ENCCONV_HELP_H_

#include <string>
#include <string_view>

namespace tool {

// The short help, for the empty topic, or the text of a topic; empty for an unknown one.
std::string_view helpText(std::string_view topic);
// "errors, files, ...": the topics that there are.
std::string helpTopics();

}  // namespace tool

#endif  // APPS_ENCCONV_HELP_H_

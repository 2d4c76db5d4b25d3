#include "apps/encconv/record_conversion.h"

#include <utility>

#include "apps/encconv/file_io.h"
#include "apps/encconv/record_support.h"

namespace tool {
namespace {

// The treatment in the words of the interface.
encconv::Options optionsOf(const StreamSettings& settings) {
  encconv::Options options;
  options.on_error = static_cast<encconv::OnError>(settings.treatment);
  if (settings.hasSubstitute) options.substitute = settings.substitute;
  options.substitute_is_raw = settings.substituteIsRaw;
  if (settings.alternate != 0) options.alternate = settings.alternate;
  options.compose = settings.compose;
  options.best_fit = settings.bestFit;
  options.translit = settings.translit;
  return options;
}

bool readFile(const std::string& name, std::string& text, std::string& why) {
  constexpr std::size_t kMostBytes = 16u << 20;
  InputFile file;
  std::string buffer(64u << 10, '\0');
  if (!file.open(name)) {
    why = file.error();
    return false;
  }
  for (std::size_t count = 1; count != 0; text.append(buffer, 0, count)) {
    if (!file.read({reinterpret_cast<unsigned char*>(buffer.data()), buffer.size()}, count)) {
      why = file.error();
      return false;
    }
    if (text.size() > kMostBytes) {
      why = file.label() + ": is too large for --fields";
      return false;
    }
  }
  return true;
}

}  // namespace

std::string characterIn(const char* utf8, int codePage) {
  encconv::RecordText text(65001, codePage);
  std::string bytes;
  if (!text.convert(utf8, bytes)) return {};
  return bytes.substr(text.opening().size());
}

std::unique_ptr<RecordConversion> RecordConversion::make(const Options& options, int fromCodePage,
                                                         bool isFirst, Handler handler,
                                                         std::string& why) {
  const RecordTask task{options, fromCodePage,       options.toCodePage,
                        isFirst, std::move(handler), optionsOf(options.treatment)};
  return options.records ? convertFromRecords(task, why) : convertToRecords(task, why);
}

bool readLayout(Options& options, std::string& why) {
  std::string text = options.fields;
  const bool isFile = text.starts_with('@');
  const std::string name = isFile ? text.substr(1) : std::string();
  if (isFile) {
    text.clear();
    if (!readFile(name, text, why)) return false;
  }
  if (encconv::parse_field_layout(text, options.layout, why)) return true;
  why = (isFile ? name : "--fields") + ": " + why;
  return false;
}

}  // namespace tool

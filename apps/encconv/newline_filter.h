// Line ends of the output: --newline.
#ifndef APPS_ENCCONV_NEWLINE_FILTER_H_
#define APPS_ENCCONV_NEWLINE_FILTER_H_

#include <string>
#include <string_view>
#include <vector>

namespace tool {

// Makes every line end, CR LF, CR alone or LF alone, the same one. Works on text as it is written,
// piece by piece; U+0085 and U+2028 are no line ends here.
class NewlineFilter {
 public:
  // In the encoding of the text. Its units all have the width of the line feed.
  struct Settings {
    std::string lineFeed;
    std::string carriageReturn;  // as wide as the line feed
    std::string newline;         // what line ends become
    int escape = -1;             // the unit that makes what follows another character; -1: none
  };
  explicit NewlineFilter(Settings settings) : m_settings(std::move(settings)) {}

  // Replaces the content of out by what the next bytes become.
  void push(std::string_view text, std::vector<unsigned char>& out);
  // Replaces it by a part of a unit that is left at the end.
  void finish(std::vector<unsigned char>& out);

 private:
  std::size_t plainLength(std::string_view text) const;
  void pushUnit(std::string_view unit, std::vector<unsigned char>& out);

  Settings m_settings;
  std::string m_part;            // of a unit
  bool m_isAfterReturn = false;  // a line feed here belongs to a line end that is written
  bool m_isEscaped = false;
};

}  // namespace tool

#endif  // APPS_ENCCONV_NEWLINE_FILTER_H_

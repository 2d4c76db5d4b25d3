#include "encoding/alike_encodings.h"

#include <string_view>

#include "encoding/code_page_list.h"

namespace {

// What is left of a row when all is taken away that does not matter to a conversion, and the texts,
// which may be equal in two places.
EncodingRow essenceOf(EncodingRow row) {
  row.number = 0;
  row.name = row.aliases = row.engineNames = row.description = "";
  row.text = row.bestFit = nullptr;
  row.appendText = nullptr;
  row.toUnicodeSize = row.fromUnicodeSize = 0;
  row.slot = 0;
  row.malformedWidth = 1;  // of error actions, which streams have not
  row.isReleased = row.inEngine = true;
  return row;
}

std::string_view viewOf(const char* text) { return text == nullptr ? std::string_view() : text; }

bool haveSameTables(const EncodingRow& one, const EncodingRow& other) {
  if (viewOf(one.text) != viewOf(other.text)) return false;
  if (one.appendText == other.appendText) return true;
  if (one.appendText == nullptr || other.appendText == nullptr) return false;
  StringBuffer oneText, otherText;
  one.appendText(oneText);
  other.appendText(otherText);
  return viewOf(oneText.getString()) == viewOf(otherText.getString());
}

}  // namespace

int firstAlikeCodePage(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row == nullptr) return codePage;
  for (const CharsetNames& page : streamCodePages()) {
    const EncodingRow& other = *findEncodingRow(page.codePage);
    if (other.number == codePage) break;
    if (essenceOf(other) == essenceOf(*row) && haveSameTables(other, *row)) return other.number;
  }
  return codePage;
}

#include "encoding/codecs/locale_code_pages.h"

#include "encoding/codecs/encoding_names.h"

namespace {

constexpr int kUtf8 = 65001;
constexpr int kWesternAnsi = 1252;
constexpr int kLatin9 = 28605;

struct LocaleGroup {
  int ansi;
  int oem;
  // Languages, each with a territory or a modifier where the language alone does not decide;
  // separated by single spaces.
  const char* locales;
};

// What Windows pairs with each language. Languages that it knows in Unicode only are not here, nor
// are those of the United States' pair, which is also that of a locale without a language.
constexpr LocaleGroup kLocaleGroups[] = {
    {1252, 850,
     "af an arn ast br ca co cy da de dsb en_AG en_AU en_BZ en_CA en_GB en_IE en_JM en_NZ en_TT es "
     "eu fi fo fr fy ga gd gl gsw gv hsb id in is it kl kw lb moh ms nb nds nl nn no nso oc pt qu "
     "rm se sma smj smn sms ss st sv tn ts wa wo xh zu"},
    {1250, 852, "bs cs hr hu pl ro sh sk sl sq sr@latin tk"},
    {1251, 855, "sr bs@cyrillic"},
    {1251, 866, "az@cyrillic ba be bg ce cv kk ky mhr mk mn os ru sah tg tt uk uz@cyrillic"},
    {1253, 737, "el"},
    {1254, 857, "az crh gag ku tr tt@iqtelif uz"},
    {1255, 862, "he iw ji yi"},
    {1256, 720, "ar az_IR ckb fa pa_PK prs ug ur"},
    {1257, 775, "et lt lv"},
    {1258, 1258, "vi"},
    {874, 874, "th"},
    {932, 932, "ja"},
    {936, 936, "wuu zh"},
    {949, 949, "ko"},
    {950, 950, "hak cmn_TW lzh nan yue zh_HK zh_MO zh_TW"},
};
constexpr LocaleGroup kDefaultGroup = {kWesternAnsi, 437, ""};

// The parts of a locale name, empty where absent.
struct LocaleParts {
  std::string_view language;
  std::string_view territory;
  std::string_view codeset;
  std::string_view modifier;
};

// Cuts what follows the separator off the end of text and returns it.
std::string_view cutTail(std::string_view& text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string_view::npos) return {};
  const std::string_view tail = text.substr(at + 1);
  text = text.substr(0, at);
  return tail;
}

LocaleParts partsOf(std::string_view locale) {
  LocaleParts parts;
  parts.modifier = cutTail(locale, '@');
  parts.codeset = cutTail(locale, '.');
  parts.territory = cutTail(locale, '_');
  parts.language = locale;
  return parts;
}

// How closely an entry of a group describes a locale: 0 not at all, then by language, with
// territory, with modifier.
int closeness(std::string_view entry, const LocaleParts& locale) {
  const LocaleParts wanted = partsOf(entry);
  if (wanted.language != locale.language) return 0;
  if (!wanted.modifier.empty()) return wanted.modifier == locale.modifier ? 3 : 0;
  if (!wanted.territory.empty()) return wanted.territory == locale.territory ? 2 : 0;
  return 1;
}

const LocaleGroup& groupOf(const LocaleParts& locale) {
  const LocaleGroup* found = &kDefaultGroup;
  int closest = 0;
  for (const LocaleGroup& group : kLocaleGroups) {
    std::string_view rest = group.locales;
    while (!rest.empty()) {
      const std::string_view tail = cutTail(rest, ' ');
      const int close = closeness(rest, locale);
      if (close > closest) {
        closest = close;
        found = &group;
      }
      rest = tail;
    }
  }
  return *found;
}

}  // namespace

LocaleCodePages localeCodePagesOf(std::string_view locale) {
  const LocaleParts parts = partsOf(locale);
  const EncodingRow* const row = findEngineEncoding(parts.codeset);
  const int codeset = row == nullptr ? 0 : row->number;
  if (codeset == kUtf8) return {kUtf8, kUtf8};
  const LocaleGroup& group = groupOf(parts);
  if (codeset != 0) return {codeset, group.oem};
  // Without a codeset this modifier stands for one: the Latin alphabet with the euro sign.
  if (parts.codeset.empty() && parts.modifier == "euro" && group.ansi == kWesternAnsi) {
    return {kLatin9, group.oem};
  }
  return {group.ansi, group.oem};
}

#include "encoding/detect/letter_profiles.h"

#include <algorithm>
#include <cmath>

#include "support/utf.h"

namespace detection {
namespace {

struct Language {
  const char* name;
  Script script;
  const char* letters;
};

// The orders are those of common tables of letter frequencies, by hand and from memory of print; no
// text was counted for them. Half of the judgement is which letters a language has at all.
constexpr Language kLanguages[] = {
    {"English", Script::kLatin, "’“”—–‘…£°•©é½èï±êöµñç"},  // hardly any letters
    {"French", Script::kLatin, "éèàê’çôùîâûëœïÿæ"},
    {"German", Script::kLatin, "üäöß"},
    {"Spanish", Script::kLatin, "óíáéñú¿¡ü"},
    {"Portuguese", Script::kLatin, "ãçáéíóêõúâàô"},
    {"Italian", Script::kLatin, "èà’ùòìé"},
    {"Catalan", Script::kLatin, "óàèé’íçòúïü·"},
    {"Dutch", Script::kLatin, "ëéïèöüê"},
    {"Swedish, Finnish", Script::kLatin, "äöåé"},
    {"Danish, Norwegian", Script::kLatin, "åøæéöü"},
    {"Icelandic", Script::kLatin, "ðáíéöúæþýó"},
    {"Irish", Script::kLatin, "áéíóú"},
    {"Polish", Script::kLatin, "łąężśóćńź"},
    {"Czech", Script::kLatin, "íáěéýřčžšůúťďňó"},
    {"Slovak", Script::kLatin, "áíýčéšžťúľôňäďóĺŕ"},
    {"Hungarian", Script::kLatin, "áéőöíóüúű"},
    {"Romanian", Script::kLatin, "ăîțșâşţ"},
    {"Croatian, Slovene", Script::kLatin, "čšžćđ"},
    {"Turkish", Script::kLatin, "ıişğüçöâîİ"},
    {"Estonian", Script::kLatin, "äõüöšž"},
    {"Latvian", Script::kLatin, "āīēšņžčļūģķ"},
    {"Lithuanian", Script::kLatin, "ėšžįųūčąę"},
    {"Esperanto", Script::kLatin, "ĉĝŝŭĵĥ"},
    {"Vietnamese", Script::kLatin,
     "đ\u0301\u0300ơư\u0323êôâă\u0309àá\u0303éóúíèịạộảếùýốìậớấờộứựợừửòủãọữ"},
    {"Greek", Script::kGreek, "αοιετσνηυρπκμλςίόάήέγδύχθφώβξζψϊ"},
    {"Russian", Script::kCyrillic, "оеаинтрсвлкмдпуяыьгзбчйхжшюцщэфъё"},
    {"Ukrainian", Script::kCyrillic, "оанивітерслкудмпзяьгйбчхцжїєюшщфґ"},
    {"Belarusian", Script::kCyrillic, "аніеоркстлядўупмывзьбгчіцхйжшэюёф"},
    {"Bulgarian", Script::kCyrillic, "аиоентрсвлкдпмзгъяуцбчщжшхйюфь"},
    {"Serbian", Script::kCyrillic, "аиоенсртјвкудмлпгзбчжшцхњћљђфџѓќѕ"},
    {"Hebrew", Script::kHebrew, "יוהלארתבשמנםדקעחפצטגסזןכךףץ"},
    {"Arabic", Script::kArabic, "اليمنرتبوةدعسفهكقحجأشصطخىإذثءزضئآغظؤ،؟ًّ"},
    {"Persian", Script::kArabic, "اینردمهبتوشسکلزگفعخقجحپچصآطذضثغژظ،؟"},
    {"Thai", Script::kThai, "านรอกเงมยลวดทสตะปบคหแจพชขใไโผซธณศฟษภ่้ัี็ิุูำ์ๆึื"},
    {"Japanese", Script::kKana,
     "のるいにをたとはしてがなでれ、。ます－ンスルトらりーこっさあくきけアイリラドシクロジ"
     "タレフコププマもだかどうよそえめおつせちみわじやびばべずほへろごげげざぎぐプデテバサ"
     "カキオウムメニナハグパダチツビブボポワィェォャュョッズゼソネノヒヘホミヤユヨ「」・"
     "日一国会人年大十二本中長出三同時事自行社見月分議後前民生連対間上部東者合市業内相方"
     "定回新場員入選開手米力学問高代明実関動全目表戦経通外最言現理調体化当主題下意法不来"
     "作性的要用制度務気小成取都和機加家話世受区領数記院初界心第結果派点済書府原共得解名"
     "文字示変更新使設値文存在指列式型返次含参照引処端末標準出力環境行番号項各種類無有"},
    {"Chinese, simplified", Script::kHan,
     "的，。一是不了在人有我他这个们中、来上大为和国地到以说时要就出会可也你对生能而子那得"
     "于着下自之年过发后作里用道行所然家种事成方多经么去法学如都同现当没动面起看定天分还进"
     "好小部其些主样理心她本前开但因只从想实日军者意无力它与长把机十民第公此已工使情明性知"
     "全三又关点正业外将两高间由问很最重并物手应战向头文体政美相见被利什二等产或新己制身果"
     "加西斯月话合回特代内信表化老给世位次度门任常先海通教儿原东声提立及比员解水名真论处走"
     "义各入几口认条平系气题活尔更别打女变四神总何电数安少报才结反受目太量再感建务做接必场"
     "件计管期市直德资命山金指克许统区保至队形社便空决治展马科司五基眼书非则听白却界达光放"
     "强即像难且权思王象完设式色路记南品住告类求据程北边死张该交规万取拉格望觉术领共确传师"
     "观清今切院让识候带导争运"},
    {"Chinese, traditional", Script::kHan,
     "的，。一是不了在人有我他這個們中、來上大為和國地到以說時要就出會可也你對生能而子那得"
     "於著下自之年過發後作裡用道行所然家種事成方多經麼去法學如都同現當沒動面起看定天分還進"
     "好小部其些主樣理心她本前開但因只從想實日軍者意無力它與長把機十民第公此已工使情明性知"
     "全三又關點正業外將兩高間由問很最重並物手應戰向頭文體政美相見被利什二等產或新己制身果"
     "加西斯月話合回特代內信表化老給世位次度門任常先海通教兒原東聲提立及比員解水名真論處走"
     "義各入幾口認條平系氣題活爾更別打女變四神總何電數安少報才結反受目太量再感建務做接必場"
     "件計管期市直德資命山金指克許統區保至隊形社便空決治展馬科司五基眼書非則聽白卻界達光放"
     "強即像難且權思王象完設式色路記南品住告類求據程北邊死張該交規萬取拉格望覺術領共確傳師"
     "觀清今切院讓識候帶導爭運"},
    {"Korean", Script::kHangul,
     "이다는을에의가고한하지로사은도기를어나자시대있인서리스정해라수아전장그일들여상부보주제"
     "구만원니과요공적게위선조면안으신동치진성되개경데연오우비소마드까세내같무와말관방할미문"
     "생계분모유국러트않없려중음양년식때간민당심람학력행물저실단습것작발용명모든거려바설법합"
     "였었했며타파크프름호회반번표불필형입출터버열줄령환않"},
};

// What all languages have among their letters.
constexpr std::string_view kPunctuation = "\u00A0«»“”’„–—…•§°©‘·№‚€™®\u00AD";
// Mathematics and the like, in half of the text beside.
constexpr std::u16string_view kSeldom = u"±×÷£¢¥²³½¼¾¹ºª¶µ¬¤‹›†‡";

constexpr float kLogOfSeldom = -8.0F;

template <typename Use>
void forEachCharacter(std::string_view utf8, const Use& use) {
  const auto* at = reinterpret_cast<const unsigned char*>(utf8.data());
  const unsigned char* const end = at + utf8.size();
  while (at < end) {
    const Utf8Sequence sequence = decodeUtf8(at, static_cast<std::size_t>(end - at));
    use(static_cast<char16_t>(sequence.value));
    at += sequence.length;
  }
}

bool isEastAsian(Script script) {
  return script == Script::kHan || script == Script::kKana || script == Script::kHangul;
}

// Of a character that the profile does not list.
float logOfOther(Script own, Script script) {
  switch (script) {
    case Script::kHan:
      return own == Script::kHan || own == Script::kKana ? -9.5F
             : own == Script::kHangul                    ? -11.0F
                                                         : -14.0F;
    case Script::kHangul:
      return own == Script::kHangul ? -8.0F : -14.0F;
    case Script::kKana:
      return own == Script::kKana ? -8.0F : own == Script::kHan ? -10.5F : -14.0F;
    case Script::kHalfKana:
      return own == Script::kKana ? -9.0F : -14.0F;
    case Script::kRare:
      return -10.0F;
    case Script::kControl:
    case Script::kOdd:
      return -16.0F;
    case Script::kNone:
      return isEastAsian(own) ? -7.5F : -9.5F;
    default:
      return script == own ? -8.5F : -11.5F;
  }
}

}  // namespace

LetterProfile::LetterProfile(std::string_view language, Script script, std::string_view letters)
    : m_language(language), m_script(script) {
  std::vector<char16_t> units;
  forEachCharacter(letters, [&](char16_t unit) {
    if (std::find(units.begin(), units.end(), unit) == units.end()) units.push_back(unit);
  });
  // The share of a letter falls with its rank, to a fiftieth for the last one.
  constexpr double kFall = 3.9;
  constexpr double kSmall = 0.85;    // of what is beyond ASCII is small letters,
  constexpr double kCapital = 0.04;  // capitals for each small letter,
  constexpr double kBeside = 0.11;   // and punctuation
  const double count = static_cast<double>(units.size());
  double sum = 0;
  for (double rank = 0; rank < count; ++rank) sum += std::exp(-kFall * rank / count);
  double rank = 0;
  const auto add = [&](char16_t unit, double share) {
    const auto isOfUnit = [unit](const Letter& letter) { return letter.unit == unit; };
    if (std::none_of(m_letters.begin(), m_letters.end(), isOfUnit)) {
      m_letters.push_back({unit, static_cast<float>(std::log(share))});
    }
  };
  for (const char16_t unit : units) {
    add(unit, kSmall * std::exp(-kFall * rank / count) / sum);
    ++rank;
  }
  for (char16_t unit = 0x80; unit < 0x530; ++unit) {
    const char16_t small = lowerOf(unit);
    const auto found = std::find(units.begin(), units.end(), small);
    if (small == unit || found == units.end()) continue;
    rank = static_cast<double>(found - units.begin());
    add(unit, kSmall * kCapital * std::exp(-kFall * rank / count) / sum);
  }
  double marks = 0;
  forEachCharacter(kPunctuation, [&](char16_t) { ++marks; });
  forEachCharacter(kPunctuation, [&](char16_t unit) { add(unit, kBeside / marks); });
  std::ranges::sort(m_letters, {}, &Letter::unit);
}

float LetterProfile::logOf(char16_t unit) const {
  const auto found = std::ranges::lower_bound(m_letters, unit, {}, &Letter::unit);
  if (found != m_letters.end() && found->unit == unit) return found->log;
  const Script script = scriptOf(unit);
  if (script == Script::kNone && kSeldom.find(unit) != std::u16string_view::npos)
    return kLogOfSeldom;
  return logOfOther(m_script, script);
}

std::span<const LetterProfile> letterProfiles() {
  static const std::vector<LetterProfile> profiles = [] {
    std::vector<LetterProfile> made;
    made.reserve(std::size(kLanguages));
    for (const Language& language : kLanguages) {
      made.emplace_back(language.name, language.script, language.letters);
    }
    return made;
  }();
  return profiles;
}

std::span<const LetterProfile> eastAsianProfiles() {
  const std::span<const LetterProfile> all = letterProfiles();
  const auto first = std::ranges::find_if(
      all, [](const LetterProfile& profile) { return isEastAsian(profile.script()); });
  return all.subspan(static_cast<std::size_t>(first - all.begin()));
}

void ProfileLogs::addRow(char16_t unit) {
  for (const LetterProfile& profile : m_profiles) m_logs.push_back(profile.logOf(unit));
  m_rows[unit] = static_cast<std::uint32_t>(m_logs.size() / m_profiles.size());
}

void ProfileSums::add(char16_t unit, std::uint32_t count) {
  const std::span<const float> logs = m_logs.of(unit);
  for (std::size_t i = 0; i < m_sums.size(); ++i) m_sums[i] += static_cast<double>(logs[i]) * count;
}

ProfileSums::Best ProfileSums::best() const {
  const auto best = std::ranges::max_element(m_sums);
  return {*best, m_logs.profiles()[static_cast<std::size_t>(best - m_sums.begin())].language()};
}

double logOfShares(std::uint64_t ascii, std::uint64_t others) {
  const double all = static_cast<double>(ascii + others);
  const auto logOf = [all](std::uint64_t count) {
    const auto part = static_cast<double>(count);
    return count == 0 ? 0 : part * std::log(part / all);
  };
  return logOf(ascii) + logOf(others);
}

float logOfAscii(char16_t unit) {
  // Of a to z, in percent of all letters; an average of English, German, French and Spanish.
  static constexpr float kShares[26] = {8.2F, 1.4F, 3.2F, 4.4F, 14.F, 1.4F, 1.9F, 3.0F, 7.4F,
                                        0.3F, 0.7F, 4.6F, 2.8F, 7.9F, 6.3F, 2.2F, 0.5F, 7.0F,
                                        7.2F, 7.2F, 4.0F, 1.3F, 1.0F, 0.2F, 0.9F, 0.5F};
  constexpr float kLetters = 0.0075F;  // of the text, each percent of letters
  constexpr float kCapitals = 0.0005F;
  if (unit >= 'a' && unit <= 'z') return std::log(kShares[unit - 'a'] * kLetters);
  if (unit >= 'A' && unit <= 'Z') return std::log(kShares[unit - 'A'] * kCapitals);
  if (unit == ' ') return -1.9F;
  if (unit == '\n') return -3.5F;
  if (unit == '.' || unit == ',') return -4.5F;
  return scriptOf(unit) == Script::kControl ? -14.0F : -6.0F;
}

}  // namespace detection

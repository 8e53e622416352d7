// Articles, prepositions and the like: few words make up a third of any running text.
#include "platform/unicode/language_words.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "platform/unicode/language_letters.h"

namespace kelspar {

namespace {

struct LanguageWords {
  std::string_view language, words;
};

// Those without accents, as far as they are all of ASCII.
constexpr LanguageWords kWords[] = {
    {"de",
     "der die und das ist nicht ein eine den mit von zu auf sie es im dem wird kann oder auch"},
    {"fr", "le la les de des et un une est pas que pour dans sur en du au par avec ce qui ne vous"},
    {"es", "el la los las de que y en un una no se por con para es del al como su lo o"},
    {"pt", "o a os as de que e do da em um uma no na para com se por dos das ou ao"},
    {"it", "il la di che e un una non per in con del della sono si da le gli dei o nel i al"},
    {"nl", "de het een en van is niet te dat op voor met zijn in aan er of door naar om ook"},
    {"sv", "och att det en som i av den med till inte ett om kan var har de eller"},
    {"da", "og at det en som i af den med til ikke et der kan er var har de eller fra"},
    {"fi", "ja on ei se oli ovat mutta kun tai ole voi joka sen jos kuin ovat"},
    {"is", "og er ekki til um sem en var hefur eru ekki hann"},
    {"en", "the of and to in is that for it with as was on are be this not or you by"},
    {"pl", "i w na z do nie jest o po jak lub dla od za przez tego oraz to"},
    {"cs", "a se na je v z do pro nebo o k po by jako jsou byl ale"},
    {"sk", "a sa na je v z do pre alebo o k po by ako nie so"},
    {"hu", "a az nem hogy egy van volt csak meg vagy el de ez ki is"},
    {"ro", "de la o cu nu pe din ce se a un sau care pentru mai este sunt ale"},
    {"hr", "i je u na se da za od s su nije ne ili koji iz kao sa biti ni v ali bo"},
    {"lt", "ir yra kad ne bet su nuo iki apie tai kaip arba"},
    {"lv", "un ir ar no kas uz par lai tas bet vai nav"},
    {"et", "ja on ei see et kui oli ning aga ka mis seda"},
    {"tr", "ve bir bu da de ile olarak olan daha veya var ne ise"},
    {"mt", "li ta u l il fil ma kien minn dan jew mill dik lil kif"},
    {"cy", "y yr yn a i o ar mae oedd ac am ei wedi neu gan gyda nid hyn wrth bod eu"},
    {"ga", "an na agus ar is i le go a de ag do nach leis bhfuil"},
    {"ca", "el la els les de que i en un una no es per amb del al com o"},
    {"vi", "cho trong khi theo hay ra sau tin anh em con nam hai ba nhau xin qua trang ghi"},
};

constexpr size_t kLongest = 8;  // letters, packed into a number

constexpr bool isLetter(uint8_t byte) { return (byte | 0x20) >= 'a' && (byte | 0x20) <= 'z'; }

// Which rows of the languages a word stands for, as bits.
const std::unordered_map<uint64_t, uint64_t>& dictionary() {
  static const auto words = [] {
    std::unordered_map<uint64_t, uint64_t> made;
    const auto languages = languageLetters();
    for (const LanguageWords& row : kWords) {
      const auto place = std::ranges::find_if(languages, [&row](const LanguageLetters& other) {
        return other.language == row.language;
      });
      const uint64_t bit = uint64_t{1} << (place - languages.begin());
      uint64_t word = 0;
      for (const char letter : std::string(row.words) + ' ') {
        if (letter != ' ') {
          word = word << 8 | static_cast<uint8_t>(letter);
          continue;
        }
        made[word] |= bit;
        word = 0;
      }
    }
    return made;
  }();
  return words;
}

}  // namespace

std::vector<uint16_t> countEverydayWords(std::string_view bytes) {
  constexpr size_t kMostBytes = 2048;
  const auto& known = dictionary();
  std::vector<uint16_t> counts(languageLetters().size());
  uint64_t word = 0;
  size_t length = 0;
  bool isWhole = true;  // no byte above 0x7F stands before the letters
  for (const char c : bytes.substr(0, kMostBytes)) {
    const auto byte = static_cast<uint8_t>(c);
    if (isLetter(byte)) {
      word = word << 8 | (byte | 0x20);
      ++length;
      continue;
    }
    if (byte < 0x80 && isWhole && length > 0 && length <= kLongest) {
      if (const auto place = known.find(word); place != known.end()) {
        for (uint64_t bits = place->second; bits != 0; bits &= bits - 1) {
          ++counts[static_cast<size_t>(__builtin_ctzll(bits))];
        }
      }
    }
    word = 0, length = 0;
    isWhole = byte < 0x80;
  }
  return counts;
}

}  // namespace kelspar

// CSS colours: each parser gives what its steps give, writes nothing when it gives up, and the
// entry for a colour table has its one form.
#include <cstdlib>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace {

using namespace kelspar;
namespace Text = RTFKelsparNSStringAdditions;

template <class Parser>
void check(Parser parser, const NSString& text, const std::optional<literal::RGB>& expected) {
  constexpr int32_t kUntouched = -7;
  literal::RGB rgb{kUntouched, kUntouched, kUntouched};
  const bool isParsed = parser(text, &rgb[0], &rgb[1], &rgb[2]);
  if (isParsed != expected.has_value()) std::abort();
  if (rgb != expected.value_or(literal::RGB{kUntouched, kUntouched, kUntouched})) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  constexpr size_t kMost = 4096;
  const NSString text(
      std::string_view(reinterpret_cast<const char*>(bytes), std::min(size, kMost)));
  const literal::Text units(text.view());
  check(&Text::parseHexColorWithRed, text, literal::hexColour(units));
  check(&Text::parseRGBColorWithRed, text, literal::rgbColour(units));
  check(&Text::parseNamedColorWithRed, text, literal::namedColour(units));
  if (Text::convertToRTFColour(text).view() != literal::rtfColour(units)) std::abort();

  // An escaped text, as a pattern, matches itself.
  const NSString escaped = Text::escapeRegexSpecialCharacters(nil, text);
  if (escaped.length() < text.length()) std::abort();
  const auto match = literal::firstMatch(literal::Text(escaped.view()), units);
  const bool isWellFormed = text.strictUTF8().has_value() && units.find(u'\0') == units.npos;
  if (isWellFormed && !units.empty() && (match.empty() || match[0] != units)) std::abort();
  return 0;
}

// Text utilities: single passes with few and with only hits, decoding, detection. The references
// are the literal loops and ICU's own converter.
#include <benchmark/benchmark.h>

#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSEncodingDetector.h"
#include "platform/unicode/icu_converter.h"

namespace kelspar {
namespace {

namespace Category = StringKelsparNSStringAdditions;

NSString repeated(std::u16string_view pattern, size_t units) {
  std::u16string text;
  while (text.size() < units) text += pattern;
  return NSString(std::move(text));
}

constexpr std::u16string_view kProse =
    u"The quick brown fox jumps over the lazy dog and reads a letter from home.\n";

using Operation = NSString (*)(const NSString&);

void pass(benchmark::State& state, Operation operation, std::u16string_view pattern) {
  const NSString text = repeated(pattern, static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(operation(text));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.length() * 2));
}

NSString decodePercent(const NSString& text) {
  return Category::decodedStringFromPercentEscapesUsingEncoding(text, NSUTF8StringEncoding);
}

NSString locate(const NSString& text) {
  benchmark::DoNotOptimize(StringKelspar::getLocationsOfString(u"letters", text));
  return text;
}

// The reference: one decision a unit, appended one by one.
NSString copyByUnit(const NSString& text) {
  std::u16string out;
  for (const char16_t unit : text.view()) {
    if (unit != 0) out.push_back(unit);
  }
  return NSString(std::move(out));
}

#define PASS(name, operation, pattern) \
  BENCHMARK_CAPTURE(pass, name, operation, pattern)->RangeMultiplier(32)->Range(1 << 10, 1 << 20)
PASS(Reference, &copyByUnit, kProse);
PASS(EscapeFromLines, &Category::escapeFromLines, kProse);
PASS(EscapeFromLinesHostile, &Category::escapeFromLines, u"From \n");
PASS(CondenseWhitespace, &Category::condenseWhitespace, kProse);
PASS(CondenseWhitespaceHostile, &Category::condenseWhitespace, u"a  ");
PASS(CleanString, &Category::cleanString, kProse);
PASS(CleanStringHostile, &Category::cleanString, u"a\u0001");
PASS(ReplaceDoubleNewline, &Category::replaceDoubleNewline, kProse);
PASS(ReplaceDoubleNewlineHostile, &Category::replaceDoubleNewline, u"\n\r");
PASS(PercentEscapes, &decodePercent, kProse);
PASS(PercentEscapesHostile, &decodePercent, u"%41");
PASS(Locations, &locate, kProse);
PASS(LocationsHostile, &locate, u"letter");

std::string encoded(std::u16string_view pattern, NSStringEncoding encoding, size_t bytes) {
  const NSData one = dataUsingEncoding(NSString(pattern), encoding);
  std::string text;
  while (text.size() < bytes) text += one.chars();
  return text;
}

constexpr std::u16string_view kRussian =
    u"Добрый день, высылаем вам письмо о встрече в понедельник.\r\n";
constexpr std::u16string_view kJapanese = u"日本語の手紙を送ります。よろしくお願いします。\r\n";
constexpr std::u16string_view kFrench = u"Voilà une lettre très brève, envoyée de l'été.\r\n";
constexpr std::u16string_view kSimplified = u"您好，附件是会议的资料，请查收。谢谢。\r\n";
constexpr std::u16string_view kTraditional = u"您好，附件是會議的資料，請查收。謝謝。\r\n";
constexpr std::u16string_view kKorean = u"안녕하세요. 회의 자료를 첨부하여 보내 드립니다.\r\n";
constexpr std::u16string_view kEmoji = u"Gut \U0001F600, bis morgen \U0001F44D!\r\n";

void decode(benchmark::State& state, std::u16string_view pattern, NSStringEncoding encoding) {
  const std::string bytes = encoded(pattern, encoding, 1 << 20);
  for (auto _ : state) benchmark::DoNotOptimize(stringWithBytes(bytes, encoding));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
}
void decodeByICU(benchmark::State& state, std::u16string_view pattern, NSStringEncoding encoding,
                 const char* converter) {
  const std::string bytes = encoded(pattern, encoding, 1 << 20);
  for (auto _ : state) {
    std::u16string text;
    convertWithICU(converter, bytes, Malformed::stop, &text);
    benchmark::DoNotOptimize(text);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
}

// Each beside ICU's converter.
#define DECODE(name, pattern, encoding, converter)    \
  BENCHMARK_CAPTURE(decode, name, pattern, encoding); \
  BENCHMARK_CAPTURE(decodeByICU, name, pattern, encoding, converter)
DECODE(UTF8Cyrillic, kRussian, 4, "utf-8");
DECODE(UTF8Japanese, kJapanese, 4, "utf-8");
DECODE(UTF8French, kFrench, 4, "utf-8");
DECODE(UTF8Emoji, kEmoji, 4, "utf-8");
DECODE(Ascii, kProse, 1, "us-ascii");
DECODE(Latin1, kFrench, 5, "iso-8859-1");
DECODE(Windows1251, kRussian, 11, "windows-1251");
DECODE(Windows1252, kFrench, 12, "windows-1252");
DECODE(KOI8, kRussian, 0x80000A02, "koi8-r");
DECODE(EBCDIC, kProse, 0x80000C02, "ibm-37");
DECODE(ShiftJIS, kJapanese, 8, "windows-932");
DECODE(EUCJP, kJapanese, 3, "euc-jp");
DECODE(GB18030, kSimplified, 0x80000632, "gb18030");
DECODE(Big5, kTraditional, 0x80000A03, "windows-950");
DECODE(EUCKR, kKorean, 0x80000940, "windows-949");
DECODE(ISO2022JP, kJapanese, 21, "iso-2022-jp");
DECODE(UTF16, kRussian, 0x90000100, "utf-16be");
DECODE(UTF32, kRussian, 0x98000100, "utf-32be");

// Items are texts; a detection includes the decoding.
void detect(benchmark::State& state, std::u16string_view pattern, NSStringEncoding encoding) {
  const NSData data(encoded(pattern, encoding, static_cast<size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(stringEncodingForData(data));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(data.length()));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(detect, Ascii, kProse, 1)->Arg(1500)->Arg(1 << 20);
BENCHMARK_CAPTURE(detect, UTF8, kRussian, 4)->Arg(1500)->Arg(1 << 20);
BENCHMARK_CAPTURE(detect, Windows1251, kRussian, 11)->Arg(1500)->Arg(1 << 20);
BENCHMARK_CAPTURE(detect, Windows1252, kFrench, 12)->Arg(1500)->Arg(1 << 20);
BENCHMARK_CAPTURE(detect, ShiftJIS, kJapanese, 8)->Arg(1500)->Arg(1 << 20);

void catalogue(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(StringKelspar::getStringEncodingsForText());
}
BENCHMARK(catalogue);

}  // namespace
}  // namespace kelspar

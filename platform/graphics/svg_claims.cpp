// A drawing is judged by the words in it. XML lets the names of elements and attributes stand in no
// other form than their own, but values can be disguised: where that would matter, disguises are
// refused. The renderer itself reads no files and fetches nothing.
#include "platform/graphics/svg_claims.h"

#include <algorithm>
#include <string>

#include "platform/foundation/base64.h"
#include "platform/graphics/image_details.h"

namespace kelspar {

namespace {

constexpr size_t kLongest = 131'072, kMostLetters = 32'768;
constexpr std::string_view kRefused[] = {
    "<!ENTITY", "filter", "foreignObject", "xml-stylesheet", "@import",
};
constexpr std::string_view kRefusedElements[] = {
    "use", "pattern", "marker", "mask", "include", "feImage",
};

bool contains(std::string_view file, std::string_view word) { return file.find(word) != file.npos; }

// With a prefix or without: "<use" and "<svg:use".
size_t findElement(std::string_view file, std::string_view name, size_t from) {
  for (size_t at = from; (at = file.find(name, at)) != file.npos; ++at) {
    if (at > 0 && (file[at - 1] == '<' || file[at - 1] == ':')) return at;
  }
  return file.npos;
}

// XML 1.0, 4.3.3: "encoding" in the declaration. Others can spell words in other bytes.
bool isPlainEncoding(std::string_view file) {
  constexpr std::string_view kPlain[] = {"UTF-8", "utf-8", "ISO-8859-1", "iso-8859-1", "US-ASCII"};
  if (!file.starts_with("<?xml")) return true;
  const std::string_view declaration = file.substr(0, file.find("?>"));
  const size_t at = declaration.find("encoding");
  if (at == declaration.npos) return true;
  const size_t begin = declaration.find_first_of("'\"", at);
  if (begin == declaration.npos) return false;
  const std::string_view value = declaration.substr(begin + 1);
  return std::ranges::any_of(kPlain, [&](std::string_view name) {
    return value.starts_with(name) && value.substr(name.size()).starts_with(declaration[begin]);
  });
}

// Looks at the images inside one after another.
class Images {
 public:
  explicit Images(std::string_view file) : file_(file) {}

  bool areBearable() {
    for (size_t at = 0; (at = findElement(file_, "image", at)) != file_.npos; ++at) {
      if (file_[at - 1] == ':' && file_.substr(0, at).ends_with("data:")) continue;
      const size_t end = file_.find_first_of("<>", at);
      if (end == file_.npos || !isBearable(file_.substr(at, end - at))) return false;
    }
    return pixels_ <= kMostPixels;
  }
  [[nodiscard]] size_t length() const { return length_; }

 private:
  static constexpr int64_t kMostPixels = 4'000'000;

  bool isBearable(std::string_view tag) {
    constexpr std::string_view kTypes[] = {"png", "jpeg", "gif", "bmp", "webp"};
    constexpr std::string_view kData = "data:image/", kBase64 = ";base64,";
    if (contains(tag, "&")) return false;
    const size_t href = tag.find("href");
    if (href == tag.npos) return true;
    if (tag.find("href", href + 1) != tag.npos) return false;
    const size_t begin = tag.find_first_of("'\"", href);
    if (begin == tag.npos) return false;
    std::string_view value = tag.substr(begin + 1);
    value = value.substr(0, value.find(tag[begin]));
    if (!value.starts_with(kData)) return false;
    const std::string_view behind = value.substr(kData.size());
    const size_t type = behind.find(kBase64);
    if (type == behind.npos) return false;
    if (std::ranges::find(kTypes, behind.substr(0, type)) == std::end(kTypes)) return false;
    const ImageDetails details =
        imageDetailsOf(base64::decodeLenient(behind.substr(type + kBase64.size())));
    if (!details.format || details.format->loader == std::string_view("svg")) return false;
    pixels_ += int64_t{details.width} * details.height;
    length_ += value.size();
    return true;
  }

  std::string_view file_;
  int64_t pixels_ = 0;
  size_t length_ = 0;
};

// What an element may cost a pixel, by what the file makes use of; a plain shape costs 1.
int64_t costAPixel(std::string_view file) {
  if (contains(file, "Gradient")) return 15;
  for (const std::string_view word : {"opacity", "clip-path", "style", "blend", "isolation"}) {
    if (contains(file, word)) return 3;
  }
  return 1;
}

// What stands outside of tags, and what looks so.
size_t lettersOf(std::string_view file) {
  if (contains(file, "CDATA")) return file.size();
  size_t letters = 0;
  for (size_t at = 0; at < file.size();) {
    const size_t tag = std::min(file.size(), file.find('<', at));
    letters += tag - at;
    at = std::min(file.size(), file.find('>', tag)) + 1;
  }
  return letters;
}

size_t timesIn(std::string_view file, std::string_view word) {
  size_t times = 0;
  for (size_t at = 0; (at = file.find(word, at)) != file.npos; ++at) ++times;
  return times;
}

}  // namespace

SVGClaims svgClaimsOf(std::string_view file) {
  constexpr int64_t kMost = 4'000'000, kLeast = 10'000, kWork = 2'000'000'000;
  constexpr size_t kMostClips = 32;
  if (!isPlainEncoding(file)) return {};
  for (const std::string_view word : kRefused) {
    if (contains(file, word)) return {};
  }
  for (const std::string_view name : kRefusedElements) {
    if (findElement(file, name, 0) != file.npos) return {};
  }
  const bool isDisguised = contains(file, "&#") || contains(file, "\\");
  if (contains(file, "style") && isDisguised) return {};
  Images images(file);
  if (!images.areBearable()) return {};
  if (file.size() - images.length() > kLongest) return {};
  if (findElement(file, "text", 0) != file.npos && lettersOf(file) > kMostLetters) return {};
  if (timesIn(file, "clip-path") > kMostClips) return {};
  const auto elements = static_cast<int64_t>(std::ranges::count(file, '<'));
  const int64_t work = elements * costAPixel(file) + 1, pixels = std::min(kMost, kWork / work);
  return pixels >= kLeast ? SVGClaims{pixels, work} : SVGClaims{};
}

}  // namespace kelspar

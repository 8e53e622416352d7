// Which paragraph of the embedded HTML holds which image. A scan over the markup as it stands in
// the RTF: no reading of either format.
#include <optional>

#include "WebKelspar/WebKelspar.h"
#include "platform/foundation/scan.h"

namespace kelspar {

namespace {

using Text = std::u16string_view;

// The length of the paragraph end at the beginning of `text`, or 0.
size_t paragraphEnd(Text text) {
  if (text.starts_with(u"</p>") || text.starts_with(u"</P>")) return 4;
  const bool isOffice = text.size() >= 6 && text[1] == u'/' && (text[2] | 0x20) == u'o' &&
                        text[3] == u':' && (text[4] | 0x20) == u'p' && text[5] == u'>';
  return isOffice ? 6 : 0;
}

// The source of the first image tag of a paragraph.
std::optional<Text> imageSource(Text paragraph) {
  constexpr Text kSource = u"src=\"";
  const size_t image = paragraph.find(u"<img");
  if (image == paragraph.npos) return {};
  paragraph.remove_prefix(image);
  const size_t close = paragraph.find(u'>');
  if (close == paragraph.npos) return {};
  const Text tag = paragraph.substr(0, close + 1);
  const size_t source = tag.find(kSource);
  if (source == tag.npos) return {};
  const Text value = tag.substr(source + kSource.size());
  return value.substr(0, value.find(u'"'));
}

}  // namespace

NSArray WebKelspar::imageLocationsFromRTF(const NSData& rtf) {
  const NSString decoded = NSString::fromUTF8(rtf.chars());
  const Text text = decoded;
  std::vector<id> locations;
  uint64_t index = 0;
  const auto record = [&](Text paragraph) {
    if (const auto source = imageSource(paragraph)) {
      locations.push_back(
          NSDictionary{{u"image source", NSString(*source)}, {u"image location", NSNumber(index)}});
    }
    ++index;
  };
  size_t from = 0;
  for (size_t at = 0; (at = scan::findAny(text, at, u'<')) < text.size();) {
    const size_t end = paragraphEnd(text.substr(at));
    if (end == 0) {
      ++at;
      continue;
    }
    record(text.substr(from, at - from));
    at += end;
    from = at;
  }
  record(text.substr(from));
  return NSArray(std::move(locations));
}

}  // namespace kelspar

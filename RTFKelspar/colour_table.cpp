// RTF colour tables as lists of ColourBlocks: read, extended by the colours of spans, written.
#include "RTFKelspar/colour_table.h"

#include <unordered_set>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSArrayAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"

namespace kelspar {

namespace RTFText = RTFKelsparNSStringAdditions;

NSString RTFText::extractColorDefinitionsFromTable(const NSString&, const NSString& table) {
  return table.isEmpty() ? nil : NSString(colourDefinitions(table.view()));
}

NSArray RTFText::buildColourBlockArray(const NSString& receiver) {
  const NSString group = getContentOfRTFTag(receiver, u"colortbl"_ns);
  const NSString definitions = extractColorDefinitionsFromTable(receiver, group);
  NSMutableArray blocks;
  for (const auto entry : colourEntries(definitions.view())) {
    blocks.addObject(NSDictionary{{u"Index"_ns, NSNumber(uint64_t{blocks.count()})},
                                  {u"RTFColour"_ns, NSString(entry)}});
  }
  return std::move(blocks).copy();
}

NSArray RTFKelsparNSArrayAdditions::generateArrayForDictionaryKey(const NSArray& receiver,
                                                                  const NSString& key) {
  NSMutableArray values;
  if (key.isEmpty()) return std::move(values).copy();
  for (const id& element : receiver) {
    if (const auto record = element.as<NSDictionary>()) values.addObject(record.objectForKey(key));
  }
  return std::move(values).copy();
}

void RTFKelspar::generateRTFColourBlockArray(NSMutableArray& blocks, const NSArray& lines) {
  std::vector<NSString> kept;  // what the set's views look at
  std::unordered_set<std::u16string_view> known;
  const auto remember = [&](const NSString& colour) {
    if (colour && known.insert(colour.view()).second) kept.push_back(colour);
  };
  for (const id& block : blocks) {
    remember(block.as<NSDictionary>().objectForKey<NSString>(u"HTMLColour"));
  }
  for (const id& line : lines) {
    const NSString colour = RTFText::searchLineForSpanItem(line.as<NSString>(), u"color"_ns);
    if (!colour || known.contains(colour.view())) continue;
    remember(colour);
    blocks.addObject(NSDictionary{{u"Index"_ns, NSNumber(uint64_t{blocks.count()})},
                                  {u"HTMLColour"_ns, colour},
                                  {u"RTFColour"_ns, RTFText::convertToRTFColour(colour)}});
  }
}

NSString RTFKelspar::generateRTFColourBlockFromArray(const NSArray& blocks) {
  if (blocks.count() == 0) return u""_ns;
  NSMutableString table;
  table.append(u"{\\colortbl");
  for (const id& block : blocks) {
    if (!block.is<NSDictionary>()) continue;
    table.append(block.as<NSDictionary>().objectForKey(u"RTFColour").description());
    table.append(u';');
  }
  table.append(u'}');
  return std::move(table).copy();
}

}  // namespace kelspar

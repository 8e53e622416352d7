// Values to JSON and back.
#include "platform/runtime/value_json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "platform/foundation/base64.h"
#include "platform/foundation/utf8.h"
#include "platform/loading/json_reader.h"
#include "platform/runtime/Operations.h"
#include "platform/runtime/attributed_json.h"
#include "platform/runtime/regex_value.h"
#include "platform/runtime/registry.h"
#include "platform/runtime/text_field_value.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::runtime {

namespace {

void writeEscape(char16_t unit, std::string* out) {
  constexpr char kHex[] = "0123456789abcdef";
  *out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) *out += kHex[unit >> shift & 15];
}

void writeTagged(const char* tag, std::string_view bytes, std::string* out) {
  *out += "{\"";
  *out += tag;
  *out += "\":\"";
  base64::encode(bytes, out);
  *out += "\"}";
}

void writeUnits(std::u16string_view units, std::string* out) {
  std::string bytes;
  bytes.reserve(units.size() * 2);
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  writeTagged("$utf16", bytes, out);
}

void writeDouble(double value, std::string* out) {
  if (!std::isfinite(value)) {
    *out += "{\"$double\":\"";
    *out += std::isnan(value) ? "NaN" : value > 0 ? "Infinity" : "-Infinity";
    *out += "\"}";
    return;
  }
  char text[32];
  const auto* end = std::to_chars(text, text + sizeof text, value).ptr;
  const std::string_view digits(text, end - text);
  *out += digits;
  // A double stays one, also when it is whole.
  if (digits.find_first_of(".e") == digits.npos) *out += ".0";
}

void writeNumber(const NSNumber& number, std::string* out) {
  switch (number.type()) {
    case NSNumber::Type::boolean:
      *out += number.boolValue() ? "true" : "false";
      break;
    case NSNumber::Type::real:
      writeDouble(number.doubleValue(), out);
      break;
    case NSNumber::Type::integer:
      *out += std::to_string(number.longValue());
      break;
    case NSNumber::Type::unsignedInteger:
      *out += std::to_string(number.unsignedLongValue());
      break;
  }
}

void writeList(const NSArray& array, std::string* out) {
  *out += '[';
  for (const id& element : array) {
    if (out->back() != '[') *out += ',';
    writeValue(element, out);
  }
  *out += ']';
}

void writeDictionary(const NSDictionary& dictionary, std::string* out) {
  *out += '{';
  bool first = true;
  for (const auto& [key, value] : dictionary.entries()) {
    if (!std::exchange(first, false)) *out += ',';
    writeString(key, out);
    *out += ':';
    writeValue(value, out);
  }
  *out += '}';
}

// Readers of the tagged forms: nil when the content is not of the form.

id readDouble(const id& content) {
  const auto text = content.as<NSString>();
  if (text == u"NaN") return NSNumber(std::nan(""));
  if (text == u"Infinity") return NSNumber(static_cast<double>(INFINITY));
  return text == u"-Infinity" ? NSNumber(static_cast<double>(-INFINITY)) : NSNumber();
}

id readData(const id& content) {
  const auto text = content.as<NSString>();
  auto bytes = text ? base64::decodeStrict(text) : std::nullopt;
  return bytes ? NSData(std::move(*bytes)) : NSData();
}

id readUnits(const id& content) {
  const auto data = readData(content).as<NSData>();
  if (!data || data.length() % 2 != 0) return nil;
  return NSString::build(data.length() / 2, [&](char16_t* out) {
    const uint8_t* bytes = data.bytes();
    for (size_t i = 0; i < data.length(); i += 2) {
      *out++ = static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    }
  });
}

id readDate(const id& content) {
  const auto seconds = content.as<NSNumber>();
  if (!seconds || seconds.type() == NSNumber::Type::boolean) return nil;
  return NSDate::since1970(seconds.doubleValue());
}

id readURL(const id& content) { return NSURL::URLWithString(content.as<NSString>()); }

id readCharacters(const id& content) {
  const auto units = content.as<NSString>();
  return units ? NSCharacterSet::withCharacters(units) : NSCharacterSet();
}

id readCharacterSet(const id& content) {
  return NSCharacterSet::named(content.as<NSString>().utf8());
}

struct TaggedForm {
  std::u16string_view tag;
  id (*read)(const id& content);
};
constexpr TaggedForm kForms[] = {
    {u"$attributed", readAttributed},
    {u"$characterSet", readCharacterSet},
    {u"$characters", readCharacters},
    {u"$data", readData},
    {u"$date", readDate},
    {u"$double", readDouble},
    {u"$regex", readRegex},
    {u"$rtf", readRTF},
    {u"$textField", readTextField},
    {u"$url", readURL},
    {u"$utf16", readUnits},
};
static_assert(std::ranges::is_sorted(kForms, {}, &TaggedForm::tag));

id fail(std::string reason, std::string* error) {
  if (error->empty()) *error = std::move(reason);
  return nil;
}

id readTagged(const NSString& tag, const id& content, std::string* error) {
  const auto* form = std::ranges::find(kForms, tag.view(), &TaggedForm::tag);
  if (form == std::end(kForms)) return fail("unknown value form " + tag.utf8(), error);
  const id inner = readValue(content, error);
  if (!error->empty()) return nil;
  const id value = form->read(inner);
  return value ? value : fail("the value of " + tag.utf8() + " is not of its form", error);
}

id readDictionary(const NSDictionary& json, std::string* error) {
  for (const auto& [key, content] : json.entries()) {
    if (!key.hasPrefix(u"$")) continue;
    if (json.count() != 1) return fail("a value form has one key", error);
    return readTagged(key, content, error);
  }
  NSMutableDictionary values;
  bool changed = false;
  for (const auto& [key, content] : json.entries()) {
    const id value = readValue(content, error);
    changed |= !value.isIdenticalTo(content);
    values.setObject(value, key);
  }
  return changed ? NSDictionary(std::move(values)) : json;
}

id readList(const NSArray& json, std::string* error) {
  std::vector<id> values;
  values.reserve(json.count());
  bool changed = false;
  for (const id& content : json) {
    values.push_back(readValue(content, error));
    changed |= !values.back().isIdenticalTo(content);
  }
  return changed ? NSArray(std::move(values)) : json;
}

}  // namespace

void writeString(std::u16string_view text, std::string* out) {
  *out += '"';
  size_t from = 0;
  const auto flush = [&](size_t to) {
    utf8::append(text.substr(from, to - from), out);
    from = to + 1;
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit == u'"' || unit == u'\\') {
      flush(i);
      *out += '\\';
      *out += static_cast<char>(unit);
    } else if (unit == u'\n') {
      flush(i);
      *out += "\\n";
    } else if (unit < 0x20) {
      flush(i);
      writeEscape(unit, out);
    } else if (unit >= 0xD800 && unit < 0xE000) {
      if (utf8::isWellFormed(text.substr(i, 2))) {
        ++i;
      } else {
        flush(i);
        writeEscape(unit, out);
      }
    }
  }
  flush(text.size());
  *out += '"';
}

void writeValue(const id& value, std::string* out) {
  if (const auto text = value.as<NSString>()) {
    utf8::isWellFormed(text) ? writeString(text, out) : writeUnits(text, out);
  } else if (const auto number = value.as<NSNumber>()) {
    writeNumber(number, out);
  } else if (const auto data = value.as<NSData>()) {
    if (data.length() > kLargestBuffer) {
      throw CallError(CallError::raised, "the data is too large to be sent");
    }
    writeTagged("$data", data.chars(), out);
  } else if (const auto array = value.as<NSArray>()) {
    writeList(array, out);
  } else if (const auto dictionary = value.as<NSDictionary>()) {
    writeDictionary(dictionary, out);
  } else if (const auto date = value.as<NSDate>()) {
    *out += "{\"$date\":";
    writeDouble(date.secondsSince1970(), out);
    *out += '}';
  } else if (const auto url = value.as<NSURL>()) {
    *out += "{\"$url\":";
    writeString(url.absoluteString(), out);
    *out += '}';
  } else if (const auto attributed = value.as<NSAttributedString>()) {
    *out += "{\"$attributed\":";
    writeDictionary(contentOfAttributed(attributed), out);
    *out += '}';
  } else {
    *out += "null";
  }
}

id readValue(const id& json, std::string* error) {
  if (const auto dictionary = json.as<NSDictionary>()) return readDictionary(dictionary, error);
  if (const auto array = json.as<NSArray>()) return readList(array, error);
  return json;
}

}  // namespace kelspar::runtime

namespace kelspar {

id valueFromJSON(std::string_view json, std::string* error) {
  error->clear();
  const id parsed = parseJSON(json, error);
  if (!parsed) return nil;
  id value = runtime::readValue(parsed, error);
  return !error->empty() || value.is<NSNull>() ? id() : value;
}

std::string jsonFromValue(const id& value) {
  std::string json;
  runtime::writeValue(value, &json);
  return json;
}

std::string jsonFromAnswer(const Answer& answer) {
  std::string json = "{\"value\":";
  runtime::writeValue(answer.value, &json);
  if (answer.hasOut) {
    json += ",\"out\":";
    runtime::writeValue(NSArray(std::vector<id>(answer.out)), &json);
  }
  if (answer.changesReceiver) {
    json += ",\"receiver\":";
    runtime::writeValue(answer.receiver, &json);
  }
  return json + "}";
}

}  // namespace kelspar

// JSON as it is written out: UTF-8, one line, keys in the order in which they were added.
#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/NSString.h"

namespace kelspar::host {

// A JSON string with its quotation marks; lone surrogates become U+FFFD.
[[nodiscard]] std::string jsonString(const NSString& text);

class JsonObject {
 public:
  // nil is written as null.
  JsonObject& add(const char* key, const NSString& value);
  JsonObject& add(const char* key, const char* value) { return add(key, NSString(value)); }
  JsonObject& add(const char* key, uint64_t value) { return addRaw(key, std::to_string(value)); }
  JsonObject& add(const char* key, bool value) { return addRaw(key, value ? "true" : "false"); }
  // `json` is JSON already.
  JsonObject& addRaw(const char* key, const std::string& json);

  [[nodiscard]] std::string text() const { return body_.empty() ? "{}" : body_ + "}"; }

 private:
  std::string body_;
};

// "[a,b]" of a list and what makes JSON of an element.
template <class List, class Make>
[[nodiscard]] std::string jsonArray(const List& list, Make make) {
  std::string json = "[";
  for (const auto& element : list) {
    if (json.size() > 1) json += ',';
    json += make(element);
  }
  return json + "]";
}

}  // namespace kelspar::host

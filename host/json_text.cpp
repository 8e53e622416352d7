// JSON strings and objects as text (RFC 8259).
#include "host/json_text.h"

namespace kelspar::host {

std::string jsonString(const NSString& text) {
  constexpr char kHex[] = "0123456789abcdef";
  std::string json = "\"";
  for (const char c : text.utf8()) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (c == '\n') {
      json += "\\n";
    } else if (c == '\t') {
      json += "\\t";
    } else if (c == '\r') {
      json += "\\r";
    } else if (byte < 0x20 || byte == 0x7F) {
      json.append("\\u00").append(1, kHex[byte >> 4]).append(1, kHex[byte & 15]);
    } else {
      json += c;
    }
  }
  return json + '"';
}

JsonObject& JsonObject::add(const char* key, const NSString& value) {
  return addRaw(key, value ? jsonString(value) : "null");
}

JsonObject& JsonObject::addRaw(const char* key, const std::string& json) {
  body_ += body_.empty() ? "{" : ",";
  body_ += jsonString(NSString(key)) + ":" + json;
  return *this;
}

}  // namespace kelspar::host

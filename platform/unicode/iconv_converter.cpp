// Converters of the C library, one a thread and direction, kept open.
#include "platform/unicode/iconv_converter.h"

#include <glib.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <map>

namespace kelspar {

namespace {

constexpr const char* kUnits = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

// Open converters of one thread, by direction; opening one reads a file.
class Converter {
 public:
  static Converter& between(const char* from, const char* to) {
    thread_local std::map<std::pair<std::string, std::string>, Converter> store;
    return store.try_emplace({from, to}, from, to).first->second;
  }

  Converter(const char* from, const char* to) : handle_(g_iconv_open(to, from)) {}
  Converter(const Converter&) = delete;
  ~Converter() {
    if (isOpen()) g_iconv_close(handle_);
  }

  [[nodiscard]] bool isOpen() const { return handle_ != reinterpret_cast<GIConv>(-1); }

  // Calls `take` with what was converted, a buffer at a time. A last call without input writes what
  // the converter has kept back: some characters combine with the next.
  template <class Take>
  bool run(std::string_view input, Take take) {
    if (!isOpen()) return false;
    g_iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(input.data());
    size_t left = input.size();
    for (bool isLast = false;;) {
      char buffer[4096];
      char* out = buffer;
      size_t room = sizeof buffer;
      const size_t result = isLast ? g_iconv(handle_, nullptr, nullptr, &out, &room)
                                   : g_iconv(handle_, &in, &left, &out, &room);
      const bool isFull = result == static_cast<size_t>(-1) && errno == E2BIG;
      take(std::string_view(buffer, sizeof buffer - room));
      if (isFull) continue;
      // A number above 0 counts characters that were only approximated.
      if (result != 0) return false;
      if (isLast) return true;
      isLast = true;
    }
  }

 private:
  GIConv handle_;
};

}  // namespace

bool convertWithIconv(const char* converter, std::string_view bytes, std::u16string* out) {
  return Converter::between(converter, kUnits).run(bytes, [out](std::string_view part) {
    const size_t start = out->size();
    out->resize(start + part.size() / 2);
    part.copy(reinterpret_cast<char*>(out->data() + start), part.size());
  });
}

bool encodeWithIconv(const char* converter, std::u16string_view text, std::string* out) {
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  return Converter::between(kUnits, converter).run(bytes, [out](std::string_view part) {
    out->append(part);
  });
}

void unitsByIconv(const char* name, std::string_view sequences, size_t length, char16_t* out) {
  Converter& converter = Converter::between(name, kUnits);
  for (size_t at = 0; at + length <= sequences.size(); at += length) {
    char16_t unit = u'\0';
    size_t count = 0;
    const auto take = [&](std::string_view part) {
      count += part.size();
      if (part.size() == sizeof unit) std::memcpy(&unit, part.data(), sizeof unit);
    };
    const bool valid = converter.run(sequences.substr(at, length), take);
    *out++ = valid && count == sizeof unit ? unit : u'\xFFFD';
  }
}

bool knownToIconv(const char* converter) { return Converter::between(converter, kUnits).isOpen(); }

}  // namespace kelspar

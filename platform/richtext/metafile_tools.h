// Builds metafiles record by record. For tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

namespace kelspar::testtools {

inline std::string words(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8 & 0xFF);
  }
  return bytes;
}

inline std::string longs(std::initializer_list<int64_t> values) {
  std::string bytes;
  for (const int64_t value : values) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return bytes;
}

// A record of a Windows metafile (MS-WMF 2.3).
inline std::string wmfRecord(int function, const std::string& parameters) {
  return longs({static_cast<int64_t>(parameters.size() / 2 + 3)}) + words({function}) + parameters;
}

// MS-WMF 2.3.2.2; a window of 100 x 50.
inline std::string wmf(const std::string& records) {
  return words({1, 9, 0x300}) + longs({0}) + words({8}) + longs({0}) + words({0}) +
         wmfRecord(0x20B, words({0, 0})) + wmfRecord(0x20C, words({50, 100})) + records +
         wmfRecord(0, "");
}

// A record of an enhanced metafile (MS-EMF 2.3).
inline std::string emfRecord(int64_t type, const std::string& parameters) {
  return longs({type, static_cast<int64_t>(parameters.size() + 8)}) + parameters;
}

// MS-EMF 2.3.4.2; a device of 1,000 x 1,000 pixels on 250 mm, a frame of 100 x 50 pixels.
inline std::string emf(const std::string& records) {
  return emfRecord(1, longs({0, 0, 99, 49, 0, 0, 2500, 1250, 0x464D4520, 0x10000,
                             0, 0, 1,  0,  0, 0, 1000, 1000, 250,        250})) +
         records + emfRecord(14, longs({0, 0, 20}));
}

// A bitmap's header (MS-WMF 2.2.2.3).
inline std::string bitmapHeader(int64_t width, int64_t height, int64_t depth) {
  return longs({40, width, height, depth << 16 | 1, 0, 0, 0, 0, 0, 0});
}

}  // namespace kelspar::testtools

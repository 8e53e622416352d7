// Input for the benchmarks, made here: RTF as office programs write it, and its compressed form.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "RTFKelspar/lz_stream.h"

namespace kelspar::bench {

inline std::string words(std::mt19937& random, size_t count) {
  static constexpr const char* kWords[] = {"the",     "message", "of",      "and", "report",
                                           "meeting", "to",      "quarter", "in",  "with",
                                           "that",    "office",  "please",  "a"};
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    text += kWords[random() % std::size(kWords)];
    text += ' ';
  }
  return text;
}

// Mixed formatting: a control word every few words.
inline std::string formattedRTF(size_t bytes) {
  std::mt19937 random(1);
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\froman Times;}}"
      "{\\colortbl;\\red0\\green0\\blue255;}\\pard\\plain\\f0\\fs22 ";
  while (rtf.size() < bytes) {
    switch (random() % 5) {
      case 0:
        rtf += "{\\b\\f1\\fs24 " + words(random, 4) + "}";
        break;
      case 1:
        rtf += "caf\\'e9 \\u8364? " + words(random, 3);
        break;
      case 2:
        rtf += "\\par\\pard\\li360\\sb120 ";
        break;
      case 3:
        rtf += "{\\cf1\\ul " + words(random, 2) + "}\\i " + words(random, 3) + "\\i0 ";
        break;
      default:
        rtf += words(random, 8);
        break;
    }
  }
  return rtf + "}";
}

// Encapsulated HTML, in the proportions of stored bodies.
inline std::string encapsulatedRTF(size_t bytes) {
  std::mt19937 random(2);
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\fromhtml1 \\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\\pard\\plain ";
  while (rtf.size() < bytes) {
    rtf += "{\\*\\htmltag64 <p class=MsoNormal>}\\htmlrtf {\\htmlrtf0 " + words(random, 6) +
           "\r\n{\\*\\htmltag84 <span style='font-size:11.0pt;color:#1F497D'>}\\htmlrtf "
           "{\\fs22\\htmlrtf0 " +
           words(random, 8) +
           "{\\*\\htmltag92 </span>}\\htmlrtf }\\htmlrtf0 "
           "\\htmlrtf\\par}\\htmlrtf0\r\n{\\*\\htmltag72 </p>}\r\n";
  }
  return rtf + "}";
}

// A stream of the format's tokens for a text; `effort` is how far back a match is looked for.
inline std::vector<uint8_t> compressed(const std::string& text, size_t effort) {
  std::string all(reinterpret_cast<const char*>(lz::seed().data()), lz::kSeedSize);
  all += text;
  std::vector<uint8_t> stream;
  std::vector<size_t> latest(1 << 16, SIZE_MAX), previous(all.size(), SIZE_MAX);
  const auto key = [&](size_t at) {
    return static_cast<uint8_t>(all[at]) | static_cast<uint8_t>(all[at + 1]) << 8;
  };
  const auto enter = [&](size_t at) {
    if (at + 1 >= all.size()) return;
    previous[at] = latest[key(at)];
    latest[key(at)] = at;
  };
  for (size_t at = 0; at < lz::kSeedSize; ++at) enter(at);
  for (size_t at = lz::kSeedSize; at < all.size();) {
    const size_t control = stream.size();
    stream.push_back(0);
    for (int bit = 0; bit < 8 && at < all.size(); ++bit) {
      size_t best = 0, bestAt = 0, tries = effort;
      size_t from = at + 1 < all.size() ? latest[key(at)] : SIZE_MAX;
      for (; from != SIZE_MAX && at - from < 4078 && tries > 0; from = previous[from], --tries) {
        size_t length = 2;
        while (length < 17 && at + length < all.size() && all[from + length] == all[at + length])
          ++length;
        if (length > best) best = length, bestAt = from;
      }
      if (best >= 2) {
        stream[control] = static_cast<uint8_t>(stream[control] | 1 << bit);
        const size_t token = (bestAt % 4096) << 4 | (best - 2);
        stream.push_back(static_cast<uint8_t>(token >> 8));
        stream.push_back(static_cast<uint8_t>(token));
      } else {
        best = 1;
        stream.push_back(static_cast<uint8_t>(all[at]));
      }
      for (const size_t end = at + best; at < end; ++at) enter(at);
    }
  }
  return stream;
}

}  // namespace kelspar::bench

// The likelihood of bytes as text of the East Asian encodings. Internal to the detector.
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "platform/unicode/byte_tables.h"

namespace kelspar {

class PairModel {
 public:
  enum class Language : uint8_t { simplified, traditional, japanese, korean };

  // Leads in [firstLead, lastLead] hold the usual characters.
  PairModel(NSStringEncoding encoding, Language language, float price, uint8_t firstLead,
            uint8_t lastLead);

  [[nodiscard]] NSStringEncoding encoding() const { return encoding_; }
  // In bits; infinite when the bytes cannot be of this encoding. What is cut off at the end does
  // not count.
  [[nodiscard]] float cost(std::string_view bytes) const;

 private:
  [[nodiscard]] float costOf(uint8_t lead, char16_t unit, bool isFrequent) const;
  [[nodiscard]] float costOfLast(std::string_view bytes) const;

  NSStringEncoding encoding_;
  Language language_;
  float price_;
  uint8_t firstLead_, lastLead_;
  bool isFourByte_, hasThreeByte_;
  const PairTable& table_;
  std::vector<uint8_t> costs_;  // by lead and trail, in eighths of a bit; 255 where undefined
};

[[nodiscard]] std::span<const PairModel> pairModels();

}  // namespace kelspar

// NSNumber and NSNull: exact comparison and conversion between 64-bit integers and doubles.
#include "platform/foundation/NSNumber.h"

#include <bit>
#include <charconv>
#include <cmath>

#include "platform/foundation/NSString.h"

namespace kelspar {

const NSKind NSNumber::kKind{"NSNumber"};
const NSKind NSNull::kKind{"NSNull"};

namespace {

using Type = NSNumber::Type;
constexpr double kTwo63 = 9223372036854775808.0;
constexpr double kTwo64 = 18446744073709551616.0;

class NumberContents final : public NSObject {
 public:
  NumberContents(Type type, uint64_t bits) : type_(type), bits_(bits) {}
  const NSKind& kind() const override { return NSNumber::kKind; }
  bool isEqual(const NSObject& other) const override;
  NSString description() const override;

  Type type() const { return type_; }
  uint64_t bits() const { return bits_; }
  double real() const { return std::bit_cast<double>(bits_); }
  bool negative() const { return type_ == Type::integer && static_cast<int64_t>(bits_) < 0; }

 private:
  Type type_;
  uint64_t bits_;
};

// Whether the double holds exactly the integer; never rounds either of them.
bool sameValue(double real, const NumberContents& integer) {
  if (!(real >= -kTwo63 && real < kTwo64) || real != std::trunc(real)) return false;
  if (integer.negative()) {
    return real < 0 && static_cast<int64_t>(real) == static_cast<int64_t>(integer.bits());
  }
  return real >= 0 && static_cast<uint64_t>(real) == integer.bits();
}

bool NumberContents::isEqual(const NSObject& other) const {
  if (&other.kind() != &NSNumber::kKind) return false;
  const auto& that = static_cast<const NumberContents&>(other);
  if (type_ == Type::real && that.type_ == Type::real) return real() == that.real();
  if (type_ == Type::real) return sameValue(real(), that);
  if (that.type_ == Type::real) return sameValue(that.real(), *this);
  return bits_ == that.bits_ && negative() == that.negative();
}

NSString NumberContents::description() const {
  char text[32];
  char* end = text;
  if (type_ == Type::real) {
    end = std::to_chars(text, text + sizeof text, real()).ptr;
  } else if (type_ == Type::integer) {
    end = std::to_chars(text, text + sizeof text, static_cast<int64_t>(bits_)).ptr;
  } else {
    end = std::to_chars(text, text + sizeof text, bits_).ptr;
  }
  return std::string_view(text, end - text);
}

const NumberContents* of(const NSNumber& number) {
  return static_cast<const NumberContents*>(number.contents());
}

class NullContents final : public NSObject {
 public:
  const NSKind& kind() const override { return NSNull::kKind; }
  NSString description() const override { return u"<null>"_ns; }
};

}  // namespace

NSNumber::NSNumber(Type type, uint64_t bits) : id(new NumberContents(type, bits)) {}
NSNumber::NSNumber(bool value) : NSNumber(Type::boolean, value) {}
NSNumber::NSNumber(double value) : NSNumber(Type::real, std::bit_cast<uint64_t>(value)) {}

NSNumber::Type NSNumber::type() const noexcept { return *this ? of(*this)->type() : Type::integer; }

bool NSNumber::boolValue() const noexcept {
  if (!*this) return false;
  return type() == Type::real ? of(*this)->real() != 0 : of(*this)->bits() != 0;
}

int64_t NSNumber::longValue() const noexcept {
  if (!*this) return 0;
  if (type() != Type::real) return static_cast<int64_t>(of(*this)->bits());
  const double real = of(*this)->real();
  if (std::isnan(real)) return 0;
  if (real >= kTwo63) return INT64_MAX;
  return real < -kTwo63 ? INT64_MIN : static_cast<int64_t>(real);
}

uint64_t NSNumber::unsignedLongValue() const noexcept {
  if (!*this) return 0;
  if (type() != Type::real) return of(*this)->bits();
  const double real = of(*this)->real();
  if (std::isnan(real)) return 0;
  if (real >= kTwo64) return UINT64_MAX;
  return real < 0 ? static_cast<uint64_t>(longValue()) : static_cast<uint64_t>(real);
}

double NSNumber::doubleValue() const noexcept {
  if (!*this) return 0;
  if (type() == Type::real) return of(*this)->real();
  return of(*this)->negative() ? static_cast<double>(static_cast<int64_t>(of(*this)->bits()))
                               : static_cast<double>(of(*this)->bits());
}

NSNull NSNull::null() {
  static const id shared(new NullContents);
  return shared.as<NSNull>();
}

}  // namespace kelspar

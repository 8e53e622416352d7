// Zones by TZ: the C library's idea of the same value is the oracle.
#include "platform/calendar/zones.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/calendar/zone_rules.h"

namespace kelspar {
namespace {

// Sets TZ for a while.
class Environment {
 public:
  explicit Environment(const char* value) {
    if (const char* before = std::getenv("TZ")) before_ = before;
    setenv("TZ", value, 1);
    tzset();
  }
  ~Environment() {
    before_ ? setenv("TZ", before_->c_str(), 1) : unsetenv("TZ");
    tzset();
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  std::optional<std::string> before_;
};

int64_t offsetAt(const icu::TimeZone& zone, std::time_t seconds) {
  int32_t raw = 0, saving = 0;
  UErrorCode error = U_ZERO_ERROR;
  zone.getOffset(static_cast<UDate>(seconds) * 1000, false, raw, saving, error);
  return (raw + saving) / 1000;
}

// Every three hours of six years with a leap day among them.
void expectTheLibrarysOffsets(const std::string& value, const icu::TimeZone& zone) {
  constexpr std::time_t kFrom = 1546300800, kTo = kFrom + 6 * 366 * 86400;
  const Environment environment(value.c_str());
  for (std::time_t seconds = kFrom; seconds < kTo; seconds += 3 * 3600) {
    std::tm parts{};
    localtime_r(&seconds, &parts);
    ASSERT_EQ(offsetAt(zone, seconds), parts.tm_gmtoff) << value << " at " << seconds;
  }
}

class Rules : public testing::TestWithParam<const char*> {};
TEST_P(Rules, HaveTheOffsetsOfTheCLibrary) {
  const auto zone = calendar::zoneOfVariable<icu::TimeZone>(GetParam());
  ASSERT_TRUE(zone);
  expectTheLibrarysOffsets(GetParam(), *zone);
}
INSTANTIATE_TEST_SUITE_P(
    Zones, Rules,
    testing::Values("UTC0", "XYZ3", "IST-5:30", "<+03>-3", "<-0330>3:30", "JST-9", "LMT-0:53:28",
                    "CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0/2,M10.5.0/3",
                    "XST5XDT,M3.2.0,M11.1.0", "XST5XDT4,M3.2.0,M11.1.0",
                    "NZST-12NZDT,M9.5.0,M4.1.0/3", "AEST-10AEDT,M10.1.0,M4.1.0/3",
                    "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "IST-2IDT,M3.4.4/26,M10.5.0",
                    "<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "XST3XDT,J60/0,J300/1:30",
                    "XST3XDT,M2.5.3,M8.2.6/23:30", "XST-1XDT-3,M3.5.0,M10.5.0/4"));

TEST(Zones, NamesAndFilesAreICUs) {
  const auto berlin =
      std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone("Europe/Berlin"));
  for (const char* value :
       {"Europe/Berlin", ":Europe/Berlin", "posix/Europe/Berlin", "right/Europe/Berlin",
        "/usr/share/zoneinfo/Europe/Berlin", ":/usr/share/zoneinfo/Europe/Berlin",
        "/usr/share/zoneinfo/posix/Europe/Berlin", "/no/such/zoneinfo/Europe/Berlin"}) {
    const auto zone = calendar::zoneOfVariable<icu::TimeZone>(value);
    ASSERT_TRUE(zone) << value;
    EXPECT_TRUE(*zone == *berlin) << value;
  }
  const auto west = calendar::zoneOfVariable<icu::TimeZone>("Etc/GMT+5");
  ASSERT_TRUE(west);
  EXPECT_EQ(west->getRawOffset(), -5 * 3600 * 1000);
}

TEST(Zones, LinksToFilesAreFollowed) {
  const std::filesystem::path link =
      testing::TempDir() + "kelspar-zone-" + std::to_string(getpid());
  const std::filesystem::path file = "/usr/share/zoneinfo/Europe/Berlin";
  std::filesystem::create_symlink(file, link);
  const auto zone = calendar::zoneOfVariable<icu::TimeZone>(":" + link.string());
  std::filesystem::remove(link);
  EXPECT_EQ(static_cast<bool>(zone), std::filesystem::exists(file));
}

TEST(Zones, WhatNamesNoneIsNone) {
  for (const char* value : {"",
                            ":",
                            "/",
                            "/dev/zero",
                            "../../../etc/passwd",
                            "Nonsense/Zone",
                            "AB3",
                            "<+03-3",
                            "XYZ",
                            "IST",
                            "XYZ25",
                            "XYZ3:60",
                            "XYZ3ABC,",
                            "XYZ3ABC,M3.5.0",
                            "XYZ3ABC,M13.5.0,M10.5.0",
                            "XYZ3ABC,M3.6.0,M10.5.0",
                            "XYZ3ABC,M3.5.7,M10.5.0",
                            "XYZ3ABC,J0,J300",
                            "XYZ3ABC,J366,J300",
                            "XYZ3ABC,59,300",
                            "XYZ3ABC,M3.5.0,M10.5.0x",
                            "XYZ3ABC3,M3.5.0,M10.5.0",
                            "XYZ99999999999",
                            "\xFF\xFE"}) {
    EXPECT_FALSE(calendar::zoneOfVariable<icu::TimeZone>(value)) << value;
  }
  EXPECT_FALSE(calendar::zoneOfVariable<icu::TimeZone>(std::string(100000, 'A')));
}

TEST(Zones, DaylightTimeWithoutRulesIsTheUsualOne) {
  const auto plain = calendar::zoneOfRule<icu::TimeZone>("XST5XDT"),
             stated = calendar::zoneOfRule<icu::TimeZone>("XST5XDT,M3.2.0,M11.1.0");
  ASSERT_TRUE(plain && stated);
  EXPECT_TRUE(plain->hasSameRules(*stated));
}

}  // namespace
}  // namespace kelspar

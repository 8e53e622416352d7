#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/lz_stream.h"
#include "RTFKelspar/lz_textbook.h"

namespace kelspar {
namespace {

using RTFKelsparNSDataAdditions::getRTFForData;

std::string le32(uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return bytes;
}

NSData blob(const std::string& type, uint32_t rawSize, const std::string& stream) {
  return NSData(le32(0) + le32(rawSize) + type + le32(0) + stream);
}

class LogLines : public testing::Test {
 protected:
  LogLines() {
    setLogSink([this](std::string_view line) { lines_.emplace_back(line); });
  }
  ~LogLines() override { setLogSink({}); }
  std::vector<std::string> lines_;
};
using CompressedRTF = LogLines;

TEST(LZSeed, IsThePublishedText) {
  const auto seed = lz::seed();
  const std::string text(seed.begin(), seed.end());
  EXPECT_EQ(text.size(), 207u);
  EXPECT_TRUE(text.starts_with("{\\rtf1\\ansi\\mac\\deff0\\deftab720{\\fonttbl;}{\\f0\\fnil"));
  EXPECT_EQ(text.substr(168, 2), "\r\n");
  EXPECT_TRUE(text.ends_with("\\par \\pard\\plain\\f0\\fs20\\b\\i\\u\\tab\\tx"));
}

TEST_F(CompressedRTF, TypeFieldDecides) {
  EXPECT_TRUE(RTFKelspar::typeIsRTF(blob("LZFu", 0, "").bytes()));
  EXPECT_TRUE(RTFKelspar::typeIsRTF(blob("MELA", 0, "").bytes()));
  EXPECT_FALSE(RTFKelspar::typeIsRTF(blob("LZFU", 0, "").bytes()));
  EXPECT_TRUE(lines_.empty());
  EXPECT_FALSE(RTFKelspar::typeIsRTF(nullptr));
  EXPECT_EQ(lines_, std::vector<std::string>{"  ERROR: data is NULL"});
}

TEST_F(CompressedRTF, FifteenBytesAreTooFew) {
  EXPECT_FALSE(getRTFForData(blob("LZFu", 5, "").subdata(0, 15)));
  EXPECT_EQ(lines_, std::vector<std::string>{"  ERROR: len < 16 (too small for RTF header)"});
}

TEST_F(CompressedRTF, ShortBlobsWithoutATypeAreQuiet) {
  for (size_t length = 1; length < 12; ++length) {
    EXPECT_FALSE(getRTFForData(blob("LZFu", 5, "").subdata(0, length)));
  }
  EXPECT_TRUE(lines_.empty());
}

TEST_F(CompressedRTF, MissingAndEmptyData) {
  EXPECT_FALSE(getRTFForData(nil));
  EXPECT_TRUE(lines_.empty());
  EXPECT_FALSE(getRTFForData(NSData(std::string_view())));
  EXPECT_EQ(lines_, std::vector<std::string>{"  ERROR: data is NULL"});
}

TEST_F(CompressedRTF, HeaderAloneGivesEmptyData) {
  const NSData rtf = getRTFForData(blob("LZFu", 0, ""));
  ASSERT_TRUE(rtf);
  EXPECT_TRUE(rtf.isEmpty());
}

TEST_F(CompressedRTF, UnknownTypeGivesNilQuietly) {
  EXPECT_FALSE(getRTFForData(blob("ABCD", 3, "xyz")));
  EXPECT_TRUE(lines_.empty());
}

TEST_F(CompressedRTF, UncompressedTypeGivesNil) {
  EXPECT_FALSE(getRTFForData(blob("MELA", 3, "abc")));
}

TEST_F(CompressedRTF, RawSizeBeyondTheStreamIsZeroFilled) {
  // Control byte 0: eight literals.
  EXPECT_EQ(getRTFForData(blob("LZFu", 6, std::string("\0abc", 4))),
            NSData(std::string_view("abc\0\0\0", 6)));
}

TEST_F(CompressedRTF, FourGigabytesStayUntouched) {
  const NSData rtf = getRTFForData(blob("LZFu", 0xFFFFFFFF, std::string("\0{\\rtf", 6)));
  ASSERT_TRUE(rtf);
  EXPECT_EQ(rtf.length(), 0xFFFFFFFFu);
  EXPECT_EQ(rtf.chars().substr(0, 5), "{\\rtf");
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) {
      EXPECT_LT(std::stoull(line.substr(6)), 1u << 20) << "1 GiB";
    }
  }
}

TEST_F(CompressedRTF, ReferenceThatDoesNotFitIsDroppedWhole) {
  // One literal, then a reference of 5 bytes into the seed with room for 3; what stands behind it
  // is read as a control byte (0) and literals.
  const std::string stream(
      "\x02"
      "a\x00\x03\x00"
      "bcdef",
      10);
  EXPECT_EQ(getRTFForData(blob("LZFu", 4, stream)), NSData(std::string_view("abcd")));
}

TEST_F(CompressedRTF, EndMarkEndsOnlyItsGroup) {
  // A reference to the write position (207 = 0x0CF), then another group.
  const std::string stream(
      "\x01\x0C\xF0\x00"
      "xyz",
      7);
  EXPECT_EQ(getRTFForData(blob("LZFu", 3, stream)), NSData(std::string_view("xyz")));
}

TEST_F(CompressedRTF, BufferFormReportsTheSizeWhateverTheType) {
  uint64_t size = 1;
  uint8_t* out = nullptr;
  const NSData other = blob("ABCD", 77, "");
  RTFKelspar::getRTFFromBuffer(other.bytes(), other.length(), &size, &out);
  EXPECT_EQ(size, 77u);
  EXPECT_EQ(out, nullptr);
  RTFKelspar::getRTFFromBuffer(nullptr, 16, &size, &out);
  EXPECT_EQ(lines_, std::vector<std::string>{"  ERROR: data is NULL"});
}

TEST_F(CompressedRTF, UncompressedTypeIsCopiedFromTheRawSizeFieldOn) {
  const NSData stored = blob("MELA", 14, "ab");
  uint64_t size = 0;
  uint8_t placeholder = 0;
  uint8_t* out = &placeholder;
  RTFKelspar::getRTFFromBuffer(stored.bytes(), stored.length(), &size, &out);
  ASSERT_EQ(size, 14u);
  EXPECT_EQ(NSData(out, 14), stored.subdata(4, 14));
  std::free(out);

  out = nullptr;
  RTFKelspar::getRTFFromBuffer(stored.bytes(), stored.length(), &size, &out);
  EXPECT_EQ(out, nullptr) << "a null slot stays null";
}

TEST_F(CompressedRTF, UncompressedTypeBehindTheBlobsEndIsZero) {
  const NSData stored = blob("MELA", 100, "ab");
  uint64_t size = 0;
  uint8_t placeholder = 0;
  uint8_t* out = &placeholder;
  RTFKelspar::getRTFFromBuffer(stored.bytes(), stored.length(), &size, &out);
  EXPECT_EQ(NSData(out, 14), stored.subdata(4));
  EXPECT_EQ(NSData(out + 14, 86), NSData(std::string(86, '\0')));
  std::free(out);
}

TEST_F(CompressedRTF, AllocationThatFailsIsLogged) {
  EXPECT_EQ(RTFKelspar::decodeRTFSource(nullptr, 0, UINT64_MAX), nullptr);
  EXPECT_EQ(lines_, std::vector<std::string>{
                        "  ERROR: Failed to allocate 18446744073709551615 bytes for output"});
  EXPECT_EQ(RTFKelspar::initializeArrayWithEntryCount(UINT64_MAX, 2), nullptr);
}

TEST(ConvertToLongLong, IsUnsignedAndLittleEndian) {
  const uint8_t bytes[] = {0x78, 0x56, 0x34, 0xF2};
  EXPECT_EQ(RTFKelspar::convertToLongLong(bytes), INT64_C(0xF2345678));
  EXPECT_EQ(RTFKelspar::convertToLongLong(nullptr), 0);
}

std::vector<uint8_t> decoded(const std::vector<uint8_t>& stream, size_t rawSize) {
  std::vector<uint8_t> output(rawSize);
  lz::decode(stream, output);
  return output;
}

// The decoder against the format's description, step by step, on streams of every kind of token.
TEST(LZLaw, EqualsTheTextbookDecoder) {
  std::mt19937 random(424242);
  for (int round = 0; round < 20000; ++round) {
    std::vector<uint8_t> stream(random() % 400);
    const bool references = random() % 2;
    for (uint8_t& byte : stream) {
      byte = static_cast<uint8_t>(references && random() % 3 == 0 ? random() % 16 : random());
    }
    const size_t rawSize = random() % (random() % 4 == 0 ? 60 : 3000);
    ASSERT_EQ(decoded(stream, rawSize), lz::decodeByTheBook(stream, rawSize)) << "round " << round;
  }
}

TEST(LZLaw, EqualsTheTextbookDecoderAroundTheRing) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::vector<uint8_t> stream(20000);
    for (uint8_t& byte : stream) byte = static_cast<uint8_t>(random());
    for (size_t i = 0; i < stream.size(); i += 1 + random() % 40) stream[i] = 0;
    const size_t rawSize = 1 + random() % 100000;
    ASSERT_EQ(decoded(stream, rawSize), lz::decodeByTheBook(stream, rawSize));
  }
}

#ifdef KELSPAR_CORPUS
NSData contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return NSData(std::string{std::istreambuf_iterator<char>(file), {}});
}

TEST(CompressedRTFCorpus, EveryStoredBodyDecodesToTheFileBesideIt) {
  size_t compared = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/lzfu")) {
    if (entry.path().extension() != ".rtfz") continue;
    const NSData stored = contentsOf(entry.path());
    auto plain = entry.path();
    plain.replace_extension(".rtf");
    const bool compressed = stored.chars().substr(8, 4) == "LZFu";
    EXPECT_EQ(getRTFForData(stored), compressed ? contentsOf(plain) : NSData()) << entry.path();
    ++compared;
  }
  EXPECT_GE(compared, 100u);
}
#endif

}  // namespace
}  // namespace kelspar

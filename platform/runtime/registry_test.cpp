#include "platform/runtime/registry.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

// A class and a category of our own, with every kind of parameter.
uint64_t sum(const uint8_t* bytes, uint64_t count) {
  uint64_t total = 0;
  for (uint64_t i = 0; bytes && i < count; ++i) total += bytes[i];
  return total;
}
bool tellSign(int32_t value, int32_t* sign, float* half) {
  if (sign) *sign = (value > 0) - (value < 0);
  if (half) *half = static_cast<float>(value) / 2;
  return value != 0;
}
void upperCase(char* text) {
  for (; *text; ++text) *text = static_cast<char>(*text & ~0x20);
}
void fill(char* out, uint64_t size) {
  for (uint64_t i = 0; i + 1 < size; ++i) out[i] = 'f';
  if (size > 0) out[size - 1] = '\0';
}
const char* firstX(const char* text) {
  while (text && *text && *text != 'x') ++text;
  return text && *text ? text : nullptr;
}
char* doubled(const char* text) {
  std::string result(text);
  result += result;
  return strdup(result.c_str());
}
uint8_t* zeros(uint64_t count) { return static_cast<uint8_t*>(std::calloc(count + 1, 1)); }
void makeBuffer(uint64_t* size, uint8_t** buffer) {
  *size = 2;
  if (!*buffer) return;
  *buffer = static_cast<uint8_t*>(std::calloc(2, 1));
}
char nextCharacter(char c) { return static_cast<char>(c + 1); }
NSString raise(const NSString&) { throw NSRangeException("out of bounds"); }
void appendTo(NSMutableString& receiver, const NSString& text) { receiver.append(text); }
void addTo(NSMutableArray& array, const id& element) { array.addObject(element); }
NSMutableArray pair(const NSString& receiver) {
  NSMutableArray array;
  array.addObject(receiver);
  array.addObject(receiver);
  return array;
}
NSString named() { return u"named"; }

KELSPAR_OPERATIONS(RegistryTest) {
  auto test = registry.forClass("RegistryTest");
  test.add("sum:count:", &sum).counted(1, 2);
  test.add("tellSign:sign:half:", &tellSign);
  test.add("upperCase:", &upperCase);
  test.add("fill:size:", &fill).sized(1, 2);
  test.add("firstX:", &firstX);
  test.add("doubled:", &doubled);
  test.add("zeros:", &zeros).resultSize(1);
  test.add("makeBuffer:buffer:", &makeBuffer).slotSize(2, 1);
  test.add("nextCharacter:", &nextCharacter);
  test.add("raise:", &raise);
  test.add("addTo:element:", &addTo);
  auto text = registry.forCategory("RegistryTestNSStringAdditions", "NSString");
  text.add("appendTo:", &appendTo);
  text.add("pair", &pair);
  text.addClassOperation("named", &named);
}

Answer call(const char* name, std::vector<id> arguments, id receiver = nil) {
  const Operation* operation = Operations::shared().find("", name);
  return operation->call({std::move(receiver), std::move(arguments)});
}

std::string answered(const char* name, std::vector<id> arguments, id receiver = nil) {
  try {
    return jsonFromAnswer(call(name, std::move(arguments), std::move(receiver)));
  } catch (const CallError& error) {
    return std::to_string(error.code()) + " " + error.what();
  }
}

id bytes(std::string_view text) { return NSData(text); }

TEST(Operations, AreFoundByClassCategoryAndExtendedType) {
  const auto& all = Operations::shared();
  EXPECT_TRUE(all.find("RegistryTest", "firstX:"));
  EXPECT_FALSE(all.find("RegistryTest", "firstX"));
  EXPECT_FALSE(all.find("NSString", "firstX:"));
  EXPECT_TRUE(all.find("RegistryTestNSStringAdditions", "named"));
  EXPECT_TRUE(all.find("NSString", "named"));
  EXPECT_TRUE(all.find("", "pair"));
  EXPECT_TRUE(all.find("RTFKelspar", "typeIsRTF:")) << "the units are there";
}

TEST(Operations, CountedBytes) {
  EXPECT_EQ(answered("sum:count:", {bytes("\1\2\3"), NSNumber(3)}), R"({"value":6})");
  EXPECT_EQ(answered("sum:count:", {nil, NSNumber(3)}), R"({"value":0})");
  EXPECT_EQ(answered("sum:count:", {bytes("\1"), NSNumber(UINT64_MAX)}),
            "-32602 argument 2 should be at most the length of argument 1");
}

TEST(Operations, PointersToNumbers) {
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(-3), NSNumber(0), NSNumber(0)}),
            R"({"value":true,"out":[null,-1,-1.5]})");
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(3), nil, nil}),
            R"({"value":true,"out":[null,null,null]})");
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(INT64_C(1) << 40), nil, nil}),
            "-32602 argument 1 should be signed 32-bit integer");
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(4.0), nil, nil}),
            R"({"value":true,"out":[null,null,null]})");
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(4.5), nil, nil}),
            "-32602 argument 1 should be signed 32-bit integer");
  EXPECT_EQ(answered("tellSign:sign:half:", {NSNumber(true), nil, nil}),
            "-32602 argument 1 should be signed 32-bit integer");
}

TEST(Operations, WritableBytes) {
  EXPECT_EQ(answered("upperCase:", {bytes("abc")}), R"({"value":null,"out":[{"$data":"QUJD"}]})");
  EXPECT_EQ(answered("fill:size:", {bytes(""), NSNumber(4)}),
            R"({"value":null,"out":[{"$data":"ZmZm"},null]})");
  EXPECT_EQ(answered("fill:size:", {bytes("ab"), NSNumber(1)}),
            R"({"value":null,"out":[{"$data":""},null]})");
  EXPECT_EQ(answered("fill:size:", {bytes("ab"), NSNumber(UINT64_MAX)}),
            "-32602 argument 2 should be at most 536870912");
}

TEST(Operations, BufferResults) {
  EXPECT_EQ(answered("firstX:", {bytes("abxc")}), R"({"value":2})");
  EXPECT_EQ(answered("firstX:", {bytes("abc")}), R"({"value":null})");
  EXPECT_EQ(answered("doubled:", {bytes("ab")}), R"({"value":{"$data":"YWJhYg=="}})");
  EXPECT_EQ(answered("zeros:", {NSNumber(3)}), R"({"value":{"$data":"AAAA"}})");
}

TEST(Operations, BufferSlots) {
  EXPECT_EQ(answered("makeBuffer:buffer:", {NSNumber(0), nil}), R"({"value":null,"out":[2,null]})");
  EXPECT_EQ(answered("makeBuffer:buffer:", {NSNumber(0), bytes("")}),
            R"({"value":null,"out":[2,{"$data":"AAA="}]})");
  EXPECT_EQ(answered("makeBuffer:buffer:", {NSNumber(0), NSNumber(1)}),
            "-32602 argument 2 should be slot for a buffer");
}

TEST(Operations, EightBitCharacters) {
  EXPECT_EQ(answered("nextCharacter:", {NSNumber(97)}), R"({"value":98})");
  EXPECT_EQ(answered("nextCharacter:", {NSNumber(256)}),
            "-32602 argument 1 should be 8-bit character");
}

TEST(Operations, RaisesAreErrors) {
  EXPECT_EQ(answered("raise:", {nil}), "-32000 NSRangeException: out of bounds");
}

TEST(Operations, ReceiversThatChange) {
  EXPECT_EQ(answered("appendTo:", {NSString(u"b")}, NSString(u"a")),
            R"({"value":null,"receiver":"ab"})");
  EXPECT_EQ(answered("appendTo:", {NSString(u"b")}, nil), R"({"value":null,"receiver":null})");
  EXPECT_EQ(answered("appendTo:", {NSString(u"b")}, NSNumber(1)),
            "-32602 receiver should be NSMutableString");
  EXPECT_EQ(answered("pair", {}, NSString(u"a")), R"({"value":["a","a"]})");
}

TEST(Operations, ArraysThatChange) {
  EXPECT_EQ(answered("addTo:element:", {NSArray{NSNumber(1)}, NSNumber(2)}),
            R"({"value":null,"out":[[1,2],null]})");
}

TEST(Operations, ArgumentsAreCounted) {
  EXPECT_EQ(answered("sum:count:", {}), "-32602 expected 2 arguments, got 0");
  EXPECT_EQ(answered("named", {nil}), "-32602 expected 0 arguments, got 1");
}

TEST(Operations, DescribeTheirTypes) {
  const Operation* operation = Operations::shared().find("RegistryTest", "tellSign:sign:half:");
  EXPECT_EQ(operation->argumentTypes(),
            (std::vector<std::string>{"signed 32-bit integer", "pointer to signed 32-bit integer",
                                      "pointer to 32-bit float"}));
  EXPECT_EQ(operation->resultType(), "boolean");
  EXPECT_FALSE(operation->hasReceiver());
  EXPECT_EQ(Operations::shared().find("", "pair")->receiverType(), "NSString");
}

}  // namespace
}  // namespace kelspar

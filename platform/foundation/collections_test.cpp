#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

#include "platform/foundation/foundation.h"

namespace kelspar {
namespace {

TEST(NSArray, NilIsNotEmpty) {
  EXPECT_FALSE(NSArray());
  EXPECT_TRUE(NSArray::empty());
  EXPECT_EQ(NSArray().count(), 0u);
  EXPECT_FALSE(NSArray() == NSArray::empty());
}

TEST(NSArray, StoresNilAsTheNullObject) {
  const NSArray array{NSString(u"a"), nil};
  EXPECT_TRUE(array.objectAtIndex(1).is<NSNull>());
  EXPECT_THROW((void)array.objectAtIndex(2), NSRangeException);
}

TEST(NSArray, IsComparedByElements) {
  EXPECT_EQ((NSArray{NSNumber(1), NSString(u"b")}), (NSArray{NSNumber(1.0), NSString(u"b")}));
  EXPECT_FALSE((NSArray{NSNumber(1)}) == (NSArray{NSNumber(2)}));
}

TEST(NSMutableArray, ChangesWithoutTouchingItsCopies) {
  NSMutableArray array(NSArray{NSNumber(1)});
  const NSArray before = array.copy();
  array.addObject(NSNumber(2));
  array.replaceObjectAtIndex(0, NSNumber(9));
  EXPECT_EQ(before, NSArray{NSNumber(1)});
  EXPECT_EQ(array.copy(), (NSArray{NSNumber(9), NSNumber(2)}));
  EXPECT_THROW(array.replaceObjectAtIndex(2, nil), NSRangeException);
}

TEST(NSDictionary, KeepsTheOrderOfItsKeys) {
  NSMutableDictionary dictionary{{u"b", NSNumber(1)}, {u"a", NSNumber(2)}};
  dictionary.setObject(NSNumber(3), u"b");
  ASSERT_EQ(dictionary.count(), 2u);
  EXPECT_EQ(dictionary.entries()[0].first, NSString(u"b"));
  EXPECT_EQ(dictionary.objectForKey(u"b").as<NSNumber>(), NSNumber(3));
  EXPECT_FALSE(dictionary.objectForKey(u"c"));
  EXPECT_THROW(dictionary.setObject(nil, nil), NSInvalidArgumentException);
}

TEST(NSDictionary, FindsAmongMany) {
  NSMutableDictionary dictionary;
  for (int i = 0; i < 1000; ++i) {
    dictionary.setObject(NSNumber(i), NSString::stringWithFormat(u"key %d", i));
  }
  const NSMutableDictionary copy = dictionary;
  for (int i = 0; i < 1000; ++i) {
    const NSString key = NSString::stringWithFormat(u"key %d", i);
    ASSERT_EQ(copy.objectForKey(key).as<NSNumber>(), NSNumber(i));
  }
}

TEST(NSDictionary, IsComparedWithoutOrder) {
  const NSDictionary a{{u"x", NSNumber(1)}, {u"y", NSNull::null()}};
  const NSDictionary b{{u"y", nil}, {u"x", NSNumber(1)}};
  EXPECT_EQ(a, b);
  EXPECT_FALSE(a == (NSDictionary{{u"x", NSNumber(1)}}));
  EXPECT_FALSE(NSDictionary() == NSDictionary(NSMutableDictionary()));
}

TEST(Collections, DescribeThemselves) {
  const NSArray array{NSString(u"a"), NSDictionary{{u"k", NSNumber(1)}}};
  EXPECT_EQ(array.description(), NSString(u"(\n    a,\n    {\n        k = 1\n    }\n)"));
}

TEST(Collections, DescriptionsAreIndentedInLinearTime) {
  std::vector<id> elements(160'000, NSString(u"a\nb"));
  id value = NSArray(std::move(elements));
  for (int depth = 0; depth < 4; ++depth) value = NSArray{std::move(value)};
  const auto start = std::chrono::steady_clock::now();
  const NSString text = value.description();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  EXPECT_TRUE(text.hasPrefix(u"(\n    (\n        ("));
  EXPECT_NE(
      text.view().find(u"\n                    a\n                    b,\n                    a"),
      std::u16string_view::npos);
}

class Undescribable final : public NSObject {
 public:
  const NSKind& kind() const override {
    static const NSKind kind{"Undescribable"};
    return kind;
  }
  NSString description() const override { throw std::runtime_error("no words"); }
};

TEST(Collections, DescriptionsThatThrowLeaveNoDepthBehind) {
  const NSArray array{id(new Undescribable)};
  for (int i = 0; i < 40; ++i) EXPECT_THROW((void)array.description(), std::runtime_error);
  EXPECT_EQ(NSArray{NSString(u"a")}.description(), NSString(u"(\n    a\n)"));
}

}  // namespace
}  // namespace kelspar

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "WebKelspar/WebKelspar.h"

namespace kelspar {
namespace {

class JSONFromFile : public testing::Test {
 protected:
  JSONFromFile()
      : path_(std::filesystem::temp_directory_path() /
              ("kelspar-json-" + std::to_string(getpid()) + ".json")) {}
  ~JSONFromFile() override { std::filesystem::remove(path_); }

  NSArray load(std::string_view json) {
    std::ofstream(path_, std::ios::binary) << json;
    return WebKelspar::getJSONArrayFromURL(NSURL::fileURLWithPath(path_.string()).absoluteString());
  }

 private:
  std::filesystem::path path_;
};

TEST_F(JSONFromFile, ArraysGiveTheirElements) {
  const NSArray elements = load("[1, \"two\", [3], null, {\"a\": true}]");
  ASSERT_EQ(elements.count(), 5u);
  EXPECT_EQ(elements.objectAtIndex(0).as<NSNumber>().longValue(), 1);
  EXPECT_EQ(elements.objectAtIndex(1).as<NSString>(), NSString(u"two"));
  EXPECT_EQ(elements.objectAtIndex(2).as<NSArray>().count(), 1u);
  EXPECT_TRUE(elements.objectAtIndex(3).is<NSNull>());
  EXPECT_TRUE(elements.objectAtIndex(4).is<NSDictionary>());
}

TEST_F(JSONFromFile, WhatIsNoArrayIsAnEmptyList) {
  for (const char* json : {"{\"a\": 1}", "7", "null", "\"text\"", "", "[1", "no JSON", "[]"}) {
    const NSArray elements = load(json);
    EXPECT_TRUE(elements) << json;
    EXPECT_EQ(elements.count(), 0u) << json;
  }
}

TEST(JSONFromURL, FailuresAreNil) {
  for (const char* url : {"", "not a URL", "relative/path", "ftp://localhost/a", "data:,[1]",
                          "file:///no/such/file.json", "file:///tmp", "file:///dev/zero",
                          "http://127.0.0.1:1/refused"}) {
    EXPECT_FALSE(WebKelspar::getJSONArrayFromURL(NSString(url))) << url;
  }
  EXPECT_FALSE(WebKelspar::getJSONArrayFromURL(NSString()));
}

}  // namespace
}  // namespace kelspar

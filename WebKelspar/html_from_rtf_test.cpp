#include <gtest/gtest.h>

#include "WebKelspar/WebKelspar.h"

namespace kelspar {
namespace {

bool contains(const NSString& text, std::u16string_view part) {
  return text.view().find(part) != std::u16string_view::npos;
}

TEST(HTMLFromRTF, IsADocumentInUTF8) {
  const NSString html = WebKelspar::htmlFromRTFData(
      NSData(std::string_view("{\\rtf1\\ansi caf\\'e9 {\\b bold} <&>\\par next}")));
  EXPECT_TRUE(contains(html, u"<!DOCTYPE html>"));
  EXPECT_TRUE(contains(html, u"utf-8"));
  EXPECT_TRUE(contains(html, u"caf\u00E9"));
  EXPECT_TRUE(contains(html, u"<b>bold</b>"));
  EXPECT_TRUE(contains(html, u"&lt;&amp;"));
}

TEST(HTMLFromRTF, WhatIsNoRTFGivesNil) {
  EXPECT_FALSE(WebKelspar::htmlFromRTFData(nil));
  EXPECT_FALSE(WebKelspar::htmlFromRTFData(NSData(std::string_view())));
  EXPECT_FALSE(WebKelspar::htmlFromRTFData(NSData(std::string_view("plain text"))));
}

}  // namespace
}  // namespace kelspar

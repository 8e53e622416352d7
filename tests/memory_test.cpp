// What the operations take from the heap: the most that is held at one moment beyond the input,
// next to the result's size. Every allocation of the process is counted, the libraries' too.
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstdint>
#include <functional>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "bench/material.h"
#include "platform/unicode/NSStringEncoding.h"

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);
}

namespace {

std::atomic<int64_t> held{0}, most{0};

void* took(void* block) {
  if (!block) return nullptr;
  const int64_t now = held += static_cast<int64_t>(malloc_usable_size(block));
  for (int64_t seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
  }
  return block;
}

void gave(void* block) {
  if (block) held -= static_cast<int64_t>(malloc_usable_size(block));
}

}  // namespace

extern "C" {
void* malloc(size_t size) { return took(__libc_malloc(size)); }
void* calloc(size_t count, size_t size) { return took(__libc_calloc(count, size)); }
void* realloc(void* block, size_t size) {
  gave(block);
  void* const moved = __libc_realloc(block, size);
  if (!moved && size > 0) took(block);
  return took(moved);
}
void* memalign(size_t alignment, size_t size) { return took(__libc_memalign(alignment, size)); }
void* aligned_alloc(size_t alignment, size_t size) {
  return took(__libc_memalign(alignment, size));
}
void free(void* block) {
  gave(block);
  __libc_free(block);
}
}

namespace kelspar {
namespace {

constexpr int64_t kKiB = 1024, kMiB = 1024 * kKiB;

// Room for a text is reserved for as many units as there are bytes, and what is not written of it
// is given back: the result and the rest of that room are counted.
struct Row {
  const char* name;
  // Makes the input and gives the operation; the operation gives the bytes of its result.
  std::function<std::function<int64_t()>()> job;
  double inputs;     // how many times the input's bytes may be held beyond the result
  int64_t constant;  // and how much in any case
};

constexpr size_t kSize = 8 << 20;
constexpr int64_t kInput = kSize;

int64_t units(const NSString& text) { return static_cast<int64_t>(text.length() * 2); }

NSString foldedBase64(size_t size) {
  std::string text;
  while (text.size() < size)
    text += "SGVsbG8gd29ybGQsIHRoaXMgaXMgYSBsaW5lIG9mIGJhc2U2NCB0ZXh0IGZvciBhIHRlc3Qu\r\n";
  return NSString(text);
}

NSString softLines(size_t size) {
  std::string text;
  while (text.size() < size) text += "A line of caf=C3=A9 that goes on =E2=82=AC and is cut =\r\n";
  return NSString(text);
}

std::string page(size_t size) {
  std::mt19937 random(3);
  std::string html = "<html><body>";
  while (html.size() < size)
    html += "<p class=x>" + bench::words(random, 9) + "<b>" + bench::words(random, 3) +
            "</b> &amp; " + bench::words(random, 4) + "</p>\n";
  return html;
}

std::vector<Row> rows() {
  return {
      {"CompressedRTF",
       [] {
         const std::string rtf = bench::formattedRTF(kSize);
         std::vector<uint8_t> stream = bench::compressed(rtf, 4);
         std::vector<uint8_t> file(16);
         const auto put = [&file](size_t at, size_t value) {
           for (size_t i = 0; i < 4; ++i) file[at + i] = static_cast<uint8_t>(value >> (8 * i));
         };
         put(0, stream.size() + 12);
         put(4, rtf.size());
         put(8, 0x75465A4C);
         file.insert(file.end(), stream.begin(), stream.end());
         const NSData stored(file.data(), file.size());
         return [stored] {
           return static_cast<int64_t>(RTFKelsparNSDataAdditions::getRTFForData(stored).length());
         };
       },
       0, 64 * kKiB},
      {"RTFToCharacters",
       [] {
         const NSData rtf(bench::formattedRTF(kSize));
         return [rtf] { return units(RTFKelsparNSDataAdditions::stringFromRTFData(rtf)); };
       },
       1, kMiB},
      {"EncapsulatedHTML",
       [] {
         const NSData rtf(bench::encapsulatedRTF(kSize));
         return [rtf] { return units(RTFKelspar::extractHTMLFromEncapsulatedRTF(rtf)); };
       },
       1, kMiB},
      {"QuotedPrintable",
       [] {
         const NSString text = softLines(kSize);
         return [text] {
           return units(WebKelsparNSStringAdditions::quotedPrintableDecodeWithEncoding(
               text, NSUTF8StringEncoding));
         };
       },
       1, 64 * kKiB},
      {"Base64",
       [] {
         const NSString text = foldedBase64(kSize);
         return [text] {
           return units(
               WebKelsparNSStringAdditions::base64DecodeWithEncoding(text, NSUTF8StringEncoding));
         };
       },
       1, 64 * kKiB},
      {"HTMLToText",
       [] {
         const NSString html(page(kSize));
         return [html] { return units(WebKelsparNSStringAdditions::stringFromHTML(html)); };
       },
       6, kMiB},
      {"HTMLStripped",
       [] {
         const NSString html(page(kSize));
         return [html] { return units(WebKelsparNSStringAdditions::stringByStrippingHTML(html)); };
       },
       2, kMiB},
  };
}

class Memory : public testing::TestWithParam<Row> {};
TEST_P(Memory, IsBoundedByTheResult) {
  const auto operation = GetParam().job();
  (void)operation();  // tables that are built once
  const int64_t before = held;
  most = before;
  const int64_t result = operation();
  const int64_t beyond = most - before - result;
  RecordProperty("beyond", std::to_string(beyond));
  EXPECT_GT(result, 0);
  EXPECT_LE(beyond, static_cast<int64_t>(GetParam().inputs * kInput) + GetParam().constant)
      << "with a result of " << result;
}
INSTANTIATE_TEST_SUITE_P(Heap, Memory, testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar

// What message rendering asks of HTML and the web: HTML from RTF, the inline images that an RTF
// body refers to, a page's charset, a list in JSON.
#pragma once

#include <regex.h>

#include "platform/foundation/foundation.h"

namespace kelspar {

// All operations are stateless; any thread may call them. Nothing is logged.
class WebKelspar {
 public:
  // imageLocationsFromRTF()
  //
  // The first image of each paragraph of the HTML markup that stands in RTF bytes: a list of
  // dictionaries with "image source" (the value of `src` as it is written, "cid:" and all) and
  // "image location" (the number of the paragraph, counted from 0).
  //
  // Paragraphs are separated by "</p>", "</P>" and, in either case, "</o:p>". Deliberate: only
  // "<img" and `src="` in small letters and with double quotation marks are looked for, and the
  // image tag must end in its paragraph. Never nil: the list is empty for nil, for bytes that are
  // not UTF-8 and when there is no such image. Linear.
  //
  //   imageLocationsFromRTF("x</p><img src=\"cid:a\"></p>")
  //   // [{"image source": "cid:a", "image location": 1}]
  [[nodiscard]] static NSArray imageLocationsFromRTF(const NSData& rtf);

  // htmlFromRTFData()
  //
  // The RTF document as an HTML document of its own, in UTF-8 and without anything to fetch but
  // images that the RTF links to. nil for nil and for bytes that are no RTF. Linear.
  [[nodiscard]] static NSString htmlFromRTFData(const NSData& rtf);

  // getCharset()
  //
  // Copies what the first group of `pattern` matches in the NUL-terminated `html` to `charset`,
  // which has room for `size` bytes: at most `size - 1` of them and a NUL. Left untouched when the
  // pattern does not match, when the group takes no part in the match, when `size` is 0 and for
  // null pointers. `html` is unchanged.
  //
  // The caller compiles the pattern, with at least one group, and owns it.
  static void getCharset(char* charset, char* html, uint64_t size, regex_t pattern);

  // getJSONArrayFromURL()
  //
  // Fetches the JSON text behind an http, https or file URL and gives the elements of its top
  // level, which should be an array. Blocks the thread that calls.
  //
  // nil when the text is no URL, for other schemes and when the fetch fails: an error status, more
  // than 15 s to connect or 60 s in all, more than 64 MiB of content (decompressed), more than ten
  // redirects or one to anything but http and https. An empty list when the content is no JSON, or
  // JSON whose top level is no array.
  [[nodiscard]] static NSArray getJSONArrayFromURL(const NSString& url);
};

}  // namespace kelspar

// Fetches what a URL names. Internal to the library: only what a caller asked for by its URL is
// ever fetched.
#pragma once

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSURL.h"

namespace kelspar {

struct LoadLimits {
  size_t bytes = size_t{64} << 20;  // of the content, decompressed
  long connectSeconds = 15;
  long totalSeconds = 60;
};

// The content behind an http, https or file URL, gzip and the like undone. Blocks until it is
// there.
//
// nil for nil, for other schemes, for an answer that is an error (status 400 and above), for
// content beyond the limits, for limits that cannot be set (a libcurl before 7.85) and for a file
// that is none (a folder, a pipe). Redirects are followed ten times and only to http and https; no
// cookies, no stored passwords. Any thread.
[[nodiscard]] NSData dataWithContentsOfURL(const NSURL& url, const LoadLimits& limits = {});

}  // namespace kelspar

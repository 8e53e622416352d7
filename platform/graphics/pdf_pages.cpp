// Layout on one thread, pages on another: both take about as long. What is written does not depend
// on which one is ahead.
#include "platform/graphics/pdf_pages.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/foundation/scan.h"
#include "platform/graphics/page_writer.h"
#include "platform/graphics/text_flow.h"

namespace kelspar {

namespace {

constexpr size_t kShortText = 4'000;  // units: not worth a thread

struct Batch {
  std::vector<PageLine> lines;
  double y;
};

// What waits to be drawn; bounded, so that layout does not run ahead with the whole text.
class BatchQueue {
 public:
  // False when nobody takes any more.
  bool put(Batch batch) {
    constexpr size_t kMostWaiting = 16;
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return batches_.size() < kMostWaiting || isClosed_; });
    if (isClosed_) return false;
    batches_.push_back(std::move(batch));
    changed_.notify_all();
    return true;
  }

  // False when all is taken.
  bool take(Batch* batch) {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return !batches_.empty() || isComplete_; });
    if (batches_.empty()) return false;
    *batch = std::move(batches_.front());
    batches_.pop_front();
    changed_.notify_all();
    return true;
  }

  void complete() { set(&isComplete_); }
  void close() { set(&isClosed_); }

 private:
  void set(bool* flag) {
    const std::lock_guard guard(lock_);
    *flag = true;
    changed_.notify_all();
  }

  std::mutex lock_;
  std::condition_variable changed_;
  std::deque<Batch> batches_;
  bool isComplete_ = false, isClosed_ = false;
};

// Lets the layout go when drawing ends early, however it does.
class CloseAtEnd {
 public:
  explicit CloseAtEnd(BatchQueue& queue) : queue_(queue) {}
  CloseAtEnd(const CloseAtEnd&) = delete;
  ~CloseAtEnd() { queue_.close(); }

 private:
  BatchQueue& queue_;
};

std::string titleFor(const NSAttributedString& text, const PDFOptions& options) {
  constexpr size_t kLongest = 120;
  const NSString string = text.string();
  std::u16string_view title = options.title ? options.title.view() : std::u16string_view();
  const std::u16string_view units = string.view();
  for (size_t at = 0; title.empty() && at < units.size();) {
    const size_t end = scan::findAny(units, at, u'\n', u'\r', u'\x2028', u'\x2029');
    title = units.substr(at, end - at);
    const auto isWord = [](char16_t c) { return c > u' ' && c != 0xA0 && c != 0xFFFC; };
    const auto* const first = std::ranges::find_if(title, isWord);
    title.remove_prefix(static_cast<size_t>(first - title.begin()));
    at = end + 1;
  }
  title = title.substr(0, kLongest);
  if (!title.empty() && (title.back() & 0xFC00) == 0xD800) title.remove_suffix(1);
  std::u16string clean(title);
  std::ranges::replace_if(
      clean, [](char16_t c) { return c < u' ' || c == 0xFFFC; }, u' ');
  return NSString(std::move(clean)).utf8();
}

bool hasLinks(const NSAttributedString& text) {
  return std::ranges::any_of(
      text.runs(), [](const NSTextRun& run) { return static_cast<bool>(run.attributes->link); });
}

}  // namespace

void writePDF(const NSAttributedString& text, const PDFOptions& options,
              const std::function<bool(std::string_view)>& write) {
  if (text.length() == 0) return;
  PageWriter pages({.keepsLinesWhole = options.keepsLinesWhole,
                    .hasLinks = hasLinks(text),
                    .paper = options.paper,
                    .title = titleFor(text, options)},
                   write);
  if (text.length() <= kShortText) {
    layOut(text, [&pages](std::vector<PageLine> lines, double y) {
      pages.add(std::move(lines), y);
      return !pages.isBroken();
    });
    return;
  }
  BatchQueue queue;
  std::jthread layout([&queue, &text] {
    layOut(text, [&queue](std::vector<PageLine> lines, double y) {
      return queue.put({std::move(lines), y});
    });
    queue.complete();
  });
  const CloseAtEnd close(queue);  // before the thread is waited for
  for (Batch batch; queue.take(&batch);) {
    pages.add(std::move(batch.lines), batch.y);
    if (pages.isBroken()) break;
  }
}

}  // namespace kelspar

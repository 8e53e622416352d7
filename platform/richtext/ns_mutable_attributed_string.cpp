// Attributed text that is edited: a list of chunks, each some thousand units with their runs. An
// edit moves the units of one chunk; to find it, sizes are added up from where the last edit was.
#include <algorithm>
#include <string>

#include "platform/richtext/text_runs.h"

namespace kelspar {

using richtext::SharedAttributes;

namespace {

constexpr size_t kFullChunk = 8192;              // a longer one is split
constexpr size_t kNewChunk = kFullChunk / 2;     // size of the parts
constexpr size_t kSmallChunk = kFullChunk / 16;  // a shorter one joins its neighbour

struct Chunk {
  std::u16string text;
  std::vector<NSTextRun> runs;

  void append(std::u16string_view units, std::span<const NSTextRun> from, size_t start) {
    text.append(units);
    richtext::appendRuns(&runs, from, start, units.size());
  }

  // Units and runs of `[start, end)` make place for those of `piece`.
  void replace(size_t start, size_t end, const Chunk& piece) {
    std::vector<NSTextRun> changed;
    changed.reserve(runs.size() + piece.runs.size() + 2);
    richtext::appendRuns(&changed, runs, 0, start);
    richtext::appendRuns(&changed, piece.runs, 0, piece.text.size());
    richtext::appendRuns(&changed, runs, end, text.size() - end);
    runs = std::move(changed);
    text.replace(start, end - start, piece.text);
  }

  // The units from `at` on, taken away from here.
  Chunk cut(size_t at) {
    Chunk tail;
    tail.append(std::u16string_view(text).substr(at), runs, at);
    std::vector<NSTextRun> kept;
    richtext::appendRuns(&kept, runs, 0, at);
    runs = std::move(kept);
    text.resize(at);
    return tail;
  }

  const SharedAttributes& attributesAt(size_t index) const {
    for (const NSTextRun& run : runs) {
      if (index < run.length) return run.attributes;
      index -= run.length;
    }
    return richtext::plainAttributes();
  }
};

using Chunks = std::vector<std::unique_ptr<Chunk>>;

// The text in parts of at most kNewChunk units.
Chunks chunksOf(std::u16string_view text, std::span<const NSTextRun> runs) {
  Chunks chunks;
  size_t run = 0, inRun = 0;
  for (size_t at = 0; at < text.size(); at += kNewChunk) {
    const std::u16string_view part = text.substr(at, kNewChunk);
    auto chunk = std::make_unique<Chunk>();
    chunk->append(part, runs.subspan(run), inRun);
    for (size_t left = part.size(); left > 0;) {
      const size_t taken = std::min(left, runs[run].length - inRun);
      left -= taken;
      inRun += taken;
      if (inRun == runs[run].length) {
        ++run;
        inRun = 0;
      }
    }
    chunks.push_back(std::move(chunk));
  }
  return chunks;
}

}  // namespace

class NSMutableAttributedString::Storage {
 public:
  Storage() = default;
  Storage(const Storage& other) : length_(other.length_) {
    chunks_.reserve(other.chunks_.size());
    for (const auto& chunk : other.chunks_) chunks_.push_back(std::make_unique<Chunk>(*chunk));
  }

  size_t length() const { return length_; }

  void append(std::u16string_view text, std::span<const NSTextRun> runs) {
    length_ += text.size();
    if (!chunks_.empty() && chunks_.back()->text.size() + text.size() <= kFullChunk) {
      chunks_.back()->append(text, runs, 0);
      return;
    }
    for (auto& chunk : chunksOf(text, runs)) chunks_.push_back(std::move(chunk));
  }

  void replace(NSRange range, std::u16string_view text, std::span<const NSTextRun> runs) {
    if (range.location > length_ || range.length > length_ - range.location) {
      throw NSRangeException("the range leaves the text");
    }
    if (range.location == length_) return append(text, runs);
    seek(range.location);
    length_ = length_ - range.length + text.size();
    const size_t start = range.location - nearStart_;
    const size_t size = chunks_[near_]->text.size();
    if (start + range.length <= size && text.size() <= kNewChunk) {
      Chunk piece;
      piece.append(text, runs, 0);
      chunks_[near_]->replace(start, start + range.length, piece);
      settle();
    } else {
      replaceAcrossChunks(start, range.length, chunksOf(text, runs));
    }
  }

  const SharedAttributes& attributesAt(size_t index) {
    seek(index);
    return chunks_[near_]->attributesAt(index - nearStart_);
  }

  // Calls visit(chunk, first, last) for the part of the range in each chunk.
  template <class Visit>
  void forEachPart(NSRange range, const Visit& visit) {
    if (range.length == 0) return;
    seek(range.location);
    size_t from = range.location - nearStart_;
    for (size_t i = near_, left = range.length; left > 0; ++i) {
      const size_t taken = std::min(left, chunks_[i]->text.size() - from);
      visit(*chunks_[i], from, from + taken);
      left -= taken;
      from = 0;
    }
  }

  NSAttributedString copy() const {
    std::vector<NSTextRun> runs;
    NSString text = NSString::build(length_, [&](char16_t* out) {
      for (const auto& chunk : chunks_) {
        out = std::ranges::copy(chunk->text, out).out;
        for (const NSTextRun& run : chunk->runs) {
          richtext::appendRun(&runs, run.length, run.attributes);
        }
      }
    });
    return NSAttributedString(text, std::move(runs));
  }

 private:
  // Makes `near_` the chunk that holds the unit at `index` (which is inside the text).
  void seek(size_t index) {
    if (index < nearStart_ / 2) near_ = nearStart_ = 0;
    while (index < nearStart_) nearStart_ -= chunks_[--near_]->text.size();
    while (index >= nearStart_ + chunks_[near_]->text.size()) {
      nearStart_ += chunks_[near_++]->text.size();
    }
  }

  // Splits the chunk at hand when it is too long, joins it with the next when it is too short.
  void settle() {
    Chunk& chunk = *chunks_[near_];
    if (chunk.text.size() > kFullChunk) {
      auto tail = std::make_unique<Chunk>(chunk.cut(chunk.text.size() / 2));
      chunks_.insert(chunks_.begin() + static_cast<ptrdiff_t>(near_) + 1, std::move(tail));
    } else if (chunk.text.size() < kSmallChunk && near_ + 1 < chunks_.size() &&
               chunks_[near_ + 1]->text.size() < kNewChunk) {
      const Chunk& next = *chunks_[near_ + 1];
      chunk.append(next.text, next.runs, 0);
      chunks_.erase(chunks_.begin() + static_cast<ptrdiff_t>(near_) + 1);
    }
    dropEmpty();
  }

  void dropEmpty() {
    if (!chunks_[near_]->text.empty()) return;
    chunks_.erase(chunks_.begin() + static_cast<ptrdiff_t>(near_));
    near_ = nearStart_ = 0;
  }

  // `start` is inside the chunk at hand.
  void replaceAcrossChunks(size_t start, size_t length, Chunks pieces) {
    const auto tail = std::make_unique<Chunk>(chunks_[near_]->cut(start));
    size_t end = near_ + 1;
    if (length < tail->text.size()) {
      pieces.push_back(std::make_unique<Chunk>(tail->cut(length)));
    } else {
      size_t left = length - tail->text.size();
      while (end < chunks_.size() && left >= chunks_[end]->text.size()) {
        left -= chunks_[end++]->text.size();
      }
      if (left > 0) *chunks_[end] = chunks_[end]->cut(left);
    }
    const auto at = chunks_.begin() + static_cast<ptrdiff_t>(near_) + 1;
    const auto next = chunks_.erase(at, chunks_.begin() + static_cast<ptrdiff_t>(end));
    chunks_.insert(next, std::make_move_iterator(pieces.begin()),
                   std::make_move_iterator(pieces.end()));
    settle();
  }

  Chunks chunks_;  // none is empty
  size_t length_ = 0;
  size_t near_ = 0, nearStart_ = 0;  // the chunk of the last edit, and where it begins
};

NSMutableAttributedString::NSMutableAttributedString() : storage_(std::make_unique<Storage>()) {}

NSMutableAttributedString::NSMutableAttributedString(const NSAttributedString& text)
    : NSMutableAttributedString() {
  append(text);
}

NSMutableAttributedString::NSMutableAttributedString(const NSMutableAttributedString& other)
    : storage_(std::make_unique<Storage>(*other.storage_)) {}

NSMutableAttributedString::NSMutableAttributedString(NSMutableAttributedString&& other) noexcept
    : storage_(std::exchange(other.storage_, nullptr)) {}

NSMutableAttributedString& NSMutableAttributedString::operator=(
    NSMutableAttributedString other) noexcept {
  storage_.swap(other.storage_);
  return *this;
}

NSMutableAttributedString::~NSMutableAttributedString() = default;

size_t NSMutableAttributedString::length() const { return storage_->length(); }

void NSMutableAttributedString::append(const NSAttributedString& text) {
  storage_->append(text.string(), text.runs());
}

void NSMutableAttributedString::append(std::u16string_view text,
                                       const NSTextAttributes& attributes) {
  const NSTextRun run{text.size(), std::make_shared<NSTextAttributes>(attributes)};
  storage_->append(text, {&run, 1});
}

void NSMutableAttributedString::insert(const NSAttributedString& text, size_t index) {
  storage_->replace({index, 0}, text.string(), text.runs());
}

void NSMutableAttributedString::deleteCharacters(NSRange range) {
  storage_->replace(range, {}, {});
}

void NSMutableAttributedString::replaceCharacters(NSRange range, const NSAttributedString& text) {
  storage_->replace(range, text.string(), text.runs());
}

void NSMutableAttributedString::replaceCharacters(NSRange range, std::u16string_view text) {
  SharedAttributes attributes = richtext::plainAttributes();
  if (range.location <= length() && length() > 0) {
    const bool before = range.location > 0 && (range.length == 0 || range.location == length());
    attributes = storage_->attributesAt(range.location - (before ? 1 : 0));
  }
  const NSTextRun run{text.size(), attributes};
  storage_->replace(range, text, {&run, 1});
}

void NSMutableAttributedString::setAttributes(NSRange range, const NSTextAttributes& attributes) {
  if (range.location > length() || range.length > length() - range.location) {
    throw NSRangeException("the range leaves the text");
  }
  const auto shared = std::make_shared<NSTextAttributes>(attributes);
  storage_->forEachPart(range, [&](Chunk& chunk, size_t first, size_t last) {
    Chunk piece;
    const NSTextRun run{last - first, shared};
    piece.append(std::u16string_view(chunk.text).substr(first, last - first), {&run, 1}, 0);
    chunk.replace(first, last, piece);
  });
}

NSAttributedString NSMutableAttributedString::copy() const { return storage_->copy(); }

}  // namespace kelspar

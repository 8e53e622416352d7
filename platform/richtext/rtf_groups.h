// The state that RTF groups save and restore. Internal.
#pragma once

#include <cstdint>
#include <deque>

namespace kelspar {

// A stack of states that a brace costs nothing: a state is saved only when it is about to change,
// with the number of groups that were opened since. A million nested braces are a counter.
template <class State>
class RTFGroups {
 public:
  [[nodiscard]] const State& state() const { return state_; }

  // Whether the current group has changed nothing so far: its first change saves the state.
  [[nodiscard]] bool isUntouched() const { return opened_ > 0; }
  // The state as it would be saved, to be written in another form of the same meaning.
  [[nodiscard]] State& held() { return state_; }

  // The state, to be changed until the current group ends.
  [[nodiscard]] State& change() {
    if (opened_ > 0) {
      saved_.push_back({state_, opened_});
      opened_ = 0;
    }
    return state_;
  }

  void open() {
    ++opened_;
    ++depth_;
  }

  // Restores what the group had changed. False, and nothing happens, when no group is open.
  bool close() {
    if (depth_ == 0) return false;
    --depth_;
    if (opened_ > 0) {
      --opened_;
    } else {
      state_ = saved_.back().state;
      opened_ = saved_.back().groups - 1;
      saved_.pop_back();
    }
    return true;
  }

  [[nodiscard]] uint64_t depth() const { return depth_; }

 private:
  struct Saved {
    State state;
    uint64_t groups;
  };
  State state_{};
  std::deque<Saved> saved_;
  uint64_t opened_ = 0, depth_ = 0;
};

}  // namespace kelspar

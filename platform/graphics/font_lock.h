// One thread at a time where fonts are opened, measured, drawn or closed. Internal to the library.
//
// Cairo 1.16 keeps the faces of all fonts of the process in one table. It opens them in one
// FreeType library without a lock, and closes the eleventh open one by a count that another thread
// may just be raising: two threads that only lay out and draw texts of their own end in a face that
// is gone. What has been measured once (words, lines) is put together without this lock.
#pragma once

#include <mutex>

namespace kelspar {

class FontLock {
 public:
  FontLock() : guard_(mutex()) {}

 private:
  // Never destroyed: threads that end with the process still close their fonts.
  static std::recursive_mutex& mutex() {
    static auto* const mutex = new std::recursive_mutex;
    return *mutex;
  }

  std::lock_guard<std::recursive_mutex> guard_;
};

}  // namespace kelspar

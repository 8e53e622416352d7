// For tests: as long as one of these lives, no thread can be made.
#pragma once

#include <pthread.h>

namespace kelspar {

class WithoutThreads {
 public:
  WithoutThreads() {
    pthread_attr_t attributes;
    pthread_getattr_default_np(&usual_);
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t{1} << 60);  // beyond any address space
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
  }
  ~WithoutThreads() {
    pthread_setattr_default_np(&usual_);
    pthread_attr_destroy(&usual_);
  }
  WithoutThreads(const WithoutThreads&) = delete;
  WithoutThreads& operator=(const WithoutThreads&) = delete;

 private:
  pthread_attr_t usual_;
};

}  // namespace kelspar

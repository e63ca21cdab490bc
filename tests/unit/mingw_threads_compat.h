// GoogleTest wants std::mutex and std::condition_variable, which the win32-thread
// MinGW runtime (the one that keeps the program free of winpthread, for Windows
// 95) does not provide. The unit tests run on one thread, so these minimal
// stand-ins are enough; they are force-included only into the Windows test build.
#pragma once
#if defined(_WIN32) && !defined(_GLIBCXX_HAS_GTHREADS)
#include <windows.h>

#include <mutex>

namespace std {

class mutex {
 public:
  mutex() { InitializeCriticalSection(&section_); }
  ~mutex() { DeleteCriticalSection(&section_); }
  mutex(const mutex&) = delete;
  mutex& operator=(const mutex&) = delete;
  void lock() { EnterCriticalSection(&section_); }
  void unlock() { LeaveCriticalSection(&section_); }
  bool try_lock() { return TryEnterCriticalSection(&section_) != 0; }

 private:
  CRITICAL_SECTION section_;
};

class condition_variable {
 public:
  void notify_one() {}
  void notify_all() {}
  template <typename Predicate>
  void wait(unique_lock<mutex>& lock, Predicate ready) {
    while (!ready()) {
      lock.unlock();
      Sleep(1);
      lock.lock();
    }
  }
};

}  // namespace std
#endif

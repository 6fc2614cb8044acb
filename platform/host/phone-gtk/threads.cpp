#include "phone-threads.h"

#include <gdk/gdk.h>

#include <atomic>
#include <mutex>
#include <thread>

namespace {

/// GDK's own lock is a plain mutex: to unlock it from another thread is undefined, to lock it
/// twice never returns. Both have been seen from callbacks that services run on their threads.
class OwnedLock {
 public:
  void lock() {
    if (owner_ == std::this_thread::get_id()) {
      g_warning("The GDK lock is held by this thread already.");
      return;
    }
    mutex_.lock();
    owner_ = std::this_thread::get_id();
  }

  void unlock() {
    if (owner_ != std::this_thread::get_id()) {
      g_warning("The GDK lock is not held by this thread.");
      return;
    }
    owner_ = std::thread::id();
    mutex_.unlock();
  }

 private:
  std::mutex mutex_;
  std::atomic<std::thread::id> owner_;
};

/// Lives as long as the process: threads may still unlock while static objects go.
OwnedLock &gdk_lock() {
  static auto *instance = new OwnedLock;
  return *instance;
}

void lock_gdk() { gdk_lock().lock(); }

void unlock_gdk() { gdk_lock().unlock(); }

}  // namespace

void phone_threads_init(void) {
  static const bool done = [] {
    gdk_threads_set_lock_functions(lock_gdk, unlock_gdk);
    gdk_threads_init();
    return true;
  }();
  static_cast<void>(done);
}

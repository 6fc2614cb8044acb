/// A way to end a decode that nobody waits for any more.
#pragma once

#include <glib.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cstdint>

#include "pictures/descriptor.hpp"

namespace phone::pictures {

/// Set once, by any thread; whoever waits for a worker sees it at once.
class Cancellation {
 public:
  Cancellation() : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

  void cancel() {
    cancelled_ = true;
    const std::uint64_t one = 1;
    // A full counter or a missing descriptor: the flag alone has to do, the wait ends later.
    if (event_ && write(event_.get(), &one, sizeof one) < 0) return;
  }
  [[nodiscard]] bool cancelled() const { return cancelled_; }
  /// Readable once cancelled; -1 when there was no descriptor to be had.
  [[nodiscard]] int fd() const { return event_.get(); }

 private:
  Descriptor event_;
  std::atomic<bool> cancelled_ = false;
};

enum class Wait { kReady, kDeadline, kCancelled };

/// Waits until a descriptor can be read or has been closed at the other end, but not beyond the
/// deadline (g_get_monotonic_time()) or a cancellation.
Wait wait_for(int fd, gint64 deadline, const Cancellation *cancellation);

}  // namespace phone::pictures

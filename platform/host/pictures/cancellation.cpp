#include "pictures/cancellation.hpp"

#include <poll.h>

#include <cerrno>

namespace phone::pictures {

Wait wait_for(int fd, gint64 deadline, const Cancellation *cancellation) {
  for (;;) {
    if (cancellation != nullptr && cancellation->cancelled()) return Wait::kCancelled;
    const gint64 left = deadline - g_get_monotonic_time();
    if (left <= 0) return Wait::kDeadline;
    pollfd watch[] = {{fd, POLLIN, 0},
                      {cancellation == nullptr ? -1 : cancellation->fd(), POLLIN, 0}};
    const int ready = poll(watch, 2, static_cast<int>(left / 1000 + 1));
    if (ready < 0 && errno != EINTR) return Wait::kDeadline;
    if (ready > 0 && watch[0].revents != 0) return Wait::kReady;
  }
}

}  // namespace phone::pictures

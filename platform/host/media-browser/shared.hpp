/// What the threads of one open index share.
#pragma once

#include <atomic>
#include <functional>

#include "media-browser/announcer.hpp"
#include "media-browser/views.hpp"

namespace phone::media {

struct Shared {
  Views views;
  Progress progress;
  /// The threads end as soon as they see it.
  std::atomic<bool> stopping{false};
  /// Grows when a folder gets another path.
  std::atomic<guint64> folders_version{0};
  /// Grows when the index file was set aside and made anew: connections have to be opened again.
  std::atomic<guint64> file_version{0};
  /// The first files can be listed, or it is known that there are none.
  std::atomic<bool> ready{false};

  /// Tells the phone that its media can be listed.
  void set_ready();
  /// Tells it that they cannot.
  static void set_unready();
};

}  // namespace phone::media

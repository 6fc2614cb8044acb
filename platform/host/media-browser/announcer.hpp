/// What the index tells the main loop, and how far it is.
#pragma once

#include <media-index.h>

#include <map>
#include <mutex>
#include <string>

namespace phone::media {

/// Collects changes of any thread and tells them to the listeners in one idle call. It outlives
/// every index, so listeners may come before the index and stay after it.
class Announcer {
 public:
  static Announcer &instance();

  /// Main loop.
  guint add(media_index_cb callback, gpointer user_data);
  /// Main loop.
  void remove(guint id);

  /// Schedules a call of the listeners. Any thread.
  void announce(guint changes);
  /// Drops what has not been told yet: it is about an index that is closed. Main loop.
  void forget();

 private:
  static gboolean tell(gpointer self);

  struct Listener {
    media_index_cb callback;
    gpointer user_data;
  };

  std::mutex mutex_;
  guint pending_ = 0;
  guint last_id_ = 0;
  std::map<guint, Listener> listeners_;
};

/// Counters of a scan. Any thread.
class Progress {
 public:
  /// A scan begins: what concerns the last one goes, except what was wrong from the start.
  void begin();
  void end();
  void saw(guint64 entries);
  void set_media_files(guint64 files);
  /// @param sentence valid UTF-8, for the user
  void problem(const std::string &sentence);
  /// A problem that holds for as long as the index is open.
  void lasting_problem(const std::string &sentence);
  void fill(MediaIndexProgress &progress) const;

 private:
  mutable std::mutex mutex_;
  bool running_ = false;
  guint64 files_seen_ = 0;
  guint64 media_files_ = 0;
  guint problems_ = 0;
  std::string problem_;
  guint lasting_problems_ = 0;
  std::string lasting_problem_;
  gint64 last_announced_ = 0;
};

}  // namespace phone::media

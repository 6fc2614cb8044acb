/// Thumbnails that could not be made for a reason that passes.
#pragma once

#include <glib.h>

#include <optional>
#include <string>
#include <unordered_map>

namespace phone::thumbnail {

/// Which files are to be tried again, and when. Times are microseconds of one clock. Has no lock
/// of its own.
class Retries {
 public:
  /// Notes a try that came to nothing. The next one is due after a while, which grows; after the
  /// last the file is dropped, and tried again when somebody asks for it.
  void failed(const std::string &path, gint64 now);
  /// The file has been dealt with, this way or that.
  void done(const std::string &path) { waiting_.erase(path); }
  /// Whether a file waits for its next try, so that asking for it changes nothing.
  [[nodiscard]] bool is_waiting(const std::string &path) const;

  /// A file whose time has come: it is tried now, and then failed() or done() is told.
  std::optional<std::string> take(gint64 now);
  /// When the next one is due; nothing when none waits.
  [[nodiscard]] std::optional<gint64> next() const;

  void clear() { waiting_.clear(); }

  static constexpr std::size_t kMost = 200;
  static constexpr gint64 kPauses[] = {G_TIME_SPAN_SECOND / 2, 5 * G_TIME_SPAN_SECOND,
                                       30 * G_TIME_SPAN_SECOND};

 private:
  struct Try {
    std::size_t number = 0;
    gint64 due = 0;
    bool under_way = false;
  };

  std::unordered_map<std::string, Try> waiting_;
};

}  // namespace phone::thumbnail

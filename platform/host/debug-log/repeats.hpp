/// Keeps one line that is written over and over from filling the log.
#pragma once

#include <glib.h>

#include <array>
#include <mutex>
#include <string>
#include <string_view>

namespace phone::debug_log {

/// Of equal lines kBurst are written in kPeriodUs; the others are counted, and the count is told
/// when the line is due again or another one takes its place. Any thread.
class Repeats {
 public:
  static constexpr guint kBurst = 10;
  static constexpr gint64 kPeriodUs = 10 * G_USEC_PER_SEC;

  struct Verdict {
    bool write;      ///< this line is to be written
    guint left_out;  ///< lines that were left out before it; 0 when there is nothing to tell
    std::string left_out_text;  ///< what those lines said
  };

  /// @param now monotonic time in microseconds
  Verdict admit(int line, std::string_view text, gint64 now);

 private:
  struct Slot {
    std::string text;
    int line = 0;
    gint64 since = 0;
    guint written = 0;
    guint left_out = 0;
  };

  std::mutex mutex_;
  std::array<Slot, 64> slots_;  // guarded by mutex_; lines that share a slot replace each other
};

}  // namespace phone::debug_log

#include "debug-log/repeats.hpp"

#include <functional>
#include <utility>

namespace phone::debug_log {

Repeats::Verdict Repeats::admit(int line, std::string_view text, gint64 now) {
  const std::scoped_lock lock(mutex_);
  const std::size_t hash = std::hash<std::string_view>{}(text) ^ static_cast<std::size_t>(line);
  Slot &slot = slots_.at(hash % slots_.size());

  const bool same = slot.line == line && slot.text == text;
  if (same && now - slot.since < kPeriodUs) {
    if (slot.written < kBurst) {
      ++slot.written;
      return {true, 0, {}};
    }
    ++slot.left_out;
    return {false, 0, {}};
  }

  Verdict verdict{true, slot.left_out, {}};
  if (slot.left_out > 0) verdict.left_out_text = std::move(slot.text);
  slot.text = text;
  slot.line = line;
  slot.since = now;
  slot.written = 1;
  slot.left_out = 0;
  return verdict;
}

}  // namespace phone::debug_log

/// The momentum of a scrolled list.
#pragma once

#include <cstdint>
#include <deque>

namespace phone::gtk {

/// How fast a finger moves, from its last positions.
class VelocityTracker {
 public:
  void reset() { samples_.clear(); }
  void add(std::uint32_t time_ms, double position);
  /// Pixels a millisecond at the end of the movement; 0 when the finger rested before it left.
  [[nodiscard]] double velocity(std::uint32_t time_ms) const;

 private:
  struct Sample {
    std::uint32_t time_ms;
    double position;
  };
  std::deque<Sample> samples_;
};

/// A movement that slows down until it stands.
class Glide {
 public:
  Glide() = default;
  Glide(double start, double velocity) : start_(start), velocity_(velocity) {}

  [[nodiscard]] double position(double elapsed_ms) const;
  [[nodiscard]] bool over(double elapsed_ms) const;
  /// Whether a release at this velocity moves the list at all.
  [[nodiscard]] static bool worthwhile(double velocity);

 private:
  double start_ = 0;
  double velocity_ = 0;
};

}  // namespace phone::gtk

#include "phone-gtk/kinetic.hpp"

#include <cmath>

namespace phone::gtk {
namespace {

constexpr std::uint32_t kMemoryMs = 100;
constexpr double kSlowdownMs = 325;     // after that time a glide has 37 % of its speed
constexpr double kLeastVelocity = 0.1;  // pixels a millisecond
constexpr double kFastest = 8.0;
constexpr double kStandsWithin = 0.5;  // pixels that are left

}  // namespace

void VelocityTracker::add(std::uint32_t time_ms, double position) {
  samples_.push_back({time_ms, position});
  // The server's clock wraps after 49 days; differences of unsigned numbers do not mind.
  while (samples_.size() > 2 && time_ms - samples_.front().time_ms > kMemoryMs) {
    samples_.pop_front();
  }
}

double VelocityTracker::velocity(std::uint32_t time_ms) const {
  if (samples_.size() < 2 || time_ms - samples_.back().time_ms > kMemoryMs) return 0;
  const std::uint32_t elapsed = samples_.back().time_ms - samples_.front().time_ms;
  if (elapsed == 0) return 0;
  const double velocity = (samples_.back().position - samples_.front().position) / elapsed;
  return std::fmin(std::fmax(velocity, -kFastest), kFastest);
}

double Glide::position(double elapsed_ms) const {
  return start_ + velocity_ * kSlowdownMs * (1 - std::exp(-elapsed_ms / kSlowdownMs));
}

bool Glide::over(double elapsed_ms) const {
  return std::fabs(velocity_) * kSlowdownMs * std::exp(-elapsed_ms / kSlowdownMs) < kStandsWithin;
}

bool Glide::worthwhile(double velocity) { return std::fabs(velocity) >= kLeastVelocity; }

}  // namespace phone::gtk

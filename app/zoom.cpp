#include "zoom.hpp"

#include <algorithm>

namespace gallery {
namespace {

constexpr double kMost = 8;
/// Closer to fitted than that is fitted: steps up and down need not meet exactly.
constexpr double kNearlyFitted = 1.01;

double held(double middle, double length, double room) {
  const double free = std::max(0.0, (length - room) / 2);
  return std::clamp(middle, -free, free);
}

}  // namespace

void Zoom::set_sizes(Size box, Size fitted) {
  if (box == box_ && fitted == fitted_) return;
  box_ = box;
  fitted_ = fitted;
  hold_edges();
}

void Zoom::reset() {
  factor_ = 1;
  middle_x_ = 0;
  middle_y_ = 0;
}

void Zoom::by(double factor, double x, double y) {
  const double before = factor_;
  factor_ = std::clamp(factor_ * factor, 1.0, kMost);
  if (factor_ < kNearlyFitted) factor_ = 1;
  const double grown = factor_ / before;
  const double from_x = x - box_.width / 2;
  const double from_y = y - box_.height / 2;
  middle_x_ = from_x + (middle_x_ - from_x) * grown;
  middle_y_ = from_y + (middle_y_ - from_y) * grown;
  hold_edges();
}

void Zoom::move(double dx, double dy) {
  middle_x_ += dx;
  middle_y_ += dy;
  hold_edges();
}

void Zoom::hold_edges() {
  middle_x_ = held(middle_x_, fitted_.width * factor_, box_.width);
  middle_y_ = held(middle_y_, fitted_.height * factor_, box_.height);
}

Zoom::Place Zoom::place() const {
  const double width = fitted_.width * factor_;
  const double height = fitted_.height * factor_;
  return {(box_.width - width) / 2 + middle_x_, (box_.height - height) / 2 + middle_y_, width,
          height};
}

}  // namespace gallery

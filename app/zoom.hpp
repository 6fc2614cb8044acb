/// Where an enlarged picture lies in the window.
#pragma once

namespace gallery {

/// All lengths are pixels of the window.
class Zoom {
 public:
  struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size &) const = default;
  };
  struct Place {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
  };

  /// The room for the picture, and the picture's size when it fits. What is in the middle stays
  /// there.
  void set_sizes(Size box, Size fitted);
  /// Shows the picture fitted again.
  void reset();
  /// Enlarges or reduces about a point of the window, which stays where it is. A picture never
  /// gets smaller than fitted.
  void by(double factor, double x, double y);
  /// Moves the picture, but not away from an edge of the window that it could reach.
  void move(double dx, double dy);

  /// 1 when fitted.
  [[nodiscard]] double factor() const { return factor_; }
  [[nodiscard]] bool is_enlarged() const { return factor_ > 1; }
  [[nodiscard]] Place place() const;

 private:
  void hold_edges();

  Size box_;
  Size fitted_;
  double factor_ = 1;
  double middle_x_ = 0;  ///< of the picture, from the middle of the box
  double middle_y_ = 0;
};

}  // namespace gallery

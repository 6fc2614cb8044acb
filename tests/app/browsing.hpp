/// A gallery over a small library of plain colours, and what a person sees of it.
#pragma once

#include <gdk/gdk.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program.hpp"

namespace gallery_test {

/// Where a colour is on the screen, in pixels.
struct Patch {
  int left;
  int top;
  int right;
  int bottom;
  int pixels;  ///< that have the colour
};

class Browsing : public testing::Test {
 protected:
  /// Ends a gallery that still runs, which must end well.
  void TearDown() override;

  /// Makes a picture of one colour in the library. Pictures made later are older.
  std::string add_picture(const std::string &name, support::Rgba colour, int width = 600,
                          int height = 400);
  /// Makes a file of the library that is no picture of ours.
  std::string add_file(const std::string &name, const std::string &bytes);

  /// Starts the gallery over the library, or over the places given, and waits for its window.
  void start(std::vector<std::string> places = {});
  /// Ends the gallery, which must end well, and tells what it has written on the terminal.
  std::string stop();

  void press(const std::string &key) const { screen_.press(key); }
  void click(int x, int y) const { screen_.click(x, y); }
  void swipe(int from_x, int to_x) const { screen_.drag(from_x, 400, to_x, 400); }

  /// Moves with the button held and does not let go.
  void hold(int from_x, int to_x) const;

  /// Waits until the window has the title.
  [[nodiscard]] bool has_title(const std::string &title) const;
  [[nodiscard]] std::string title() const { return screen_.title(); }
  /// Waits until a colour takes at least this many pixels, and tells where it is.
  [[nodiscard]] std::optional<Patch> find(support::Rgba colour, int pixels = 2000) const;
  /// Where a colour is within an area at this moment.
  [[nodiscard]] Patch look_within(const GdkRectangle &area, support::Rgba colour) const;
  /// Waits until a colour is nowhere.
  [[nodiscard]] bool is_gone(support::Rgba colour) const;
  /// Waits until the screen has not changed for a while.
  void settle() const { screen_.settle(250, 8000); }

  support::TempDir library_;
  PrivateDisplay display_;
  tour::Screen screen_;
  std::unique_ptr<Program> program_;

 private:
  void make_older(const std::string &path);

  int files_ = 0;
};

inline constexpr support::Rgba kRed{200, 30, 30};
inline constexpr support::Rgba kGreen{30, 170, 60};
inline constexpr support::Rgba kYellow{220, 210, 40};
inline constexpr support::Rgba kPink{230, 90, 200};

}  // namespace gallery_test

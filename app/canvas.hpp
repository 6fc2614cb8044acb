/// The area that shows one picture, and its neighbours while a finger moves it.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <glib-ptr.hpp>
#include <memory>

#include "slide-painter.hpp"

namespace gallery {

class Canvas {
 public:
  struct Hooks {
    std::function<void(int step)> step;                  ///< -1 previous, 1 next
    std::function<void()> tapped;                        ///< in the middle
    std::function<void()> enlarged;                      ///< all that the picture has is wanted
    std::function<void(int width, int height)> resized;  ///< the room for a picture has changed
  };

  explicit Canvas(Hooks hooks);
  ~Canvas();
  Canvas(const Canvas &) = delete;
  Canvas &operator=(const Canvas &) = delete;

  [[nodiscard]] GtkWidget *widget() const { return area_.get(); }
  /// Shows a slide at rest.
  void show(Slide current);
  /// What appears at the sides while the slide is moved; NULL where there is nothing.
  void set_neighbours(std::unique_ptr<Slide> previous, std::unique_ptr<Slide> next);

  /// All that the picture has, for when it is enlarged; NULL while it is not there.
  void set_full(pb::Ref<GdkPixbuf> full);
  /// Enlarges, or reduces with a factor below 1, about the middle of the window.
  void zoom(double factor);
  /// Shows a pixel of the picture as a pixel of the screen, or larger when it fits anyway.
  void zoom_to_pixels();
  void zoom_to_fit();
  [[nodiscard]] bool is_enlarged() const { return zoom_.is_enlarged(); }
  /// Moves an enlarged picture.
  void move(double dx, double dy);

 private:
  static gboolean on_scroll(GtkWidget *area, GdkEventScroll *event, gpointer self);
  static gboolean on_tap_due(gpointer self);
  static gboolean on_expose(GtkWidget *area, GdkEventExpose *event, gpointer self);
  static gboolean on_press(GtkWidget *area, GdkEventButton *event, gpointer self);
  static gboolean on_release(GtkWidget *area, GdkEventButton *event, gpointer self);
  static gboolean on_motion(GtkWidget *area, GdkEventMotion *event, gpointer self);
  static void on_resized(GtkWidget *area, GtkAllocation *allocation, gpointer self);
  static gboolean on_frame(gpointer self);
  static gboolean send_ahead(gpointer self);

  void draw(cairo_t *cairo);
  void tap(double x);
  void tap_twice(double x, double y);
  void zoom_about(double factor, double x, double y);
  void update_sizes();
  void let_go(double x, guint32 time);
  void glide_to(double goal);
  void arrive();
  [[nodiscard]] int width() const;

  Hooks hooks_;
  pb::Ref<GtkWidget> area_;
  Slide current_;
  std::unique_ptr<Slide> previous_;
  std::unique_ptr<Slide> next_;
  SentPictures sent_;
  pb::SourceId sending_;

  Zoom zoom_;
  pb::Ref<GdkPixbuf> full_;
  bool pixels_wanted_ = false;  ///< as soon as the picture's size is known
  pb::SourceId tap_;            ///< a tap that may be the first of two

  bool pressed_ = false;
  bool dragging_ = false;
  double press_x_ = 0;
  double press_y_ = 0;
  guint32 press_time_ = 0;
  double shift_ = 0;  ///< pixels that the slide is away from its place
  double glide_from_ = 0;
  double glide_goal_ = 0;
  gint64 glide_start_ = 0;
  pb::SourceId glide_;
};

}  // namespace gallery

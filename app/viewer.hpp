/// One picture in the whole window.
#pragma once

#include <pb-item-list.h>
#include <pb-item.h>

#include <memory>

#include "canvas.hpp"
#include "navigator.hpp"
#include "picture-supply.hpp"
#include "screen.hpp"

namespace gallery {

/// Looks at the current item of the library's list and moves it.
class Viewer : public Screen {
 public:
  explicit Viewer(Navigator &navigator);
  ~Viewer() override;

  [[nodiscard]] GtkWidget *form() const override { return form_.get(); }
  [[nodiscard]] GtkWidget *focus() const override { return canvas_.widget(); }
  [[nodiscard]] std::string title() const override { return name_; }
  [[nodiscard]] bool has_list() const override { return false; }
  void enter() override { update(); }
  void covered() override { stop_slideshow(); }
  void thumbnails_arrived() override;
  /// The list was built again, and the library's current item may be another one.
  void rows_changed() override;
  bool key(const GdkEventKey &event) override;
  void full_screen_changed(bool full) override;
  bool back() override;

 private:
  struct Shown {
    gint id = 0;
    std::string path;
    bool video = false;
    bool operator==(const Shown &) const = default;
  };

  GtkWidget *make_bar();
  GtkWidget *add_button(int icon, const char *name, const std::string &spoken, GCallback clicked);
  static void on_previous(GtkButton *button, gpointer self);
  static void on_next(GtkButton *button, gpointer self);

  void update();
  void show_gone();
  void update_position(int row);
  void update_neighbours(PbItemList *list, int row);
  void step(int by);
  void go_to(int row);
  void tapped();
  void play();
  void trash();
  void start_slideshow();
  bool stop_slideshow();
  static gboolean on_slide_due(gpointer self);
  void load_full();
  void drop_full();
  static void on_full_loaded(guint request, GdkPixbuf *pixbuf, const gchar *problem, gpointer self);
  bool zoom_key(guint keyval);
  bool move_key(guint keyval);
  void picture_arrived(const std::string &path);
  [[nodiscard]] Slide slide_of(PbItem *item) const;
  [[nodiscard]] std::unique_ptr<Slide> neighbour_slide(PbItemList *list, int row) const;

  Navigator &navigator_;
  PictureSupply supply_;
  Canvas canvas_;
  pb::Ref<GtkWidget> form_;
  GtkWidget *position_ = nullptr;  // children of form_
  GtkWidget *bar_ = nullptr;
  GtkWidget *previous_ = nullptr;
  GtkWidget *next_ = nullptr;
  Shown shown_;
  guint full_request_ = 0;  ///< for all that the shown picture has; 0 when none is under way
  std::string name_;
  int direction_ = 1;  ///< the way that was gone last; what lies there is loaded first
  gint trashed_ = 0;   ///< id of the item that was thrown away here
  pb::SourceId slideshow_;
  bool no_player_ = false;
  bool gone_ = false;  ///< the item that is shown is not listed any more
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< for what ends after the viewer
};

}  // namespace gallery

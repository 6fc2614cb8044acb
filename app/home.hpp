/// The first screen: all pictures and all albums.
#pragma once

#include <memory>

#include "list-page.hpp"
#include "screen.hpp"
#include "status-bar.hpp"

namespace gallery {

class Home : public Screen {
 public:
  explicit Home(Navigator &navigator);
  ~Home() override;

  [[nodiscard]] GtkWidget *form() const override { return form_.get(); }
  [[nodiscard]] GtkWidget *focus() const override;
  [[nodiscard]] std::string title() const override;
  void enter() override;
  void leave() override;
  void rows_changed() override;
  void thumbnails_arrived() override;
  bool key(const GdkEventKey &event) override;

  /// The list under the viewer, when there is one.
  ListPage &page() { return albums_shown_ ? albums_ : pictures_; }
  void update_status(const MediaIndexProgress &progress);

 private:
  static void on_tab(GtkToggleButton *button, gpointer self);
  GtkWidget *make_tabs();
  void show_albums(bool albums);
  void say_why_empty();

  Navigator &navigator_;
  ListPage pictures_;
  ListPage albums_;
  StatusBar status_;
  pb::Ref<GtkWidget> form_;
  GtkWidget *pictures_tab_;  // children of form_
  GtkWidget *albums_tab_;
  bool albums_shown_ = false;
  bool open_ = false;
  bool looking_ = false;
  std::string problem_;  ///< the latest of the index; "" for none
};

}  // namespace gallery

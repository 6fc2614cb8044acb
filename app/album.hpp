/// The contents of one album.
#pragma once

#include "list-page.hpp"
#include "screen.hpp"

namespace gallery {

class Album : public Screen {
 public:
  /// @param name for people
  Album(Navigator &navigator, gint album_id, std::string name);
  ~Album() override;

  [[nodiscard]] GtkWidget *form() const override { return form_.get(); }
  [[nodiscard]] GtkWidget *focus() const override { return page_.view(); }
  [[nodiscard]] std::string title() const override { return name_; }
  void enter() override;
  void rows_changed() override;
  void thumbnails_arrived() override { page_.redraw(); }
  bool key(const GdkEventKey &event) override;

 private:
  Navigator &navigator_;
  std::string name_;
  ListPage page_;
  pb::Ref<GtkWidget> form_;
  bool open_ = false;
};

}  // namespace gallery

/// The thin bar at the lower edge of a list: how far the looking is, and what went wrong.
#pragma once

#include <gtk/gtk.h>
#include <media-index.h>

#include <glib-ptr.hpp>
#include <string>

namespace gallery {

class StatusBar {
 public:
  StatusBar();
  ~StatusBar();
  StatusBar(const StatusBar &) = delete;
  StatusBar &operator=(const StatusBar &) = delete;

  [[nodiscard]] GtkWidget *widget() const { return bar_.get(); }
  /// Shows how far the index is, then the latest problem, which stays until it is dismissed.
  void update(const MediaIndexProgress &progress, const std::string &places);

 private:
  static void on_dismissed(GtkButton *button, gpointer self);
  void say(const std::string &sentence, bool can_dismiss);

  pb::Ref<GtkWidget> bar_;
  pb::Ref<GtkWidget> sentence_;
  pb::Ref<GtkWidget> dismiss_;
  std::string problem_;
  std::string dismissed_;
};

}  // namespace gallery

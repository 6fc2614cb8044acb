/// The running gallery: its window, its screens and what it hears from the services.
#pragma once

#include <gtk/gtk.h>
#include <media-index.h>

#include <glib-ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "home.hpp"
#include "navigator.hpp"
#include "options.hpp"
#include "screen.hpp"
#include "trash.hpp"
#include "undo-bar.hpp"

namespace gallery {

/// Made and destroyed on the main loop with the GDK lock. At most one at a time: the library has
/// one window and one browsing state.
class Session : public Navigator {
 public:
  explicit Session(Options options);
  ~Session() override;
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  void open_album(int row) override;
  void open_viewer(int row) override;
  void open_details(const std::string &path) override;
  void back() override;
  void refresh_soon() override;
  bool trash(const std::string &path) override;
  void set_full_screen(bool full) override;
  [[nodiscard]] bool is_full_screen() const override { return full_screen_; }
  [[nodiscard]] std::string places() const override;
  [[nodiscard]] std::string trouble() const override { return trouble_; }

 private:
  static gboolean on_key(GtkWidget *window, GdkEventKey *event, gpointer self);
  static gboolean on_closed(GtkWidget *window, GdkEvent *event, gpointer self);
  static void on_back(GtkButton *button, gpointer self);
  static void on_full_screen(GtkButton *button, gpointer self);
  static void on_index_changed(guint changes, gpointer self);
  static void on_thumbnails(gpointer self);
  static gboolean on_refresh_due(gpointer self);

  void make_window();
  void start_index();
  void push(std::unique_ptr<Screen> screen);
  void refresh();
  void update_status();
  void open_help();
  void take_back(const Trashed &trashed);
  void open_file();
  void update_title_buttons();
  [[nodiscard]] bool viewer_is_open() const;
  Screen &top() { return *screens_.back(); }

  Options options_;
  std::string trouble_;
  GtkWidget *window_ = nullptr;  // owned by the view manager
  GtkWidget *back_button_ = nullptr;
  GtkWidget *full_screen_button_ = nullptr;
  std::vector<std::unique_ptr<Screen>> screens_;  // as on the view stack, bottom first
  Home *home_ = nullptr;                          // the first of them
  bool full_screen_ = false;
  UndoBar undo_bar_;
  std::string last_trashed_;
  guint index_listener_ = 0;
  guint thumbnail_listener_ = 0;
  pb::SourceId refresh_;
  gint64 last_refresh_ = 0;
};

}  // namespace gallery

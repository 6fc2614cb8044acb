/// The bar that tells what has been done and takes it back.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <glib-ptr.hpp>
#include <string>

namespace gallery {

class UndoBar {
 public:
  UndoBar();
  ~UndoBar();
  UndoBar(const UndoBar &) = delete;
  UndoBar &operator=(const UndoBar &) = delete;

  [[nodiscard]] GtkWidget *widget() const { return bar_.get(); }
  /// Shows a sentence for ten seconds.
  /// @param undo takes back what the sentence tells; empty when that cannot be
  void say(const std::string &sentence, std::function<void()> undo);
  /// Takes back what the bar tells, if it can be. @return true when it could be
  bool undo();

 private:
  static void on_undo(GtkButton *button, gpointer self);
  static gboolean on_time_over(gpointer self);
  void hide();

  pb::Ref<GtkWidget> bar_;
  pb::Ref<GtkWidget> sentence_;
  pb::Ref<GtkWidget> button_;
  std::function<void()> undo_;
  pb::SourceId time_;
};

}  // namespace gallery

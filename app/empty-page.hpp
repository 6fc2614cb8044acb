/// What a screen shows instead of an empty list.
#pragma once

#include <gtk/gtk.h>

#include <glib-ptr.hpp>
#include <string>

namespace gallery {

class EmptyPage {
 public:
  EmptyPage();

  [[nodiscard]] GtkWidget *widget() const { return page_.get(); }
  /// @param hint what to do about it; may be empty
  void say(const std::string &sentence, const std::string &hint);

 private:
  pb::Ref<GtkWidget> page_;
  GtkWidget *sentence_;  // children of page_
  GtkWidget *hint_;
};

}  // namespace gallery

/// A page of text in two columns: what something is called, and what it is.
#pragma once

#include <glib-ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "screen.hpp"

namespace gallery {

class InfoPage : public Screen {
 public:
  using Rows = std::vector<std::pair<std::string, std::string>>;

  InfoPage(std::string title, const Rows &rows);
  ~InfoPage() override;

  [[nodiscard]] GtkWidget *form() const override { return form_.get(); }
  [[nodiscard]] GtkWidget *focus() const override { return scroller_; }
  [[nodiscard]] std::string title() const override { return title_; }
  [[nodiscard]] bool has_list() const override { return false; }
  void enter() override {}
  bool key(const GdkEventKey &event) override;

 private:
  std::string title_;
  pb::Ref<GtkWidget> form_;
  GtkWidget *scroller_;  // child of form_
};

/// What the gallery knows of a file: name, folder, size, dimensions and date.
InfoPage::Rows details_of(const std::string &path);

/// All keys and what they do.
InfoPage::Rows help();

}  // namespace gallery

#include "status-bar.hpp"

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <pb-util-resource.h>

#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "text.hpp"

using gallery::Text;

extern "C" const gchar *pb_get_res_string(gint id) {
  static const std::map<int, const char *> strings{
      {static_cast<int>(Text::kLookingThrough), "Looking through {folder}: {count} so far"},
      {static_cast<int>(Text::kDismiss), "Dismiss"}};
  const auto found = strings.find(id);
  return found != strings.end() ? found->second : nullptr;
}

extern "C" GdkPixbuf *pb_get_pixbuf(gint /*id*/) { return nullptr; }

namespace {

MediaIndexProgress looking(guint64 media_files) {
  MediaIndexProgress progress{};
  progress.running = TRUE;
  progress.media_files = media_files;
  return progress;
}

MediaIndexProgress finished_with(const char *problem) {
  MediaIndexProgress progress{};
  progress.problems = 1;
  g_strlcpy(progress.problem, problem, sizeof progress.problem);
  return progress;
}

/// The bar at the lower edge of a window as wide as a phone's.
class StatusBar : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(gtk_init_check(nullptr, nullptr));
    gallery::load_texts();
    bar_.emplace();
    window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(window_), 480, 800);
    GtkWidget *column = gtk_vbox_new(FALSE, 0);
    gtk_box_pack_end(GTK_BOX(column), bar_->widget(), FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(window_), column);
    gtk_widget_show_all(window_);
    settle();
  }

  void TearDown() override {
    gtk_widget_destroy(window_);
    bar_.reset();
  }

  static void settle() {
    while (gtk_events_pending() != FALSE) gtk_main_iteration();
  }

  void update(const MediaIndexProgress &progress) {
    bar_->update(progress, "Pictures");
    settle();
  }

  [[nodiscard]] bool shown() const { return gtk_widget_get_visible(bar_->widget()) != FALSE; }

  /// The children's child of a name.
  [[nodiscard]] GtkWidget *part(const char *name) const {
    GtkWidget *row = gtk_bin_get_child(GTK_BIN(bar_->widget()));
    const pb::ListSpinePtr parts(gtk_container_get_children(GTK_CONTAINER(row)));
    for (const GList *link = parts.get(); link != nullptr; link = link->next) {
      auto *widget = GTK_WIDGET(link->data);
      if (std::strcmp(gtk_widget_get_name(widget), name) == 0) return widget;
    }
    return nullptr;
  }

  [[nodiscard]] std::string sentence() const {
    return gtk_label_get_text(GTK_LABEL(part("status-bar-sentence")));
  }

  [[nodiscard]] int lines() const {
    return pango_layout_get_line_count(
        gtk_label_get_layout(GTK_LABEL(part("status-bar-sentence"))));
  }

  std::optional<gallery::StatusBar> bar_;
  GtkWidget *window_ = nullptr;
};

}  // namespace

TEST_F(StatusBar, IsHiddenAtFirst) { EXPECT_FALSE(shown()); }

TEST_F(StatusBar, TellsHowFarTheLookingIs) {
  update(looking(56));

  EXPECT_TRUE(shown());
  EXPECT_EQ(sentence(), "Looking through Pictures: 56 so far");
}

TEST_F(StatusBar, TellsProgressInOneLine) {
  update(looking(1000000));

  EXPECT_EQ(lines(), 1);
}

TEST_F(StatusBar, GoesWhenTheLookingEnds) {
  update(looking(56));

  update(MediaIndexProgress{});

  EXPECT_FALSE(shown());
}

TEST_F(StatusBar, TellsAProblemWhenTheLookingHasEnded) {
  update(finished_with("Locked cannot be read."));

  EXPECT_TRUE(shown());
  EXPECT_EQ(sentence(), "Locked cannot be read.");
}

TEST_F(StatusBar, WrapsALongProblem) {
  update(
      finished_with("The folder with all the pictures of last summer and of the summer before "
                    "cannot be read: Permission denied."));

  EXPECT_GT(lines(), 1);
  GtkAllocation place;
  gtk_widget_get_allocation(bar_->widget(), &place);
  EXPECT_LE(place.width, 480);
}

TEST_F(StatusBar, ShortensAProblemOfManyHundredLetters) {
  update(finished_with(std::string(900, 'x').c_str()));

  EXPECT_EQ(g_utf8_strlen(sentence().c_str(), -1), 151);
}

TEST_F(StatusBar, ShowsBytesThatAreNoTextAsText) {
  update(finished_with("a\xff\nb cannot be read."));

  EXPECT_EQ(sentence(),
            "a\xef\xbf\xbd\xef\xbf\xbd"
            "b cannot be read.");
}

TEST_F(StatusBar, GoesWhenAProblemIsDismissed) {
  update(finished_with("Locked cannot be read."));

  gtk_button_clicked(GTK_BUTTON(part("status-bar-dismiss")));

  EXPECT_FALSE(shown());
}

TEST_F(StatusBar, StaysAwayWhenTheSameProblemIsToldAgain) {
  update(finished_with("Locked cannot be read."));
  gtk_button_clicked(GTK_BUTTON(part("status-bar-dismiss")));

  update(finished_with("Locked cannot be read."));

  EXPECT_FALSE(shown());
}

TEST_F(StatusBar, ComesBackForAnotherProblem) {
  update(finished_with("Locked cannot be read."));
  gtk_button_clicked(GTK_BUTTON(part("status-bar-dismiss")));

  update(finished_with("Secret cannot be read."));

  EXPECT_EQ(sentence(), "Secret cannot be read.");
  EXPECT_TRUE(shown());
}

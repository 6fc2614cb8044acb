#include <phone-theme.h>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"

using testing::ElementsAre;

namespace {

/// The least that a finger hits with certainty, in pixels.
constexpr int kTouchTarget = 44;

class Theme : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    window_ = pb::Ref<GtkWidget>::sink(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  }
  void TearDown() override {
    if (window_) gtk_widget_destroy(window_.get());
  }

  GtkWidget *show(GtkWidget *widget) {
    gtk_container_add(GTK_CONTAINER(window_.get()), widget);
    gtk_widget_show_all(window_.get());
    return widget;
  }

  int height_of(GtkWidget *widget) {
    show(widget);
    GtkRequisition size;
    gtk_widget_size_request(widget, &size);
    return size.height;
  }

  static std::string colour(const GdkColor &colour) {
    const pb::StringPtr text(gdk_color_to_string(&colour));
    return text.get();
  }
  static std::string ground_of(GtkWidget *widget) {
    gtk_widget_ensure_style(widget);
    return colour(gtk_widget_get_style(widget)->bg[GTK_STATE_NORMAL]);
  }
  static std::string selection_of(GtkWidget *widget) {
    gtk_widget_ensure_style(widget);
    return colour(gtk_widget_get_style(widget)->bg[GTK_STATE_SELECTED]);
  }

  pb::Ref<GtkWidget> window_;
};

TEST_F(Theme, IsLightOrDark) {
  phone_theme_apply(FALSE, nullptr);
  const std::string light = ground_of(window_.get());

  phone_theme_apply(TRUE, nullptr);

  EXPECT_EQ(light, "#f2f2f2f2f5f5");
  EXPECT_EQ(ground_of(window_.get()), "#1b1b1c1c2020");
}

TEST_F(Theme, ChangesWidgetsThatAreOnScreen) {
  phone_theme_apply(TRUE, nullptr);
  gtk_widget_show(window_.get());

  phone_theme_apply(FALSE, nullptr);

  EXPECT_EQ(ground_of(window_.get()), "#f2f2f2f2f5f5");
}

TEST_F(Theme, SelectsWithTheAccent) {
  phone_theme_apply(TRUE, "#00ff00");

  EXPECT_EQ(selection_of(window_.get()), "#0000ffff0000");
}

TEST_F(Theme, WritesDarkOnALightAccent) {
  phone_theme_apply(TRUE, "#ffff00");

  gtk_widget_ensure_style(window_.get());
  EXPECT_EQ(colour(gtk_widget_get_style(window_.get())->fg[GTK_STATE_SELECTED]), "#000000000000");
}

TEST_F(Theme, TakesTheDefaultForWhatIsNoColour) {
  phone_theme_apply(TRUE, "no colour");

  EXPECT_THAT(take_glib_warnings(), ElementsAre("\"no colour\" is not a colour"));
  EXPECT_EQ(selection_of(window_.get()), "#2f2f7d7de1e1");
}

TEST_F(Theme, KeepsGridsDark) {
  phone_theme_apply(FALSE, nullptr);
  GtkWidget *grid = show(gtk_icon_view_new());

  gtk_widget_ensure_style(grid);

  EXPECT_EQ(colour(gtk_widget_get_style(grid)->base[GTK_STATE_NORMAL]), "#101010101414");
}

TEST_F(Theme, KeepsTheTextOfATickedBoxReadable) {
  phone_theme_apply(FALSE, nullptr);
  GtkWidget *check = show(gtk_check_button_new_with_label("Favourites"));
  GtkWidget *label = gtk_bin_get_child(GTK_BIN(check));

  gtk_widget_ensure_style(label);

  EXPECT_EQ(colour(gtk_widget_get_style(label)->fg[GTK_STATE_ACTIVE]), "#1c1c1c1c2020");
}

TEST_F(Theme, MakesButtonsHighEnough) {
  phone_theme_apply(TRUE, nullptr);

  EXPECT_GE(height_of(gtk_button_new_with_label("Delete")), kTouchTarget);
}

TEST_F(Theme, MakesCheckBoxesHighEnough) {
  phone_theme_apply(TRUE, nullptr);

  EXPECT_GE(height_of(gtk_check_button_new_with_label("Favourites")), kTouchTarget);
}

TEST_F(Theme, MakesEntriesHighEnough) {
  phone_theme_apply(TRUE, nullptr);

  EXPECT_GE(height_of(gtk_entry_new()), kTouchTarget);
}

TEST_F(Theme, MakesMenuItemsHighEnough) {
  phone_theme_apply(TRUE, nullptr);
  const auto menu = pb::Ref<GtkWidget>::sink(gtk_menu_new());
  GtkWidget *item = gtk_menu_item_new_with_label("Delete");
  gtk_menu_shell_append(GTK_MENU_SHELL(menu.get()), item);
  gtk_widget_show(item);
  gtk_widget_ensure_style(item);

  GtkRequisition size;
  gtk_widget_size_request(item, &size);

  EXPECT_GE(size.height, kTouchTarget);
}

TEST_F(Theme, MakesComboBoxesHighEnough) {
  phone_theme_apply(TRUE, nullptr);
  GtkWidget *combo = gtk_combo_box_text_new();
  gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(combo), "Newest first");

  EXPECT_GE(height_of(combo), kTouchTarget);
}

TEST_F(Theme, MakesSlidersHighEnough) {
  phone_theme_apply(TRUE, nullptr);

  EXPECT_GE(height_of(gtk_hscale_new_with_range(0, 10, 1)), kTouchTarget);
}

TEST_F(Theme, MakesRowsOfListsHighEnough) {
  phone_theme_apply(TRUE, nullptr);
  const auto list = pb::Ref<GtkListStore>::adopt(gtk_list_store_new(1, G_TYPE_STRING));
  GtkTreeIter iter;
  gtk_list_store_insert_with_values(list.get(), &iter, -1, 0, "row", -1);
  GtkWidget *view = gtk_tree_view_new_with_model(GTK_TREE_MODEL(list.get()));
  gtk_tree_view_insert_column_with_attributes(GTK_TREE_VIEW(view), -1, "",  // NOLINT
                                              gtk_cell_renderer_text_new(), "text", 0, nullptr);
  show(view);
  while (gtk_events_pending()) gtk_main_iteration();
  const std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>> path(
      gtk_tree_path_new_first());

  GdkRectangle area;
  gtk_tree_view_get_background_area(GTK_TREE_VIEW(view), path.get(), nullptr, &area);

  EXPECT_GE(area.height, kTouchTarget);
}

}  // namespace

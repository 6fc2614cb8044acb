#include "home.hpp"

#include <gdk/gdkkeysyms.h>
#include <main-window.h>
#include <pb-util-resource.h>
#include <pb-view-manager.h>

#include "rows.hpp"
#include "text.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

constexpr int kPicturesIcon = 902;
constexpr int kAlbumsIcon = 903;
constexpr int kSpacing = 6;

GtkWidget *make_tab(GtkWidget *first, int bitmap, const char *name, const std::string &label) {
  GtkWidget *tab = first == nullptr ? gtk_radio_button_new(nullptr)
                                    : gtk_radio_button_new_from_widget(GTK_RADIO_BUTTON(first));
  gtk_toggle_button_set_mode(GTK_TOGGLE_BUTTON(tab), FALSE);
  gtk_button_set_relief(GTK_BUTTON(tab), GTK_RELIEF_NONE);
  GtkWidget *row = gtk_hbox_new(FALSE, kSpacing);
  const auto icon = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(bitmap));
  gtk_box_pack_start(GTK_BOX(row), gtk_image_new_from_pixbuf(icon.get()), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(row), gtk_label_new(label.c_str()), FALSE, FALSE, 0);
  GtkWidget *middle = gtk_alignment_new(0.5, 0.5, 0, 0);
  gtk_container_add(GTK_CONTAINER(middle), row);
  gtk_container_add(GTK_CONTAINER(tab), middle);
  name_widget(tab, name, label);
  return tab;
}

}  // namespace

Home::Home(Navigator &navigator)
    : navigator_(navigator),
      pictures_("pictures-view", Grid::Cells::kFiles, {kCategoryFiles, 0, row_of_file},
                [&navigator](int row) { navigator.open_viewer(row); }),
      albums_("albums-view", Grid::Cells::kAlbums, {kCategoryAlbums, 0, row_of_album},
              [&navigator](int row) { navigator.open_album(row); }),
      form_(pb::Ref<GtkWidget>::sink(gtk_form_new())),
      pictures_tab_(make_tab(nullptr, kPicturesIcon, "tab-pictures", text(Text::kAllPictures))),
      albums_tab_(make_tab(pictures_tab_, kAlbumsIcon, "tab-albums", text(Text::kAlbums))) {
  gtk_widget_set_name(form_.get(), "home-form");
  GtkWidget *column = gtk_vbox_new(FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), make_tabs(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), pictures_.widget(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(column), albums_.widget(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(column), status_.widget(), FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(form_.get()), column);
  set_shown(pictures_.widget(), true);
  set_shown(albums_.widget(), false);
}

Home::~Home() {
  g_signal_handlers_disconnect_by_data(albums_tab_, this);
  gtk_widget_destroy(form_.get());
}

GtkWidget *Home::make_tabs() {
  GtkWidget *row = gtk_hbox_new(TRUE, 0);
  gtk_widget_set_name(row, "tabs");
  gtk_box_pack_start(GTK_BOX(row), pictures_tab_, TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(row), albums_tab_, TRUE, TRUE, 0);
  // One of two: the other one's change says the same.
  g_signal_connect(albums_tab_, "toggled", G_CALLBACK(on_tab), this);
  return row;
}

GtkWidget *Home::focus() const { return (albums_shown_ ? albums_ : pictures_).view(); }

std::string Home::title() const { return text(albums_shown_ ? Text::kAlbums : Text::kAllPictures); }

void Home::enter() {
  if (open_) {
    page().follow_current_item();
  } else {
    open_ = true;
    page().open();
  }
  say_why_empty();
  pb_view_manager_set_title(title().c_str());
}

void Home::leave() {
  open_ = false;
  page().close();
}

void Home::rows_changed() {
  page().refresh();
  say_why_empty();
}

void Home::thumbnails_arrived() {
  // The path of a cover comes with its album, so albums are listed again.
  if (albums_shown_) {
    navigator_.refresh_soon();
  } else {
    pictures_.redraw();
  }
}

void Home::show_albums(bool albums) {
  if (albums == albums_shown_) return;
  page().close();
  set_shown(page().widget(), false);
  albums_shown_ = albums;
  set_shown(page().widget(), true);
  page().open();
  say_why_empty();
  pb_view_manager_set_title(title().c_str());
  pb_view_manager_set_focus_widget(form_.get(), focus());
  gtk_widget_grab_focus(focus());
}

void Home::say_why_empty() {
  if (!page().is_empty()) return;
  const std::string trouble = navigator_.trouble();
  if (!trouble.empty()) {
    page().empty_page().say(trouble, "");
  } else if (looking_) {
    page().empty_page().say(text(Text::kLookingForPictures), "");
  } else if (!problem_.empty()) {
    page().empty_page().say(problem_, "");
  } else {
    page().empty_page().say(text(albums_shown_ ? Text::kNoAlbums : Text::kNoPictures),
                            fill(Text::kNoPicturesHint, {{"folder", navigator_.places()}}));
  }
}

void Home::update_status(const MediaIndexProgress &progress) {
  looking_ = progress.running != FALSE;
  problem_ = progress.problems > 0 ? one_line(progress.problem) : "";
  status_.update(progress, navigator_.places());
  say_why_empty();
}

bool Home::key(const GdkEventKey &event) {
  if (page().zoom_key(event)) return true;
  if (event.keyval == GDK_KEY_Delete && !albums_shown_) {
    navigator_.trash(page().path_at_cursor());
    return true;
  }
  if ((event.state & GDK_CONTROL_MASK) == 0) return false;
  if (event.keyval != GDK_KEY_1 && event.keyval != GDK_KEY_2) return false;
  GtkWidget *tab = event.keyval == GDK_KEY_1 ? pictures_tab_ : albums_tab_;
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(tab), TRUE);
  return true;
}

void Home::on_tab(GtkToggleButton *button, gpointer self) {
  static_cast<Home *>(self)->show_albums(gtk_toggle_button_get_active(button) != FALSE);
}

}  // namespace gallery

#include "album.hpp"

#include <gdk/gdkkeysyms.h>
#include <main-window.h>

#include <utility>

#include "rows.hpp"
#include "text.hpp"

namespace gallery {

Album::Album(Navigator &navigator, gint album_id, std::string name)
    : navigator_(navigator),
      name_(std::move(name)),
      page_("album-view", Grid::Cells::kFiles,
            {kCategoryAlbum, album_id,
             [album_id](gint id) { return row_of_album_file(album_id, id); }},
            [&navigator](int row) { navigator.open_viewer(row); }),
      form_(pb::Ref<GtkWidget>::sink(gtk_form_new())) {
  gtk_widget_set_name(form_.get(), "album-form");
  gtk_container_add(GTK_CONTAINER(form_.get()), page_.widget());
  page_.empty_page().say(text(Text::kAlbumEmpty), "");
}

Album::~Album() {
  page_.close();
  gtk_widget_destroy(form_.get());
}

void Album::enter() {
  if (open_) {
    page_.follow_current_item();
    return;
  }
  open_ = true;
  page_.open();
}

bool Album::key(const GdkEventKey &event) {
  if (page_.zoom_key(event)) return true;
  if (event.keyval != GDK_KEY_Delete) return false;
  navigator_.trash(page_.path_at_cursor());
  return true;
}

void Album::rows_changed() { page_.refresh(); }

}  // namespace gallery

#include "viewer.hpp"

#include <gdk/gdkkeysyms.h>
#include <main-window.h>
#include <pb-app-common.h>
#include <pb-view-manager.h>
#include <picture-loader.h>

#include <utility>
#include <vector>

#include "rows.hpp"
#include "text.hpp"
#include "video-player.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

constexpr gint kVideo = 2;  // media type
constexpr int kPreviousIcon = 901;
constexpr int kNextIcon = 908;
constexpr int kBarPadding = 8;
constexpr int kButtonWidth = 88;

int current_row() { return pb_app_common_get_instance()->item_index; }

std::string path_of(const PbItem *item) {
  return item != nullptr && item->filename != nullptr ? item->filename : "";
}

}  // namespace

Viewer::Viewer(Navigator &navigator)
    : navigator_(navigator),
      supply_([this](const std::string &path) { picture_arrived(path); }),
      canvas_({[this](int by) { step(by); }, [this] { tapped(); }, [this] { load_full(); },
               [this](int width, int height) { supply_.set_box(width, height); }}),
      form_(pb::Ref<GtkWidget>::sink(gtk_form_new())) {
  gtk_widget_set_name(form_.get(), "viewer-form");
  GtkWidget *column = gtk_vbox_new(FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), canvas_.widget(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(column), make_bar(), FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(form_.get()), column);
  const PbItem *item = item_at(pb_app_common_get_item_list(), current_row());
  name_ = display_name(path_of(item));
}

Viewer::~Viewer() {
  *alive_ = false;
  picture_loader_cancel(full_request_);
  g_signal_handlers_disconnect_by_data(previous_, this);
  g_signal_handlers_disconnect_by_data(next_, this);
  gtk_widget_destroy(form_.get());
}

GtkWidget *Viewer::make_bar() {
  bar_ = gtk_hbox_new(FALSE, kBarPadding);
  gtk_widget_set_name(bar_, "viewer-bar");
  previous_ = add_button(kPreviousIcon, "viewer-previous", text(Text::kPreviousPicture),
                         G_CALLBACK(on_previous));
  position_ = gtk_label_new(nullptr);
  gtk_widget_set_name(position_, "viewer-position");
  gtk_box_pack_start(GTK_BOX(bar_), position_, TRUE, TRUE, 0);
  next_ = add_button(kNextIcon, "viewer-next", text(Text::kNextPicture), G_CALLBACK(on_next));
  return bar_;
}

GtkWidget *Viewer::add_button(int icon, const char *name, const std::string &spoken,
                              GCallback clicked) {
  GtkWidget *button = make_icon_button(icon, name, spoken);
  gtk_widget_set_size_request(button, kButtonWidth, -1);
  g_signal_connect(button, "clicked", clicked, this);
  gtk_box_pack_start(GTK_BOX(bar_), button, FALSE, FALSE, 0);
  return button;
}

void Viewer::on_previous(GtkButton * /*button*/, gpointer self) {
  static_cast<Viewer *>(self)->step(-1);
}

void Viewer::on_next(GtkButton * /*button*/, gpointer self) {
  static_cast<Viewer *>(self)->step(1);
}

void Viewer::update() {
  PbItem *item = pb_app_common_get_nth_item_from_current(0);
  const bool video = item != nullptr && item->media_type == kVideo;
  const Shown before =
      std::exchange(shown_, Shown{item != nullptr ? id_of(item) : 0, path_of(item), video});
  gone_ = false;
  if (shown_ != before) {
    no_player_ = false;
    drop_full();
  }

  name_ = display_name(shown_.path);
  pb_view_manager_set_title(name_.c_str());
  PbItemList *list = pb_app_common_get_item_list();
  update_neighbours(list, current_row());
  update_position(current_row());
  if (item != nullptr) canvas_.show(slide_of(item));
}

void Viewer::update_position(int row) {
  const int total = pb_item_list_get_length(pb_app_common_get_item_list());
  const std::string position =
      fill(Text::kPosition, {{"position", grouped(static_cast<guint64>(row) + 1)},
                             {"total", grouped(static_cast<guint64>(total))}});
  gtk_label_set_text(GTK_LABEL(position_), position.c_str());
  gtk_widget_set_sensitive(previous_, row > 0);
  gtk_widget_set_sensitive(next_, row + 1 < total);
}

void Viewer::update_neighbours(PbItemList *list, int row) {
  std::vector<std::string> neighbours;
  for (const int by : {direction_, -direction_}) {
    const PbItem *item = item_at(list, row + by);
    if (item != nullptr && item->media_type != kVideo) neighbours.push_back(path_of(item));
  }
  // A video is never decoded here.
  if (shown_.video) {
    supply_.want(neighbours.empty() ? std::string() : neighbours.front(), neighbours);
  } else {
    supply_.want(shown_.path, neighbours);
  }
  canvas_.set_neighbours(neighbour_slide(list, row - 1), neighbour_slide(list, row + 1));
}

std::unique_ptr<Slide> Viewer::neighbour_slide(PbItemList *list, int row) const {
  PbItem *item = item_at(list, row);
  return item != nullptr ? std::make_unique<Slide>(slide_of(item)) : nullptr;
}

Slide Viewer::slide_of(PbItem *item) const {
  Slide slide;
  const std::string path = path_of(item);
  const PictureSupply::Picture *picture = supply_.find(path);
  if (picture != nullptr && picture->pixbuf) {
    slide.picture = picture->pixbuf;
    return slide;
  }
  if (picture != nullptr && !picture->problem.empty()) {
    slide.sentence = picture->problem;
    return slide;
  }
  slide.picture = pb::Ref<GdkPixbuf>::adopt(pb_item_get_thumbnail_pixbuf(item));
  slide.is_preview = true;
  if (item->media_type == kVideo) {
    const bool shown = path == shown_.path;
    slide.has_play_mark = bool(slide.picture);
    slide.sentence = text(shown && no_player_ ? Text::kNoPlayer : Text::kPlayHint);
  }
  return slide;
}

void Viewer::step(int by) {
  direction_ = by;
  // The row of what has gone holds what came after it.
  const bool there_already = gone_ && by > 0;
  const bool moved = there_already || (by > 0 ? pb_app_common_navigate_item_forward()
                                              : pb_app_common_navigate_item_backward()) != FALSE;
  if (moved) update();
}

void Viewer::go_to(int row) {
  if (row != current_row() && pb_app_common_navigate_item_by_index(row)) update();
}

void Viewer::tapped() {
  if (stop_slideshow()) return;
  if (shown_.video) {
    play();
  } else {
    navigator_.set_full_screen(!navigator_.is_full_screen());
  }
}

void Viewer::trash() {
  if (!gone_ && navigator_.trash(shown_.path)) trashed_ = shown_.id;
}

void Viewer::start_slideshow() {
  constexpr guint kSecondsEach = 3;
  canvas_.zoom_to_fit();
  navigator_.set_full_screen(true);
  slideshow_ = pb::SourceId(gdk_threads_add_timeout_seconds(kSecondsEach, on_slide_due, this));
}

/// @return true when there was one
bool Viewer::stop_slideshow() {
  if (!slideshow_.pending()) return false;
  slideshow_.remove();
  navigator_.set_full_screen(false);
  return true;
}

gboolean Viewer::on_slide_due(gpointer self) {
  auto *viewer = static_cast<Viewer *>(self);
  if (pb_app_common_check_next_item_exist()) {
    viewer->step(1);
  } else {
    viewer->go_to(0);
  }
  return G_SOURCE_CONTINUE;
}

void Viewer::play() {
  const std::shared_ptr<bool> alive = alive_;
  play_video(shown_.path, [this, alive, path = shown_.path] {
    if (!*alive || path != shown_.path) return;
    no_player_ = true;
    update();
  });
}

void Viewer::picture_arrived(const std::string &path) {
  if (gone_) return;
  PbItemList *list = pb_app_common_get_item_list();
  PbItem *item = item_at(list, current_row());
  if (item != nullptr && path == shown_.path && path == path_of(item)) {
    canvas_.show(slide_of(item));
  } else {
    canvas_.set_neighbours(neighbour_slide(list, current_row() - 1),
                           neighbour_slide(list, current_row() + 1));
  }
}

void Viewer::thumbnails_arrived() {
  const PictureSupply::Picture *picture = supply_.find(shown_.path);
  const bool waiting =
      !gone_ && (picture == nullptr || (!picture->pixbuf && picture->problem.empty()));
  PbItem *item = item_at(pb_app_common_get_item_list(), current_row());
  if (waiting && item != nullptr && path_of(item) == shown_.path) canvas_.show(slide_of(item));
}

void Viewer::rows_changed() {
  PbItemList *list = pb_app_common_get_item_list();
  const int length = pb_item_list_get_length(list);
  if (current_row() >= length && length > 0) pb_app_common_navigate_item_by_index(length - 1);
  const PbItem *item = item_at(list, current_row());
  if (item != nullptr && id_of(item) == shown_.id) {
    if (supply_.look_again()) drop_full();
    update();
  } else if (shown_.id != trashed_) {
    show_gone();
  } else if (length > 0) {
    // The row holds what came after it.
    update();
  } else {
    navigator_.back();
  }
}

void Viewer::show_gone() {
  gone_ = true;
  Slide slide;
  slide.sentence = fill(Text::kGone, {{"name", name_}});
  canvas_.show(std::move(slide));
  PbItemList *list = pb_app_common_get_item_list();
  canvas_.set_neighbours(neighbour_slide(list, current_row() - 1),
                         neighbour_slide(list, current_row()));
}

/// Decoded once somebody looks closer, and bounded: a screen never shows more of it at a time.
void Viewer::load_full() {
  constexpr int kLargest = 4096;
  if (full_request_ != 0 || shown_.video || gone_) return;
  full_request_ =
      picture_loader_load(shown_.path.c_str(), kLargest, kLargest, on_full_loaded, this);
}

void Viewer::drop_full() {
  picture_loader_cancel(std::exchange(full_request_, 0));
  canvas_.set_full({});
}

void Viewer::on_full_loaded(guint request, GdkPixbuf *pixbuf, const gchar * /*problem*/,
                            gpointer self) {
  auto *viewer = static_cast<Viewer *>(self);
  if (request != viewer->full_request_) return;
  viewer->full_request_ = 0;
  // Without it the picture of the window stays, only less sharp.
  if (pixbuf != nullptr) viewer->canvas_.set_full(pb::Ref<GdkPixbuf>::share(pixbuf));
}

bool Viewer::zoom_key(guint keyval) {
  constexpr double kStep = 1.5;
  switch (keyval) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
      canvas_.zoom(kStep);
      return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
      canvas_.zoom(1 / kStep);
      return true;
    case GDK_KEY_0:
    case GDK_KEY_KP_0:
      canvas_.zoom_to_fit();
      return true;
    case GDK_KEY_1:
    case GDK_KEY_KP_1:
      canvas_.zoom_to_pixels();
      return true;
    default:
      return false;
  }
}

/// Arrows look around in an enlarged picture.
bool Viewer::move_key(guint keyval) {
  constexpr double kStep = 60;
  if (!canvas_.is_enlarged()) return false;
  switch (keyval) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
      canvas_.move(kStep, 0);
      return true;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
      canvas_.move(-kStep, 0);
      return true;
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      canvas_.move(0, kStep);
      return true;
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      canvas_.move(0, -kStep);
      return true;
    default:
      return false;
  }
}

bool Viewer::key(const GdkEventKey &event) {
  if (zoom_key(event.keyval) || move_key(event.keyval)) return true;
  switch (event.keyval) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
    case GDK_KEY_Page_Up:
      step(-1);
      return true;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
    case GDK_KEY_Page_Down:
      step(1);
      return true;
    case GDK_KEY_Home:
      go_to(0);
      return true;
    case GDK_KEY_End:
      go_to(pb_item_list_get_length(pb_app_common_get_item_list()) - 1);
      return true;
    case GDK_KEY_i:
      navigator_.open_details(shown_.path);
      return true;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
      if ((event.state & GDK_MOD1_MASK) != 0) {
        navigator_.open_details(shown_.path);
        return true;
      }
      if (!shown_.video || !gtk_widget_has_focus(canvas_.widget())) return false;
      play();
      return true;
    case GDK_KEY_space:
      // A button that has the keyboard is pressed by this key.
      if (!gtk_widget_has_focus(canvas_.widget())) return false;
      if (!stop_slideshow()) start_slideshow();
      return true;
    case GDK_KEY_Delete:
      stop_slideshow();
      trash();
      return true;
    case GDK_KEY_F11:
    case GDK_KEY_f:
      navigator_.set_full_screen(!navigator_.is_full_screen());
      return true;
    default:
      return false;
  }
}

void Viewer::full_screen_changed(bool full) { set_shown(bar_, !full); }

bool Viewer::back() {
  if (stop_slideshow()) return true;
  if (canvas_.is_enlarged()) {
    canvas_.zoom_to_fit();
    return true;
  }
  if (!navigator_.is_full_screen()) return false;
  navigator_.set_full_screen(false);
  return true;
}

}  // namespace gallery

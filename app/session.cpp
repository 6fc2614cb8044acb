#include "session.hpp"

#include <gdk/gdkkeysyms.h>
#include <main-window.h>
#include <pb-app-common.h>
#include <pb-util-resource.h>
#include <pb-view-manager.h>
#include <phone-theme.h>
#include <picture-loader.h>
#include <thumbnail-manager.h>

#include <algorithm>
#include <utility>

#include "album.hpp"
#include "info-page.hpp"
#include "rows.hpp"
#include "text.hpp"
#include "viewer.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

constexpr int kWindowStyle = 0;
constexpr int kBackIcon = 901;
constexpr int kProgramIcon = 906;
constexpr int kFullScreenIcon = 907;
constexpr int kWidth = 480;
constexpr int kHeight = 800;
constexpr int kSmallest = 240;
constexpr int kTitleHeight = 52;
/// While pictures pour in, the list is built again this often.
constexpr gint64 kRefreshUs = G_USEC_PER_SEC;

bool goes_back(const GdkEventKey &event) {
  switch (event.keyval) {
    case GDK_KEY_Escape:
    case GDK_KEY_BackSpace:
    case GDK_KEY_Back:
      return true;
    case GDK_KEY_Left:
      return (event.state & GDK_MOD1_MASK) != 0;
    default:
      return false;
  }
}

bool quits(const GdkEventKey &event) {
  return (event.state & GDK_CONTROL_MASK) != 0 &&
         (event.keyval == GDK_KEY_q || event.keyval == GDK_KEY_w);
}

}  // namespace

Session::Session(Options options) : options_(std::move(options)) {
  if (options_.roots.empty() && !options_.problems.empty()) trouble_ = options_.problems.front();
  make_window();
  pb_app_common_initialize();
  start_index();
  auto home = std::make_unique<Home>(*this);
  home_ = home.get();
  push(std::move(home));
  index_listener_ = media_index_add_listener(on_index_changed, this);
  thumbnail_listener_ = thumbnail_manager_add_listener(on_thumbnails, this);
  update_status();
  open_file();
}

Session::~Session() {
  media_index_remove_listener(index_listener_);
  thumbnail_manager_remove_listener(thumbnail_listener_);
  refresh_.remove();
  g_signal_handlers_disconnect_by_data(window_, this);
  pb_app_common_set_adjustment(nullptr, nullptr);
  pb_view_manager_destroy_all();
  while (!screens_.empty()) screens_.pop_back();
  pb_view_manager_destroy_window();
  pb_app_common_finalize();
  picture_loader_shutdown();
  thumbnail_manager_shutdown();
  media_index_stop();
}

void Session::make_window() {
  phone_theme_apply(TRUE, nullptr);
  window_ = gtk_main_window_new(kWindowStyle);
  name_widget(window_, "gallery-window", text(Text::kPhotos));
  gtk_window_set_default_size(GTK_WINDOW(window_), kWidth, kHeight);
  gtk_window_set_wmclass(GTK_WINDOW(window_), "photobrowser", "Photobrowser");
  const auto icon = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(kProgramIcon));
  if (icon) gtk_window_set_icon(GTK_WINDOW(window_), icon.get());

  back_button_ = make_icon_button(kBackIcon, "title-back", text(Text::kBack));
  full_screen_button_ =
      make_icon_button(kFullScreenIcon, "title-full-screen", text(Text::kFullScreen));
  auto *main_window = GTK_MAIN_WINDOW(window_);
  phone_main_window_add_title_widget(main_window, back_button_, GTK_PACK_START);
  phone_main_window_add_title_widget(main_window, full_screen_button_, GTK_PACK_END);
  // The bar keeps its height when the buttons come and go.
  gtk_widget_set_size_request(gtk_main_window_get_title_label(main_window), -1, kTitleHeight);
  g_signal_connect(back_button_, "clicked", G_CALLBACK(on_back), this);
  g_signal_connect(full_screen_button_, "clicked", G_CALLBACK(on_full_screen), this);
  phone_main_window_add_bottom_widget(main_window, undo_bar_.widget());
  update_title_buttons();

  g_signal_connect(window_, "key-press-event", G_CALLBACK(on_key), this);
  g_signal_connect(window_, "delete-event", G_CALLBACK(on_closed), this);
  pb_view_manager_set_window(window_);
  // The view manager asks for a whole phone screen; a window on a desktop may be smaller.
  gtk_widget_set_size_request(window_, kSmallest, kSmallest);
}

void Session::start_index() {
  std::vector<const gchar *> roots;
  for (const std::string &root : options_.roots) roots.push_back(root.c_str());
  if (roots.empty()) return;
  pb::StringPtr problem;
  if (!media_index_start(roots.data(), static_cast<gint>(roots.size()), pb::out(problem))) {
    trouble_ = fill(Text::kNotListed, {{"reason", problem ? one_line(problem.get()) : ""}});
    g_printerr("photobrowser: %s\n", trouble_.c_str());
  }
}

std::string Session::places() const {
  return options_.roots.size() == 1 ? display_name(options_.roots.front())
                                    : text(Text::kYourFolders);
}

void Session::push(std::unique_ptr<Screen> screen) {
  if (!screens_.empty()) top().covered();
  screens_.push_back(std::move(screen));
  pb_view_manager_add_widget(top().form(), top().focus(), top().title().c_str());
  update_title_buttons();
  top().enter();
}

void Session::open_album(int row) {
  const PbItem *item = item_at(pb_app_common_get_item_list(), row);
  if (item == nullptr) return;
  const gint album_id = item->album_id;
  std::string name = one_line(item->name != nullptr ? item->name : "");
  pb_app_common_navigate_item_by_index(row);
  top().leave();
  push(std::make_unique<Album>(*this, album_id, std::move(name)));
}

void Session::open_viewer(int row) {
  if (pb_app_common_navigate_item_by_index(row)) push(std::make_unique<Viewer>(*this));
}

void Session::open_details(const std::string &path) {
  set_full_screen(false);
  push(std::make_unique<InfoPage>(text(Text::kDetails), details_of(path)));
}

void Session::open_help() {
  if (dynamic_cast<const InfoPage *>(screens_.back().get()) != nullptr) return;
  set_full_screen(false);
  push(std::make_unique<InfoPage>(text(Text::kHelp), help()));
}

void Session::back() {
  if (screens_.size() < 2) return;
  set_full_screen(false);
  pb_view_manager_remove_widget(top().form());
  screens_.pop_back();
  top().enter();
  update_title_buttons();
}

bool Session::viewer_is_open() const {
  return dynamic_cast<const Viewer *>(screens_.back().get()) != nullptr;
}

void Session::update_title_buttons() {
  set_shown(back_button_, screens_.size() > 1);
  set_shown(full_screen_button_, !screens_.empty() && viewer_is_open());
}

bool Session::trash(const std::string &path) {
  // Until the lists are built again, a key held down would find the same file.
  if (path.empty() || path == last_trashed_) return false;
  const std::string name = display_name(path);
  std::string problem;
  const std::optional<Trashed> trashed = move_to_trash(path, problem);
  if (!trashed) {
    undo_bar_.say(fill(Text::kNotTrashed, {{"name", name}, {"reason", one_line(problem)}}), {});
    return false;
  }
  last_trashed_ = path;
  std::function<void()> undo;
  if (!trashed->file.empty()) undo = [this, trashed] { take_back(*trashed); };
  undo_bar_.say(fill(Text::kInTrash, {{"name", name}}), std::move(undo));
  media_index_rescan();
  return true;
}

void Session::take_back(const Trashed &trashed) {
  std::string problem;
  if (put_back(trashed, problem)) {
    last_trashed_.clear();
    media_index_rescan();
    return;
  }
  undo_bar_.say(
      fill(Text::kNotPutBack, {{"name", display_name(trashed.path)}, {"reason", problem}}), {});
}

void Session::set_full_screen(bool full) {
  if (full == full_screen_) return;
  full_screen_ = full;
  if (full) {
    gtk_window_fullscreen(GTK_WINDOW(window_));
  } else {
    gtk_window_unfullscreen(GTK_WINDOW(window_));
  }
  pb_view_manager_set_title_style(full ? PHONE_TITLE_NONE : PHONE_TITLE_BAR);
  top().full_screen_changed(full);
}

void Session::on_index_changed(guint changes, gpointer self) {
  auto *session = static_cast<Session *>(self);
  if ((changes & MEDIA_INDEX_ROWS_CHANGED) != 0) session->refresh_soon();
  session->update_status();
  if (!session->refresh_.pending()) session->open_file();
}

void Session::update_status() {
  MediaIndexProgress progress{};
  media_index_get_progress(&progress);
  home_->update_status(progress);
}

void Session::refresh_soon() {
  if (refresh_.pending()) return;
  const gint64 due = last_refresh_ + kRefreshUs - g_get_monotonic_time();
  const auto delay = static_cast<guint>(std::max<gint64>(0, due / 1000));
  refresh_ = pb::SourceId(gdk_threads_add_timeout(delay, on_refresh_due, this));
}

gboolean Session::on_refresh_due(gpointer self) {
  auto *session = static_cast<Session *>(self);
  session->refresh_.forget();
  session->refresh();
  return G_SOURCE_REMOVE;
}

void Session::refresh() {
  last_refresh_ = g_get_monotonic_time();
  // A viewer looks at the list of the screen under it.
  std::size_t first = screens_.size() - 1;
  while (!screens_.at(first)->has_list()) --first;
  for (std::size_t i = first; i < screens_.size(); ++i) screens_.at(i)->rows_changed();
  pb_view_manager_set_title(top().title().c_str());
  open_file();
}

void Session::on_thumbnails(gpointer self) {
  auto *session = static_cast<Session *>(self);
  pb_app_common_resync_current_icons();
  session->top().thumbnails_arrived();
}

/// Opens the file of the command line as soon as the index knows it.
void Session::open_file() {
  if (options_.file.empty()) return;
  const gint id = media_index_get_id_by_path(options_.file.c_str());
  const int row = id != 0 ? row_of_file(id) : -1;
  if (row >= 0 && row < pb_item_list_get_length(pb_app_common_get_item_list())) {
    options_.file.clear();
    open_viewer(row);
    return;
  }
  MediaIndexProgress progress{};
  media_index_get_progress(&progress);
  if (progress.running != FALSE || id != 0) return;
  const std::string name = display_name(options_.file);
  g_printerr("photobrowser: %s\n", fill(Text::kNotMedia, {{"name", name}}).c_str());
  options_.file.clear();
}

gboolean Session::on_key(GtkWidget * /*window*/, GdkEventKey *event, gpointer self) {
  auto *session = static_cast<Session *>(self);
  if (quits(*event)) {
    gtk_main_quit();
    return TRUE;
  }
  const bool undoes = (event->state & GDK_CONTROL_MASK) != 0 && event->keyval == GDK_KEY_z;
  if (event->keyval == GDK_KEY_F1) {
    session->open_help();
    return TRUE;
  }
  if (undoes) return session->undo_bar_.undo() ? TRUE : FALSE;
  if (goes_back(*event)) {
    if (!session->top().back()) session->back();
    return TRUE;
  }
  return session->top().key(*event) ? TRUE : FALSE;
}

gboolean Session::on_closed(GtkWidget * /*window*/, GdkEvent * /*event*/, gpointer /*self*/) {
  gtk_main_quit();
  return TRUE;
}

void Session::on_back(GtkButton * /*button*/, gpointer self) {
  static_cast<Session *>(self)->back();
}

void Session::on_full_screen(GtkButton * /*button*/, gpointer self) {
  auto *session = static_cast<Session *>(self);
  session->set_full_screen(!session->full_screen_);
}

}  // namespace gallery

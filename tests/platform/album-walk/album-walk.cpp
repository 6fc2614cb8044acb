#include "album-walk.hpp"

#include <fcntl.h>
#include <media-index.h>
#include <pb-item-renderer.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>
#include <unistd.h>
#include <virtual-list-store.h>

#include <algorithm>
#include <map>

#include "support/pixbufs.hpp"

namespace test {

namespace {

constexpr int kAlbums = 0;
constexpr int kAlbumFiles = 3;
constexpr int kWidth = 480;
constexpr int kHeight = 800;
constexpr int kCell = 148;

/// What a type's class had before its instances were counted.
struct Counted {
  void (*constructed)(GObject *);
  void (*finalize)(GObject *);
  int live;
};

std::map<GType, Counted> &counted() {
  static std::map<GType, Counted> types;
  return types;
}

void count_constructed(GObject *object) {
  Counted &type = counted().at(G_OBJECT_TYPE(object));
  ++type.live;
  type.constructed(object);
}

void count_finalized(GObject *object) {
  Counted &type = counted().at(G_OBJECT_TYPE(object));
  --type.live;
  type.finalize(object);
}

/// Where the phone's paths begin: the package of the build, by a link.
void link_package() {
  const std::string usr = support::photobrowser_root() + "/usr";
  mkdir(usr.c_str(), 0700);
  if (support::exists(usr + "/apps")) return;
  ASSERT_EQ(symlink(PB_PACKAGE_DIR "/usr/apps", (usr + "/apps").c_str()), 0);
}

void set_date(const std::string &path, gint64 seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

}  // namespace

LiveInstances::LiveInstances(GType type) : type_(type) {
  auto *klass = static_cast<GObjectClass *>(g_type_class_ref(type));
  counted()[type] = {klass->constructed, klass->finalize, 0};
  klass->constructed = count_constructed;
  klass->finalize = count_finalized;
}

LiveInstances::~LiveInstances() {
  auto *klass = static_cast<GObjectClass *>(g_type_class_peek(type_));
  klass->constructed = counted().at(type_).constructed;
  klass->finalize = counted().at(type_).finalize;
  g_type_class_unref(klass);
}

int LiveInstances::count() const { return counted().at(type_).live; }

void AlbumWalk::SetUp() {
  DisplayTest::SetUp();
  if (IsSkipped() || HasFatalFailure()) return;
  link_package();
  add_album("trip", kTripPictures, 1'700'000'000);
  add_album("walk", kWalkPictures, 1'600'000'000);
  add_broken_picture();
  start_index();
  pb_app_common_initialize();
  make_window();
  thumbnail_listener_ = thumbnail_manager_add_listener(note_thumbnails, this);
  walking_ = true;
}

void AlbumWalk::TearDown() {
  leave();
  media_index_stop();
  media_index_remove_listener(scan_listener_);
  thumbnail_manager_shutdown();
  // A thumbnail that is not ready yet is asked for, and said to be missing.
  for (const std::string &warning : take_glib_warnings()) {
    EXPECT_EQ(warning, "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed");
  }
}

/// Pictures "00.jpg" and so on, the last of them the newest.
void AlbumWalk::add_album(const std::string &name, int pictures, gint64 date) {
  for (int i = 0; i < pictures; ++i) {
    const pb::StringPtr number(g_strdup_printf("%02d.jpg", i));
    dir_.make_dir("pictures/" + name);
    const auto shade = static_cast<std::uint8_t>(i * 4);
    const std::string path = support::save_picture(
        dir_.path("pictures/" + name + "/" + number.get()), 24, 18, {shade, 100, 0}, "jpeg");
    set_date(path, date + i);
  }
}

/// The beginning of a picture, and nothing of its pixels.
void AlbumWalk::add_broken_picture() {
  constexpr std::size_t kHeader = 33;
  const std::string whole = support::save_picture(dir_.path("whole.png"), 24, 18, support::kRed);
  dir_.write("pictures/odd/broken.png",
             support::read_file(whole).substr(0, kHeader) + "these are no pixels");
  set_date(dir_.path("pictures/odd/broken.png"), 1'500'000'000);
}

void AlbumWalk::start_index() {
  scan_listener_ = media_index_add_listener(note_scan, this);
  const std::string root = dir_.path("pictures");
  const gchar *roots[] = {root.c_str()};
  ASSERT_TRUE(media_index_start(roots, 1, nullptr));
  ASSERT_TRUE(support::run_until([this] { return scanned_; }));
}

void AlbumWalk::make_window() {
  // Not on screen, where the windows of tests that run at the same time would cover each other.
  window_ = pb::Ref<GtkWidget>::sink(gtk_offscreen_window_new());
  gtk_widget_set_size_request(window_.get(), kWidth, kHeight);
  view_ = pb::Ref<GtkWidget>::sink(phone_icon_view_new());
  auto *view = PHONE_ICON_VIEW(view_.get());
  phone_icon_view_set_cell_size(view, kCell, kCell);
  phone_icon_view_set_cell(view, pb_item_renderer_new(), "item", 0);
  GtkWidget *scroller = gtk_scrolled_window_new(nullptr, nullptr);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_NEVER);
  gtk_container_add(GTK_CONTAINER(scroller), view_.get());
  gtk_container_add(GTK_CONTAINER(window_.get()), scroller);
  pb_app_common_set_adjustment(view_.get(), adjustment());
  gtk_widget_show_all(window_.get());
}

GtkAdjustment *AlbumWalk::adjustment() {
  return gtk_scrolled_window_get_vadjustment(
      GTK_SCROLLED_WINDOW(gtk_widget_get_parent(view_.get())));
}

void AlbumWalk::open(gint category) { ASSERT_TRUE(pb_app_common_set_category(category, TRUE)); }

void AlbumWalk::open_album(const std::string &name) {
  open(kAlbums);
  show_current_list();
  const gint albums = pb_item_list_get_length(pb_app_common_get_item_list());
  for (gint row = 0; row < albums; ++row) {
    const PbItem *album = pb_app_common_get_nth_item_from_list(pb_app_common_get_item_list(), row);
    ASSERT_NE(album, nullptr) << row;
    if (name != album->name) continue;
    ASSERT_TRUE(pb_app_common_navigate_item_by_index(row));
    open(kAlbumFiles);
    show_current_list();
    return;
  }
  FAIL() << "there is no album " << name;
}

void AlbumWalk::show_current_list() {
  unfollow();
  signals_.clear();
  PbItemList *list = pb_app_common_get_item_list();
  g_signal_connect(list, "initialize-cache", G_CALLBACK(note_initialize), this);
  g_signal_connect(list, "fill-cache", G_CALLBACK(note_fill), this);
  g_signal_connect(list, "finalize-cache", G_CALLBACK(note_finalize), this);
  followed_ = list;
  phone_icon_view_set_model(PHONE_ICON_VIEW(view_.get()), GTK_TREE_MODEL(list));
  ASSERT_TRUE(support::run_until([this] {
    const auto rows = rows_on_screen();
    return !rows.empty() && std::ranges::all_of(rows, [this](gint row) {
      return gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(followed_), row) != FALSE;
    });
  }));
}

void AlbumWalk::scroll_to_row(gint row) {
  phone_icon_view_scroll_to_row(PHONE_ICON_VIEW(view_.get()), row, 0);
  ASSERT_TRUE(support::run_until([this] {
    return std::ranges::all_of(rows_on_screen(), [this](gint shown) {
      return gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(followed_), shown) !=
             FALSE;
    });
  }));
}

bool AlbumWalk::eventually_has_thumbnails() {
  return support::run_until([this] {
    return std::ranges::all_of(rows_on_screen(), [this](gint row) {
      GtkTreeIter iter;
      if (!gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(followed_), &iter, row)) {
        return false;
      }
      GdkPixbuf *pixbuf = nullptr;
      gtk_tree_model_get(GTK_TREE_MODEL(followed_), &iter, 3, &pixbuf, -1);
      return pb::Ref<GdkPixbuf>::adopt(pixbuf).get() != nullptr;
    });
  });
}

std::vector<gint> AlbumWalk::rows_on_screen() const {
  std::vector<gint> rows;
  gint first = 0;
  gint last = -1;
  phone_icon_view_get_visible_rows(PHONE_ICON_VIEW(view_.get()), &first, &last);
  for (gint row = first; row <= last; ++row) rows.push_back(row);
  return rows;
}

std::string AlbumWalk::name_of(const PbItem *item) const {
  const std::string root = dir_.path("pictures") + "/";
  const std::string path = item != nullptr && item->filename != nullptr ? item->filename : "";
  return path.starts_with(root) ? path.substr(root.size()) : path;
}

void AlbumWalk::leave() {
  if (!walking_) return;
  walking_ = false;
  unfollow();
  thumbnail_manager_remove_listener(thumbnail_listener_);
  gtk_widget_destroy(window_.get());
  view_.reset();
  window_.reset();
  pb_app_common_finalize();
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

void AlbumWalk::note_scan(guint changes, gpointer self) {
  if ((changes & MEDIA_INDEX_SCAN_FINISHED) != 0) static_cast<AlbumWalk *>(self)->scanned_ = true;
}

/// As the application does when thumbnails have come.
void AlbumWalk::note_thumbnails(gpointer self) {
  pb_app_common_resync_current_icons();
  phone_icon_view_invalidate_cells(PHONE_ICON_VIEW(static_cast<AlbumWalk *>(self)->view_.get()));
}

void AlbumWalk::note_initialize(PbItemList *, gint row, AlbumWalk *self) {
  self->signals_.push_back({CacheSignal::Kind::kInitialize, 0, 0, row});
}

void AlbumWalk::note_fill(PbItemList *, gint first, gint last, gint row, AlbumWalk *self) {
  self->signals_.push_back({CacheSignal::Kind::kFill, first, last, row});
}

void AlbumWalk::note_finalize(PbItemList *, gint row, AlbumWalk *self) {
  self->signals_.push_back({CacheSignal::Kind::kFinalize, 0, 0, row});
}

void AlbumWalk::unfollow() {
  if (followed_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(followed_, this);
  followed_ = nullptr;
}

}  // namespace test

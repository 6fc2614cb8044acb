/// Two panes in a window with the phone's own views, over a service of any number of files.
#include <icon-view.h>
#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-item-renderer.h>
#include <pb-split-list.h>
#include <resource-manager.h>
#include <thumbnail-manager.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

namespace {

constexpr gint kAlbums = 4;
constexpr gint kFilesOfAlbum = 60;
constexpr support::Rgba kGrey{225, 225, 225};  // of the placeholder
gint g_files = 0;                              // of the whole library

template <typename Record>
Record *make_record(const Record &record) {
  auto *made = static_cast<Record *>(std::malloc(sizeof(Record)));
  *made = record;
  return made;
}

/// Every third file is a video. The path tells the colour of the thumbnail.
MbItem make_file(gint id, gint row) {
  MbItem file{};
  file.id = id;
  g_snprintf(file.path, sizeof file.path, "/pictures/%d.jpg", id);
  g_snprintf(file.thumbnail_path, sizeof file.thumbnail_path, "/thumbnails/%d", id);
  file.media_type = id % 3 == 0 ? 2 : 1;
  file.db_idx = row;
  file.unmarked = 1;
  return file;
}

}  // namespace

// What the service and the stores answer here, in place of the host's.
extern "C" {

gboolean fm_svc_mb_get_all_albums_ex(gint, guint32, GList **albums, gint *) {
  GList *made = nullptr;
  for (gint id = kAlbums; id > 0; --id) {
    FmAlbumRecord album{};
    album.album_id = id;
    g_snprintf(album.name, sizeof album.name, "Album %d", id);
    g_snprintf(album.cover_path, sizeof album.cover_path, "/thumbnails/%d", id * kFilesOfAlbum);
    made = g_list_prepend(made, make_record(album));
  }
  *albums = made;
  return TRUE;
}

gboolean fm_svc_mb_album_get_files_count(gint, gint *count, gint *) {
  *count = kFilesOfAlbum;
  return TRUE;
}

gboolean fm_svc_mb_album_get_last_added_file(gint, FmVeskFileRecord *, gint *) { return FALSE; }

gboolean fm_svc_mb_album_get_all_files_ex(gint album, gint, gint filter, FmFileList *list, gint *) {
  *list = {};
  list->ids = static_cast<gint64 *>(std::calloc(kFilesOfAlbum, sizeof *list->ids));
  list->types = static_cast<gint32 *>(std::calloc(kFilesOfAlbum, sizeof *list->types));
  for (gint i = 0; i < kFilesOfAlbum; ++i) {
    const gint id = album * kFilesOfAlbum + i;
    const gint kind = id % 3 == 0 ? 2 : 1;
    if ((filter & 3) % 3 == 0 || (filter & 3) == kind) list->ids[list->count++] = id;
  }
  return TRUE;
}

gboolean fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record, gint *) {
  *record = {};
  record->item = make_file(id, 0);
  return TRUE;
}

gboolean fm_svc_mb_get_all_sub_file_count(const gchar *, gint, gint64, gint *count, gint *) {
  *count = g_files;
  return TRUE;
}

gboolean fm_svc_mb_get_list(const gchar *, gint, gint, gint64, gint, GList **list, gint first,
                            gint last, gint *) {
  GList *made = nullptr;
  for (gint row = std::min(last, g_files - 1); row >= first; --row) {
    made = g_list_prepend(made, make_record(make_file(row + 1, row)));
  }
  *list = made;
  return TRUE;
}

GdkPixbuf *fm_svc_thumb_create_pixbuf_by_path(const gchar *path, gint, gint) {
  const auto id = static_cast<unsigned>(std::atoi(path + sizeof "/thumbnails"));
  const auto red = static_cast<std::uint8_t>(60 + id * 37 % 190);
  const auto green = static_cast<std::uint8_t>(60 + id * 73 % 190);
  return support::solid_pixbuf(148, id % 2 == 0 ? 148 : 100, {red, green, 120}).release();
}

gint rsrc_open_rbm(const gchar *) { return 1; }
void rsrc_close_rbm(gint) {}
GdkPixbuf *rsrc_get_image(gint, gint) { return support::solid_pixbuf(148, 148, kGrey).release(); }

}  // extern "C"

namespace {

using ListPtr = pb::Ref<PbSplitList>;

/// Unlike a clock it does not count what else the machine does.
double own_time_ms() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

class SplitPanes : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    pb_app_common_initialize();
    window_ = gtk_offscreen_window_new();
    gtk_widget_set_size_request(window_, 480, 800);
    paned_ = gtk_hpaned_new();
    left_ = add_view(true);
    right_ = add_view(false);
    gtk_container_add(GTK_CONTAINER(window_), paned_);
    gtk_paned_set_position(GTK_PANED(paned_), 160);
    gtk_widget_show_all(window_);
    settle();
  }

  void TearDown() override {
    if (window_ != nullptr) gtk_widget_destroy(window_);
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    albums_.reset();
    if (unselected_ != nullptr) pb_split_clear_record_list(files_.get());
    files_.reset();
    for (GList *records : {unselected_, selected_, filtered_}) g_list_free_full(records, std::free);
    pb_app_common_finalize();
  }

  void show_albums() {
    pb_split_set_view_type(PB_SPLIT_VIEW_ALBUMS);
    follow(left_);
    albums_ = ListPtr::adopt(pb_split_get_list(nullptr));
    phone_icon_view_set_model(PHONE_ICON_VIEW(left_), GTK_TREE_MODEL(albums_.get()));
    pb_split_set_view_type(PB_SPLIT_VIEW_FILES);
    settle();
  }

  /// What a tap on an album does; the files that were shown before are let go.
  void choose_album(gint row) {
    const PbItem *album = pb_split_list_get_nth_item(albums_.get(), row);
    ASSERT_NE(album, nullptr);
    follow(right_);
    show_files(ListPtr::adopt(pb_split_get_album_contents_list(album->album_id)));
  }

  void show_library(gint files) {
    g_files = files;
    follow(right_);
    show_files(ListPtr::adopt(pb_split_get_list(nullptr)));
  }

  void begin_selection() { unselected_ = pb_split_list_get_records(files_.get()); }
  void select(gint row) {
    pb_split_list_select_item(files_.get(), &unselected_, &selected_, static_cast<guint>(row));
    pb_split_list_refresh_new_item_when_remove(files_.get(), row);
  }
  gint unselect(gint id) {
    const gint row =
        pb_split_list_unselect_item(files_.get(), &unselected_, &selected_, &filtered_, id);
    if (row >= 0) pb_split_list_refresh_new_item_when_remove(files_.get(), row);
    return row;
  }

  [[nodiscard]] gint rows() const {
    return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(files_.get()), nullptr);
  }
  [[nodiscard]] gint id_of(gint row) const {
    const PbItem *item = pb_split_list_get_nth_item(files_.get(), row);
    return item == nullptr ? -1 : item->id;
  }
  [[nodiscard]] GtkAdjustment *adjustment() const { return adjustment_of(right_); }

  /// Runs the main loop until nothing is left to do; gives the longest turn in milliseconds of
  /// this thread's own time.
  static double settle() {
    double longest = 0;
    for (int quiet = 0; quiet < 3;) {
      const double begin = own_time_ms();
      const bool busy = g_main_context_iteration(nullptr, FALSE) != FALSE;
      longest = std::max(longest, own_time_ms() - begin);
      quiet = busy ? 0 : quiet + 1;
      if (!busy) g_usleep(2000);
    }
    return longest;
  }

  /// Whether every file on screen shows its thumbnail and not the placeholder.
  [[nodiscard]] bool thumbnails_are_seen() const {
    gint first = 0;
    gint last = -1;
    if (!phone_icon_view_get_visible_rows(PHONE_ICON_VIEW(right_), &first, &last)) return false;
    for (gint row = first; row <= last; ++row) {
      GtkTreeIter iter;
      gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(files_.get()), &iter, nullptr, row);
      GdkPixbuf *read = nullptr;
      gtk_tree_model_get(GTK_TREE_MODEL(files_.get()), &iter, 3, &read, -1);
      const auto icon = pb::Ref<GdkPixbuf>::adopt(read);
      if (!icon || support::pixel_at(icon.get(), 5, 5) == kGrey) return false;
    }
    return last >= first;
  }

  [[nodiscard]] gint visible_rows() const {
    gint first = 0;
    gint last = -1;
    phone_icon_view_get_visible_rows(PHONE_ICON_VIEW(right_), &first, &last);
    return last - first + 1;
  }

  /// Writes what is seen when somebody wants to look at it.
  void photograph(const char *name) const {
    const gchar *folder = g_getenv("PB_TEST_PICTURES");
    if (folder == nullptr) return;
    const auto shot =
        pb::Ref<GdkPixbuf>::adopt(gtk_offscreen_window_get_pixbuf(GTK_OFFSCREEN_WINDOW(window_)));
    support::save_pixbuf(shot.get(), std::string(folder) + "/" + name + ".png");
  }

  ListPtr albums_;
  ListPtr files_;
  GtkWidget *window_ = nullptr;
  GtkWidget *paned_ = nullptr;
  GList *selected_ = nullptr;
  GList *filtered_ = nullptr;

 private:
  static GtkAdjustment *adjustment_of(GtkWidget *view) {
    return gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(gtk_widget_get_parent(view)));
  }

  GtkWidget *add_view(bool albums) {
    GtkWidget *view = phone_icon_view_new();
    auto *icons = PHONE_ICON_VIEW(view);
    if (albums) {
      phone_icon_view_set_cell_size(icons, 148, 172);
      phone_icon_view_set_cell(icons, pb_item_renderer_new(), "item", 0);
    } else {
      phone_icon_view_set_cell_size(icons, 64, 64);
      phone_icon_view_set_cell(icons, gtk_cell_renderer_pixbuf_new(), "pixbuf", 3);
    }
    GtkWidget *scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER,
                                   GTK_POLICY_NEVER);
    gtk_container_add(GTK_CONTAINER(scroller), view);
    if (albums) {
      gtk_paned_pack1(GTK_PANED(paned_), scroller, FALSE, TRUE);
    } else {
      gtk_paned_pack2(GTK_PANED(paned_), scroller, TRUE, TRUE);
    }
    return view;
  }

  void follow(GtkWidget *view) const {
    pb_split_list_set_adjustment_widget(view, adjustment_of(view), paned_);
  }

  void show_files(ListPtr list) {
    if (unselected_ != nullptr) pb_split_clear_record_list(files_.get());
    g_list_free_full(std::exchange(unselected_, nullptr), std::free);
    files_ = std::move(list);
    phone_icon_view_set_model(PHONE_ICON_VIEW(right_), GTK_TREE_MODEL(files_.get()));
  }

  GtkWidget *left_ = nullptr;
  GtkWidget *right_ = nullptr;
  GList *unselected_ = nullptr;
};

TEST_F(SplitPanes, ShowAlbumsAndTheFilesOfOne) {
  show_albums();

  choose_album(1);
  settle();

  photograph("1-album");
  EXPECT_EQ(pb_split_list_get_length(albums_.get()), kAlbums);
  EXPECT_EQ(rows(), kFilesOfAlbum);
  EXPECT_EQ(id_of(0), 2 * kFilesOfAlbum);
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, LoadWhatADividerUncovers) {
  show_albums();
  show_library(600);
  settle();
  const gint before = visible_rows();

  gtk_paned_set_position(GTK_PANED(paned_), 20);
  settle();

  photograph("2-divider");
  EXPECT_GT(visible_rows(), before);
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, LoadWhatIsFarDownInANarrowPane) {
  show_library(3000);
  gtk_paned_set_position(GTK_PANED(paned_), 340);
  settle();

  gtk_adjustment_set_value(adjustment(), gtk_adjustment_get_upper(adjustment()) / 2);
  settle();

  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, LoadWhatIsFarDownInAWidePane) {
  show_library(3000);
  gtk_paned_set_position(GTK_PANED(paned_), 20);
  settle();

  gtk_adjustment_set_value(adjustment(), gtk_adjustment_get_upper(adjustment()) / 2);
  settle();

  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, KeepTheThumbnailsOfALayoutThatChangesFarDown) {
  show_library(3000);
  settle();
  gtk_adjustment_set_value(adjustment(), 9000);
  settle();

  gtk_paned_set_position(GTK_PANED(paned_), 20);
  settle();

  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, LoadWhatIsScrolledTo) {
  show_library(600);
  settle();

  gtk_adjustment_set_value(adjustment(), gtk_adjustment_get_upper(adjustment()) -
                                             gtk_adjustment_get_page_size(adjustment()));
  settle();

  photograph("3-end");
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, SelectFilesAcrossAlbums) {
  show_albums();
  choose_album(0);
  begin_selection();
  select(3);
  select(10);
  choose_album(2);
  begin_selection();

  select(0);
  settle();

  photograph("4-selected");
  EXPECT_EQ(g_list_length(selected_), 3U);
  EXPECT_EQ(rows(), kFilesOfAlbum - 1);
  EXPECT_EQ(pb_split_list_get_length(files_.get()), kFilesOfAlbum - 1);
  EXPECT_EQ(id_of(0), 3 * kFilesOfAlbum + 1);
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, PutAFileBackInItsPlace) {
  show_albums();
  choose_album(0);
  begin_selection();
  select(3);

  EXPECT_EQ(unselect(kFilesOfAlbum + 3), 3);
  settle();

  EXPECT_EQ(rows(), kFilesOfAlbum);
  EXPECT_EQ(id_of(3), kFilesOfAlbum + 3);
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, ShowOneKindOfFiles) {
  show_albums();
  pb_split_set_filter_type(PB_SPLIT_FILTER_VIDEOS);

  choose_album(0);
  settle();

  photograph("5-videos");
  EXPECT_EQ(rows(), kFilesOfAlbum / 3);
  EXPECT_TRUE(thumbnails_are_seen());
}

TEST_F(SplitPanes, HoldAsideWhatTheFilterHides) {
  show_albums();
  choose_album(0);
  begin_selection();
  select(0);
  pb_split_set_filter_type(PB_SPLIT_FILTER_PICTURES);

  EXPECT_EQ(unselect(kFilesOfAlbum), -2);

  EXPECT_EQ(g_list_length(filtered_), 1U);
  EXPECT_EQ(rows(), kFilesOfAlbum - 1);
}

/// PB_TEST_FILES=100000 shows what a long list costs. The longest calls and turns of the main loop
/// are printed, not bounded: the machine has other work.
TEST_F(SplitPanes, BearManyFiles) {
  const gchar *wanted = g_getenv("PB_TEST_FILES");
  const gint many = wanted == nullptr ? 1000 : std::max(std::atoi(wanted), 1000);
  show_albums();
  const double opened = own_time_ms();

  show_library(many);
  const double opening = own_time_ms() - opened;
  const gint first_rows = rows();
  const double filling = settle();
  const double filled = own_time_ms() - opened;

  EXPECT_LE(first_rows, 100);
  EXPECT_EQ(rows(), many);
  double scrolling = 0;
  const double end =
      gtk_adjustment_get_upper(adjustment()) - gtk_adjustment_get_page_size(adjustment());
  for (int step = 0; step <= 40; ++step) {
    gtk_adjustment_set_value(adjustment(), end * step / 40);
    scrolling = std::max(scrolling, settle());
  }
  EXPECT_TRUE(thumbnails_are_seen());
  photograph("6-many");

  begin_selection();
  double selecting = 0;
  double turns = 0;
  for (const gint row : {0, many / 2, many - 3, 3, many / 4}) {
    const double begin = own_time_ms();
    select(row);
    selecting = std::max(selecting, own_time_ms() - begin);
    turns = std::max(turns, settle());
  }
  double unselecting = 0;
  while (selected_ != nullptr) {
    const gint id = static_cast<const MbItem *>(selected_->data)->id;
    const double begin = own_time_ms();
    EXPECT_GE(unselect(id), 0);
    unselecting = std::max(unselecting, own_time_ms() - begin);
    turns = std::max(turns, settle());
  }
  EXPECT_EQ(rows(), many);
  EXPECT_EQ(id_of(many - 1), many);
  g_print(
      "%d files: open %.1f ms, all rows after %.0f ms; longest turn: filling %.1f, scrolling %.1f, "
      "after a move %.1f ms; longest call: select %.2f, unselect %.2f ms\n",
      many, opening, filled, filling, scrolling, turns, selecting, unselecting);
}

}  // namespace

/// Somebody who looks at albums: folders of pictures, their index, the browsing state and a view of
/// the phone's size, all of them real.
#pragma once

#include <gtk/gtk.h>
#include <icon-view.h>
#include <pb-app-common.h>
#include <pb-item-list.h>
#include <pb-item.h>

#include <string>
#include <utility>
#include <vector>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "support/main-loop.hpp"
#include "support/temp-dir.hpp"

namespace test {

/// Counts the instances of a type that live, from now on.
class LiveInstances {
 public:
  explicit LiveInstances(GType type);
  ~LiveInstances();
  LiveInstances(const LiveInstances &) = delete;
  LiveInstances &operator=(const LiveInstances &) = delete;

  [[nodiscard]] int count() const;

 private:
  GType type_;
};

/// A signal of a list's cache.
struct CacheSignal {
  enum class Kind { kInitialize, kFill, kFinalize };
  Kind kind;
  gint first = 0;  ///< first and last row that are wanted, of a fill
  gint last = 0;
  gint row = 0;
};

class AlbumWalk : public support::DisplayTest {
 protected:
  static constexpr int kTripPictures = 60;
  static constexpr int kWalkPictures = 7;

  void SetUp() override;
  void TearDown() override;

  /// Makes a category current, as a tap on it does.
  static void open(gint category);
  /// Opens the album of a name from the list of albums.
  void open_album(const std::string &name);
  /// Shows the current list and follows the signals of its cache.
  void show_current_list();
  void scroll_to_row(gint row);
  /// Runs the main loop until every row on screen has its thumbnail.
  bool eventually_has_thumbnails();

  [[nodiscard]] std::vector<gint> rows_on_screen() const;
  /// Name of the file of a row, without its folder.
  [[nodiscard]] std::string name_of(const PbItem *item) const;
  std::vector<CacheSignal> take_signals() { return std::exchange(signals_, {}); }
  /// Ends what the user sees and does.
  void leave();

  support::TempDir dir_;
  pb::Ref<GtkWidget> window_;
  pb::Ref<GtkWidget> view_;

 private:
  void add_album(const std::string &name, int pictures, gint64 date);
  void add_broken_picture();
  void start_index();
  void make_window();
  static void note_scan(guint changes, gpointer self);
  static void note_thumbnails(gpointer self);
  static void note_initialize(PbItemList *list, gint row, AlbumWalk *self);
  static void note_fill(PbItemList *list, gint first, gint last, gint row, AlbumWalk *self);
  static void note_finalize(PbItemList *list, gint row, AlbumWalk *self);
  void unfollow();

  GtkAdjustment *adjustment();

  std::vector<CacheSignal> signals_;
  PbItemList *followed_ = nullptr;  // as long as the view shows it
  guint scan_listener_ = 0;
  guint thumbnail_listener_ = 0;
  bool scanned_ = false;
  bool walking_ = false;
};

}  // namespace test

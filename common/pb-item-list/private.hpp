/// What the files of the item list share: its private data and the steps that more than one entry
/// point takes.
#pragma once

#include <gtk/gtk.h>
#include <pb-debug.h>
#include <pb-item-list.h>
#include <glib-ptr.hpp>

#include <optional>

#include "records.hpp"

/// Writes a line for the entry point that a helper works for. The line carries the name of the
/// entry point, because the same step serves several of them.
#define LOG_FOR(entry, level, format, ...)                                \
  _debug_message(__LINE__, __FILE__, PB_LOG_MODULE, level, "[%s]" format, \
                 entry __VA_OPT__(, ) __VA_ARGS__)

namespace pb::item_list {

inline constexpr gint kPage = 100;          // records a fetch asks for
inline constexpr gint kCacheSize = 100;     // rows that the store keeps filled
inline constexpr gint kBatch = 15;          // rows of half a refresh, and of a screen
inline constexpr gint kRefreshCount = 30;   // rows of a refresh
inline constexpr gint kNoSource = -1;       // no idle source is pending
inline constexpr gint kPageSort = 3;        // the order of paged and shared files
inline constexpr gint kAlbumSort = 2;       // the order of albums
inline constexpr gint kPlaceholderId = 67;  // bitmap of a row without a thumbnail

/// Sentinels of the filter settings.
inline constexpr gint64 kDefaultFilter = -1;
inline constexpr gint64 kCameraFilter = -2;

/// Categories. Every number that is not named here is a list of all files as well.
inline constexpr gint kAlbums = 0;
inline constexpr gint kAllFiles = 2;
inline constexpr gint kAlbumFiles = 3;
inline constexpr gint kWebOnlyFiles = 4;

/// A borrowed object that may outlive or die before the borrower: NULL once it is destroyed.
template <typename T>
class Weak {
 public:
  Weak() = default;
  Weak(const Weak &) = delete;
  Weak &operator=(const Weak &) = delete;
  ~Weak() { set(nullptr); }

  [[nodiscard]] T *get() const { return static_cast<T *>(object_); }
  void set(T *object) {
    if (object_ != nullptr) g_object_remove_weak_pointer(G_OBJECT(object_), &object_);
    object_ = object;
    if (object_ != nullptr) g_object_add_weak_pointer(G_OBJECT(object_), &object_);
  }

 private:
  gpointer object_ = nullptr;
};

}  // namespace pb::item_list

/// Constructed and destroyed by hand with the instance.
struct PbItemListPrivate {
  gint row_count = 0;               // rows presented; not the store's own number
  gboolean database_connected = 0;  // by "initialize-cache"
  pb::item_list::RecordList records;
  pb::item_list::FileList files;
  pb::item_list::RecordList page_records;
  gint sorted = 0;
  gint first_fill_busy = 0;
  gint insertion_busy = 0;
  gint album_id = 0;
  gint album_web_id = 0;  // low word
  gint page_start = 0;    // row of the first held record
  gint page_end = 0;      // row of the last held record
  pb::item_list::Weak<GtkIconView> icon_view;
  pb::item_list::Weak<GtkAdjustment> vadjustment;
  gdouble row_height = 0;  // pixels, spacing included
  pb::Ref<GdkPixbuf> default_pixbuf;
  gint batch_size = pb::item_list::kBatch;
  gint columns = 3;
  gint idle_source = pb::item_list::kNoSource;
  gint scroll_direction = 1;  // 1 down or not at all, 0 up
  gint view_start = 0;
  gint refresh_progress = 0;
  gint refresh_remaining = pb::item_list::kRefreshCount;
  gint refresh_count = pb::item_list::kRefreshCount;
  GList *refresh_order = nullptr;  // of pb_random_list_init(), freed when the list is finalised
  gint refresh_running = 0;
  gint loads_thumbnails = 1;
  gint64 filter = pb::item_list::kDefaultFilter;
};

/// The item of a row for callers that must know who owns it: always borrowed from the row. Makes
/// the item from the held records when the row has none. NULL, and not a word, for a row without
/// an item and for a number outside the store.
PbItem *__pb_item_list_peek_item(PbItemList *list, gint index);

namespace pb::item_list {

PbItemListPrivate &private_of(PbItemList *list);

/// @name Items and rows
/// @{

/// Makes the item of a file of the service.
[[nodiscard]] Ref<PbItem> make_item(const MbItem &record);
/// As make_item(), with the favourite and the mark of the record.
[[nodiscard]] Ref<PbItem> make_marked_item(const MbItem &record);
/// Takes the favourite and the mark from a record.
void set_marks(PbItem *item, const MbItem &record);
/// Makes the item of a file whose web id is known.
[[nodiscard]] Ref<PbItem> make_file_item(const MbItem &record, gint nfid);
/// Makes the item of a file that only the web-album server has.
[[nodiscard]] Ref<PbItem> make_web_item(const FmVeskFileRecord &record);
/// Makes the item of a file that the server has, from the local copy where there is one. None
/// when the service cannot read it.
[[nodiscard]] Ref<PbItem> make_server_item(const char *entry, gint64 id);
/// Makes the item of an album. The cover path of a local album becomes that of its last file.
[[nodiscard]] Ref<PbItem> make_album(const char *entry, FmAlbumRecord *album);

/// The held record of a row; NULL when it is not held.
[[nodiscard]] const MbItem *held_record(PbItemList *list, gint row);
/// Sets all columns of an item row. A row that the store does not have is left alone.
void set_row(PbItemList *list, gint row, PbItem *item, GdkPixbuf *pixbuf);
/// @}

/// @name Questions to the service
/// @{

/// -1 is 3, -2 is 0x13, any other filter is itself.
[[nodiscard]] gint64 resolve_filter(gint64 filter);
/// -1 is 3, any other filter is itself.
[[nodiscard]] gint64 resolve_default_filter(gint64 filter);
[[nodiscard]] gint count_files(gint64 filter);
[[nodiscard]] RecordList fetch_files(gint sort, gint64 filter, gint first, gint last);
/// No web albums while nobody is signed in. FALSE when the service fails.
[[nodiscard]] bool fetch_albums(RecordList &albums);
/// Order and filter of the files of an album, from the settings.
struct AlbumSettings {
  gint sort = 0;
  gint filter = 0;
};
[[nodiscard]] AlbumSettings read_album_settings();
/// FALSE, with an empty list, when the service fails.
[[nodiscard]] bool fetch_album_files(gint album_id, const AlbumSettings &settings, FileList &files);
/// FALSE, with an empty list, when the service fails.
[[nodiscard]] bool fetch_web_only_files(FileList &files, gint &error);
/// Low word of the id of the album's web album; 0 when the album cannot be read.
[[nodiscard]] gint read_album_web_id(gint album_id);
/// @}

/// @name Fetches that log for their entry point
/// @{

/// Lists the albums and logs. FALSE when the service fails or has none.
[[nodiscard]] bool load_albums(const char *entry, RecordList &albums);
/// Lists the stored album's files and logs. FALSE when the service fails or has none.
[[nodiscard]] bool load_album_files(const char *entry, gint album_id, FileList &files);
/// Lists the files that only the server has and logs. FALSE when the service fails or has none.
[[nodiscard]] bool load_web_only_files(const char *entry, FileList &files);
/// @}

/// @name Rows of one kind, for the handlers of "fill-cache"
/// @{

enum class Thumbnail { kLoad, kOnlyCached };

void fill_album_row(const char *entry, PbItemList *list, gint row);
void fill_album_file_row(const char *entry, PbItemList *list, gint row, Thumbnail thumbnail);
void fill_web_only_row(const char *entry, PbItemList *list, gint row);
void fill_record_row(const char *entry, PbItemList *list, gint row);
/// @}

/// @name The held range of the paged list
/// @{

/// What the store asks for in one "fill-cache".
struct RowRequest {
  gint first;
  gint last;
  gint row;
};

/// Finds the record of a row of the paged list, fetching and moving the held range as needed. A
/// row that is asked for alone and is not held comes into single and changes nothing. NULL when
/// there is no record, nothing at all when the fetched rows do not join the held ones.
[[nodiscard]] std::optional<const MbItem *> find_paged_record(const char *entry, PbItemList *list,
                                                              const RowRequest &request,
                                                              RecordList &single);
/// Holds the first page of the list's filter in place of what was held.
void hold_first_page(const char *entry, PbItemList *list);
/// @}

/// @name What can be shared, for the list and for rows whose records are missing
/// @{

/// Each returns FALSE when the list has to stay empty.
[[nodiscard]] bool select_shared_albums(const char *entry, RecordList &albums);
[[nodiscard]] bool select_shared_records(const char *entry, PbItemList *list, RecordList &records);

/// The filter for files of the whole library, fixed or from the settings.
[[nodiscard]] gint64 shared_filter(const char *entry, gint category, gint sorted);

enum class FileSelection { kSelected, kNothing, kNoMemory };
[[nodiscard]] FileSelection select_shared_files(const char *entry, gint album_id, FileList &files);
/// @}

/// @name Store signals and the pending refresh
/// @{

/// Connects a handler of "fill-cache" and the two cache handlers, and gives the store its sizes.
void connect_store(PbItemList *list, GCallback fill, gint total);
void disconnect_fill_handlers(PbItemList *list, GCallback fill);
void remove_idle_source(PbItemListPrivate &priv);
/// Stops following the adjustment and forgets it.
void release_adjustment(PbItemList *list);
/// The first row of the line of icons that has a height; lines are cut toward zero.
[[nodiscard]] gint row_at_height(gdouble y, gdouble row_height, gint columns);
/// First visible row by the adjustment, the view's top margin taken off; 0 without a view.
[[nodiscard]] gint first_visible_row(GtkIconView *view, GtkAdjustment *adjustment,
                                     gdouble row_height, gint columns);
[[nodiscard]] gint first_visible_row(const PbItemListPrivate &priv);
/// @}

}  // namespace pb::item_list

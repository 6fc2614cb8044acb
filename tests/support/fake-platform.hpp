/// The phone as a recording fake, for programs linked with fake-platform. Every seam function
/// writes one line into a journal and then does what the test asked for last. Everything is back
/// at its defaults at the start of every test.
///
///     fake::platform().pm_control = [](int, int) { return -1; };
///     ...
///     EXPECT_THAT(fake::platform().calls, ElementsAre("pm_control(4, 0)"));
///
/// The answers have the names and the arguments of the seam functions. tests/fakes/README.md says
/// what the defaults are.
#pragma once

#include <application-manager.h>
#include <event-system.h>
#include <file-explorer.h>
#include <gconf/gconf-value.h>
#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <icon-view.h>
#include <image-headers.h>
#include <main-window.h>
#include <media-attributes.h>
#include <media-browser.h>
#include <media-mirror.h>
#include <online-content.h>
#include <online-core.h>
#include <online-download.h>
#include <online-share.h>
#include <phone-settings.h>
#include <phone-status.h>
#include <power-management.h>
#include <resource-manager.h>
#include <style-dialog.h>
#include <telephony.h>
#include <thumbnail-manager.h>
#include <virtual-list-store.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/fake-clock.hpp"
#include "support/glib-test.hpp"

namespace fake {

/// One line of the debug log.
struct LogLine {
  guint32 level;
  guint32 module;
  std::string file;  ///< the caller's module, as "util/pb-util"
  int line;
  std::string text;

  bool operator==(const LogLine &) const = default;
};
void PrintTo(const LogLine &line, std::ostream *out);

/// A download that was started and not given up.
struct Download {
  std::string url;
  int request_id;
  vesk_download_cb callback;
  gpointer user_data;
  std::string path;
};
void PrintTo(const Download &download, std::ostream *out);

/// What the phone answers, and what it was asked.
struct Platform {
  /// Every call, in order over all services: "pm_control(4, 0)". Texts stand in quotes, widgets
  /// and other objects with their name or type, records as {1, "text"}; results that go through
  /// pointers, user data and callbacks are left out. Log lines and the reading and filling of
  /// rows are not in here.
  std::vector<std::string> calls;
  /// Every line of the debug log, in order.
  std::vector<LogLine> log;

  // debug-log.h: the result of each line; the default is the length of its text.
  std::function<int(const LogLine &)> _debug_message;

  // main-window.h. Windows and forms are simple real widgets.
  std::function<gint(GtkWindow *)> gtk_window_get_rotate;

  // icon-view.h
  std::function<gint(GtkIconView *)> gtk_icon_view_get_icon_height;
  std::function<gint(GtkIconView *)> gtk_icon_view_get_top_margin;

  // style-dialog.h. Dialogs are simple real widgets; gtk_dialog_run() is redirected to here and
  // does not run a loop.
  std::function<GtkWidget *(gint style, GtkWindow *parent, gint flags)> gtk_style_dialog_new;
  std::function<gint(GtkDialog *)> gtk_dialog_run;

  // file-explorer.h
  std::function<gboolean(gint *handle)> fexplorer_initialize;
  std::function<gboolean()> fexplorer_finalize;
  std::function<gboolean(const gchar *rel_path, gint storage, gchar *full_path)>
      fexplorer_get_full_path;
  std::function<gboolean(const gchar *path, gint *orientation)> fexplorer_get_exif_orientation;
  std::function<gboolean(const gchar *path, gint open)> fexplorer_set_file_open_status;
  std::function<gint(const gchar *path)> fexplorer_delete_file_only;
  std::function<gint(const gchar *path)> fexplorer_archive_file_only;
  std::function<gboolean(const gchar *path, gboolean *locked, gint *error)>
      fexplorer_get_file_lock_status;
  std::function<gboolean(gboolean *supported)> fexplorer_is_mmc_supported;
  std::function<gboolean(gint id)> fexplorer_is_mmc_database_index;
  std::function<gboolean(gint storage, gint64 *free_kb, gint *error)>
      fexplorer_get_available_memory_space;
  /// Connections that were initialised and not finalised.
  int fexplorer_connections = 0;

  // media-browser.h
  std::function<gboolean(gint *count, gint web, gint *error)> fm_svc_mb_get_albums_count;
  std::function<gboolean(gint sort, guint32 flags, GList **albums, gint *error)>
      fm_svc_mb_get_all_albums_ex;
  std::function<gboolean(gint album_id, gint sort, gint filter, FmFileList *list, gint *error)>
      fm_svc_mb_album_get_all_files_ex;
  std::function<gboolean(gint album_id, FmFileList *list, gint *error)>
      fm_svc_mb_album_get_all_files;
  std::function<gboolean(gint album_id, gint *count, gint *error)> fm_svc_mb_album_get_files_count;
  std::function<gboolean(gint album_id, FmVeskFileRecord *record, gint *error)>
      fm_svc_mb_album_get_last_added_file;
  std::function<gboolean(gint64 naid, const gchar *path, gint *error)>
      fm_svc_mb_album_set_thumb_path_by_naid;
  std::function<gboolean(gint album_id, FmAlbumRecord *record, gint *error)> fm_svc_mb_get_album;
  std::function<gboolean(gint64 naid, gint *album_id, gint *error)> fm_svc_mb_get_album_id_by_naid;
  std::function<gboolean(FmAlbumRecord *record, gint *error)> fm_svc_mb_get_drovo_album;
  std::function<gboolean(const gchar *path, gint depth, gint64 filter, gint *count, gint *error)>
      fm_svc_mb_get_all_sub_file_count;
  std::function<gboolean(const gchar *path, gint depth, gint sort, gint64 filter, gint reserved,
                         GList **list, gint first, gint last, gint *error)>
      fm_svc_mb_get_list;
  std::function<gboolean(gint id, FmMediaRecord *record, gint *error)>
      fm_svc_mb_get_record_by_index;
  std::function<gboolean(gint id, FmFileRecord *record, gint *error)>
      fm_svc_mb_get_item_by_database_index;

  // media-mirror.h
  std::function<gint(vesk_noti_cb callback, gint *error)> fm_svc_vesk_registration;
  std::function<gint(vesk_noti_cb callback, gint *error)> fm_svc_vesk_unregistration_callback;
  std::function<gboolean(gint64 nfid, FmVeskFileRecord *record, gint *error)>
      fm_svc_vesk_get_vesk_file;
  std::function<gboolean(gint64 album, FmFileList *list, gint *error)>
      fm_svc_vesk_get_server_only_vesk_files_without_delete;
  std::function<gboolean(gint folder_id, FmAlbumRecord *folder, gint *error)>
      fm_svc_vesk_get_folder;
  std::function<gboolean(const FmAlbumRecord *folder, gint *error)> fm_svc_vesk_update_folder;
  std::function<gboolean(gint fid, gint64 nfid, gint *error)> fm_svc_vesk_update_nfid_of_file;
  std::function<gboolean(gint64 naid, const gint64 *ids, gint count, gint *error)>
      fm_svc_vesk_sync_album_remove_vesk_files;

  // thumbnail-manager.h
  std::function<GdkPixbuf *(const gchar *path, gint width, gint height)>
      fm_svc_thumb_create_pixbuf_by_path;
  std::function<gint(gint kind, gint reserved, const gchar *path, gboolean is_mmc, gint media_type,
                     GdkPixbuf **pixbuf)>
      fm_svc_thumb_mgr_get_thumbnail;

  // online-core.h
  std::function<gint(guint32 handle)> vesk_svc_core_is_logout;
  std::function<gint(const gint *categories, gint count, vesk_noti_cb callback, gint *error,
                     guint32 *handle)>
      vesk_svc_core_app_registration;
  std::function<gint(guint32 handle, const gint *categories, gint count, vesk_noti_cb callback)>
      vesk_svc_core_deregister_noti_callback;
  std::function<gint(guint32 handle)> vesk_svc_core_deregister_app;
  std::function<gint(guint32 handle, gint what)> vesk_svc_core_synchronize_details;

  // online-content.h
  std::function<gint(guint32 handle, gint reserved1, gint reserved2, gint filter_count,
                     const VeskFilter *filters, gpointer user_data)>
      vesk_svc_content_album_get;
  std::function<gint(guint32 handle, gint count, const VeskContentRequest *request,
                     gpointer user_data)>
      vesk_svc_content_file_get;
  std::function<gint(guint32 handle, gint count, const VeskAlbum *albums, gpointer user_data)>
      vesk_svc_content_album_update;
  std::function<gint(guint32 handle, gint count, const VeskAlbum *albums, gpointer user_data)>
      vesk_svc_content_album_add;
  std::function<gint(guint32 handle, gint count, const gint64 *album_ids, gpointer user_data)>
      vesk_svc_content_album_remove;
  std::function<gint(guint32 handle, gint count, const gint64 *ids, gint64 album_id,
                     gpointer user_data)>
      vesk_svc_content_album_deletecontent;
  std::function<gint(guint32 handle, gint count, const gint64 *ids, gint64 album_id,
                     gpointer user_data)>
      vesk_svc_content_album_addcontent;
  std::function<gint(guint32 handle, gint count, const gint64 *fids, gint mode)>
      vesk_svc_content_file_upload;
  std::function<gint(guint32 handle, gint count, const gint64 *ids, const gchar *group,
                     gpointer user_data)>
      vesk_svc_content_album_publish;
  std::function<gint(guint32 handle, gint count, const gint64 *ids, const gchar *group,
                     gpointer user_data)>
      vesk_svc_content_file_publish;

  // online-share.h
  std::function<gint(guint32 handle, gint64 album_id, gpointer user_data)>
      vesk_svc_share_shared_with;
  std::function<gint(guint32 handle, gint64 album_id, gpointer user_data)>
      vesk_svc_share_deny_group_to_access_entities;
  std::function<gint(guint32 handle, const VeskSharedAlbumQuery *query, gpointer user_data)>
      vesk_svc_share_get_shared_album;
  std::function<gint(guint32 handle, gint n, const gchar *const *keys, const gchar *const *values,
                     gpointer user_data)>
      vesk_svc_share_get_shared_content;
  std::function<gint(guint32 handle, gint n_entities, const VeskCommentEntity *entities,
                     gint n_filters, const VeskFilter *filters)>
      vesk_svc_comment_get_comments;
  std::function<gint(guint32 handle, gint n, const VeskComment *comments)>
      vesk_svc_comment_add_comments;
  std::function<gint(guint32 handle, gint n, const gint64 *ids, gint64 owner_id)>
      vesk_svc_comment_remove_comments;

  // online-download.h
  std::function<gint(gint reserved)> vesk_svc_download_util_init;
  std::function<gint()> vesk_svc_download_util_generate_request_id;
  std::function<gint(const gchar *url, gint request_id, vesk_download_cb callback,
                     gpointer user_data, const gchar *path)>
      vesk_svc_download_util_download_url;
  std::function<gint(gint request_id)> vesk_svc_download_util_abort_request;
  /// What the default answers have started and nobody has given up.
  std::vector<Download> downloads;

  // resource-manager.h
  std::function<gint(const gchar *path)> rsrc_open_rbm;
  std::function<gint(const gchar *path)> rsrc_open_rsr;
  std::function<void(gint handle)> rsrc_close_rbm;
  std::function<void(gint handle)> rsrc_close_rsr;
  std::function<GdkPixbuf *(gint handle, gint id)> rsrc_get_image;
  std::function<const gchar *(gint handle, gint index)> rsrc_get_string;
  std::function<const gchar *(gint id)> rsrc_get_system_string;
  std::function<void()> rsrc_free_strings;

  // phone-status.h
  std::function<gboolean(const gchar *key, GConfValue *value)> phonestatus_get;
  std::function<gboolean(const gchar *key, GConfValue *value)> phonestatus_set;
  /// What the default answers read and write: integers by their keys.
  std::map<std::string, int> phone_status;

  // phone-settings.h, power-management.h, telephony.h, application-manager.h, event-system.h
  std::function<gint(gint id, gint *value)> settings_get_int;
  std::function<gint(gint state, gint flag)> pm_control;
  std::function<gint(gint level)> pm_DVFS_control;
  std::function<gint(gint *card_type)> TelTapiSimGetCardType;
  std::function<gint(gint *app_id)> app_get_current_id;
  std::function<gint(gint reserved, gint event_id, gpointer data)> EvtSysEventPublish;

  // media-attributes.h, image-headers.h
  std::function<gint(const gchar *path, MMAttrs **attrs)> MMFileGetContentAttr;
  std::function<gint(MMAttrs *attrs, gint attribute, gint *value)> MMAttrsGetInt;
  std::function<gint(MMAttrs *attrs, gint attribute, void **data)> MMAttrsGetData;
  std::function<gboolean(const gchar *path, gint *width, gint *height)> wink_parse_from_file;
  std::function<WinkExifInfo *(const gchar *path)> wink_create_jpeg_exifinfo_from_file;

  /// Callbacks for notifications that are registered by the default answers, in order.
  std::vector<vesk_noti_cb> notification_callbacks;
};

/// The phone of the test that runs.
Platform &platform();

/// The journal's lines of one function, as "pm_control(4, 0)", in order.
std::vector<std::string> calls_of(std::string_view function);
/// Hands the journal out and empties it: what was called until here is no concern of the test.
std::vector<std::string> take_calls();
/// Hands the log out and empties it.
std::vector<LogLine> take_log();

/// Matches a log line of a level with a text.
MATCHER_P2(Logged, level, text,
           std::string(negation ? "is not" : "is") + " a line of level " +
               testing::PrintToString(level) + " with the text " + testing::PrintToString(text)) {
  return arg.level == static_cast<guint32>(level) && arg.text == std::string(text);
}
/// Matches a log line of a level whose text has the other matcher's form.
MATCHER_P2(LoggedLike, level, matcher,
           std::string(negation ? "is not" : "is") + " a line of level " +
               testing::PrintToString(level) + " with a text that " +
               testing::DescribeMatcher<std::string>(matcher)) {
  return arg.level == static_cast<guint32>(level) &&
         testing::ExplainMatchResult(matcher, arg.text, result_listener);
}

/// Fills a text field of a record, cut to its size less the NUL.
template <std::size_t N>
void set_text(gchar (&field)[N], std::string_view text) {
  const std::size_t length = std::min(text.size(), N - 1);
  std::copy_n(text.data(), length, field);
  field[length] = '\0';
}

/// A list of copies of records, as the media-browser service makes it: links of a GList, elements
/// from malloc().
template <typename Record>
GList *record_list(const std::vector<Record> &records) {
  GList *list = nullptr;
  for (const Record &record : records) {
    auto *copy = static_cast<Record *>(std::malloc(sizeof(Record)));
    *copy = record;
    list = g_list_prepend(list, copy);
  }
  return g_list_reverse(list);
}

/// A file of a list with its id, path and nothing else.
MbItem make_item(int id, std::string_view path);
/// A local album with its id, name and nothing else.
FmAlbumRecord make_album(int album_id, std::string_view name, gint64 naid = 0);
/// Fills a file list from ids of FM_FILE_LOCAL, or with the types given, from malloc().
void fill_file_list(FmFileList *list, const std::vector<gint64> &ids,
                    const std::vector<gint32> &types = {});

/// Lets a media-browser service be as these files: the count, the pages of rows, the record of
/// an id and its file record answer accordingly, whatever the sort and the filter.
void serve_files(const std::vector<MbItem> &files);

/// The form that a fake main window shows, NULL when there is none.
GtkWidget *current_form(GtkMainWindow *window);
/// The title icon that a fake main window got last, NULL when there was none.
GdkPixbuf *title_icon(GtkMainWindow *window);
/// The number of the bitmap that the default rsrc_get_image() made this pixbuf for; -1 for any
/// other pixbuf.
int image_id(GdkPixbuf *pixbuf);
/// Attributes with a preview for MMFileGetContentAttr, freed by MMAttrsFree(); empty pixels for a
/// file without one.
MMAttrs *make_attributes(int width, int height, const std::vector<guchar> &pixels);
/// EXIF information for wink_create_jpeg_exifinfo_from_file, freed by wink_free_exifinfo().
WinkExifInfo *make_exif_info(int width, int height, int orientation);
/// Attributes and EXIF information that have been made and not freed.
int live_header_objects();

/// Ends a download that was started: writes the body to its path when the status is 200, and
/// calls its callback here and now. The download stays listed until it is given up.
void finish_download(int request_id, int http_status, std::string_view body = "",
                     const char *header = nullptr);
/// Hands a notification to every registered callback, here and now. Returns what the last one
/// returned, 0 when there is none.
gint notify(const char *message, const std::vector<VeskNotiField> &fields);

}  // namespace fake

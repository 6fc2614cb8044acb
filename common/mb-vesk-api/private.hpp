/// What the files of the web-album client share.
#pragma once

#include <glib.h>
#include <mb-util-content.h>
#include <online-records.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <glib-ptr.hpp>

/// A log line of the notification callback, from wherever its work is done.
#define VESK_NOTI_LOG(level, format, ...)                                   \
  _debug_message(__LINE__, __FILE__, PB_LOG_MODULE, (level), "[%s]" format, \
                 "mb_vesk_media_svc_notification_cb" __VA_OPT__(, ) __VA_ARGS__)

namespace pb::vesk {

inline constexpr gint kAccepted = 1;  ///< what every request of the service returns on success

inline constexpr guint kRequestGuardMs = 40000;  ///< time for the reply to a request
inline constexpr guint kUploadGuardMs = 300000;  ///< time for the reply to an upload
inline constexpr guint kResultPopupMs = 1000;    ///< from a reply to the popup with its result
inline constexpr guint kClosingMs = 10;          ///< from a reply to the end of its dialog

inline constexpr gint kNoText = 0;
inline constexpr gint kSharedText = 1017;
inline constexpr gint kAddedText = 1067;
inline constexpr gint kRefusedText = 1087;
inline constexpr gint kReadingGroupsText = 1119;
inline constexpr gint kNoReplyText = 1125;
inline constexpr gint kSharingAlbumText = 1133;
inline constexpr gint kSharingOneText = 1134;
inline constexpr gint kSharingSeveralText = 1135;
inline constexpr gint kUploadFailedText = 1155;
inline constexpr gint kNotSharedText = 1164;
inline constexpr gint kNothingAddedText = 1168;
inline constexpr gint kUnsharedText = 1179;
inline constexpr gint kUnsharingText = 1180;
inline constexpr gint kUploadedText = 1188;
inline constexpr gint kUploadingOneText = 1189;
inline constexpr gint kUploadingSeveralText = 1190;

inline constexpr const char *kQuickPostAlbum = "quickpost";
inline constexpr const char *kTerminator = "$$";
inline constexpr const char *kNoCredential = "mb_vesk_check_user_credential : false  \n";

/// The handle that a request goes out with.
guint32 handle_or_own(guint32 handle);

// guard.cpp

/// Shows the failure text unless a reply comes in time. Replaces the tag of an earlier guard,
/// whose source stays and fires. Main loop.
void arm_guard(guint interval_ms);
/// Ends the waiting dialog and the guard after a while and shows a text. Any thread.
/// @param text number of a resource string; kNoText shows nothing
/// @param count stands in front of the text when it is more than 0
void close_dialog_later(guint delay_ms, gint text, gint count = 0);

// user-data.cpp

/// What a request leaves for its reply. It goes to the service as a number that is good for one
/// reply, so that neither a repeated nor an invented reply reaches freed memory.
struct UserData {
  enum class Kind { kAlbumId, kDownload };
  guint32 handle;  ///< what the request went out with
  Kind kind;
  gpointer data;  ///< an owned gint64 or an owned MbDownloadData
  gsize asked;    ///< number of ids that the request named; 0 when it named none
};

/// Remembers user data until its reply. Any thread.
gpointer put_user_data(const UserData &user_data);
/// Hands out what a number stands for and forgets the number. Any thread.
std::optional<UserData> take_user_data(gconstpointer number);
/// Frees what replies to a handle would have brought, because they will not come. Main loop.
void drop_user_data(guint32 handle);

/// User data on its way out: none for NULL. Whoever calls the service takes it back when the
/// request was refused; then it is the caller's again.
class Sent {
 public:
  Sent(guint32 handle, UserData::Kind kind, gpointer data, gsize asked = 0)
      : number_(data == nullptr ? nullptr : put_user_data({handle, kind, data, asked})) {}
  [[nodiscard]] gpointer number() const { return number_; }
  void take_back() const { take_user_data(number_); }

 private:
  gpointer number_;
};

/// Remembers how many ids a request names, where it leaves no user data: no reply to it brings
/// more. Any thread.
void note_asked(gint32 event, gint count);
/// The most ids that a request of an event has named; 0 before the first. Any thread.
gsize most_asked(gint32 event);

struct FreeDownload {
  void operator()(MbDownloadData *record) const noexcept;
};
/// Owns a download record with its list of content ids, and frees it on the main loop: that ends
/// dialogs and sources. Any thread.
using DownloadPtr = std::unique_ptr<MbDownloadData, FreeDownload>;
using AlbumIdPtr = std::unique_ptr<gint64, FreeWith<g_free>>;

// records.cpp

using IdsPtr = std::unique_ptr<gint64, FreeWith<g_free>>;

/// The numbers from 1 that a start and a count stand for, kept within an int.
gint first_of(gint start);
gint last_of(gint start, gint count);
/// Numbers from 1 as "first-last", as much of it as the field holds.
void set_range(gchar (&text)[16], gint start, gint count);
VeskFilter range_filter(gint32 kind, gint start, gint count);
VeskFilter name_filter(const gchar *name);
/// Fills a text field of a record; cut at a character, so that it stays UTF-8.
void set_text(gchar *field, gsize size, const gchar *text);
template <gsize N>
void set_text(gchar (&field)[N], const gchar *text) {
  set_text(field, N, text);
}
/// The ids that a list of pointers to gint64 holds; empty elements are left out. NULL when there
/// is no memory for them.
IdsPtr ids_of(GList *list, gint *count);
/// The ids of a list of GINT_TO_POINTER() numbers. NULL when there is no memory for them.
IdsPtr numbers_of(GList *list, gint *count);

// follow-ups.cpp and adding.cpp: what replies leave for the main loop. Any thread.

/// Builds the list of the current category again.
void refresh_later();
/// The same, and ends the waiting dialog first.
void resync_later();
/// Builds the list that a deletion of contents was started from.
void rebuild_later();
/// Takes removed albums off the count in the settings.
void lower_album_count_later(gint removed);
/// Sends the contents of a quick post to its album.
void add_to_album_later(gint64 album_id, DownloadPtr record);
/// Goes on with a one-click share, or tells how its upload ended.
void follow_upload_later(gint mode, gint64 content_id);

/// The album whose list is built again after the deletion of contents. Main loop.
void set_deletion_context(gpointer context);
/// The group that the last one-click share names. Main loop.
void set_share_group(const gchar *group);

// drovo.cpp

/// Stores the quick-post album with the cover that it will have, and downloads that. Any thread.
void update_drovo_cover(gint64 content_id);

}  // namespace pb::vesk

/// Main-loop source that downloads the cover it was made with; FALSE: runs once.
gboolean __mb_vesk_dwld_drovo_album_cover(gpointer data);

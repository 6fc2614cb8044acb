/** @file
 * Records, values and callbacks of the web album service's client. The layout of the records is
 * fixed, byte by byte; gaps are 0 where nothing else is said.
 */
#ifndef ONLINE_RECORDS_H
#define ONLINE_RECORDS_H

#include <phone-api.h>
#include <record-layout.h>

PHONE_BEGIN_DECLS

#define VESK_CATEGORY_CONTENT 6 /**< notification category that is named first */
#define VESK_CATEGORY_SHARE 10  /**< notification category that is named second */

#define VESK_MESSAGE_CONTENT "Media.Manager.Response.Async" /**< message: reply about content */
#define VESK_MESSAGE_SHARE "Share.Manager.Response.Async"   /**< message: reply about sharing */

#define VESK_CONTENT_REQ_FILE_UPLOAD 1          /**< reply to vesk_svc_content_file_upload() */
#define VESK_CONTENT_REQ_FILE_GET 5             /**< reply to vesk_svc_content_file_get() */
#define VESK_CONTENT_REQ_FILE_PUBLISH 7         /**< reply to a publish request */
#define VESK_CONTENT_REQ_ALBUM_UPDATE 9         /**< reply to vesk_svc_content_album_update() */
#define VESK_CONTENT_REQ_ALBUM_DELETE 10        /**< an album was deleted on the server */
#define VESK_CONTENT_REQ_ALBUM_REMOVE 11        /**< reply to vesk_svc_content_album_remove() */
#define VESK_CONTENT_REQ_ALBUM_ADDCONTENT 12    /**< reply to vesk_svc_content_album_addcontent() */
#define VESK_CONTENT_REQ_ALBUM_DELETECONTENT 13 /**< reply to ..._album_deletecontent() */
#define VESK_CONTENT_REQ_ALBUM_GET 14           /**< reply to vesk_svc_content_album_get() */

#define VESK_SHARE_SHARE_WITH_GROUP 0 /**< share operation: shared with a group */
#define VESK_SHARE_UNSHARE_GROUP 2    /**< share operation: taken back from a group */
#define VESK_SHARE_SHARED_WITH 3      /**< share operation: groups that see an album */

#define VESK_NOTI_INTEGER 105 /**< type of a notification field: 'i' */
#define VESK_NOTI_TEXT 115    /**< type of a notification field: 's' */

/** One field of a notification. */
typedef struct _VeskNotiField {
  gint32 type; /**< VESK_NOTI_INTEGER or VESK_NOTI_TEXT */
  /** The value that the type names. */
  union {
    gint32 integer;    /**< of VESK_NOTI_INTEGER */
    const gchar *text; /**< of VESK_NOTI_TEXT: Base64, NUL-terminated; may be NULL */
  } value;             /**< what the field says */
} VeskNotiField;

/**
 * Receives the replies to all requests. Called on a thread of the service, without the GDK lock,
 * exactly once for each request that was accepted.
 *
 * A content reply has four text fields: VeskResponseHeader, meta data whose first word is the
 * number of elements, data (an array of gint64 ids for id lists), and the user data of the
 * request: the bytes of the pointer itself, or of a gint32 for an upload mode, or nothing. A
 * share reply has the integers 1, operation and data length, a text with the data, whose first
 * word is the number of entities that succeeded, and the integer number of elements.
 *
 * @param message (transfer none) VESK_MESSAGE_CONTENT or VESK_MESSAGE_SHARE
 * @param fields (transfer none) the reply; gone after the call
 * @param n_fields number of fields
 * @return 1: handled
 */
typedef gint (*vesk_noti_cb)(const gchar *message, const VeskNotiField *fields, gint n_fields);

/** First field of a content reply. */
typedef struct _VeskResponseHeader {
  gint32 error_id;       /**< 1: success */
  gint32 application_id; /**< application of the request */
  gint32 event_id;       /**< VESK_CONTENT_REQ_* */
} VeskResponseHeader;

PHONE_RECORD_SIZE(VeskResponseHeader, 12);
PHONE_RECORD_FIELD(VeskResponseHeader, error_id, 0, 4);
PHONE_RECORD_FIELD(VeskResponseHeader, application_id, 4, 4);
PHONE_RECORD_FIELD(VeskResponseHeader, event_id, 8, 4);

#define VESK_FILTER_COMMENT_RANGE 2 /**< filter: comments by number, "1-20" */
#define VESK_FILTER_ALBUM_NAME 11   /**< filter: albums of one name */
#define VESK_FILTER_RANGE 12        /**< filter: elements by number, "1-100" */

/** Narrows a query. */
typedef struct _VeskFilter {
  gint32 kind;          /**< VESK_FILTER_* */
  gchar gap0[4];        /**< 0 */
  gchar text[16];       /**< a name, or numbers from 1 as "first-last", both included */
  gchar terminator[16]; /**< "$$" */
  gchar gap1[128];      /**< 0 */
} VeskFilter;

PHONE_RECORD_SIZE(VeskFilter, 168);
PHONE_RECORD_FIELD(VeskFilter, kind, 0, 4);
PHONE_RECORD_FIELD(VeskFilter, text, 8, 16);
PHONE_RECORD_FIELD(VeskFilter, terminator, 24, 16);

#define VESK_REQUEST_CONTENT 1 /**< content request: one content, or all */
#define VESK_REQUEST_ALBUM 5   /**< content request: the contents of one album */

/** Asks for contents. */
typedef struct _VeskContentRequest {
  gint32 kind;       /**< VESK_REQUEST_CONTENT or VESK_REQUEST_ALBUM */
  gchar gap0[4];     /**< 0 */
  gint64 album_id;   /**< web id of the album, or of the content for VESK_REQUEST_CONTENT */
  gint64 content_id; /**< -1: all */
  gchar gap1[144];   /**< 0 */
  VeskFilter filter; /**< counts only when the request says that it is there */
} VeskContentRequest;

PHONE_RECORD_SIZE(VeskContentRequest, 336);
PHONE_RECORD_FIELD(VeskContentRequest, kind, 0, 4);
PHONE_RECORD_FIELD(VeskContentRequest, album_id, 8, 8);
PHONE_RECORD_FIELD(VeskContentRequest, content_id, 16, 8);
PHONE_RECORD_FIELD(VeskContentRequest, filter, 168, 168);

/** A web album. */
typedef struct _VeskAlbum {
  gint64 album_id; /**< web id; ignored for a new album */
  gchar gap0[8];   /**< 0 */
  gchar name[256]; /**< UTF-8 */
  gchar gap1[416]; /**< 0 */
} VeskAlbum;

PHONE_RECORD_SIZE(VeskAlbum, 688);
PHONE_RECORD_FIELD(VeskAlbum, album_id, 0, 8);
PHONE_RECORD_FIELD(VeskAlbum, name, 16, 256);

/** Asks for a shared album. */
typedef struct _VeskSharedAlbumQuery {
  gint64 id;            /**< web id of the album, or of its owner */
  gint32 entry_count;   /**< number of owner and name entries: 0 or 1 */
  gchar owner[32];      /**< name of the owner */
  gchar album_name[64]; /**< name of the album */
  gchar gap[972];       /**< 0 */
} VeskSharedAlbumQuery;

PHONE_RECORD_SIZE(VeskSharedAlbumQuery, 1080);
PHONE_RECORD_FIELD(VeskSharedAlbumQuery, id, 0, 8);
PHONE_RECORD_FIELD(VeskSharedAlbumQuery, entry_count, 8, 4);
PHONE_RECORD_FIELD(VeskSharedAlbumQuery, owner, 12, 32);
PHONE_RECORD_FIELD(VeskSharedAlbumQuery, album_name, 44, 64);

#define VESK_ENTITY_CONTENT 5 /**< kind of what a comment is about: a content */

/** What comments are about. Filled with 0xff bytes first. */
typedef struct _VeskCommentEntity {
  gint64 content_id; /**< web id of the content */
  gint64 album_id;   /**< web id of its album */
  gint32 kind;       /**< VESK_ENTITY_CONTENT */
  gchar gap[4];      /**< 0xff */
} VeskCommentEntity;

PHONE_RECORD_SIZE(VeskCommentEntity, 24);
PHONE_RECORD_FIELD(VeskCommentEntity, content_id, 0, 8);
PHONE_RECORD_FIELD(VeskCommentEntity, album_id, 8, 8);
PHONE_RECORD_FIELD(VeskCommentEntity, kind, 16, 4);

/** A new comment. */
typedef struct _VeskComment {
  guint8 unset[16];     /**< 0xff: ids that the server gives */
  gint64 content_id;    /**< web id of the content */
  gint32 kind;          /**< VESK_ENTITY_CONTENT */
  gchar gap0[4];        /**< 0 */
  gchar terminator[16]; /**< "$$" */
  gchar gap1[24];       /**< 0 */
  gchar text[1024];     /**< UTF-8 */
} VeskComment;

PHONE_RECORD_SIZE(VeskComment, 1096);
PHONE_RECORD_FIELD(VeskComment, unset, 0, 16);
PHONE_RECORD_FIELD(VeskComment, content_id, 16, 8);
PHONE_RECORD_FIELD(VeskComment, kind, 24, 4);
PHONE_RECORD_FIELD(VeskComment, terminator, 32, 16);
PHONE_RECORD_FIELD(VeskComment, text, 72, 1024);

/** How a download ended. */
typedef struct _VeskDownloadResponse {
  gint32 request_id;      /**< id that the caller gave */
  gint32 response_length; /**< bytes of the body that were written */
  gint32 header_length;   /**< bytes of the header text */
  gint32 http_status;     /**< 200 on success; 0 when there was no HTTP answer */
  const gchar *header;    /**< header lines, NUL-terminated; NULL when there are none */
} VeskDownloadResponse;

PHONE_RECORD_FIELD(VeskDownloadResponse, request_id, 0, 4);
PHONE_RECORD_FIELD(VeskDownloadResponse, response_length, 4, 4);
PHONE_RECORD_FIELD(VeskDownloadResponse, header_length, 8, 4);
PHONE_RECORD_FIELD(VeskDownloadResponse, http_status, 12, 4);
PHONE_RECORD_FIELD(VeskDownloadResponse, header, 16, sizeof(gchar *));

/**
 * Told that a download has ended, well or badly. Called on the utility's thread, without the GDK
 * lock, once for a request, never from within the function that started it.
 *
 * @param response (transfer none) how it ended; gone after the call
 * @param user_data (transfer none) what the request was given
 */
typedef void (*vesk_download_cb)(const VeskDownloadResponse *response, gpointer user_data);

PHONE_END_DECLS

#endif

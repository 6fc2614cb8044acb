/** @file
 * Records of the media-browser service. Their layout is fixed, byte by byte.
 *
 * Texts are bytes, as the file system has them, and end in NUL within their field. The media and
 * the web file record are packed to 4 bytes: never take the address of their 64-bit fields, nor
 * bind a reference to them. Gaps are 0.
 */
#ifndef MEDIA_RECORDS_H
#define MEDIA_RECORDS_H

#include <phone-api.h>
#include <record-layout.h>

PHONE_BEGIN_DECLS

#define FM_STORAGE_PHONE 0    /**< storage: the phone's own memory */
#define FM_STORAGE_CARD 1     /**< storage: the memory card */
#define FM_STORAGE_ARCHIVED 2 /**< storage kind of a web file: archived on the server */

#define FM_FILTER_PICTURES G_GINT64_CONSTANT(1)     /**< filter bit: pictures */
#define FM_FILTER_VIDEOS G_GINT64_CONSTANT(2)       /**< filter bit: videos */
#define FM_FILTER_CAMERA_ONLY G_GINT64_CONSTANT(16) /**< filter bit: camera folders only */

/** A file as an element of a list. */
typedef struct _MbItem {
  gchar gap0[12];            /**< 0 */
  gint32 id;                 /**< database index */
  gchar path[300];           /**< full path */
  gchar thumbnail_path[300]; /**< full path of the cached thumbnail; empty when there is none */
  gint32 attribute;          /**< attribute word */
  gchar extension[8];        /**< without the dot, cut to 7 bytes */
  gint32 media_type;         /**< kind of media */
  gchar gap1[4];             /**< 0 */
  gint32 db_idx;             /**< ordering index */
  gint32 nfid;               /**< low word of the web file's id; more than 0: has a web copy */
  guint32 flags;             /**< bit 0: favourite */
  guint32 unmarked;          /**< 0: the file carries a mark */
} MbItem;

PHONE_RECORD_SIZE(MbItem, 652);
PHONE_RECORD_FIELD(MbItem, id, 12, 4);
PHONE_RECORD_FIELD(MbItem, path, 16, 300);
PHONE_RECORD_FIELD(MbItem, thumbnail_path, 316, 300);
PHONE_RECORD_FIELD(MbItem, attribute, 616, 4);
PHONE_RECORD_FIELD(MbItem, extension, 620, 8);
PHONE_RECORD_FIELD(MbItem, media_type, 628, 4);
PHONE_RECORD_FIELD(MbItem, db_idx, 636, 4);
PHONE_RECORD_FIELD(MbItem, nfid, 640, 4);
PHONE_RECORD_FIELD(MbItem, flags, 644, 4);
PHONE_RECORD_FIELD(MbItem, unmarked, 648, 4);

#pragma pack(push, 4)
/** A file by its database index. */
typedef struct _FmMediaRecord {
  gint32 id;                 /**< database index */
  gint32 storage;            /**< FM_STORAGE_PHONE or FM_STORAGE_CARD */
  gint32 media_type;         /**< kind of media */
  gint32 attribute;          /**< attribute word */
  gchar folder[264];         /**< folder, relative to the storage */
  gchar name[256];           /**< name in the folder */
  gchar thumbnail_path[300]; /**< full path of the cached thumbnail; empty when there is none */
  gchar extension[8];        /**< without the dot, cut to 7 bytes */
  gchar gap[112];            /**< 0 */
  gint64 nfid;               /**< id of the web copy: low word, signed, more than 0; -2: pending */
} FmMediaRecord;
#pragma pack(pop)

PHONE_RECORD_SIZE(FmMediaRecord, 964);
PHONE_RECORD_FIELD(FmMediaRecord, id, 0, 4);
PHONE_RECORD_FIELD(FmMediaRecord, storage, 4, 4);
PHONE_RECORD_FIELD(FmMediaRecord, media_type, 8, 4);
PHONE_RECORD_FIELD(FmMediaRecord, attribute, 12, 4);
PHONE_RECORD_FIELD(FmMediaRecord, folder, 16, 264);
PHONE_RECORD_FIELD(FmMediaRecord, name, 280, 256);
PHONE_RECORD_FIELD(FmMediaRecord, thumbnail_path, 536, 300);
PHONE_RECORD_FIELD(FmMediaRecord, extension, 836, 8);
PHONE_RECORD_FIELD(FmMediaRecord, nfid, 956, 8);

/** An album: a folder of the phone or a web album. The mirror's folder record is the same. */
typedef struct _FmAlbumRecord {
  gint32 album_id;       /**< local id */
  gchar gap0[4];         /**< 0 */
  gint64 naid;           /**< id of the web album; 0 or less: none */
  gint32 kind;           /**< 0: local */
  gchar name[303];       /**< shown name */
  gchar cover_path[300]; /**< full path of the cached cover; empty when there is none */
  gchar gap1[5];         /**< 0 */
  gint32 attribute;      /**< attribute word */
  gint32 web_file_count; /**< number of files of a web album */
  gchar gap2[12];        /**< 0 */
} FmAlbumRecord;

PHONE_RECORD_SIZE(FmAlbumRecord, 648);
PHONE_RECORD_FIELD(FmAlbumRecord, album_id, 0, 4);
PHONE_RECORD_FIELD(FmAlbumRecord, naid, 8, 8);
PHONE_RECORD_FIELD(FmAlbumRecord, kind, 16, 4);
PHONE_RECORD_FIELD(FmAlbumRecord, name, 20, 303);
PHONE_RECORD_FIELD(FmAlbumRecord, cover_path, 323, 300);
PHONE_RECORD_FIELD(FmAlbumRecord, attribute, 628, 4);
PHONE_RECORD_FIELD(FmAlbumRecord, web_file_count, 632, 4);

/** A file with its place, by its database index. */
typedef struct _FmFileRecord {
  MbItem item;       /**< the file as in a list */
  gchar folder[264]; /**< folder, relative to the storage */
  gchar name[256];   /**< name in the folder */
  gint32 storage;    /**< FM_STORAGE_PHONE or FM_STORAGE_CARD */
  gchar gap[604];    /**< 0 */
} FmFileRecord;

PHONE_RECORD_SIZE(FmFileRecord, 1780);
PHONE_RECORD_FIELD(FmFileRecord, item, 0, 652);
PHONE_RECORD_FIELD(FmFileRecord, folder, 652, 264);
PHONE_RECORD_FIELD(FmFileRecord, name, 916, 256);
PHONE_RECORD_FIELD(FmFileRecord, storage, 1172, 4);

#pragma pack(push, 4)
/** A file of the web album service. */
typedef struct _FmVeskFileRecord {
  gint64 nfid;               /**< its id on the server */
  gint32 database_index;     /**< the local copy; 0 or less: none */
  gint32 attribute;          /**< attribute word */
  gint32 storage_kind;       /**< FM_STORAGE_ARCHIVED: archived */
  gchar name[256];           /**< name; a full path where a local file is described */
  gchar thumbnail_path[256]; /**< full path of the cached thumbnail; empty when there is none */
  gchar bytes_url[256];      /**< URL of the file's bytes */
} FmVeskFileRecord;
#pragma pack(pop)

PHONE_RECORD_SIZE(FmVeskFileRecord, 788);
PHONE_RECORD_FIELD(FmVeskFileRecord, nfid, 0, 8);
PHONE_RECORD_FIELD(FmVeskFileRecord, database_index, 8, 4);
PHONE_RECORD_FIELD(FmVeskFileRecord, attribute, 12, 4);
PHONE_RECORD_FIELD(FmVeskFileRecord, storage_kind, 16, 4);
PHONE_RECORD_FIELD(FmVeskFileRecord, name, 20, 256);
PHONE_RECORD_FIELD(FmVeskFileRecord, thumbnail_path, 276, 256);
PHONE_RECORD_FIELD(FmVeskFileRecord, bytes_url, 532, 256);

#define FM_FILE_LOCAL 0    /**< type in a file list: a local file, the id is its database index */
#define FM_FILE_WEB_ONLY 1 /**< type in a file list: only on the server, the id is its web id */

/** Ids of files. Both arrays come from malloc() and are freed by fm_svc_sync_list_free(). */
typedef struct _FmFileList {
  gint64 *ids;   /**< count ids; NULL when count is 0 */
  gint32 *types; /**< count values FM_FILE_LOCAL or FM_FILE_WEB_ONLY; NULL when count is 0 */
  gint32 count;  /**< number of files */
} FmFileList;

PHONE_END_DECLS

#endif

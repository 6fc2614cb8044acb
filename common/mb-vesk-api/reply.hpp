/// The fields of a notification, taken apart. Nothing in a notification is believed: texts are
/// checked before they are decoded, counts against what is there and what was asked for.
#pragma once

#include <span>

#include "private.hpp"

namespace pb::vesk {

using Fields = std::span<const VeskNotiField>;

/// Decoded bytes.
struct Bytes {
  std::unique_ptr<guchar, FreeWith<g_free>> data;
  gsize size = 0;
};

/// Decodes Base64 in the standard alphabet with its padding. Nothing for NULL, for any other text
/// and for one that is too long to be a reply; no bytes for an empty one.
std::optional<Bytes> decode_base64(const gchar *text);

/// A field of the type asked for; nothing when it is missing or of the other type.
std::optional<gint32> integer_field(Fields fields, gsize index);
std::optional<Bytes> bytes_field(Fields fields, gsize index);

/// The number that data begins with; 0 when there is not that much.
gint32 first_word(const Bytes &bytes);

/// The header of a content reply; nothing unless it has exactly its size.
std::optional<VeskResponseHeader> header_field(Fields fields);

/// What a request left for its reply.
struct ReplyUserData {
  bool valid = false;        ///< FALSE: neither nothing nor what a live request has left
  std::optional<gint> mode;  ///< of an upload
  AlbumIdPtr album_id;       ///< of a deletion
  DownloadPtr record;        ///< of a query
  gsize asked = 0;           ///< number of ids that the request named; 0: not known
};
/// Takes the user data of a content reply; whoever drops the result frees it.
ReplyUserData user_data_field(Fields fields, bool upload);

/// The ids of a content reply: as many as the meta data says, the data holds, and were asked for.
std::vector<gint64> ids_of(const Bytes &meta, const Bytes &data, gsize asked);

/// A content reply that said success.
struct ContentReply {
  gint32 event;
  std::vector<gint64> ids;
  ReplyUserData user_data;
};
void handle_content_success(ContentReply reply);
void handle_content_failure(const VeskResponseHeader &header);

}  // namespace pb::vesk

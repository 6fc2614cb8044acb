#include "reply.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr gsize kUserDataField = 3;
/// Far above any reply: a list of the largest batches is smaller than a hundredth of it.
constexpr gsize kLongestText = gsize{16} << 20;
constexpr gsize kGroup = 4;

bool is_base64(std::string_view text) {
  if (text.size() % kGroup != 0 || text.size() > kLongestText) return false;
  const gsize signs = std::min(text.find('='), text.size());
  if (text.size() - signs > 2) return false;
  const auto is_sign = [](char c) { return g_ascii_isalnum(c) || c == '+' || c == '/'; };
  return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(signs), is_sign) &&
         text.find_first_not_of('=', signs) == std::string_view::npos;
}

}  // namespace

namespace pb::vesk {

std::optional<Bytes> decode_base64(const gchar *text) {
  if (text == nullptr || !is_base64(std::string_view(text, strnlen(text, kLongestText + 1)))) {
    return std::nullopt;
  }
  Bytes bytes;
  if (*text != '\0') bytes.data.reset(g_base64_decode(text, &bytes.size));
  return bytes;
}

std::optional<gint32> integer_field(Fields fields, gsize index) {
  if (index >= fields.size() || fields[index].type != VESK_NOTI_INTEGER) return std::nullopt;
  return fields[index].value.integer;
}

std::optional<Bytes> bytes_field(Fields fields, gsize index) {
  if (index >= fields.size() || fields[index].type != VESK_NOTI_TEXT) return std::nullopt;
  return decode_base64(fields[index].value.text);
}

gint32 first_word(const Bytes &bytes) {
  gint32 word = 0;
  if (bytes.size >= sizeof word) std::memcpy(&word, bytes.data.get(), sizeof word);
  return word;
}

std::optional<VeskResponseHeader> header_field(Fields fields) {
  const std::optional<Bytes> bytes = bytes_field(fields, 0);
  VeskResponseHeader header;
  if (!bytes || bytes->size != sizeof header) return std::nullopt;
  std::memcpy(&header, bytes->data.get(), sizeof header);
  return header;
}

ReplyUserData user_data_field(Fields fields, bool upload) {
  ReplyUserData result;
  const std::optional<Bytes> bytes = bytes_field(fields, kUserDataField);
  if (!bytes) return result;
  if (bytes->size == 0) {
    result.valid = true;
    return result;
  }
  if (upload) {
    result.valid = bytes->size == sizeof(gint32);
    if (result.valid) result.mode = first_word(*bytes);
    return result;
  }
  gpointer number = nullptr;
  if (bytes->size != sizeof number) return result;
  std::memcpy(&number, bytes->data.get(), sizeof number);
  if (number == nullptr) {
    result.valid = true;
    return result;
  }
  const std::optional<UserData> left = take_user_data(number);
  if (!left) return result;
  result.valid = true;
  result.asked = left->asked;
  if (left->kind == UserData::Kind::kAlbumId) {
    result.album_id.reset(static_cast<gint64 *>(left->data));
  } else {
    result.record.reset(static_cast<MbDownloadData *>(left->data));
  }
  return result;
}

std::vector<gint64> ids_of(const Bytes &meta, const Bytes &data, gsize asked) {
  gsize count = static_cast<gsize>(std::max(first_word(meta), 0));
  count = std::min(count, data.size / sizeof(gint64));
  if (asked > 0) count = std::min(count, asked);
  std::vector<gint64> ids(count);
  if (count > 0) std::memcpy(ids.data(), data.data.get(), count * sizeof(gint64));
  return ids;
}

}  // namespace pb::vesk

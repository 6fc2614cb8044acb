#include <algorithm>
#include <cstring>

#include "private.hpp"

namespace {

/// Room for the elements of a list; never 0 bytes, which would give NULL.
pb::vesk::IdsPtr room_for(GList *list) {
  const gsize length = g_list_length(list);
  return pb::vesk::IdsPtr(
      static_cast<gint64 *>(g_try_malloc0_n(std::max<gsize>(length, 1), sizeof(gint64))));
}

}  // namespace

gint pb::vesk::first_of(gint start) { return last_of(start, 1); }

gint pb::vesk::last_of(gint start, gint count) {
  return static_cast<gint>(std::clamp<gint64>(gint64{start} + count, G_MININT, G_MAXINT));
}

void pb::vesk::set_range(gchar (&text)[16], gint start, gint count) {
  g_snprintf(text, sizeof text, "%d-%d", first_of(start), last_of(start, count));
}

VeskFilter pb::vesk::range_filter(gint32 kind, gint start, gint count) {
  VeskFilter filter{};
  filter.kind = kind;
  set_range(filter.text, start, count);
  set_text(filter.terminator, kTerminator);
  return filter;
}

VeskFilter pb::vesk::name_filter(const gchar *name) {
  VeskFilter filter{};
  filter.kind = VESK_FILTER_ALBUM_NAME;
  set_text(filter.text, name);
  set_text(filter.terminator, kTerminator);
  return filter;
}

void pb::vesk::set_text(gchar *field, gsize size, const gchar *text) {
  gsize length = std::strlen(text);
  if (length >= size) {
    length = size - 1;
    // Back over the following bytes of a character that does not fit whole.
    const gchar *whole = g_utf8_find_prev_char(text, text + length + 1);
    if (whole != nullptr) length = static_cast<gsize>(whole - text);
  }
  std::copy_n(text, length, field);
  field[length] = '\0';
}

pb::vesk::IdsPtr pb::vesk::ids_of(GList *list, gint *count) {
  IdsPtr ids = room_for(list);
  gint filled = 0;
  if (ids != nullptr) {
    for (const gint64 *id : each<gint64>(list)) {
      if (id != nullptr) ids.get()[filled++] = *id;
    }
  }
  *count = filled;
  return ids;
}

pb::vesk::IdsPtr pb::vesk::numbers_of(GList *list, gint *count) {
  IdsPtr ids = room_for(list);
  gint filled = 0;
  if (ids != nullptr) {
    for (gpointer number : each<void>(list)) ids.get()[filled++] = GPOINTER_TO_INT(number);
  }
  *count = filled;
  return ids;
}

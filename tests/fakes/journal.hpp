/// How the fakes write a call down: record("pm_control", state, flag).
#pragma once

#include <glib-object.h>

#include <concepts>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/fake-platform.hpp"

namespace fake {

/// A text in quotes, or NULL.
std::string text_of(const char *text);
/// A widget by its name, which is its type's unless the test gave it one; any other object by its
/// type; or NULL.
std::string text_of_object(gconstpointer object);

std::string text_of(const VeskFilter &filter);
std::string text_of(const VeskContentRequest &request);
std::string text_of(const VeskAlbum &album);
std::string text_of(const VeskSharedAlbumQuery &query);
std::string text_of(const VeskCommentEntity &entity);
std::string text_of(const VeskComment &comment);
std::string text_of(const FmAlbumRecord &album);

template <std::integral Number>
std::string text_of(Number number) {
  return std::to_string(number);
}

template <typename Object>
requires(std::is_class_v<Object> &&requires(Object *object) { G_OBJECT(object); }) std::string
    text_of(Object *object) {
  return text_of_object(object);
}

/// count values as {1, 2}; NULL for none.
template <typename Value>
std::string text_of(std::span<Value> values) {
  if (values.data() == nullptr) return "NULL";
  std::string text;
  for (const auto &value : values) text += (text.empty() ? "" : ", ") + text_of(value);
  return "{" + text + "}";
}

/// A borrowed array of an API with a count; a negative count is none.
template <typename Value, typename Count>
std::span<const Value> array_of(const Value *values, Count count) {
  return {values, values != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0};
}

/// The text of a field of a record, which need not be terminated.
template <std::size_t N>
std::string text_of_field(const gchar (&field)[N]) {
  return "\"" + std::string(field, strnlen(field, N)) + "\"";
}

/// Adds a finished line to the journal. Any thread.
void add_call(std::string call);

/// Adds a line to the log. Any thread.
void add_log_line(LogLine line);

/// Writes a call down. Any thread.
template <typename... Arguments>
void record(std::string_view function, const Arguments &...arguments) {
  std::string call(function);
  call += "(";
  [[maybe_unused]] const char *separator = "";
  ((call += separator + text_of(arguments), separator = ", "), ...);
  call += ")";
  add_call(std::move(call));
}

/// Sets an optional result.
template <typename Value>
void answer(Value *where, std::type_identity_t<Value> value) {
  if (where != nullptr) *where = value;
}

/// Each service fills its own defaults in.
void set_file_defaults(Platform &phone);
void set_gtk_defaults(Platform &phone);
void set_header_defaults(Platform &phone);
void set_media_defaults(Platform &phone);
void set_mirror_defaults(Platform &phone);
void set_online_content_defaults(Platform &phone);
void set_online_core_defaults(Platform &phone);
void set_online_download_defaults(Platform &phone);
void set_online_share_defaults(Platform &phone);
void set_phone_service_defaults(Platform &phone);
void set_resource_defaults(Platform &phone);
void set_thumbnail_defaults(Platform &phone);

/// What gtk_style_dialog_new() does by default.
GtkWidget *make_style_dialog(gint style, GtkWindow *parent, gint flags);

/// Empties the pretended clock.
void reset_clock();

}  // namespace fake

/// What the tests of the web-album client share: a signed-in user, open resources, the texts that
/// came on the screen, and replies as the service makes them.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "glib-ptr.hpp"
#include "mb-util-content.h"
#include "mb-vesk-api.h"
#include "pb-debug.h"
#include "pb-util-settings.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace vesk_test {

/// Encodes the bytes of a value, as the service does.
inline std::string encode(std::string_view bytes) {
  if (bytes.empty()) return {};
  const pb::StringPtr text(
      g_base64_encode(reinterpret_cast<const guchar *>(bytes.data()), bytes.size()));
  return text.get();
}
template <typename Value>
std::string bytes_of(const Value &value) {
  return {reinterpret_cast<const char *>(&value), sizeof value};
}
inline std::string bytes_of_ids(const std::vector<gint64> &ids) {
  return {reinterpret_cast<const char *>(ids.data()), ids.size() * sizeof(gint64)};
}

/// A reply of the content service; its parts are encoded when it is sent.
struct Content {
  gint32 event;
  std::vector<gint64> ids;
  std::string user_data;
  gint32 error = 1;
};

inline VeskNotiField text_field(const char *text) {
  VeskNotiField field{};
  field.type = VESK_NOTI_TEXT;
  field.value.text = text;
  return field;
}
inline VeskNotiField integer_field(gint32 integer) {
  VeskNotiField field{};
  field.type = VESK_NOTI_INTEGER;
  field.value.integer = integer;
  return field;
}

inline gint send_fields(const char *message, const std::vector<VeskNotiField> &fields) {
  return mb_vesk_media_svc_notification_cb(message, fields.data(),
                                           static_cast<gint>(fields.size()));
}

inline gint send_texts(const std::vector<std::string> &texts) {
  std::vector<VeskNotiField> fields;
  for (const std::string &text : texts) fields.push_back(text_field(text.c_str()));
  return send_fields(VESK_MESSAGE_CONTENT, fields);
}

inline std::vector<std::string> texts_of(const Content &reply) {
  const VeskResponseHeader header{reply.error, 77, reply.event};
  return {encode(bytes_of(header)), encode(bytes_of(static_cast<gint32>(reply.ids.size()))),
          encode(bytes_of_ids(reply.ids)), encode(reply.user_data)};
}
inline gint send(const Content &reply) { return send_texts(texts_of(reply)); }

inline gint send_share(gint32 operation, gint32 succeeded) {
  const std::string data = encode(bytes_of(succeeded));
  return send_fields(VESK_MESSAGE_SHARE,
                     {integer_field(1), integer_field(operation), integer_field(4),
                      text_field(data.c_str()), integer_field(1)});
}

class VeskTest : public pb_test::DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    fake::platform().vesk_svc_core_is_logout = [](guint32) { return 0; };
    open_resources();
  }
  void TearDown() override {
    fake::run_idles();
    DialogTest::TearDown();
  }

  /// The calls of the service and its mirror, without the question for the log-in.
  static std::vector<std::string> requests() {
    std::vector<std::string> found;
    for (const std::string &call : fake::platform().calls) {
      const bool ours = call.starts_with("vesk_svc_") || call.starts_with("fm_svc_vesk_");
      if (ours && !call.starts_with("vesk_svc_core_is_logout")) found.push_back(call);
    }
    return found;
  }
  /// The texts of dialogs and popups.
  static std::vector<std::string> shown() {
    std::vector<std::string> texts;
    for (const std::string &call : fake::calls_of("gtk_style_dialog_set_content_area_text")) {
      const auto begin = call.find('"') + 1;
      texts.push_back(call.substr(begin, call.rfind('"') - begin));
    }
    return texts;
  }
  static std::vector<std::string> shown_after(guint64 ms) {
    fake::take_calls();
    fake::advance_clock(ms);
    return shown();
  }
  static std::vector<guint> intervals() {
    std::vector<guint> result;
    for (const fake::PendingSource &source : fake::pending_timeouts()) {
      result.push_back(source.interval_ms);
    }
    return result;
  }
  /// Lines of a text that a function has logged.
  static testing::AssertionResult logged(guint32 level, const std::string &text) {
    return testing::Value(fake::platform().log, testing::Contains(fake::Logged(level, text)))
               ? testing::AssertionSuccess()
               : testing::AssertionFailure()
                     << "not logged: " << text
                     << ", but: " << testing::PrintToString(fake::platform().log);
  }
  static GList *list_of(std::vector<gint64> &ids) {
    GList *list = nullptr;
    for (gint64 &id : ids) list = g_list_append(list, &id);
    return list;
  }
  static GList *list_of_fids(const std::vector<gint> &fids) {
    GList *list = nullptr;
    for (const gint fid : fids) list = g_list_append(list, GINT_TO_POINTER(fid));
    return list;
  }
};

}  // namespace vesk_test

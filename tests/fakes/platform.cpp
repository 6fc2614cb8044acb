#include <algorithm>
#include <mutex>
#include <ostream>
#include <utility>

#include "fakes/journal.hpp"

namespace fake {
namespace {

std::mutex &journal_mutex() {
  static auto *instance = new std::mutex;
  return *instance;
}

void set_defaults(Platform &phone) {
  phone._debug_message = [](const LogLine &line) { return static_cast<int>(line.text.size()); };
  set_file_defaults(phone);
  set_gtk_defaults(phone);
  set_header_defaults(phone);
  set_media_defaults(phone);
  set_mirror_defaults(phone);
  set_online_content_defaults(phone);
  set_online_core_defaults(phone);
  set_online_download_defaults(phone);
  set_online_share_defaults(phone);
  set_phone_service_defaults(phone);
  set_resource_defaults(phone);
  set_thumbnail_defaults(phone);
}

/// Gives every test a phone without a past, also when tests run in one process.
class FreshPhone : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo &) override {
    platform() = Platform{};
    set_defaults(platform());
    reset_clock();
  }
};

[[maybe_unused]] const bool listening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new FreshPhone);
  return true;
}();

}  // namespace

Platform &platform() {
  // Never destroyed: static objects of the code under test may call when the process ends.
  static Platform &instance = []() -> Platform & {
    auto *phone = new Platform;
    set_defaults(*phone);
    return *phone;
  }();
  return instance;
}

void add_call(std::string call) {
  const std::scoped_lock lock(journal_mutex());
  platform().calls.push_back(std::move(call));
}

std::vector<std::string> calls_of(std::string_view function) {
  const std::scoped_lock lock(journal_mutex());
  const std::string beginning = std::string(function) + "(";
  std::vector<std::string> found;
  std::ranges::copy_if(platform().calls, std::back_inserter(found),
                       [&](const std::string &call) { return call.starts_with(beginning); });
  return found;
}

std::vector<std::string> take_calls() {
  const std::scoped_lock lock(journal_mutex());
  return std::exchange(platform().calls, {});
}

std::vector<LogLine> take_log() {
  const std::scoped_lock lock(journal_mutex());
  return std::exchange(platform().log, {});
}

void add_log_line(LogLine line) {
  const std::scoped_lock lock(journal_mutex());
  platform().log.push_back(std::move(line));
}

void PrintTo(const LogLine &line, std::ostream *out) {
  const char *level = "another level";
  if (line.level == 0x1000000) level = "error";
  if (line.level == 0x2000000) level = "warning";
  if (line.level == 0x4000000) level = "info";
  *out << level << " " << testing::PrintToString(line.text) << " at " << line.file << ":"
       << line.line;
}

void PrintTo(const Download &download, std::ostream *out) {
  *out << "download " << download.request_id << " of " << download.url << " to " << download.path;
}

std::string text_of(const char *text) {
  return text == nullptr ? "NULL" : "\"" + std::string(text) + "\"";
}

std::string text_of_object(gconstpointer object) {
  if (object == nullptr) return "NULL";
  auto *instance = static_cast<GObject *>(const_cast<gpointer>(object));
  if (!G_IS_OBJECT(instance)) return "no object";
  if (GTK_IS_WIDGET(instance)) return gtk_widget_get_name(GTK_WIDGET(instance));
  return G_OBJECT_TYPE_NAME(instance);
}

std::string text_of(const VeskFilter &filter) {
  return "{" + std::to_string(filter.kind) + ", " + text_of_field(filter.text) + ", " +
         text_of_field(filter.terminator) + "}";
}

std::string text_of(const VeskContentRequest &request) {
  return "{" + std::to_string(request.kind) + ", " + std::to_string(request.album_id) + ", " +
         std::to_string(request.content_id) + ", " + text_of(request.filter) + "}";
}

std::string text_of(const VeskAlbum &album) {
  return "{" + std::to_string(album.album_id) + ", " + text_of_field(album.name) + "}";
}

std::string text_of(const VeskSharedAlbumQuery &query) {
  return "{" + std::to_string(query.id) + ", " + std::to_string(query.entry_count) + ", " +
         text_of_field(query.owner) + ", " + text_of_field(query.album_name) + "}";
}

std::string text_of(const VeskCommentEntity &entity) {
  return "{" + std::to_string(entity.content_id) + ", " + std::to_string(entity.album_id) + ", " +
         std::to_string(entity.kind) + "}";
}

std::string text_of(const VeskComment &comment) {
  return "{" + std::to_string(comment.content_id) + ", " + std::to_string(comment.kind) + ", " +
         text_of_field(comment.terminator) + ", " + text_of_field(comment.text) + "}";
}

std::string text_of(const FmAlbumRecord &album) {
  return "{" + std::to_string(album.album_id) + ", " + std::to_string(album.naid) + ", " +
         text_of_field(album.name) + ", " + text_of_field(album.cover_path) + "}";
}

}  // namespace fake

#include <gdk/gdk.h>

#include <array>
#include <atomic>
#include <mutex>
#include <unordered_map>

#include "private.hpp"

namespace {

guintptr a_random_number() {
  return static_cast<guintptr>(guint64{g_random_int()} << 32 | g_random_int());
}

struct Table {
  std::mutex mutex;
  guintptr last = a_random_number();                       // guarded by mutex
  std::unordered_map<guintptr, pb::vesk::UserData> alive;  // guarded by mutex
};

/// Never destroyed: replies may come while the process ends.
Table &table() {
  static auto *instance = new Table;
  return *instance;
}

/// By event.
std::array<std::atomic<gint>, VESK_CONTENT_REQ_ALBUM_GET + 1> g_most_asked;

gboolean free_record_idle(gpointer data) {
  mb_util_content_download_free(static_cast<MbDownloadData *>(data));
  return FALSE;
}

void free_data(const pb::vesk::UserData &user_data) {
  if (user_data.kind == pb::vesk::UserData::Kind::kAlbumId) {
    const pb::vesk::AlbumIdPtr album_id(static_cast<gint64 *>(user_data.data));
  } else {
    mb_util_content_download_free(static_cast<MbDownloadData *>(user_data.data));
  }
}

}  // namespace

gpointer pb::vesk::put_user_data(const UserData &user_data) {
  const std::scoped_lock lock(table().mutex);
  // 0 stands for no user data.
  if (++table().last == 0) ++table().last;
  const guintptr number = table().last;
  table().alive.emplace(number, user_data);
  return reinterpret_cast<gpointer>(number);
}

std::optional<pb::vesk::UserData> pb::vesk::take_user_data(gconstpointer number) {
  const std::scoped_lock lock(table().mutex);
  const auto found = table().alive.find(reinterpret_cast<guintptr>(number));
  if (found == table().alive.end()) return std::nullopt;
  const UserData user_data = found->second;
  table().alive.erase(found);
  return user_data;
}

void pb::vesk::drop_user_data(guint32 handle) {
  std::vector<UserData> dropped;
  {
    const std::scoped_lock lock(table().mutex);
    std::erase_if(table().alive, [&](const auto &entry) {
      if (entry.second.handle != handle) return false;
      dropped.push_back(entry.second);
      return true;
    });
  }
  // Without the lock: freeing a record ends dialogs and downloads.
  for (const UserData &user_data : dropped) free_data(user_data);
}

void pb::vesk::note_asked(gint32 event, gint count) {
  std::atomic<gint> &most = g_most_asked.at(static_cast<gsize>(event));
  if (count > most) most = count;
}

gsize pb::vesk::most_asked(gint32 event) {
  if (event < 0 || static_cast<gsize>(event) >= g_most_asked.size()) return 0;
  return static_cast<gsize>(g_most_asked[static_cast<gsize>(event)].load());
}

void pb::vesk::FreeDownload::operator()(MbDownloadData *record) const noexcept {
  gdk_threads_add_idle(free_record_idle, record);
}

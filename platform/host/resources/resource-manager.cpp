#include "resource-manager.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "resources/bitmap-file.hpp"
#include "resources/placeholder.hpp"
#include "resources/string-file.hpp"
#include "resources/system-strings.hpp"

namespace phone::resources {
namespace {

constexpr gint kNoFile = -1;
constexpr gint kSystemTable = -2;  // stands for the phone's own strings among the handles
constexpr gint kFirstStringId = 1000;

/// Everything that is open. Look-ups come from any thread, so all of it is guarded by the mutex.
struct Manager {
  std::mutex mutex;
  gint next_handle = 1;
  std::map<gint, std::unique_ptr<BitmapFile>> bitmap_files;
  std::map<gint, std::unique_ptr<StringFile>> string_files;
  std::unique_ptr<StringFile> system_strings;
  /// Stand in for bitmaps that cannot be had, by side.
  std::map<gint, pb::Ref<GdkPixbuf>> placeholders;
  /// Numbers that were reported, once each.
  std::set<gint> reported;
  /// What callers hold. A map's entries stay where they are while others come.
  std::map<std::pair<gint, gint>, std::string> handed_out;

  const gchar *hand_out(gint handle, gint id, const StringFile *file) {
    const auto known = handed_out.find({handle, id});
    if (known != handed_out.end()) return known->second.c_str();
    if (file == nullptr) return nullptr;
    std::optional<std::string> text = file->get(id);
    if (!text && file->has(id)) report("The text", id);
    // The number shows where a text is missing, and which.
    if (!text) text = std::to_string(id);
    return handed_out.emplace(std::pair(handle, id), std::move(*text)).first->second.c_str();
  }

  GdkPixbuf *copy_placeholder(gint id) {
    const int side = placeholder_side(id);
    pb::Ref<GdkPixbuf> &box = placeholders[side];
    if (!box) box = make_placeholder(side);
    return box ? gdk_pixbuf_copy(box.get()) : nullptr;
  }

  void report(const char *what, gint id) {
    if (reported.insert(id).second) g_warning("%s %d of the package cannot be read", what, id);
  }
};

Manager &manager() {
  static Manager instance;
  return instance;
}

template <typename File>
gint keep(std::map<gint, std::unique_ptr<File>> &files, std::unique_ptr<File> file) {
  if (!file) return kNoFile;
  const gint handle = manager().next_handle++;
  files.emplace(handle, std::move(file));
  return handle;
}

}  // namespace
}  // namespace phone::resources

using phone::resources::BitmapFile;
using phone::resources::keep;
using phone::resources::manager;
using phone::resources::StringFile;

gint rsrc_open_rbm(const gchar *path) {
  if (path == nullptr) return phone::resources::kNoFile;
  auto file = BitmapFile::open(path);
  const std::scoped_lock lock(manager().mutex);
  return keep(manager().bitmap_files, std::move(file));
}

gint rsrc_open_rsr(const gchar *path) {
  if (path == nullptr) return phone::resources::kNoFile;
  auto file = StringFile::open(path);
  const std::scoped_lock lock(manager().mutex);
  return keep(manager().string_files, std::move(file));
}

void rsrc_close_rbm(gint handle) {
  const std::scoped_lock lock(manager().mutex);
  manager().bitmap_files.erase(handle);
}

void rsrc_close_rsr(gint handle) {
  const std::scoped_lock lock(manager().mutex);
  manager().string_files.erase(handle);
}

GdkPixbuf *rsrc_get_image(gint handle, gint id) {
  const std::scoped_lock lock(manager().mutex);
  if (id < 0) return nullptr;
  const auto file = manager().bitmap_files.find(handle);
  // A file that is not open was reported when it was to be opened.
  if (file == manager().bitmap_files.end()) return manager().copy_placeholder(id);
  GdkPixbuf *bitmap = file->second->copy(id);
  if (bitmap != nullptr) return bitmap;
  manager().report("The bitmap", id);
  return manager().copy_placeholder(id);
}

const gchar *rsrc_get_string(gint handle, gint index) {
  if (index < 0 || index > G_MAXINT - phone::resources::kFirstStringId) return nullptr;
  const std::scoped_lock lock(manager().mutex);
  const auto file = manager().string_files.find(handle);
  if (file == manager().string_files.end()) return nullptr;
  return manager().hand_out(handle, phone::resources::kFirstStringId + index, file->second.get());
}

const gchar *rsrc_get_system_string(gint id) {
  const std::scoped_lock lock(manager().mutex);
  auto &table = manager().system_strings;
  if (!table) table = StringFile::parse(phone::resources::kSystemStrings);
  return manager().hand_out(phone::resources::kSystemTable, id, table.get());
}

void rsrc_free_strings(void) {
  const std::scoped_lock lock(manager().mutex);
  manager().handed_out.clear();
}

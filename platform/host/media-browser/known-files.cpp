#include "media-browser/known-files.hpp"

#include <algorithm>
#include <array>
#include <functional>

namespace phone::media {

namespace {

std::size_t hash_of(std::string_view name) { return std::hash<std::string_view>{}(name); }

std::size_t hash_of(const FileState &state) {
  const std::array<guint64, 3> values{state.inode, static_cast<guint64>(state.size),
                                      static_cast<guint64>(state.mtime)};
  return hash_of(std::string_view(reinterpret_cast<const char *>(values.data()), sizeof values));
}

FileState state_of(const Cursor &row, int column) {
  return {static_cast<guint64>(row.integer(column)), row.integer(column + 1),
          row.integer(column + 2)};
}

}  // namespace

KnownFiles::KnownFiles(const Database &database)
    : of_album_(database.prepare("SELECT id, name, inode, size, mtime FROM files "
                                 "INDEXED BY files_by_album WHERE album = ? AND class > 0")),
      name_of_(database.prepare("SELECT name FROM files WHERE id = ?")),
      single_(database.prepare("SELECT id, inode, size, mtime FROM files INDEXED BY files_by_name "
                               "WHERE name = ? COLLATE filename AND album = ? AND class > 0")) {}

bool KnownFiles::load(gint32 album) {
  files_.clear();
  album_ = album;
  if (album == 0) return true;
  Cursor row(of_album_, album);
  while (row.next()) {
    files_.push_back({hash_of(row.text(1)), hash_of(state_of(row, 2)), row.number(0), false});
  }
  if (row.failed()) return false;
  std::sort(files_.begin(), files_.end(),
            [](const Known &a, const Known &b) { return a.name < b.name; });
  return true;
}

KnownFiles::Known *KnownFiles::find_loaded(std::string_view name) {
  const std::size_t wanted = hash_of(name);
  const auto found = std::lower_bound(files_.begin(), files_.end(), wanted,
                                      [](const Known &a, std::size_t b) { return a.name < b; });
  return found != files_.end() && found->name == wanted ? &*found : nullptr;
}

KnownFiles::Answer KnownFiles::see(std::string_view name, const FileState &state) {
  Known *known = find_loaded(name);
  if (known == nullptr) return Answer::kUnknown;
  known->seen = true;
  return known->state == hash_of(state) ? Answer::kUnchanged : Answer::kChanged;
}

void KnownFiles::keep(std::string_view name) {
  if (Known *known = find_loaded(name)) known->seen = true;
}

std::vector<Lost> KnownFiles::unseen() const {
  std::vector<Lost> lost;
  for (const Known &known : files_) {
    if (known.seen) continue;
    Cursor row(name_of_, known.id);
    if (row.next()) lost.push_back({known.id, album_, std::string(row.text(0))});
  }
  return lost;
}

KnownFiles::Single KnownFiles::find(gint32 album, std::string_view name) const {
  Cursor row(single_, name, album);
  if (!row.next()) return {};
  return {row.number(0), state_of(row, 1)};
}

}  // namespace phone::media

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "media-browser/display.hpp"
#include "media-browser/media-names.hpp"
#include "media-browser/records.hpp"
#include "media-browser/walker.hpp"

namespace phone::media {

namespace {

/// Names that are read before their files are looked at: in order, so that neighbours on the disk
/// and in time come together, but never a whole huge folder.
constexpr std::size_t kNamesAtOnce = 4096;
/// Files of a piece of work for the header readers. The very first piece is small.
constexpr std::size_t kFilesAtOnce = 128;
constexpr std::size_t kFirstFiles = 32;

}  // namespace

void Walker::visit(Fd descriptor, const std::string &path, Pass &pass) {
  Visit here;
  here.descriptor = std::make_shared<const Fd>(std::move(descriptor));
  if (!enter(here, path, pass)) return;
  here.broken = !known_->load(here.album);
  if (!here.broken) read_entries(here);
  submit(here);
  if (here.broken) {
    pass.unread.push_back(path);
  } else if (!shared_.stopping) {
    report_lost(here);
  }
  descend(here, pass);
}

bool Walker::enter(Visit &visit, const std::string &path, Pass &pass) {
  const int descriptor = visit.descriptor->get();
  visit.stable = has_stable_inodes(descriptor);
  const auto entry = look_at(descriptor, ".", visit.stable);
  struct stat info;
  if (!entry || fstat(descriptor, &info) != 0) {
    report(path, errno, &pass);
    return false;
  }
  // A folder that is mounted inside itself would never end.
  if (!pass.folders.emplace(info.st_dev, info.st_ino).second) return false;
  watches_.add(path, entry->state.mtime);
  if (faccessat(descriptor, kNoMedia, F_OK, AT_SYMLINK_NOFOLLOW) == 0) return false;
  auto folder = std::make_shared<Folder>();
  folder->path = path;
  folder->device = info.st_dev;
  folder->inode = entry->state.inode;
  folder->born = entry->born;
  folder->camera = is_camera_folder(path);
  visit.folder = std::move(folder);
  const auto album = find_album(*visit.folder, pass.at_the_end);
  if (!album) {
    pass.folders.erase({info.st_dev, info.st_ino});
    pass.replaced.push_back(path);
    return false;
  }
  visit.album = *album;
  pass.paths.insert(path);
  return true;
}

void Walker::read_entries(Visit &visit) {
  const DirPtr dir = entries_of(visit.descriptor->get());
  if (dir == nullptr) {
    report(visit.folder->path, errno, nullptr);
    visit.broken = true;
    return;
  }
  std::vector<std::string> names;
  while (!shared_.stopping) {
    errno = 0;
    const dirent *entry = readdir(dir.get());
    if (entry == nullptr) break;
    const std::string_view name(entry->d_name);
    if (is_hidden(name)) continue;
    const bool unknown = entry->d_type == DT_UNKNOWN;
    if (entry->d_type == DT_DIR) {
      visit.subfolders.emplace_back(name);
    } else if ((entry->d_type == DT_REG && kind_by_name(name) != 0) || unknown) {
      names.emplace_back(name);
    } else {
      shared_.progress.saw(1);
    }
    if (names.size() >= kNamesAtOnce) look_through(visit, names);
  }
  if (errno != 0) {
    report(visit.folder->path, errno, nullptr);
    visit.broken = true;
  }
  look_through(visit, names);
}

void Walker::look_through(Visit &visit, std::vector<std::string> &names) {
  std::sort(names.begin(), names.end());
  for (const std::string &name : names) {
    if (shared_.stopping || visit.broken) break;
    look_at_file(visit, name);
  }
  shared_.progress.saw(names.size());
  names.clear();
}

void Walker::look_at_file(Visit &visit, const std::string &name) {
  const auto entry = look_at(visit.descriptor->get(), name.c_str(), visit.stable);
  if (!entry) {
    if (errno == ENOENT) return;
    if (errno == EACCES) {
      // The folder may be listed but not entered: this is so for each of its files.
      report(visit.folder->path, errno, nullptr);
      visit.broken = true;
      return;
    }
    known_->keep(name);
    shared_.progress.problem("The file " + display_name(join(visit.folder->path, name)) +
                             " cannot be read: " + g_strerror(errno) + ".");
    return;
  }
  if (entry->folder) visit.subfolders.push_back(name);
  if (!entry->regular || kind_by_name(name) == 0) return;
  if (known_->see(name, entry->state) != KnownFiles::Answer::kUnchanged) take(visit, name, *entry);
}

void Walker::take(Visit &visit, const std::string &name, const Entry &entry) {
  if (!fits_records(visit.folder->path, name)) {
    shared_.progress.problem("The path " + display_name(join(visit.folder->path, name)) +
                             " is too long for the list of pictures.");
    return;
  }
  visit.candidates.push_back({name, entry.state, kind_by_name(name)});
  const std::size_t most = shared_.ready ? kFilesAtOnce : kFirstFiles;
  if (visit.candidates.size() >= most) submit(visit);
}

void Walker::submit(Visit &visit) {
  if (visit.candidates.empty()) return;
  pool_.submit({visit.folder, visit.descriptor, std::move(visit.candidates)});
  visit.candidates.clear();
}

void Walker::report_lost(const Visit &visit) {
  std::vector<Lost> lost = known_->unseen();
  // A file may have come back since its folder was read.
  std::erase_if(lost, [&](const Lost &file) {
    const auto entry = look_at(visit.descriptor->get(), file.name.c_str());
    return entry ? entry->regular : errno != ENOENT;
  });
  if (lost.empty()) return;
  // A file that was renamed is found under its new name first: nobody sees it missing between.
  pool_.wait_until_idle();
  writer_.post_when_due([lost](Writer &writer) { writer.lose(lost); });
}

void Walker::descend(const Visit &visit, Pass &pass) {
  for (const std::string &name : visit.subfolders) {
    if (shared_.stopping) return;
    if (is_hidden(name)) continue;
    const std::string path = join(visit.folder->path, name);
    if (!pass.deep && watches_.knows(path)) {
      pass.paths.insert(path);
      continue;
    }
    if (!folder_fits_records(path)) {
      shared_.progress.problem("The path " + display_name(path) +
                               " is too long for the list of pictures.");
      continue;
    }
    Fd descriptor = open_folder_in(visit.descriptor->get(), name.c_str());
    if (descriptor) {
      this->visit(std::move(descriptor), path, pass);
    } else if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
      report(path, errno, &pass);
    }
  }
}

std::optional<gint32> Walker::find_album(const Folder &folder, bool at_the_end) {
  gint32 known = 0;
  bool same = false;
  bool same_device = false;
  {
    Cursor row(album_by_path_, std::string_view(folder.path));
    if (row.next()) {
      known = row.number(0);
      same_device = static_cast<guint64>(row.integer(1)) == folder.device;
      same = static_cast<guint64>(row.integer(2)) == folder.inode && row.integer(3) == folder.born;
    }
  }
  if (same) {
    // Devices get other numbers when the system starts.
    if (!same_device) {
      writer_.post([known, folder](Writer &writer) { writer.refresh_folder(known, folder); });
    }
    return known;
  }
  if (const auto album = renamed_album(folder)) {
    writer_.post([album, folder](Writer &writer) { writer.move_folder(*album, folder); });
    settle();
    return album;
  }
  if (known != 0 && !at_the_end) return std::nullopt;
  return known;
}

std::optional<gint32> Walker::renamed_album(const Folder &folder) {
  if (folder.inode == 0) return std::nullopt;
  Cursor row(album_by_identity_, folder.inode, folder.device, folder.born,
             std::string_view(folder.path));
  while (row.next()) {
    const std::string old_path(row.text(1));
    const auto there = look_at(AT_FDCWD, old_path.c_str());
    const bool same = there && there->state.inode == folder.inode && there->born == folder.born;
    if (!same) return row.number(0);
  }
  return std::nullopt;
}

void Walker::scan_names(const std::string &path, const std::set<std::string> &names) {
  Visit here;
  here.descriptor = std::make_shared<const Fd>(open_shown(path));
  Pass pass;
  pass.at_the_end = true;
  if (!*here.descriptor || !enter(here, path, pass)) return;
  std::vector<Lost> lost;
  for (const std::string &name : names) {
    const auto entry = look_at(here.descriptor->get(), name.c_str(), here.stable);
    if (!entry && errno != ENOENT) continue;
    const KnownFiles::Single known = known_->find(here.album, name);
    if (entry && entry->regular) {
      if (known.id == 0 || known.state != entry->state) take(here, name, *entry);
    } else if (known.id != 0) {
      lost.push_back({known.id, here.album, name});
    }
  }
  submit(here);
  if (lost.empty()) return;
  pool_.wait_until_idle();
  writer_.post([lost](Writer &writer) { writer.lose(lost); });
}

}  // namespace phone::media

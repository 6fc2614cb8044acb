#include "media-browser/storage.hpp"

#include <fcntl.h>
#include <glib.h>
#include <glib/gstdio.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "glib-ptr.hpp"
#include "media-browser/display.hpp"
#include "media-browser/schema.hpp"

namespace phone::media {

namespace {

constexpr const char *kSideFiles[] = {"", "-wal", "-shm"};

void rename_with_logs(const std::string &from, const std::string &to) {
  for (const char *suffix : kSideFiles) {
    if (rename((from + suffix).c_str(), (to + suffix).c_str()) != 0 && errno == ENOENT) {
      // What is left of an earlier broken file would be taken for a part of this one.
      unlink((to + suffix).c_str());
    }
  }
}

bool can_be_written(const std::string &folder) {
  const std::string probe = folder + "/.probe";
  const int fd = open(probe.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (fd < 0) return false;
  close(fd);
  unlink(probe.c_str());
  return true;
}

}  // namespace

std::string data_folder() {
  const std::string folder = std::string(g_get_user_data_dir()) + "/photobrowser";
  g_mkdir_with_parents(folder.c_str(), 0700);
  return folder;
}

std::vector<std::string> canonical_roots(const std::vector<std::string> &roots) {
  std::vector<std::string> result;
  for (const std::string &root : roots) {
    const pb::StringPtr absolute(g_canonicalize_filename(root.c_str(), nullptr));
    result.emplace_back(absolute.get());
  }
  std::sort(result.begin(), result.end());
  result.erase(std::unique(result.begin(), result.end()), result.end());
  return result;
}

std::string index_name(const std::vector<std::string> &roots) {
  const std::unique_ptr<GChecksum, pb::FreeWith<g_checksum_free>> sum(
      g_checksum_new(G_CHECKSUM_SHA256));
  for (const std::string &root : roots) {
    // The NUL goes in as well: it is the one byte that no path has.
    g_checksum_update(sum.get(), reinterpret_cast<const guchar *>(root.c_str()),
                      static_cast<gssize>(root.size() + 1));
  }
  constexpr std::size_t kHashLength = 16;
  return "index-" + std::string(g_checksum_get_string(sum.get())).substr(0, kHashLength) +
         ".sqlite";
}

IndexStorage::IndexStorage(const std::vector<std::string> &roots) {
  const std::string folder = data_folder();
  const std::string path = folder + "/" + index_name(roots);
  if (!can_be_written(folder)) {
    use_temporary_folder("The list of pictures cannot be kept in " + display_name(folder) + ": " +
                         g_strerror(errno) + ". It is made anew at each start.");
  } else if (!hold(path)) {
    use_temporary_folder(
        "Another gallery keeps the list of these pictures. This one makes its own for now.");
  } else {
    path_ = path;
  }
}

IndexStorage::~IndexStorage() {
  if (!temporary_folder_.empty()) {
    for (const char *suffix : kSideFiles) unlink((path_ + suffix).c_str());
    for (const char *suffix : kSideFiles) unlink((path_ + ".broken" + suffix).c_str());
    rmdir(temporary_folder_.c_str());
  }
  if (lock_ >= 0) close(lock_);
}

bool IndexStorage::hold(const std::string &path) {
  const int fd = open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (fd < 0) return false;
  if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
    close(fd);
    return false;
  }
  lock_ = fd;
  return true;
}

void IndexStorage::use_temporary_folder(const std::string &why) {
  problems_.push_back(why);
  const pb::StringPtr folder(g_dir_make_tmp("photobrowser-index-XXXXXX", nullptr));
  if (!folder) return;
  temporary_folder_ = folder.get();
  path_ = temporary_folder_ + "/index.sqlite";
}

int IndexStorage::open_once(Database &database, bool &damaged) {
  int code = database.open(path_);
  damaged = is_damage(code);
  if (code != SQLITE_OK) return code;
  switch (prepare_index(database, code)) {
    case Prepared::kReady:
      return SQLITE_OK;
    case Prepared::kNewer:
    case Prepared::kForeign:
      damaged = true;
      return SQLITE_NOTADB;
    case Prepared::kFailed:
      damaged = is_damage(code);
      return code;
  }
  return SQLITE_ERROR;
}

int IndexStorage::open_for_writing(Database &database) {
  if (path_.empty()) return SQLITE_CANTOPEN;
  bool damaged = false;
  int code = open_once(database, damaged);
  if (damaged) {
    database.keep_log_on_close();
    database.close();
    set_aside();
    problems_.emplace_back("The list of pictures was damaged. It is being made anew.");
    code = open_once(database, damaged);
  }
  if (code != SQLITE_OK && temporary_folder_.empty()) {
    database.close();
    use_temporary_folder("The list of pictures cannot be kept in " + display_name(path_) + ": " +
                         sqlite3_errstr(code) + ". It is made anew at each start.");
    if (!temporary_folder_.empty()) code = open_once(database, damaged);
  }
  if (code != SQLITE_OK) database.close();
  return code;
}

int IndexStorage::open_for_reading(Database &database) const {
  const int code = database.open(path_);
  if (code != SQLITE_OK) return code;
  database.keep_log_on_close();
  return database.run("PRAGMA query_only = ON");
}

void IndexStorage::set_aside() const { rename_with_logs(path_, path_ + ".broken"); }

bool open_user_data(Database &database, std::string &problem) {
  const std::string path = data_folder() + "/user.sqlite";
  problem.clear();
  for (int attempt = 0; attempt < 2; ++attempt) {
    int code = database.open(path);
    Prepared state = Prepared::kFailed;
    if (code == SQLITE_OK) state = prepare_user_data(database, code);
    if (state == Prepared::kReady) code = quick_check(database);
    if (state == Prepared::kReady && code == SQLITE_OK) return true;
    database.keep_log_on_close();
    database.close();
    if (state == Prepared::kNewer) {
      problem = "A later version of the gallery has written " + display_name(path) +
                ". Favourites are not shown.";
      return false;
    }
    if (!is_damage(code) && state != Prepared::kForeign) {
      problem =
          "Favourites cannot be kept in " + display_name(path) + ": " + sqlite3_errstr(code) + ".";
      return false;
    }
    // A name of its own each time: what people have marked is never thrown away.
    const std::string kept = path + ".broken-" + std::to_string(g_get_real_time());
    rename_with_logs(path, kept);
    problem = "The file with your favourites was damaged. It is kept as " + display_name(kept) +
              ", and a new one is used.";
  }
  return false;
}

}  // namespace phone::media

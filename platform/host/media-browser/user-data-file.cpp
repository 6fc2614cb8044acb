#include "media-browser/user-data-file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <vector>

#include "glib-ptr.hpp"
#include "media-browser/display.hpp"
#include "media-browser/folder-fd.hpp"

namespace phone::media {

namespace {

constexpr const char *kFormat = "photobrowser-user-data";
/// A million favourites take about 250 MB.
constexpr off_t kLargestFile = 512 * 1024 * 1024;

std::string refusal(const char *what, const std::string &path, const std::string &why) {
  return std::string("Favourites cannot be ") + what + " " + display_name(path) + ": " + why + ".";
}

/// Paths are bytes and JSON is UTF-8, so files are named by URIs, which are plain ASCII.
std::string uri_of(std::string_view path) {
  const pb::StringPtr uri(g_filename_to_uri(std::string(path).c_str(), nullptr, nullptr));
  return uri ? uri.get() : "";
}

std::string path_of_uri(std::string_view uri) {
  const pb::StringPtr path(g_filename_from_uri(std::string(uri).c_str(), nullptr, nullptr));
  return path ? path.get() : "";
}

/// A 64-bit number as JSON text: readers that keep numbers as doubles would round it.
std::string quoted(gint64 value) { return '"' + std::to_string(value) + '"'; }

void append_file(std::string &text, const Cursor &row) {
  text += "\n    {\"uri\": \"" + uri_of(row.text(0)) + "\", \"inode\": " + quoted(row.integer(1)) +
          ", \"size\": " + quoted(row.integer(2)) + ", \"mtime\": " + quoted(row.integer(3)) +
          ", \"favourite\": " + ((row.number(4) & kFavourite) != 0 ? "true" : "false") +
          ", \"marked\": " + ((row.number(4) & kMarked) != 0 ? "true" : "false") +
          ", \"web_id\": " + quoted(row.integer(5)) +
          ", \"gone\": " + (row.number(6) != 0 ? "true" : "false") + "}";
}

/// Everything that is known, from one state of the database. Nothing when it cannot be read.
std::optional<std::string> text_of(const UserData &data) {
  std::string text =
      std::string("{\n  \"format\": \"") + kFormat + "\",\n  \"version\": 1,\n" + "  \"files\": [";
  const bool read = data.change([&text](const Database &database) {
    const char *comma = "";
    const Statement files = database.prepare(
        "SELECT path, inode, size, mtime, flags, nfid, gone FROM files ORDER BY path");
    Cursor file(files);
    for (; file.next(); comma = ",") {
      text += comma;
      append_file(text, file);
    }
    text += "\n  ],\n  \"folders\": [";
    comma = "";
    const Statement folders = database.prepare("SELECT path, naid FROM albums ORDER BY path");
    Cursor folder(folders);
    for (; folder.next(); comma = ",") {
      text += std::string(comma) + "\n    {\"uri\": \"" + uri_of(folder.text(0)) +
              "\", \"web_id\": " + quoted(folder.integer(1)) + "}";
    }
    text += "\n  ]\n}\n";
    return !file.failed() && !folder.failed();
  });
  return read ? std::optional(std::move(text)) : std::nullopt;
}

bool write_all(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// @return 0, or the error; then nothing has changed
int write_file(const std::string &path, std::string_view text) {
  const std::size_t slash = path.rfind('/') + 1;  // 0 without a slash
  std::string hidden = path.substr(0, slash) + ".photobrowser-XXXXXX";
  const Fd file(mkostemp(hidden.data(), O_CLOEXEC));
  if (!file) return errno;
  if (write_all(file.get(), text) && fsync(file.get()) == 0 &&
      rename(hidden.c_str(), path.c_str()) == 0) {
    return 0;
  }
  const int error = errno;
  unlink(hidden.c_str());
  return error;
}

/// @return nothing with errno when it cannot be read
std::optional<std::string> read_file(const std::string &path) {
  const Fd file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info;
  if (!file || fstat(file.get(), &info) != 0) return std::nullopt;
  errno = S_ISDIR(info.st_mode) ? EISDIR : !S_ISREG(info.st_mode) ? EINVAL : EFBIG;
  if (!S_ISREG(info.st_mode) || info.st_size > kLargestFile) return std::nullopt;
  std::string text(static_cast<std::size_t>(info.st_size), '\0');
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t got = read(file.get(), text.data() + done, text.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  text.resize(done);
  return text;
}

bool is_ours(const Database &database, std::string_view text) {
  // Asked one after the other: the questions about the content fail for what is no JSON.
  const Statement valid = database.prepare("SELECT json_valid(?)");
  Cursor is_json(valid, text);
  if (!is_json.next() || is_json.number(0) != 1) return false;
  const Statement head = database.prepare(
      "SELECT json_extract(?1, '$.format') = ?2 AND json_extract(?1, '$.version') = 1 "
      "AND json_type(?1, '$.files') = 'array' AND json_type(?1, '$.folders') = 'array'");
  Cursor row(head, text, std::string_view(kFormat));
  return row.next() && row.number(0) == 1;
}

// A number stands as text; what does not read as the same number again is refused.
constexpr const char *kEntries =
    "SELECT json_extract(value, '$.uri'), json_extract(value, '$.inode'), "
    "json_extract(value, '$.size'), json_extract(value, '$.mtime'), "
    "json_extract(value, '$.favourite'), json_extract(value, '$.marked'), "
    "json_extract(value, '$.web_id'), json_extract(value, '$.gone') FROM json_each(?, '$.files')";

constexpr const char *kAdd =
    "INSERT INTO files(path, inode, size, mtime, flags, nfid, gone) VALUES(?, ?, ?, ?, ?, ?, ?) "
    "ON CONFLICT(path) DO UPDATE SET flags = flags | excluded.flags, "
    "nfid = CASE WHEN nfid = 0 THEN excluded.nfid ELSE nfid END";

std::optional<gint64> number_in(const Cursor &row, int column) {
  const std::string text(row.text(column));
  gint64 number = 0;
  const char *const digits = text.c_str();
  char *end = nullptr;
  errno = 0;
  number = g_ascii_strtoll(digits, &end, 10);
  if (text.empty() || errno != 0 || *end != '\0') return std::nullopt;
  return number;
}

bool add_files(const Database &database, std::string_view text) {
  const Statement entries = database.prepare(kEntries);
  const Statement add = database.prepare(kAdd);
  Cursor row(entries, text);
  while (row.next()) {
    const std::string path = path_of_uri(row.text(0));
    const auto inode = number_in(row, 1);
    const auto size = number_in(row, 2);
    const auto mtime = number_in(row, 3);
    const auto web_id = number_in(row, 6);
    if (path.empty() || !inode || !size || !mtime || !web_id) return false;
    const int flags = (row.number(4) != 0 ? kFavourite : 0) | (row.number(5) != 0 ? kMarked : 0);
    const int gone = row.number(7) != 0 ? 1 : 0;
    if (!Cursor(add, std::string_view(path), *inode, *size, *mtime, flags, *web_id, gone).run()) {
      return false;
    }
  }
  return !row.failed();
}

bool add_folders(const Database &database, std::string_view text) {
  const Statement entries = database.prepare(
      "SELECT json_extract(value, '$.uri'), json_extract(value, '$.web_id') "
      "FROM json_each(?, '$.folders')");
  const Statement add = database.prepare("INSERT OR IGNORE INTO albums(path, naid) VALUES(?, ?)");
  Cursor row(entries, text);
  while (row.next()) {
    const std::string path = path_of_uri(row.text(0));
    const auto web_id = number_in(row, 1);
    if (path.empty() || !web_id) return false;
    if (!Cursor(add, std::string_view(path), *web_id).run()) return false;
  }
  return !row.failed();
}

}  // namespace

bool export_user_data(const UserData &data, const std::string &path, std::string &problem) {
  const auto text = text_of(data);
  if (!text) {
    problem = refusal("written to", path, "what is known of your pictures cannot be read");
    return false;
  }
  const int error = write_file(path, *text);
  if (error != 0) problem = refusal("written to", path, g_strerror(error));
  return error == 0;
}

bool import_user_data(UserData &data, const std::string &path, std::string &problem) {
  const auto text = read_file(path);
  if (!text) {
    problem = refusal("read from", path, g_strerror(errno));
    return false;
  }
  const bool ours =
      data.with([&text](const Database &database) { return is_ours(database, *text); });
  if (!ours) {
    problem = refusal("read from", path, "it is not a file that a gallery has written");
    return false;
  }
  const bool added = data.add([&text](const Database &database) {
    return add_files(database, *text) && add_folders(database, *text);
  });
  if (!added) problem = refusal("read from", path, "an entry is wrong, or they cannot be stored");
  return added;
}

}  // namespace phone::media

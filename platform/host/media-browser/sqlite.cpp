#include "media-browser/sqlite.hpp"

#include "media-browser/natural-order.hpp"

namespace phone::media {

namespace {

constexpr int kBusyTimeoutMs = 2000;

int collate_naturally(void *, int a_length, const void *a, int b_length, const void *b) {
  return compare_naturally({static_cast<const char *>(a), static_cast<std::size_t>(a_length)},
                           {static_cast<const char *>(b), static_cast<std::size_t>(b_length)});
}

}  // namespace

int Database::open(const std::string &path) {
  close();
  // Each connection has one user at a time, so SQLite need not lock it as well.
  const int flags =
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const int code = sqlite3_open_v2(path.c_str(), &raw_, flags, nullptr);
  if (code != SQLITE_OK) {
    close();
    return code;
  }
  sqlite3_busy_timeout(raw_, kBusyTimeoutMs);
  sqlite3_db_config(raw_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(raw_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_create_collation_v2(raw_, "filename", SQLITE_UTF8, nullptr, collate_naturally, nullptr);
  return run("PRAGMA cell_size_check = ON");
}

void Database::close() {
  if (raw_ != nullptr) sqlite3_close_v2(std::exchange(raw_, nullptr));
}

int Database::run(const char *sql) const {
  if (raw_ == nullptr) return SQLITE_MISUSE;
  return sqlite3_exec(raw_, sql, nullptr, nullptr, nullptr);
}

Statement Database::prepare(const char *sql) const {
  sqlite3_stmt *statement = nullptr;
  if (raw_ != nullptr) {
    sqlite3_prepare_v3(raw_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  }
  return Statement(statement);
}

gint64 Database::ask(const char *sql, gint64 fallback) const {
  const Statement statement = prepare(sql);
  Cursor row(statement);
  return row.next() && !row.is_null(0) ? row.integer(0) : fallback;
}

void Database::keep_log_on_close() const {
  if (raw_ != nullptr) sqlite3_db_config(raw_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

bool is_damage(int code) {
  const int primary = code & 0xff;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_FORMAT;
}

}  // namespace phone::media

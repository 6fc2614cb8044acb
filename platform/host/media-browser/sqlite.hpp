/// Owners and value binding for SQLite's handles.
#pragma once

#include <glib.h>
#include <sqlite3.h>

#include <string>
#include <string_view>
#include <utility>

namespace phone::media {

/// Owns one prepared statement. Moving is enough: it lives as long as its database.
class Statement {
 public:
  Statement() = default;
  explicit Statement(sqlite3_stmt *raw) : raw_(raw) {}
  Statement(Statement &&other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
  Statement &operator=(Statement &&other) noexcept {
    if (this != &other) {
      sqlite3_finalize(raw_);
      raw_ = std::exchange(other.raw_, nullptr);
    }
    return *this;
  }
  ~Statement() { sqlite3_finalize(raw_); }

  [[nodiscard]] sqlite3_stmt *get() const { return raw_; }
  explicit operator bool() const { return raw_ != nullptr; }

 private:
  sqlite3_stmt *raw_ = nullptr;
};

/// One run of a statement, from its first row to its reset. Texts that are bound must outlive it.
/// A run of an empty statement fails.
class Cursor {
 public:
  template <typename... Values>
  explicit Cursor(const Statement &statement, const Values &...values) : raw_(statement.get()) {
    if (raw_ == nullptr) return;
    int index = 0;
    (bind(++index, values), ...);
  }
  ~Cursor() {
    if (raw_ == nullptr) return;
    sqlite3_reset(raw_);
    sqlite3_clear_bindings(raw_);
  }
  Cursor(const Cursor &) = delete;
  Cursor &operator=(const Cursor &) = delete;

  /// Steps to the next row; false behind the last one and after a failure.
  bool next() {
    if (raw_ == nullptr) return false;
    result_ = sqlite3_step(raw_);
    return result_ == SQLITE_ROW;
  }
  /// Runs a statement that has no rows; false when it fails.
  bool run() {
    next();
    return !failed();
  }
  [[nodiscard]] bool failed() const { return result_ != SQLITE_ROW && result_ != SQLITE_DONE; }
  /// SQLite's code of the last step.
  [[nodiscard]] int result() const { return result_; }

  [[nodiscard]] gint64 integer(int column) const { return sqlite3_column_int64(raw_, column); }
  [[nodiscard]] int number(int column) const { return sqlite3_column_int(raw_, column); }
  [[nodiscard]] bool is_null(int column) const {
    return sqlite3_column_type(raw_, column) == SQLITE_NULL;
  }
  /// Good until the next step.
  [[nodiscard]] std::string_view text(int column) const {
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(raw_, column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(raw_, column))};
  }

 private:
  void bind(int index, gint64 value) { sqlite3_bind_int64(raw_, index, value); }
  void bind(int index, guint64 value) {
    sqlite3_bind_int64(raw_, index, static_cast<gint64>(value));
  }
  void bind(int index, int value) { sqlite3_bind_int(raw_, index, value); }
  void bind(int index, std::string_view value) {
    sqlite3_bind_text(raw_, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  }
  void bind(int index, std::nullptr_t) { sqlite3_bind_null(raw_, index); }

  sqlite3_stmt *raw_;
  int result_ = SQLITE_MISUSE;
};

/// Owns a connection. One thread at a time.
class Database {
 public:
  Database() = default;
  Database(Database &&other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
  Database &operator=(Database &&other) noexcept {
    if (this != &other) {
      close();
      raw_ = std::exchange(other.raw_, nullptr);
    }
    return *this;
  }
  ~Database() { close(); }

  /// Opens a file; it is made when missing. Waits up to two seconds for another writer.
  /// @return SQLITE_OK or SQLite's code
  [[nodiscard]] int open(const std::string &path);
  void close();
  [[nodiscard]] bool is_open() const { return raw_ != nullptr; }
  [[nodiscard]] sqlite3 *get() const { return raw_; }

  /// Runs SQL without results. @return SQLITE_OK or SQLite's code
  int run(const char *sql) const;
  /// @return an empty statement when the SQL does not fit the schema
  [[nodiscard]] Statement prepare(const char *sql) const;
  /// The first column of the first row as a number; fallback when there is none.
  [[nodiscard]] gint64 ask(const char *sql, gint64 fallback) const;
  /// Leaves the write-ahead log alone when this connection closes: it may have been renamed
  /// since, and SQLite would remove another file by the old name.
  void keep_log_on_close() const;

 private:
  sqlite3 *raw_ = nullptr;
};

/// Whether a code says that the file itself is broken.
[[nodiscard]] bool is_damage(int code);

}  // namespace phone::media

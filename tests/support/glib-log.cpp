#include <algorithm>
#include <mutex>
#include <utility>

#include "support/glib-test.hpp"
#include "support/process.hpp"

namespace support {
namespace {

/// What GLib's log has been given since the test took it last.
class Record {
 public:
  void add_warning(std::string text) {
    const std::scoped_lock lock(mutex_);
    warnings_.push_back(std::move(text));
  }
  void add_line(StructuredLine line) {
    const std::scoped_lock lock(mutex_);
    lines_.push_back(std::move(line));
  }
  std::vector<std::string> take_warnings() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(warnings_, {});
  }
  std::vector<StructuredLine> take_lines() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> warnings_;  // guarded by mutex_
  std::vector<StructuredLine> lines_;  // guarded by mutex_
};

/// Never destroyed: threads may log until the process ends.
Record &record() {
  static auto *instance = new Record;
  return *instance;
}

bool is_warning(GLogLevelFlags level) {
  return (level & (G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL)) != 0;
}

void take_unstructured(const gchar *domain, GLogLevelFlags level, const gchar *message, gpointer) {
  if (is_warning(level)) {
    record().add_warning(message);
  } else {
    g_log_default_handler(domain, level, message, nullptr);
  }
}

std::string text_of(const GLogField &field) {
  const auto *bytes = static_cast<const char *>(field.value);
  return field.length < 0 ? std::string(bytes) : std::string(bytes, field.length);
}

GLogWriterOutput take_structured(GLogLevelFlags level, const GLogField *fields, gsize n_fields,
                                 gpointer) {
  if ((level & G_LOG_LEVEL_ERROR) != 0) {
    return g_log_writer_default(level, fields, n_fields, nullptr);
  }
  StructuredLine line{level, {}};
  std::for_each_n(fields, n_fields,
                  [&line](const GLogField &field) { line.fields[field.key] = text_of(field); });
  if (is_warning(level)) {
    record().add_warning(line.fields["MESSAGE"]);
  } else {
    record().add_line(std::move(line));
  }
  return G_LOG_WRITER_HANDLED;
}

/// Fails a test that leaves a warning behind.
class WarningsAreFailures : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo &) override {
    take_glib_warnings();
    take_structured_lines();
  }
  void OnTestEnd(const testing::TestInfo &) override {
    for (const std::string &warning : take_glib_warnings()) {
      ADD_FAILURE() << "GLib warned, and the test did not take it:\n  " << warning;
    }
  }
};

}  // namespace

void record_glib_log() {
  g_log_set_default_handler(take_unstructured, nullptr);
  g_log_set_writer_func(take_structured, nullptr, nullptr);
  testing::UnitTest::GetInstance()->listeners().Append(new WarningsAreFailures);
}

std::vector<std::string> take_glib_warnings() { return record().take_warnings(); }

std::vector<StructuredLine> take_structured_lines() { return record().take_lines(); }

}  // namespace support

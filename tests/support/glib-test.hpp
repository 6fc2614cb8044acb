/// What every test program has: GLib's warnings are recorded, and a test that leaves one untaken
/// fails, whether it uses a fixture or not.
#pragma once

#include <glib-object.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <source_location>
#include <string>
#include <vector>

namespace support {

/// GLib's warnings and critical warnings since the last call, oldest first, from any thread, as
/// "pb_note_get_revision: assertion 'PB_IS_NOTE(note)' failed".
std::vector<std::string> take_glib_warnings();

/// A line of GLib's structured log that is no warning.
struct StructuredLine {
  GLogLevelFlags level;
  std::map<std::string, std::string> fields;
};

/// Structured lines below a warning since the last call, oldest first, from any thread.
std::vector<StructuredLine> take_structured_lines();

/// Fixture for tests that take warnings.
class GlibTest : public testing::Test {
 protected:
  static std::vector<std::string> take_glib_warnings() { return support::take_glib_warnings(); }
};

/// Fixture for tests that need a display: initialises GTK+. Without a display its tests fail;
/// with PB_TESTS_WITHOUT_DISPLAY=1 in the environment they are skipped instead. Derived fixtures
/// with a SetUp() of their own call this one first.
class DisplayTest : public GlibTest {
 protected:
  void SetUp() override;
};

/// Fails the test when an object lives on after this watch, declared in front of the owners.
class ExpectFinalized {
 public:
  explicit ExpectFinalized(gpointer object,
                           std::source_location where = std::source_location::current());
  ~ExpectFinalized();
  ExpectFinalized(const ExpectFinalized &) = delete;
  ExpectFinalized &operator=(const ExpectFinalized &) = delete;

  [[nodiscard]] bool finalized() const { return finalized_; }

 private:
  static void note_finalized(gpointer self);

  gpointer object_;
  std::string type_;
  std::source_location where_;
  bool finalized_ = false;
};

}  // namespace support

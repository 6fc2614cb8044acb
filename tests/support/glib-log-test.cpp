#include <gtest/gtest-spi.h>

#include "support/glib-test.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GlibWarnings, CarryTheTextOfACriticalWarning) {
  g_return_if_fail_warning("photobrowser", "pb_note_get_revision", "PB_IS_NOTE(note)");

  EXPECT_THAT(support::take_glib_warnings(),
              ElementsAre("pb_note_get_revision: assertion 'PB_IS_NOTE(note)' failed"));
}

TEST(GlibWarnings, CarryTheTextOfAWarning) {
  g_log("domain", G_LOG_LEVEL_WARNING, "%d left", 3);

  EXPECT_THAT(support::take_glib_warnings(), ElementsAre("3 left"));
}

TEST(GlibWarnings, AreRecordedFromTheStructuredLog) {
  g_log_structured("domain", G_LOG_LEVEL_CRITICAL, "MESSAGE", "%s", "broken");

  EXPECT_THAT(support::take_glib_warnings(), ElementsAre("broken"));
}

TEST(GlibWarnings, AreGoneOnceTaken) {
  g_warning("once");
  support::take_glib_warnings();

  EXPECT_THAT(support::take_glib_warnings(), IsEmpty());
}

TEST(GlibWarnings, DoNotCountLowerLevels) {
  g_message("hello");
  g_debug("hello");

  EXPECT_THAT(support::take_glib_warnings(), IsEmpty());
}

TEST(StructuredLines, KeepTheirFields) {
  const GLogField fields[] = {{"MESSAGE", "hello", -1}, {"MODULE", "abcdef", 3}};
  g_log_structured_array(G_LOG_LEVEL_MESSAGE, fields, 2);

  const std::vector<support::StructuredLine> lines = support::take_structured_lines();

  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].level, G_LOG_LEVEL_MESSAGE);
  EXPECT_EQ(lines[0].fields.at("MESSAGE"), "hello");
  EXPECT_EQ(lines[0].fields.at("MODULE"), "abc");
}

TEST(ExpectFinalized, IsSatisfiedByAFreedObject) {
  auto *object = static_cast<GObject *>(g_object_new(G_TYPE_OBJECT, nullptr));
  const support::ExpectFinalized watch(object);

  g_object_unref(object);

  EXPECT_TRUE(watch.finalized());
}

GObject *kept = nullptr;

TEST(ExpectFinalized, FailsForAnObjectThatLivesOn) {
  EXPECT_NONFATAL_FAILURE(
      {
        kept = static_cast<GObject *>(g_object_new(G_TYPE_OBJECT, nullptr));
        const support::ExpectFinalized watch(kept);
      },
      "a GObject was not finalised; 1 reference(s) left");
  g_object_unref(kept);
}

}  // namespace

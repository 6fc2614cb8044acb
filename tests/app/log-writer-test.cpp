#include "log-writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

using gallery::hidden_warnings;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

/// What the writer puts on the terminal for a message.
std::string written(GLogLevelFlags level, const char *message) {
  const std::array<GLogField, 2> fields{GLogField{"MESSAGE", message, -1},
                                        GLogField{"GLIB_DOMAIN", "photobrowser", -1}};
  fflush(stderr);
  CaptureStderr();
  gallery::write_log_line(level, fields.data(), fields.size(), nullptr);
  return GetCapturedStderr();
}

constexpr const char *kNoThumbnail =
    "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed";

}  // namespace

TEST(LogWriter, CountsThumbnailsThatAreNotThereYet) {
  EXPECT_EQ(written(G_LOG_LEVEL_CRITICAL, kNoThumbnail), "");
  EXPECT_EQ(written(G_LOG_LEVEL_CRITICAL, kNoThumbnail), "");

  EXPECT_EQ(hidden_warnings(), 2U);
}

TEST(LogWriter, WritesThemOnRequest) {
  g_setenv("PHOTOBROWSER_DEBUG", "1", TRUE);

  EXPECT_THAT(written(G_LOG_LEVEL_CRITICAL, kNoThumbnail), HasSubstr(kNoThumbnail));
  EXPECT_EQ(hidden_warnings(), 0U);
}

TEST(LogWriter, WritesOtherFailedChecks) {
  const char *message = "pb_item_get_pixbuf: assertion 'item->filename' failed";

  EXPECT_THAT(written(G_LOG_LEVEL_CRITICAL, message), HasSubstr(message));
}

TEST(LogWriter, WritesTheSameWordsOfAnotherLevel) {
  EXPECT_THAT(written(G_LOG_LEVEL_MESSAGE, kNoThumbnail), HasSubstr(kNoThumbnail));
}

TEST(LogWriter, BearsALineWithoutText) {
  const GLogField field{"GLIB_DOMAIN", "photobrowser", -1};
  CaptureStderr();

  gallery::write_log_line(G_LOG_LEVEL_CRITICAL, &field, 1, nullptr);

  GetCapturedStderr();
  EXPECT_EQ(hidden_warnings(), 0U);
}

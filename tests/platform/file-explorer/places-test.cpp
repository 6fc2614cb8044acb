/// Connections, paths and storages of the file explorer.
#include <file-explorer.h>
#include <gmock/gmock.h>
#include <sys/statvfs.h>

#include <array>
#include <cstring>
#include <string>

#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace {

using Connection = support::GlibTest;

TEST_F(Connection, NamesItself) {
  gint handle = 0;

  EXPECT_TRUE(fexplorer_initialize(&handle));

  EXPECT_NE(handle, 0);
  EXPECT_TRUE(fexplorer_finalize());
}

TEST_F(Connection, NeedsNoName) {
  EXPECT_TRUE(fexplorer_initialize(nullptr));
  EXPECT_TRUE(fexplorer_finalize());
}

TEST_F(Connection, Nests) {
  fexplorer_initialize(nullptr);
  fexplorer_initialize(nullptr);

  EXPECT_TRUE(fexplorer_finalize());
  EXPECT_TRUE(fexplorer_finalize());
  EXPECT_FALSE(fexplorer_finalize());
}

TEST_F(Connection, CannotEndBeforeItBegins) { EXPECT_FALSE(fexplorer_finalize()); }

/// A buffer of the agreed size with a guard behind it.
struct Buffer {
  std::array<gchar, FEXPLORER_PATH_SIZE> path;
  std::array<gchar, 8> guard;

  Buffer() { std::memset(this, 0x7f, sizeof *this); }
  [[nodiscard]] bool guarded() const {
    return std::all_of(guard.begin(), guard.end(), [](gchar byte) { return byte == 0x7f; });
  }
};

using FullPath = support::GlibTest;

TEST_F(FullPath, IsThePathFromTheRoot) {
  Buffer buffer;

  EXPECT_TRUE(fexplorer_get_full_path("/home/u/Pictures/a.jpg", 0, buffer.path.data()));

  EXPECT_STREQ(buffer.path.data(), "/home/u/Pictures/a.jpg");
}

TEST_F(FullPath, BeginsAtTheRootWithoutASlashToo) {
  Buffer buffer;

  EXPECT_TRUE(fexplorer_get_full_path("home/a.jpg", 0, buffer.path.data()));

  EXPECT_STREQ(buffer.path.data(), "/home/a.jpg");
}

TEST_F(FullPath, TakesWhatJustFits) {
  Buffer buffer;
  const std::string exact = "/" + std::string(FEXPLORER_PATH_SIZE - 2, 'x');

  EXPECT_TRUE(fexplorer_get_full_path(exact.c_str(), 0, buffer.path.data()));

  EXPECT_EQ(exact, buffer.path.data());
  EXPECT_TRUE(buffer.guarded());
}

TEST_F(FullPath, RefusesWhatDoesNotFit) {
  Buffer buffer;
  const std::string longer = "/" + std::string(FEXPLORER_PATH_SIZE - 1, 'x');

  EXPECT_FALSE(fexplorer_get_full_path(longer.c_str(), 0, buffer.path.data()));

  EXPECT_STREQ(buffer.path.data(), "");
  EXPECT_TRUE(buffer.guarded());
}

TEST_F(FullPath, RefusesAnotherStorage) {
  Buffer buffer;

  EXPECT_FALSE(fexplorer_get_full_path("/a.jpg", 1, buffer.path.data()));
  EXPECT_FALSE(fexplorer_get_full_path("/a.jpg", 7, buffer.path.data()));

  EXPECT_STREQ(buffer.path.data(), "");
}

TEST_F(FullPath, RefusesNothing) {
  Buffer buffer;

  EXPECT_FALSE(fexplorer_get_full_path(nullptr, 0, buffer.path.data()));
  EXPECT_FALSE(fexplorer_get_full_path("", 0, buffer.path.data()));
  EXPECT_FALSE(fexplorer_get_full_path("/a.jpg", 0, nullptr));
}

using Card = support::GlibTest;

TEST_F(Card, IsNotSupported) {
  gboolean supported = TRUE;

  EXPECT_TRUE(fexplorer_is_mmc_supported(&supported));
  EXPECT_FALSE(fexplorer_is_mmc_supported(nullptr));

  EXPECT_FALSE(supported);
}

TEST_F(Card, HasIdsOfItsOwn) {
  EXPECT_FALSE(fexplorer_is_mmc_database_index(-1));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(0));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(1));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(0x1fffffff));
  EXPECT_TRUE(fexplorer_is_mmc_database_index(0x20000000));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(0x40000001));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(G_MAXINT));
  EXPECT_FALSE(fexplorer_is_mmc_database_index(G_MININT));
}

using FreeSpace = support::GlibTest;

TEST_F(FreeSpace, IsInKilobytes) {
  gint64 free_kb = -1;
  struct statvfs before;
  ASSERT_EQ(statvfs(support::photobrowser_root().c_str(), &before), 0);

  ASSERT_TRUE(fexplorer_get_available_memory_space(0, &free_kb, nullptr));

  // Others write to the disk meanwhile, but not half of it.
  const gint64 then = static_cast<gint64>(before.f_bavail * before.f_frsize / 1024);
  EXPECT_GT(free_kb, then / 2);
  EXPECT_LT(free_kb, then * 2 + 1);
}

TEST_F(FreeSpace, FailsWithoutACard) {
  gint64 free_kb = 7;
  gint error = 0;

  EXPECT_FALSE(fexplorer_get_available_memory_space(1, &free_kb, &error));
  EXPECT_FALSE(fexplorer_get_available_memory_space(1, &free_kb, nullptr));
  EXPECT_FALSE(fexplorer_get_available_memory_space(0, nullptr, nullptr));

  EXPECT_EQ(free_kb, 7);
  EXPECT_NE(error, 0);
}

}  // namespace

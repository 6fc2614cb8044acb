#include "thumbnail/store.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "file-bytes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"
#include "thumbnail/eviction.hpp"

namespace phone::thumbnail {
namespace {

using pictures::Problem;
using support::exists;
using support::kRed;
using support::solid_pixbuf;
using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

struct stat stat_of(const std::string &path) {
  struct stat info {};
  EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
  return info;
}

/// A status as of a file that need not be there.
struct stat some_file(std::uint64_t inode) {
  struct stat info {};
  info.st_dev = 0x801;
  info.st_ino = inode;
  info.st_size = 4711;
  info.st_mtim = {1715938201, 123456789};
  return info;
}

std::string folder_of(const std::string &path) { return path.substr(0, path.rfind('/')); }

/// Names in a directory, hidden ones included.
std::vector<std::string> names_in(const std::string &path) {
  std::vector<std::string> names;
  GDir *folder = g_dir_open(path.c_str(), 0, nullptr);
  if (folder == nullptr) return names;
  while (const gchar *name = g_dir_read_name(folder)) names.emplace_back(name);
  g_dir_close(folder);
  return names;
}

void set_age(const std::string &path, time_t seconds) {
  const timespec then{time(nullptr) - seconds, 0};
  const timespec times[] = {then, then};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST(StoredPath, LiesBelowTheCacheFolder) {
  const std::string folder = std::string(g_get_user_cache_dir()) + "/photobrowser/thumbnails/";

  const std::string path = stored_path(some_file(7));

  EXPECT_THAT(path, StartsWith(folder));
  EXPECT_THAT(path.substr(folder.size()),
              MatchesRegex("[0-9a-f][0-9a-f]/801-7-1267-66472399\\.123456789\\.jpg"));
}

TEST(StoredPath, DependsOnEverythingThatTellsContentsApart) {
  const struct stat file = some_file(7);
  struct stat other = file;
  other.st_dev = 0x802;
  EXPECT_NE(stored_path(other), stored_path(file));
  other = file;
  other.st_ino = 8;
  EXPECT_NE(stored_path(other), stored_path(file));
  other = file;
  other.st_size = 4712;
  EXPECT_NE(stored_path(other), stored_path(file));
  other = file;
  other.st_mtim.tv_sec++;
  EXPECT_NE(stored_path(other), stored_path(file));
  other = file;
  other.st_mtim.tv_nsec++;
  EXPECT_NE(stored_path(other), stored_path(file));
}

TEST(StoredPath, FitsARecordOrIsEmpty) {
  // Before anything asks GLib for the folder.
  setenv("XDG_CACHE_HOME", ("/tmp/" + std::string(200, 'x')).c_str(), 1);

  EXPECT_EQ(stored_path(some_file(7)), "");
  EXPECT_EQ(stored_frame_path(some_file(7)), "");
  EXPECT_FALSE(is_stored(some_file(7)));
}

TEST(StoredPath, IsTheLongestThatFits) {
  struct stat file {};
  std::memset(&file, 0xff, sizeof file);
  file.st_mtim.tv_nsec = 999999999;

  EXPECT_LT(stored_path(file).size(), 256u);
  EXPECT_THAT(stored_path(file), EndsWith(".jpg"));
}

TEST(Store, HasNothingAtFirst) { EXPECT_FALSE(is_stored(some_file(7))); }

TEST(Store, HasWhatWasSaved) {
  EXPECT_TRUE(save(stored_path(some_file(7)), solid_pixbuf(148, 111, kRed).get()));

  EXPECT_TRUE(is_stored(some_file(7)));
  EXPECT_FALSE(is_stored(some_file(8)));
}

TEST(Store, ReadsWhatWasSaved) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(148, 111, {10, 200, 30}).get());

  const PixbufRef loaded = load_stored(path);

  ASSERT_TRUE(loaded);
  EXPECT_EQ(gdk_pixbuf_get_width(loaded.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(loaded.get()), 111);
  EXPECT_NEAR(support::pixel_at(loaded.get(), 70, 50).green, 200, 4);
}

TEST(Store, IsPrivate) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());

  EXPECT_EQ(stat_of(path).st_mode & 0777, 0600u);
  EXPECT_EQ(stat_of(folder_of(path)).st_mode & 0777, 0700u);
}

TEST(Store, HoldsFinishedFilesAlone) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());

  EXPECT_EQ(names_in(folder_of(path)).size(), 1u);
}

TEST(Store, LeavesNothingBehindWhenTheDiskIsFull) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());
  unlink(path.c_str());
  signal(SIGXFSZ, SIG_IGN);
  const rlimit tight{100, RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &tight);

  const bool saved = save(path, solid_pixbuf(148, 148, kRed).get());

  const rlimit loose{RLIM_INFINITY, RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &loose);
  EXPECT_FALSE(saved);
  EXPECT_TRUE(names_in(folder_of(path)).empty());
}

TEST(Store, SaysOnceThatItCannotBeWritten) {
  support::TempDir dir;
  g_mkdir_with_parents(g_get_user_cache_dir(), 0700);
  const std::string in_the_way = std::string(g_get_user_cache_dir()) + "/photobrowser";
  g_file_set_contents(in_the_way.c_str(), "a file", -1, nullptr);

  EXPECT_FALSE(save(stored_path(some_file(7)), solid_pixbuf(10, 10, kRed).get()));
  EXPECT_FALSE(save(stored_path(some_file(8)), solid_pixbuf(10, 10, kRed).get()));

  std::vector<std::string> said;
  for (const auto &line : support::take_structured_lines()) {
    said.push_back(line.fields.at("MESSAGE"));
  }
  EXPECT_THAT(said, testing::ElementsAre(StartsWith("Thumbnails are not kept: ")));
}

TEST(Store, RemovesAFileThatDoesNotDecode) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(148, 148, kRed).get());
  ASSERT_EQ(truncate(path.c_str(), 700), 0);

  EXPECT_FALSE(load_stored(path));

  EXPECT_FALSE(exists(path));
}

TEST(Store, RemovesAFileOfAnotherFormat) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());
  const test::Bytes png = test::saved_as(solid_pixbuf(10, 10, kRed).get(), "png");
  g_file_set_contents(path.c_str(), png.data(), static_cast<gssize>(png.size()), nullptr);

  EXPECT_FALSE(load_stored(path));

  EXPECT_FALSE(exists(path));
}

TEST(Store, DecodesNoLargePictureHere) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());
  const test::Bytes jpeg = test::jpeg_of(solid_pixbuf(1000, 10, kRed).get());
  g_file_set_contents(path.c_str(), jpeg.data(), static_cast<gssize>(jpeg.size()), nullptr);

  EXPECT_FALSE(load_stored(path));
}

TEST(Store, FollowsNoLink) {
  const support::TempDir dir;
  const std::string target = dir.write("original", test::jpeg_of(solid_pixbuf(10, 10, kRed).get()));
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());
  unlink(path.c_str());
  ASSERT_EQ(symlink(target.c_str(), path.c_str()), 0);

  EXPECT_FALSE(is_stored(some_file(7)));
  EXPECT_FALSE(load_stored(path));
  EXPECT_TRUE(exists(target));
}

TEST(Store, TakesAnEmptyFileForNone) {
  const std::string path = stored_path(some_file(7));
  save(path, solid_pixbuf(10, 10, kRed).get());
  ASSERT_EQ(truncate(path.c_str(), 0), 0);

  EXPECT_FALSE(is_stored(some_file(7)));
}

TEST(Store, KnowsItsOwnFiles) {
  EXPECT_TRUE(is_in_store(stored_path(some_file(7))));
  EXPECT_FALSE(is_in_store("/home/me/a.jpg"));
  EXPECT_FALSE(is_in_store(store_folder() + "/../../../a.jpg"));
}

TEST(StoredFailure, IsKept) {
  save_failure(some_file(7), Problem::kDamaged);

  EXPECT_EQ(load_failure(some_file(7)), Problem::kDamaged);
  EXPECT_EQ(load_failure(some_file(8)), std::nullopt);
}

TEST(StoredFailure, IsNoThumbnail) {
  save_failure(some_file(7), Problem::kDamaged);

  EXPECT_FALSE(is_stored(some_file(7)));
}

TEST(StoredFailure, IsForgottenAfterADayIfItWasOfTime) {
  const std::string path = stored_path(some_file(7));
  save_failure(some_file(7), Problem::kTooSlow);
  EXPECT_EQ(load_failure(some_file(7)), Problem::kTooSlow);

  set_age(path.substr(0, path.size() - 4) + ".bad", 25 * 60 * 60);

  EXPECT_EQ(load_failure(some_file(7)), std::nullopt);
}

TEST(StoredFailure, StaysIfItIsOfTheFile) {
  const std::string path = stored_path(some_file(7));
  save_failure(some_file(7), Problem::kDamaged);

  set_age(path.substr(0, path.size() - 4) + ".bad", 25 * 60 * 60);

  EXPECT_EQ(load_failure(some_file(7)), Problem::kDamaged);
}

TEST(StoredFailure, IsNotKeptForWhatPasses) {
  for (const Problem passing : {Problem::kMissing, Problem::kBusy, Problem::kNoDecoder,
                                Problem::kNoVideos, Problem::kCancelled, Problem::kNotReadable}) {
    save_failure(some_file(7), passing);
    EXPECT_EQ(load_failure(some_file(7)), std::nullopt);
  }
}

class StoreLimit : public testing::Test {
 protected:
  /// Saves thumbnails, each used a minute later than the one before; each takes one block.
  void fill(std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::string path = stored_path(some_file(i));
      save(path, solid_pixbuf(8, 8, kRed).get());
      set_age(path, static_cast<time_t>(count - i) * 60);
    }
  }
  static constexpr gint64 kBlock = 4096;
};

TEST_F(StoreLimit, KeepsWhatIsWithin) {
  fill(10);
  set_limit(10 * kBlock);
  keep_within_limit();

  for (std::uint64_t i = 0; i < 10; ++i) EXPECT_TRUE(is_stored(some_file(i)));
}

TEST_F(StoreLimit, RemovesWhatWasUsedLongestAgo) {
  fill(20);
  set_limit(10 * kBlock);
  keep_within_limit();

  for (std::uint64_t i = 0; i < 11; ++i) EXPECT_FALSE(is_stored(some_file(i))) << i;
  for (std::uint64_t i = 11; i < 20; ++i) EXPECT_TRUE(is_stored(some_file(i))) << i;
}

TEST_F(StoreLimit, CountsWhatIsWrittenAfterwards) {
  fill(5);
  set_limit(10 * kBlock);
  keep_within_limit();
  for (std::uint64_t i = 100; i < 106; ++i)
    save(stored_path(some_file(i)), solid_pixbuf(8, 8, kRed).get());

  keep_within_limit();

  EXPECT_FALSE(is_stored(some_file(0)));
  EXPECT_TRUE(is_stored(some_file(105)));
}

TEST_F(StoreLimit, TakesReadingForUse) {
  fill(20);
  const std::string oldest = stored_path(some_file(0));
  set_age(oldest, 3 * 24 * 60 * 60);
  load_stored(oldest);
  set_limit(10 * kBlock);

  keep_within_limit();

  EXPECT_TRUE(exists(oldest));
}

TEST_F(StoreLimit, RemovesWhatForsakenWritersLeft) {
  fill(1);
  const std::string folder = folder_of(stored_path(some_file(0)));
  // No process has such a number.
  const std::string forsaken = folder + "/.x.jpg.1.2147483600";
  const std::string living = folder + "/" + temporary_name("y.jpg");
  g_file_set_contents(forsaken.c_str(), "half", -1, nullptr);
  g_file_set_contents(living.c_str(), "half", -1, nullptr);

  keep_within_limit();

  EXPECT_FALSE(exists(forsaken));
  EXPECT_TRUE(exists(living));
}

}  // namespace
}  // namespace phone::thumbnail

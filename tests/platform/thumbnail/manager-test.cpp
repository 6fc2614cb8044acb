#include <glib/gstdio.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>
#include <unistd.h>

#include <cstdlib>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "main-loop.hpp"
#include "pictures/identity.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"
#include "thumbnail/making.hpp"

namespace phone::thumbnail {
namespace {

using support::exists;
using support::quartered_pixbuf;
using test::Bytes;
using test::quarters;
using test::run_for;
using test::run_until;
using testing::ElementsAre;
using testing::IsEmpty;

struct stat stat_of(const std::string &path) {
  struct stat info {};
  EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
  return info;
}

class ThumbnailManager : public support::GlibTest {
 protected:
  ThumbnailManager() : listener_(thumbnail_manager_add_listener(count, this)) {}
  ~ThumbnailManager() override {
    thumbnail_manager_remove_listener(listener_);
    thumbnail_manager_shutdown();
    unsetenv("PHOTOBROWSER_DECODER");
  }

  /// What the manager has at once.
  static PixbufRef get(const std::string &path) {
    GdkPixbuf *pixbuf = nullptr;
    const gint success = fm_svc_thumb_mgr_get_thumbnail(1, 0, path.c_str(), FALSE, 0, &pixbuf);
    EXPECT_EQ(success != 0, pixbuf != nullptr);
    return PixbufRef::adopt(pixbuf);
  }
  /// Asks as a view does that hears of every batch.
  PixbufRef get_in_the_end(const std::string &path) {
    PixbufRef pixbuf = get(path);
    int seen = batches_;
    run_until([&] {
      if (!pixbuf && batches_ != seen) {
        seen = batches_;
        pixbuf = get(path);
      }
      return static_cast<bool>(pixbuf);
    });
    return pixbuf;
  }
  std::string picture(const char *name, int width = 400, int height = 300, int orientation = 1) {
    const Bytes jpeg = test::jpeg_of(quartered_pixbuf(width, height).get());
    return dir_.write(name, test::with_exif(jpeg, {.orientation = orientation}));
  }
  static void use_fault(const char *fault) {
    setenv("PHOTOBROWSER_DECODER", PB_FAULTY_DECODER, 1);
    setenv("PB_FAULT", fault, 1);
  }

  support::TempDir dir_;
  int batches_ = 0;

 private:
  static void count(gpointer self) { ++static_cast<ThumbnailManager *>(self)->batches_; }

  guint listener_;
};

TEST_F(ThumbnailManager, HasNothingAtOnceAtFirst) { EXPECT_FALSE(get(picture("a"))); }

TEST_F(ThumbnailManager, TellsWhenAQueuedThumbnailIsThere) {
  const std::string path = picture("a");
  get(path);

  EXPECT_TRUE(run_until([this] { return batches_ > 0; }));

  EXPECT_TRUE(get(path));
}

TEST_F(ThumbnailManager, MakesThumbnailsOfAtMost148Pixels) {
  const PixbufRef wide = get_in_the_end(picture("a", 800, 400));
  const PixbufRef high = get_in_the_end(picture("b", 400, 800));

  EXPECT_EQ(gdk_pixbuf_get_width(wide.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(wide.get()), 74);
  EXPECT_EQ(gdk_pixbuf_get_width(high.get()), 74);
  EXPECT_EQ(gdk_pixbuf_get_height(high.get()), 148);
}

TEST_F(ThumbnailManager, DoesNotEnlarge) {
  EXPECT_EQ(gdk_pixbuf_get_width(get_in_the_end(picture("a", 40, 30)).get()), 40);
}

TEST_F(ThumbnailManager, TurnsByEachOrientation) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const std::string name = std::to_string(orientation);

    const PixbufRef pixbuf = get_in_the_end(picture(name.c_str(), 400, 300, orientation));

    ASSERT_TRUE(pixbuf);
    EXPECT_EQ(quarters(pixbuf.get()), test::kTurnedQuarters[orientation]);
  }
}

TEST_F(ThumbnailManager, ReadsTheStoreAtOnce) {
  const std::string path = picture("a");
  save(stored_path(stat_of(path)), support::solid_pixbuf(100, 75, support::kBlue).get());

  EXPECT_EQ(quarters(get(path).get()), "BBBB");
}

TEST_F(ThumbnailManager, FillsTheStore) {
  const std::string path = picture("a");
  get_in_the_end(path);

  EXPECT_TRUE(run_until([&] { return is_stored(stat_of(path)); }));
}

TEST_F(ThumbnailManager, StoresThumbnailsUpright) {
  const std::string path = picture("a", 400, 300, 6);
  get_in_the_end(path);
  ASSERT_TRUE(run_until([&] { return is_stored(stat_of(path)); }));

  EXPECT_EQ(quarters(load_stored(stored_path(stat_of(path))).get()), test::kTurnedQuarters[6]);
}

TEST_F(ThumbnailManager, GivesCopiesOfTheCallersOwn) {
  const std::string path = picture("a");
  gdk_pixbuf_fill(get_in_the_end(path).get(), 0x000000ff);

  EXPECT_EQ(quarters(get(path).get()), "RGBW");
}

TEST_F(ThumbnailManager, PutsTransparentPicturesOnWhite) {
  const auto clear = support::solid_pixbuf(20, 20, {255, 0, 0, 0}, true);

  const PixbufRef pixbuf = get_in_the_end(dir_.write("a", test::saved_as(clear.get(), "png")));

  EXPECT_FALSE(gdk_pixbuf_get_has_alpha(pixbuf.get()));
  EXPECT_EQ(quarters(pixbuf.get()), "WWWW");
}

TEST_F(ThumbnailManager, MakesAnewWhatIsDamagedInTheStore) {
  const std::string path = picture("a");
  const std::string stored = stored_path(stat_of(path));
  save(stored, support::solid_pixbuf(148, 111, support::kBlue).get());
  ASSERT_EQ(truncate(stored.c_str(), 500), 0);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "RGBW");
}

TEST_F(ThumbnailManager, TellsManyThumbnailsInFewBatches) {
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) paths.push_back(picture(std::to_string(i).c_str(), 20, 20));
  for (const std::string &path : paths) get(path);

  ASSERT_TRUE(run_until([&] {
    return std::all_of(paths.begin(), paths.end(),
                       [](const std::string &path) { return is_stored(stat_of(path)); });
  }));
  run_for(100);

  EXPECT_GE(batches_, 1);
  EXPECT_LT(batches_, 40);
}

TEST_F(ThumbnailManager, DoesNotTellAListenerThatHasLeft) {
  int calls = 0;
  const guint id =
      thumbnail_manager_add_listener([](gpointer data) { ++*static_cast<int *>(data); }, &calls);
  get(picture("a"));
  thumbnail_manager_remove_listener(id);

  run_until([this] { return batches_ > 0; });

  EXPECT_EQ(calls, 0);
}

TEST_F(ThumbnailManager, LetsListenersLeaveWhileTheyAreTold) {
  struct Leaver {
    guint own = 0;
    guint other = 0;
    int calls = 0;
    static void leave(gpointer data) {
      auto *self = static_cast<Leaver *>(data);
      ++self->calls;
      thumbnail_manager_remove_listener(self->own);
      thumbnail_manager_remove_listener(self->other);
    }
  } leaver;
  int others_calls = 0;
  leaver.own = thumbnail_manager_add_listener(Leaver::leave, &leaver);
  leaver.other = thumbnail_manager_add_listener([](gpointer data) { ++*static_cast<int *>(data); },
                                                &others_calls);
  get_in_the_end(picture("a"));
  get_in_the_end(picture("b"));

  EXPECT_EQ(leaver.calls, 1);
  EXPECT_EQ(others_calls, 0);
}

TEST_F(ThumbnailManager, IgnoresIdsOfNoListener) {
  thumbnail_manager_remove_listener(0);
  thumbnail_manager_remove_listener(4711);

  EXPECT_TRUE(get_in_the_end(picture("a")));
}

TEST_F(ThumbnailManager, HasNothingForWhatIsNoFile) {
  picture("a");
  ASSERT_EQ(symlink("a", dir_.path("link").c_str()), 0);
  ASSERT_EQ(mkfifo(dir_.path("pipe").c_str(), 0600), 0);
  for (const std::string &path :
       {dir_.path("none"), dir_.path("link"), dir_.path("pipe"), dir_.path()}) {
    EXPECT_FALSE(get(path)) << path;
  }
  run_for(50);

  EXPECT_EQ(batches_, 0);
  EXPECT_THAT(test::children(), IsEmpty());
}

TEST_F(ThumbnailManager, HasNothingForADamagedPicture) {
  const std::string path = dir_.write("a", test::png_start(10, 10).substr(0, 20));
  get(path);
  EXPECT_TRUE(run_until([&] { return load_failure(stat_of(path)).has_value(); }));

  EXPECT_FALSE(get(path));
  EXPECT_EQ(batches_, 0);
}

TEST_F(ThumbnailManager, RemembersDamagedPicturesOverRuns) {
  const std::string path = picture("a");
  save_failure(stat_of(path), pictures::Problem::kDamaged);
  get(path);
  run_for(100);

  EXPECT_EQ(batches_, 0);
  EXPECT_THAT(test::children(), IsEmpty());
}

TEST_F(ThumbnailManager, SurvivesFilesThatGoBeforeTheirTurn) {
  const std::string gone = picture("a");
  get(gone);
  unlink(gone.c_str());

  EXPECT_TRUE(get_in_the_end(picture("b")));
}

TEST_F(ThumbnailManager, NamesTheThumbnailByWhatWasDecoded) {
  const std::string path = picture("a");
  const struct stat before = stat_of(path);
  get(path);
  const std::string other =
      dir_.write("b", test::jpeg_of(support::solid_pixbuf(400, 300, support::kBlue).get()));
  ASSERT_EQ(rename(other.c_str(), path.c_str()), 0);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "BBBB");
  if (is_stored(before)) {
    EXPECT_EQ(quarters(load_stored(stored_path(before)).get()), "RGBW");
  }
}

TEST_F(ThumbnailManager, WorksWithACacheThatCannotBeWritten) {
  g_mkdir_with_parents(g_get_user_cache_dir(), 0700);
  const std::string in_the_way = std::string(g_get_user_cache_dir()) + "/photobrowser";
  g_file_set_contents(in_the_way.c_str(), "a file", -1, nullptr);

  EXPECT_TRUE(get_in_the_end(picture("a")));
}

TEST_F(ThumbnailManager, WorksOnWhenADecoderIsKilled) {
  get_in_the_end(picture("a"));
  for (const pid_t child : test::children()) kill(child, SIGKILL);

  EXPECT_TRUE(get_in_the_end(picture("b")));
}

TEST_F(ThumbnailManager, HasNothingWithoutADecoder) {
  setenv("PHOTOBROWSER_DECODER", "/nonexistent", 1);
  get(picture("a"));
  std::vector<std::string> warnings;
  EXPECT_TRUE(run_until([&] {
    if (warnings.empty()) warnings = take_glib_warnings();
    return !warnings.empty();
  }));

  EXPECT_FALSE(get(picture("a")));
  EXPECT_THAT(warnings,
              ElementsAre("No pictures: the program photobrowser-decoder is not installed"));
}

TEST_F(ThumbnailManager, MakesThumbnailsOfVideos) {
  const pb::StringPtr program(g_find_program_in_path("ffmpegthumbnailer"));
  if (!program) GTEST_SKIP() << "ffmpegthumbnailer is not installed";
  const std::string path = dir_.write("a.mov", test::film_of(quartered_pixbuf(320, 240).get(), 5));

  const PixbufRef pixbuf = get_in_the_end(path);

  ASSERT_TRUE(pixbuf);
  EXPECT_EQ(quarters(pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 148);
}

TEST_F(ThumbnailManager, LeavesOriginalsAlone) {
  const std::string path = picture("a", 400, 300, 6);
  const Bytes before = support::read_file(path);
  const struct stat info = stat_of(path);

  get_in_the_end(path);

  EXPECT_EQ(support::read_file(path), before);
  EXPECT_EQ(pictures::Identity::of(stat_of(path)), pictures::Identity::of(info));
}

TEST_F(ThumbnailManager, EndsItsProcessesOnShutdown) {
  get_in_the_end(picture("a"));

  thumbnail_manager_shutdown();
  thumbnail_manager_shutdown();

  EXPECT_THAT(test::children(), IsEmpty());
}

TEST_F(ThumbnailManager, DoesNotWaitForADecodeOnShutdown) {
  use_fault("sleeps");
  get(picture("a"));
  run_until([] { return !test::children().empty(); });
  const gint64 begin = g_get_monotonic_time();

  thumbnail_manager_shutdown();

  EXPECT_LT(g_get_monotonic_time() - begin, pictures::TimeLimit().longest);
  EXPECT_THAT(test::children(), IsEmpty());
}

TEST_F(ThumbnailManager, TriesAgainUnaskedWhatFailedForNow) {
  const std::string path = picture("a");
  setenv("PB_FAULT_WHILE", dir_.write("busy", "").c_str(), 1);
  use_fault("is-killed-for-now");
  get(path);
  run_for(100);
  ASSERT_FALSE(is_stored(stat_of(path)));

  unlink(dir_.path("busy").c_str());

  EXPECT_TRUE(run_until([this] { return batches_ > 0; }));
  EXPECT_TRUE(get(path));
}

TEST_F(ThumbnailManager, StartsAnewAfterShutdown) {
  get_in_the_end(picture("a"));
  thumbnail_manager_shutdown();

  EXPECT_TRUE(get_in_the_end(picture("b")));
}

TEST_F(ThumbnailManager, MakesWhatIsRequestedForLater) {
  const std::string path = picture("a");
  request(path);

  EXPECT_TRUE(run_until([&] { return is_stored(stat_of(path)); }));
}

TEST_F(ThumbnailManager, NeedsAPathAndAPlaceForTheResult) {
  GdkPixbuf *pixbuf = nullptr;
  EXPECT_EQ(fm_svc_thumb_mgr_get_thumbnail(1, 0, nullptr, FALSE, 0, &pixbuf), 0);
  EXPECT_EQ(fm_svc_thumb_mgr_get_thumbnail(1, 0, "/", FALSE, 0, nullptr), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("fm_svc_thumb_mgr_get_thumbnail: assertion 'path != NULL' failed",
                          "fm_svc_thumb_mgr_get_thumbnail: assertion 'pixbuf != NULL' failed"));
}

class SharedCache : public ThumbnailManager {
 protected:
  /// Puts a blue thumbnail of a picture into the desktop's cache.
  void share(const std::string &path, const char *size, int side, gint64 mtime) {
    const auto pixbuf = support::solid_pixbuf(side, side * 3 / 4, support::kBlue);
    const pb::StringPtr uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    const pb::StringPtr name(g_compute_checksum_for_string(G_CHECKSUM_MD5, uri.get(), -1));
    const std::string folder = std::string(g_get_user_cache_dir()) + "/thumbnails/" + size;
    g_mkdir_with_parents(folder.c_str(), 0700);
    gdk_pixbuf_save(pixbuf.get(), (folder + "/" + name.get() + ".png").c_str(), "png", nullptr,
                    "tEXt::Thumb::URI", uri.get(), "tEXt::Thumb::MTime",
                    std::to_string(mtime).c_str(), nullptr);
  }
};

TEST_F(SharedCache, IsTakenForAPictureThatHasNotChanged) {
  const std::string path = picture("a");
  share(path, "large", 256, stat_of(path).st_mtim.tv_sec);

  const PixbufRef pixbuf = get_in_the_end(path);

  EXPECT_EQ(quarters(pixbuf.get()), "BBBB");
  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 148);
}

TEST_F(SharedCache, IsTakenInItsLargerSizes) {
  const std::string path = picture("a");
  share(path, "x-large", 512, stat_of(path).st_mtim.tv_sec);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "BBBB");
}

TEST_F(SharedCache, IsNotTakenForAPictureThatHasChanged) {
  const std::string path = picture("a");
  share(path, "large", 256, stat_of(path).st_mtim.tv_sec - 1);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "RGBW");
}

TEST_F(SharedCache, IsNotTakenInSizesBelowOurs) {
  const std::string path = picture("a");
  share(path, "normal", 128, stat_of(path).st_mtim.tv_sec);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "RGBW");
}

TEST_F(SharedCache, IsNotTakenWithoutANotedTime) {
  const std::string path = picture("a");
  share(path, "large", 256, stat_of(path).st_mtim.tv_sec);
  const pb::StringPtr uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
  const pb::StringPtr name(g_compute_checksum_for_string(G_CHECKSUM_MD5, uri.get(), -1));
  support::save_picture(
      std::string(g_get_user_cache_dir()) + "/thumbnails/large/" + name.get() + ".png", 256, 192,
      support::kBlue);

  EXPECT_EQ(quarters(get_in_the_end(path).get()), "RGBW");
}

}  // namespace
}  // namespace phone::thumbnail

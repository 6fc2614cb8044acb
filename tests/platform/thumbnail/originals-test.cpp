/// Pictures that do not decode, handed to the library as somebody's thumbnail: whatever the way,
/// they are there afterwards. The whole program below the gallery is the real one.
#include <media-index.h>
#include <pb-item-cache.h>
#include <pb-item.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace {

constexpr const char *kBroken = "\xff\xd8 this was a picture once";

/// A way to name the original "<folder>/pictures/broken.jpg".
struct Way {
  const char *name;
  std::function<std::string(const std::string &folder)> path;
};

void PrintTo(const Way &way, std::ostream *out) { *out << way.name; }

std::string cache(const std::string &rest) { return g_get_user_cache_dir() + rest; }

void make_folder(const std::string &folder) { g_mkdir_with_parents(folder.c_str(), 0700); }

const Way kWays[] = {
    {"ByItsPath", [](const std::string &folder) { return folder + "/pictures/broken.jpg"; }},
    {"WithDots",
     [](const std::string &folder) { return folder + "/pictures/../pictures/broken.jpg"; }},
    {"WithSlashes", [](const std::string &folder) { return folder + "//pictures//broken.jpg"; }},
    {"ByALink",
     [](const std::string &folder) {
       const std::string path = folder + "/link.jpg";
       EXPECT_EQ(symlink((folder + "/pictures/broken.jpg").c_str(), path.c_str()), 0);
       return path;
     }},
    {"ByALinkedFolder",
     [](const std::string &folder) {
       EXPECT_EQ(symlink((folder + "/pictures").c_str(), (folder + "/album").c_str()), 0);
       return folder + "/album/broken.jpg";
     }},
    {"ByAFolderLinkedIntoOurCache",
     [](const std::string &folder) {
       make_folder(cache("/photobrowser/thumbnails"));
       const std::string link = cache("/photobrowser/thumbnails/0a");
       EXPECT_EQ(symlink((folder + "/pictures").c_str(), link.c_str()), 0);
       return link + "/broken.jpg";
     }},
    {"ByAFolderLinkedIntoTheSharedCache",
     [](const std::string &folder) {
       make_folder(cache("/thumbnails"));
       EXPECT_EQ(symlink((folder + "/pictures").c_str(), cache("/thumbnails/large").c_str()), 0);
       return cache("/thumbnails/large/broken.jpg");
     }},
    {"ThroughOurCache",
     [](const std::string &folder) {
       make_folder(cache("/photobrowser/thumbnails"));
       std::string up = cache("/photobrowser/thumbnails");
       for (const char c : cache("/photobrowser/thumbnails")) {
         if (c == '/') up += "/..";
       }
       return up + folder + "/pictures/broken.jpg";
     }},
};

class Original : public support::GlibTest, public testing::WithParamInterface<Way> {
 protected:
  ~Original() override {
    media_index_stop();
    thumbnail_manager_shutdown();
  }

  /// Lists a folder and waits for the end of the scan.
  static void list(const std::string &root) {
    bool finished = false;
    const guint listener = media_index_add_listener(
        [](guint changes, gpointer data) {
          if ((changes & MEDIA_INDEX_SCAN_FINISHED) != 0) *static_cast<bool *>(data) = true;
        },
        &finished);
    const gchar *roots[] = {root.c_str()};
    ASSERT_TRUE(media_index_start(roots, 1, nullptr));
    while (!finished) g_main_context_iteration(nullptr, TRUE);
    media_index_remove_listener(listener);
  }
  /// Draws an item whose thumbnail is said to be this file, in every way that the library has.
  void draw(const std::string &thumbnail, const std::string &picture, gint id) {
    for (const bool only_cached : {true, false}) {
      const auto item = pb::Ref<PbItem>::adopt(pb_item_new());
      pb_item_set_info(item.get(), id, thumbnail.c_str(), picture.c_str(), "a", 0);
      EXPECT_FALSE(pb::Ref<GdkPixbuf>::adopt(pb_item_cache_get_thumbnail(item.get(), only_cached)));
    }
    // The library says of each missing thumbnail that it is no pixbuf.
    take_glib_warnings();
  }

  support::TempDir dir_;
  std::string broken_ = dir_.write("pictures/broken.jpg", kBroken);
};

TEST_P(Original, SurvivesBeingTheThumbnailOfItsOwnItem) {
  const std::string path = GetParam().path(dir_.path());
  list(dir_.path("pictures"));
  const gint id = media_index_get_id_by_path(broken_.c_str());
  ASSERT_NE(id, 0);

  draw(path, path, id);

  EXPECT_EQ(support::read_file(broken_), kBroken);
}

TEST_P(Original, SurvivesBeingTheThumbnailOfAnotherItem) {
  const std::string path = GetParam().path(dir_.path());
  const std::string other = dir_.write("pictures/other.jpg", kBroken);
  list(dir_.path("pictures"));

  draw(path, other, media_index_get_id_by_path(other.c_str()));

  EXPECT_EQ(support::read_file(broken_), kBroken);
}

TEST_P(Original, SurvivesWhileNothingIsListed) {
  const std::string path = GetParam().path(dir_.path());

  draw(path, dir_.path("none.jpg"), 0);

  EXPECT_EQ(support::read_file(broken_), kBroken);
}

INSTANTIATE_TEST_SUITE_P(Ways, Original, testing::ValuesIn(kWays),
                         [](const auto &way) { return std::string(way.param.name); });

class OriginalInACache : public Original {
 protected:
  static std::string write(const std::string &folder) {
    make_folder(folder);
    const std::string path = folder + "/broken.jpg";
    EXPECT_TRUE(g_file_set_contents(path.c_str(), kBroken, -1, nullptr));
    return path;
  }
};

TEST_F(OriginalInACache, SurvivesWhenItsFolderIsListed) {
  for (const char *folder : {"/photobrowser/thumbnails/0a", "/thumbnails/large"}) {
    const std::string path = write(cache(folder));
    list(cache(folder));
    ASSERT_NE(media_index_get_id_by_path(path.c_str()), 0);

    draw(path, broken_, 0);

    EXPECT_EQ(support::read_file(path), kBroken);
  }
}

TEST_F(OriginalInACache, IsAThumbnailWhenItsFolderIsHiddenInWhatIsListed) {
  // The cache's own folder must have a name that galleries pass over.
  const std::string hidden = dir_.path("home/.cache");
  make_folder(hidden + "/thumbnails/large");
  ASSERT_EQ(g_mkdir_with_parents(g_get_user_cache_dir(), 0700), 0);
  ASSERT_EQ(symlink((hidden + "/thumbnails").c_str(), cache("/thumbnails").c_str()), 0);
  const std::string path = write(cache("/thumbnails/large"));
  list(dir_.path("home"));

  draw(path, broken_, 0);

  EXPECT_FALSE(g_file_test(path.c_str(), G_FILE_TEST_EXISTS));
}

TEST_F(OriginalInACache, IsAThumbnailWhenNothingOfTheCacheIsListed) {
  for (const char *folder : {"/photobrowser/thumbnails/0a", "/thumbnails/large"}) {
    const std::string path = write(cache(folder));
    list(dir_.path("pictures"));

    draw(path, broken_, 0);

    EXPECT_FALSE(g_file_test(path.c_str(), G_FILE_TEST_EXISTS)) << folder;
  }
}

}  // namespace

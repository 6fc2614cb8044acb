/// What becomes of stored thumbnails when their pictures change or go.
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "library.hpp"
#include "thumbnail/disk.hpp"

namespace {

namespace fs = std::filesystem;
using test::Library;

class StoredThumbnail : public support::GlibTest {
 protected:
  /// Adds a picture and stores a thumbnail of it, which nobody looks into here.
  /// @return the path of the thumbnail
  std::string add(std::string_view name) const { return store(library_.add(name)); }

  static std::string store(const std::string &picture) {
    struct stat info;
    EXPECT_EQ(stat(picture.c_str(), &info), 0);
    const std::string path = phone::thumbnail::stored_path(info);
    fs::create_directories(fs::path(path).parent_path());
    EXPECT_TRUE(g_file_set_contents(path.c_str(), "thumbnail", -1, nullptr));
    return path;
  }

  Library library_;
};

TEST_F(StoredThumbnail, GoesWithItsPicture) {
  const std::string gone = add("x/a.jpg");
  const std::string other = add("x/b.jpg");
  library_.start();
  fs::remove(library_.path("x/a.jpg"));

  library_.rescan();

  EXPECT_FALSE(fs::exists(gone));
  EXPECT_TRUE(fs::exists(other));
}

TEST_F(StoredThumbnail, GoesWithItsPicturesFolder) {
  const std::string gone = add("x/a.jpg");
  const std::string other = add("y/b.jpg");
  library_.start();
  fs::remove_all(library_.path("x"));

  library_.rescan();

  EXPECT_FALSE(fs::exists(gone));
  EXPECT_TRUE(fs::exists(other));
}

TEST_F(StoredThumbnail, GoesWhenItsPictureIsDeletedWhileNobodyLooks) {
  const std::string gone = add("a.jpg");
  library_.start();
  library_.stop();
  fs::remove(library_.path("a.jpg"));

  library_.start();

  EXPECT_FALSE(fs::exists(gone));
}

TEST_F(StoredThumbnail, GoesWhenItsPictureChanges) {
  const std::string old = add("a.jpg");
  library_.start();
  const std::string later = store(library_.add("a.jpg", 1'800'000'000));

  library_.rescan();

  EXPECT_NE(old, later);
  EXPECT_FALSE(fs::exists(old));
  EXPECT_TRUE(fs::exists(later));
}

TEST_F(StoredThumbnail, StaysWhenItsPictureIsRenamed) {
  const std::string thumbnail = add("x/a.jpg");
  library_.start();
  fs::create_directory(library_.path("y"));
  fs::rename(library_.path("x/a.jpg"), library_.path("y/b.jpg"));

  library_.rescan();

  EXPECT_THAT(library_.list(0), testing::ElementsAre("y/b.jpg"));
  EXPECT_TRUE(fs::exists(thumbnail));
}

TEST_F(StoredThumbnail, StaysWhenItsPicturesFolderIsRenamed) {
  const std::string thumbnail = add("x/a.jpg");
  library_.start();
  fs::rename(library_.path("x"), library_.path("y"));

  library_.rescan();

  EXPECT_TRUE(fs::exists(thumbnail));
}

TEST_F(StoredThumbnail, StaysWhileItsPictureHasAnotherName) {
  const std::string thumbnail = add("a.jpg");
  fs::create_hard_link(library_.path("a.jpg"), library_.path("b.jpg"));
  library_.start();
  fs::remove(library_.path("a.jpg"));

  library_.rescan();

  EXPECT_THAT(library_.list(0), testing::ElementsAre("b.jpg"));
  EXPECT_TRUE(fs::exists(thumbnail));
}

TEST_F(StoredThumbnail, StaysWhenTheCardOfItsPictureIsPulledOut) {
  const std::string card = library_.path("card");
  fs::create_directories(card);
  if (mount("card", card.c_str(), "tmpfs", 0, "size=1m") != 0) {
    GTEST_SKIP() << "a card cannot be mounted here: " << g_strerror(errno);
  }
  const std::string thumbnail = add("card/DCIM/a.jpg");
  library_.start();
  EXPECT_EQ(Library::count(), 1);
  ASSERT_EQ(umount2(card.c_str(), MNT_DETACH), 0);

  library_.rescan();

  EXPECT_EQ(Library::count(), 0);
  EXPECT_TRUE(fs::exists(thumbnail));
}

}  // namespace

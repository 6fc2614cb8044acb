#include <sys/stat.h>
#include <thumbnail-manager.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"

namespace phone::thumbnail {
namespace {

using support::quartered_pixbuf;
using test::Bytes;
using test::quarters;
using testing::ElementsAre;
using testing::IsEmpty;

class CreatePixbufByPath : public support::GlibTest {
 protected:
  void TearDown() override { thumbnail_manager_shutdown(); }

  static PixbufRef create(const std::string &path, int width = 148, int height = 148) {
    return PixbufRef::adopt(fm_svc_thumb_create_pixbuf_by_path(path.c_str(), width, height));
  }
  std::string picture(int width, int height, int orientation = 1) {
    const Bytes jpeg = test::jpeg_of(quartered_pixbuf(width, height).get());
    return dir_.write("a.jpg", test::with_exif(jpeg, {.orientation = orientation}));
  }
  /// A thumbnail of our own.
  static std::string stored_thumbnail(int width, int height) {
    struct stat info {};
    info.st_ino = 7;
    save(stored_path(info), quartered_pixbuf(width, height).get());
    return stored_path(info);
  }
  /// A file of the cache that desktops share.
  static std::string broken_shared_thumbnail() {
    const std::string folder = std::string(g_get_user_cache_dir()) + "/thumbnails/large";
    g_mkdir_with_parents(folder.c_str(), 0700);
    EXPECT_TRUE(g_file_set_contents((folder + "/a.png").c_str(), "no picture", -1, nullptr));
    return folder + "/a.png";
  }

  support::TempDir dir_;
};

TEST_F(CreatePixbufByPath, FitsTheBox) {
  const PixbufRef pixbuf = create(picture(800, 400));

  ASSERT_TRUE(pixbuf);
  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), 74);
  EXPECT_EQ(quarters(pixbuf.get()), "RGBW");
}

TEST_F(CreatePixbufByPath, FillsTheBoxWithASmallerPicture) {
  const PixbufRef pixbuf = create(picture(40, 20));

  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), 74);
}

TEST_F(CreatePixbufByPath, GivesStoredSizeWhenThatIsTheBox) {
  const PixbufRef pixbuf = create(picture(800, 400), 800, 400);

  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 800);
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), 400);
}

TEST_F(CreatePixbufByPath, DoesNotTurn) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const PixbufRef pixbuf = create(picture(800, 400, orientation));

    EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 148);
    EXPECT_EQ(quarters(pixbuf.get()), "RGBW");
  }
}

TEST_F(CreatePixbufByPath, KeepsTransparency) {
  const auto clear = support::solid_pixbuf(20, 20, {255, 0, 0, 0}, true);
  const std::string path = dir_.write("a", test::saved_as(clear.get(), "png"));

  EXPECT_TRUE(gdk_pixbuf_get_has_alpha(create(path).get()));
}

TEST_F(CreatePixbufByPath, GivesCopiesOfTheCallersOwn) {
  const std::string path = picture(800, 400);
  gdk_pixbuf_fill(create(path).get(), 0x000000ff);

  EXPECT_EQ(quarters(create(path).get()), "RGBW");
}

TEST_F(CreatePixbufByPath, FollowsChangesOfTheFile) {
  const std::string path = picture(800, 400);
  create(path);
  dir_.write("a.jpg", test::jpeg_of(support::solid_pixbuf(640, 480, support::kBlue).get()));

  EXPECT_EQ(quarters(create(path).get()), "BBBB");
}

TEST_F(CreatePixbufByPath, DecodesOthersFilesInAnotherProcess) {
  create(picture(800, 400));

  EXPECT_EQ(test::children().size(), 1u);
}

TEST_F(CreatePixbufByPath, DecodesOwnThumbnailsHere) {
  const PixbufRef pixbuf = create(stored_thumbnail(148, 111));

  EXPECT_EQ(quarters(pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), 111);
  EXPECT_THAT(test::children(), IsEmpty());
}

TEST_F(CreatePixbufByPath, ScalesOwnThumbnailsLikeOthers) {
  const PixbufRef pixbuf = create(stored_thumbnail(100, 50), 50, 50);

  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), 50);
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), 25);
}

TEST_F(CreatePixbufByPath, IsNothingForADamagedThumbnailOfOurs) {
  const std::string path = stored_thumbnail(148, 111);
  ASSERT_EQ(truncate(path.c_str(), 600), 0);

  EXPECT_FALSE(create(path));
}

TEST_F(CreatePixbufByPath, IsNothingWithoutAFile) {
  EXPECT_FALSE(create(dir_.path("none")));
  EXPECT_FALSE(create(dir_.path()));
}

TEST_F(CreatePixbufByPath, IsNothingForALink) {
  picture(800, 400);
  ASSERT_EQ(symlink("a.jpg", dir_.path("link").c_str()), 0);

  EXPECT_FALSE(create(dir_.path("link")));
}

TEST_F(CreatePixbufByPath, IsNothingForADamagedPicture) {
  EXPECT_FALSE(create(dir_.write("a", test::png_start(10, 10).substr(0, 20))));
}

TEST_F(CreatePixbufByPath, LeavesTheOriginalAlone) {
  const std::string path = picture(800, 400, 6);
  const Bytes before = support::read_file(path);

  create(path);

  EXPECT_EQ(support::read_file(path), before);
}

TEST_F(CreatePixbufByPath, SaysThatACachedFileCanNeverBeDecoded) {
  const std::string path = broken_shared_thumbnail();
  errno = 0;

  EXPECT_FALSE(create(path));

  EXPECT_EQ(errno, EBADMSG);
}

TEST_F(CreatePixbufByPath, SaysSoAgainFromMemory) {
  const std::string path = broken_shared_thumbnail();
  create(path);
  errno = 0;

  EXPECT_FALSE(create(path));

  EXPECT_EQ(errno, EBADMSG);
}

TEST_F(CreatePixbufByPath, KeepsABrokenFileOutsideTheCachesFromRemoval) {
  const std::string path = dir_.write("a.jpg", "no picture at all");

  for (int time = 0; time < 2; ++time) {
    errno = 0;

    EXPECT_FALSE(create(path));

    EXPECT_EQ(errno, EPERM);
  }
}

TEST_F(CreatePixbufByPath, KeepsALinkedPictureInTheStoreFromRemoval) {
  const std::string picture = dir_.write("a.jpg", "no picture at all");
  const std::string path = stored_thumbnail(9, 9);
  ASSERT_EQ(unlink(path.c_str()), 0);
  ASSERT_EQ(link(picture.c_str(), path.c_str()), 0);
  errno = 0;

  EXPECT_FALSE(create(path));

  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(support::read_file(path), "no picture at all");
}

TEST_F(CreatePixbufByPath, SaysThatThereIsNoFile) {
  errno = 0;

  EXPECT_FALSE(create(dir_.path("missing.jpg")));

  EXPECT_EQ(errno, ENOENT);
}

TEST_F(CreatePixbufByPath, SaysThatItIsNoFile) {
  errno = 0;

  EXPECT_FALSE(create(dir_.path()));

  EXPECT_EQ(errno, EINVAL);
}

TEST_F(CreatePixbufByPath, NeedsAPathAndABox) {
  EXPECT_EQ(fm_svc_thumb_create_pixbuf_by_path(nullptr, 9, 9), nullptr);
  EXPECT_EQ(fm_svc_thumb_create_pixbuf_by_path("/", 0, 9), nullptr);
  EXPECT_EQ(fm_svc_thumb_create_pixbuf_by_path("/", 9, -1), nullptr);

  const char *const box =
      "fm_svc_thumb_create_pixbuf_by_path: assertion 'width > 0 && height > 0' failed";
  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("fm_svc_thumb_create_pixbuf_by_path: assertion 'path != NULL' failed", box, box));
}

}  // namespace
}  // namespace phone::thumbnail

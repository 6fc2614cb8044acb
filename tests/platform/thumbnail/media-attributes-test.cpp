#include <media-attributes.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>

#include <cstdlib>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"

namespace phone::thumbnail {
namespace {

using testing::ElementsAre;

class MediaAttributes : public support::GlibTest {
 protected:
  void TearDown() override {
    MMAttrsFree(attrs_);
    thumbnail_manager_shutdown();
  }

  gint read(const std::string &path) { return MMFileGetContentAttr(path.c_str(), &attrs_); }
  std::string film() {
    return dir_.write("a.mov", test::film_of(support::quartered_pixbuf(96, 64).get(), 10));
  }
  gint number(gint attribute) {
    gint value = -7;
    EXPECT_EQ(MMAttrsGetInt(attrs_, attribute, &value), 0);
    return value;
  }
  /// The preview as a pixbuf that borrows the pixels.
  PixbufRef preview() {
    void *data = nullptr;
    EXPECT_EQ(MMAttrsGetData(attrs_, MM_ATTR_THUMBNAIL_PIXELS, &data), 0);
    if (data == nullptr) return {};
    const gint width = number(MM_ATTR_THUMBNAIL_WIDTH);
    return PixbufRef::adopt(
        gdk_pixbuf_new_from_data(static_cast<guchar *>(data), GDK_COLORSPACE_RGB, FALSE, 8, width,
                                 number(MM_ATTR_THUMBNAIL_HEIGHT), 3 * width, nullptr, nullptr));
  }

  support::TempDir dir_;
  MMAttrs *attrs_ = nullptr;
};

class FrameOfVideo : public MediaAttributes {
 protected:
  void SetUp() override {
    const pb::StringPtr program(g_find_program_in_path("ffmpegthumbnailer"));
    if (!program) GTEST_SKIP() << "ffmpegthumbnailer is not installed";
  }
};

TEST_F(FrameOfVideo, IsGivenAsPixels) {
  EXPECT_EQ(read(film()), 0);

  ASSERT_NE(attrs_, nullptr);
  EXPECT_EQ(test::quarters(preview().get()), "RGBW");
}

TEST_F(FrameOfVideo, IsNotEnlarged) {
  read(film());

  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_WIDTH), 96);
  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_HEIGHT), 64);
}

TEST_F(FrameOfVideo, IsOfAtMost800Pixels) {
  const auto frame = support::quartered_pixbuf(1000, 500);
  read(dir_.write("a.mov", test::film_of(frame.get(), 5)));

  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_WIDTH), 800);
  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_HEIGHT), 400);
}

TEST_F(FrameOfVideo, IsStored) {
  const std::string path = film();
  read(path);
  struct stat info {};
  stat(path.c_str(), &info);

  EXPECT_TRUE(support::exists(stored_frame_path(info)));
}

TEST_F(FrameOfVideo, IsTakenFromTheStore) {
  const std::string path = film();
  struct stat info {};
  stat(path.c_str(), &info);
  save(stored_frame_path(info), support::solid_pixbuf(99, 66, support::kBlue).get());

  read(path);

  EXPECT_EQ(test::quarters(preview().get()), "BBBB");
  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_WIDTH), 99);
  EXPECT_TRUE(test::children().empty());
}

TEST_F(MediaAttributes, HaveNoPixelsForAPicture) {
  EXPECT_EQ(read(dir_.write("a", test::jpeg_of(support::solid_pixbuf(9, 9, support::kRed).get()))),
            0);

  EXPECT_FALSE(preview());
  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_WIDTH), 0);
  EXPECT_EQ(number(MM_ATTR_THUMBNAIL_HEIGHT), 0);
}

TEST_F(MediaAttributes, HaveNoPixelsForADamagedVideo) {
  EXPECT_EQ(read(dir_.write("a", test::mp4_of({.width = 64, .height = 48}))), 0);

  EXPECT_FALSE(preview());
}

TEST_F(MediaAttributes, FailForWhatIsNoMedia) {
  attrs_ = reinterpret_cast<MMAttrs *>(this);

  EXPECT_NE(read(dir_.write("a", "text")), 0);

  EXPECT_EQ(attrs_, nullptr);
}

TEST_F(MediaAttributes, FailWithoutAFile) { EXPECT_NE(read(dir_.path("none")), 0); }

TEST_F(MediaAttributes, FailForOtherAttributes) {
  read(dir_.write("a", test::jpeg_of(support::solid_pixbuf(9, 9, support::kRed).get())));
  gint value = -7;
  void *data = this;

  EXPECT_NE(MMAttrsGetInt(attrs_, 99, &value), 0);
  EXPECT_NE(MMAttrsGetData(attrs_, MM_ATTR_THUMBNAIL_WIDTH, &data), 0);

  EXPECT_EQ(value, 0);
  EXPECT_EQ(data, nullptr);
}

TEST_F(MediaAttributes, NeedTheirArguments) {
  gint value = 0;
  EXPECT_NE(MMFileGetContentAttr(nullptr, &attrs_), 0);
  EXPECT_NE(MMFileGetContentAttr("/", nullptr), 0);
  EXPECT_NE(MMAttrsGetInt(nullptr, 4, &value), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("MMFileGetContentAttr: assertion 'path != NULL' failed",
                          "MMFileGetContentAttr: assertion 'attrs != NULL' failed",
                          "MMAttrsGetInt: assertion 'attrs != NULL' failed"));
}

TEST_F(MediaAttributes, FreeNothing) { MMAttrsFree(nullptr); }

}  // namespace
}  // namespace phone::thumbnail

#include "media-browser/query.hpp"

#include <gmock/gmock.h>

#include "media-browser/media-names.hpp"

namespace {

using namespace phone::media;

bool shows(gint64 filter, int file_class) { return lets_through(classes_of(filter), file_class); }

TEST(Filter, ShowsEverythingByDefault) {
  for (const gint64 filter : {gint64{0}, gint64{3}, gint64{-1}}) {
    EXPECT_EQ(classes_of(filter), kAllClasses) << filter;
  }
}

TEST(Filter, ChoosesKinds) {
  EXPECT_TRUE(shows(1, kPicture));
  EXPECT_TRUE(shows(1, kPicture | kCameraClass));
  EXPECT_FALSE(shows(1, kVideo));
  EXPECT_FALSE(shows(2, kPicture));
  EXPECT_TRUE(shows(2, kVideo | kCameraClass));
}

TEST(Filter, ChoosesCameraFolders) {
  for (const gint64 filter : {gint64{0x13}, gint64{0x10}, gint64{-2}}) {
    EXPECT_TRUE(shows(filter, kPicture | kCameraClass)) << filter;
    EXPECT_TRUE(shows(filter, kVideo | kCameraClass)) << filter;
    EXPECT_FALSE(shows(filter, kPicture)) << filter;
    EXPECT_FALSE(shows(filter, kVideo)) << filter;
  }
  EXPECT_FALSE(shows(0x11, kVideo | kCameraClass));
}

TEST(Filter, NeverShowsWhatHasGone) {
  for (const gint64 filter : {0, 1, 2, 3, 0x10, 0x13, -1, -2}) EXPECT_FALSE(shows(filter, 0));
}

TEST(CameraFolder, IsNamedDcimAnywhereInThePath) {
  EXPECT_TRUE(is_camera_folder("/media/card/DCIM/100ABCDE"));
  EXPECT_TRUE(is_camera_folder("/home/u/dcim"));
  EXPECT_FALSE(is_camera_folder("/home/u/DCIM2/x"));
  EXPECT_FALSE(is_camera_folder("/home/u/Pictures"));
}

TEST(KindByName, GoesByTheExtension) {
  EXPECT_EQ(kind_by_name("a.JPG"), kPicture);
  EXPECT_EQ(kind_by_name("a.b.heic"), kPicture);
  EXPECT_EQ(kind_by_name("a.CR2"), kPicture);
  EXPECT_EQ(kind_by_name("a.mp4"), kVideo);
  EXPECT_EQ(kind_by_name("a.txt"), 0);
  EXPECT_EQ(kind_by_name("jpg"), 0);
  EXPECT_EQ(kind_by_name("a."), 0);
  EXPECT_EQ(kind_by_name("a.jpgjpgjpg"), 0);
}

TEST(ExtensionOf, IsInSmallLettersAndWithoutTheDot) {
  EXPECT_EQ(extension_of("IMG.0001.JPG"), "jpg");
  EXPECT_EQ(extension_of(".jpg"), "");
  EXPECT_EQ(extension_of("name"), "");
}

}  // namespace

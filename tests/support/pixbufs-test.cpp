#include "support/pixbufs.hpp"

#include <gtest/gtest.h>

#include "support/temp-dir.hpp"

namespace {

using support::pixel_at;

TEST(Pixbufs, QuartersHaveFourColours) {
  const support::PixbufPtr pixbuf = support::quartered_pixbuf(5, 4);

  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), support::kRed);
  EXPECT_EQ(pixel_at(pixbuf.get(), 4, 0), support::kGreen);
  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 3), support::kBlue);
  EXPECT_EQ(pixel_at(pixbuf.get(), 4, 3), support::kWhite);
}

TEST(Pixbufs, KeepTheAlphaOfAColour) {
  const support::PixbufPtr pixbuf = support::solid_pixbuf(1, 1, {1, 2, 3, 40});

  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), (support::Rgba{1, 2, 3, 40}));
}

TEST(Pixbufs, AreReadBackFromAFile) {
  const support::TempDir dir;
  const std::string path = support::save_picture(dir.path("a.png"), 3, 2, support::kBlue);

  const auto read = support::PixbufPtr::adopt(gdk_pixbuf_new_from_file(path.c_str(), nullptr));

  ASSERT_TRUE(read);
  EXPECT_EQ(gdk_pixbuf_get_width(read.get()), 3);
  EXPECT_EQ(pixel_at(read.get(), 2, 1), support::kBlue);
}

}  // namespace

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstring>
#include <random>
#include <string>
#include <tuple>

#include "glib-ptr.hpp"
#include "resource-manager.h"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"

using PixbufRef = pb::Ref<GdkPixbuf>;
using support::pixel_at;
using support::take_glib_warnings;
using testing::ElementsAre;

namespace {

constexpr const char *kBitmapFile =
    PB_PACKAGE_DIR "/usr/apps/com.velmora.photobrowser/res/bitmap/pb-res-bitmap-wvga.rbm";

PixbufRef image(gint handle, gint id) { return PixbufRef::adopt(rsrc_get_image(handle, id)); }

std::string bundle_bytes() {
  pb::StringPtr bytes;
  gsize size = 0;
  if (!g_file_get_contents(kBitmapFile, pb::out(bytes), &size, nullptr)) return {};
  return {bytes.get(), size};
}

class Bitmaps : public testing::Test {
 protected:
  Bitmaps() : handle_(rsrc_open_rbm(kBitmapFile)) {}
  ~Bitmaps() override { rsrc_close_rbm(handle_); }

  gint handle_;
};

void expect_placeholder(const PixbufRef &picture, int side) {
  ASSERT_TRUE(picture);
  EXPECT_EQ(gdk_pixbuf_get_width(picture.get()), side);
  EXPECT_EQ(gdk_pixbuf_get_height(picture.get()), side);
  // Its edge and its cross are seen on its ground.
  const auto ground = pixel_at(picture.get(), side / 2, side / 4);
  EXPECT_EQ(ground.alpha, 255);
  EXPECT_NE(pixel_at(picture.get(), 0, side / 4), ground);
  EXPECT_NE(pixel_at(picture.get(), side / 4, side / 4), ground);
}

class BitmapSize : public Bitmaps, public testing::WithParamInterface<std::tuple<int, int, int>> {};

}  // namespace

TEST_F(Bitmaps, OpenGivesAHandle) { EXPECT_GE(handle_, 0); }

TEST_P(BitmapSize, FitsTheCell) {
  const auto [id, width, height] = GetParam();

  const PixbufRef picture = image(handle_, id);

  ASSERT_TRUE(picture);
  EXPECT_EQ(gdk_pixbuf_get_width(picture.get()), width);
  EXPECT_EQ(gdk_pixbuf_get_height(picture.get()), height);
}

INSTANTIATE_TEST_SUITE_P(
    Of, BitmapSize,
    testing::Values(std::tuple(67, 148, 148), std::tuple(86, 148, 148), std::tuple(53, 138, 122),
                    std::tuple(83, 138, 122), std::tuple(55, 32, 32), std::tuple(195, 32, 32),
                    std::tuple(105, 44, 44), std::tuple(901, 24, 24), std::tuple(902, 24, 24),
                    std::tuple(903, 24, 24), std::tuple(904, 160, 128), std::tuple(905, 128, 112),
                    std::tuple(906, 64, 64)),
    [](const auto &bitmap) { return std::to_string(std::get<0>(bitmap.param)); });

TEST_F(Bitmaps, TheFrameSurroundsAWindowOf108Pixels) {
  const PixbufRef frame = image(handle_, 83);
  ASSERT_TRUE(frame);

  const auto border = pixel_at(frame.get(), 18, 60);
  EXPECT_EQ(pixel_at(frame.get(), 127, 60), border);
  EXPECT_EQ(pixel_at(frame.get(), 70, 8), border);
  EXPECT_EQ(pixel_at(frame.get(), 70, 117), border);
  EXPECT_NE(pixel_at(frame.get(), 19, 9), border);
  EXPECT_NE(pixel_at(frame.get(), 126, 116), border);
}

TEST_F(Bitmaps, TheFrameCanBearAnotherPicture) {
  const PixbufRef frame = image(handle_, 83);
  ASSERT_TRUE(frame);

  EXPECT_TRUE(gdk_pixbuf_get_has_alpha(frame.get()));
}

TEST_F(Bitmaps, EachCallerGetsACopyOfItsOwn) {
  const PixbufRef first = image(handle_, 67);
  ASSERT_TRUE(first);
  gdk_pixbuf_fill(first.get(), 0xff0000ff);

  const PixbufRef second = image(handle_, 67);

  ASSERT_TRUE(second);
  EXPECT_NE(pixel_at(second.get(), 0, 0), pixel_at(first.get(), 0, 0));
}

TEST_F(Bitmaps, AnUnknownNumberHasAPlaceholderAndOneWarning) {
  expect_placeholder(image(handle_, 1), 32);
  image(handle_, 1);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("The bitmap 1 of the package cannot be read"));
}

TEST_F(Bitmaps, EachCallerGetsAPlaceholderOfItsOwn) {
  const PixbufRef first = image(-1, 67);
  gdk_pixbuf_fill(first.get(), 0xff0000ff);

  expect_placeholder(image(-1, 67), 148);
}

TEST_F(Bitmaps, ANegativeNumberHasNone) { EXPECT_FALSE(image(handle_, -1)); }

TEST_F(Bitmaps, AFileThatIsNotOpenHasPlaceholders) {
  expect_placeholder(image(-1, 67), 148);
  expect_placeholder(image(handle_ + 1, 55), 32);
}

TEST_F(Bitmaps, AClosedFileHasPlaceholders) {
  rsrc_close_rbm(handle_);

  expect_placeholder(image(handle_, 83), 148);
}

TEST_F(Bitmaps, OutliveTheirFile) {
  const PixbufRef picture = image(handle_, 67);
  ASSERT_TRUE(picture);
  rsrc_close_rbm(handle_);

  EXPECT_EQ(gdk_pixbuf_get_width(picture.get()), 148);
}

TEST_F(Bitmaps, ClosingTwiceHarmsNobody) {
  const gint other = rsrc_open_rbm(kBitmapFile);
  rsrc_close_rbm(handle_);
  rsrc_close_rbm(handle_);

  EXPECT_TRUE(image(other, 67));
  rsrc_close_rbm(other);
}

TEST(BitmapFile, ThatIsMissingIsRefused) {
  EXPECT_EQ(rsrc_open_rbm("/nonexistent/pb-res-bitmap-wvga.rbm"), -1);
}

TEST(BitmapFile, WithoutANameIsRefused) { EXPECT_EQ(rsrc_open_rbm(nullptr), -1); }

TEST(BitmapFile, ThatIsAFolderIsRefused) { EXPECT_EQ(rsrc_open_rbm("/"), -1); }

TEST(BitmapFile, ThatIsEmptyIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "");

  EXPECT_EQ(rsrc_open_rbm(file.c_str()), -1);
}

TEST(BitmapFile, ThatIsAPipeIsRefusedAtOnce) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "x");
  const std::string pipe = dir.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

  EXPECT_EQ(rsrc_open_rbm(pipe.c_str()), -1);
}

TEST(BitmapFile, ThatIsSomethingElseIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=Photos\n");

  EXPECT_EQ(rsrc_open_rbm(file.c_str()), -1);
}

TEST(BitmapFile, OfMoreThan8MegabytesIsRefused) {
  std::string bytes = bundle_bytes();
  bytes.resize((8U << 20U) + 1, '\0');
  const support::TempDir dir;
  const std::string file = dir.write("file", bytes);

  EXPECT_EQ(rsrc_open_rbm(file.c_str()), -1);
}

TEST(BitmapFile, APictureThatClaimsAHugeSizeIsRefused) {
  std::string bytes = bundle_bytes();
  const std::string_view kStart("\0\0\0\rIHDR", 8);
  const std::string kHuge("\0\1\x86\xa0\0\1\x86\xa0", 8);  // 100000 x 100000
  for (std::size_t at = bytes.find(kStart); at != std::string::npos;
       at = bytes.find(kStart, at + 1)) {
    bytes.replace(at + kStart.size(), kHuge.size(), kHuge);
  }
  const support::TempDir dir;
  const std::string file = dir.write("file", bytes);
  const gint handle = rsrc_open_rbm(file.c_str());

  expect_placeholder(image(handle, 67), 148);
  EXPECT_EQ(take_glib_warnings().size(), 1U);
  rsrc_close_rbm(handle);
}

TEST(BitmapFile, ACompressedPictureIsRefused) {
  std::string bytes = bundle_bytes();
  const std::string_view kPng("\x89PNG", 4);
  int flagged = 0;
  for (std::size_t at = bytes.find(kPng); at != std::string::npos; at = bytes.find(kPng, at + 1)) {
    bytes[at - 4] = 1;  // the flags stand in front of the picture
    ++flagged;
  }
  const support::TempDir dir;
  const std::string file = dir.write("file", bytes);
  const gint handle = rsrc_open_rbm(file.c_str());

  ASSERT_GT(flagged, 0);
  expect_placeholder(image(handle, 67), 148);
  EXPECT_EQ(take_glib_warnings().size(), 1U);
  rsrc_close_rbm(handle);
}

TEST(BitmapFile, ThatIsCutOffAnywhereNeverHarmsTheProgram) {
  const std::string whole = bundle_bytes();
  const support::TempDir dir;
  const std::string file = dir.write("file", "x");
  for (std::size_t size = 1; size < whole.size(); size += size < 1500 ? 7 : 997) {
    g_file_set_contents(file.c_str(), whole.data(), static_cast<gssize>(size), nullptr);

    const gint handle = rsrc_open_rbm(file.c_str());

    EXPECT_TRUE(image(handle, 67));
    rsrc_close_rbm(handle);
  }
  take_glib_warnings();
}

TEST(BitmapFile, ThatWasDamagedAnywhereNeverHarmsTheProgram) {
  const std::string whole = bundle_bytes();
  ASSERT_FALSE(whole.empty());
  std::mt19937 random(20);  // the same damage in every run
  std::uniform_int_distribution<std::size_t> place(0, whole.size() - 1);
  std::uniform_int_distribution<int> byte(0, 255);
  const support::TempDir dir;
  const std::string file = dir.write("file", "x");
  for (int round = 0; round < 200; ++round) {
    std::string bytes = whole;
    // The first kilobyte holds the tables.
    for (int i = 0; i < 8; ++i) bytes[place(random) % 1024] = static_cast<char>(byte(random));
    for (int i = 0; i < 8; ++i) bytes[place(random)] = static_cast<char>(byte(random));
    if (round % 4 == 0) bytes.resize(place(random));
    g_file_set_contents(file.c_str(), bytes.data(), static_cast<gssize>(bytes.size()), nullptr);

    const gint handle = rsrc_open_rbm(file.c_str());

    for (const gint id : {53, 67, 83, 105, 906}) {
      const PixbufRef picture = image(handle, id);
      ASSERT_TRUE(picture);
      EXPECT_LE(gdk_pixbuf_get_width(picture.get()), 512);
    }
    rsrc_close_rbm(handle);
  }
  take_glib_warnings();
}

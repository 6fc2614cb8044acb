#include "file-bytes.hpp"
#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/whole-file.hpp"
#include "pictures/descriptor.hpp"
#include "quarters.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::quarters;

TEST(Fit, KeepsWhatFits) {
  const Size size = fit({100, 50}, {148, 148}, false);

  EXPECT_EQ(size.width, 100);
  EXPECT_EQ(size.height, 50);
}

TEST(Fit, EnlargesWhenAsked) {
  const Size size = fit({100, 50}, {148, 148}, true);

  EXPECT_EQ(size.width, 148);
  EXPECT_EQ(size.height, 74);
}

TEST(Fit, ReducesToTheTighterSide) {
  const Size size = fit({4000, 3000}, {400, 100}, false);

  EXPECT_EQ(size.width, 133);
  EXPECT_EQ(size.height, 100);
}

TEST(Fit, LeavesAPixelAtLeast) {
  EXPECT_EQ(fit({60000, 1}, {148, 148}, false).height, 1);
  EXPECT_EQ(fit({1, 60000}, {148, 148}, false).width, 1);
}

TEST(Turned, GivesEachOrientation) {
  const auto pixbuf = support::quartered_pixbuf(12, 8);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    EXPECT_EQ(quarters(turned(pixbuf, orientation).get()), test::kTurnedQuarters[orientation]);
  }
}

TEST(Opposite, UndoesEachOrientation) {
  const auto pixbuf = support::quartered_pixbuf(12, 8);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const PixbufRef back = turned(turned(pixbuf, orientation), opposite(orientation));

    EXPECT_EQ(quarters(back.get()), "RGBW") << orientation;
    EXPECT_EQ(gdk_pixbuf_get_width(back.get()), 12) << orientation;
  }
}

TEST(Scaled, KeepsColours) {
  const auto pixbuf = support::solid_pixbuf(333, 251, {255, 17, 0});

  for (const Size size : {Size{148, 111}, {333, 1}, {1, 1}, {332, 250}, {500, 400}}) {
    const PixbufRef result = scaled(pixbuf, size);
    ASSERT_EQ(gdk_pixbuf_get_width(result.get()), size.width);
    ASSERT_EQ(gdk_pixbuf_get_height(result.get()), size.height);
    for (const int x : {0, size.width / 2, size.width - 1}) {
      EXPECT_EQ(support::pixel_at(result.get(), x, size.height - 1), (support::Rgba{255, 17, 0}));
    }
  }
}

TEST(Scaled, GivesTheMeanOfWhatAPixelCovers) {
  const auto pixbuf = support::solid_pixbuf(4, 2, support::kBlack);
  gdk_pixbuf_fill(PixbufRef::adopt(gdk_pixbuf_new_subpixbuf(pixbuf.get(), 0, 0, 1, 2)).get(),
                  0xff0000ff);

  const PixbufRef result = scaled(pixbuf, {2, 1});

  EXPECT_EQ(support::pixel_at(result.get(), 0, 0), (support::Rgba{128, 0, 0}));
  EXPECT_EQ(support::pixel_at(result.get(), 1, 0), support::kBlack);
}

TEST(Scaled, SharesPixelsBetweenTheirNeighbours) {
  const auto pixbuf = support::solid_pixbuf(3, 1, support::kBlack);
  gdk_pixbuf_fill(PixbufRef::adopt(gdk_pixbuf_new_subpixbuf(pixbuf.get(), 1, 0, 1, 1)).get(),
                  0xff0000ff);

  const PixbufRef result = scaled(pixbuf, {2, 1});

  EXPECT_EQ(support::pixel_at(result.get(), 0, 0), (support::Rgba{85, 0, 0}));
  EXPECT_EQ(support::pixel_at(result.get(), 1, 0), (support::Rgba{85, 0, 0}));
}

TEST(Scaled, KeepsTransparency) {
  const auto pixbuf = support::solid_pixbuf(40, 40, {255, 0, 0, 0}, true);

  EXPECT_EQ(support::pixel_at(scaled(pixbuf, {10, 10}).get(), 5, 5).alpha, 0);
}

TEST(WholeFile, IsEmptyForAnEmptyFile) {
  const support::TempDir dir;
  const Descriptor file(open_regular_file(dir.write("a", "").c_str()));

  EXPECT_TRUE(read_whole_file(file.get()).empty());
}

/// One file of each format, decoded in this process, where a sanitizer sees what is kept.
class DecodeHere : public testing::Test {
 protected:
  Decoded decode_bytes(const Bytes &bytes, Order order) {
    const Descriptor file(open_regular_file(dir_.write("a", bytes).c_str()));
    return decode(file.get(), order);
  }

  support::TempDir dir_;
  PixbufRef pixbuf_ = support::quartered_pixbuf(64, 48);
};

TEST_F(DecodeHere, ReadsEveryFormat) {
  const Bytes preview = test::jpeg_of(support::quartered_pixbuf(64, 48).get());
  for (const Bytes &bytes :
       {test::jpeg_of(pixbuf_.get()), test::jpeg_of(pixbuf_.get(), true),
        test::jpeg_of(pixbuf_.get(), test::JpegKind{.inks = true}),
        test::jpeg_of(pixbuf_.get(), test::JpegKind{.plain_rgb = true}),
        test::jpeg_of(support::quartered_pixbuf(1600, 1200).get()),
        test::with_exif(test::jpeg_of(support::quartered_pixbuf(320, 240).get()),
                        {.preview = preview}),
        test::saved_as(pixbuf_.get(), "png"), test::saved_as(pixbuf_.get(), "bmp"),
        test::gif_of(pixbuf_.get()), test::webp_of(pixbuf_.get()), test::tiff_of(pixbuf_.get(), 1),
        test::heif_of(pixbuf_.get(), "heif"), test::heif_of(pixbuf_.get(), "avif")}) {
    if (bytes.empty()) continue;
    const Decoded decoded =
        decode_bytes(bytes, {.box = {48, 48}, .upright = true, .preview = true, .opaque = true});

    ASSERT_EQ(decoded.status, wire::Status::kOk) << bytes.substr(0, 12);
    EXPECT_EQ(quarters(decoded.pixbuf.get()), "RGBW") << bytes.substr(0, 12);
    EXPECT_EQ(gdk_pixbuf_get_width(decoded.pixbuf.get()), 48);
    EXPECT_EQ(gdk_pixbuf_get_height(decoded.pixbuf.get()), 36);
  }
}

TEST_F(DecodeHere, EndsOnTruncatedFiles) {
  for (const Bytes &bytes :
       {test::jpeg_of(pixbuf_.get()), test::jpeg_of(pixbuf_.get(), true),
        test::saved_as(pixbuf_.get(), "png"), test::saved_as(pixbuf_.get(), "bmp"),
        test::gif_of(pixbuf_.get()), test::webp_of(pixbuf_.get()), test::tiff_of(pixbuf_.get(), 1),
        test::heif_of(pixbuf_.get(), "heif")}) {
    for (size_t length = 0; length < bytes.size(); length += 1 + bytes.size() / 16) {
      const Decoded decoded =
          decode_bytes(bytes.substr(0, length), {.box = {48, 48}, .upright = true});

      EXPECT_EQ(decoded.status == wire::Status::kOk, static_cast<bool>(decoded.pixbuf));
    }
  }
}

TEST_F(DecodeHere, TellsAVideo) {
  EXPECT_EQ(decode_bytes(test::mp4_of({.width = 64, .height = 48}), {.box = {48, 48}}).status,
            wire::Status::kVideo);
}

TEST_F(DecodeHere, TellsTheTimeInAThumbnailOfTheSharedCache) {
  pb::StringPtr data;
  gsize size = 0;
  gdk_pixbuf_save_to_buffer(pixbuf_.get(), pb::out(data), &size, "png", nullptr,
                            "tEXt::Thumb::MTime", "1715938201", nullptr);

  EXPECT_EQ(decode_bytes({data.get(), size}, {.box = {48, 48}}).thumbnail_mtime, 1715938201);
  EXPECT_EQ(decode_bytes(test::saved_as(pixbuf_.get(), "png"), {.box = {48, 48}}).thumbnail_mtime,
            -1);
}

}  // namespace
}  // namespace phone::pictures

#include "pictures/decoder/coarse-jpeg.hpp"

#include <cmath>
#include <random>

#include "file-bytes.hpp"
#include "support/glib-test.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::JpegKind;

/// A picture with waves of light, noise, and colours that change slowly.
PixbufRef varied_pixbuf(int width, int height) {
  auto pixbuf = PixbufRef::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  std::mt19937 random(7);
  for (int y = 0; y < height; ++y) {
    guchar *row = gdk_pixbuf_get_pixels(pixbuf.get()) + y * gdk_pixbuf_get_rowstride(pixbuf.get());
    for (int x = 0; x < width; ++x) {
      const double light = 80 + 60 * std::sin(x * 0.05) * std::cos(y * 0.04) + random() % 30;
      row[3 * x] = static_cast<guchar>(light);
      row[3 * x + 1] = static_cast<guchar>(light + x * 0.2);
      row[3 * x + 2] = static_cast<guchar>(light + y * 0.2);
    }
  }
  return pixbuf;
}

PixbufRef coarse(const Bytes &bytes) { return decode_coarse_jpeg(test::span_of(bytes)); }

/// The mean over all values of how far two pictures of one size are apart.
double distance(GdkPixbuf *one, GdkPixbuf *other) {
  const int width = gdk_pixbuf_get_width(one);
  const int height = gdk_pixbuf_get_height(one);
  double sum = 0;
  for (int y = 0; y < height; ++y) {
    const guchar *a = gdk_pixbuf_get_pixels(one) + y * gdk_pixbuf_get_rowstride(one);
    const guchar *b = gdk_pixbuf_get_pixels(other) + y * gdk_pixbuf_get_rowstride(other);
    for (int i = 0; i < width * 3; ++i) sum += std::abs(a[i] - b[i]);
  }
  return sum / (static_cast<double>(width) * height * 3);
}

std::string kind_name(const testing::TestParamInfo<JpegKind> &one) {
  const JpegKind &kind = one.param;
  return (kind.grey ? std::string("grey") : "colours") + "_" + std::to_string(kind.across) + "x" +
         std::to_string(kind.down) + "_restart_" + std::to_string(kind.restart_interval);
}

class CoarseJpeg : public testing::TestWithParam<JpegKind> {};

TEST_P(CoarseJpeg, ComesOutAsTheLibraryDecodesIt) {
  for (const auto &[width, height] : {std::pair{320, 240}, {323, 245}, {17, 9}, {8, 8}, {1, 1}}) {
    const Bytes jpeg = test::jpeg_of(varied_pixbuf(width, height).get(), GetParam());
    const PixbufRef expected = decode_jpeg(test::span_of(jpeg), {1, 1});

    const PixbufRef pixbuf = coarse(jpeg);

    ASSERT_TRUE(pixbuf);
    ASSERT_EQ(gdk_pixbuf_get_width(pixbuf.get()), (width + 7) / 8);
    ASSERT_EQ(gdk_pixbuf_get_height(pixbuf.get()), (height + 7) / 8);
    // Shared colours are spread more simply than the library does.
    EXPECT_LT(distance(pixbuf.get(), expected.get()), 4) << width;
  }
}

INSTANTIATE_TEST_SUITE_P(OfPlainKinds, CoarseJpeg,
                         testing::Values(JpegKind{.across = 1, .down = 1}, JpegKind{},
                                         JpegKind{.across = 2, .down = 1},
                                         JpegKind{.across = 1, .down = 2}, JpegKind{.grey = true},
                                         JpegKind{.restart_interval = 1},
                                         JpegKind{.restart_interval = 7},
                                         JpegKind{.grey = true, .restart_interval = 3}),
                         kind_name);

TEST(CoarseJpegOfOneColourABlock, IsExact) {
  const Bytes jpeg = test::jpeg_of(varied_pixbuf(320, 240).get(), JpegKind{.across = 1, .down = 1});

  EXPECT_LT(distance(coarse(jpeg).get(), decode_jpeg(test::span_of(jpeg), {1, 1}).get()), 0.2);
}

TEST(CoarseJpegOfOtherKinds, IsLeftToTheLibrary) {
  const auto pixbuf = varied_pixbuf(64, 64);
  for (const JpegKind &kind :
       {JpegKind{.progressive = true}, JpegKind{.inks = true}, JpegKind{.plain_rgb = true}}) {
    EXPECT_FALSE(coarse(test::jpeg_of(pixbuf.get(), kind)));
  }
  EXPECT_FALSE(coarse(test::jpeg_start(0xc9, 64, 64)));
  EXPECT_FALSE(coarse(test::saved_as(pixbuf.get(), "png")));
  EXPECT_FALSE(coarse(""));
}

TEST(CoarseJpegThatIsCutOff, IsLeftToTheLibrary) {
  const Bytes jpeg = test::jpeg_of(varied_pixbuf(160, 120).get());
  for (size_t length = 0; length + 20 < jpeg.size(); length += jpeg.size() / 30) {
    EXPECT_FALSE(coarse(jpeg.substr(0, length))) << length;
  }
}

TEST(CoarseJpegWithARestartMissing, IsLeftToTheLibrary) {
  const Bytes jpeg = test::jpeg_of(varied_pixbuf(160, 120).get(), JpegKind{.restart_interval = 5});
  Bytes damaged = jpeg;
  const size_t marker = damaged.find("\xff\xd1");
  ASSERT_NE(marker, Bytes::npos);
  damaged[marker + 1] = '\xd3';

  EXPECT_TRUE(coarse(jpeg));
  EXPECT_FALSE(coarse(damaged));
}

TEST(CoarseJpegThatIsDamaged, DoesNoHarm) {
  std::mt19937 random(99);
  const auto pixbuf = varied_pixbuf(96, 64);
  int decoded = 0;
  for (const JpegKind &kind :
       {JpegKind{}, JpegKind{.restart_interval = 2}, JpegKind{.grey = true}}) {
    const Bytes jpeg = test::jpeg_of(pixbuf.get(), kind);
    for (int i = 0; i < 60; ++i) {
      Bytes bytes = jpeg;
      for (unsigned changes = 1 + random() % 4; changes > 0; --changes) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
      }
      // A size far beyond what the data can hold is the header reader's to refuse.
      const auto header = read_header(test::span_of(bytes));
      if (!header || header->refused || header->width > 4000 || header->height > 4000) continue;
      if (coarse(bytes)) ++decoded;
    }
  }

  EXPECT_GT(decoded, 0);
}

}  // namespace
}  // namespace phone::pictures

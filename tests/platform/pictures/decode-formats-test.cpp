#include "decoded.hpp"
#include "file-bytes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::decode_file;
using test::quarters;

constexpr int kWidth = 64;
constexpr int kHeight = 48;

/// One kind of file that can carry an orientation.
struct Kind {
  const char *name;
  Bytes (*make)(GdkPixbuf *pixbuf, int orientation);
  /// Whether what decodes the format turns the picture by itself.
  bool turns_itself = false;
};

void PrintTo(const Kind &kind, std::ostream *out) { *out << kind.name; }

const Kind kKinds[] = {
    {"jpeg",
     [](GdkPixbuf *pixbuf, int orientation) {
       return test::with_exif(test::jpeg_of(pixbuf), {.orientation = orientation});
     }},
    {"progressive_jpeg",
     [](GdkPixbuf *pixbuf, int orientation) {
       return test::with_exif(test::jpeg_of(pixbuf, true), {.orientation = orientation});
     }},
    {"png",
     [](GdkPixbuf *pixbuf, int orientation) {
       return test::with_png_chunk(test::saved_as(pixbuf, "png"), "eXIf",
                                   test::exif_block({.orientation = orientation}));
     }},
    {"webp",
     [](GdkPixbuf *pixbuf, int orientation) {
       return test::webp_with_exif(pixbuf, test::exif_block({.orientation = orientation}));
     }},
    {"tiff", [](GdkPixbuf *pixbuf, int orientation) { return test::tiff_of(pixbuf, orientation); }},
    {"tiff_of_other_order",
     [](GdkPixbuf *pixbuf, int orientation) { return test::tiff_of(pixbuf, orientation, true); }},
    {"heif",
     [](GdkPixbuf *pixbuf, int orientation) { return test::heif_of(pixbuf, "heif", orientation); },
     true},
    {"avif",
     [](GdkPixbuf *pixbuf, int orientation) { return test::heif_of(pixbuf, "avif", orientation); },
     true},
};

class Orientation : public testing::TestWithParam<std::tuple<Kind, int>> {
 protected:
  void SetUp() override {
    const auto &[kind, orientation] = GetParam();
    const auto pixbuf = support::quartered_pixbuf(kWidth, kHeight);
    const Bytes bytes = kind.make(pixbuf.get(), orientation);
    if (bytes.empty()) GTEST_SKIP() << "no encoder for " << kind.name;
    path_ = dir_.write("picture", bytes);
  }

  support::TempDir dir_;
  std::string path_;
};

TEST_P(Orientation, IsAppliedToAnUprightPicture) {
  const int orientation = std::get<int>(GetParam());

  const Result result = decode_file(path_, 1000, 1000, wire::kUpright);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), test::kTurnedQuarters[orientation]);
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), orientation > 4 ? kHeight : kWidth);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), orientation > 4 ? kWidth : kHeight);
}

TEST_P(Orientation, IsLeftAloneInAPictureAsStored) {
  const auto &[kind, orientation] = GetParam();
  const int shown = kind.turns_itself ? orientation : 1;

  const Result result = decode_file(path_, 1000, 1000);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), test::kTurnedQuarters[shown]);
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), shown > 4 ? kHeight : kWidth);
}

std::string case_name(const testing::TestParamInfo<std::tuple<Kind, int>> &one) {
  return std::string(std::get<0>(one.param).name) + "_" + std::to_string(std::get<1>(one.param));
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Orientation,
                         testing::Combine(testing::ValuesIn(kKinds), testing::Range(1, 9)),
                         case_name);

class DecodePicture : public testing::Test {
 protected:
  support::TempDir dir_;
};

TEST_F(DecodePicture, ReadsGif) {
  const auto pixbuf = support::quartered_pixbuf(kWidth, kHeight);

  const Result result = decode_file(dir_.write("a", test::gif_of(pixbuf.get())), 100, 100);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
}

TEST_F(DecodePicture, ReadsBmp) {
  const auto pixbuf = support::quartered_pixbuf(kWidth, kHeight);

  const Result result = decode_file(dir_.write("a", test::saved_as(pixbuf.get(), "bmp")), 100, 100);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
}

TEST_F(DecodePicture, DoesNotTrustTheExtension) {
  const auto pixbuf = support::quartered_pixbuf(kWidth, kHeight);

  const Result result =
      decode_file(dir_.write("photo.jpg", test::saved_as(pixbuf.get(), "png")), 100, 100);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
}

TEST_F(DecodePicture, FitsTheBoxAndKeepsProportions) {
  const auto pixbuf = support::quartered_pixbuf(800, 400);

  const Result result = decode_file(dir_.write("a", test::jpeg_of(pixbuf.get())), 148, 148);

  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 74);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
}

TEST_F(DecodePicture, FitsTheBoxAfterTheTurn) {
  const Bytes jpeg = test::jpeg_of(support::quartered_pixbuf(800, 400).get());

  const Result result = decode_file(dir_.write("a", test::with_exif(jpeg, {.orientation = 6})), 300,
                                    200, wire::kUpright);

  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 100);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 200);
}

TEST_F(DecodePicture, DoesNotEnlargeUnasked) {
  const auto pixbuf = support::quartered_pixbuf(20, 10);

  const Result result = decode_file(dir_.write("a", test::jpeg_of(pixbuf.get())), 148, 148);

  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 20);
}

TEST_F(DecodePicture, FillsTheBoxWhenAsked) {
  const auto pixbuf = support::quartered_pixbuf(20, 10);

  const Result result =
      decode_file(dir_.write("a", test::jpeg_of(pixbuf.get())), 148, 148, wire::kEnlarge);

  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 74);
}

TEST_F(DecodePicture, GivesThinPicturesAPixelAtLeast) {
  const auto pixbuf = support::solid_pixbuf(2000, 1, support::kRed);

  const Result result = decode_file(dir_.write("a", test::saved_as(pixbuf.get(), "png")), 100, 100);

  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 100);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 1);
}

TEST_F(DecodePicture, KeepsTransparency) {
  const auto pixbuf = support::solid_pixbuf(16, 16, {255, 0, 0, 0}, true);

  const Result result = decode_file(dir_.write("a", test::saved_as(pixbuf.get(), "png")), 100, 100);

  EXPECT_TRUE(gdk_pixbuf_get_has_alpha(result.pixbuf.get()));
}

TEST_F(DecodePicture, PutsTransparencyOnWhiteWhenAsked) {
  const auto pixbuf = support::solid_pixbuf(16, 16, {255, 0, 0, 0}, true);

  const Result result =
      decode_file(dir_.write("a", test::saved_as(pixbuf.get(), "png")), 100, 100, wire::kOpaque);

  EXPECT_FALSE(gdk_pixbuf_get_has_alpha(result.pixbuf.get()));
  EXPECT_EQ(support::pixel_at(result.pixbuf.get(), 8, 8), support::kWhite);
}

TEST_F(DecodePicture, ShowsCoarseScansOfALargeProgressivePicture) {
  const Bytes jpeg = test::jpeg_of(support::quartered_pixbuf(1200, 900).get(), true);

  // The second half holds refinements that a thumbnail does not need.
  const Result result = decode_file(dir_.write("a", jpeg.substr(0, jpeg.size() * 2 / 3)), 148, 148);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
}

TEST_F(DecodePicture, ShowsWhatThereIsOfATruncatedJpeg) {
  const Bytes jpeg = test::jpeg_of(support::solid_pixbuf(320, 240, support::kRed).get());

  const Result result =
      decode_file(dir_.write("a", jpeg.substr(0, jpeg.size() * 2 / 3)), 1000, 1000);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()).substr(0, 2), "RR");
}

/// Pictures whose preview has another colour, so that it shows where the result came from.
class DecodePreview : public DecodePicture {
 protected:
  std::string file_with_preview(int width, int height, int preview_width, int preview_height) {
    const auto main = support::solid_pixbuf(width, height, support::kRed);
    const auto preview = support::solid_pixbuf(preview_width, preview_height, support::kBlue);
    return dir_.write(
        "a", test::with_exif(test::jpeg_of(main.get()), {.preview = test::jpeg_of(preview.get())}));
  }
  static std::string colour_of(const Result &result) {
    return quarters(result.pixbuf.get()).substr(0, 1);
  }
};

TEST_F(DecodePreview, IsTakenWhereItCoversTheBox) {
  const Result result =
      decode_file(file_with_preview(800, 600, 160, 120), 148, 148, wire::kPreview);

  EXPECT_EQ(colour_of(result), "B");
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 111);
}

TEST_F(DecodePreview, IsNotTakenUnasked) {
  EXPECT_EQ(colour_of(decode_file(file_with_preview(800, 600, 160, 120), 148, 148)), "R");
}

TEST_F(DecodePreview, IsNotTakenWhenItIsTooSmall) {
  EXPECT_EQ(colour_of(decode_file(file_with_preview(800, 600, 120, 90), 148, 148, wire::kPreview)),
            "R");
}

TEST_F(DecodePreview, IsNotTakenWhenItShowsAnotherPicture) {
  EXPECT_EQ(colour_of(decode_file(file_with_preview(600, 800, 320, 240), 148, 148, wire::kPreview)),
            "R");
}

TEST_F(DecodePreview, IsNotTakenWhenItIsDamaged) {
  const auto main = support::solid_pixbuf(800, 600, support::kRed);
  const std::string path = dir_.write(
      "a",
      test::with_exif(test::jpeg_of(main.get()), {.preview = test::jpeg_start(0xc0, 160, 120)}));

  EXPECT_EQ(colour_of(decode_file(path, 148, 148, wire::kPreview)), "R");
}

TEST_F(DecodePreview, IsTakenFromBetweenDarkBars) {
  const auto main = support::solid_pixbuf(900, 600, support::kRed);
  const auto preview = support::solid_pixbuf(160, 120, support::kBlack);
  const auto inner = support::solid_pixbuf(160, 106, support::kBlue);
  gdk_pixbuf_copy_area(inner.get(), 0, 0, 160, 106, preview.get(), 0, 7);
  const std::string path = dir_.write(
      "a", test::with_exif(test::jpeg_of(main.get()), {.preview = test::jpeg_of(preview.get())}));

  const Result result = decode_file(path, 148, 148, wire::kPreview);

  EXPECT_EQ(quarters(result.pixbuf.get()), "BBBB");
  EXPECT_GT(support::pixel_at(result.pixbuf.get(), 74, 0).blue, 200);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 99);
}

TEST_F(DecodePreview, IsTurnedLikeThePicture) {
  const auto main = support::quartered_pixbuf(800, 600);
  const auto preview = support::quartered_pixbuf(160, 120);
  const std::string path =
      dir_.write("a", test::with_exif(test::jpeg_of(main.get()),
                                      {.orientation = 7, .preview = test::jpeg_of(preview.get())}));

  const Result result = decode_file(path, 148, 148, wire::kPreview | wire::kUpright);

  EXPECT_EQ(quarters(result.pixbuf.get()), test::kTurnedQuarters[7]);
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 111);
}

}  // namespace
}  // namespace phone::pictures

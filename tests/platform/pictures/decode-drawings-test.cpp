#include <fcntl.h>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::decode_file;
using test::quarters;

class DecodeOther : public support::GlibTest {
 protected:
  void TearDown() override { Pool::shared().shutdown(); }

  std::string drawing(const Bytes &size, const Bytes &contents) {
    return dir_.write(
        "a.svg", "<svg xmlns='http://www.w3.org/2000/svg' " + size + ">" + contents + "</svg>");
  }
  std::string quartered_drawing(const Bytes &size) {
    return drawing(size,
                   "<rect width='4' height='2' fill='#f00'/>"
                   "<rect x='4' width='4' height='2' fill='#0f0'/>"
                   "<rect y='2' width='4' height='2' fill='#00f'/>"
                   "<rect x='4' y='2' width='4' height='2' fill='#fff'/>");
  }

  support::TempDir dir_;
};

using DecodeDrawing = DecodeOther;
using DecodeRaw = DecodeOther;

TEST_F(DecodeDrawing, PaintsIt) {
  const std::string path = quartered_drawing("width='80' height='40' viewBox='0 0 8 4'");

  const Result result = decode_file(path, 1000, 1000);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 80);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 40);
}

TEST_F(DecodeDrawing, PaintsALargeOneAtTheSizeOfTheBox) {
  // At its natural size it would take more memory than a decoder gets.
  const std::string path = quartered_drawing("width='18000' height='9000' viewBox='0 0 8 4'");

  const Result result = decode_file(path, 148, 148);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 74);
}

TEST_F(DecodeDrawing, EnlargesWithoutLoss) {
  const std::string path = quartered_drawing("width='8' height='4' viewBox='0 0 8 4'");

  const Result result = decode_file(path, 160, 160, wire::kEnlarge);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(support::pixel_at(result.pixbuf.get(), 79, 10), support::kRed);
}

/// Whether anything dark is in a picture.
bool has_ink(GdkPixbuf *pixbuf) {
  for (int y = 0; y < gdk_pixbuf_get_height(pixbuf); ++y) {
    for (int x = 0; x < gdk_pixbuf_get_width(pixbuf); ++x) {
      if (support::pixel_at(pixbuf, x, y).red < 64) return true;
    }
  }
  return false;
}

class DrawnText : public DecodeOther, public testing::WithParamInterface<const char *> {};

TEST_P(DrawnText, IsPainted) {
  const std::string path =
      drawing("width='60' height='60'",
              Bytes("<text x='5' y='50' font-size='50' font-family='") + GetParam() + "'>M</text>");

  const Result result = decode_file(path, 100, 100, wire::kOpaque);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_TRUE(has_ink(result.pixbuf.get()));
}

INSTANTIATE_TEST_SUITE_P(InFontsThatAreThereOrNot, DrawnText,
                         testing::Values("sans-serif", "serif", "monospace", "No Such Font"));

TEST_F(DecodeDrawing, SeesNoOtherFiles) {
  const std::string secret = dir_.write(
      "b.png", test::saved_as(support::solid_pixbuf(8, 8, support::kBlack).get(), "png"));
  const std::string path =
      drawing("width='60' height='60' xmlns:xlink='http://www.w3.org/1999/xlink'",
              "<image width='60' height='60' xlink:href='file://" + secret + "'/>");

  const Result result = decode_file(path, 100, 100, wire::kOpaque);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_FALSE(has_ink(result.pixbuf.get()));
}

TEST_F(DecodeDrawing, EndsOneThatMultipliesItself) {
  Bytes definitions = "<!DOCTYPE svg [<!ENTITY a0 'aaaaaaaaaa'>";
  for (int i = 1; i < 12; ++i) {
    const std::string inner = "&a" + std::to_string(i - 1) + ";";
    definitions += "<!ENTITY a" + std::to_string(i) + " '";
    for (int k = 0; k < 10; ++k) definitions += inner;
    definitions += "'>";
  }
  const std::string path =
      dir_.write("a.svg", definitions +
                              "]><svg xmlns='http://www.w3.org/2000/svg' width='9' "
                              "height='9'><text>&a11;</text></svg>");

  EXPECT_NE(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeDrawing, FindsACutOneDamaged) {
  const std::string path = dir_.write("a.svg", "<svg width='9' height='9'><rect");

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kDamaged);
}

TEST_F(DecodeDrawing, HasAProcessOfItsOwn) {
  const std::string path = quartered_drawing("width='80' height='40' viewBox='0 0 8 4'");
  decode_file(path, 100, 100);
  ASSERT_EQ(test::children().size(), 2u);

  decode_file(path, 120, 120);

  EXPECT_EQ(test::children().size(), 2u);
}

TEST_F(DecodeRaw, ShowsThePreviewOfADigitalNegative) {
  const Bytes preview = test::jpeg_of(support::quartered_pixbuf(320, 240).get());

  const Result result =
      decode_file(dir_.write("a.dng", test::dng_of(preview, 320, 240, 640, 480)), 148, 148);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(result.pixbuf.get()), 111);
}

class RawOrientation : public DecodeOther, public testing::WithParamInterface<int> {};

TEST_P(RawOrientation, IsApplied) {
  const Bytes preview = test::jpeg_of(support::quartered_pixbuf(320, 240).get());

  const Result result =
      decode_file(dir_.write("a.dng", test::dng_of(preview, 320, 240, 640, 480, GetParam())), 148,
                  148, wire::kUpright);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(quarters(result.pixbuf.get()), test::kTurnedQuarters[GetParam()]);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, RawOrientation, testing::Range(1, 9));

TEST_F(DecodeRaw, FindsADamagedPreviewDamaged) {
  const Bytes preview = test::jpeg_start(0xc0, 320, 240);

  const Problem problem =
      decode_file(dir_.write("a.dng", test::dng_of(preview, 320, 240, 640, 480)), 148, 148).problem;

  EXPECT_EQ(problem, Problem::kDamaged);
}

TEST_F(DecodeRaw, ToleratesATruncatedFile) {
  const Bytes preview = test::jpeg_of(support::quartered_pixbuf(320, 240).get());
  const Bytes dng = test::dng_of(preview, 320, 240, 640, 480);

  const Problem problem = decode_file(dir_.write("a.dng", dng.substr(0, 700)), 148, 148).problem;

  EXPECT_NE(problem, Problem::kNone);
}

}  // namespace
}  // namespace phone::pictures

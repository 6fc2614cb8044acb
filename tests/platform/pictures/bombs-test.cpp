#include "decoded.hpp"
#include "file-bytes.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::big;
using test::Bytes;
using test::little;

/// A small file that asks for much.
struct Bomb {
  const char *name;
  Bytes (*make)();
};

void PrintTo(const Bomb &bomb, std::ostream *out) { *out << bomb.name; }

Bytes svg(const Bytes &contents) {
  return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
         "width='100' height='100'>" +
         contents + "</svg>";
}

/// Groups that each show the one before ten times.
Bytes uses_within_uses() {
  Bytes contents = "<defs><g id='a0'><rect width='9' height='9'/></g>";
  for (int level = 1; level < 12; ++level) {
    contents += "<g id='a" + std::to_string(level) + "'>";
    for (int i = 0; i < 10; ++i) {
      contents += "<use xlink:href='#a" + std::to_string(level - 1) + "'/>";
    }
    contents += "</g>";
  }
  return svg(contents + "</defs><use xlink:href='#a11'/>");
}

/// A progressive picture that refines the same coefficients over and over.
Bytes many_scans() {
  const Bytes start = test::jpeg_start(0xc2, 8000, 8000);
  const Bytes codes = Bytes("\xff\xc4\0\x14\0\1", 6) + Bytes(15, '\0') + Bytes(1, '\0');
  const Bytes scan = Bytes("\xff\xda\0\x08\1\1\0\0\0\0", 10) + Bytes(64, '\0');
  Bytes bytes = start + codes;
  for (int i = 0; i < 2000; ++i) bytes += scan;
  return bytes + "\xff\xd9";
}

Bytes directory_of_itself() {
  Bytes bytes = Bytes("II*\0", 4) + little(8, 4) + little(3, 2);
  for (const auto &[tag, value] : {std::pair{0x014au, 8u}, {0xc612u, 1u}, {0x8769u, 8u}}) {
    bytes += little(tag, 2) + little(4, 2) + little(0xffffffff, 4) + little(value, 4);
  }
  return bytes + little(8, 4);
}

Bytes tiff_of_size(std::uint32_t width, std::uint32_t height) {
  Bytes tiff = test::tiff_of(support::solid_pixbuf(8, 8, support::kRed).get(), 1);
  tiff.replace(10, 12, little(256, 2) + little(4, 2) + little(1, 4) + little(width, 4));
  tiff.replace(22, 12, little(257, 2) + little(4, 2) + little(1, 4) + little(height, 4));
  return tiff;
}

const Bomb kBombs[] = {
    {"png_of_huge_size", [] { return test::png_start(0x7fffffff, 0x7fffffff); }},
    {"png_of_most_pixels", [] { return test::png_start(13341, 13341); }},
    {"png_of_one_column", [] { return test::png_start(1, 1000000); }},
    {"gif_of_one_large_frame", [] { return test::gif_start(13000, 13000); }},
    {"gif_of_no_width", [] { return test::gif_start(0, 65535); }},
    {"jpeg_without_data", [] { return test::jpeg_start(0xc0, 65500, 2700); }},
    {"jpeg_of_arithmetic_coding", [] { return test::jpeg_start(0xc9, 32, 32).substr(0, 160); }},
    {"jpeg_of_many_scans", many_scans},
    {"bmp_of_huge_size",
     [] {
       return "BM" + little(54, 4) + little(0, 4) + little(54, 4) + little(40, 4) +
              little(13000, 4) + little(13000, 4) + little(1, 2) + little(32, 2) + Bytes(24, '\0');
     }},
    {"webp_of_largest_canvas",
     [] {
       return "RIFF" + little(22, 4) + "WEBPVP8X" + little(10, 4) + Bytes("\x10\0\0\0", 4) +
              little(13000 - 1, 3) + little(13000 - 1, 3);
     }},
    {"tiff_of_huge_size", [] { return tiff_of_size(0xffffffff, 0xffffffff); }},
    {"tiff_of_most_pixels", [] { return tiff_of_size(13000, 13000); }},
    {"raw_directory_of_itself", directory_of_itself},
    {"raw_preview_of_huge_size",
     [] { return test::dng_of(test::jpeg_start(0xc0, 65500, 65500), 65500, 65500, 64, 64); }},
    {"drawing_of_huge_size",
     [] { return Bytes("<svg xmlns='http://www.w3.org/2000/svg' width='1e9' height='1e9'/>"); }},
    {"drawing_of_uses_within_uses", uses_within_uses},
    {"drawing_of_wide_blur",
     [] {
       return svg(
           "<filter id='f' x='-1e6' y='-1e6' width='2e6' height='2e6' filterUnits='userSpaceOnUse'>"
           "<feGaussianBlur stdDeviation='1e6'/></filter>"
           "<rect width='9' height='9' filter='url(#f)'/>");
     }},
    {"drawing_of_tiny_pattern",
     [] {
       return svg(
           "<pattern id='p' width='1e-9' height='1e-9' patternUnits='userSpaceOnUse'>"
           "<rect width='1' height='1'/></pattern><rect width='1e9' height='1e9' fill='url(#p)'/>");
     }},
    {"drawing_of_deep_groups",
     [] {
       Bytes contents;
       for (int i = 0; i < 100000; ++i) contents += "<g>";
       return svg(contents);
     }},
};

class Bombs : public support::GlibTest, public testing::WithParamInterface<Bomb> {
 protected:
  void TearDown() override { Pool::shared().shutdown(); }

  Result decode(const std::string &path, int side) {
    const OpenFile file = open_picture(path.c_str());
    Wish wish;
    wish.width = wish.height = side;
    wish.flags = wire::kUpright | wire::kPreview;
    wish.time_limit = {300 * G_TIME_SPAN_MILLISECOND, test::kLongest};
    return decode_picture(file, wish);
  }

  support::TempDir dir_;
};

TEST_P(Bombs, EndWithinTheLimits) {
  const Bytes bytes = GetParam().make();
  const std::string path = dir_.write("bomb", bytes);
  const std::string good =
      dir_.write("good", test::saved_as(support::quartered_pixbuf(40, 30).get(), "png"));

  for (const int side : {148, 800}) {
    const Result result = decode(path, side);

    EXPECT_NE(result.problem, Problem::kBusy);
    EXPECT_NE(result.problem, Problem::kNoDecoder);
    if (!result.pixbuf) continue;
    EXPECT_LE(gdk_pixbuf_get_width(result.pixbuf.get()), side);
  }

  EXPECT_EQ(test::decode_file(good, 100, 100).problem, Problem::kNone);
  EXPECT_EQ(support::read_file(path), bytes);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Bombs, testing::ValuesIn(kBombs),
                         [](const auto &one) { return std::string(one.param.name); });

}  // namespace
}  // namespace phone::pictures

#include <gmock/gmock.h>

#include "file-bytes.hpp"
#include "pictures/header-reader.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;

std::optional<Header> header_of(const Bytes &bytes) { return read_header(test::span_of(bytes)); }

struct Drawing {
  const char *text;
  int width;
  int height;
};

void PrintTo(const Drawing &drawing, std::ostream *out) { *out << drawing.text; }

class DrawingHeader : public testing::TestWithParam<Drawing> {};

TEST_P(DrawingHeader, HasTheNaturalSize) {
  const auto header = header_of(GetParam().text);

  ASSERT_TRUE(header);
  EXPECT_EQ(header->format, Format::kDrawing);
  EXPECT_EQ(header->width, GetParam().width);
  EXPECT_EQ(header->height, GetParam().height);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachForm, DrawingHeader,
    testing::Values(
        Drawing{"<svg width=\"30\" height='20'/>", 30, 20},
        Drawing{"<svg width='30px' height='20px'>", 30, 20},
        Drawing{"<svg width='1in' height='2.54cm'>", 96, 96},
        Drawing{"<svg width='72pt' height='25.4mm'>", 96, 96},
        Drawing{"<svg viewBox='0 0 30 20'>", 30, 20},
        Drawing{"<svg viewBox='0,0,30.5,20'>", 31, 20},
        Drawing{"<svg width='100%' height='100%' viewBox='0 0 30 20'>", 30, 20},
        Drawing{"<svg width='60' viewBox='0 0 30 20'>", 60, 40},
        Drawing{"<svg height='40' viewBox='0 0 30 20'>", 60, 40},
        Drawing{"<svg stroke-width='9' width = '30'\n height\t=\t'20'>", 30, 20},
        Drawing{"\xef\xbb\xbf <?xml version='1.0'?>\n<!-- <a> -->\n<svg width='3' height='2'>", 3,
                2},
        Drawing{"<!DOCTYPE svg PUBLIC 'a' 'b'><svg width='3' height='2'>", 3, 2},
        Drawing{"<!DOCTYPE svg [<!ENTITY a 'b'>]><svg width='3' height='2'>", 3, 2},
        Drawing{"<s:svg xmlns:s='http://www.w3.org/2000/svg' width='3' height='2'>", 3, 2}));

class NoDrawing : public testing::TestWithParam<const char *> {};

TEST_P(NoDrawing, IsNoPicture) { EXPECT_FALSE(header_of(GetParam())); }

INSTANTIATE_TEST_SUITE_P(InEveryWay, NoDrawing,
                         testing::Values("<html><svg width='3' height='2'>", "<svgx width='3'>",
                                         "<?xml version='1.0'", "<!-- <svg width='3'>", "<svg",
                                         "svg width='3' height='2'", "<", "<:", "<!", "< svg >"));

class RefusedDrawing : public testing::TestWithParam<const char *> {};

TEST_P(RefusedDrawing, HasNoUsableSize) {
  const auto header = header_of(GetParam());

  ASSERT_TRUE(header);
  EXPECT_TRUE(header->refused);
}

INSTANTIATE_TEST_SUITE_P(
    InEveryWay, RefusedDrawing,
    testing::Values("<svg>", "<svg width='30'>", "<svg width='-3' height='2'>",
                    "<svg width='nan' height='2'>", "<svg width='inf' height='2'>",
                    "<svg width='1e300' height='2'>", "<svg width='99999' height='99999'>",
                    "<svg viewBox='0 0 0 20'>", "<svg viewBox='0 0 30'>", "<svg width=3 height=2>",
                    "<svg width='3' height='2", "<svg width='3' height="));

}  // namespace
}  // namespace phone::pictures

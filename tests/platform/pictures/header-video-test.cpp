#include "file-bytes.hpp"
#include "pictures/header-reader.hpp"
#include "support/glib-test.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::Film;

constexpr std::uint64_t kFrom1904To1970 = 2082844800;

Header read(const Bytes &bytes) {
  const auto header = read_header(test::span_of(bytes));
  EXPECT_TRUE(header.has_value());
  return header.value_or(Header{});
}

TEST(Mp4Header, TellsSize) {
  const Header header = read(test::mp4_of({.width = 1920, .height = 1080}));

  EXPECT_EQ(header.format, Format::kVideo);
  EXPECT_EQ(header.width, 1920);
  EXPECT_EQ(header.height, 1080);
  EXPECT_FALSE(header.refused);
}

TEST(Mp4Header, TellsSizeAfterTheTurn) {
  for (const int turn : {90, 270}) {
    const Header header = read(test::mp4_of({.width = 1920, .height = 1080, .turn = turn}));

    EXPECT_EQ(header.width, 1080) << turn;
    EXPECT_EQ(header.height, 1920) << turn;
    EXPECT_EQ(header.orientation, 1) << turn;
  }
}

TEST(Mp4Header, KeepsSizeOfFilmUpsideDown) {
  EXPECT_EQ(read(test::mp4_of({.width = 1920, .height = 1080, .turn = 180})).width, 1920);
}

TEST(Mp4Header, TellsLength) {
  EXPECT_EQ(read(test::mp4_of({.scale = 600, .length = 4567})).duration_ms, 7611);
  EXPECT_EQ(read(test::mp4_of({.scale = 600, .length = 4567, .wide = true})).duration_ms, 7611);
}

TEST(Mp4Header, KnowsNoLengthWithoutScale) {
  EXPECT_EQ(read(test::mp4_of({.scale = 0, .length = 4567})).duration_ms, 0);
}

TEST(Mp4Header, KnowsNoLengthWhereItIsLeftOpen) {
  EXPECT_EQ(read(test::mp4_of({.length = 0xffffffff})).duration_ms, 0);
  EXPECT_EQ(read(test::mp4_of({.length = UINT64_MAX, .wide = true})).duration_ms, 0);
}

TEST(Mp4Header, TellsWhenItWasMade) {
  const Header header = read(test::mp4_of({.created_1904 = kFrom1904To1970 + 1715938201}));

  EXPECT_EQ(header.date_taken, 1715938201);
  EXPECT_EQ(header.utc_offset_known, 1);
}

TEST(Mp4Header, ToleratesTimeThatCountsFrom1970) {
  EXPECT_EQ(read(test::mp4_of({.created_1904 = 1715938201})).date_taken, 1715938201);
}

TEST(Mp4Header, KnowsNoDateWithoutOne) {
  const Header header = read(test::mp4_of({}));

  EXPECT_EQ(header.date_taken, 0);
  EXPECT_EQ(header.utc_offset_known, 0);
}

TEST(Mp4Header, KnowsThatThereIsAPosition) {
  EXPECT_TRUE(read(test::mp4_of({.position = true})).has_gps);
  EXPECT_FALSE(read(test::mp4_of({})).has_gps);
}

TEST(Mp4Header, FindsIndexBehindTheData) {
  EXPECT_EQ(read(test::mp4_of({.width = 640, .height = 480, .index_last = true})).width, 640);
}

TEST(Mp4Header, IsAVideoEvenWhenTheIndexIsMissing) {
  const Bytes whole = test::mp4_of({.width = 640, .height = 480, .index_last = true});

  const Header header = read(whole.substr(0, 2000));

  EXPECT_EQ(header.format, Format::kVideo);
  EXPECT_EQ(header.width, 0);
  EXPECT_FALSE(header.refused);
}

TEST(Mp4Header, IsNoVideoWithSoundAlone) {
  EXPECT_FALSE(read_header(test::span_of(test::mp4_of({.only_sound = true}))).has_value());
}

TEST(Mp4Header, EndsOnBoxesOfNoLength) {
  const Bytes start = test::box("ftyp", "isom" + Bytes(4, '\0'));
  for (const std::uint64_t size : {0, 1, 2, 7}) {
    EXPECT_EQ(read(start + test::big(size, 4) + "moov" + Bytes(100, '\0')).format, Format::kVideo);
  }
}

TEST(Mp4Header, EndsOnBoxOfTheLargestLength) {
  const Bytes start = test::box("ftyp", "isom" + Bytes(4, '\0'));

  const Header header =
      read(start + test::big(1, 4) + "free" + test::big(UINT64_MAX, 8) + Bytes(100, '\0'));

  EXPECT_EQ(header.format, Format::kVideo);
}

TEST(QuicktimeHeader, NeedsNoBrand) {
  const Bytes film = test::film_of(support::solid_pixbuf(32, 24, support::kRed).get(), 3);

  const Header header = read(film);

  EXPECT_EQ(header.format, Format::kVideo);
  EXPECT_EQ(header.width, 32);
  EXPECT_EQ(header.height, 24);
}

TEST(AviHeader, TellsSizeAndLength) {
  const Bytes main = test::little(40000, 4) + Bytes(12, '\0') + test::little(250, 4) +
                     Bytes(12, '\0') + test::little(320, 4) + test::little(240, 4) +
                     Bytes(16, '\0');

  const Header header = read("RIFF" + test::little(200, 4) + "AVI LIST" + test::little(100, 4) +
                             "hdrlavih" + test::little(56, 4) + main);

  EXPECT_EQ(header.format, Format::kVideo);
  EXPECT_EQ(header.width, 320);
  EXPECT_EQ(header.height, 240);
  EXPECT_EQ(header.duration_ms, 10000);
}

/// An element of a Matroska file, its length in one byte.
Bytes element(const Bytes &id, const Bytes &contents) {
  return id + static_cast<char>(0x80 | contents.size()) + contents;
}

TEST(MatroskaHeader, TellsSizeLengthAndDate) {
  const Bytes info = element("\x2a\xd7\xb1", test::big(1000000, 3)) +
                     element("\x44\x89", Bytes("\x45\x9c\x40\0", 4)) +  // 5000 as a fraction
                     element("\x44\x61", test::big(737630901000000000, 8));
  const Bytes picture = element("\xb0", test::big(640, 2)) + element("\xba", test::big(360, 2));
  const Bytes tracks =
      element("\xae", element("\xd7", "\x01")) + element("\xae", element("\xe0", picture));
  const Bytes segment = element("\x15\x49\xa9\x66", info) + element("\x16\x54\xae\x6b", tracks);

  const Header header =
      read(element("\x1a\x45\xdf\xa3", "\x42\x86\x81\x01") + element("\x18\x53\x80\x67", segment));

  EXPECT_EQ(header.format, Format::kVideo);
  EXPECT_EQ(header.width, 640);
  EXPECT_EQ(header.height, 360);
  EXPECT_EQ(header.duration_ms, 5000);
  EXPECT_EQ(header.date_taken, 1715938101);
}

}  // namespace
}  // namespace phone::pictures

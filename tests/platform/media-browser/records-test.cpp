#include "media-browser/records.hpp"

#include <gmock/gmock.h>

#include <cstring>

#include "media-browser/display.hpp"
#include "media-browser/user-data.hpp"

namespace {

using namespace phone::media;
using testing::Each;

std::string letters(std::size_t count) { return std::string(count, 'x'); }

TEST(FitsRecords, MeasuresTheWholePath) {
  const std::string folder = "/" + letters(199);

  EXPECT_TRUE(fits_records(folder, letters(98)));
  EXPECT_FALSE(fits_records(folder, letters(99)));
}

TEST(FitsRecords, MeasuresTheName) { EXPECT_TRUE(fits_records("/a", letters(255))); }

TEST(FitsRecords, MeasuresTheFolder) {
  EXPECT_TRUE(fits_records("/" + letters(262), "a.jpg"));
  EXPECT_FALSE(fits_records("/" + letters(263), "a.jpg"));
  EXPECT_FALSE(folder_fits_records("/" + letters(263)));
}

TEST(FillItem, WritesEveryField) {
  MbItem record;
  std::memset(&record, 0xaa, sizeof record);
  ListedFile file;
  file.id = 7;
  file.folder = "/pictures/a";
  file.name = "B.JPEG";
  file.kind = 2;
  file.user_flags = kFavourite | kMarked;
  file.nfid = 0x100000005;
  file.thumbnail = "/cache/t.jpg";

  fill(record, file, 41);

  EXPECT_EQ(record.id, 7);
  EXPECT_STREQ(record.path, "/pictures/a/B.JPEG");
  EXPECT_STREQ(record.thumbnail_path, "/cache/t.jpg");
  EXPECT_STREQ(record.extension, "jpeg");
  EXPECT_EQ(record.media_type, 2);
  EXPECT_EQ(record.db_idx, 41);
  EXPECT_EQ(record.nfid, 5);
  EXPECT_EQ(record.flags, 1u);
  EXPECT_EQ(record.unmarked, 0u);
  EXPECT_THAT(record.gap0, Each('\0'));
}

TEST(FillItem, SaysWhenThereIsNoMark) {
  MbItem record;

  fill(record, ListedFile{}, 0);

  EXPECT_EQ(record.unmarked, 1u);
}

TEST(FillItem, LeavesAFieldEmptyRatherThanCutAPath) {
  MbItem record;
  const std::string folder = "/" + letters(295);
  ListedFile file;
  file.folder = folder;
  file.name = "name.jpg";

  fill(record, file, 0);

  EXPECT_STREQ(record.path, "");
}

TEST(FillItem, TakesAPathOfExactly299Bytes) {
  MbItem record;
  const std::string folder = "/" + letters(200);
  const std::string name = letters(97);
  ListedFile file;
  file.folder = folder;
  file.name = name;

  fill(record, file, 0);

  EXPECT_EQ(std::strlen(record.path), 299u);
}

TEST(FillMediaRecord, TellsFolderAndNameApart) {
  FmMediaRecord record;
  ListedFile file;
  file.id = 3;
  file.folder = "/pictures/a";
  file.name = "b.jpg";
  file.kind = 1;
  file.nfid = -2;

  fill(record, file);

  EXPECT_STREQ(record.folder, "/pictures/a");
  EXPECT_STREQ(record.name, "b.jpg");
  const gint64 nfid = record.nfid;
  EXPECT_EQ(nfid, -2);
}

TEST(FillFileRecord, HoldsTheItem) {
  FmFileRecord record;
  ListedFile file;
  file.id = 3;
  file.folder = "/pictures/a";
  file.name = "b.jpg";

  fill(record, file);

  EXPECT_EQ(record.item.id, 3);
  EXPECT_STREQ(record.item.path, "/pictures/a/b.jpg");
  EXPECT_STREQ(record.folder, "/pictures/a");
  EXPECT_STREQ(record.name, "b.jpg");
}

TEST(FillAlbumRecord, CutsALongNameBetweenCharacters) {
  FmAlbumRecord record;
  ListedAlbum album;
  for (int at = 0; at < 200; ++at) album.name += "\u00e9";

  fill(record, album);

  EXPECT_EQ(std::strlen(record.name), 302u);
  EXPECT_TRUE(g_utf8_validate(record.name, -1, nullptr));
}

TEST(DisplayName, IsValidAndWithoutControlCharacters) {
  const std::string shown = display_name("a\nb\xff\x1b[31m");

  EXPECT_EQ(shown, "\u201ca b\ufffd [31m\u201d");
}

TEST(DisplayName, ShortensLongPathsInTheMiddle) {
  const std::string shown = display_name("/begin" + letters(2000) + "\u00e9end.jpg");

  EXPECT_LT(shown.size(), 400u);
  EXPECT_THAT(shown, testing::StartsWith("\u201c/begin"));
  EXPECT_THAT(shown, testing::EndsWith("end.jpg\u201d"));
  EXPECT_TRUE(g_utf8_validate(shown.c_str(), -1, nullptr));
}

}  // namespace

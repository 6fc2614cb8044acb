#include <cstring>

#include "fixture.hpp"

namespace {

using item_list_test::file;
using item_list_test::ItemListTest;
using item_list_test::ItemPtr;
using testing::ElementsAre;

using ItemFromRecord = ItemListTest;

TEST_F(ItemFromRecord, TakesTheFieldsOfTheRecord) {
  MbItem record = file(7);
  record.attribute = 11;
  record.media_type = 2;
  fake::set_text(record.extension, "mp4");

  const ItemPtr item = pb::item_list::make_item(record);

  EXPECT_EQ(item->is_cluster, 0);
  EXPECT_EQ(item->id, 7);
  EXPECT_STREQ(item->filename, "/pictures/7.jpg");
  EXPECT_STREQ(item->thumb_path, "/thumbnails/7.jpg");
  EXPECT_EQ(item->attr, 11);
  EXPECT_STREQ(item->extension, "mp4");
  EXPECT_EQ(item->media_type, 2);
}

TEST_F(ItemFromRecord, ReadsTheMediaRecordOfItsId) {
  const ItemPtr item = pb::item_list::make_item(file(7));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"),
              ElementsAre("fm_svc_mb_get_record_by_index(7)"));
}

TEST_F(ItemFromRecord, TakesTheLowWordOfTheWebId) {
  item_list_test::serve_web_id(G_GINT64_CONSTANT(0x500000009));

  const ItemPtr item = pb::item_list::make_item(file(7));

  EXPECT_EQ(item->nfid, 9);
}

TEST_F(ItemFromRecord, KeepsThePendingWebId) {
  item_list_test::serve_web_id(-2);

  const ItemPtr item = pb::item_list::make_item(file(7));

  EXPECT_EQ(item->nfid, -2);
}

TEST_F(ItemFromRecord, TakesTheRecordsOwnWebIdWhenTheMediaRecordCannotBeRead) {
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *media, gint *) {
    media->nfid = 5;
    return FALSE;
  };
  MbItem record = file(7);
  record.nfid = 31;

  const ItemPtr item = pb::item_list::make_item(record);

  EXPECT_EQ(item->nfid, 31);
}

TEST_F(ItemFromRecord, DoesNotReadPastAnUnterminatedField) {
  MbItem record = file(7);
  std::memset(record.path, 'p', sizeof record.path);
  std::memset(record.thumbnail_path, 't', sizeof record.thumbnail_path);
  std::memset(record.extension, 'e', sizeof record.extension);

  const ItemPtr item = pb::item_list::make_item(record);

  EXPECT_EQ(std::string(item->filename), std::string(300, 'p'));
  EXPECT_EQ(std::string(item->thumb_path), std::string(300, 't'));
  EXPECT_EQ(std::string(item->extension), std::string(8, 'e'));
}

TEST_F(ItemFromRecord, KeepsPathsThatAreNotUtf8) {
  MbItem record = file(7);
  fake::set_text(record.path, "/pictures/\xff\xfe\n'.jpg");

  const ItemPtr item = pb::item_list::make_item(record);

  EXPECT_STREQ(item->filename, "/pictures/\xff\xfe\n'.jpg");
}

TEST_F(ItemFromRecord, HasNeitherFavouriteNorMark) {
  MbItem record = file(7);
  record.flags = 1;

  const ItemPtr item = pb::item_list::make_item(record);

  EXPECT_EQ(item->favourite, 0);
  EXPECT_EQ(item->mark, 0);
}

using MarkedItem = ItemListTest;

TEST_F(MarkedItem, IsAFavouriteByBitZeroOfTheFlags) {
  MbItem record = file(7);
  record.flags = 0xFFFFFFFFu;

  EXPECT_EQ(pb::item_list::make_marked_item(record)->favourite, 1);
}

TEST_F(MarkedItem, IsNoFavouriteByAnyOtherBit) {
  MbItem record = file(7);
  record.flags = 0xFFFFFFFEu;

  EXPECT_EQ(pb::item_list::make_marked_item(record)->favourite, 0);
}

TEST_F(MarkedItem, HasItsMarkWhenTheLastWordIsZero) {
  MbItem record = file(7);
  record.unmarked = 0;

  EXPECT_EQ(pb::item_list::make_marked_item(record)->mark, 1);
}

TEST_F(MarkedItem, HasNoMarkWhenTheLastWordIsNotZero) {
  MbItem record = file(7);
  record.unmarked = 0x80000000u;

  EXPECT_EQ(pb::item_list::make_marked_item(record)->mark, 0);
}

using WebItem = ItemListTest;

TEST_F(WebItem, TakesTheFieldsOfTheWebRecord) {
  FmVeskFileRecord record{};
  record.nfid = G_GINT64_CONSTANT(0x100000021);
  record.attribute = 3;
  fake::set_text(record.name, "party.jpg");
  fake::set_text(record.thumbnail_path, "/web/33.jpg");
  fake::set_text(record.bytes_url, "http://server/33");

  const ItemPtr item = pb::item_list::make_web_item(record);

  EXPECT_EQ(item->id, 0);
  EXPECT_EQ(item->nfid, 33);
  EXPECT_STREQ(item->filename, "party.jpg");
  EXPECT_STREQ(item->thumb_path, "/web/33.jpg");
  EXPECT_STREQ(item->aux_text, "http://server/33");
  EXPECT_STREQ(item->extension, "jpg");
  EXPECT_EQ(item->attr, 3);
}

TEST_F(WebItem, DoesNotReadPastAnUnterminatedField) {
  FmVeskFileRecord record{};
  std::memset(record.name, 'n', sizeof record.name);
  std::memset(record.thumbnail_path, 't', sizeof record.thumbnail_path);
  std::memset(record.bytes_url, 'u', sizeof record.bytes_url);

  const ItemPtr item = pb::item_list::make_web_item(record);

  EXPECT_EQ(std::string(item->filename), std::string(256, 'n'));
  EXPECT_EQ(std::string(item->thumb_path), std::string(256, 't'));
  EXPECT_EQ(std::string(item->aux_text), std::string(256, 'u'));
}

}  // namespace

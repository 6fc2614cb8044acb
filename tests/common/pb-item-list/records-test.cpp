#include "common/pb-item-list/records.hpp"

#include <utility>

#include "fixture.hpp"

namespace {

using item_list_test::files;
using item_list_test::ItemListTest;
using pb::item_list::FileList;
using pb::item_list::RecordKind;
using pb::item_list::RecordList;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

RecordList records(gint count, gint first = 1) {
  return RecordList(fake::record_list(files(count, first)));
}

std::vector<gint> ids_of(const RecordList &list) {
  std::vector<gint> ids;
  for (gint position = 0; position < list.length(); ++position) {
    ids.push_back(list.at<MbItem>(position)->id);
  }
  return ids;
}

using Records = ItemListTest;

TEST_F(Records, AreFoundByPosition) {
  const RecordList list = records(3);

  EXPECT_EQ(list.at<MbItem>(2)->id, 3);
}

TEST_F(Records, AreNotFoundOutside) {
  const RecordList list = records(3);

  EXPECT_EQ(list.at<MbItem>(-1), nullptr);
  EXPECT_EQ(list.at<MbItem>(3), nullptr);
}

TEST_F(Records, AreNotFoundAsAnotherKind) {
  const RecordList list = records(3);
  const RecordList albums(fake::record_list<FmAlbumRecord>({fake::make_album(1, "a")}),
                          RecordKind::kAlbums);

  EXPECT_EQ(list.at<FmAlbumRecord>(0), nullptr);
  EXPECT_EQ(albums.at<MbItem>(0), nullptr);
}

TEST_F(Records, AreFoundAfterEachChange) {
  RecordList list = records(3, 10);
  EXPECT_THAT(ids_of(list), ElementsAre(10, 11, 12));

  list.append(records(2, 20));
  EXPECT_THAT(ids_of(list), ElementsAre(10, 11, 12, 20, 21));

  list.prepend(records(2, 1));
  EXPECT_THAT(ids_of(list), ElementsAre(1, 2, 10, 11, 12, 20, 21));

  list.drop_first(3);
  EXPECT_THAT(ids_of(list), ElementsAre(11, 12, 20, 21));

  list.drop_last(1);
  EXPECT_THAT(ids_of(list), ElementsAre(11, 12, 20));

  list.remove(list.get()->next);
  EXPECT_THAT(ids_of(list), ElementsAre(11, 20));

  list.remove(list.get());
  EXPECT_THAT(ids_of(list), ElementsAre(20));
}

TEST_F(Records, AreAllDroppedByTheirNumber) {
  RecordList front = records(3);
  RecordList back = records(3);

  front.drop_first(3);
  back.drop_last(3);

  EXPECT_TRUE(front.empty());
  EXPECT_TRUE(back.empty());
}

TEST_F(Records, AreFreedOnce) {
  {
    RecordList list = records(3);
    RecordList moved = std::move(list);
  }

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(Records, AreNotFreedWhenThereAreNone) {
  { const RecordList list; }

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), IsEmpty());
}

TEST_F(Records, AreFreedWhenOthersTakeTheirPlace) {
  RecordList list = records(3);

  list = records(2, 5);

  EXPECT_THAT(ids_of(list), ElementsAre(5, 6));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), SizeIs(1));
}

using Files = ItemListTest;

FmFileList file_list(const std::vector<gint64> &ids) {
  FmFileList list{};
  fake::fill_file_list(&list, ids);
  return list;
}

TEST_F(Files, AreFreedOnce) {
  {
    FileList list(file_list({1, 2}));
    FileList moved = std::move(list);
  }

  EXPECT_THAT(fake::calls_of("fm_svc_sync_list_free"), SizeIs(1));
}

TEST_F(Files, AreNoneWithoutTheirArrays) {
  FmFileList broken{};
  broken.count = 12;

  EXPECT_EQ(FileList(broken).count(), 0);
}

TEST_F(Files, AreFreedWhenOthersTakeTheirPlace) {
  FileList list(file_list({1, 2}));

  list = FileList(file_list({5}));

  EXPECT_EQ(list.count(), 1);
  EXPECT_THAT(fake::calls_of("fm_svc_sync_list_free"), SizeIs(1));
}

TEST(LowWord, IsSigned) {
  EXPECT_EQ(pb::item_list::low_word(-2), -2);
  EXPECT_EQ(pb::item_list::low_word(G_GINT64_CONSTANT(0x1FFFFFFFE)), -2);
  EXPECT_EQ(pb::item_list::low_word(G_GINT64_CONSTANT(0x100000005)), 5);
}

}  // namespace

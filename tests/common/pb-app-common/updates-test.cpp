#include "browsing-fixture.hpp"

namespace {

using fake::Logged;
using support::PixbufPtr;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr gint kIconColumn = 3;

/// Rows whose icons can be seen to change: old ones are there from the start, new ones come from
/// the thumbnail manager.
class Updating : public BrowsingFixture {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    fake::platform().fm_svc_thumb_mgr_get_thumbnail = [this](gint, gint, const gchar *, gboolean,
                                                             gint, GdkPixbuf **pixbuf) {
      *pixbuf = PixbufPtr(new_icon_).release();
      return 1;
    };
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [this](const gchar *, gint, gint) {
      return PixbufPtr(new_icon_).release();
    };
  }

  static bool seek(gint row, GtkTreeIter *iter) {
    return gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(hidden().item_list), iter, row);
  }
  void draw_row(gint row) {
    GtkTreeIter iter;
    ASSERT_TRUE(seek(row, &iter));
    gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(hidden().item_list), &iter, kIconColumn,
                               old_icon_.get(), -1);
  }
  static PixbufPtr icon_of(gint row) {
    GtkTreeIter iter;
    GdkPixbuf *icon = nullptr;
    if (seek(row, &iter)) {
      gtk_tree_model_get(GTK_TREE_MODEL(hidden().item_list), &iter, kIconColumn, &icon, -1);
    }
    return PixbufPtr::adopt(icon);
  }
  static PbItem *item_of(gint row) {
    return pb_app_common_get_nth_item_from_list(hidden().item_list, row);
  }

  PixbufPtr old_icon_ = support::solid_pixbuf(4, 4, support::kRed);
  PixbufPtr new_icon_ = support::solid_pixbuf(4, 4, support::kBlue);
};

class IndexAfterBuild : public Updating {
 protected:
  void SetUp() override {
    Updating::SetUp();
    list_ = browse({1, 2, kEmptyRow, 5, 6});
    item_of(3)->nfid = 17;
    item_of(4)->nfid = 18;
    state()->category_type = 1;
    fake::take_log();
  }

  ListRef list_;
};

TEST_F(IndexAfterBuild, IsLogged) {
  mb_app_common_update_iter_index_after_build(5, 17);

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO,
                      "[mb_app_common_update_iter_index_after_build]FID = 5, NFID = 17\n")));
}

TEST_F(IndexAfterBuild, FollowsTheDatabaseIndex) {
  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(6, 0));

  EXPECT_EQ(state()->item_index, 4);
}

TEST_F(IndexAfterBuild, FollowsTheWebId) {
  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(0, 17));

  EXPECT_EQ(state()->item_index, 3);
}

TEST_F(IndexAfterBuild, TakesTheFirstRowOfEitherId) {
  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(2, 17));

  EXPECT_EQ(state()->item_index, 1);
}

TEST_F(IndexAfterBuild, TakesTheFirstRowOfEitherIdByTheWebIdToo) {
  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(6, 17));

  EXPECT_EQ(state()->item_index, 3);
}

TEST_F(IndexAfterBuild, LogsTheRowsThatItLooksAt) {
  mb_app_common_update_iter_index_after_build(0, 17);

  EXPECT_THAT(
      fake::platform().log,
      testing::IsSupersetOf(
          {Logged(PB_LOG_INFO,
                  "[mb_app_common_update_iter_index_after_build]item->id = 1, item->nfid = 0\n"),
           Logged(PB_LOG_INFO,
                  "[mb_app_common_update_iter_index_after_build]item->id = 5, item->nfid = "
                  "17\n")}));
}

TEST_F(IndexAfterBuild, LooksNoFurtherThanTheMatch) {
  mb_app_common_update_iter_index_after_build(0, 17);

  EXPECT_THAT(fake::platform().log,
              Not(Contains(LoggedText("[mb_app_common_update_iter_index_after_build]item->id = 6, "
                                      "item->nfid = 18\n"))));
}

TEST_F(IndexAfterBuild, NotifiesNothing) {
  const NotifyCount notified(state(), "item-index");

  mb_app_common_update_iter_index_after_build(6, 0);

  EXPECT_EQ(notified.count(), 0);
}

TEST_F(IndexAfterBuild, WorksInCategoryTwo) {
  state()->category_type = 2;

  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(6, 0));
}

TEST_F(IndexAfterBuild, StaysWithoutAMatch) {
  state()->item_index = 2;

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(999, 999));

  EXPECT_EQ(state()->item_index, 2);
}

TEST_F(IndexAfterBuild, DoesNotMatchAFileOutsideTheDatabaseByItsZero) {
  item_of(0)->id = 0;

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(0, 999));
}

TEST_F(IndexAfterBuild, DoesNotMatchAPendingUpload) {
  item_of(0)->nfid = -2;
  item_of(1)->nfid = -2;

  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(2, -2));

  EXPECT_EQ(state()->item_index, 1);
}

TEST_F(IndexAfterBuild, LooksNoFurtherThanTheCountOfTheBuild) {
  hidden().n_entire_items = 3;

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(6, 0));
}

TEST_F(IndexAfterBuild, NeedsAnId) {
  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(0, 0));

  EXPECT_THAT(fake::platform().log, testing::SizeIs(2));
}

TEST_F(IndexAfterBuild, NeedsAPositiveId) {
  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(-1, -2));
}

class IndexAfterBuildElsewhere : public IndexAfterBuild,
                                 public testing::WithParamInterface<gint> {};

TEST_P(IndexAfterBuildElsewhere, IsNotFound) {
  state()->category_type = GetParam();

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(6, 0));
}

TEST_P(IndexAfterBuildElsewhere, IsLogged) {
  state()->category_type = GetParam();

  mb_app_common_update_iter_index_after_build(6, 0);

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(
                  "[mb_app_common_update_iter_index_after_build] Not a correct Category \n")));
}

INSTANTIATE_TEST_SUITE_P(Categories, IndexAfterBuildElsewhere, testing::Values(-1, 0, 3, 4, 5));

TEST_F(IndexAfterBuild, IsNotFoundWithoutAList) {
  pb_app_common_reset_list_index(nullptr);
  hidden().n_entire_items = 3;

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(6, 0));
}

TEST_F(IndexAfterBuild, IsNotFoundWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(mb_app_common_update_iter_index_after_build(6, 0));

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[mb_app_common_update_iter_index_after_build]fail to get "
                                  "PbAppCommon object\n")));
}

class CoverAfterDownload : public Updating {
 protected:
  void SetUp() override {
    Updating::SetUp();
    list_ = browse({1, 2, 3});
    item_of(0)->naid = 40;
    item_of(1)->naid = 50;
    item_of(2)->nfid = 60;
    for (gint row = 0; row < 3; ++row) draw_row(row);
    state()->category_type = 0;
    fake::take_log();
    fake::take_calls();
  }
  void TearDown() override {
    list_.reset();
    Updating::TearDown();
  }

  ListRef list_;
};

TEST_F(CoverAfterDownload, ReachesTheAlbum) {
  EXPECT_TRUE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));

  EXPECT_STREQ(item_of(1)->thumb_path, "/cover.jpg");
}

TEST_F(CoverAfterDownload, ReachesTheFile) {
  EXPECT_TRUE(mb_app_common_update_content_cover_after_download(60, "/cover.jpg"));

  EXPECT_STREQ(item_of(2)->thumb_path, "/cover.jpg");
}

TEST_F(CoverAfterDownload, WorksInAlbumContents) {
  state()->category_type = 3;

  EXPECT_TRUE(mb_app_common_update_content_cover_after_download(60, "/cover.jpg"));
}

TEST_F(CoverAfterDownload, CopiesThePath) {
  gchar path[] = "/cover.jpg";
  mb_app_common_update_content_cover_after_download(50, path);

  path[1] = 'X';

  EXPECT_STREQ(item_of(1)->thumb_path, "/cover.jpg");
}

TEST_F(CoverAfterDownload, LeavesThePreviousPathToWhoeverHoldsIt) {
  item_of(1)->thumb_path = g_strdup("/old.jpg");
  const pb::StringPtr old(item_of(1)->thumb_path);

  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_STREQ(old.get(), "/old.jpg");
}

TEST_F(CoverAfterDownload, RenewsTheIcon) {
  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_EQ(icon_of(1).get(), new_icon_.get());
}

TEST_F(CoverAfterDownload, MakesTheIconFromTheCover) {
  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("fm_svc_thumb_create_pixbuf_by_path(\"/cover.jpg\", 148, 148)"));
}

TEST_F(CoverAfterDownload, LeavesTheIconToTheRow) {
  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  // One reference is the test's, the other the row's.
  EXPECT_EQ(G_OBJECT(new_icon_.get())->ref_count, 2U);
}

TEST_F(CoverAfterDownload, DropsTheOldIcon) {
  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  // The test's, and those of the two other rows.
  EXPECT_EQ(G_OBJECT(old_icon_.get())->ref_count, 3U);
}

TEST_F(CoverAfterDownload, LeavesTheOtherRowsAlone) {
  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_EQ(icon_of(0).get(), old_icon_.get());
  EXPECT_EQ(icon_of(2).get(), old_icon_.get());
  EXPECT_EQ(item_of(0)->thumb_path, nullptr);
}

TEST_F(CoverAfterDownload, ReachesTheFirstMatchOnly) {
  item_of(0)->naid = 50;

  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_STREQ(item_of(0)->thumb_path, "/cover.jpg");
  EXPECT_EQ(item_of(1)->thumb_path, nullptr);
}

TEST_F(CoverAfterDownload, LogsTheMatch) {
  item_of(1)->nfid = 3;
  fake::take_log();

  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[mb_app_common_update_content_cover_after_download]Passed id = "
                              "50, curr naid = 50 and curr nfid = 3\n")));
}

TEST_F(CoverAfterDownload, LogsTheCall) {
  mb_app_common_update_content_cover_after_download(G_GINT64_CONSTANT(5000000050), "/cover.jpg");

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(testing::AllOf(testing::HasSubstr("5000000050"),
                                                 testing::HasSubstr("/cover.jpg")))));
}

TEST_F(CoverAfterDownload, ComparesTheLowWordOfTheId) {
  EXPECT_TRUE(mb_app_common_update_content_cover_after_download(G_GINT64_CONSTANT(0x100000000) + 50,
                                                                "/cover.jpg"));

  EXPECT_STREQ(item_of(1)->thumb_path, "/cover.jpg");
}

TEST_F(CoverAfterDownload, WidensTheLowWordWithItsSign) {
  item_of(1)->naid = -5;

  EXPECT_TRUE(mb_app_common_update_content_cover_after_download(G_GINT64_CONSTANT(0xFFFFFFFB),
                                                                "/cover.jpg"));

  EXPECT_STREQ(item_of(1)->thumb_path, "/cover.jpg");
}

TEST_F(CoverAfterDownload, MissesAWebIdWithAHighWord) {
  item_of(1)->naid = G_GINT64_CONSTANT(0x100000000) + 50;

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(
      G_GINT64_CONSTANT(0x100000000) + 50, "/cover.jpg"));
}

TEST_F(CoverAfterDownload, SkipsARowThatIsNotDrawn) {
  GtkTreeIter iter;
  ASSERT_TRUE(seek(1, &iter));
  gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(list_.get()), &iter, kIconColumn, nullptr, -1);

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));

  EXPECT_EQ(item_of(1)->thumb_path, nullptr);
}

TEST_F(CoverAfterDownload, NeverReadsARowThatIsNotFilled) {
  const ListRef unread = ListRef::adopt(pb_item_list_new());
  gtk_virtual_list_store_set_total_size(GTK_VIRTUAL_LIST_STORE(unread.get()), 3);
  int fills = 0;
  g_signal_connect_swapped(unread.get(), "fill-cache", G_CALLBACK(+[](int *count) { ++*count; }),
                           &fills);
  pb_app_common_reset_list_index(unread.get());
  hidden().n_entire_items = 3;

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));

  EXPECT_EQ(fills, 0);
}

TEST_F(CoverAfterDownload, LooksNoFurtherThanTheCountOfTheBuild) {
  hidden().n_entire_items = 1;

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));
}

TEST_F(CoverAfterDownload, IsNotAppliedWithoutAMatch) {
  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(51, "/cover.jpg"));

  EXPECT_EQ(icon_of(0).get(), old_icon_.get());
}

TEST_F(CoverAfterDownload, NeedsAPositiveId) {
  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(0, "/cover.jpg"));
  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(-50, "/cover.jpg"));
}

TEST_F(CoverAfterDownload, NeedsACover) {
  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, nullptr));

  EXPECT_THAT(fake::platform().log, testing::SizeIs(2));
}

class CoverAfterDownloadElsewhere : public CoverAfterDownload,
                                    public testing::WithParamInterface<gint> {};

TEST_P(CoverAfterDownloadElsewhere, IsNotApplied) {
  state()->category_type = GetParam();

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));
}

TEST_P(CoverAfterDownloadElsewhere, IsLogged) {
  state()->category_type = GetParam();

  mb_app_common_update_content_cover_after_download(50, "/cover.jpg");

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[mb_app_common_update_content_cover_after_download] Not a "
                                  "correct Category \n")));
}

INSTANTIATE_TEST_SUITE_P(Categories, CoverAfterDownloadElsewhere, testing::Values(-1, 1, 2, 4, 5));

TEST_F(CoverAfterDownload, IsNotAppliedWithoutAList) {
  pb_app_common_reset_list_index(nullptr);

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));
}

TEST_F(CoverAfterDownload, IsNotAppliedWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(mb_app_common_update_content_cover_after_download(50, "/cover.jpg"));

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[mb_app_common_update_content_cover_after_download]fail to "
                                  "get PbAppCommon object\n")));
}

class UpdateItemPixbuf : public Updating {
 protected:
  void SetUp() override {
    Updating::SetUp();
    list_ = browse({1, 2, 3}, 1);
    for (gint row = 0; row < 3; ++row) draw_row(row);
    item_ = item_of(1);
    fake::take_log();
    fake::take_calls();
  }
  void TearDown() override {
    list_.reset();
    Updating::TearDown();
  }

  static PbItem *update(gint type, gboolean favourite = FALSE, gint nfid = 0,
                        const gchar *new_path = nullptr) {
    return pb_app_common_update_item_pixbuf("/2", type, favourite, nfid, new_path);
  }

  ListRef list_;
  PbItem *item_ = nullptr;
};

TEST_F(UpdateItemPixbuf, LogsTheCall) {
  const pb::StringPtr old(item_->filename);

  update(4, TRUE, 9, "/new");

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING,
                              "[pb_app_common_update_item_pixbuf]********* update_type = 4, "
                              "favourite = 1, nfid = 9 new_path = /new**********\n")));
}

TEST_F(UpdateItemPixbuf, LogsTheFile) {
  update(3);

  EXPECT_THAT(
      fake::platform().log,
      testing::IsSupersetOf({LoggedText("[pb_app_common_update_item_pixbuf]file_full_path: /2, "
                                        "prop_item_index=1\n"),
                             LoggedText("[pb_app_common_update_item_pixbuf]item filename: /2\n"),
                             LoggedText("[pb_app_common_update_item_pixbuf]ITEM FOUND\n")}));
}

TEST_F(UpdateItemPixbuf, HandsOutTheCurrentItem) { EXPECT_EQ(update(3), item_); }

TEST_F(UpdateItemPixbuf, HandsOutABorrowedItem) {
  update(3);

  EXPECT_EQ(G_OBJECT(item_)->ref_count, 1U);
}

TEST_F(UpdateItemPixbuf, OfTypeOneSetsTheFavourite) {
  update(1, 5);

  EXPECT_EQ(item_->favourite, 1);
}

TEST_F(UpdateItemPixbuf, OfTypeOneClearsTheFavourite) {
  item_->favourite = 1;

  update(1, FALSE);

  EXPECT_EQ(item_->favourite, 0);
}

TEST_F(UpdateItemPixbuf, OfTypeTwoSetsTheWebId) {
  update(2, FALSE, 88);

  EXPECT_EQ(item_->nfid, 88);
}

TEST_F(UpdateItemPixbuf, OfTypeThreeChangesNoField) {
  item_->mark = 1;

  update(3, TRUE, 88, "/new");

  EXPECT_EQ(item_->favourite, 0);
  EXPECT_EQ(item_->nfid, 0);
  EXPECT_EQ(item_->mark, 1);
  EXPECT_STREQ(item_->filename, "/2");
}

TEST_F(UpdateItemPixbuf, OfTypeFourSetsTheFilename) {
  const pb::StringPtr old(item_->filename);

  update(4, FALSE, 0, "/new");

  EXPECT_STREQ(item_->filename, "/new");
}

TEST_F(UpdateItemPixbuf, OfTypeFourCopiesTheFilename) {
  const pb::StringPtr old(item_->filename);
  gchar path[] = "/new";
  update(4, FALSE, 0, path);

  path[1] = 'X';

  EXPECT_STREQ(item_->filename, "/new");
}

TEST_F(UpdateItemPixbuf, OfTypeFourLeavesThePreviousNameToWhoeverHoldsIt) {
  const pb::StringPtr old(item_->filename);

  update(4, FALSE, 0, "/new");

  EXPECT_STREQ(old.get(), "/2");
}

TEST_F(UpdateItemPixbuf, OfTypeFourMakesTheIconFromTheNewFile) {
  const pb::StringPtr old(item_->filename);

  update(4, FALSE, 0, "/new");

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_mgr_get_thumbnail"),
              ElementsAre("fm_svc_thumb_mgr_get_thumbnail(1, 0, \"/new\", 0, 0)"));
}

TEST_F(UpdateItemPixbuf, OfTypeFiveClearsTheMark) {
  item_->mark = 1;

  update(5);

  EXPECT_EQ(item_->mark, 0);
}

TEST_F(UpdateItemPixbuf, OfTypeFiveKeepsTheIcon) {
  update(5);

  EXPECT_EQ(icon_of(1).get(), old_icon_.get());
  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(UpdateItemPixbuf, OfTypeFiveShowsTheRowAgain) {
  int changes = 0;
  g_signal_connect_swapped(list_.get(), "row-changed", G_CALLBACK(+[](int *count) { ++*count; }),
                           &changes);

  update(5);

  EXPECT_EQ(changes, 1);
}

TEST_F(UpdateItemPixbuf, OfTypeFiveKeepsTheItem) {
  update(5);

  EXPECT_EQ(item_of(1), item_);
}

class UpdateWithANewIcon : public UpdateItemPixbuf, public testing::WithParamInterface<gint> {
 protected:
  /// Type 4 leaks the name before it.
  void SetUp() override {
    UpdateItemPixbuf::SetUp();
    if (GetParam() == 4) old_name_.reset(item_->filename);
  }
  pb::StringPtr old_name_;
};

TEST_P(UpdateWithANewIcon, RenewsTheIcon) {
  update(GetParam(), TRUE, 88, "/new");

  EXPECT_EQ(icon_of(1).get(), new_icon_.get());
}

TEST_P(UpdateWithANewIcon, LeavesTheIconToTheRow) {
  update(GetParam(), TRUE, 88, "/new");

  EXPECT_EQ(G_OBJECT(new_icon_.get())->ref_count, 2U);
}

TEST_P(UpdateWithANewIcon, KeepsTheItem) {
  update(GetParam(), TRUE, 88, "/new");

  EXPECT_EQ(item_of(1), item_);
}

TEST_P(UpdateWithANewIcon, LeavesTheOtherRowsAlone) {
  update(GetParam(), TRUE, 88, "/new");

  EXPECT_EQ(icon_of(0).get(), old_icon_.get());
  EXPECT_EQ(icon_of(2).get(), old_icon_.get());
}

INSTANTIATE_TEST_SUITE_P(Types, UpdateWithANewIcon, testing::Values(1, 2, 3, 4));

class UpdateOfAnotherType : public UpdateItemPixbuf, public testing::WithParamInterface<gint> {};

TEST_P(UpdateOfAnotherType, ChangesNoField) {
  item_->mark = 1;

  EXPECT_EQ(update(GetParam(), TRUE, 88, "/new"), item_);

  EXPECT_EQ(item_->favourite, 0);
  EXPECT_EQ(item_->nfid, 0);
  EXPECT_EQ(item_->mark, 1);
  EXPECT_STREQ(item_->filename, "/2");
}

TEST_P(UpdateOfAnotherType, KeepsTheIcon) {
  update(GetParam(), TRUE, 88, "/new");

  EXPECT_EQ(icon_of(1).get(), old_icon_.get());
}

INSTANTIATE_TEST_SUITE_P(Types, UpdateOfAnotherType, testing::Values(0, 6, -1, G_MAXINT));

TEST_F(UpdateItemPixbuf, HandsTheItemOutUnchangedForAnotherFile) {
  EXPECT_EQ(pb_app_common_update_item_pixbuf("/other", 2, FALSE, 88, nullptr), item_);

  EXPECT_EQ(item_->nfid, 0);
  EXPECT_EQ(icon_of(1).get(), old_icon_.get());
}

TEST_F(UpdateItemPixbuf, LogsAnotherFile) {
  pb_app_common_update_item_pixbuf("/other", 2, FALSE, 88, nullptr);

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_app_common_update_item_pixbuf]ITEM NOT FOUND\n")));
}

TEST_F(UpdateItemPixbuf, HandsTheItemOutUnchangedForNoFile) {
  EXPECT_EQ(pb_app_common_update_item_pixbuf(nullptr, 2, FALSE, 88, nullptr), item_);

  EXPECT_EQ(item_->nfid, 0);
}

class UpdateOutside : public UpdateItemPixbuf, public testing::WithParamInterface<gint> {};

TEST_P(UpdateOutside, FindsNoItem) {
  state()->item_index = GetParam();

  EXPECT_EQ(update(3), nullptr);
}

TEST_P(UpdateOutside, IsLogged) {
  state()->item_index = GetParam();

  update(3);

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_WARNING, "[pb_app_common_update_item_pixbuf]ITEM NOT FOUND\n")));
}

INSTANTIATE_TEST_SUITE_P(Rows, UpdateOutside, testing::Values(-1, 3, G_MAXINT));

TEST_F(UpdateItemPixbuf, IsBoundedByTheCountOfTheBuild) {
  hidden().n_entire_items = 1;

  EXPECT_EQ(update(3), nullptr);
}

TEST_F(UpdateItemPixbuf, FindsNoItemInAnEmptyRow) {
  list_ = browse({1, kEmptyRow, 3}, 1);

  EXPECT_EQ(update(3), nullptr);
}

TEST_F(UpdateItemPixbuf, FindsNoItemWithoutAList) {
  pb_app_common_reset_list_index(nullptr);

  EXPECT_EQ(update(3), nullptr);
}

TEST_F(UpdateItemPixbuf, FindsNoItemWithoutAnObject) {
  end_browsing();

  EXPECT_EQ(update(3), nullptr);

  EXPECT_THAT(
      fake::platform().log,
      Contains(LoggedText("[pb_app_common_update_item_pixbuf]fail to get PbAppCommon object\n")));
}

}  // namespace

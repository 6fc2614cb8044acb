#include <pb-util.h>

#include "browsing-fixture.hpp"

namespace {

using fake::Logged;
using support::ExpectFinalized;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SortAlbums : public BrowsingFixture {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    mb_util_set_vesk_login_present(1);
    FmAlbumRecord second = fake::make_album(2, "Second", G_GINT64_CONSTANT(5000000009));
    second.attribute = 6;
    fake::set_text(second.cover_path, "/cover-2.jpg");
    serve_albums({fake::make_album(7, "First"), second});
    fake::platform().fm_svc_mb_album_get_files_count = [](gint album_id, gint *count, gint *) {
      *count = 10 * album_id;
      return TRUE;
    };
    fake::take_log();
  }

  static PbItem *row(gint index) {
    return pb_app_common_get_nth_item_from_list(pb_app_common_get_item_list(), index);
  }
  static gint source_index(gint index) {
    GtkTreeIter iter;
    gint value = -1;
    gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(hidden().item_list), &iter, index);
    gtk_tree_model_get(GTK_TREE_MODEL(hidden().item_list), &iter, 2, &value, -1);
    return value;
  }
};

TEST_F(SortAlbums, LogsItsEntry) {
  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_app_common_sort_albums]======== pb_app_common_sort_albums "
                              "==========\n")));
}

TEST_F(SortAlbums, ListsTheAlbumsInTheServicesOrder) {
  EXPECT_TRUE(pb_app_common_sort_albums(1));

  EXPECT_STREQ(row(0)->name, "First");
  EXPECT_STREQ(row(1)->name, "Second");
}

TEST_F(SortAlbums, AsksInTheOrderThatIsGiven) {
  pb_app_common_sort_albums(4);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(4, 0)"));
}

TEST_F(SortAlbums, HidesWebAlbumsWithoutAnAccount) {
  mb_util_set_vesk_login_present(0);

  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(1, 65536)"));
}

TEST_F(SortAlbums, FillsTheItems) {
  pb_app_common_sort_albums(1);

  EXPECT_EQ(row(1)->album_id, 2);
  EXPECT_EQ(row(1)->naid, G_GINT64_CONSTANT(5000000009));
  EXPECT_EQ(row(1)->attr, 6);
  EXPECT_STREQ(row(1)->thumb_path, "/cover-2.jpg");
  EXPECT_EQ(row(1)->is_cluster, 1);
}

TEST_F(SortAlbums, CountsTheFilesOfEveryAlbum) {
  pb_app_common_sort_albums(1);

  EXPECT_EQ(row(0)->count, 70);
  EXPECT_EQ(row(1)->count, 20);
}

TEST_F(SortAlbums, TakesZeroForFilesThatCannotBeCounted) {
  fake::platform().fm_svc_mb_album_get_files_count = [](gint, gint *count, gint *) {
    *count = 99;
    return FALSE;
  };

  EXPECT_TRUE(pb_app_common_sort_albums(1));

  EXPECT_EQ(row(0)->count, 0);
}

TEST_F(SortAlbums, LogsFilesThatCannotBeCounted) {
  fake::platform().fm_svc_mb_album_get_files_count = [](gint, gint *, gint *error) {
    *error = 5;
    return FALSE;
  };

  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(HasSubstr("fm_svc_mb_album_get_files_count failed"))));
}

TEST_F(SortAlbums, NumbersTheRows) {
  pb_app_common_sort_albums(1);

  EXPECT_EQ(source_index(0), 0);
  EXPECT_EQ(source_index(1), 1);
}

TEST_F(SortAlbums, LeavesTheItemsToTheList) {
  pb_app_common_sort_albums(1);

  EXPECT_EQ(G_OBJECT(row(0))->ref_count, 1U);
}

TEST_F(SortAlbums, LogsEveryAlbum) {
  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::platform().log,
              testing::IsSupersetOf(
                  {Logged(PB_LOG_INFO, "[pb_app_common_sort_albums]g_list_length:2\n"),
                   Logged(PB_LOG_INFO,
                          "[pb_app_common_sort_albums]$$$$$$$$ Album name = Second $$$$$$$$\n"),
                   Logged(PB_LOG_INFO, "[pb_app_common_sort_albums]$$$$$$$$ UID = 2 $$$$$$$$\n")}));
}

TEST_F(SortAlbums, KeepsTheCount) {
  pb_app_common_sort_albums(1);

  EXPECT_EQ(hidden().n_entire_items, 2);
}

TEST_F(SortAlbums, FreesTheServicesList) {
  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), testing::SizeIs(1));
}

TEST_F(SortAlbums, ReadsNothingBehindAFieldWithoutItsEnd) {
  FmAlbumRecord record{};
  std::fill(std::begin(record.name), std::end(record.name), 'n');
  std::fill(std::begin(record.cover_path), std::end(record.cover_path), 'c');
  serve_albums({record});

  pb_app_common_sort_albums(1);

  EXPECT_EQ(std::string(row(0)->name), std::string(303, 'n'));
  EXPECT_EQ(std::string(row(0)->thumb_path), std::string(300, 'c'));
}

TEST_F(SortAlbums, DropsTheOldList) {
  ListRef old = browse({1, 2});
  const ExpectFinalized watch(old.get());
  old.reset();

  pb_app_common_sort_albums(1);

  EXPECT_TRUE(watch.finalized());
}

TEST_F(SortAlbums, LeavesTheRowAndTheCategoryAsTheyWere) {
  state()->item_index = 9;
  state()->category_type = 2;
  const NotifyCount notified(state(), "category-type");

  pb_app_common_sort_albums(1);

  EXPECT_EQ(state()->item_index, 9);
  EXPECT_EQ(state()->category_type, 2);
  EXPECT_EQ(notified.count(), 0);
}

TEST_F(SortAlbums, FailsWithoutAlbums) {
  serve_albums({});

  EXPECT_FALSE(pb_app_common_sort_albums(1));
}

TEST_F(SortAlbums, LeavesAnEmptyListWithoutAlbums) {
  const ListRef old = browse({1, 2});
  serve_albums({});

  pb_app_common_sort_albums(1);

  EXPECT_EQ(pb_item_list_get_length(pb_app_common_get_item_list()), 0);
  EXPECT_EQ(hidden().n_entire_items, 0);
}

TEST_F(SortAlbums, FailsWithTheService) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };

  EXPECT_FALSE(pb_app_common_sort_albums(1));
}

TEST_F(SortAlbums, LeavesAnEmptyListWhenTheServiceFails) {
  const ListRef old = browse({1, 2});
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };

  pb_app_common_sort_albums(1);

  EXPECT_EQ(pb_item_list_get_length(pb_app_common_get_item_list()), 0);
  EXPECT_EQ(hidden().n_entire_items, 0);
}

TEST_F(SortAlbums, LogsTheServicesFailure) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *error) {
    *error = 5;
    return FALSE;
  };

  pb_app_common_sort_albums(1);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_app_common_sort_albums]fm_svc_mb_get_all_albums_ex failed "
                              "with err = 5\n")));
}

TEST_F(SortAlbums, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_sort_albums(1));

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

}  // namespace

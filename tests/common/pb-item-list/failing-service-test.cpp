/// One call of the service fails, the first or any later one, in the middle of what a user does.
#include <optional>

#include "fixture.hpp"

namespace {

using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::read_row;

constexpr gint kFiles = 105;  // more than a page
constexpr gint kFewFiles = 4;
constexpr gint kLine = 126;

/// Counts the service's calls and fails some of them.
struct Failing {
  int calls = 0;
  int first = 0;  ///< number of the first call that fails
  int last = 0;   ///< and of the last

  bool fails() {
    ++calls;
    return calls >= first && calls <= last;
  }
};

template <typename... Arguments>
void make_fail(std::function<gboolean(Arguments...)> &function, Failing &failing) {
  function = [answer = function, &failing](Arguments... arguments) -> gboolean {
    return failing.fails() ? FALSE : answer(arguments...);
  };
}

class LookingAround : public ItemListTest {
 protected:
  /// A service with that many files, whose calls are counted on.
  void serve(gint files) {
    fake::Platform &phone = fake::platform();
    item_list_test::serve(files);
    item_list_test::serve_web_id(9);
    phone.fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **list, gint *) {
      *list = fake::record_list(std::vector{fake::make_album(77, "trip", 5)});
      return TRUE;
    };
    item_list_test::serve_album({1, 2, 3}, {FM_FILE_LOCAL, FM_FILE_WEB_ONLY, FM_FILE_LOCAL});
    phone.fm_svc_vesk_get_server_only_vesk_files_without_delete = [](gint64, FmFileList *list,
                                                                     gint *) {
      fake::fill_file_list(list, {5}, {FM_FILE_WEB_ONLY});
      return TRUE;
    };
    phone.fm_svc_mb_album_get_files_count = [](gint, gint *count, gint *) {
      *count = 3;
      return TRUE;
    };
    make_fail(phone.fm_svc_mb_get_all_albums_ex, failing_);
    make_fail(phone.fm_svc_mb_album_get_all_files_ex, failing_);
    make_fail(phone.fm_svc_mb_album_get_files_count, failing_);
    make_fail(phone.fm_svc_mb_get_all_sub_file_count, failing_);
    make_fail(phone.fm_svc_mb_get_list, failing_);
    make_fail(phone.fm_svc_mb_get_record_by_index, failing_);
    make_fail(phone.fm_svc_mb_get_item_by_database_index, failing_);
    make_fail(phone.fm_svc_vesk_get_server_only_vesk_files_without_delete, failing_);
  }
  void SetUp() override {
    ItemListTest::SetUp();
    fake::Platform &phone = fake::platform();
    make_fail(phone.fm_svc_mb_album_get_last_added_file, failing_);
    make_fail(phone.fm_svc_mb_get_album, failing_);
    make_fail(phone.fm_svc_vesk_get_vesk_file, failing_);
    make_fail(phone.fexplorer_initialize, failing_);
    make_fail(phone.fexplorer_get_file_lock_status, failing_);
  }
  void TearDown() override {
    view_.reset();
    take_glib_warnings();
    ItemListTest::TearDown();
  }

  static void read_some_rows(const ListPtr &list) {
    const gint rows = item_list_test::store_rows(list);
    for (const gint row : {0, 1, 50, 101, kFiles - 1}) {
      if (row < rows) read_row(list, row);
    }
  }
  static void run_refresh() {
    for (int i = 0; i < 100 && !item_list_test::pending_refreshes().empty(); ++i) {
      fake::run_next_idle();
    }
  }

  /// Opens every category, reads rows, scrolls and asks every query.
  void look_around(bool share) {
    fake::take_calls();
    fake::take_log();
    serve(kFiles);
    view_.emplace();
    for (const gint category : {0, 1, 3, 4}) {
      const ListPtr list = item_list_test::new_list();
      view_->attach(list);
      pb_item_list_build(list.get(), category, 77);
      read_some_rows(list);
      view_->scroll(3 * kLine);
      run_refresh();
      __pb_item_list_peek_item(list.get(), 0);
      pb_item_list_vls_disconnect_signal(list.get());
    }
    serve(kFewFiles);
    read_some_rows(ListPtr::adopt(pb_item_get_album_list(77)));
    const ListPtr all = ListPtr::adopt(pb_item_get_sub_list(nullptr));
    read_some_rows(all);
    const ListPtr grouped = ListPtr::adopt(pb_item_get_sticky_sub_list(all.get()));
    g_object_unref(grouped.get());
    read_some_rows(ListPtr::adopt(pb_item_get_sub_backup_list()));
    read_some_rows(ListPtr::adopt(pb_item_get_refresh_sub_list(all.get())));
    if (!share) return;
    for (const gint category : {0, 1, 3}) {
      read_some_rows(ListPtr::adopt(pb_item_get_share_list(category, 77, 0)));
    }
  }

  std::optional<item_list_test::View> view_;
  Failing failing_;
};

class FailingService : public LookingAround, public testing::WithParamInterface<int> {};

/// Every call is the one that fails, in turns of this many for one test.
constexpr int kTurn = 25;
constexpr int kTurns = 12;

TEST_P(FailingService, LeavesNothingBehindAfterOneFailure) {
  for (int call = GetParam(); call < GetParam() + kTurn; ++call) {
    SCOPED_TRACE(call);
    failing_ = {.calls = 0, .first = call, .last = call};

    look_around(true);

    EXPECT_EQ(pb_item_list_count, 0);
    EXPECT_TRUE(item_list_test::pending_refreshes().empty());
  }
}

TEST_P(FailingService, LeavesNothingBehindWhenItStaysAway) {
  for (int call = GetParam(); call < GetParam() + kTurn; ++call) {
    SCOPED_TRACE(call);
    failing_ = {.calls = 0, .first = call, .last = G_MAXINT};

    look_around(false);

    EXPECT_EQ(pb_item_list_count, 0);
    EXPECT_TRUE(item_list_test::pending_refreshes().empty());
  }
}

TEST_P(FailingService, ServesAgainAfterAFailure) {
  for (int call = GetParam(); call < GetParam() + kTurn; ++call) {
    SCOPED_TRACE(call);
    failing_ = {.calls = 0, .first = call, .last = call};
    look_around(true);
    failing_ = {};
    serve(kFiles);

    const ListPtr list = item_list_test::new_list();
    EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), kFiles);

    ASSERT_TRUE(read_row(list, kFiles - 1).item);
    EXPECT_EQ(read_row(list, kFiles - 1).item->id, kFiles);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, FailingService, testing::Range(1, kTurn *kTurns, kTurn));

TEST_F(LookingAround, IsAskedNoMoreOftenThanTheTestsGo) {
  look_around(true);

  EXPECT_LE(failing_.calls, kTurn * kTurns);
}

}  // namespace

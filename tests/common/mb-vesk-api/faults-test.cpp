// What requests do without memory. The functions below stand in front of GLib's, by --wrap.
#include "common/mb-vesk-api/vesk-fixture.hpp"

namespace {

/// Which allocation from here on fails, with all behind it; negative: none.
int g_left = -1;

bool refused() {
  if (g_left > 0) --g_left;
  return g_left == 0;
}

}  // namespace

extern "C" {

gpointer __real_g_try_malloc0(gsize size);
gpointer __real_g_try_malloc0_n(gsize count, gsize size);
gpointer __wrap_g_try_malloc0(gsize size);
gpointer __wrap_g_try_malloc0_n(gsize count, gsize size);

gpointer __wrap_g_try_malloc0(gsize size) {
  return refused() ? nullptr : __real_g_try_malloc0(size);
}

gpointer __wrap_g_try_malloc0_n(gsize count, gsize size) {
  return refused() ? nullptr : __real_g_try_malloc0_n(count, size);
}
}

namespace {

using testing::IsEmpty;

class WithoutMemory : public vesk_test::VeskTest {
 protected:
  void TearDown() override {
    g_left = -1;
    VeskTest::TearDown();
  }
  /// Lets the n-th allocation from here on fail, and all behind it.
  static void refuse(int nth) { g_left = nth; }
  void expect_nothing_sent() {
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  }

  gint64 id_ = 21;
  pb::ListSpinePtr ids_{g_list_prepend(nullptr, &id_)};
  pb::ListSpinePtr fids_{g_list_prepend(nullptr, GINT_TO_POINTER(4))};
};

TEST_F(WithoutMemory, NoAlbumsAreAskedFor) {
  refuse(1);

  EXPECT_EQ(mb_vesk_get_web_albums(5, nullptr, 0, 30), 0);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_get_web_albums] file_filter_info malloc failed \n"));
}

TEST_F(WithoutMemory, NoAlbumIsDeleted) {
  refuse(1);

  mb_vesk_delete_web_album(5, ids_.get());

  expect_nothing_sent();
}

TEST_F(WithoutMemory, NothingIsDeletedWithoutACopyOfTheAlbumsId) {
  refuse(1);

  EXPECT_EQ(mb_vesk_delete_web_album_contents(5, nullptr, 8, ids_.get()), nullptr);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_delete_web_album_contents]: naid  malloc ERROR\n"));
}

TEST_F(WithoutMemory, NothingIsDeletedWithoutAnArray) {
  refuse(2);

  EXPECT_EQ(mb_vesk_delete_web_album_contents(5, nullptr, 8, ids_.get()), nullptr);

  expect_nothing_sent();
  EXPECT_TRUE(
      logged(PB_LOG_ERROR, "[mb_vesk_delete_web_album_contents]: deletelist malloc ERROR\n"));
}

TEST_F(WithoutMemory, OneContentIsNotDeleted) {
  refuse(1);

  mb_vesk_delete_content_cb(5, 21, 8);

  expect_nothing_sent();
}

TEST_F(WithoutMemory, NothingIsAdded) {
  refuse(1);

  EXPECT_EQ(mb_vesk_media_add_content_to_web_album(5, &id_, 1, 8), 0);

  expect_nothing_sent();
}

TEST_F(WithoutMemory, NothingIsUploaded) {
  refuse(1);

  EXPECT_EQ(mb_vesk_upload_fids(5, nullptr, 0, 1, nullptr), 0);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_upload_fids]: tmp_fids malloc ERROR\n"));
}

TEST_F(WithoutMemory, ASharedFileIsNotUploaded) {
  refuse(1);

  EXPECT_EQ(mb_vesk_one_click_share(5, 4, nullptr), 0);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_one_click_share] mb_vesk_upload_fids failed 0\n\n"));
}

TEST_F(WithoutMemory, AnArchivedFileIsNotUploaded) {
  refuse(1);

  EXPECT_EQ(mb_vesk_archieve_and_delete_local(5, 4), 0);

  expect_nothing_sent();
}

TEST_F(WithoutMemory, ABackupDoesNotWait) {
  refuse(1);

  EXPECT_EQ(mb_vesk_file_manual_backup(5, fids_.get()), 1);

  expect_nothing_sent();
}

TEST_F(WithoutMemory, SeveralFilesAreNotUploaded) {
  refuse(1);

  mb_vesk_upload_multiple_contents(5, fids_.get());

  expect_nothing_sent();
}

TEST_F(WithoutMemory, NothingIsPublished) {
  refuse(1);

  mb_vesk_media_share_content_sns_group(5, ids_.get(), FALSE, "Friends");

  expect_nothing_sent();
}

TEST_F(WithoutMemory, NoCommentIsWritten) {
  refuse(1);

  mb_vesk_media_add_comments(5, 21, "Nice");

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_add_comments] Memory faild for tag "
                     "info.operation aborted!!!! \n"));
}

TEST_F(WithoutMemory, NoCommentIsDeleted) {
  refuse(1);

  mb_vesk_media_delete_comments(5, ids_.get(), 1);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_delete_comments]: commentidlist mallco EROR\n"));
}

TEST_F(WithoutMemory, ThereIsNoQuickPost) {
  refuse(1);

  EXPECT_EQ(mb_vesk_media_quick_post(0, ids_.get()), 0);

  expect_nothing_sent();
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_quick_post] : download_data NULL ERROR\n"));
  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_util_content_download_new]: download_data malloc ERROR\n"));
}

}  // namespace

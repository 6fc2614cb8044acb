#include <gdk/gdk.h>

#include "mb-util-content.h"
#include "pb-util-dialog.h"
#include "support/fake-platform.hpp"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::platform;
using testing::ElementsAre;
using testing::IsEmpty;

class Request : public pb_test::DialogTest {
 protected:
  static void give_entries(MbDownloadData *data, const std::vector<gint> &request_ids) {
    data->entries = g_new0(MbDownloadEntry, request_ids.size());
    data->n_entries = static_cast<gint>(request_ids.size());
    for (std::size_t i = 0; i < request_ids.size(); ++i) {
      data->entries[i].request_id = request_ids[i];
    }
  }
};

TEST_F(Request, BeginsEmpty) {
  MbDownloadData *data = mb_util_content_download_new();

  EXPECT_EQ(data->entries, nullptr);
  EXPECT_EQ(data->n_entries, 0);
  EXPECT_EQ(data->first_index, -1);
  EXPECT_EQ(data->last_index, -1);
  EXPECT_EQ(data->abort, 0);
  EXPECT_EQ(data->finished, 0);
  EXPECT_EQ(data->timer_tag, 0U);
  mb_util_content_download_free(data);
}

TEST_F(Request, GivesUpWhatIsUnderWay) {
  MbDownloadData *data = mb_util_content_download_new();
  give_entries(data, {7, 0, -1, 8});

  mb_util_content_download_free(data);

  EXPECT_THAT(fake::calls_of("vesk_svc_download_util_abort_request"),
              ElementsAre("vesk_svc_download_util_abort_request(7)",
                          "vesk_svc_download_util_abort_request(8)"));
}

TEST_F(Request, RemovesItsSource) {
  MbDownloadData *data = mb_util_content_download_new();
  data->timer_tag = gdk_threads_add_timeout(
      100, [](gpointer) { return FALSE; }, nullptr);

  mb_util_content_download_free(data);

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(Request, EndsTheCurrentDialog) {
  mb_util_create_waiting_popup("waiting");

  mb_util_content_download_free(mb_util_content_download_new());

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(Request, FreesWhatItOwns) {
  MbDownloadData *data = mb_util_content_download_new();
  data->work1 = g_malloc(8);
  data->work2 = g_malloc(8);
  data->content_ids = g_list_prepend(nullptr, g_new0(gint64, 1));

  mb_util_content_download_free(data);

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST_F(Request, OfNothingIsIgnored) {
  mb_util_create_waiting_popup("waiting");

  mb_util_content_download_free(nullptr);

  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST(ExtensionOfMime, IsThatOfTheFirstMatch) {
  const std::vector<std::pair<const char *, const char *>> rows = {
      {"image/jpeg", "jpg"}, {"image/pjpeg", "jpg"},     {"image/jpg", "jpg"},
      {"image/gif", "gif"},  {"image/tiff", "tiff"},     {"image/bmp", "bmp"},
      {"image/png", "png"},  {"video/3gp", "3gp"},       {"video/3gpp; x", "3gp"},
      {"video/mp4", "mp4"},  {"video/avi", "avi"},       {"x image/png image/gif", "gif"},
      {"IMAGE/PNG", "jpg"},  {"../../image/svg", "jpg"}, {"", "jpg"}};
  for (const auto &[mime, extension] : rows) {
    EXPECT_STREQ(mb_util_content_get_ext_by_mime(mime), extension) << mime;
  }
  EXPECT_STREQ(mb_util_content_get_ext_by_mime(nullptr), "jpg");
}

}  // namespace

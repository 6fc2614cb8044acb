// The cover of the quick-post album, from the reply to the file.
#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-app-common.h"
#include "pb-util-dialog.h"
#include "support/temp-dir.hpp"

namespace {

using fake::platform;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using vesk_test::send;

constexpr const char *kDirectory =
    "/mnt/ums/.temp/com.velmora.photobrowser/.mb_album_content_thumb";

class DrovoCover : public vesk_test::VeskTest {
 protected:
  void SetUp() override {
    VeskTest::SetUp();
    pb_app_common_initialize();
    platform().fm_svc_mb_get_drovo_album = [](FmAlbumRecord *album, gint *) {
      *album = fake::make_album(3, "quickpost", 8000000001);
      return TRUE;
    };
    platform().fm_svc_vesk_get_vesk_file = [this](gint64 nfid, FmVeskFileRecord *file, gint *) {
      *file = {};
      file->nfid = nfid;
      fake::set_text(file->name, name_);
      fake::set_text(file->bytes_url, url_);
      return TRUE;
    };
  }
  void TearDown() override {
    VeskTest::TearDown();
    pb_app_common_finalize();
  }
  static std::string cover(const std::string &extension) {
    return support::photobrowser_root() + kDirectory + "/8000000001." + extension;
  }
  static void reply() { send({VESK_CONTENT_REQ_FILE_GET, {21, 22}, ""}); }
  /// Replies and lets the main loop start the download.
  static void start() {
    reply();
    fake::run_idles();
  }
  static std::size_t resyncs() {
    std::size_t count = 0;
    for (const fake::LogLine &line : platform().log) {
      if (line.text == "[pb_app_common_resync_current_category]\n") ++count;
    }
    return count;
  }

  std::string name_ = "Sea.PNG";
  std::string url_ = "https://example.org/sea.png";
};

TEST_F(DrovoCover, IsStoredInTheMirrorUnderItsAlbumsId) {
  reply();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_update_folder"),
              ElementsAre("fm_svc_vesk_update_folder({3, 8000000001, \"quickpost\", \"" +
                          cover("png") + "\"})"));
}

TEST_F(DrovoCover, IsAJpegWhenItsNameSaysNothing) {
  name_ = "Sea";

  reply();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_update_folder"), ElementsAre(HasSubstr(cover("jpg"))));
}

TEST_F(DrovoCover, IsThatOfTheFirstContent) {
  reply();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_vesk_file"),
              ElementsAre("fm_svc_vesk_get_vesk_file(21)"));
}

TEST_F(DrovoCover, IsDownloadedFromTheMainLoop) {
  reply();

  EXPECT_THAT(platform().downloads, IsEmpty());
  EXPECT_THAT(fake::pending_idles(), SizeIs(1));
}

TEST_F(DrovoCover, IsDownloadedToItsPath) {
  start();

  EXPECT_THAT(fake::calls_of("vesk_svc_download_util_init"),
              ElementsAre("vesk_svc_download_util_init(0)"));
  EXPECT_THAT(fake::calls_of("vesk_svc_download_util_download_url"),
              ElementsAre("vesk_svc_download_util_download_url(\"" + url_ + "\", 1, \"" +
                          cover("png") + "\")"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[__mb_vesk_dwld_drovo_album_cover] __mb_vesk_dwld_drovo_album_cover "
                     "******\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[__mb_vesk_dwld_drovo_album_cover]File URL :" + url_ + "\n"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[__mb_vesk_dwld_drovo_album_cover]File Name :" + cover("png") + "\n"));
  fake::finish_download(1, 200, "png");
}

TEST_F(DrovoCover, IsNotDownloadedIntoAFullMemory) {
  platform().fexplorer_get_available_memory_space = [](gint, gint64 *, gint *) { return FALSE; };

  start();

  EXPECT_THAT(platform().downloads, IsEmpty());
}

TEST_F(DrovoCover, IsNotDownloadedWithoutTheUtility) {
  platform().vesk_svc_download_util_init = [](gint) { return 0; };

  start();

  EXPECT_THAT(platform().downloads, IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[__mb_vesk_dwld_drovo_album_cover]Failed !!!!!!1:"
                     "vesk_svc_download_util_init\n"));
}

TEST_F(DrovoCover, IsNotDownloadedFromNowhere) {
  url_ = "";

  start();

  EXPECT_THAT(platform().downloads, IsEmpty());
}

TEST_F(DrovoCover, ThatIsRefusedIsFreed) {
  platform().vesk_svc_download_util_download_url = [](const gchar *, gint, vesk_download_cb,
                                                      gpointer, const gchar *) { return -1; };

  start();

  EXPECT_THAT(fake::calls_of("vesk_svc_download_util_abort_request"), IsEmpty());
}

TEST_F(DrovoCover, IsReportedAndShown) {
  start();
  fake::take_log();

  fake::finish_download(1, 200, "png", "Content-Type: image/png");
  fake::run_idles();

  EXPECT_THAT(platform().log.at(0).text,
              testing::MatchesRegex("\\[cover_downloaded\\]i_reqid:1, i_response_len:3, "
                                    "i_hader_len:23, pv_user_data:0x:[0-9a-f]+, "
                                    "e_http_status:200\n"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[cover_downloaded]drovo Album cover is downloaded !!!!!!!!!!\n"));
  EXPECT_EQ(resyncs(), 1U);
  EXPECT_THAT(platform().downloads, IsEmpty());
  EXPECT_EQ(support::read_file(cover("png")), "png");
}

TEST_F(DrovoCover, LeavesDialogsAlone) {
  start();
  mb_util_create_waiting_popup("waiting");

  fake::finish_download(1, 200, "png");
  fake::run_idles();

  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST_F(DrovoCover, LeavesNoPartOfAFailedDownload) {
  start();
  fake::finish_download(1, 200, "part");
  start();

  fake::finish_download(2, 404);
  fake::run_idles();

  EXPECT_TRUE(
      logged(PB_LOG_WARNING, "[cover_downloaded]Thumnail is not downloaded.......!!!!!!!!!!\n"));
  EXPECT_FALSE(support::exists(cover("png")));
}

TEST_F(DrovoCover, IsLeftAloneWithoutTheAlbum) {
  platform().fm_svc_mb_get_drovo_album = [](FmAlbumRecord *, gint *) { return FALSE; };

  reply();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_update_folder"), IsEmpty());
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(DrovoCover, IsDownloadedWhenTheMirrorFails) {
  platform().fm_svc_vesk_update_folder = [](const FmAlbumRecord *, gint *) { return FALSE; };

  start();

  EXPECT_THAT(platform().downloads, SizeIs(1));
  fake::finish_download(1, 404);
}

}  // namespace

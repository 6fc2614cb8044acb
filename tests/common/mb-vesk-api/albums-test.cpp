#include <sys/stat.h>

#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "support/temp-dir.hpp"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char *kPackage = "/mnt/ums/.temp/com.velmora.photobrowser";

class WebAlbums : public vesk_test::VeskTest {};
class DeleteAlbums : public vesk_test::VeskTest {};
class RenameAlbum : public vesk_test::VeskTest {};
class MakeAlbum : public vesk_test::VeskTest {};
class HiddenAlbum : public vesk_test::VeskTest {};

void refuse_queries() {
  fake::platform().vesk_svc_content_album_get = [](guint32, gint, gint, gint, const VeskFilter *,
                                                   gpointer) { return -4; };
}

TEST_F(WebAlbums, AreAskedForByTheirNumbersFromOne) {
  EXPECT_EQ(mb_vesk_get_web_albums(5, nullptr, 0, 30), 1);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_album_get(5, 0, 0, {{12, "1-30", "$$"}}))"));
}

TEST_F(WebAlbums, AreAskedForInTheMiddle) {
  mb_vesk_get_web_albums(5, nullptr, 60, 30);

  EXPECT_THAT(requests(), ElementsAre(HasSubstr("{12, \"61-90\", \"$$\"}")));
}

TEST_F(WebAlbums, AreAskedForWithNothingElseInTheFilter) {
  std::string bytes;
  fake::platform().vesk_svc_content_album_get = [&](guint32, gint, gint, gint,
                                                    const VeskFilter *filter, gpointer) {
    bytes = vesk_test::bytes_of(*filter);
    return 1;
  };

  mb_vesk_get_web_albums(5, nullptr, 0, 30);

  std::string expected(168, '\0');
  expected[0] = 12;
  expected.replace(8, 4, "1-30");
  expected.replace(24, 2, "$$");
  EXPECT_EQ(bytes, expected);
}

TEST_F(WebAlbums, AreAskedForThroughTheOwnHandle) {
  veskMediaHandle = 44;

  mb_vesk_get_web_albums(0, nullptr, 0, 30);

  EXPECT_THAT(requests(), ElementsAre(HasSubstr("(44, 0, 0,")));
}

TEST_F(WebAlbums, KeepARangeThatDoesNotFitWithinIntegers) {
  mb_vesk_get_web_albums(5, nullptr, G_MAXINT, G_MAXINT);

  EXPECT_THAT(requests(), ElementsAre(HasSubstr("\"2147483647-2147\"")));
}

TEST_F(WebAlbums, LogTheRangeAndTheAnswer) {
  mb_vesk_get_web_albums(5, nullptr, 0, 30);

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_get_web_albums] mb_vesk_get_web_albums ***********\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_get_web_albums] DWNLD Index from 1 to 30 \n"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_get_web_albums] Vp_status passed for "
                     "vesk_svc_content_album_get = 1 \n"));
}

TEST_F(WebAlbums, ReportARefusal) {
  refuse_queries();

  EXPECT_EQ(mb_vesk_get_web_albums(5, nullptr, 0, 30), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_get_web_albums] Vp_status failed for "
                     "vesk_svc_content_album_get = -4 \n"));
}

TEST_F(WebAlbums, LeaveUserDataToTheCallerAfterARefusal) {
  refuse_queries();
  MbDownloadData *record = mb_util_content_download_new();

  mb_vesk_get_web_albums(5, record, 0, 30);
  mb_vesk_deregister_app(5);

  EXPECT_EQ(record->first_index, -1);
  mb_util_content_download_free(record);
}

TEST_F(WebAlbums, ArmNoGuard) {
  mb_vesk_get_web_albums(5, nullptr, 0, 30);

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(WebAlbums, AreNotAskedForBySomebodySignedOut) {
  fake::platform().vesk_svc_core_is_logout = [](guint32) { return 1; };

  EXPECT_EQ(mb_vesk_get_web_albums(5, nullptr, 0, 30), 0);

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_TRUE(
      logged(PB_LOG_WARNING, "[mb_vesk_get_web_albums]mb_vesk_check_user_credential : false  \n"));
}

TEST_F(WebAlbums, MakeTheirDirectories) {
  mb_vesk_get_web_albums(5, nullptr, 0, 30);

  for (const char *name :
       {".mb_album_cover", ".mb_album_content_thumb", ".mb_album_content_file"}) {
    EXPECT_TRUE(support::exists(support::photobrowser_root() + kPackage + "/" + name)) << name;
  }
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_get_web_albums]dir path is not  exist,need to create!!!!!! \n"));
}

TEST_F(WebAlbums, LeaveTheirDirectoriesAlone) {
  mb_vesk_get_web_albums(5, nullptr, 0, 30);
  fake::take_log();

  mb_vesk_get_web_albums(5, nullptr, 0, 30);

  std::vector<std::string> found;
  for (const fake::LogLine &line : fake::platform().log) {
    if (line.text.find("dir path") != std::string::npos) found.push_back(line.text);
  }
  EXPECT_EQ(found, std::vector<std::string>(3,
                                            "[mb_vesk_get_web_albums]dir path is already "
                                            "exist\n\n"));
}

TEST_F(HiddenAlbum, IsAskedForByItsName) {
  mb_vesk_get_hidden_album_id(5);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_album_get(5, 0, 0, {{11, "quickpost", "$$"}}))"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_get_hidden_album_id]  Operation Successfull\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(HiddenAlbum, IsNotAskedForWithoutAHandle) {
  veskMediaHandle = 44;

  mb_vesk_get_hidden_album_id(0);

  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(HiddenAlbum, LogsARefusal) {
  refuse_queries();

  mb_vesk_get_hidden_album_id(5);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_get_hidden_album_id]  Operation Error:-4\n"));
}

TEST_F(RenameAlbum, SendsTheIdAndTheName) {
  mb_vesk_update_web_album(5, -7000000000, "Süd");

  EXPECT_THAT(requests(),
              ElementsAre("vesk_svc_content_album_update(5, {{-7000000000, \"Süd\"}})"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_update_web_album]mb_vesk_update_web_album request SUCCESS\n"));
}

TEST_F(RenameAlbum, CutsALongName) {
  mb_vesk_update_web_album(5, 1, std::string(300, 'n').c_str());

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_album_update(5, {{1, \"" +
                                      std::string(255, 'n') + "\"}})"));
}

TEST_F(RenameAlbum, CutsBetweenCharacters) {
  mb_vesk_update_web_album(5, 1, (std::string(254, 'n') + "ü").c_str());

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_album_update(5, {{1, \"" +
                                      std::string(254, 'n') + "\"}})"));
}

TEST_F(RenameAlbum, KeepsANameThatJustFits) {
  const std::string name = std::string(253, 'n') + "ü";

  mb_vesk_update_web_album(5, 1, name.c_str());

  EXPECT_THAT(requests(), ElementsAre(HasSubstr("\"" + name + "\"")));
}

TEST_F(RenameAlbum, LogsARefusal) {
  fake::platform().vesk_svc_content_album_update = [](guint32, gint, const VeskAlbum *, gpointer) {
    return 0;
  };

  mb_vesk_update_web_album(5, 1, "n");

  EXPECT_TRUE(
      logged(PB_LOG_ERROR, "[mb_vesk_update_web_album]mb_vesk_update_web_album request FAILED\n"));
}

TEST_F(RenameAlbum, SendsNothingWithoutAName) {
  mb_vesk_update_web_album(5, 1, nullptr);

  EXPECT_THAT(fake::take_calls(), IsEmpty());
}

TEST_F(DeleteAlbums, SendsTheirIds) {
  std::vector<gint64> ids{3, G_MAXINT64};
  const pb::ListSpinePtr list(list_of(ids));

  mb_vesk_delete_web_album(5, list.get());

  EXPECT_THAT(requests(),
              ElementsAre("vesk_svc_content_album_remove(5, {3, 9223372036854775807})"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_delete_web_album]To be Deleted Naid[0] = 3\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_delete_web_album]To be Deleted Naid[1] = "
                     "9223372036854775807\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_delete_web_album]vesk_svc_content_album_remove request SUCCESS\n"));
}

TEST_F(DeleteAlbums, LogsARefusal) {
  fake::platform().vesk_svc_content_album_remove = [](guint32, gint, const gint64 *, gpointer) {
    return -1;
  };
  std::vector<gint64> ids{3};
  const pb::ListSpinePtr list(list_of(ids));

  mb_vesk_delete_web_album(5, list.get());

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_delete_web_album]vesk_svc_content_album_remove request FAILED\n"));
}

TEST_F(DeleteAlbums, SendsNothingForAnEmptyList) {
  mb_vesk_delete_web_album(5, nullptr);

  EXPECT_THAT(fake::take_calls(), IsEmpty());
}

TEST_F(MakeAlbum, TakesTheNameOfTheFolder) {
  fake::platform().fm_svc_vesk_get_folder = [](gint, FmAlbumRecord *folder, gint *) {
    *folder = fake::make_album(8, "Summer");
    return TRUE;
  };

  EXPECT_EQ(mb_vesk_vesk_upload_album(5, 8), 1);

  EXPECT_THAT(requests(), ElementsAre("fm_svc_vesk_get_folder(8)",
                                      "vesk_svc_content_album_add(5, {{0, \"Summer\"}})"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_vesk_upload_album]###### mb_vesk_vesk_upload_album : err=1\n\n"));
}

TEST_F(MakeAlbum, ReadsNoFurtherThanTheFieldOfTheName) {
  fake::platform().fm_svc_vesk_get_folder = [](gint, FmAlbumRecord *folder, gint *) {
    std::memset(folder->name, 'x', sizeof folder->name);
    std::memset(folder->cover_path, 'y', sizeof folder->cover_path);
    return TRUE;
  };

  mb_vesk_vesk_upload_album(5, 8);

  EXPECT_THAT(requests(),
              Contains("vesk_svc_content_album_add(5, {{0, \"" + std::string(255, 'x') + "\"}})"));
}

TEST_F(MakeAlbum, LogsTheServicesAnswer) {
  fake::platform().vesk_svc_content_album_add = [](guint32, gint, const VeskAlbum *, gpointer) {
    return -9;
  };

  EXPECT_EQ(mb_vesk_vesk_upload_album(5, 8), 1);

  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_vesk_upload_album]###### mb_vesk_vesk_upload_album : err=-9\n\n"));
}

TEST_F(MakeAlbum, SendsNothingForAnUnknownFolder) {
  fake::platform().fm_svc_vesk_get_folder = [](gint, FmAlbumRecord *, gint *) { return FALSE; };

  EXPECT_EQ(mb_vesk_vesk_upload_album(5, 8), 0);

  EXPECT_THAT(requests(), SizeIs(1));
  EXPECT_TRUE(
      logged(PB_LOG_ERROR,
             "[mb_vesk_vesk_upload_album]_fm_svc_vesk_db_get_folder_record_by_aid failed \n\n"));
}

}  // namespace

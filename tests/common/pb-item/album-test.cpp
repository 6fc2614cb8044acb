#include <pb-debug.h>
#include <pb-item.h>

#include "glib-ptr.hpp"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using pb::Ref;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr gint kError = 77;

class PbItemAlbum : public support::GlibTest {
 protected:
  /// The album of every test: its numbers and name are arbitrary.
  void set_album_info(gint naid = 9) {
    pb_item_set_album_info(item_.get(), 1, 2, 30, "Holiday", 4, naid, 5, 12);
  }

  static void serve_album(const std::vector<gint64> &ids, const std::vector<gint32> &types = {}) {
    fake::platform().fm_svc_mb_album_get_all_files = [=](gint, FmFileList *list, gint *) {
      fake::fill_file_list(list, ids, types);
      return TRUE;
    };
  }

  static void serve_record(const FmMediaRecord &record) {
    fake::platform().fm_svc_mb_get_record_by_index = [=](gint, FmMediaRecord *out, gint *) {
      *out = record;
      return TRUE;
    };
  }

  static void serve_file(const FmFileRecord &file) {
    fake::platform().fm_svc_mb_get_item_by_database_index = [=](gint, FmFileRecord *out, gint *) {
      *out = file;
      return TRUE;
    };
  }

  static void serve_full_paths() {
    fake::platform().fexplorer_get_full_path = [](const gchar *path, gint, gchar *full_path) {
      g_snprintf(full_path, 265, "/phone/%s", path);
      return TRUE;
    };
  }

  /// An album whose first file is local, with all that the service knows of it.
  static void serve_local_album() {
    serve_album({501, 502});
    FmMediaRecord record{};
    record.storage = FM_STORAGE_CARD;
    fake::set_text(record.folder, "DCIM");
    fake::set_text(record.name, "first.jpg");
    serve_record(record);
    FmFileRecord file{};
    file.item.id = 501;
    file.item.attribute = 6;
    fake::set_text(file.item.thumbnail_path, "/cache/501.jpg");
    fake::set_text(file.item.extension, "jpg");
    serve_file(file);
    serve_full_paths();
  }

  Ref<PbItem> item_ = Ref<PbItem>::adopt(pb_item_new());
};

using SetAlbumInfo = PbItemAlbum;
using SetAlbumInfoOfAnEmptyAlbum = PbItemAlbum;
using SetAlbumInfoOfAWebFile = PbItemAlbum;
using SetAlbumInfoOfALocalFile = PbItemAlbum;
using SetAlbumInfoEx = PbItemAlbum;

TEST_F(SetAlbumInfo, StoresTheAlbum) {
  set_album_info();

  EXPECT_EQ(item_->album_id, 30);
  EXPECT_STREQ(item_->name, "Holiday");
  EXPECT_EQ(item_->count, 12);
  EXPECT_EQ(item_->naid, 9);
}

TEST_F(SetAlbumInfo, MakesTheItemAnAlbum) {
  set_album_info();

  EXPECT_EQ(item_->is_cluster, 1);
}

TEST_F(SetAlbumInfo, WidensTheWebIdWithItsSign) {
  set_album_info(-2);

  EXPECT_EQ(item_->naid, G_GINT64_CONSTANT(-2));
}

TEST_F(SetAlbumInfo, CopiesTheName) {
  gchar name[] = "Holiday";
  pb_item_set_album_info(item_.get(), 0, 0, 30, name, 0, 0, 0, 12);

  name[0] = 'X';

  EXPECT_STREQ(item_->name, "Holiday");
}

TEST_F(SetAlbumInfo, AcceptsAnAlbumWithoutAName) {
  pb_item_set_album_info(item_.get(), 0, 0, 30, nullptr, 0, 0, 0, 12);

  EXPECT_EQ(item_->name, nullptr);
}

TEST_F(SetAlbumInfo, LogsTheAlbum) {
  item_->cluster_index = 4;
  item_->cate_type = 3;

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_item_set_album_info]CLUSTER ITEM [4], cate_type 3,  "
                              "start_item_index:30, name:Holiday, count:12, naid:9\n")));
}

TEST_F(SetAlbumInfo, AsksForTheFilesOfTheAlbum) {
  set_album_info();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files"),
              ElementsAre("fm_svc_mb_album_get_all_files(30)"));
}

TEST_F(SetAlbumInfo, LogsWhenTheFilesCannotBeListed) {
  fake::platform().fm_svc_mb_album_get_all_files = [](gint, FmFileList *, gint *) { return FALSE; };

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_item_set_album_info]\n [Media Manager - TestApp] : "
                              "fm_svc_mb_album_get_all_files failed \n\n")));
}

TEST_F(SetAlbumInfo, GoesOnWithWhatAFailedListReturned) {
  serve_local_album();
  fake::platform().fm_svc_mb_album_get_all_files = [](gint, FmFileList *list, gint *) {
    fake::fill_file_list(list, {501});
    return FALSE;
  };

  set_album_info();

  EXPECT_EQ(item_->id, 501);
}

TEST_F(SetAlbumInfo, TakesAFailedListWithoutFilesForAnEmptyAlbum) {
  fake::platform().fm_svc_mb_album_get_all_files = [](gint, FmFileList *, gint *) { return FALSE; };

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_item_set_album_info]======== pb_cluster_item_set_info Empty "
                              "Album==========\n")));
}

TEST_F(SetAlbumInfo, WarnsAboutNoItem) {
  pb_item_set_album_info(nullptr, 0, 0, 30, "Holiday", 0, 0, 0, 12);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_album_info: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(SetAlbumInfo, AsksNothingForNoItem) {
  pb_item_set_album_info(nullptr, 0, 0, 30, "Holiday", 0, 0, 0, 12);
  take_glib_warnings();

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, LogsThatItIsEmpty) {
  serve_album({});

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_item_set_album_info]======== pb_cluster_item_set_info Empty "
                              "Album==========\n")));
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, ReadsTheRecordOfIndexZero) {
  serve_album({});

  set_album_info();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"),
              ElementsAre("fm_svc_mb_get_record_by_index(0)"));
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, TakesTheCoverOfThatRecord) {
  serve_album({});
  FmMediaRecord record{};
  record.id = 17;
  record.attribute = 8;
  fake::set_text(record.thumbnail_path, "/cache/empty.png");
  fake::set_text(record.extension, "png");
  serve_record(record);

  set_album_info();

  EXPECT_EQ(item_->id, 17);
  EXPECT_EQ(item_->attr, 8);
  EXPECT_STREQ(item_->thumb_path, "/cache/empty.png");
  EXPECT_STREQ(item_->extension, "png");
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, HasAnEmptyFilename) {
  serve_album({});
  serve_record({});

  set_album_info();

  EXPECT_STREQ(item_->filename, "");
  EXPECT_EQ(item_->is_cluster, 1);
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, ReadsNothingBehindAFieldWithoutItsEnd) {
  serve_album({});
  FmMediaRecord record{};
  std::fill(std::begin(record.thumbnail_path), std::end(record.thumbnail_path), 't');
  std::fill(std::begin(record.extension), std::end(record.extension), 'e');
  serve_record(record);

  set_album_info();

  EXPECT_EQ(std::string(item_->thumb_path), std::string(300, 't'));
  EXPECT_EQ(std::string(item_->extension), std::string(8, 'e'));
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, KeepsItsFileInfoWhenTheRecordCannotBeRead) {
  serve_album({});
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *error) {
    *error = kError;
    return FALSE;
  };

  set_album_info();

  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->thumb_path, nullptr);
}

TEST_F(SetAlbumInfoOfAnEmptyAlbum, LogsWhenTheRecordCannotBeRead) {
  serve_album({});
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *error) {
    *error = kError;
    return FALSE;
  };

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_item_set_album_info]\n fm_svc_mb_get_record_by_index failed "
                              "with err = 77 \n\n")));
}

TEST_F(SetAlbumInfoOfAWebFile, LogsTheKindOfItsFirstFile) {
  serve_album({G_GINT64_CONSTANT(88)}, {FM_FILE_WEB_ONLY});

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_item_set_album_info]======== Not Empty Album && "
                              "FV_SYNC_ID_TYPE_NFID ==========\n")));
}

TEST_F(SetAlbumInfoOfAWebFile, ReadsTheWebFileByItsWholeId) {
  serve_album({G_GINT64_CONSTANT(5000000088)}, {FM_FILE_WEB_ONLY});

  set_album_info();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_vesk_file"),
              ElementsAre("fm_svc_vesk_get_vesk_file(5000000088)"));
}

TEST_F(SetAlbumInfoOfAWebFile, IsShownByWhatThisPhoneHasOfIt) {
  serve_album({G_GINT64_CONSTANT(88)}, {FM_FILE_WEB_ONLY});
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *record, gint *) {
    record->attribute = 4;
    fake::set_text(record->thumbnail_path, "/cache/88.jpg");
    return TRUE;
  };

  set_album_info();

  EXPECT_EQ(item_->id, 88);
  EXPECT_EQ(item_->attr, 4);
  EXPECT_STREQ(item_->thumb_path, "/cache/88.jpg");
  EXPECT_STREQ(item_->filename, "/cache/88.jpg");
}

TEST_F(SetAlbumInfoOfAWebFile, ReadsNothingBehindAFieldWithoutItsEnd) {
  serve_album({G_GINT64_CONSTANT(88)}, {FM_FILE_WEB_ONLY});
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *record, gint *) {
    std::fill(std::begin(record->thumbnail_path), std::end(record->thumbnail_path), 't');
    fake::set_text(record->bytes_url, "http://server/9");
    return TRUE;
  };

  set_album_info();

  EXPECT_EQ(std::string(item_->thumb_path), std::string(256, 't'));
  EXPECT_EQ(std::string(item_->filename), std::string(256, 't'));
}

TEST_F(SetAlbumInfoOfAWebFile, HasTheExtensionJpg) {
  serve_album({G_GINT64_CONSTANT(88)}, {FM_FILE_WEB_ONLY});
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *record, gint *) {
    fake::set_text(record->thumbnail_path, "/cache/88.png");
    return TRUE;
  };

  set_album_info();

  EXPECT_STREQ(item_->extension, "jpg");
}

TEST_F(SetAlbumInfoOfAWebFile, KeepsItsFileInfoWhenTheFileCannotBeRead) {
  serve_album({G_GINT64_CONSTANT(88)}, {FM_FILE_WEB_ONLY});
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *, gint *) {
    return FALSE;
  };

  set_album_info();

  EXPECT_EQ(item_->filename, nullptr);
}

TEST_F(SetAlbumInfoOfAWebFile, IsOnlyWhatTheFirstFileIs) {
  serve_local_album();
  serve_album({501, 88}, {FM_FILE_LOCAL, FM_FILE_WEB_ONLY});

  set_album_info();

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_vesk_file"), IsEmpty());
}

TEST_F(SetAlbumInfoOfALocalFile, ReadsTheFirstFilesRecords) {
  serve_local_album();

  set_album_info();

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("fm_svc_mb_album_get_all_files(30)", "fm_svc_mb_get_record_by_index(501)",
                          "fm_svc_mb_get_item_by_database_index(501)",
                          "fexplorer_get_full_path(\"DCIM/first.jpg\", 1)",
                          StartsWith("fm_svc_sync_list_free")));
}

TEST_F(SetAlbumInfoOfALocalFile, TakesTheFileAsItsCover) {
  serve_local_album();

  set_album_info();

  EXPECT_EQ(item_->id, 501);
  EXPECT_EQ(item_->attr, 6);
  EXPECT_STREQ(item_->thumb_path, "/cache/501.jpg");
  EXPECT_STREQ(item_->filename, "/phone/DCIM/first.jpg");
  EXPECT_STREQ(item_->extension, "jpg");
}

TEST_F(SetAlbumInfoOfALocalFile, ReadsNothingBehindAFieldWithoutItsEnd) {
  serve_local_album();
  FmMediaRecord record{};
  std::fill(std::begin(record.folder), std::end(record.folder), 'f');
  std::fill(std::begin(record.name), std::end(record.name), 'n');
  serve_record(record);
  FmFileRecord file{};
  std::fill(std::begin(file.item.thumbnail_path), std::end(file.item.thumbnail_path), 't');
  file.item.attribute = -1;
  std::fill(std::begin(file.item.extension), std::end(file.item.extension), 'e');
  file.item.media_type = -1;
  serve_file(file);

  set_album_info();

  EXPECT_EQ(std::string(item_->thumb_path), std::string(300, 't'));
  EXPECT_EQ(std::string(item_->extension), std::string(8, 'e'));
  // Both names and the slash between them.
  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_ERROR, "[mb_util_get_full_path_by_record]path too long : 521\n")));
}

TEST_F(SetAlbumInfoOfALocalFile, LogsTheCover) {
  serve_local_album();

  set_album_info();

  EXPECT_THAT(fake::platform().log, Contains(Logged(PB_LOG_INFO,
                                                    "[pb_item_set_album_info]/cache/501.jpg 501 "
                                                    "/phone/DCIM/first.jpg\n")));
}

TEST_F(SetAlbumInfoOfALocalFile, IsAVideoWhenItsRecordSaysSo) {
  serve_local_album();
  FmMediaRecord record{};
  record.media_type = 2;
  serve_record(record);

  set_album_info();

  EXPECT_EQ(item_->media_type, 2);
}

TEST_F(SetAlbumInfoOfALocalFile, KeepsTheMediaTypeOtherwise) {
  serve_local_album();
  item_->media_type = 7;
  FmMediaRecord record{};
  record.media_type = 1;
  serve_record(record);

  set_album_info();

  EXPECT_EQ(item_->media_type, 7);
}

TEST_F(SetAlbumInfoOfALocalFile, LogsWhenTheRecordCannotBeRead) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *error) {
    *error = kError;
    return FALSE;
  };

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_item_set_album_info]\n fm_svc_mb_get_record_by_index failed "
                              "with err = 77 \n\n")));
}

TEST_F(SetAlbumInfoOfALocalFile, HasNoFileInfoWhenTheRecordCannotBeRead) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    return FALSE;
  };

  set_album_info();

  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->id, 0);
}

TEST_F(SetAlbumInfoOfALocalFile, LogsWhenTheItemCannotBeRead) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *error) {
    *error = kError;
    return FALSE;
  };

  set_album_info();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_item_set_album_info]\n fm_svc_mb_get_item_by_database_index "
                              "failed with err = 77 \n\n")));
}

TEST_F(SetAlbumInfoOfALocalFile, HasNoFileInfoWhenTheItemCannotBeRead) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *) {
    return FALSE;
  };

  set_album_info();

  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->id, 0);
}

TEST_F(SetAlbumInfoOfALocalFile, KeepsTheAlbumWhenTheItemCannotBeRead) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *) {
    return FALSE;
  };

  set_album_info();

  EXPECT_STREQ(item_->name, "Holiday");
}

TEST_F(SetAlbumInfoOfALocalFile, FreesTheListAfterAFailure) {
  serve_local_album();
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    return FALSE;
  };

  set_album_info();

  EXPECT_THAT(fake::calls_of("fm_svc_sync_list_free"), testing::SizeIs(1));
}

TEST_F(SetAlbumInfoEx, StoresTheAlbum) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", G_GINT64_CONSTANT(5000000009),
                            12, 6);

  EXPECT_EQ(item_->album_id, 30);
  EXPECT_STREQ(item_->name, "Holiday");
  EXPECT_EQ(item_->naid, G_GINT64_CONSTANT(5000000009));
  EXPECT_EQ(item_->count, 12);
  EXPECT_EQ(item_->attr, 6);
}

TEST_F(SetAlbumInfoEx, MakesTheItemAnAlbum) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_EQ(item_->is_cluster, 1);
}

TEST_F(SetAlbumInfoEx, TakesTheCoverFile) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_STREQ(item_->thumb_path, "/cover.jpg");
}

TEST_F(SetAlbumInfoEx, HasNoFile) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_EQ(item_->id, -1);
  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->extension, nullptr);
}

TEST_F(SetAlbumInfoEx, CopiesItsTexts) {
  gchar name[] = "Holiday";
  gchar cover[] = "/cover.jpg";
  pb_item_set_album_info_ex(item_.get(), 30, name, cover, 9, 12, 6);

  name[0] = 'X';
  cover[0] = 'X';

  EXPECT_STREQ(item_->name, "Holiday");
  EXPECT_STREQ(item_->thumb_path, "/cover.jpg");
}

TEST_F(SetAlbumInfoEx, AcceptsMissingTexts) {
  pb_item_set_album_info_ex(item_.get(), 30, nullptr, nullptr, 9, 12, 6);

  EXPECT_EQ(item_->name, nullptr);
  EXPECT_EQ(item_->thumb_path, nullptr);
}

TEST_F(SetAlbumInfoEx, ClearsTheDeletedMark) {
  pb_item_set_deleted(item_.get(), TRUE);

  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_FALSE(pb_item_get_deleted(item_.get()));
}

TEST_F(SetAlbumInfoEx, LogsTheAlbum) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", G_GINT64_CONSTANT(5000000009),
                            12, 6);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_item_set_album_info_ex]album_id:30, name:Holiday, "
                                 "count:12, naid=5000000009\n")));
}

TEST_F(SetAlbumInfoEx, AsksNothingOfTheService) {
  pb_item_set_album_info_ex(item_.get(), 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(SetAlbumInfoEx, WarnsAboutNoItem) {
  pb_item_set_album_info_ex(nullptr, 30, "Holiday", "/cover.jpg", 9, 12, 6);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_album_info_ex: assertion 'PB_IS_ITEM(item)' failed"));
}

}  // namespace

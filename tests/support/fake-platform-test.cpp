#include "support/fake-platform.hpp"

#include <debug-log.h>

namespace {

using fake::Logged;
using fake::LoggedLike;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr guint32 kError = 0x1000000;
constexpr guint32 kInfo = 0x4000000;

TEST(Journal, KeepsTheOrderOverAllServices) {
  gint value = 0;

  pm_control(4, 0);
  settings_get_int(35, &value);
  pm_DVFS_control(3);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("pm_control(4, 0)", "settings_get_int(35)", "pm_DVFS_control(3)"));
}

TEST(Journal, QuotesTexts) {
  fexplorer_delete_file_only("/a b.jpg");

  EXPECT_THAT(fake::platform().calls, ElementsAre("fexplorer_delete_file_only(\"/a b.jpg\")"));
}

TEST(Journal, NamesAMissingText) {
  rsrc_open_rsr(nullptr);

  EXPECT_THAT(fake::platform().calls, ElementsAre("rsrc_open_rsr(NULL)"));
}

TEST(Journal, WritesRecordsAndArraysOut) {
  VeskFilter filter{};
  filter.kind = VESK_FILTER_RANGE;
  fake::set_text(filter.text, "1-30");
  fake::set_text(filter.terminator, "$$");
  const gint64 ids[] = {5, -2};

  vesk_svc_content_album_get(7, 0, 0, 1, &filter, nullptr);
  vesk_svc_content_album_remove(7, 2, ids, nullptr);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("vesk_svc_content_album_get(7, 0, 0, {{12, \"1-30\", \"$$\"}})",
                          "vesk_svc_content_album_remove(7, {5, -2})"));
}

TEST(Journal, PicksTheCallsOfOneFunction) {
  pm_control(2, 1);
  pm_DVFS_control(1);
  pm_control(3, 1);

  EXPECT_THAT(fake::calls_of("pm_control"), ElementsAre("pm_control(2, 1)", "pm_control(3, 1)"));
  EXPECT_THAT(fake::calls_of("pm_"), IsEmpty());
}

TEST(Journal, IsEmptyOnceTaken) {
  pm_control(2, 1);

  EXPECT_THAT(fake::take_calls(), SizeIs(1));
  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST(Answers, AreThoseThatTheTestGave) {
  fake::platform().pm_control = [](int state, int) { return state == 4 ? -1 : 0; };

  EXPECT_EQ(pm_control(4, 0), -1);
  EXPECT_EQ(pm_control(2, 1), 0);
}

TEST(Answers, CanFailFromTheSecondCallOn) {
  fake::platform().vesk_svc_core_deregister_app = [calls = 0](guint32) mutable {
    return ++calls < 2 ? 1 : -5;
  };

  EXPECT_EQ(vesk_svc_core_deregister_app(1), 1);
  EXPECT_EQ(vesk_svc_core_deregister_app(1), -5);
}

/// Both tests change the same answer and look for the default first.
TEST(Answers, AreBackAtTheirDefaultsInTheNextTest1) {
  ASSERT_EQ(pm_control(2, 1), 0);
  fake::platform().pm_control = [](int, int) { return -1; };
}

TEST(Answers, AreBackAtTheirDefaultsInTheNextTest2) {
  ASSERT_THAT(fake::platform().calls, IsEmpty());
  ASSERT_EQ(pm_control(2, 1), 0);
  fake::platform().pm_control = [](int, int) { return -1; };
}

TEST(DebugLog, RecordsLevelModuleFileLineAndText) {
  const int result = _debug_message(12, "util/pb-util", 0x53000000, kError, "[%s]%d\n", "pb_do", 3);

  EXPECT_EQ(result, 9);
  EXPECT_THAT(fake::platform().log,
              ElementsAre(fake::LogLine{kError, 0x53000000, "util/pb-util", 12, "[pb_do]3\n"}));
}

TEST(DebugLog, MatchesALineByLevelAndText) {
  _debug_message(1, "m", 0, kInfo, "%s", "[f]100%\n");

  EXPECT_THAT(fake::platform().log, Contains(Logged(kInfo, "[f]100%\n")));
  EXPECT_THAT(fake::platform().log, Not(Contains(Logged(kError, "[f]100%\n"))));
  EXPECT_THAT(fake::platform().log, Not(Contains(Logged(kInfo, "[f]100%"))));
  EXPECT_THAT(fake::platform().log, Contains(LoggedLike(kInfo, StartsWith("[f]"))));
}

TEST(DebugLog, ShowsALineAsText) {
  const fake::LogLine line{kError, 0, "util/pb-util", 12, "[f]no\n"};

  EXPECT_EQ(testing::PrintToString(line), "error \"[f]no\\n\" at util/pb-util:12");
}

TEST(DebugLog, GivesTheResultThatTheTestWants) {
  fake::platform()._debug_message = [](const fake::LogLine &) { return 77; };

  EXPECT_EQ(_debug_message(1, "m", 0, kInfo, "x"), 77);
}

TEST(PhoneStatus, ReadsBackWhatWasSet) {
  GConfValue *value = gconf_value_new(GCONF_VALUE_INT);
  gconf_value_set_int(value, 41);

  EXPECT_FALSE(phonestatus_get("/key", value));
  EXPECT_TRUE(phonestatus_set("/key", value));
  gconf_value_set_int(value, 0);
  EXPECT_TRUE(phonestatus_get("/key", value));
  EXPECT_EQ(gconf_value_get_int(value), 41);
  gconf_value_free(value);
}

TEST(FileExplorer, CountsConnections) {
  fexplorer_initialize(nullptr);
  fexplorer_initialize(nullptr);
  fexplorer_finalize();

  EXPECT_EQ(fake::platform().fexplorer_connections, 1);
}

TEST(FileExplorer, CountsNoConnectionThatFailed) {
  fake::platform().fexplorer_initialize = [](gint *) { return FALSE; };

  fexplorer_initialize(nullptr);

  EXPECT_EQ(fake::platform().fexplorer_connections, 0);
}

TEST(ServeFiles, GivesTheRowsOfAPageInclusively) {
  fake::serve_files({fake::make_item(3, "/a/x.jpg"), fake::make_item(5, "/a/y.jpg"),
                     fake::make_item(9, "/b/z.jpg")});
  gint count = 0;
  GList *list = nullptr;

  fm_svc_mb_get_all_sub_file_count("/", 2, 3, &count, nullptr);
  fm_svc_mb_get_list("/", 2, 0, 3, 0, &list, 1, 99, nullptr);

  EXPECT_EQ(count, 3);
  ASSERT_EQ(g_list_length(list), 2u);
  EXPECT_EQ(static_cast<MbItem *>(list->data)->id, 5);
  EXPECT_STREQ(static_cast<MbItem *>(list->next->data)->path, "/b/z.jpg");
  fm_svc_mb_glist_free(&list, TRUE);
  EXPECT_EQ(list, nullptr);
}

TEST(ServeFiles, GivesTheRecordOfAnId) {
  MbItem file = fake::make_item(5, "/a/y.jpg");
  file.nfid = 70;
  fake::serve_files({file});
  FmMediaRecord record{};

  ASSERT_TRUE(fm_svc_mb_get_record_by_index(5, &record, nullptr));

  EXPECT_STREQ(record.folder, "/a");
  EXPECT_STREQ(record.name, "y.jpg");
  EXPECT_EQ(gint64{record.nfid}, 70);
}

TEST(ServeFiles, GivesAClearedRecordOfAnUnknownId) {
  fake::serve_files({fake::make_item(5, "/a/y.jpg")});
  FmMediaRecord record;
  memset(&record, 0xff, sizeof record);

  EXPECT_TRUE(fm_svc_mb_get_record_by_index(6, &record, nullptr));
  EXPECT_EQ(record.id, 0);
  EXPECT_EQ(record.name[0], '\0');
}

TEST(FileList, IsFilledAndFreed) {
  FmFileList list{};
  fake::fill_file_list(&list, {4, 6}, {FM_FILE_LOCAL, FM_FILE_WEB_ONLY});

  ASSERT_EQ(list.count, 2);
  EXPECT_EQ(list.ids[1], 6);
  EXPECT_EQ(list.types[1], FM_FILE_WEB_ONLY);
  fm_svc_sync_list_free(&list);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.ids, nullptr);
}

TEST(Resources, GiveStringsThatNameTheirNumber) {
  const gint handle = rsrc_open_rsr("/strings");

  EXPECT_STREQ(rsrc_get_string(handle, 17), "string 17");
  EXPECT_STREQ(rsrc_get_system_string(10239), "system string 10239");
  EXPECT_EQ(rsrc_get_string(-1, 17), nullptr);
}

TEST(Resources, GiveBitmapsThatKnowTheirNumber) {
  GdkPixbuf *bitmap = rsrc_get_image(rsrc_open_rbm("/bitmaps"), 20);

  EXPECT_EQ(fake::image_id(bitmap), 20);
  EXPECT_EQ(rsrc_get_image(-1, 20), nullptr);
  g_object_unref(bitmap);
}

TEST(Headers, CountWhatIsNotFreed) {
  MMAttrs *attributes = fake::make_attributes(2, 1, {1, 2, 3, 4, 5, 6});
  WinkExifInfo *info = fake::make_exif_info(10, 20, 6);

  EXPECT_EQ(fake::live_header_objects(), 2);
  MMAttrsFree(attributes);
  wink_free_exifinfo(info);
  EXPECT_EQ(fake::live_header_objects(), 0);
}

gint note_message(const gchar *message, const VeskNotiField *fields, gint n_fields) {
  fake::platform().calls.push_back(message + std::string(" ") + fields[0].value.text);
  return n_fields;
}

TEST(Notify, ReachesTheRegisteredCallback) {
  gint error = -1;
  fm_svc_vesk_registration(note_message, &error);
  fake::take_calls();
  VeskNotiField field{};
  field.type = VESK_NOTI_TEXT;
  field.value.text = "AA==";

  EXPECT_EQ(fake::notify(VESK_MESSAGE_CONTENT, {field}), 1);

  EXPECT_THAT(fake::platform().calls, ElementsAre("Media.Manager.Response.Async AA=="));
}

TEST(Notify, ReachesNobodyAfterTheRemoval) {
  gint error = -1;
  fm_svc_vesk_registration(note_message, &error);
  fm_svc_vesk_unregistration_callback(note_message, &error);

  EXPECT_EQ(fake::notify(VESK_MESSAGE_CONTENT, {}), 0);
}

}  // namespace

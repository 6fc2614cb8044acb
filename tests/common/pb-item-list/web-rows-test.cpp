#include <cstring>

#include "fixture.hpp"
#include "support/temp-dir.hpp"

namespace {

using item_list_test::fill;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kName = "pb_item_list_insert_data";

void serve_ids(const std::vector<gint64> &ids) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
      [ids](gint64, FmFileList *list, gint *) {
        fake::fill_file_list(list, ids, std::vector<gint32>(ids.size(), FM_FILE_WEB_ONLY));
        return TRUE;
      };
}

void serve_web_file(const std::string &thumbnail, gint storage_kind = 0) {
  fake::platform().fm_svc_vesk_get_vesk_file = [thumbnail, storage_kind](
                                                   gint64 nfid, FmVeskFileRecord *record, gint *) {
    record->nfid = nfid;
    record->database_index = 3;
    record->storage_kind = storage_kind;
    fake::set_text(record->name, "party.jpg");
    fake::set_text(record->thumbnail_path, thumbnail);
    fake::set_text(record->bytes_url, "http://server/9");
    return TRUE;
  };
}

void accept_every_header() {
  fake::platform().wink_parse_from_file = [](const gchar *, gint *width, gint *height) {
    *width = 30;
    *height = 20;
    return TRUE;
  };
}

/// The mark that lies on archived files: white and opaque.
void serve_mark(int width, int height) {
  fake::platform().rsrc_get_image = [width, height](gint, gint) {
    return support::solid_pixbuf(width, height, support::kWhite, true).release();
  };
}

ListPtr built_list() {
  serve_ids({9});
  ListPtr list = new_list();
  pb_item_list_build(list.get(), 4, 0);
  fake::take_calls();
  fake::take_log();
  return list;
}

using InsertWebOnlyFile = ItemListTest;

TEST_F(InsertWebOnlyFile, LogsTheRecord) {
  serve_web_file("/web/9.jpg");
  const ListPtr list = built_list();

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName), ElementsAre("pb_item_list(4): (0,0), row=0\n",
                                         "\nITEMM NFID = 9 \nITEM ID = 3 \nrecord.name= party.jpg "
                                         "\nrecord.thumb_path = /web/9.jpg \nrecord.bytes_url = "
                                         "http://server/9\n\n"));
}

TEST_F(InsertWebOnlyFile, LogsNothingBehindAFieldWithoutItsEnd) {
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *record, gint *) {
    std::memset(record->name, 'n', sizeof record->name);
    std::memset(record->thumbnail_path, 't', sizeof record->thumbnail_path);
    std::memset(record->bytes_url, 'u', sizeof record->bytes_url);
    return TRUE;
  };
  const ListPtr list = built_list();

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName),
              Contains("\nITEMM NFID = 0 \nITEM ID = 0 \nrecord.name= " + std::string(256, 'n') +
                       " \nrecord.thumb_path = " + std::string(256, 't') +
                       " \nrecord.bytes_url = " + std::string(256, 'u') + "\n\n"));
}

TEST_F(InsertWebOnlyFile, MakesTheItemFromTheWebRecord) {
  serve_web_file("/web/9.jpg");
  const ListPtr list = built_list();

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->nfid, 9);
  EXPECT_STREQ(row.item->filename, "party.jpg");
  EXPECT_STREQ(row.item->thumb_path, "/web/9.jpg");
  EXPECT_STREQ(row.item->aux_text, "http://server/9");
  EXPECT_EQ(row.index, 0);
  EXPECT_FALSE(row.has_title);
}

TEST_F(InsertWebOnlyFile, ScalesTheThumbnailToASquare) {
  const support::TempDir dir;
  serve_web_file(support::save_picture(dir.path("9.png"), 30, 20, support::kBlue));
  accept_every_header();
  const ListPtr list = built_list();

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.pixbuf);
  EXPECT_EQ(gdk_pixbuf_get_width(row.pixbuf.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(row.pixbuf.get()), 148);
  EXPECT_EQ(support::pixel_at(row.pixbuf.get(), 74, 74), support::kBlue);
}

TEST_F(InsertWebOnlyFile, DoesNotDecodeWhatTheHeaderReaderRefuses) {
  const support::TempDir dir;
  serve_web_file(support::save_picture(dir.path("9.png"), 30, 20));
  fake::platform().wink_parse_from_file = [](const gchar *, gint *, gint *) { return FALSE; };
  const ListPtr list = built_list();

  EXPECT_TRUE(item_list_test::is_placeholder(read_row(list, 0).pixbuf));
}

TEST_F(InsertWebOnlyFile, ShowsThePlaceholderForABrokenThumbnail) {
  const support::TempDir dir;
  serve_web_file(dir.write("9.png", "no picture"));
  accept_every_header();
  const ListPtr list = built_list();

  EXPECT_TRUE(item_list_test::is_placeholder(read_row(list, 0).pixbuf));
}

TEST_F(InsertWebOnlyFile, ShowsThePlaceholderWithoutAThumbnail) {
  serve_web_file("");
  const ListPtr list = built_list();

  EXPECT_TRUE(item_list_test::is_placeholder(read_row(list, 0).pixbuf));

  EXPECT_THAT(fake::calls_of("wink_parse_from_file"), IsEmpty());
}

TEST_F(InsertWebOnlyFile, MarksAnArchivedFileInTheMiddle) {
  const support::TempDir dir;
  serve_web_file(support::save_picture(dir.path("9.png"), 30, 20, support::kBlue), 2);
  accept_every_header();
  serve_mark(20, 10);
  const ListPtr list = built_list();

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.pixbuf);
  const GdkPixbuf *pixbuf = row.pixbuf.get();
  EXPECT_TRUE(gdk_pixbuf_get_has_alpha(pixbuf));
  EXPECT_EQ(support::pixel_at(pixbuf, 64, 69), support::kWhite);
  EXPECT_EQ(support::pixel_at(pixbuf, 83, 78), support::kWhite);
  EXPECT_EQ(support::pixel_at(pixbuf, 63, 69), support::kBlue);
  EXPECT_EQ(support::pixel_at(pixbuf, 84, 78), support::kBlue);
  EXPECT_EQ(support::pixel_at(pixbuf, 64, 68), support::kBlue);
  EXPECT_EQ(support::pixel_at(pixbuf, 83, 79), support::kBlue);
}

TEST_F(InsertWebOnlyFile, ClipsAMarkThatIsTooLarge) {
  const support::TempDir dir;
  serve_web_file(support::save_picture(dir.path("9.png"), 30, 20, support::kBlue), 2);
  accept_every_header();
  serve_mark(200, 300);
  const ListPtr list = built_list();

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.pixbuf);
  EXPECT_EQ(support::pixel_at(row.pixbuf.get(), 0, 0), support::kWhite);
  EXPECT_EQ(support::pixel_at(row.pixbuf.get(), 147, 147), support::kWhite);
}

TEST_F(InsertWebOnlyFile, DoesNotMarkOtherKindsOfStorage) {
  const support::TempDir dir;
  serve_web_file(support::save_picture(dir.path("9.png"), 30, 20, support::kBlue), 1);
  accept_every_header();
  serve_mark(20, 10);
  const ListPtr list = built_list();

  EXPECT_EQ(support::pixel_at(read_row(list, 0).pixbuf.get(), 74, 74), support::kBlue);
}

TEST_F(InsertWebOnlyFile, LeavesThePlaceholderUnmarked) {
  serve_web_file("", 2);
  const ListPtr list = built_list();

  EXPECT_EQ(read_row(list, 0).pixbuf.get(), private_of(list).default_pixbuf.get());
}

TEST_F(InsertWebOnlyFile, LeavesTheRowWhenTheFileCannotBeRead) {
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *, gint *) {
    return FALSE;
  };
  const ListPtr list = built_list();

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);
}

TEST_F(InsertWebOnlyFile, IgnoresARowBehindTheLastFile) {
  const ListPtr list = built_list();

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(InsertWebOnlyFile, FetchesFilesThatAreNotHeld) {
  serve_ids({8, 9});
  serve_web_file("/web/9.jpg");
  const ListPtr list = new_list();
  list->category = 4;

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName), Contains("server only list file count = 2\n"));
  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_vesk_file"),
              ElementsAre("fm_svc_vesk_get_vesk_file(9)"));
}

TEST_F(InsertWebOnlyFile, StopsWhenThereAreNone) {
  const ListPtr list = new_list();
  list->category = 4;

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName), ElementsAre("pb_item_list(4): (0,1), row=1\n"));
}

TEST_F(InsertWebOnlyFile, LogsThatItCannotFetchThem) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete = [](gint64, FmFileList *,
                                                                              gint *error) {
    *error = 6;
    return FALSE;
  };
  const ListPtr list = new_list();
  list->category = 4;

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName),
              Contains("  [MB_service] : fm_svc_vesk_get_server_only_vesk_files_without_delete "
                       "failed err = 6  \n"));
}

}  // namespace

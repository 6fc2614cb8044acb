#include <climits>
#include <cstdlib>
#include <cstring>
#include <set>

#include "fixture.hpp"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// The allocation of exactly this many bytes fails, once; 0 for none.
std::size_t failing_bytes = 0;

}  // namespace

extern "C" void *__real_calloc(std::size_t count, std::size_t size);
extern "C" __attribute__((visibility("default"))) void *__wrap_calloc(std::size_t count,
                                                                      std::size_t size) {
  if (failing_bytes != 0 && count * size == failing_bytes) {
    failing_bytes = 0;
    return nullptr;
  }
  return __real_calloc(count, size);
}

namespace {

using item_list_test::has_handlers;
using item_list_test::is_connected;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::private_of;
using item_list_test::serve;
using item_list_test::store_rows;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const GCallback kShare = G_CALLBACK(pb_item_list_share_insert_data);
constexpr const char *kName = "pb_item_get_share_list";

ListPtr ask(gint cate_type, gint album_id = 0, gint sorted = 0) {
  return ListPtr::adopt(pb_item_get_share_list(cate_type, album_id, sorted));
}

void serve_albums(const std::vector<FmAlbumRecord> &albums) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [albums](gint, guint32, GList **list, gint *) {
    *list = fake::record_list(albums);
    return TRUE;
  };
}

void serve_web_copies(const std::set<gint> &ids) {
  fake::platform().fm_svc_mb_get_record_by_index = [ids](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    if (ids.contains(id)) record->nfid = 1000 + id;
    return TRUE;
  };
}

template <typename Record>
std::vector<gint> ids_of(const ListPtr &list, gint32 Record::*id) {
  std::vector<gint> ids;
  for (const Record *record : pb::each<Record>(private_of(list).records.get())) {
    ids.push_back(record->*id);
  }
  return ids;
}

using ShareQuery = ItemListTest;

TEST_F(ShareQuery, LogsItsArguments) {
  const ListPtr list = ask(2, 0, 1);

  EXPECT_EQ(log_of(kName).at(0), "cate_type=2, sorted=1\n");
}

TEST_F(ShareQuery, StoresItsArguments) {
  const ListPtr list = ask(2, 0, 1);

  EXPECT_EQ(list->category, 2);
  EXPECT_EQ(private_of(list).sorted, 1);
}

using ShareAlbums = ItemListTest;

TEST_F(ShareAlbums, AsksForAllAlbumsInOrderTwo) {
  const ListPtr list = ask(0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 0)"));
}

TEST_F(ShareAlbums, HidesWebAlbumsFromTheSignedOut) {
  mb_util_set_vesk_login_present(0);

  const ListPtr list = ask(0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 65536)"));
}

TEST_F(ShareAlbums, HoldsTheAlbumsThatHaveAWebAlbum) {
  serve_albums({fake::make_album(1, "none", 0), fake::make_album(2, "web", 5),
                fake::make_album(3, "negative", -1), fake::make_album(4, "web", 6)});

  const ListPtr list = ask(0);

  EXPECT_THAT(ids_of(list, &FmAlbumRecord::album_id), ElementsAre(2, 4));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 2);
  EXPECT_EQ(store_rows(list), 2);
}

TEST_F(ShareAlbums, ComparesAll64BitsOfTheWebId) {
  serve_albums({fake::make_album(1, "low word negative", G_GINT64_CONSTANT(0x80000000)),
                fake::make_album(2, "low word zero", G_GINT64_CONSTANT(0x100000000)),
                fake::make_album(3, "high word negative", G_GINT64_CONSTANT(-0x100000000) + 1),
                fake::make_album(4, "smallest", 1)});

  const ListPtr list = ask(0);

  EXPECT_THAT(ids_of(list, &FmAlbumRecord::album_id), ElementsAre(1, 2, 4));
}

TEST_F(ShareAlbums, LogsEachAlbumAndTheirNumber) {
  serve_albums({fake::make_album(1, "local", 0), fake::make_album(2, "web", 5)});

  const ListPtr list = ask(0);

  EXPECT_THAT(log_of(kName),
              ElementsAre("cate_type=0, sorted=0\n", "album name = local, naid = 0\n",
                          "album name = web, naid = 5\n", "album list record count = 1\n"));
}

TEST_F(ShareAlbums, LogsNothingBehindANameWithoutItsEnd) {
  FmAlbumRecord album = fake::make_album(2, "", 5);
  std::memset(album.name, 'n', sizeof album.name);
  fake::set_text(album.cover_path, "/cover.jpg");
  serve_albums({album});

  const ListPtr list = ask(0);

  EXPECT_THAT(log_of(kName), Contains("album name = " + std::string(303, 'n') + ", naid = 5\n"));
}

TEST_F(ShareAlbums, ConnectsItsHandlers) {
  serve_albums({fake::make_album(2, "web", 5)});

  const ListPtr list = ask(0);

  EXPECT_TRUE(is_connected(list, "fill-cache", kShare));
  g_signal_emit_by_name(list.get(), "initialize-cache", 0);
  EXPECT_EQ(fake::platform().fexplorer_connections, 1);
  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

TEST_F(ShareAlbums, IsBareWhenNoAlbumHasAWebAlbum) {
  serve_albums({fake::make_album(1, "local", 0)});

  const ListPtr list = ask(0);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("album list record count = 0\n"));
}

TEST_F(ShareAlbums, LogsAFailure) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };

  const ListPtr list = ask(0);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("fm_svc_mb_get_all_albums fail!\n"));
}

TEST_F(ShareAlbums, LogsThatThereAreNone) {
  const ListPtr list = ask(0);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("record_list=NULL\n"));
}

TEST_F(ShareAlbums, IsEmptyWhenAnElementHasNoAlbum) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **list, gint *) {
    *list = fake::record_list<FmAlbumRecord>({fake::make_album(2, "web", 5)});
    *list = g_list_append(*list, nullptr);
    return TRUE;
  };

  const ListPtr list = ask(0);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("album_record=NULL\n"));
}

using ShareAlbumFiles = ItemListTest;

TEST_F(ShareAlbumFiles, LogsItsSteps) {
  item_list_test::serve_album({5, 6, 7});
  serve_web_copies({5, 7});
  pb_app_common_set_album_filter_sort_type(1, 2);
  fake::take_log();

  const ListPtr list = ask(3, 77);

  EXPECT_THAT(log_of(kName),
              ElementsAre("cate_type=3, sorted=0\n", "album_id = 77\n", "sort_type=1, filter=2 \n",
                          "album_filter \n", "ori_file_list count = 3\n",
                          "album store share list file count = 2\n", "j = 2\n"));
}

TEST_F(ShareAlbumFiles, IsBareForAlbumZero) {
  const ListPtr list = ask(3, 0);

  ASSERT_TRUE(list);
  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_album"), IsEmpty());
  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"), IsEmpty());
}

TEST_F(ShareAlbumFiles, StoresTheAlbumAndTheLowWordOfItsWebAlbum) {
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = G_GINT64_CONSTANT(0x200000003);
    return TRUE;
  };

  const ListPtr list = ask(3, 77);

  EXPECT_EQ(private_of(list).album_id, 77);
  EXPECT_EQ(private_of(list).album_web_id, 3);
}

TEST_F(ShareAlbumFiles, StoresNoWebAlbumWhenTheAlbumCannotBeRead) {
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = 3;
    return FALSE;
  };

  const ListPtr list = ask(3, 77);

  EXPECT_EQ(private_of(list).album_web_id, 0);
}

TEST_F(ShareAlbumFiles, AsksInTheOrderAndFilterOfTheSettings) {
  pb_app_common_set_album_filter_sort_type(1, 2);

  const ListPtr list = ask(3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 1, 2)"));
}

TEST_F(ShareAlbumFiles, TakesFilterMinusOneAsThree) {
  pb_app_common_set_album_filter_sort_type(1, -1);

  const ListPtr list = ask(3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 1, 3)"));
  EXPECT_THAT(log_of(kName), Contains("-1 == album_filter \n"));
  EXPECT_THAT(log_of(kName), Contains("sort_type=1, filter=-1 \n"));
}

TEST_F(ShareAlbumFiles, HoldsLocalFilesWithAWebCopyInOrder) {
  item_list_test::serve_album({5, 6, 7});
  serve_web_copies({5, 7});

  const ListPtr list = ask(3, 77);

  const auto &files = private_of(list).files;
  ASSERT_EQ(files.count(), 2);
  EXPECT_EQ(files.id(0), 5);
  EXPECT_EQ(files.id(1), 7);
  EXPECT_EQ(files.type(0), FM_FILE_LOCAL);
  EXPECT_EQ(pb_item_list_get_length(list.get()), 2);
  EXPECT_EQ(store_rows(list), 2);
}

TEST_F(ShareAlbumFiles, ReadsALocalFileByTheLowWordOfItsId) {
  item_list_test::serve_album({G_GINT64_CONSTANT(0x300000005)});
  serve_web_copies({5});

  const ListPtr list = ask(3, 77);

  EXPECT_EQ(private_of(list).files.id(0), G_GINT64_CONSTANT(0x300000005));
}

TEST_F(ShareAlbumFiles, HoldsWebFilesWithAPositiveId) {
  item_list_test::serve_album({G_GINT64_CONSTANT(0x80000000), 0, -2, 9},
                              std::vector<gint32>(4, FM_FILE_WEB_ONLY));

  const ListPtr list = ask(3, 77);

  const auto &files = private_of(list).files;
  ASSERT_EQ(files.count(), 2);
  EXPECT_EQ(files.id(0), G_GINT64_CONSTANT(0x80000000));
  EXPECT_EQ(files.id(1), 9);
  EXPECT_EQ(files.type(1), FM_FILE_WEB_ONLY);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"), IsEmpty());
}

TEST_F(ShareAlbumFiles, LeavesOutFilesThatCannotBeRead) {
  item_list_test::serve_album({5, 6});
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    record->nfid = 9;
    return id == 6 ? TRUE : FALSE;
  };

  const ListPtr list = ask(3, 77);

  ASSERT_EQ(private_of(list).files.count(), 1);
  EXPECT_EQ(private_of(list).files.id(0), 6);
}

TEST_F(ShareAlbumFiles, ConnectsItsHandlers) {
  item_list_test::serve_album({5});
  serve_web_copies({5});

  const ListPtr list = ask(3, 77);

  EXPECT_TRUE(is_connected(list, "fill-cache", kShare));
  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

TEST_F(ShareAlbumFiles, IsBareWhenNothingCanBeShared) {
  item_list_test::serve_album({5});
  serve_web_copies({});

  const ListPtr list = ask(3, 77);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("album store share list file count = 0\n"));
}

TEST_F(ShareAlbumFiles, IsBareForAnEmptyAlbum) {
  const ListPtr list = ask(3, 77);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("ori_file_list count = 0\n"));
}

TEST_F(ShareAlbumFiles, LogsAFailure) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *, gint *) {
    return FALSE;
  };

  const ListPtr list = ask(3, 77);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("fm_svc_mb_album_get_all_files fail\n"));
  EXPECT_THAT(log_of(kName), Not(Contains(testing::StartsWith("ori_file_list"))));
}

TEST_F(ShareAlbumFiles, FreesTheFilesOfTheService) {
  item_list_test::serve_album({5});
  serve_web_copies({5});

  const ListPtr list = ask(3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_sync_list_free"), SizeIs(1));
}

/// The query for an album of 111 shareable files while an allocation fails. The half-made list
/// stays behind.
PbItemList *ask_without_memory(std::size_t bytes) {
  std::vector<gint64> ids;
  for (gint64 id = 1; id <= 111; ++id) ids.push_back(id);
  item_list_test::serve_album(ids, std::vector<gint32>(ids.size(), FM_FILE_WEB_ONLY));
  // The service's list is made by calloc() as well.
  fake::platform().fm_svc_mb_album_get_all_files_ex =
      [serve = fake::platform().fm_svc_mb_album_get_all_files_ex, bytes](
          gint album_id, gint sort, gint filter, FmFileList *list, gint *error) {
        const gboolean result = serve(album_id, sort, filter, list, error);
        failing_bytes = bytes;
        return result;
      };
#if defined(__SANITIZE_ADDRESS__)
  const __lsan::ScopedDisabler half_made_list;
#endif
  return pb_item_get_share_list(3, 77, 0);
}

TEST_F(ShareAlbumFiles, GivesNothingWithoutMemoryForTheIds) {
  EXPECT_EQ(ask_without_memory(std::size_t{111} * 8), nullptr);

  EXPECT_EQ(failing_bytes, 0U);
  EXPECT_THAT(log_of(kName), Contains(": file_list.ids malloc ERROR\n"));
}

TEST_F(ShareAlbumFiles, GivesNothingWithoutMemoryForTheTypes) {
  EXPECT_EQ(ask_without_memory(std::size_t{111} * 4), nullptr);

  EXPECT_EQ(failing_bytes, 0U);
  EXPECT_THAT(log_of(kName), Contains(": file_list.types malloc ERROR\n"));
}

TEST_F(ShareAlbumFiles, LeavesTheHalfMadeListWithoutMemory) {
  const gint before = pb_item_list_count;

  ask_without_memory(std::size_t{111} * 8);

  EXPECT_EQ(pb_item_list_count, before + 1);
}

using ShareFiles = ItemListTest;

TEST_F(ShareFiles, HoldsTheFilesWithAWebCopy) {
  serve(7);
  serve_web_copies({1, 4, 7});

  const ListPtr list = ask(2);

  EXPECT_THAT(ids_of(list, &MbItem::id), ElementsAre(1, 4, 7));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
  EXPECT_EQ(store_rows(list), 3);
}

TEST_F(ShareFiles, LogsItsSteps) {
  serve(7);
  serve_web_copies({1, 4, 7});

  const ListPtr list = ask(2);

  EXPECT_THAT(log_of(kName), ElementsAre("cate_type=2, sorted=0\n", "record_list ori len = 7\n",
                                         "All/Camera share list record count=3\n"));
}

TEST_F(ShareFiles, ConnectsItsHandlers) {
  serve(7);
  serve_web_copies({1});

  const ListPtr list = ask(2);

  EXPECT_TRUE(is_connected(list, "fill-cache", kShare));
  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

struct ShareFilter {
  gint cate_type;
  gint sorted;
  gint64 setting;
  const char *used;
};

class ShareFilesFilter : public ItemListTest, public testing::WithParamInterface<ShareFilter> {};

TEST_P(ShareFilesFilter, IsPassedWithOrderThree) {
  serve(7);
  pb_app_common_set_filter_sort_type(5, GetParam().setting);
  const std::string used = GetParam().used;

  const ListPtr list = ask(GetParam().cate_type, 0, GetParam().sorted);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, " + used + ")"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, " + used + ", 0, 0, 7)"));
}

INSTANTIATE_TEST_SUITE_P(Filters, ShareFilesFilter,
                         testing::Values(ShareFilter{1, 0, 2, "19"}, ShareFilter{2, 0, 2, "3"},
                                         ShareFilter{5, 0, 2, "3"}, ShareFilter{-1, 0, 2, "3"},
                                         ShareFilter{1, 1, 2, "2"}, ShareFilter{2, 1, -1, "3"},
                                         ShareFilter{1, 1, -2, "-2"}, ShareFilter{2, -1, 2, "2"}));

TEST_F(ShareFiles, LogsTheSettingsWhenSorted) {
  pb_app_common_set_filter_sort_type(5, -2);

  const ListPtr list = ask(2, 0, 1);

  EXPECT_THAT(log_of(kName), Contains("sort_type=5, filter=-2\n"));
}

TEST_F(ShareFiles, IsBareWithoutFiles) {
  const ListPtr list = ask(2);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("record_list=NULL\n"));
}

TEST_F(ShareFiles, IsBareWhenNothingCanBeShared) {
  serve(7);
  serve_web_copies({});

  const ListPtr list = ask(2);

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(log_of(kName), Contains("All/Camera share list record count=0\n"));
}

TEST_F(ShareFiles, ReadsAFailingRecordAgain) {
  serve(3);
  static int failures;
  failures = 2;
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record,
                                                      gint *error) -> gboolean {
    if (id == 2 && failures > 0) {
      --failures;
      *error = 8;
      return FALSE;
    }
    record->nfid = 5;
    return TRUE;
  };

  const ListPtr list = ask(2);

  EXPECT_THAT(ids_of(list, &MbItem::id), ElementsAre(1, 2, 3));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"),
              ElementsAre("fm_svc_mb_get_record_by_index(1)", "fm_svc_mb_get_record_by_index(2)",
                          "fm_svc_mb_get_record_by_index(2)", "fm_svc_mb_get_record_by_index(2)",
                          "fm_svc_mb_get_record_by_index(3)"));
}

TEST_F(ShareFiles, LogsAFailingRecordEachTime) {
  serve(1);
  static int failures;
  failures = 2;
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *error) {
    *error = 8;
    return failures-- > 0 ? FALSE : TRUE;
  };

  const ListPtr list = ask(2);

  EXPECT_EQ(std::ranges::count(log_of(kName),
                               "\n fm_svc_mb_get_record_by_index failed with err = 8 \n\n"),
            2);
}

TEST_F(ShareFiles, TestsTheSignedLowWordOfTheWebId) {
  serve(2);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    record->nfid = id == 1 ? G_GINT64_CONSTANT(0x100000000) : G_GINT64_CONSTANT(0x100000001);
    return TRUE;
  };

  const ListPtr list = ask(2);

  EXPECT_THAT(ids_of(list, &MbItem::id), ElementsAre(2));
}

}  // namespace

/// The mirror of the web albums.
#include "media-browser/mirror.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "library.hpp"
#include "media-browser/index.hpp"

namespace {

using namespace phone::media;
using test::Library;
using testing::ElementsAre;
using testing::IsEmpty;

class Mirror : public support::GlibTest {
 protected:
  void SetUp() override {
    library_.add("x/a.jpg");
    library_.start();
  }
  static const UserData &data() { return Index::current()->user_data(); }
  static FmAlbumRecord web_album(gint64 naid, const char *name) {
    FmAlbumRecord record{};
    record.naid = naid;
    record.kind = mirror::kWebAlbum;
    g_strlcpy(record.name, name, sizeof record.name);
    record.web_file_count = 12;
    return record;
  }
  static std::vector<gint64> server_only(gint64 album = -1) {
    FmFileList list{};
    EXPECT_TRUE(fm_svc_vesk_get_server_only_vesk_files_without_delete(album, &list, nullptr));
    for (gint at = 0; at < list.count; ++at) EXPECT_EQ(list.types[at], FM_FILE_WEB_ONLY);
    const std::vector<gint64> ids(list.ids, list.ids + list.count);
    fm_svc_sync_list_free(&list);
    return ids;
  }

  Library library_;
};

TEST_F(Mirror, ListsAWebAlbumBesideTheFolders) {
  const FmAlbumRecord album = web_album(0x700000001, "Web");

  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));
  gint local = 0;
  gint all = 0;
  fm_svc_mb_get_albums_count(&local, 0, nullptr);
  fm_svc_mb_get_albums_count(&all, -1, nullptr);

  EXPECT_EQ(local, 1);
  EXPECT_EQ(all, 2);
  EXPECT_THAT(Library::albums(), ElementsAre("x"));
  EXPECT_NE(Library::album_id("Web"), 0);
}

TEST_F(Mirror, FindsAWebAlbumByItsWebId) {
  const FmAlbumRecord album = web_album(0x700000001, "Web");
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));
  gint id = 0;
  FmAlbumRecord found;

  ASSERT_TRUE(fm_svc_mb_get_album_id_by_naid(0x700000001, &id, nullptr));
  ASSERT_TRUE(fm_svc_mb_get_album(id, &found, nullptr));

  EXPECT_EQ(found.naid, 0x700000001);
  EXPECT_EQ(found.kind, mirror::kWebAlbum);
  EXPECT_STREQ(found.name, "Web");
  EXPECT_EQ(found.web_file_count, 12);
}

TEST_F(Mirror, FailsForAWebIdThatIsNotMirrored) {
  gint id = 7;
  gint error = 0;

  EXPECT_FALSE(fm_svc_mb_get_album_id_by_naid(99, &id, &error));

  EXPECT_EQ(id, 0);
  EXPECT_NE(error, 0);
}

TEST_F(Mirror, ReplacesAnAlbumOfTheSameWebIdAndKeepsItsLocalId) {
  const FmAlbumRecord first = web_album(5, "First");
  const FmAlbumRecord second = web_album(5, "Second");
  gint before = 0;
  gint after = 0;
  ASSERT_TRUE(fm_svc_vesk_update_folder(&first, nullptr));
  fm_svc_mb_get_album_id_by_naid(5, &before, nullptr);

  ASSERT_TRUE(fm_svc_vesk_update_folder(&second, nullptr));
  fm_svc_mb_get_album_id_by_naid(5, &after, nullptr);

  EXPECT_EQ(before, after);
  EXPECT_EQ(Library::album_id("First"), 0);
  EXPECT_EQ(Library::album_id("Second"), after);
}

TEST_F(Mirror, RefusesAFolderWithoutAWebId) {
  const FmAlbumRecord album = web_album(0, "None");
  gint error = 0;

  EXPECT_FALSE(fm_svc_vesk_update_folder(&album, &error));
  EXPECT_NE(error, 0);
}

TEST_F(Mirror, StoresACover) {
  const FmAlbumRecord album = web_album(5, "Web");
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));
  FmAlbumRecord found;

  ASSERT_TRUE(fm_svc_mb_album_set_thumb_path_by_naid(5, "/cache/cover.jpg", nullptr));
  ASSERT_TRUE(fm_svc_mb_get_album(Library::album_id("Web"), &found, nullptr));

  EXPECT_STREQ(found.cover_path, "/cache/cover.jpg");
}

TEST_F(Mirror, RefusesACoverThatDoesNotFitOrHasNoAlbum) {
  const std::string exact = "/" + std::string(298, 'c');
  const FmAlbumRecord album = web_album(5, "Web");
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));

  EXPECT_TRUE(fm_svc_mb_album_set_thumb_path_by_naid(5, exact.c_str(), nullptr));
  EXPECT_FALSE(fm_svc_mb_album_set_thumb_path_by_naid(5, (exact + "c").c_str(), nullptr));
  EXPECT_FALSE(fm_svc_mb_album_set_thumb_path_by_naid(6, "/c.jpg", nullptr));
  EXPECT_FALSE(fm_svc_mb_album_set_thumb_path_by_naid(5, nullptr, nullptr));
}

TEST_F(Mirror, ReadsAFolderAsAnAlbum) {
  FmAlbumRecord folder;

  ASSERT_TRUE(fm_svc_vesk_get_folder(Library::album_id("x"), &folder, nullptr));

  EXPECT_STREQ(folder.name, "x");
  EXPECT_EQ(folder.kind, 0);
}

TEST_F(Mirror, LinksAFolderWithItsWebAlbum) {
  FmAlbumRecord folder;
  ASSERT_TRUE(fm_svc_vesk_get_folder(Library::album_id("x"), &folder, nullptr));
  folder.naid = 0x900000003;

  ASSERT_TRUE(fm_svc_vesk_update_folder(&folder, nullptr));
  ASSERT_EQ(rename(library_.path("x").c_str(), library_.path("y").c_str()), 0);
  ASSERT_TRUE(library_.becomes({"y/a.jpg"}));
  FmAlbumRecord found;
  ASSERT_TRUE(fm_svc_mb_get_album(Library::album_id("y"), &found, nullptr));

  EXPECT_EQ(found.naid, 0x900000003);
}

TEST_F(Mirror, HasNoDrovoAlbumAtFirst) {
  FmAlbumRecord album;
  gint error = 0;

  EXPECT_FALSE(fm_svc_mb_get_drovo_album(&album, &error));
  EXPECT_NE(error, 0);
}

TEST_F(Mirror, FindsTheDrovoAlbum) {
  FmAlbumRecord album = web_album(8, "Quick posts");
  album.kind = mirror::kDrovoAlbum;
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));
  FmAlbumRecord found;

  ASSERT_TRUE(fm_svc_mb_get_drovo_album(&found, nullptr));

  EXPECT_EQ(found.naid, 8);
}

TEST_F(Mirror, ReadsAFileOfTheServer) {
  ASSERT_TRUE(mirror::put_file(data(),
                               {.nfid = 0x300000001,
                                .attribute = 4,
                                .storage = 2,
                                .name = "w.jpg",
                                .thumbnail = "/cache/w.jpg",
                                .url = "https://a/w"},
                               {}));
  FmVeskFileRecord record{};

  ASSERT_TRUE(fm_svc_vesk_get_vesk_file(0x300000001, &record, nullptr));

  EXPECT_EQ(record.database_index, 0);
  EXPECT_EQ(record.attribute, 4);
  EXPECT_EQ(record.storage_kind, FM_STORAGE_ARCHIVED);
  EXPECT_STREQ(record.name, "w.jpg");
  EXPECT_STREQ(record.thumbnail_path, "/cache/w.jpg");
  EXPECT_STREQ(record.bytes_url, "https://a/w");
}

TEST_F(Mirror, TellsTheLocalCopyOfAFileOfTheServer) {
  const gint id = library_.id_of("x/a.jpg");
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 21}, {}));
  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(id, 21, nullptr));
  FmVeskFileRecord record{};

  ASSERT_TRUE(fm_svc_vesk_get_vesk_file(21, &record, nullptr));

  EXPECT_EQ(record.database_index, id);
}

TEST_F(Mirror, FailsForAFileThatIsNotMirrored) {
  FmVeskFileRecord record{};
  gint error = 0;

  EXPECT_FALSE(fm_svc_vesk_get_vesk_file(99, &record, &error));
  EXPECT_NE(error, 0);
}

TEST_F(Mirror, ListsWhatIsOnTheServerOnly) {
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 1}, {5}));
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 2}, {6}));
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 3, .deleting = true}, {5}));
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 4}, {5}));
  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(library_.id_of("x/a.jpg"), 4, nullptr));

  EXPECT_THAT(server_only(), ElementsAre(2, 1));
  EXPECT_THAT(server_only(5), ElementsAre(1));
  EXPECT_THAT(server_only(7), IsEmpty());
}

TEST_F(Mirror, ListsTheFilesOfAWebAlbum) {
  const FmAlbumRecord album = web_album(5, "Web");
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 0x100000001}, {5}));
  FmFileList list{};

  ASSERT_TRUE(fm_svc_mb_album_get_all_files_ex(Library::album_id("Web"), 3, 3, &list, nullptr));

  ASSERT_EQ(list.count, 1);
  EXPECT_EQ(list.ids[0], 0x100000001);
  EXPECT_EQ(list.types[0], FM_FILE_WEB_ONLY);
  fm_svc_sync_list_free(&list);
}

TEST_F(Mirror, TakesFilesOutOfAnAlbum) {
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 1}, {5, 6}));
  ASSERT_TRUE(mirror::put_file(data(), {.nfid = 2}, {5}));
  const gint64 ids[] = {1, 2};

  ASSERT_TRUE(fm_svc_vesk_sync_album_remove_vesk_files(5, ids, 2, nullptr));

  EXPECT_THAT(server_only(5), IsEmpty());
  EXPECT_THAT(server_only(6), ElementsAre(1));
  EXPECT_THAT(server_only(), ElementsAre(1));
}

TEST_F(Mirror, RefusesToTakeOutWithoutIds) {
  EXPECT_FALSE(fm_svc_vesk_sync_album_remove_vesk_files(5, nullptr, 2, nullptr));
  EXPECT_FALSE(fm_svc_vesk_sync_album_remove_vesk_files(5, nullptr, -1, nullptr));
}

TEST_F(Mirror, OutlivesTheIndexFiles) {
  const FmAlbumRecord album = web_album(5, "Web");
  ASSERT_TRUE(fm_svc_vesk_update_folder(&album, nullptr));

  library_.start();

  EXPECT_NE(Library::album_id("Web"), 0);
}

std::atomic<int> g_calls;
std::atomic<bool> g_go_on;

gint count_call(const gchar *, const VeskNotiField *, gint) {
  ++g_calls;
  return 1;
}

gint wait_in_call(const gchar *, const VeskNotiField *, gint) {
  ++g_calls;
  while (!g_go_on) std::this_thread::yield();
  ++g_calls;
  return 1;
}

gint leave_in_call(const gchar *, const VeskNotiField *, gint) {
  ++g_calls;
  return fm_svc_vesk_unregistration_callback(leave_in_call, nullptr);
}

using Notification = support::GlibTest;

TEST_F(Notification, ReachesARegisteredCallbackOnce) {
  ASSERT_NE(fm_svc_vesk_registration(count_call, nullptr), 0);
  ASSERT_NE(fm_svc_vesk_registration(count_call, nullptr), 0);

  mirror::notify("message", nullptr, 0);

  EXPECT_EQ(g_calls, 1);
  EXPECT_NE(fm_svc_vesk_unregistration_callback(count_call, nullptr), 0);
}

TEST_F(Notification, ReachesNobodyAfterTheEnd) {
  gint error = -1;
  fm_svc_vesk_registration(count_call, nullptr);
  fm_svc_vesk_unregistration_callback(count_call, nullptr);

  mirror::notify("message", nullptr, 0);

  EXPECT_EQ(g_calls, 0);
  EXPECT_EQ(fm_svc_vesk_unregistration_callback(count_call, &error), 0);
  EXPECT_NE(error, -1);
}

TEST_F(Notification, IsWaitedForAtTheEnd) {
  fm_svc_vesk_registration(wait_in_call, nullptr);
  std::thread service([] { mirror::notify("message", nullptr, 0); });
  while (g_calls == 0) std::this_thread::yield();
  std::thread release([] { g_go_on = true; });

  fm_svc_vesk_unregistration_callback(wait_in_call, nullptr);
  const int calls = g_calls;

  EXPECT_EQ(calls, 2);
  service.join();
  release.join();
}

TEST_F(Notification, MayEndItselfInItsCall) {
  fm_svc_vesk_registration(leave_in_call, nullptr);

  mirror::notify("message", nullptr, 0);
  mirror::notify("message", nullptr, 0);

  EXPECT_EQ(g_calls, 1);
}

TEST_F(Notification, RefusesNull) { EXPECT_EQ(fm_svc_vesk_registration(nullptr, nullptr), 0); }

}  // namespace

// Three pictures in the media browser, by its header alone. The host indexes real files; the fakes
// are told what to hold.
#include <file-explorer.h>
#include <media-browser.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"

#ifdef CONTRACT_OF_FAKES
#include "support/fake-platform.hpp"
#else
#include <media-index.h>
#endif

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr gint kByName = 0;
constexpr gint64 kEverything = 0;
constexpr gint kUnknownId = 987654;

class MediaBrowserContract : public support::GlibTest {
 protected:
  void SetUp() override {
    for (const char *name : {"a.png", "b.png", "c.png"}) {
      paths_.push_back(support::save_picture(dir_.path(name), 4, 3));
    }
    start();
  }
#ifdef CONTRACT_OF_FAKES
  void start() {
    std::vector<MbItem> files;
    for (const std::string &path : paths_) {
      files.push_back(fake::make_item(static_cast<int>(files.size()) + 1, path));
    }
    fake::serve_files(files);
  }
#else
  void start() {
    const gchar *const roots[] = {dir_.path().c_str()};
    pb::StringPtr problem;
    ASSERT_TRUE(media_index_start(roots, 1, pb::out(problem))) << problem.get();
    constexpr gint64 kPatienceUs = 10 * G_USEC_PER_SEC;
    const gint64 end = g_get_monotonic_time() + kPatienceUs;
    MediaIndexProgress progress{};
    do {
      if (!g_main_context_iteration(nullptr, FALSE)) g_usleep(500);
      media_index_get_progress(&progress);
    } while ((progress.running || count() < 3) && g_get_monotonic_time() < end);
  }
  void TearDown() override { media_index_stop(); }
#endif

  static gint count() {
    gint files = -1;
    EXPECT_TRUE(fm_svc_mb_get_all_sub_file_count("/", 2, kEverything, &files, nullptr));
    return files;
  }

  /// The paths of the rows first to last.
  static std::vector<std::string> rows(gint first, gint last) {
    std::vector<std::string> paths;
    for (const MbItem &item : items(first, last)) paths.emplace_back(item.path);
    return paths;
  }

  static std::vector<MbItem> items(gint first, gint last) {
    GList *list = reinterpret_cast<GList *>(1);
    EXPECT_TRUE(fm_svc_mb_get_list("/", 2, kByName, kEverything, 0, &list, first, last, nullptr));
    std::vector<MbItem> result;
    for (const MbItem *item : pb::each<MbItem>(list)) result.push_back(*item);
    fm_svc_mb_glist_free(&list, TRUE);
    EXPECT_EQ(list, nullptr);
    return result;
  }

  support::TempDir dir_;
  std::vector<std::string> paths_;
};

TEST_F(MediaBrowserContract, CountsTheFiles) { EXPECT_EQ(count(), 3); }

TEST_F(MediaBrowserContract, ListsRowsInOrder) {
  EXPECT_THAT(rows(0, 2), ElementsAre(paths_[0], paths_[1], paths_[2]));
}

TEST_F(MediaBrowserContract, ListsTheLastRowOfARangeToo) {
  EXPECT_THAT(rows(1, 2), ElementsAre(paths_[1], paths_[2]));
}

TEST_F(MediaBrowserContract, ListsOneRow) { EXPECT_THAT(rows(1, 1), ElementsAre(paths_[1])); }

TEST_F(MediaBrowserContract, EndsALongRangeWithTheList) {
  EXPECT_THAT(rows(1, 99), ElementsAre(paths_[1], paths_[2]));
}

TEST_F(MediaBrowserContract, GivesNoListBehindTheLastRow) { EXPECT_THAT(rows(3, 99), IsEmpty()); }

TEST_F(MediaBrowserContract, ReadsAListedId) {
  const std::vector<MbItem> listed = items(1, 1);
  ASSERT_EQ(listed.size(), 1u);
  FmMediaRecord record{};

  ASSERT_TRUE(fm_svc_mb_get_record_by_index(listed[0].id, &record, nullptr));

  EXPECT_EQ(record.id, listed[0].id);
  EXPECT_STREQ(record.name, "b.png");
  EXPECT_EQ(dir_.path(), record.folder);
}

TEST_F(MediaBrowserContract, ReadsTheFileRecordOfAListedId) {
  const std::vector<MbItem> listed = items(2, 2);
  ASSERT_EQ(listed.size(), 1u);
  FmFileRecord record{};

  ASSERT_TRUE(fm_svc_mb_get_item_by_database_index(listed[0].id, &record, nullptr));

  EXPECT_EQ(record.item.id, listed[0].id);
  EXPECT_EQ(paths_[2], record.item.path);
  EXPECT_STREQ(record.name, "c.png");
}

TEST_F(MediaBrowserContract, ReadsAClearedRecordOfAFileThatIsNotThere) {
  FmMediaRecord record;
  memset(&record, 0xff, sizeof record);
  const FmMediaRecord cleared{};

  EXPECT_TRUE(fm_svc_mb_get_record_by_index(kUnknownId, &record, nullptr));

  EXPECT_EQ(memcmp(&record, &cleared, sizeof record), 0);
}

TEST_F(MediaBrowserContract, FreesAListOfOtherElements) {
  GList *list = g_list_append(nullptr, malloc(4));

  fm_svc_mb_glist_free(&list, TRUE);

  EXPECT_EQ(list, nullptr);
}

TEST_F(MediaBrowserContract, KeepsTheElementsWhenAskedTo) {
  int element = 5;
  GList *list = g_list_append(nullptr, &element);

  fm_svc_mb_glist_free(&list, FALSE);

  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(element, 5);
}

TEST_F(MediaBrowserContract, FreesAndClearsAFileList) {
  FmFileList list{static_cast<gint64 *>(calloc(2, sizeof(gint64))),
                  static_cast<gint32 *>(calloc(2, sizeof(gint32))), 2};

  fm_svc_sync_list_free(&list);
  fm_svc_sync_list_free(&list);

  EXPECT_EQ(list.ids, nullptr);
  EXPECT_EQ(list.types, nullptr);
  EXPECT_EQ(list.count, 0);
}

}  // namespace

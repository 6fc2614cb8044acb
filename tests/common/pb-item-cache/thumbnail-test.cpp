#include <pb-debug.h>
#include <pb-item-cache.h>
#include <unistd.h>

#include <cerrno>

#include "common/logged-text.hpp"
#include "glib-ptr.hpp"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"

namespace {

using fake::Logged;
using pb::Ref;
using support::PixbufPtr;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char *kNoThumbnailWarning =
    "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed";

class ItemThumbnail : public support::GlibTest {
 protected:
  void SetUp() override { fail_to_load(); }

  /// Every file fails to load, for the reason that errno gives.
  static void fail_to_load(int reason = 0) {
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [=](const gchar *, gint,
                                                              gint) -> GdkPixbuf * {
      if (reason != 0) errno = reason;
      return nullptr;
    };
  }
  /// Only one file loads.
  void load_only(const std::string &path) {
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [=, this](const gchar *asked, gint,
                                                                    gint) -> GdkPixbuf * {
      return asked == path ? PixbufPtr(loaded_).release() : nullptr;
    };
  }
  void store_has_thumbnail() {
    fake::platform().fm_svc_thumb_mgr_get_thumbnail = [this](gint, gint, const gchar *, gboolean,
                                                             gint, GdkPixbuf **pixbuf) {
      *pixbuf = PixbufPtr(stored_).release();
      return 1;
    };
  }
  void set(gint id, const char *filename, const std::string &thumb_path = "") {
    pb_item_set_info(item_.get(), id, thumb_path.empty() ? nullptr : thumb_path.c_str(), filename,
                     "jpg", 0);
  }
  PixbufPtr get(gboolean only_cached = FALSE) {
    return PixbufPtr::adopt(pb_item_cache_get_thumbnail(item_.get(), only_cached));
  }
  /// For the tests that look at something else than the pixbuf.
  void get_none(gboolean only_cached = FALSE) {
    EXPECT_FALSE(get(only_cached));
    EXPECT_THAT(take_glib_warnings(), ElementsAre(kNoThumbnailWarning));
  }

  support::TempDir dir_;
  PixbufPtr loaded_ = support::solid_pixbuf(148, 100, support::kRed);
  PixbufPtr stored_ = support::solid_pixbuf(148, 100, support::kBlue);
  Ref<PbItem> item_ = Ref<PbItem>::adopt(pb_item_new());
};

using NoThumbnail = ItemThumbnail;
using ThumbnailFile = ItemThumbnail;
using BrokenThumbnailFile = ItemThumbnail;
using OnlyCachedThumbnail = ItemThumbnail;
using ThumbnailOutsideTheDatabase = ItemThumbnail;
using ThumbnailInTheDatabase = ItemThumbnail;

TEST_F(NoThumbnail, OfNoItem) { EXPECT_EQ(pb_item_cache_get_thumbnail(nullptr, FALSE), nullptr); }

TEST_F(NoThumbnail, OfNoItemIsLogged) {
  pb_item_cache_get_thumbnail(nullptr, FALSE);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_WARNING, "[pb_item_cache_get_thumbnail]item == NULL\n")));
}

TEST_F(NoThumbnail, OfAForeignObject) {
  const auto object =
      Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_INITIALLY_UNOWNED, nullptr)));

  EXPECT_EQ(pb_item_cache_get_thumbnail(reinterpret_cast<PbItem *>(object.get()), FALSE), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_cache_get_thumbnail: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(NoThumbnail, OfAnItemWithoutAnyPath) {
  set(0, nullptr);

  get_none();

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(NoThumbnail, OfAWebAlbumWithAMissingCover) {
  pb_item_set_album_info_ex(item_.get(), 1, "Web", dir_.path("missing.jpg").c_str(), 9, 3, 0);

  get_none();
}

TEST_F(ThumbnailFile, IsLoadedIntoTheBox) {
  set(5, "/picture.jpg", "/cache/thumb.jpg");
  load_only("/cache/thumb.jpg");

  get();

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("fm_svc_thumb_create_pixbuf_by_path(\"/cache/thumb.jpg\", 148, 148)"));
}

TEST_F(ThumbnailFile, IsHandedOut) {
  set(5, "/picture.jpg", "/cache/thumb.jpg");
  load_only("/cache/thumb.jpg");

  EXPECT_EQ(get().get(), loaded_.get());
}

TEST_F(ThumbnailFile, IsHandedOutInOnlyCachedMode) {
  set(5, "/picture.jpg", "/cache/thumb.jpg");
  load_only("/cache/thumb.jpg");

  EXPECT_EQ(get(TRUE).get(), loaded_.get());
}

TEST_F(ThumbnailFile, IsAReferenceOfTheCallers) {
  set(5, "/picture.jpg", "/cache/thumb.jpg");
  const support::ExpectFinalized watch(loaded_.get());
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [this](const gchar *, gint, gint) {
    return loaded_.release();
  };

  get().reset();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(ThumbnailFile, ThatIsMissingGivesWayToTheStore) {
  set(5, "/picture.jpg", dir_.path("missing.jpg"));
  store_has_thumbnail();

  EXPECT_EQ(get().get(), stored_.get());
}

TEST_F(ThumbnailFile, ThatIsMissingIsNotLoggedAsRemoved) {
  set(5, "/picture.jpg", dir_.path("missing.jpg"));
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::platform().log, Not(Contains(LoggedText(HasSubstr("REMOVED")))));
}

TEST_F(ThumbnailFile, IsNotLookedForUnderAnEmptyPath) {
  set(5, "/picture.jpg");
  item_->thumb_path = g_strdup("");
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_create_pixbuf_by_path"), IsEmpty());
}

TEST_F(BrokenThumbnailFile, IsRemoved) {
  const std::string path = dir_.write("broken.jpg", "broken");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();

  get();

  EXPECT_FALSE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, IsRemovedWhenItsContentIsKnownToBeBad) {
  const std::string path = dir_.write("broken.jpg", "broken");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();
  fail_to_load(EBADMSG);

  get();

  EXPECT_FALSE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, IsRemovedInOnlyCachedMode) {
  const std::string path = dir_.write("broken.jpg", "broken");
  set(5, "/picture.jpg", path);

  get_none(TRUE);

  EXPECT_FALSE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, IsRemovedWithAStaleErrno) {
  const std::string path = dir_.write("broken.jpg", "broken");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();
  errno = EIO;

  get();

  EXPECT_FALSE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, IsLoggedAsRemoved) {
  const std::string path = dir_.write("broken.jpg", "broken");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_item_cache_get_thumbnail] ***** REMOVED FILE = " + path +
                                  " ************\n")));
}

TEST_F(BrokenThumbnailFile, GivesWayToTheStore) {
  set(5, "/picture.jpg", dir_.write("broken.jpg", "broken"));
  store_has_thumbnail();

  EXPECT_EQ(get().get(), stored_.get());
}

TEST_F(BrokenThumbnailFile, GivesWayToThePicture) {
  set(0, "/picture.jpg", dir_.write("broken.jpg", "broken"));
  load_only("/picture.jpg");

  EXPECT_EQ(get().get(), loaded_.get());
}

class UnreadThumbnailFile : public ItemThumbnail, public testing::WithParamInterface<int> {};

TEST_P(UnreadThumbnailFile, StaysWhenAnotherTryMaySucceed) {
  const std::string path = dir_.write("good.jpg", "good");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();
  fail_to_load(GetParam());

  get();

  EXPECT_TRUE(support::exists(path));
}

TEST_P(UnreadThumbnailFile, IsNotLoggedAsRemoved) {
  set(5, "/picture.jpg", dir_.write("good.jpg", "good"));
  store_has_thumbnail();
  fail_to_load(GetParam());

  get();

  EXPECT_THAT(fake::platform().log, Not(Contains(LoggedText(HasSubstr("REMOVED")))));
}

INSTANTIATE_TEST_SUITE_P(PassingReasons, UnreadThumbnailFile,
                         testing::Values(ENOMEM, EIO, EACCES, ETIMEDOUT, EMFILE));

TEST_F(BrokenThumbnailFile, StaysWhenItIsThePicture) {
  const std::string path = dir_.write("picture.jpg", "broken");
  set(5, path.c_str(), path);
  store_has_thumbnail();

  get();

  EXPECT_TRUE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, StaysWhenItIsAnotherNameOfThePicture) {
  const std::string picture = dir_.write("picture.jpg", "broken");
  const std::string path = dir_.path("thumb.jpg");
  ASSERT_EQ(link(picture.c_str(), path.c_str()), 0);
  set(5, picture.c_str(), path);
  store_has_thumbnail();

  get();

  EXPECT_TRUE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, StaysWhenItIsALink) {
  const std::string picture = dir_.write("picture.jpg", "broken");
  const std::string path = dir_.path("thumb.jpg");
  ASSERT_EQ(symlink(picture.c_str(), path.c_str()), 0);
  set(5, "/elsewhere.jpg", path);
  store_has_thumbnail();

  get();

  EXPECT_TRUE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, StaysWhenItIsADirectory) {
  const std::string path = dir_.make_dir("thumb.jpg");
  set(5, "/picture.jpg", path);
  store_has_thumbnail();

  get();

  EXPECT_TRUE(support::exists(path));
}

TEST_F(BrokenThumbnailFile, IsRemovedAlone) {
  const std::string picture = dir_.write("picture.jpg", "a picture");
  set(5, picture.c_str(), dir_.write("broken.jpg", "broken"));
  store_has_thumbnail();

  get();

  EXPECT_EQ(support::read_file(picture), "a picture");
}

TEST_F(OnlyCachedThumbnail, IsNothingWithoutAThumbnailFile) {
  set(5, "/picture.jpg");
  store_has_thumbnail();

  get_none(TRUE);
}

TEST_F(OnlyCachedThumbnail, NeverAsksTheStore) {
  set(5, "/picture.jpg");
  store_has_thumbnail();

  get_none(TRUE);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(OnlyCachedThumbnail, NeverDecodesThePicture) {
  set(0, "/picture.jpg");
  load_only("/picture.jpg");

  get_none(TRUE);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ThumbnailOutsideTheDatabase, IsMadeFromThePicture) {
  set(0, "/picture.jpg");
  load_only("/picture.jpg");

  EXPECT_EQ(get().get(), loaded_.get());
}

TEST_F(ThumbnailOutsideTheDatabase, IsMadeForTheBox) {
  set(0, "/picture.jpg");
  load_only("/picture.jpg");

  get();

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("fm_svc_thumb_create_pixbuf_by_path(\"/picture.jpg\", 148, 148)"));
}

TEST_F(ThumbnailOutsideTheDatabase, IsLogged) {
  set(0, "/picture.jpg");
  load_only("/picture.jpg");

  get();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(LoggedText(
                  "[pb_item_cache_get_thumbnail]No filename, filename = /picture.jpg\n")));
}

TEST_F(ThumbnailOutsideTheDatabase, IsNothingForABrokenPicture) {
  set(0, "/picture.jpg");

  get_none();

  EXPECT_THAT(
      fake::platform().log,
      Contains(LoggedText("[pb_item_cache_get_thumbnail]No thumbnail, filename = /picture.jpg\n")));
}

TEST_F(ThumbnailOutsideTheDatabase, NeverRemovesThePicture) {
  const std::string path = dir_.write("picture.jpg", "broken");
  set(0, path.c_str());

  get_none();

  EXPECT_TRUE(support::exists(path));
}

TEST_F(ThumbnailInTheDatabase, ComesFromTheStore) {
  set(5, "/picture.jpg");
  store_has_thumbnail();

  EXPECT_EQ(get().get(), stored_.get());
}

TEST_F(ThumbnailInTheDatabase, IsAskedForWithItsMediaType) {
  set(5, "/picture.jpg");
  item_->media_type = 2;
  fake::platform().fexplorer_is_mmc_database_index = [](gint) { return FALSE; };
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("fexplorer_is_mmc_database_index(5)",
                          "fm_svc_thumb_mgr_get_thumbnail(1, 0, \"/picture.jpg\", 0, 2)"));
}

TEST_F(ThumbnailInTheDatabase, IsAskedForOnTheCard) {
  set(5, "/picture.jpg");
  fake::platform().fexplorer_is_mmc_database_index = [](gint) { return TRUE; };
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_mgr_get_thumbnail"),
              ElementsAre("fm_svc_thumb_mgr_get_thumbnail(1, 0, \"/picture.jpg\", 1, 0)"));
}

TEST_F(ThumbnailInTheDatabase, IsAskedForByANegativeIndexToo) {
  set(-1, "/picture.jpg");
  store_has_thumbnail();

  EXPECT_EQ(get().get(), stored_.get());
}

TEST_F(ThumbnailInTheDatabase, IsLogged) {
  set(5, "/picture.jpg");
  store_has_thumbnail();

  get();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(LoggedText("[pb_item_cache_get_thumbnail]filename = /picture.jpg\n")));
}

TEST_F(ThumbnailInTheDatabase, IsNothingWhenTheStoreHasNone) {
  set(5, "/picture.jpg");
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };

  get_none();

  EXPECT_THAT(
      fake::platform().log,
      Contains(LoggedText("[pb_item_cache_get_thumbnail]No thumbnail, filename = /picture.jpg\n")));
}

TEST_F(ThumbnailInTheDatabase, IsNeverDecodedFromThePicture) {
  set(5, "/picture.jpg");
  load_only("/picture.jpg");
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };

  get_none();

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_create_pixbuf_by_path"), IsEmpty());
}

TEST_F(ThumbnailInTheDatabase, IsNothingWhenTheStoreSucceedsWithoutAPixbuf) {
  set(5, "/picture.jpg");
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 1; };

  get_none();
}

TEST_F(ThumbnailInTheDatabase, IsNothingWhenTheStoreHandsOutSomethingElse) {
  set(5, "/picture.jpg");
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [this](gint, gint, const gchar *, gboolean,
                                                           gint, GdkPixbuf **pixbuf) {
    *pixbuf = reinterpret_cast<GdkPixbuf *>(item_.get());
    return 1;
  };

  get_none();
}

}  // namespace

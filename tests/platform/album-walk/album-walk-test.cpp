#include "album-walk.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <set>

namespace {

using test::AlbumWalk;
using test::CacheSignal;
using test::LiveInstances;
using testing::AllOf;
using testing::Each;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAreArray;

constexpr int kAllFiles = 1;

PbItemList *current_list() { return pb_app_common_get_item_list(); }
PbItem *current_item() { return pb_app_common_get_nth_item_from_current(0); }
gint current_row() { return pb_app_common_get_instance()->item_index; }

std::vector<CacheSignal> fills_in(const std::vector<CacheSignal> &signals) {
  std::vector<CacheSignal> fills;
  std::ranges::copy_if(signals, std::back_inserter(fills), [](const CacheSignal &signal) {
    return signal.kind == CacheSignal::Kind::kFill;
  });
  return fills;
}

std::vector<gint> rows_of(const std::vector<CacheSignal> &signals) {
  std::vector<gint> rows;
  for (const CacheSignal &signal : signals) rows.push_back(signal.row);
  return rows;
}

/// Whether every burst begins with "initialize-cache", has fills, and ends with "finalize-cache".
bool are_bursts(const std::vector<CacheSignal> &signals) {
  using Kind = CacheSignal::Kind;
  Kind before = Kind::kFinalize;
  for (const CacheSignal &signal : signals) {
    const bool begins = signal.kind == Kind::kInitialize;
    if (begins != (before == Kind::kFinalize)) return false;
    if (signal.kind == Kind::kFinalize && before != Kind::kFill) return false;
    before = signal.kind;
  }
  return before == Kind::kFinalize;
}

TEST_F(AlbumWalk, ShowsTheFilesOfTheAlbumThatWasCurrent) {
  open_album("trip");

  EXPECT_EQ(pb_app_common_get_category(), 3);
  EXPECT_EQ(pb_item_list_get_length(current_list()), kTripPictures);
  for (const gint row : rows_on_screen()) {
    const PbItem *item = pb_app_common_get_nth_item_from_list(current_list(), row);
    EXPECT_THAT(name_of(item), testing::StartsWith("trip/")) << row;
  }
}

TEST_F(AlbumWalk, StartsAtTheFirstRowOfTheAlbum) {
  open_album("walk");

  EXPECT_EQ(current_row(), 0);
  EXPECT_EQ(name_of(current_item()), "walk/00.jpg");
}

TEST_F(AlbumWalk, HasTheListEmitItsSignalsInBursts) {
  open_album("trip");

  const auto signals = take_signals();

  EXPECT_THAT(fills_in(signals), Not(IsEmpty()));
  EXPECT_TRUE(are_bursts(signals));
}

TEST_F(AlbumWalk, FillsEachRowOnScreenOnceAndNoOther) {
  open_album("trip");

  EXPECT_THAT(rows_of(fills_in(take_signals())), UnorderedElementsAreArray(rows_on_screen()));
}

TEST_F(AlbumWalk, FillsWithinTheHundredRowsAroundTheScreen) {
  open_album("trip");

  EXPECT_THAT(fills_in(take_signals()), Each(AllOf(Field(&CacheSignal::first, 0),
                                                   Field(&CacheSignal::last, kTripPictures - 1))));
}

TEST_F(AlbumWalk, FillsWhatAScrollBringsOnScreenAndNothingAgain) {
  open_album("trip");
  const auto seen = rows_on_screen();
  take_signals();

  scroll_to_row(30);

  std::set<gint> fresh;
  for (const gint row : rows_on_screen()) {
    if (std::ranges::find(seen, row) == seen.end()) fresh.insert(row);
  }
  const auto signals = take_signals();
  EXPECT_THAT(rows_of(fills_in(signals)), UnorderedElementsAreArray(fresh));
  EXPECT_TRUE(are_bursts(signals));
}

TEST_F(AlbumWalk, LoadsTheThumbnailsOfTheFirstScreen) {
  open_album("trip");
  pb_app_common_resync_current_icons();

  EXPECT_TRUE(eventually_has_thumbnails());
}

TEST_F(AlbumWalk, LoadsTheThumbnailsThatAScrollBringsOnScreen) {
  open_album("trip");
  scroll_to_row(40);

  EXPECT_TRUE(eventually_has_thumbnails());
}

TEST_F(AlbumWalk, GoesThroughThePicturesInTheOrderOfTheAlbum) {
  open_album("walk");

  std::vector<std::string> names{name_of(current_item())};
  while (pb_app_common_navigate_item_forward()) names.push_back(name_of(current_item()));

  EXPECT_THAT(names,
              testing::ElementsAre("walk/00.jpg", "walk/01.jpg", "walk/02.jpg", "walk/03.jpg",
                                   "walk/04.jpg", "walk/05.jpg", "walk/06.jpg"));
}

TEST_F(AlbumWalk, ComesBackToTheFirstPicture) {
  open_album("walk");
  while (pb_app_common_navigate_item_forward()) continue;

  while (pb_app_common_navigate_item_backward()) continue;

  EXPECT_EQ(current_row(), 0);
}

TEST_F(AlbumWalk, FindsThePictureAgainInTheListOfAllFiles) {
  open_album("walk");
  pb_app_common_navigate_item_by_index(3);
  const gint id = current_item()->id;

  open(kAllFiles);
  show_current_list();

  EXPECT_TRUE(mb_app_common_update_iter_index_after_build(id, 0));
  EXPECT_EQ(name_of(current_item()), "walk/03.jpg");
}

TEST_F(AlbumWalk, LetsAListGoThatAnotherReplaced) {
  open_album("trip");
  const support::ExpectFinalized watch(current_list());

  open(kAllFiles);
  show_current_list();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(AlbumWalk, ReadsNothingForAListThatWasReplacedWhileItIsShown) {
  open_album("trip");
  take_signals();
  open(kAllFiles);

  phone_icon_view_scroll_to_row(PHONE_ICON_VIEW(view_.get()), 50, 0);
  while (g_main_context_iteration(nullptr, FALSE)) {
  }

  auto *shown = GTK_VIRTUAL_LIST_STORE(phone_icon_view_get_model(PHONE_ICON_VIEW(view_.get())));
  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(shown, 50));
}

TEST_F(AlbumWalk, SurvivesAViewThatGoesBeforeItsList) {
  open_album("trip");
  scroll_to_row(30);

  gtk_widget_destroy(window_.get());
  view_.reset();
  pb_app_common_resync_current_icons();

  EXPECT_TRUE(pb_app_common_navigate_item_forward());
}

TEST_F(AlbumWalk, LeavesAPictureAloneThatDoesNotDecode) {
  const std::string picture = dir_.path("pictures/odd/broken.png");
  const std::string bytes = support::read_file(picture);
  for (const gint category : {0, kAllFiles}) {
    open(category);
    show_current_list();
  }
  open_album("odd");
  PbItem *item = current_item();
  ASSERT_EQ(name_of(item), "odd/broken.png");

  for (const auto get : {pb_item_get_thumbnail_pixbuf, pb_item_get_only_cached_thumbnail_pixbuf,
                         pb_item_get_pixbuf}) {
    EXPECT_FALSE(pb::Ref<GdkPixbuf>::adopt(get(item)));
  }
  EXPECT_FALSE(pb::Ref<GdkPixbuf>::adopt(pb_item_get_pixbuf_at_size(item, 100, 100)));
  EXPECT_FALSE(
      pb::Ref<GdkPixbufAnimation>::adopt(pb_item_get_palm_animation_pixbuf(item, nullptr)));
  const auto album = pb::Ref<PbItem>::adopt(pb_item_new());
  pb_item_set_album_info(album.get(), 0, 0, item->album_id, "odd", 0, 0, 0, 1);
  EXPECT_FALSE(pb::Ref<GdkPixbuf>::adopt(pb_item_get_thumbnail_pixbuf(album.get())));

  EXPECT_EQ(support::read_file(picture), bytes);
}

/// What somebody does who opens an album, looks around in it and leaves.
class WholeAlbumWalk : public AlbumWalk {
 protected:
  void SetUp() override {
    items_.emplace(PB_TYPE_ITEM);
    lists_.emplace(PB_TYPE_ITEM_LIST);
    states_.emplace(PB_TYPE_APP_COMMON);
    AlbumWalk::SetUp();
  }

  void walk() {
    open_album("trip");
    scroll_to_row(30);
    ASSERT_TRUE(eventually_has_thumbnails());
    ASSERT_TRUE(pb_app_common_navigate_item_forward());
    ASSERT_TRUE(pb_app_common_navigate_item_backward());
    ASSERT_TRUE(pb_app_common_resync_current_category());
    show_current_list();
    open(kAllFiles);
    show_current_list();
    scroll_to_row(60);
    ASSERT_TRUE(eventually_has_thumbnails());
    open_album("walk");
  }

  std::optional<LiveInstances> items_;
  std::optional<LiveInstances> lists_;
  std::optional<LiveInstances> states_;
};

TEST_F(WholeAlbumWalk, LeavesNoItemListOrStateBehind) {
  walk();
  ASSERT_GT(items_->count(), 0);
  ASSERT_EQ(lists_->count(), 1);

  leave();

  EXPECT_EQ(items_->count(), 0);
  EXPECT_EQ(lists_->count(), 0);
  EXPECT_EQ(states_->count(), 0);
  EXPECT_EQ(pb_item_list_count, 0);
}

TEST_F(WholeAlbumWalk, LeavesNoWidgetBehind) {
  const support::ExpectFinalized window(window_.get());
  const support::ExpectFinalized view(view_.get());

  walk();
  leave();
}

}  // namespace

#include <pb-debug.h>
#include <pb-item.h>

#include "fakes/journal.hpp"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"

// What decodes in this process is written down with the calls of the phone.
extern "C" {
GdkPixbufFormat *__real_gdk_pixbuf_get_file_info(const gchar *path, gint *width, gint *height);
GdkPixbufFormat *__wrap_gdk_pixbuf_get_file_info(const gchar *path, gint *width, gint *height);
GdkPixbufAnimation *__real_gdk_pixbuf_animation_new_from_file(const char *path, GError **error);
GdkPixbufAnimation *__wrap_gdk_pixbuf_animation_new_from_file(const char *path, GError **error);

GdkPixbufFormat *__wrap_gdk_pixbuf_get_file_info(const gchar *path, gint *width, gint *height) {
  fake::record("gdk_pixbuf_get_file_info", path);
  return __real_gdk_pixbuf_get_file_info(path, width, height);
}

GdkPixbufAnimation *__wrap_gdk_pixbuf_animation_new_from_file(const char *path, GError **error) {
  fake::record("gdk_pixbuf_animation_new_from_file", path);
  return __real_gdk_pixbuf_animation_new_from_file(path, error);
}
}

namespace {

using fake::Logged;
using pb::Ref;
using support::ExpectFinalized;
using support::PixbufPtr;
using support::pixel_at;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using PixbufGetter = GdkPixbuf *(*)(PbItem *);

constexpr const char *kNoThumbnailWarning =
    "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed";

int width_of(const PixbufPtr &pixbuf) { return gdk_pixbuf_get_width(pixbuf.get()); }
int height_of(const PixbufPtr &pixbuf) { return gdk_pixbuf_get_height(pixbuf.get()); }

/// What a deleted item's thumbnail is to look like.
PixbufPtr washed_out(const PixbufPtr &source) {
  PixbufPtr copy = PixbufPtr::adopt(gdk_pixbuf_copy(source.get()));
  gdk_pixbuf_saturate_and_pixelate(source.get(), copy.get(), 0.1F, TRUE);
  return copy;
}

std::vector<support::Rgba> pixels_of(const PixbufPtr &pixbuf) {
  std::vector<support::Rgba> pixels;
  for (int y = 0; y < height_of(pixbuf); ++y) {
    for (int x = 0; x < width_of(pixbuf); ++x) pixels.push_back(pixel_at(pixbuf.get(), x, y));
  }
  return pixels;
}

struct Getter {
  const char *name;
  PixbufGetter get;
  bool only_cached;
};

class ThumbnailGetter : public testing::TestWithParam<Getter> {
 protected:
  /// Serves a thumbnail file and a stored thumbnail for whoever asks.
  void serve(const PixbufPtr &pixbuf) {
    item_->thumb_path = g_strdup("/cache/thumb.jpg");
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [=](const gchar *, gint, gint) {
      return PixbufPtr(pixbuf).release();
    };
  }
  PixbufPtr get() { return PixbufPtr::adopt(GetParam().get(item_.get())); }

  Ref<PbItem> item_ = Ref<PbItem>::adopt(pb_item_new());
};

TEST_P(ThumbnailGetter, HandsOutTheThumbnailAsItIs) {
  const auto thumbnail = support::solid_pixbuf(20, 10, support::kRed);
  serve(thumbnail);

  const PixbufPtr got = get();

  EXPECT_EQ(got.get(), thumbnail.get());
}

TEST_P(ThumbnailGetter, HandsOutAReferenceOfItsOwn) {
  auto thumbnail = support::solid_pixbuf(20, 10, support::kRed);
  const ExpectFinalized watch(thumbnail.get());
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [&](const gchar *, gint, gint) {
    return thumbnail.release();
  };
  item_->thumb_path = g_strdup("/cache/thumb.jpg");

  get().reset();

  EXPECT_TRUE(watch.finalized());
}

TEST_P(ThumbnailGetter, GivesNothingWithoutAThumbnail) {
  EXPECT_FALSE(get());

  EXPECT_THAT(support::take_glib_warnings(), ElementsAre(kNoThumbnailWarning));
}

TEST_P(ThumbnailGetter, GivesNothingForADeletedItemWithoutAThumbnail) {
  pb_item_set_deleted(item_.get(), TRUE);

  EXPECT_FALSE(get());

  EXPECT_THAT(support::take_glib_warnings(), ElementsAre(kNoThumbnailWarning));
}

TEST_P(ThumbnailGetter, AsksTheThumbnailManagerUnlessOnlyFilesCount) {
  item_->id = 5;
  item_->filename = g_strdup("/picture.jpg");
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };

  get();
  support::take_glib_warnings();

  EXPECT_EQ(fake::calls_of("fm_svc_thumb_mgr_get_thumbnail").empty(), GetParam().only_cached);
}

TEST_P(ThumbnailGetter, WashesADeletedItemOut) {
  const auto thumbnail = support::quartered_pixbuf(20, 10);
  serve(thumbnail);
  pb_item_set_deleted(item_.get(), TRUE);

  const PixbufPtr got = get();

  EXPECT_EQ(pixels_of(got), pixels_of(washed_out(thumbnail)));
}

TEST_P(ThumbnailGetter, LeavesTheThumbnailOfADeletedItemAsItWas) {
  const auto thumbnail = support::quartered_pixbuf(20, 10);
  serve(thumbnail);
  pb_item_set_deleted(item_.get(), TRUE);

  get();

  EXPECT_EQ(pixels_of(thumbnail), pixels_of(support::quartered_pixbuf(20, 10)));
}

TEST_P(ThumbnailGetter, DropsTheThumbnailThatItWashedOut) {
  auto thumbnail = support::quartered_pixbuf(20, 10);
  const ExpectFinalized watch(thumbnail.get());
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [&](const gchar *, gint, gint) {
    return thumbnail.release();
  };
  item_->thumb_path = g_strdup("/cache/thumb.jpg");
  pb_item_set_deleted(item_.get(), TRUE);

  const PixbufPtr got = get();

  EXPECT_TRUE(watch.finalized());
}

TEST_P(ThumbnailGetter, GivesThePlainThumbnailOnceTheMarkIsGone) {
  const auto thumbnail = support::quartered_pixbuf(20, 10);
  serve(thumbnail);
  pb_item_set_deleted(item_.get(), TRUE);
  get();

  pb_item_set_deleted(item_.get(), FALSE);

  EXPECT_EQ(pixels_of(get()), pixels_of(thumbnail));
}

TEST_P(ThumbnailGetter, WarnsAboutNoItem) {
  EXPECT_EQ(GetParam().get(nullptr), nullptr);

  EXPECT_THAT(support::take_glib_warnings(),
              ElementsAre(std::string(GetParam().name) + ": assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_P(ThumbnailGetter, WarnsAboutAForeignObject) {
  const auto object =
      Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_INITIALLY_UNOWNED, nullptr)));

  EXPECT_EQ(GetParam().get(reinterpret_cast<PbItem *>(object.get())), nullptr);

  EXPECT_THAT(support::take_glib_warnings(),
              ElementsAre(std::string(GetParam().name) + ": assertion 'PB_IS_ITEM(item)' failed"));
}

INSTANTIATE_TEST_SUITE_P(
    All, ThumbnailGetter,
    testing::Values(Getter{"pb_item_get_thumbnail_pixbuf", pb_item_get_thumbnail_pixbuf, false},
                    Getter{"pb_item_get_render_pixbuf", pb_item_get_render_pixbuf, false},
                    Getter{"pb_item_get_only_cached_thumbnail_pixbuf",
                           pb_item_get_only_cached_thumbnail_pixbuf, true},
                    Getter{"pb_item_get_only_cached_render_pixbuf",
                           pb_item_get_only_cached_render_pixbuf, true}),
    [](const auto &test) { return std::string(test.param.name); });

/// An item over a picture file, with a thumbnail manager that makes what it is asked for.
class Picture : public support::GlibTest {
 protected:
  void SetUp() override {
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint width,
                                                             gint height) {
      return support::quartered_pixbuf(width, height).release();
    };
  }

  void use_file(const std::string &path) { item_->filename = g_strdup(path.c_str()); }
  /// What the header reader says of every file.
  static void read_header(gboolean answer) {
    fake::platform().wink_parse_from_file = [=](const gchar *, gint *, gint *) { return answer; };
  }
  /// A call of a function with the item's file alone.
  [[nodiscard]] std::string file_call(const std::string &function) const {
    return function + "(\"" + item_->filename + "\")";
  }
  void use_picture(int width, int height) {
    use_file(support::save_picture(dir_.path("picture.png"), width, height));
  }
  static void turn(gint orientation) {
    fake::platform().fexplorer_get_exif_orientation = [=](const gchar *, gint *out) {
      *out = orientation;
      return TRUE;
    };
  }
  PixbufPtr at_size(gint width, gint height) {
    return PixbufPtr::adopt(pb_item_get_pixbuf_at_size(item_.get(), width, height));
  }
  /// "fm_svc_thumb_create_pixbuf_by_path" with the item's file and a size.
  [[nodiscard]] std::string load_call(int width, int height) const {
    return "fm_svc_thumb_create_pixbuf_by_path(\"" + std::string(item_->filename) + "\", " +
           std::to_string(width) + ", " + std::to_string(height) + ")";
  }
  static std::vector<std::string> loads() {
    return fake::calls_of("fm_svc_thumb_create_pixbuf_by_path");
  }

  support::TempDir dir_;
  Ref<PbItem> item_ = Ref<PbItem>::adopt(pb_item_new());
};

using PictureAtSize = Picture;
using FullPicture = Picture;
using PalmAnimation = Picture;

TEST_F(PictureAtSize, LogsItsEntry) {
  use_picture(40, 30);

  at_size(100, 100);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_item_get_pixbuf_at_size]\n")));
}

TEST_F(PictureAtSize, LogsTheFinalSize) {
  use_picture(40, 30);

  at_size(100, 100);

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_item_get_pixbuf_at_size]Final width = 40, height=30\n")));
}

TEST_F(PictureAtSize, ReadsTheOrientationOfTheFile) {
  use_picture(40, 30);

  at_size(100, 100);

  EXPECT_THAT(
      fake::calls_of("fexplorer_get_exif_orientation"),
      ElementsAre("fexplorer_get_exif_orientation(\"" + std::string(item_->filename) + "\")"));
}

TEST_F(PictureAtSize, NeverScalesASmallPictureDown) {
  use_picture(400, 300);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(400, 300)));
  EXPECT_EQ(width_of(picture), 400);
  EXPECT_EQ(height_of(picture), 300);
}

TEST_F(PictureAtSize, NeverScalesASmallPictureUp) {
  use_picture(40, 30);

  at_size(480, 800);

  EXPECT_THAT(loads(), ElementsAre(load_call(40, 30)));
}

TEST_F(PictureAtSize, ScalesALargePictureToTheBox) {
  use_picture(2048, 1536);

  at_size(480, 800);

  EXPECT_THAT(loads(), ElementsAre(load_call(480, 360)));
}

TEST_F(PictureAtSize, TakesAPictureAsWideAsTheScreenForLarge) {
  use_picture(480, 20);

  at_size(240, 400);

  EXPECT_THAT(loads(), ElementsAre(load_call(240, 10)));
}

TEST_F(PictureAtSize, TakesAPictureAsHighAsTheScreenForLarge) {
  use_picture(20, 800);

  at_size(240, 400);

  EXPECT_THAT(loads(), ElementsAre(load_call(10, 400)));
}

TEST_F(PictureAtSize, TakesAPictureJustBelowTheScreenForSmall) {
  use_picture(479, 799);

  at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(479, 799)));
}

TEST_F(PictureAtSize, KeepsALargePictureThatFitsTheBox) {
  use_picture(600, 400);

  at_size(1000, 1000);

  EXPECT_THAT(loads(), ElementsAre(load_call(600, 400)));
}

TEST_F(PictureAtSize, LoadsASidewaysPictureInItsStoredOrientation) {
  use_picture(800, 600);
  turn(6);

  at_size(300, 300);

  EXPECT_THAT(loads(), ElementsAre(load_call(300, 225)));
}

TEST_F(PictureAtSize, TurnsASidewaysPictureUpright) {
  use_picture(800, 600);
  turn(6);

  const PixbufPtr picture = at_size(300, 300);

  EXPECT_EQ(width_of(picture), 225);
  EXPECT_EQ(height_of(picture), 300);
}

TEST_F(PictureAtSize, JudgesASidewaysPictureByItsShownHeight) {
  use_picture(800, 30);
  turn(8);

  at_size(100, 400);

  EXPECT_THAT(loads(), ElementsAre(load_call(400, 15)));
}

TEST_F(PictureAtSize, JudgesASidewaysPictureByItsShownWidth) {
  use_picture(700, 400);
  turn(6);

  at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(700, 400)));
}

TEST_F(PictureAtSize, LoadsASmallSidewaysPictureAtItsStoredSize) {
  use_picture(40, 30);
  turn(8);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(40, 30)));
  EXPECT_EQ(width_of(picture), 30);
  EXPECT_EQ(height_of(picture), 40);
}

TEST_F(PictureAtSize, TurnsOrientationThreeByHalf) {
  use_picture(40, 30);
  turn(3);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(pixel_at(picture.get(), 0, 0), support::kWhite);
  EXPECT_EQ(pixel_at(picture.get(), 39, 29), support::kRed);
}

TEST_F(PictureAtSize, TurnsOrientationSixClockwise) {
  use_picture(40, 30);
  turn(6);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(pixel_at(picture.get(), 0, 0), support::kBlue);
  EXPECT_EQ(pixel_at(picture.get(), 29, 0), support::kRed);
}

TEST_F(PictureAtSize, TurnsOrientationEightCounterclockwise) {
  use_picture(40, 30);
  turn(8);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(pixel_at(picture.get(), 0, 0), support::kGreen);
  EXPECT_EQ(pixel_at(picture.get(), 0, 39), support::kRed);
}

class UnturnedPicture : public Picture, public testing::WithParamInterface<int> {};

TEST_P(UnturnedPicture, ComesAsItIsStored) {
  use_picture(40, 30);
  turn(GetParam());

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(pixels_of(picture), pixels_of(support::quartered_pixbuf(40, 30)));
}

INSTANTIATE_TEST_SUITE_P(OrientationsWithoutATurn, UnturnedPicture,
                         testing::Values(0, 1, 2, 4, 5, 7, 9, -1));

TEST_F(PictureAtSize, IgnoresTheOrientationOfAFailedCall) {
  use_picture(40, 30);
  fake::platform().fexplorer_get_exif_orientation = [](const gchar *, gint *out) {
    *out = 6;
    return FALSE;
  };

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(width_of(picture), 40);
}

TEST_F(PictureAtSize, IsAlwaysANewPixbuf) {
  use_picture(40, 30);
  const auto loaded = support::solid_pixbuf(40, 30, support::kRed);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [&](const gchar *, gint, gint) {
    return PixbufPtr(loaded).release();
  };

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_NE(picture.get(), loaded.get());
}

TEST_F(PictureAtSize, DropsWhatItLoaded) {
  use_picture(40, 30);
  auto loaded = support::solid_pixbuf(40, 30, support::kRed);
  const ExpectFinalized watch(loaded.get());
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [&](const gchar *, gint, gint) {
    return loaded.release();
  };

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_TRUE(watch.finalized());
}

TEST_F(PictureAtSize, HandsOutOneReference) {
  use_picture(40, 30);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_EQ(G_OBJECT(picture.get())->ref_count, 1U);
}

TEST_F(PictureAtSize, IsNothingForAMissingFile) {
  use_file(dir_.path("missing.png"));

  EXPECT_FALSE(at_size(100, 100));

  EXPECT_THAT(loads(), IsEmpty());
}

TEST_F(PictureAtSize, IsNothingForAFileThatIsNoPicture) {
  use_file(dir_.write("notes.png", "no picture at all"));

  EXPECT_FALSE(at_size(100, 100));

  EXPECT_THAT(loads(), IsEmpty());
}

TEST_F(PictureAtSize, IsNothingWithoutAFilename) {
  EXPECT_FALSE(at_size(100, 100));

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(PictureAtSize, IsNeverDecodedWhenItsHeaderIsRefused) {
  use_picture(40, 30);
  read_header(FALSE);

  EXPECT_FALSE(at_size(100, 100));

  EXPECT_THAT(fake::platform().calls, ElementsAre(file_call("wink_parse_from_file")));
}

TEST_F(PictureAtSize, HasItsHeaderReadBeforeItIsDecoded) {
  use_picture(40, 30);
  read_header(TRUE);

  at_size(100, 100);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre(file_call("wink_parse_from_file"), file_call("gdk_pixbuf_get_file_info"),
                          file_call("fexplorer_get_exif_orientation"), load_call(40, 30)));
}

TEST_F(PictureAtSize, IsNothingWhenTheDecoderRefusesWhatTheHeaderPromised) {
  use_file(dir_.write("notes.png", "no picture at all"));
  read_header(TRUE);

  EXPECT_FALSE(at_size(100, 100));

  EXPECT_THAT(loads(), IsEmpty());
}

TEST_F(PictureAtSize, KeepsOnePixelOfALongStrip) {
  use_picture(2000, 1);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(100, 1)));
  EXPECT_EQ(height_of(picture), 1);
}

TEST_F(PictureAtSize, KeepsOnePixelOfATallStrip) {
  use_picture(1, 2000);

  at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(1, 100)));
}

TEST_F(PictureAtSize, KeepsOnePixelOfALongStripThatLiesSideways) {
  use_picture(2000, 1);
  turn(6);

  const PixbufPtr picture = at_size(100, 100);

  EXPECT_THAT(loads(), ElementsAre(load_call(100, 1)));
  EXPECT_EQ(width_of(picture), 1);
  EXPECT_EQ(height_of(picture), 100);
}

TEST_F(PictureAtSize, IsNothingWhenLoadingFails) {
  use_picture(40, 30);
  turn(6);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint,
                                                           gint) -> GdkPixbuf * { return nullptr; };

  EXPECT_FALSE(at_size(100, 100));
}

TEST_F(PictureAtSize, WarnsAboutNoItem) {
  EXPECT_EQ(pb_item_get_pixbuf_at_size(nullptr, 100, 100), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_pixbuf_at_size: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(FullPicture, ComesAtItsStoredSize) {
  use_picture(400, 300);

  const auto picture = PixbufPtr::adopt(pb_item_get_pixbuf(item_.get()));

  EXPECT_THAT(loads(), ElementsAre(load_call(400, 300)));
  EXPECT_TRUE(picture);
}

TEST_F(FullPicture, ComesAtItsStoredSizeWhenLarge) {
  use_picture(900, 700);

  const auto picture = PixbufPtr::adopt(pb_item_get_pixbuf(item_.get()));

  EXPECT_THAT(loads(), ElementsAre(load_call(900, 700)));
  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_calc_scaled_size: assertion 'canvas_w > 0 && canvas_h > 0' failed"));
}

TEST_F(FullPicture, ComesAtItsStoredSizeWhenLargeAndSideways) {
  use_picture(900, 700);
  turn(6);

  const auto picture = PixbufPtr::adopt(pb_item_get_pixbuf(item_.get()));
  take_glib_warnings();

  EXPECT_THAT(loads(), ElementsAre(load_call(900, 700)));
  EXPECT_EQ(width_of(picture), 700);
}

TEST_F(FullPicture, IsNeverDecodedWhenItsHeaderIsRefused) {
  use_picture(400, 300);
  read_header(FALSE);

  EXPECT_EQ(pb_item_get_pixbuf(item_.get()), nullptr);

  EXPECT_THAT(fake::platform().calls, ElementsAre(file_call("wink_parse_from_file")));
}

TEST_F(FullPicture, NeedsAFilename) {
  EXPECT_EQ(pb_item_get_pixbuf(item_.get()), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_pixbuf: assertion 'item->filename' failed"));
}

TEST_F(FullPicture, WarnsAboutNoItem) {
  EXPECT_EQ(pb_item_get_pixbuf(nullptr), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_pixbuf: assertion 'PB_IS_ITEM(item)' failed"));
}

/// A GIF of one black pixel, with as many frames as asked for.
std::string gif(int frames) {
  std::string bytes("GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF", 19);
  for (int i = 0; i < frames; ++i) {
    bytes += std::string("!\xF9\4\4\xA\0\0\0", 8);
    bytes += std::string(",\0\0\0\0\1\0\1\0\0\2\2D\1\0", 15);
  }
  return bytes + ";";
}

TEST_F(PalmAnimation, OfAnAnimationIsNotStatic) {
  use_file(dir_.write("moving.gif", gif(2)));
  gboolean is_static = TRUE;

  const auto animation =
      Ref<GdkPixbufAnimation>::adopt(pb_item_get_palm_animation_pixbuf(item_.get(), &is_static));

  EXPECT_TRUE(animation);
  EXPECT_FALSE(is_static);
}

TEST_F(PalmAnimation, IsNeverDecodedWhenItsHeaderIsRefused) {
  use_file(dir_.write("moving.gif", gif(2)));
  read_header(FALSE);
  gboolean is_static = TRUE;

  EXPECT_EQ(pb_item_get_palm_animation_pixbuf(item_.get(), &is_static), nullptr);

  EXPECT_THAT(fake::platform().calls, ElementsAre(file_call("wink_parse_from_file")));
  EXPECT_FALSE(is_static);
}

TEST_F(PalmAnimation, HasItsHeaderReadBeforeItIsDecoded) {
  use_file(dir_.write("moving.gif", gif(2)));
  read_header(TRUE);

  const auto animation =
      Ref<GdkPixbufAnimation>::adopt(pb_item_get_palm_animation_pixbuf(item_.get(), nullptr));

  EXPECT_THAT(fake::platform().calls, ElementsAre(file_call("wink_parse_from_file"),
                                                  file_call("gdk_pixbuf_animation_new_from_file")));
}

TEST_F(PalmAnimation, OfASinglePictureIsStatic) {
  use_picture(4, 3);
  gboolean is_static = FALSE;

  const auto animation =
      Ref<GdkPixbufAnimation>::adopt(pb_item_get_palm_animation_pixbuf(item_.get(), &is_static));

  EXPECT_TRUE(animation);
  EXPECT_TRUE(is_static);
}

TEST_F(PalmAnimation, MayBeAskedForAlone) {
  use_picture(4, 3);

  const auto animation =
      Ref<GdkPixbufAnimation>::adopt(pb_item_get_palm_animation_pixbuf(item_.get(), nullptr));

  EXPECT_TRUE(animation);
}

TEST_F(PalmAnimation, OfAMissingFileIsNothing) {
  use_file(dir_.path("missing.gif"));
  gboolean is_static = TRUE;

  EXPECT_EQ(pb_item_get_palm_animation_pixbuf(item_.get(), &is_static), nullptr);

  EXPECT_FALSE(is_static);
}

TEST_F(PalmAnimation, OfAnItemWithoutAFileIsNothing) {
  gboolean is_static = TRUE;

  EXPECT_EQ(pb_item_get_palm_animation_pixbuf(item_.get(), &is_static), nullptr);

  EXPECT_FALSE(is_static);
}

TEST_F(PalmAnimation, FailsWithoutAWord) {
  use_file(dir_.write("broken.gif", "GIF89a"));
  read_header(TRUE);

  EXPECT_EQ(pb_item_get_palm_animation_pixbuf(item_.get(), nullptr), nullptr);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(PalmAnimation, WarnsAboutNoItem) {
  gboolean is_static = TRUE;

  EXPECT_EQ(pb_item_get_palm_animation_pixbuf(nullptr, &is_static), nullptr);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_item_get_palm_animation_pixbuf: assertion 'PB_IS_ITEM(item)' failed"));
}

}  // namespace

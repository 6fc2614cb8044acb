#include <pb-util.h>

#include <map>

#include "common/logged-text.hpp"
#include "renderer-fixture.hpp"

namespace {

/// A caption as it was handed to pb_draw_text().
struct Caption {
  std::string text;
  PbDrawTextInfo info;
  GdkColor color;
};

std::vector<Caption> &captions() {
  static std::vector<Caption> list;
  return list;
}

}  // namespace

extern "C" {
__attribute__((visibility("default"))) void __real_pb_draw_text(PbDrawTextInfo *info);

__attribute__((visibility("default"))) void __wrap_pb_draw_text(PbDrawTextInfo *info) {
  if (info->text != nullptr) captions().push_back({info->text, *info, *info->color});
  __real_pb_draw_text(info);
}
}

namespace {

using support::PixbufPtr;
using support::Rgba;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr int kCanvasSize = 320;

constexpr Rgba kNoCover{10, 53, 10};
constexpr Rgba kWebFileMark{10, 10, 155};
constexpr Rgba kNoPicture{67, 67, 10};
constexpr Rgba kFrame{83, 10, 83};
constexpr Rgba kNoVideo{86, 20, 20};
constexpr Rgba kPlayMark{10, 205, 105};
constexpr Rgba kWebAlbumMark{195, 95, 10};
constexpr Rgba kPicture{200, 30, 30};

struct Bitmap {
  int width;
  int height;
  Rgba colour;
};

const std::map<gint, Bitmap> kBitmaps = {
    {53, {138, 127, kNoCover}},     {55, {16, 12, kWebFileMark}}, {67, {148, 148, kNoPicture}},
    {83, {138, 127, kFrame}},       {86, {148, 148, kNoVideo}},   {105, {20, 30, kPlayMark}},
    {195, {24, 18, kWebAlbumMark}},
};

/// Draws a cell on a black pixmap and reads back what it looks like.
class RendererDrawing : public RendererFixture {
 protected:
  void SetUp() override {
    RendererFixture::SetUp();
    if (!cell_) return;
    captions().clear();
    fake::platform().rsrc_get_image = [](gint, gint id) -> GdkPixbuf * {
      const auto found = kBitmaps.find(id);
      if (found == kBitmaps.end()) return nullptr;
      const Bitmap &bitmap = found->second;
      return support::solid_pixbuf(bitmap.width, bitmap.height, bitmap.colour).release();
    };
    canvas_ = pb::Ref<GdkPixmap>::adopt(
        gdk_pixmap_new(gdk_get_default_root_window(), kCanvasSize, kCanvasSize, -1));
    cairo_t *cairo = gdk_cairo_create(canvas_.get());
    cairo_paint(cairo);
    cairo_destroy(cairo);
  }

  /// The thumbnail of the file or the cover of the album.
  void serve_thumbnail(int width, int height, Rgba colour = kPicture, bool has_alpha = false) {
    const auto make = [=] {
      return support::solid_pixbuf(width, height, colour, has_alpha).release();
    };
    fake::platform().fm_svc_thumb_mgr_get_thumbnail = [=](gint, gint, const gchar *, gboolean, gint,
                                                          GdkPixbuf **pixbuf) {
      *pixbuf = make();
      return 1;
    };
    fake::platform().fm_svc_thumb_create_pixbuf_by_path = [=](const gchar *, gint, gint) {
      return make();
    };
  }

  void draw(GdkRectangle cell, GdkRectangle expose = {0, 0, kCanvasSize, kCanvasSize}) {
    GTK_CELL_RENDERER_GET_CLASS(cell_.get())
        ->render(cell_.get(), canvas_.get(), nullptr, &cell, &cell, &expose,
                 static_cast<GtkCellRendererState>(0));
    // A row without a thumbnail warns, which is no concern of the drawing.
    take_glib_warnings();
    picture_ = PixbufPtr::adopt(gdk_pixbuf_get_from_drawable(nullptr, canvas_.get(), nullptr, 0, 0,
                                                             0, 0, kCanvasSize, kCanvasSize));
  }
  void draw_file() { draw({0, 0, 148, 148}); }
  void draw_album() { draw({0, 0, 138, 167}); }

  [[nodiscard]] Rgba at(int x, int y) const { return support::pixel_at(picture_.get(), x, y); }
  [[nodiscard]] bool is_blank() const {
    for (int y = 0; y < kCanvasSize; ++y) {
      for (int x = 0; x < kCanvasSize; ++x) {
        if (at(x, y) != support::kBlack) return false;
      }
    }
    return true;
  }

  pb::Ref<GdkPixmap> canvas_;
  PixbufPtr picture_;
};

using DrawnFile = RendererDrawing;
using DrawnVideo = RendererDrawing;
using DrawnAlbum = RendererDrawing;
using DrawnCaption = RendererDrawing;

TEST_F(RendererDrawing, WithoutAnItemIsLogged) {
  draw_file();

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_item_renderer_render]item is null\n")));
}

TEST_F(RendererDrawing, WithoutAnItemDrawsNothing) {
  draw_file();

  EXPECT_TRUE(is_blank());
}

TEST_F(RendererDrawing, OutsideTheExposedAreaDrawsNothing) {
  serve_thumbnail(148, 148);
  show_file();

  draw({0, 0, 148, 148}, {200, 200, 50, 50});

  EXPECT_TRUE(is_blank());
}

TEST_F(RendererDrawing, OutsideTheExposedAreaAsksForNoThumbnail) {
  serve_thumbnail(148, 148);
  show_file();

  draw({0, 0, 148, 148}, {200, 200, 50, 50});

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(RendererDrawing, OfAnEmptyBoxDrawsNothing) {
  serve_thumbnail(148, 148);
  show_file();

  draw({0, 0, 0, 0});

  EXPECT_TRUE(is_blank());
}

TEST_F(RendererDrawing, IsClippedToTheExposedArea) {
  serve_thumbnail(148, 148);
  show_file();

  draw({0, 0, 148, 148}, {10, 20, 30, 40});

  EXPECT_EQ(at(10, 20), kPicture);
  EXPECT_EQ(at(39, 59), kPicture);
  EXPECT_EQ(at(9, 20), support::kBlack);
  EXPECT_EQ(at(10, 19), support::kBlack);
  EXPECT_EQ(at(40, 59), support::kBlack);
  EXPECT_EQ(at(39, 60), support::kBlack);
}

TEST_F(RendererDrawing, IsClippedToTheCell) {
  serve_thumbnail(148, 148);
  show_file();

  draw({20, 20, 100, 50});

  EXPECT_EQ(at(119, 69), kPicture);
  EXPECT_EQ(at(120, 69), support::kBlack);
  EXPECT_EQ(at(119, 70), support::kBlack);
}

TEST_F(RendererDrawing, IsShrunkByThePadding) {
  gtk_cell_renderer_set_padding(cell_.get(), 10, 20);
  serve_thumbnail(200, 200);
  show_file();

  draw({0, 0, 168, 188});

  EXPECT_EQ(at(147, 147), kPicture);
  EXPECT_EQ(at(148, 147), support::kBlack);
  EXPECT_EQ(at(147, 148), support::kBlack);
}

TEST_F(DrawnFile, LiesAtTheCellsOrigin) {
  serve_thumbnail(148, 148);
  show_file();

  draw({30, 40, 148, 148});

  EXPECT_EQ(at(30, 40), kPicture);
  EXPECT_EQ(at(177, 187), kPicture);
  EXPECT_EQ(at(29, 40), support::kBlack);
  EXPECT_EQ(at(30, 39), support::kBlack);
  EXPECT_EQ(at(178, 187), support::kBlack);
}

TEST_F(DrawnFile, LiesInTheMiddleOfALargerCell) {
  serve_thumbnail(148, 148);
  show_file();

  draw({10, 10, 168, 188});

  EXPECT_EQ(at(20, 30), kPicture);
  EXPECT_EQ(at(19, 30), support::kBlack);
  EXPECT_EQ(at(20, 29), support::kBlack);
}

TEST_F(DrawnFile, KeepsTheSizeOfItsThumbnail) {
  serve_thumbnail(100, 60);
  show_file();

  draw_file();

  EXPECT_EQ(at(99, 59), kPicture);
  EXPECT_EQ(at(100, 59), support::kBlack);
  EXPECT_EQ(at(99, 60), support::kBlack);
}

TEST_F(DrawnFile, IsStretchedToTheSmallIconSize) {
  pb_app_common_set_icon_size(64);
  serve_thumbnail(148, 100);
  show_file();

  draw({0, 0, 64, 64});

  EXPECT_EQ(at(63, 63), kPicture);
  EXPECT_EQ(at(64, 63), support::kBlack);
}

TEST_F(DrawnFile, GrowsToTheSmallIconSize) {
  pb_app_common_set_icon_size(64);
  serve_thumbnail(20, 10);
  show_file();

  draw({0, 0, 64, 64});

  EXPECT_EQ(at(63, 63), kPicture);
}

TEST_F(DrawnFile, IsWashedOutWhenDeleted) {
  serve_thumbnail(148, 148);
  show_file();
  pb_item_set_deleted(item_.get(), TRUE);

  draw_file();

  EXPECT_LT(at(20, 20).red - at(20, 20).green, 40);
}

TEST_F(DrawnFile, WithoutAThumbnailShowsThePlaceholder) {
  show_file();

  draw_file();

  EXPECT_EQ(at(70, 70), kNoPicture);
}

TEST_F(DrawnFile, WithoutAnyPictureDrawsNothing) {
  fake::platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };
  show_file();

  draw_file();

  EXPECT_TRUE(is_blank());
}

TEST_F(DrawnFile, HasNoMarksOfItsOwn) {
  serve_thumbnail(148, 148);
  show_file();

  draw_file();

  EXPECT_THAT(fake::calls_of("rsrc_get_image"), IsEmpty());
}

TEST_F(DrawnFile, OnTheWebHasItsMarkInTheCorner) {
  serve_thumbnail(148, 148);
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(132, 0), kWebFileMark);
  EXPECT_EQ(at(147, 11), kWebFileMark);
  EXPECT_EQ(at(131, 0), kPicture);
  EXPECT_EQ(at(132, 12), kPicture);
}

TEST_F(DrawnFile, OnTheWebHasItsMarkInTheCornerOfTheThumbnail) {
  serve_thumbnail(100, 60);
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(84, 0), kWebFileMark);
  EXPECT_EQ(at(83, 0), kPicture);
}

TEST_F(DrawnFile, OnTheWebHasItsMarkOnThePlaceholderToo) {
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(147, 0), kWebFileMark);
}

TEST_F(DrawnFile, OnTheWebKeepsAThumbnailThatIsSmallerThanTheMark) {
  serve_thumbnail(8, 6);
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(7, 5), kWebFileMark);
  EXPECT_EQ(at(8, 5), support::kBlack);
}

TEST_F(DrawnFile, OnTheWebShowsThePartOfALargerMarkThatFits) {
  serve_thumbnail(8, 6);
  fake::platform().rsrc_get_image = [](gint, gint) {
    return support::quartered_pixbuf(16, 12).release();
  };
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(0, 0), support::kGreen);
  EXPECT_EQ(at(7, 5), support::kGreen);
}

TEST_F(DrawnFile, OnTheWebIsMarkedInItsAlphaToo) {
  serve_thumbnail(148, 148, Rgba{0, 0, 0, 0}, true);
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(147, 0), kWebFileMark);
  EXPECT_EQ(at(70, 70), support::kBlack);
}

TEST_F(DrawnFile, BeingSentHasNoMark) {
  serve_thumbnail(148, 148);
  show_file();
  item_->nfid = -2;

  draw_file();

  EXPECT_EQ(at(147, 0), kPicture);
}

TEST_F(DrawnFile, IsDrawnWithoutAMarkThatCannotBeLoaded) {
  serve_thumbnail(148, 148);
  fake::platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };
  show_file();
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(147, 0), kPicture);
}

TEST_F(DrawnFile, DropsItsThumbnail) {
  auto thumbnail = support::solid_pixbuf(148, 148, kPicture);
  const support::ExpectFinalized watch(thumbnail.get());
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [&](gint, gint, const gchar *, gboolean, gint,
                                                        GdkPixbuf **pixbuf) {
    *pixbuf = thumbnail.release();
    return 1;
  };
  show_file();

  draw_file();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(DrawnFile, HasNoCaption) {
  serve_thumbnail(148, 148);
  show_file();

  draw_file();

  EXPECT_THAT(captions(), IsEmpty());
}

TEST_F(DrawnVideo, HasThePlayMarkInTheMiddle) {
  serve_thumbnail(148, 148);
  show_file();
  item_->media_type = 2;

  draw_file();

  EXPECT_EQ(at(64, 59), kPlayMark);
  EXPECT_EQ(at(83, 88), kPlayMark);
  EXPECT_EQ(at(63, 59), kPicture);
  EXPECT_EQ(at(64, 58), kPicture);
  EXPECT_EQ(at(84, 88), kPicture);
}

TEST_F(DrawnVideo, WithoutAThumbnailShowsItsPlaceholder) {
  show_file();
  item_->media_type = 2;

  draw_file();

  EXPECT_EQ(at(10, 10), kNoVideo);
}

TEST_F(DrawnVideo, WithoutAThumbnailHasNoPlayMark) {
  show_file();
  item_->media_type = 2;

  draw_file();

  EXPECT_EQ(at(74, 74), kNoVideo);
}

TEST_F(DrawnVideo, OnTheWebHasBothMarks) {
  serve_thumbnail(148, 148);
  show_file();
  item_->media_type = 2;
  item_->nfid = 3;

  draw_file();

  EXPECT_EQ(at(74, 74), kPlayMark);
  EXPECT_EQ(at(147, 0), kWebFileMark);
}

TEST_F(DrawnVideo, IsNotMarkedForAnotherMediaType) {
  serve_thumbnail(148, 148);
  show_file();
  item_->media_type = 1;

  draw_file();

  EXPECT_EQ(at(74, 74), kPicture);
}

TEST_F(DrawnAlbum, HasItsCoverInTheFrame) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  EXPECT_EQ(at(19, 9), kPicture);
  EXPECT_EQ(at(126, 116), kPicture);
  EXPECT_EQ(at(18, 9), kFrame);
  EXPECT_EQ(at(127, 116), kFrame);
}

TEST_F(DrawnAlbum, TakesBitmap83ForTheFrame) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  EXPECT_THAT(fake::calls_of("rsrc_get_image"), ElementsAre(testing::HasSubstr(", 83)")));
}

TEST_F(DrawnAlbum, WithoutACoverShowsThePlaceholder) {
  show_album();

  draw_album();

  EXPECT_EQ(at(70, 60), kNoCover);
}

TEST_F(DrawnAlbum, WithoutACoverHasItsCaptionAllTheSame) {
  show_album();

  draw_album();

  EXPECT_EQ(captions().size(), 2U);
}

TEST_F(DrawnAlbum, WithoutAFrameIsNotDrawn) {
  serve_thumbnail(148, 100);
  fake::platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };
  show_album();

  draw_album();

  EXPECT_TRUE(is_blank());
  EXPECT_THAT(captions(), IsEmpty());
}

TEST_F(DrawnAlbum, NeverDrawsIntoTheSharedFrame) {
  serve_thumbnail(148, 100);
  show_album("Holiday", 9);
  draw_album();

  GdkPixbuf *frame = pb_get_cached_pixbuf(0);

  EXPECT_EQ(support::pixel_at(frame, 70, 60), kFrame);
  EXPECT_EQ(support::pixel_at(frame, 126, 116), kFrame);
}

TEST_F(DrawnAlbum, OnTheWebHasItsMarkAtTheCoversCorner) {
  serve_thumbnail(148, 100);
  show_album("Holiday", 9);

  draw_album();

  EXPECT_EQ(at(103, 99), kWebAlbumMark);
  EXPECT_EQ(at(126, 116), kWebAlbumMark);
  EXPECT_EQ(at(102, 99), kPicture);
  EXPECT_EQ(at(103, 98), kPicture);
  EXPECT_EQ(at(127, 116), kFrame);
}

TEST_F(DrawnAlbum, OnTheWebIsKnownByAllOfItsId) {
  serve_thumbnail(148, 100);
  show_album("Holiday", G_GINT64_CONSTANT(0x100000000));

  draw_album();

  EXPECT_EQ(at(126, 116), kWebAlbumMark);
}

class DrawnLocalAlbum : public RendererDrawing, public testing::WithParamInterface<gint64> {};

TEST_P(DrawnLocalAlbum, HasNoWebMark) {
  serve_thumbnail(148, 100);
  show_album("Holiday", GetParam());

  draw_album();

  EXPECT_EQ(at(126, 116), kPicture);
}

INSTANTIATE_TEST_SUITE_P(WebIds, DrawnLocalAlbum, testing::Values(0, -1, -2));

TEST_F(DrawnAlbum, OnTheWebHasItsMarkOnThePlaceholderToo) {
  show_album("Holiday", 9);

  draw_album();

  EXPECT_EQ(at(126, 116), kWebAlbumMark);
}

TEST_F(DrawnAlbum, HasNoMarkOfAWebFile) {
  serve_thumbnail(148, 100);
  show_album();
  item_->nfid = 3;

  draw_album();

  EXPECT_EQ(at(137, 0), kFrame);
}

TEST_F(DrawnAlbum, IsNotStretchedToTheSmallIconSize) {
  pb_app_common_set_icon_size(64);
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  EXPECT_EQ(at(137, 126), kFrame);
}

TEST_F(DrawnAlbum, DropsItsCover) {
  auto cover = support::solid_pixbuf(148, 100, kPicture);
  const support::ExpectFinalized watch(cover.get());
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [&](const gchar *, gint, gint) {
    return cover.release();
  };
  show_album();

  draw_album();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(DrawnCaption, IsTheNameThenTheCount) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  ASSERT_EQ(captions().size(), 2U);
  EXPECT_EQ(captions()[0].text, "Holiday");
  EXPECT_EQ(captions()[1].text, "(12)");
}

TEST_F(DrawnCaption, HasTheNameAtTheBoxesOrigin) {
  serve_thumbnail(148, 100);
  show_album();

  draw({30, 40, 138, 167});

  ASSERT_FALSE(captions().empty());
  const PbDrawTextInfo &info = captions()[0].info;
  EXPECT_EQ(info.drawable, GDK_DRAWABLE(canvas_.get()));
  EXPECT_EQ(info.x, 30);
  EXPECT_EQ(info.y, 40);
  EXPECT_EQ(info.width, 138);
  EXPECT_EQ(info.height, 20);
}

TEST_F(DrawnCaption, HasTheNameInLargeNormalLetters) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  ASSERT_FALSE(captions().empty());
  EXPECT_EQ(captions()[0].info.font_size, 18);
  EXPECT_EQ(captions()[0].info.weight, 400);
}

TEST_F(DrawnCaption, HasTheCountBelowTheName) {
  serve_thumbnail(148, 100);
  show_album();

  draw({30, 40, 138, 167});

  ASSERT_EQ(captions().size(), 2U);
  const PbDrawTextInfo &info = captions()[1].info;
  EXPECT_EQ(info.drawable, GDK_DRAWABLE(canvas_.get()));
  EXPECT_EQ(info.x, 30);
  EXPECT_EQ(info.y, 65);
  EXPECT_EQ(info.width, 138);
  EXPECT_EQ(info.height, 20);
}

TEST_F(DrawnCaption, HasTheCountInSmallBoldLetters) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  ASSERT_EQ(captions().size(), 2U);
  EXPECT_EQ(captions()[1].info.font_size, 13);
  EXPECT_EQ(captions()[1].info.weight, 700);
}

TEST_F(DrawnCaption, IsWhite) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  for (const Caption &caption : captions()) {
    EXPECT_EQ(caption.color.red, 0xFFFF);
    EXPECT_EQ(caption.color.green, 0xFFFF);
    EXPECT_EQ(caption.color.blue, 0xFFFF);
  }
}

TEST_F(DrawnCaption, IsUpright) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  for (const Caption &caption : captions()) EXPECT_NE(caption.info.rotate, PB_TEXT_ROTATE_270);
}

TEST_F(DrawnCaption, HasItsAlignment) {
  serve_thumbnail(148, 100);
  show_album();

  draw_album();

  for (const Caption &caption : captions()) {
    EXPECT_FLOAT_EQ(caption.info.align_x, 0.5F);
    EXPECT_FLOAT_EQ(caption.info.align_y, 1.1F);
  }
}

TEST_F(DrawnCaption, IsSeenUnderTheCover) {
  fake::platform().rsrc_get_image = [](gint, gint) {
    return support::solid_pixbuf(138, 117, kNoCover).release();
  };
  show_album("WWWWWWWW");

  draw_album();

  int lit = 0;
  for (int y = 118; y < kCanvasSize; ++y) {
    for (int x = 0; x < kCanvasSize; ++x) lit += at(x, y) == support::kWhite;
  }
  EXPECT_GT(lit, 0);
}

TEST_F(DrawnCaption, OfTheQuickPostAlbumHasNoCount) {
  serve_thumbnail(148, 100);
  show_album("drovo");

  draw_album();

  ASSERT_EQ(captions().size(), 1U);
  EXPECT_EQ(captions()[0].text, "drovo");
}

class DrawnCaptionOfASimilarName : public RendererDrawing,
                                   public testing::WithParamInterface<const char *> {};

TEST_P(DrawnCaptionOfASimilarName, HasItsCount) {
  serve_thumbnail(148, 100);
  show_album(GetParam());

  draw_album();

  EXPECT_EQ(captions().back().text, "(12)");
}

INSTANTIATE_TEST_SUITE_P(Names, DrawnCaptionOfASimilarName,
                         testing::Values("Drovo", "drovo ", "drov", "", nullptr));

TEST_F(DrawnCaption, OfANamelessAlbumIsTheCountAlone) {
  serve_thumbnail(148, 100);
  show_album(nullptr);

  draw_album();

  ASSERT_EQ(captions().size(), 1U);
  EXPECT_EQ(captions()[0].text, "(12)");
}

TEST_F(DrawnCaption, OfANameThatIsNoTextIsDrawnAllTheSame) {
  serve_thumbnail(148, 100);
  show_album("caf\xE9");

  draw_album();

  EXPECT_EQ(captions().size(), 2U);
}

}  // namespace

#include "common/logged-text.hpp"
#include "renderer-fixture.hpp"

namespace {

using testing::Contains;

struct Measures {
  gint x = -1;
  gint y = -1;
  gint width = -1;
  gint height = -1;

  bool operator==(const Measures &) const = default;
};

void PrintTo(const Measures &measures, std::ostream *out) {
  *out << measures.width << "x" << measures.height << "+" << measures.x << "+" << measures.y;
}

class RendererSize : public RendererFixture {
 protected:
  /// Asks the class and not gtk_cell_renderer_get_size(), which has a fixed size of its own.
  Measures measure(GdkRectangle *cell_area = nullptr) {
    Measures result;
    GTK_CELL_RENDERER_GET_CLASS(cell_.get())
        ->get_size(cell_.get(), nullptr, cell_area, &result.x, &result.y, &result.width,
                   &result.height);
    return result;
  }
};

TEST_F(RendererSize, OfAFileIsTheIconSize) {
  show_file();

  EXPECT_EQ(measure().width, 148);
  EXPECT_EQ(measure().height, 148);
}

TEST_F(RendererSize, OfAFileIsSmallAtIconSize64) {
  pb_app_common_set_icon_size(64);
  show_file();

  EXPECT_EQ(measure().width, 64);
  EXPECT_EQ(measure().height, 64);
}

class RendererSizeAtOtherIconSizes : public RendererSize,
                                     public testing::WithParamInterface<int> {};

TEST_P(RendererSizeAtOtherIconSizes, OfAFileIsLarge) {
  pb_app_common_set_icon_size(GetParam());
  show_file();

  EXPECT_EQ(measure().width, 148);
}

INSTANTIATE_TEST_SUITE_P(IconSizes, RendererSizeAtOtherIconSizes,
                         testing::Values(100, 63, 65, 0, -1, 148, 1000));

TEST_F(RendererSize, OfAFileHasPaddingOnBothSides) {
  gtk_cell_renderer_set_padding(cell_.get(), 3, 5);
  pb_app_common_set_icon_size(100);
  show_file();

  EXPECT_EQ(measure().width, 148 + 2 * 3);
  EXPECT_EQ(measure().height, 148 + 2 * 5);
}

TEST_F(RendererSize, OfAnAlbumIsTheFrameWithItsCaption) {
  show_album();

  EXPECT_EQ(measure().width, 138);
  EXPECT_EQ(measure().height, 167);
}

TEST_F(RendererSize, OfAnAlbumDoesNotDependOnTheIconSize) {
  pb_app_common_set_icon_size(64);
  show_album();

  EXPECT_EQ(measure().width, 138);
  EXPECT_EQ(measure().height, 167);
}

TEST_F(RendererSize, OfAnAlbumHasPaddingOnBothSides) {
  gtk_cell_renderer_set_padding(cell_.get(), 3, 5);
  show_album();

  EXPECT_EQ(measure().width, 138 + 2 * 3);
  EXPECT_EQ(measure().height, 167 + 2 * 5);
}

TEST_F(RendererSize, WithoutAnItemIsLogged) {
  measure();

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_item_renderer_get_size]item not ready\n")));
}

TEST_F(RendererSize, WithoutAnItemLeavesTheOutputsUntouched) {
  GdkRectangle area = {0, 0, 300, 300};

  EXPECT_EQ(measure(&area), Measures{});
}

TEST_F(RendererSize, CentresInACellByTheAlignment) {
  show_file();
  GdkRectangle area = {7, 9, 248, 348};

  EXPECT_EQ(measure(&area).x, 50);
  EXPECT_EQ(measure(&area).y, 100);
}

TEST_F(RendererSize, FollowsTheAlignment) {
  gtk_cell_renderer_set_alignment(cell_.get(), 1.0F, 0.0F);
  show_file();
  GdkRectangle area = {7, 9, 248, 348};

  EXPECT_EQ(measure(&area).x, 100);
  EXPECT_EQ(measure(&area).y, 0);
}

TEST_F(RendererSize, CutsOffsetsToWholePixels) {
  show_file();
  GdkRectangle area = {0, 0, 151, 155};

  EXPECT_EQ(measure(&area).x, 1);
  EXPECT_EQ(measure(&area).y, 3);
}

TEST_F(RendererSize, HasNoNegativeOffsets) {
  show_file();
  GdkRectangle area = {0, 0, 100, 20};

  EXPECT_EQ(measure(&area).x, 0);
  EXPECT_EQ(measure(&area).y, 0);
}

TEST_F(RendererSize, CountsThePaddingAsPartOfTheCell) {
  gtk_cell_renderer_set_padding(cell_.get(), 10, 10);
  show_file();
  GdkRectangle area = {0, 0, 268, 268};

  EXPECT_EQ(measure(&area).x, 50);
}

TEST_F(RendererSize, HasNoOffsetsWithoutACell) {
  show_file();

  EXPECT_EQ(measure().x, 0);
  EXPECT_EQ(measure().y, 0);
}

TEST_F(RendererSize, WritesOnlyTheOutputsThatAreGiven) {
  show_file();
  GdkRectangle area = {0, 0, 248, 248};
  gint y = -1;

  GTK_CELL_RENDERER_GET_CLASS(cell_.get())
      ->get_size(cell_.get(), nullptr, &area, nullptr, &y, nullptr, nullptr);

  EXPECT_EQ(y, 50);
}

}  // namespace

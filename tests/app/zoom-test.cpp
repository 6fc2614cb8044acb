#include "zoom.hpp"

#include <gtest/gtest.h>

using gallery::Zoom;

namespace {

/// A picture as wide as the window and half as high.
class Zooming : public testing::Test {
 protected:
  Zooming() { zoom_.set_sizes({400, 800}, {400, 400}); }

  Zoom zoom_;
};

}  // namespace

TEST_F(Zooming, ShowsAFittedPictureInTheMiddle) {
  const Zoom::Place place = zoom_.place();

  EXPECT_EQ(place.x, 0);
  EXPECT_EQ(place.y, 200);
  EXPECT_EQ(place.width, 400);
  EXPECT_EQ(place.height, 400);
  EXPECT_FALSE(zoom_.is_enlarged());
}

TEST_F(Zooming, KeepsThePointUnderThePointer) {
  zoom_.by(4, 100, 300);

  // The point was a quarter of the picture from its left and from its upper edge.
  const Zoom::Place place = zoom_.place();
  EXPECT_EQ(place.x + place.width / 4, 100);
  EXPECT_EQ(place.y + place.height / 4, 300);
}

TEST_F(Zooming, CentresWhatIsStillLowerThanTheWindow) {
  zoom_.by(1.5, 200, 250);

  const Zoom::Place place = zoom_.place();
  EXPECT_EQ(place.y, 100);
  EXPECT_EQ(place.height, 600);
}

TEST_F(Zooming, NeverMakesAPictureSmallerThanFitted) {
  zoom_.by(0.5, 10, 10);

  EXPECT_EQ(zoom_.factor(), 1);
  EXPECT_EQ(zoom_.place().x, 0);
}

TEST_F(Zooming, EndsAtEightTimes) {
  zoom_.by(100, 200, 400);

  EXPECT_EQ(zoom_.factor(), 8);
}

TEST_F(Zooming, ComesBackToFittedByTheSameSteps) {
  for (int i = 0; i < 3; ++i) zoom_.by(1.4, 37, 411);
  for (int i = 0; i < 3; ++i) zoom_.by(1 / 1.4, 300, 500);

  EXPECT_FALSE(zoom_.is_enlarged());
  EXPECT_EQ(zoom_.place().x, 0);
}

TEST_F(Zooming, MovesAnEnlargedPicture) {
  zoom_.by(4, 200, 400);
  const double before = zoom_.place().x;

  zoom_.move(-50, 0);

  EXPECT_EQ(zoom_.place().x, before - 50);
}

TEST_F(Zooming, StopsAtTheEdgesOfThePicture) {
  zoom_.by(4, 200, 400);

  zoom_.move(10000, -10000);

  const Zoom::Place place = zoom_.place();
  EXPECT_EQ(place.x, 0);
  EXPECT_EQ(place.y + place.height, 800);
}

TEST_F(Zooming, DoesNotMoveAFittedPicture) {
  zoom_.move(30, 30);

  EXPECT_EQ(zoom_.place().x, 0);
  EXPECT_EQ(zoom_.place().y, 200);
}

TEST_F(Zooming, HoldsTheEdgesWhenTheWindowGrows) {
  zoom_.by(2, 0, 400);
  zoom_.move(-10000, 0);

  zoom_.set_sizes({800, 400}, {400, 400});

  EXPECT_EQ(zoom_.place().x, 0);
  EXPECT_EQ(zoom_.place().width, 800);
}

TEST_F(Zooming, IsFittedAfterAReset) {
  zoom_.by(3, 10, 10);

  zoom_.reset();

  EXPECT_FALSE(zoom_.is_enlarged());
  EXPECT_EQ(zoom_.place().y, 200);
}

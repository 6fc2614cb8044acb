#include "picture-supply.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <picture-loader.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"

using gallery::PictureSupply;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A request that the loader has taken.
struct Request {
  guint id;
  std::string path;
  int width;
  int height;
  picture_loaded_cb callback;
  gpointer user_data;
};

std::vector<Request> &requests() {
  static std::vector<Request> instance;
  return instance;
}

std::vector<std::string> requested() {
  std::vector<std::string> paths;
  for (const Request &request : requests()) paths.push_back(request.path);
  return paths;
}

class Supply : public testing::Test {
 protected:
  Supply() : supply_([this](const std::string &path) { arrived_.push_back(path); }) {
    supply_.set_box(480, 800);
  }

  /// Ends the oldest request.
  static void answer(GdkPixbuf *pixbuf, const char *problem = nullptr) {
    const Request request = requests().front();
    requests().erase(requests().begin());
    request.callback(request.id, pixbuf, problem, request.user_data);
  }

  static void answer_with_a_picture() { answer(support::solid_pixbuf(4, 4, support::kRed).get()); }

  [[nodiscard]] bool has_picture(const std::string &path) const {
    const auto *picture = supply_.find(path);
    return picture != nullptr && picture->pixbuf;
  }

  std::vector<std::string> arrived_;
  PictureSupply supply_;
};

}  // namespace

extern "C" guint picture_loader_load(const gchar *path, gint width, gint height,
                                     picture_loaded_cb callback, gpointer user_data) {
  static guint last = 0;
  requests().push_back({++last, path, width, height, callback, user_data});
  return last;
}

extern "C" void picture_loader_cancel(guint id) {
  std::erase_if(requests(), [id](const Request &request) { return request.id == id; });
}

TEST_F(Supply, LoadsWhatIsLookedAtForTheBox) {
  supply_.want("/a", {});

  ASSERT_THAT(requested(), ElementsAre("/a"));
  EXPECT_EQ(requests()[0].width, 480);
  EXPECT_EQ(requests()[0].height, 800);
}

TEST_F(Supply, LoadsNeighboursOnlyAfterwards) {
  supply_.want("/a", {"/b", "/c"});
  EXPECT_THAT(requested(), ElementsAre("/a"));

  answer_with_a_picture();
  EXPECT_THAT(requested(), ElementsAre("/b"));

  answer_with_a_picture();
  EXPECT_THAT(requested(), ElementsAre("/c"));

  answer_with_a_picture();
  EXPECT_THAT(requested(), IsEmpty());
}

TEST_F(Supply, KeepsWhatWasLoaded) {
  supply_.want("/a", {});

  answer_with_a_picture();

  EXPECT_TRUE(has_picture("/a"));
  EXPECT_THAT(arrived_, ElementsAre("/a"));
}

TEST_F(Supply, HasANeighbourAtOnceWhenItIsLookedAt) {
  supply_.want("/a", {"/b"});
  answer_with_a_picture();
  answer_with_a_picture();

  supply_.want("/b", {"/a"});

  EXPECT_TRUE(has_picture("/b"));
  EXPECT_THAT(requested(), IsEmpty());
}

TEST_F(Supply, KeepsTheReasonOfAFailure) {
  supply_.want("/a", {});

  answer(nullptr, "The file is damaged.");

  ASSERT_NE(supply_.find("/a"), nullptr);
  EXPECT_FALSE(has_picture("/a"));
  EXPECT_EQ(supply_.find("/a")->problem, "The file is damaged.");
}

TEST_F(Supply, DoesNotTryAFailureAgain) {
  supply_.want("/a", {});
  answer(nullptr, "The file is damaged.");

  supply_.want("/a", {});

  EXPECT_THAT(requested(), IsEmpty());
}

TEST_F(Supply, ForgetsWhatIsFarAway) {
  supply_.want("/a", {});
  answer_with_a_picture();

  supply_.want("/c", {"/b"});

  EXPECT_EQ(supply_.find("/a"), nullptr);
}

TEST_F(Supply, GivesUpWhatNobodyWantsAnyMore) {
  supply_.want("/a", {});

  supply_.want("/b", {});

  EXPECT_THAT(requested(), ElementsAre("/b"));
}

TEST_F(Supply, LetsANeighbourWaitForWhatIsLookedAt) {
  supply_.want("/a", {"/b"});
  answer_with_a_picture();
  ASSERT_THAT(requested(), ElementsAre("/b"));

  supply_.want("/c", {"/b"});

  EXPECT_THAT(requested(), ElementsAre("/c"));
}

TEST_F(Supply, DoesNotStartANeighbourAgainForTheSameWish) {
  supply_.want("/a", {"/b"});
  answer_with_a_picture();
  const guint request = requests()[0].id;

  supply_.want("/a", {"/b"});

  ASSERT_THAT(requested(), ElementsAre("/b"));
  EXPECT_EQ(requests()[0].id, request);
}

TEST_F(Supply, LoadsAgainForAnotherBoxAndKeepsTheOldPictureMeanwhile) {
  supply_.want("/a", {});
  answer_with_a_picture();

  supply_.set_box(800, 480);

  EXPECT_TRUE(has_picture("/a"));
  ASSERT_THAT(requested(), ElementsAre("/a"));
  EXPECT_EQ(requests()[0].width, 800);
}

TEST_F(Supply, LoadsNothingTwiceForTheSameBox) {
  supply_.want("/a", {});
  answer_with_a_picture();

  supply_.set_box(480, 800);

  EXPECT_THAT(requested(), IsEmpty());
}

TEST(SupplyWithoutABox, Waits) {
  PictureSupply supply([](const std::string &) {});

  supply.want("/a", {});

  EXPECT_THAT(requested(), IsEmpty());
}

TEST(SupplyThatEnds, GivesUpItsRequests) {
  {
    PictureSupply supply([](const std::string &) {});
    supply.set_box(10, 10);
    supply.want("/a", {});
  }

  EXPECT_THAT(requested(), IsEmpty());
}

TEST_F(Supply, AsksAgainForAFileThatHasChanged) {
  const support::TempDir folder;
  const std::string path = folder.write("a.png", "first");
  supply_.want(path, {});
  answer_with_a_picture();
  folder.write("a.png", "the second");

  const bool changed = supply_.look_again();

  EXPECT_TRUE(changed);
  EXPECT_THAT(requested(), ElementsAre(path));
  EXPECT_TRUE(has_picture(path));
}

TEST_F(Supply, AsksNotAgainForAFileThatIsTheSame) {
  const support::TempDir folder;
  const std::string path = folder.write("a.png", "first");
  supply_.want(path, {});
  answer_with_a_picture();

  const bool changed = supply_.look_again();

  EXPECT_FALSE(changed);
  EXPECT_THAT(requested(), IsEmpty());
}

TEST_F(Supply, AsksAgainForAFileThatChangesWhileItIsLoaded) {
  const support::TempDir folder;
  const std::string path = folder.write("a.png", "first");
  supply_.want(path, {});
  folder.write("a.png", "the second");

  supply_.look_again();

  EXPECT_THAT(requested(), ElementsAre(path));
}

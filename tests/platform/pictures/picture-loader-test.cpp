#include <picture-loader.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "main-loop.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::run_until;
using testing::ElementsAre;
using testing::IsEmpty;

/// What the callback of a request was told.
struct Told {
  guint request;
  PixbufRef pixbuf;
  std::string problem;
};

class PictureLoader : public support::GlibTest {
 protected:
  void TearDown() override {
    picture_loader_shutdown();
    unsetenv("PHOTOBROWSER_DECODER");
  }

  guint load(const std::string &path, int width = 500, int height = 500) {
    return picture_loader_load(path.c_str(), width, height, note, this);
  }
  /// Loads and waits for the end.
  const Told &loaded(const std::string &path, int width = 500, int height = 500) {
    const size_t before = told_.size();
    load(path, width, height);
    EXPECT_TRUE(run_until([&] { return told_.size() > before; }));
    return told_.back();
  }
  std::string picture(const char *name, int orientation = 1) {
    const Bytes jpeg = test::jpeg_of(support::quartered_pixbuf(64, 48).get());
    return dir_.write(name, test::with_exif(jpeg, {.orientation = orientation}));
  }
  std::vector<guint> requests_told() const {
    std::vector<guint> requests;
    for (const Told &told : told_) requests.push_back(told.request);
    return requests;
  }
  static void use_fault(const char *fault) {
    setenv("PHOTOBROWSER_DECODER", PB_FAULTY_DECODER, 1);
    setenv("PB_FAULT", fault, 1);
  }

  /// A request whose decode is under way and does not end. From here on pictures are of a
  /// stand-in's.
  guint load_and_get_stuck() {
    use_fault("hangs-at-width-77");
    const guint request = load(picture("stuck"), 77, 77);
    EXPECT_TRUE(run_until([] { return !test::children().empty(); }));
    return request;
  }

  support::TempDir dir_;
  std::vector<Told> told_;

 private:
  static void note(guint request, GdkPixbuf *pixbuf, const gchar *problem, gpointer self) {
    static_cast<PictureLoader *>(self)->told_.push_back(
        {request, PixbufRef::share(pixbuf), problem == nullptr ? "" : problem});
  }
};

TEST_F(PictureLoader, GivesThePicture) {
  const Told &told = loaded(picture("a"));

  ASSERT_TRUE(told.pixbuf);
  EXPECT_EQ(told.problem, "");
  EXPECT_EQ(test::quarters(told.pixbuf.get()), "RGBW");
}

TEST_F(PictureLoader, TurnsByEachOrientation) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const Told &told = loaded(picture("a", orientation));

    ASSERT_TRUE(told.pixbuf);
    EXPECT_EQ(test::quarters(told.pixbuf.get()), test::kTurnedQuarters[orientation]);
  }
}

TEST_F(PictureLoader, FitsTheBox) {
  const Told &told = loaded(picture("a", 6), 24, 64);

  EXPECT_EQ(gdk_pixbuf_get_width(told.pixbuf.get()), 24);
  EXPECT_EQ(gdk_pixbuf_get_height(told.pixbuf.get()), 32);
}

TEST_F(PictureLoader, DoesNotEnlarge) {
  EXPECT_EQ(gdk_pixbuf_get_width(loaded(picture("a"), 5000, 5000).pixbuf.get()), 64);
}

TEST_F(PictureLoader, AnswersNotBeforeTheMainLoopRuns) {
  load(picture("a"));
  g_usleep(50 * G_TIME_SPAN_MILLISECOND);

  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(PictureLoader, GivesEachRequestItsOwnNumber) {
  const guint first = load(picture("a"));
  const guint second = load(picture("a"));

  EXPECT_NE(first, 0u);
  EXPECT_NE(second, 0u);
  EXPECT_NE(first, second);
}

TEST_F(PictureLoader, AnswersEachRequestOnce) {
  const std::string path = picture("a");
  for (int i = 0; i < 10; ++i) load(path);

  run_until([this] { return told_.size() >= 10; });
  test::run_for(50);

  EXPECT_EQ(told_.size(), 10u);
}

TEST_F(PictureLoader, LoadsTheNewestRequestFirst) {
  const guint stuck = load_and_get_stuck();
  const guint older = load(picture("c"));
  const guint newer = load(picture("d"));
  picture_loader_cancel(stuck);

  ASSERT_TRUE(run_until([this] { return told_.size() >= 2; }));

  EXPECT_THAT(requests_told(), ElementsAre(newer, older));
}

TEST_F(PictureLoader, IsSilentAboutACancelledRequest) {
  const guint cancelled = load(picture("a"));
  const guint kept = load(picture("b"));
  picture_loader_cancel(cancelled);

  run_until([this] { return !told_.empty(); });
  test::run_for(50);

  EXPECT_THAT(requests_told(), ElementsAre(kept));
}

TEST_F(PictureLoader, IsSilentWhenCancelledAfterTheDecode) {
  const guint cancelled = load(picture("a"));
  g_usleep(200 * G_TIME_SPAN_MILLISECOND);
  picture_loader_cancel(cancelled);

  test::run_for(50);

  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(PictureLoader, DoesNotWaitForACancelledDecode) {
  const guint stuck = load_and_get_stuck();
  const gint64 begin = g_get_monotonic_time();
  picture_loader_cancel(stuck);

  const Told &told = loaded(picture("b"));

  EXPECT_TRUE(told.pixbuf);
  EXPECT_LT(g_get_monotonic_time() - begin, TimeLimit().longest);
}

TEST_F(PictureLoader, IgnoresCancellationOfWhatIsNoRequest) {
  picture_loader_cancel(0);
  picture_loader_cancel(4711);

  EXPECT_TRUE(loaded(picture("a")).pixbuf);
}

TEST_F(PictureLoader, AllowsRequestsAndCancellationsFromACallback) {
  struct Chain {
    std::string path;
    int rounds = 0;
    static void go_on(guint request, GdkPixbuf *, const gchar *, gpointer data) {
      auto *chain = static_cast<Chain *>(data);
      picture_loader_cancel(request);
      if (++chain->rounds < 3) picture_loader_load(chain->path.c_str(), 9, 9, go_on, chain);
    }
  } chain{picture("a")};
  picture_loader_load(chain.path.c_str(), 9, 9, Chain::go_on, &chain);

  EXPECT_TRUE(run_until([&] { return chain.rounds == 3; }));
}

TEST_F(PictureLoader, IsSilentAfterShutdown) {
  load(picture("a"));
  picture_loader_shutdown();
  picture_loader_shutdown();

  test::run_for(50);

  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(PictureLoader, StartsAnewAfterShutdown) {
  loaded(picture("a"));
  picture_loader_shutdown();

  EXPECT_TRUE(loaded(picture("a")).pixbuf);
}

TEST_F(PictureLoader, TellsThatTheFileIsGone) {
  EXPECT_EQ(loaded(dir_.path("none")).problem, "The file is no longer there.");
}

TEST_F(PictureLoader, TellsThatTheFileIsGoneByTheTimeOfTheDecode) {
  const guint stuck = load_and_get_stuck();
  const std::string path = picture("b");
  load(path);
  unlink(path.c_str());
  picture_loader_cancel(stuck);

  run_until([this] { return !told_.empty(); });

  EXPECT_EQ(told_.back().problem, "The file is no longer there.");
}

TEST_F(PictureLoader, ShowsWhatHasReplacedTheFile) {
  const std::string path = picture("a");
  loaded(path);
  const std::string other =
      dir_.write("b", test::jpeg_of(support::solid_pixbuf(64, 48, support::kBlue).get()));
  ASSERT_EQ(rename(other.c_str(), path.c_str()), 0);

  EXPECT_EQ(test::quarters(loaded(path).pixbuf.get()), "BBBB");
}

TEST_F(PictureLoader, TellsThatThePictureIsDamaged) {
  EXPECT_EQ(loaded(dir_.write("a", test::png_start(10, 10).substr(0, 20))).problem,
            "This picture is damaged and cannot be shown.");
}

TEST_F(PictureLoader, TellsThatThePictureIsTooLarge) {
  EXPECT_EQ(loaded(dir_.write("a", test::png_start(100000, 100000))).problem,
            "This picture is too large to be shown safely.");
}

TEST_F(PictureLoader, TellsThatTheKindIsUnknown) {
  EXPECT_EQ(loaded(dir_.write("a", "text")).problem, "This kind of picture cannot be shown.");
}

TEST_F(PictureLoader, TellsThatItIsNoFile) {
  EXPECT_EQ(loaded(dir_.path()).problem, "This is not a picture file.");
}

TEST_F(PictureLoader, TellsThatTheFileMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const std::string path = picture("a");
  ASSERT_EQ(chmod(path.c_str(), 0), 0);

  EXPECT_EQ(loaded(path).problem, "This file cannot be read.");
}

TEST_F(PictureLoader, GivesUpOnADecodeThatDoesNotEnd) {
  use_fault("hangs");

  // Which of them depends on how much of a processor the decoder was given.
  EXPECT_THAT(loaded(picture("a")).problem,
              testing::AnyOf("This picture takes too long to open.",
                             "This picture cannot be shown at the moment."));
}

TEST(Sentence, TellsAllProblemsApart) {
  std::vector<std::string> sentences;
  for (const Problem problem :
       {Problem::kMissing, Problem::kNotReadable, Problem::kNotAFile, Problem::kDamaged,
        Problem::kTooLarge, Problem::kTooSlow, Problem::kUnknown, Problem::kNoVideos,
        Problem::kNoDecoder, Problem::kBusy}) {
    EXPECT_THAT(sentences, testing::Not(testing::Contains(sentence(problem))));
    sentences.emplace_back(sentence(problem));
    EXPECT_EQ(sentences.back().back(), '.');
  }
}

TEST_F(PictureLoader, TellsThatThePartThatDecodesIsMissing) {
  setenv("PHOTOBROWSER_DECODER", "/nonexistent", 1);

  EXPECT_EQ(loaded(picture("a")).problem,
            "Pictures cannot be shown: a part of this program is missing.");
  EXPECT_THAT(take_glib_warnings(), testing::SizeIs(1));
}

TEST_F(PictureLoader, NeedsAPathAndACallback) {
  EXPECT_EQ(picture_loader_load(
                nullptr, 9, 9, [](guint, GdkPixbuf *, const gchar *, gpointer) {}, nullptr),
            0u);
  EXPECT_EQ(picture_loader_load("/", 9, 9, nullptr, nullptr), 0u);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("picture_loader_load: assertion 'path != NULL' failed",
                          "picture_loader_load: assertion 'callback != NULL' failed"));
}

}  // namespace
}  // namespace phone::pictures

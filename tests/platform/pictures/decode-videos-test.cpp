#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::decode_file;
using testing::ElementsAre;

class DecodeVideo : public support::GlibTest {
 protected:
  void TearDown() override { Pool::shared().shutdown(); }

  std::string film() {
    return dir_.write("a.mov", test::film_of(support::quartered_pixbuf(96, 64).get(), 10));
  }
  /// Has a shell script stand in for the program that takes pictures out of videos.
  void stand_in(const std::string &commands) {
    const std::string program =
        dir_.write("bin/ffmpegthumbnailer", "#!/bin/sh\n" + commands + "\n");
    ASSERT_EQ(chmod(program.c_str(), 0700), 0);
    setenv("PATH", (dir_.path("bin") + ":/usr/bin:/bin").c_str(), 1);
  }

  support::TempDir dir_;
};

TEST_F(DecodeVideo, GivesAPictureOfIt) {
  const pb::StringPtr program(g_find_program_in_path("ffmpegthumbnailer"));
  if (!program) GTEST_SKIP() << "ffmpegthumbnailer is not installed";

  const Result result = decode_file(film(), 148, 148, wire::kUpright);

  ASSERT_EQ(result.problem, Problem::kNone);
  EXPECT_EQ(test::quarters(result.pixbuf.get()), "RGBW");
  EXPECT_EQ(gdk_pixbuf_get_width(result.pixbuf.get()), 96);
}

TEST_F(DecodeVideo, TellsThatTheProgramIsNotInstalled) {
  setenv("PATH", "/nonexistent", 1);

  EXPECT_EQ(decode_file(film(), 148, 148).problem, Problem::kNoVideos);

  std::vector<std::string> said;
  for (const auto &line : support::take_structured_lines())
    said.push_back(line.fields.at("MESSAGE"));
  EXPECT_THAT(said, ElementsAre("No previews of videos: the program ffmpegthumbnailer is not "
                                "installed"));
}

TEST_F(DecodeVideo, TriesAgainOnceTheProgramIsInstalled) {
  const std::string path = film();
  const std::string picture =
      dir_.write("p.png", test::saved_as(support::quartered_pixbuf(9, 9).get(), "png"));
  setenv("PATH", "/nonexistent", 1);
  decode_file(path, 148, 148);

  stand_in("cat " + picture + " > \"$4\"");

  EXPECT_EQ(decode_file(path, 148, 148).problem, Problem::kNone);
}

TEST_F(DecodeVideo, GivesTheProgramTheOpenVideo) {
  const std::string path = film();
  stand_in("cmp -s \"$2\" " + path + " || exit 1; cat " +
           dir_.write("p.png", test::saved_as(support::quartered_pixbuf(9, 9).get(), "png")) +
           " > \"$4\"");

  EXPECT_EQ(decode_file(path, 148, 148).problem, Problem::kNone);
}

TEST_F(DecodeVideo, IsDamagedWhenTheProgramFails) {
  stand_in("exit 1");

  EXPECT_EQ(decode_file(film(), 148, 148).problem, Problem::kDamaged);
}

TEST_F(DecodeVideo, IsNotShownWhenTheProgramGivesNoPicture) {
  stand_in("echo nonsense > \"$4\"");

  EXPECT_EQ(decode_file(film(), 148, 148).problem, Problem::kUnknown);
}

TEST_F(DecodeVideo, EndsAtTheLimitOfTime) {
  stand_in("while :; do :; done");
  const OpenFile file = open_picture(film().c_str());
  Wish wish;
  wish.width = wish.height = 148;
  wish.video_time_limit = {100 * G_TIME_SPAN_MILLISECOND, 20 * G_TIME_SPAN_SECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kTooSlow);

  EXPECT_EQ(test::children().size(), 1u);  // the decoder alone
}

TEST_F(DecodeVideo, IsNotBlamedForAProgramThatWaits) {
  stand_in("exec sleep 60");
  const std::string path = film();
  const OpenFile file = open_picture(path.c_str());
  Wish wish;
  wish.width = wish.height = 148;
  wish.video_time_limit = {50 * G_TIME_SPAN_MILLISECOND, 100 * G_TIME_SPAN_MILLISECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kBusy);

  EXPECT_FALSE(is_known_to_fail(file.info, 148, 148));
}

TEST_F(DecodeVideo, IsNotBlamedForAProgramThatIsKilled) {
  stand_in("kill -KILL $$");

  EXPECT_EQ(decode_file(film(), 148, 148).problem, Problem::kBusy);
}

TEST_F(DecodeVideo, IsTooSlowForAProgramBeyondItsProcessorTime) {
  stand_in("kill -XCPU $$");

  EXPECT_EQ(decode_file(film(), 148, 148).problem, Problem::kTooSlow);
}

TEST_F(DecodeVideo, EndsWithACancellation) {
  stand_in("exec sleep 60");
  const OpenFile file = open_picture(film().c_str());
  Cancellation cancellation;
  Wish wish;
  wish.width = wish.height = 148;
  wish.video_time_limit = {60 * G_TIME_SPAN_SECOND, 60 * G_TIME_SPAN_SECOND};
  wish.cancellation = &cancellation;
  std::thread other([&cancellation] {
    g_usleep(100 * G_TIME_SPAN_MILLISECOND);
    cancellation.cancel();
  });

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kCancelled);

  other.join();
}

}  // namespace
}  // namespace phone::pictures

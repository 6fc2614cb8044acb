#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "decoded.hpp"
#include "file-bytes.hpp"
#include "main-loop.hpp"
#include "processes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::children;
using test::decode_file;
using test::open_descriptors;
using testing::ElementsAre;
using testing::HasSubstr;

class DecodeFaults : public support::GlibTest {
 protected:
  void SetUp() override { Pool::shared().shutdown(); }
  void TearDown() override {
    unsetenv("PHOTOBROWSER_DECODER");
    Pool::shared().shutdown();
  }

  std::string good_picture() {
    return dir_.write("good", test::jpeg_of(support::solid_pixbuf(10, 10, support::kRed).get()));
  }
  /// Has a decoder stand in that has a fault.
  static void use_fault(const char *fault) {
    setenv("PHOTOBROWSER_DECODER", PB_FAULTY_DECODER, 1);
    setenv("PB_FAULT", fault, 1);
  }

  support::TempDir dir_;
};

TEST_F(DecodeFaults, TellsThatThereIsNoFile) {
  EXPECT_EQ(decode_file(dir_.path("none"), 100, 100).problem, Problem::kMissing);
}

TEST_F(DecodeFaults, TellsThatALinkIsNoFile) {
  good_picture();
  ASSERT_EQ(symlink("good", dir_.path("link").c_str()), 0);

  EXPECT_EQ(decode_file(dir_.path("link"), 100, 100).problem, Problem::kNotAFile);
}

TEST_F(DecodeFaults, TellsThatAPipeIsNoFile) {
  ASSERT_EQ(mkfifo(dir_.path("pipe").c_str(), 0600), 0);

  EXPECT_EQ(decode_file(dir_.path("pipe"), 100, 100).problem, Problem::kNotAFile);
}

TEST_F(DecodeFaults, TellsThatADirectoryIsNoFile) {
  EXPECT_EQ(decode_file(dir_.path(), 100, 100).problem, Problem::kNotAFile);
}

TEST_F(DecodeFaults, TellsThatADeviceIsNoFile) {
  EXPECT_EQ(decode_file("/dev/zero", 100, 100).problem, Problem::kNotAFile);
}

TEST_F(DecodeFaults, CannotShowAnEmptyFile) {
  EXPECT_EQ(decode_file(dir_.write("a", ""), 100, 100).problem, Problem::kUnknown);
}

TEST_F(DecodeFaults, CannotShowAFileOfAnotherKind) {
  EXPECT_EQ(decode_file(dir_.write("a.jpg", "not a picture at all"), 100, 100).problem,
            Problem::kUnknown);
}

TEST_F(DecodeFaults, CannotShowADrawingOfHugeSize) {
  const Bytes drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='99999' height='99999'/>";

  EXPECT_EQ(decode_file(dir_.write("a.svg", drawing), 100, 100).problem, Problem::kTooLarge);
}

TEST_F(DecodeFaults, FindsTruncatedPngDamaged) {
  EXPECT_EQ(decode_file(dir_.write("a", test::png_start(10, 10).substr(0, 20)), 100, 100).problem,
            Problem::kDamaged);
}

TEST_F(DecodeFaults, FindsTruncatedTiffDamaged) {
  const Bytes tiff = test::tiff_of(support::solid_pixbuf(64, 64, support::kRed).get(), 1);

  EXPECT_EQ(decode_file(dir_.write("a", tiff.substr(0, 60)), 100, 100).problem, Problem::kDamaged);
}

TEST_F(DecodeFaults, FindsPngOfHugeSizeTooLarge) {
  EXPECT_EQ(decode_file(dir_.write("a", test::png_start(100000, 100000)), 100, 100).problem,
            Problem::kTooLarge);
}

TEST_F(DecodeFaults, FindsGifOfHugeSizeTooLarge) {
  EXPECT_EQ(decode_file(dir_.write("a", test::gif_start(65535, 65535)), 100, 100).problem,
            Problem::kTooLarge);
}

TEST_F(DecodeFaults, RefusesArithmeticCoding) {
  EXPECT_EQ(decode_file(dir_.write("a", test::jpeg_start(0xc9, 32, 32)), 100, 100).problem,
            Problem::kUnknown);
}

TEST_F(DecodeFaults, RefusesToEnlargeBeyondTheLimit) {
  EXPECT_EQ(decode_file(good_picture(), 60000, 60000, wire::kEnlarge).problem, Problem::kTooLarge);
}

TEST_F(DecodeFaults, EndsAtTheLimitOfMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer needs more addresses than the limit";
#endif
  // 600 MB of pixels, within the limit on the size.
  const Bytes header = test::big(15000, 4) + test::big(10000, 4) + Bytes("\x08\x06\0\0\0", 5);
  const Bytes png = Bytes("\x89PNG\r\n\x1a\n") + test::png_chunk("IHDR", header) +
                    test::png_chunk("IDAT", Bytes("\x78\x9c\xed\xc1", 4));

  EXPECT_EQ(decode_file(dir_.write("a", png), 100, 100).problem, Problem::kTooLarge);
  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, EndsAtTheLimitOfTime) {
  use_fault("hangs");
  const OpenFile file = open_picture(good_picture().c_str());
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {50 * G_TIME_SPAN_MILLISECOND, 20 * G_TIME_SPAN_SECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kTooSlow);

  EXPECT_THAT(children(), ElementsAre());
}

TEST_F(DecodeFaults, EndsAtTheLongestTimeWithoutBlamingTheFile) {
  use_fault("sleeps");
  const std::string path = good_picture();
  const OpenFile file = open_picture(path.c_str());
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {50 * G_TIME_SPAN_MILLISECOND, 200 * G_TIME_SPAN_MILLISECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kBusy);

  EXPECT_THAT(children(), ElementsAre());
  unsetenv("PHOTOBROWSER_DECODER");
  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, WaitsForADecoderThatIsNotGivenTheProcessor) {
  use_fault("is-slow-to-begin");
  const OpenFile file = open_picture(good_picture().c_str());
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {50 * G_TIME_SPAN_MILLISECOND, 20 * G_TIME_SPAN_SECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kNone);
}

TEST_F(DecodeFaults, DoesNotBlameTheFileForLessWorkThanTheLimit) {
  use_fault("starves");
  const std::string path = good_picture();
  const OpenFile file = open_picture(path.c_str());
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {150 * G_TIME_SPAN_MILLISECOND, 225 * G_TIME_SPAN_MILLISECOND};

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kBusy);

  unsetenv("PHOTOBROWSER_DECODER");
  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, RemembersAFileThatTakesTooMuchWork) {
  use_fault("hangs");
  const std::string path = good_picture();
  const OpenFile file = open_picture(path.c_str());
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {50 * G_TIME_SPAN_MILLISECOND, 20 * G_TIME_SPAN_SECOND};
  decode_picture(file, wish);
  unsetenv("PHOTOBROWSER_DECODER");

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kTooSlow);
}

TEST_F(DecodeFaults, DoesNotBlameTheFileForADecoderThatIsSlowToEnd) {
  use_fault("closes-and-sleeps");
  const std::string path = good_picture();

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kBusy);

  EXPECT_THAT(children(), ElementsAre());
}

TEST_F(DecodeFaults, DoesNotBlameTheFileForTheAlarmOfADecoder) {
  use_fault("is-alarmed");
  const std::string path = good_picture();

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kBusy);

  unsetenv("PHOTOBROWSER_DECODER");
  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, EndsWithACancellation) {
  use_fault("sleeps");
  const OpenFile file = open_picture(good_picture().c_str());
  Cancellation cancellation;
  Wish wish;
  wish.width = wish.height = 100;
  wish.time_limit = {60 * G_TIME_SPAN_SECOND, 60 * G_TIME_SPAN_SECOND};
  wish.cancellation = &cancellation;
  std::thread other([&cancellation] { cancellation.cancel(); });

  EXPECT_EQ(decode_picture(file, wish).problem, Problem::kCancelled);

  other.join();
  EXPECT_THAT(children(), ElementsAre());
}

TEST_F(DecodeFaults, TakesACrashForDamage) {
  use_fault("crashes");

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kDamaged);
}

TEST_F(DecodeFaults, TellsThatMemoryRanOut) {
  use_fault("runs-out-of-memory");

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kTooLarge);
}

TEST_F(DecodeFaults, DoesNotBlameTheFileWhenProcessesAreKilled) {
  use_fault("is-killed");
  const std::string path = good_picture();

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kBusy);

  unsetenv("PHOTOBROWSER_DECODER");
  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, TriesOnceMoreWhenAProcessIsKilled) {
  setenv("PB_FAULT_WHILE", dir_.write("first", "").c_str(), 1);
  use_fault("is-killed-once");

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, SurvivesAnIdleProcessThatIsKilled) {
  const std::string path = good_picture();
  ASSERT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
  const auto idle = children();
  ASSERT_EQ(idle.size(), 1u);
  kill(idle[0], SIGKILL);

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, GoesOnAfterACrash) {
  use_fault("crashes");
  decode_file(good_picture(), 100, 100);
  unsetenv("PHOTOBROWSER_DECODER");

  const std::string other =
      dir_.write("other", test::jpeg_of(support::solid_pixbuf(10, 10, support::kBlue).get()));

  EXPECT_EQ(decode_file(other, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, SaysOnceThatTheDecoderIsMissing) {
  setenv("PHOTOBROWSER_DECODER", "/nonexistent/photobrowser-decoder", 1);

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNoDecoder);
  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNoDecoder);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("No pictures: the program photobrowser-decoder is not installed"));
}

TEST_F(DecodeFaults, SaysThatTheDecoderDoesNotStart) {
  use_fault("exits-at-once");

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNoDecoder);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("does not start")));
}

class DishonestDecoder : public DecodeFaults, public testing::WithParamInterface<const char *> {};

TEST_P(DishonestDecoder, IsNotBelieved) {
  use_fault(GetParam());

  const Result result = decode_file(good_picture(), 100, 100);

  EXPECT_NE(result.problem, Problem::kNone);
  EXPECT_FALSE(result.pixbuf);
}

INSTANTIATE_TEST_SUITE_P(InEveryWay, DishonestDecoder,
                         testing::Values("talks-nonsense", "answers-another", "answers-larger",
                                         "overlapping-rows", "odd-channels", "short-file",
                                         "unsealed", "no-pixels"));

TEST_F(DecodeFaults, BelievesAnHonestStandIn) {
  use_fault("none");

  EXPECT_EQ(decode_file(good_picture(), 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, RemembersAFailure) {
  use_fault("crashes");
  const std::string path = good_picture();
  decode_file(path, 100, 100);
  unsetenv("PHOTOBROWSER_DECODER");

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kDamaged);
}

TEST_F(DecodeFaults, TriesAgainWhenTheFileHasChanged) {
  use_fault("crashes");
  decode_file(good_picture(), 100, 100);
  unsetenv("PHOTOBROWSER_DECODER");
  const std::string path =
      dir_.write("good", test::jpeg_of(support::solid_pixbuf(20, 20, support::kRed).get()));

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, TriesFullPictureThoughTheSmallOneFailed) {
  use_fault("crashes");
  const std::string path = good_picture();
  decode_file(path, 100, 100);
  unsetenv("PHOTOBROWSER_DECODER");

  EXPECT_EQ(decode_file(path, 1000, 1000).problem, Problem::kNone);
}

TEST_F(DecodeFaults, SurvivesWithoutDescriptors) {
  const std::string path = good_picture();
  const OpenFile file = open_picture(path.c_str());
  const rlim_t in_use = static_cast<rlim_t>(open_descriptors());
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  for (rlim_t spare = 0; spare < 4; ++spare) {
    const rlimit tight{in_use - 3 + spare, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &tight);
    Wish wish;
    wish.width = wish.height = 100;
    const Problem problem = decode_picture(file, wish).problem;
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(problem == Problem::kBusy || problem == Problem::kNone)
        << static_cast<int>(problem);
  }

  EXPECT_EQ(decode_file(path, 100, 100).problem, Problem::kNone);
}

TEST_F(DecodeFaults, LeavesNoDescriptorsBehind) {
  const std::string path = good_picture();
  const std::string damaged = dir_.write("damaged", test::png_start(10, 10).substr(0, 20));
  decode_file(path, 100, 100);
  const int before = open_descriptors();

  for (int i = 1; i < 20; ++i) {
    decode_file(path, 100 + i, 100);
    decode_file(damaged, 100, 100);
  }

  EXPECT_EQ(open_descriptors(), before);
}

TEST_F(DecodeFaults, EndsProcessesOnShutdown) {
  decode_file(good_picture(), 100, 100);
  ASSERT_EQ(children().size(), 1u);

  Pool::shared().shutdown();

  EXPECT_THAT(children(), ElementsAre());
}

TEST_F(DecodeFaults, NeverChangesTheOriginal) {
  const Bytes bytes =
      test::with_exif(test::jpeg_of(support::quartered_pixbuf(400, 300).get()), {.orientation = 6});
  const std::string path = dir_.write("a", bytes);
  struct stat before;
  stat(path.c_str(), &before);

  decode_file(path, 100, 100, wire::kUpright | wire::kPreview);
  decode_file(path, 1000, 1000);

  struct stat after;
  stat(path.c_str(), &after);
  EXPECT_EQ(support::read_file(path), bytes);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
}

/// A line of a file in /proc that begins with a word.
std::string line_of(pid_t process, const char *file, const std::string &word) {
  const std::string path = "/proc/" + std::to_string(process) + "/" + file;
  pb::StringPtr text;
  if (!g_file_get_contents(path.c_str(), pb::out(text), nullptr, nullptr)) return "";
  const std::string lines = "\n" + std::string(text.get());
  const size_t begin = lines.find("\n" + word);
  return begin == std::string::npos
             ? ""
             : lines.substr(begin + 1, lines.find('\n', begin + 1) - begin - 1);
}

TEST_F(DecodeFaults, RunsDecodersInASandbox) {
  decode_file(good_picture(), 100, 100);
  const auto decoders = children();
  ASSERT_EQ(decoders.size(), 1u);

  EXPECT_EQ(line_of(decoders[0], "status", "Seccomp:"), "Seccomp:\t2");
  EXPECT_EQ(line_of(decoders[0], "status", "NoNewPrivs:"), "NoNewPrivs:\t1");
}

TEST_F(DecodeFaults, GivesDecodersLimits) {
  decode_file(good_picture(), 100, 100);
  const auto decoders = children();
  ASSERT_EQ(decoders.size(), 1u);

  EXPECT_EQ(line_of(decoders[0], "oom_score_adj", ""), "800");
  EXPECT_THAT(line_of(decoders[0], "limits", "Max core file size"), HasSubstr(" 0 "));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  EXPECT_THAT(line_of(decoders[0], "limits", "Max address space"), HasSubstr(" 536870912 "));
#endif
}

TEST_F(DecodeFaults, LetsDecodersInheritNothing) {
  const int leaked = open("/dev/null", O_RDONLY);
  decode_file(good_picture(), 100, 100);
  const auto decoders = children();
  ASSERT_EQ(decoders.size(), 1u);
  const std::string folder = "/proc/" + std::to_string(decoders[0]) + "/fd/";

  // The picture itself is closed a moment after the answer.
  EXPECT_TRUE(test::run_until([&] {
    for (int fd = 4; fd < 64; ++fd) {
      if (support::exists(folder + std::to_string(fd))) return false;
    }
    return true;
  }));
  close(leaked);
}

TEST(Sandbox, RefusesWhatADecoderHasNoNeedOf) {
  gchar *argv[] = {g_strdup(PB_DECODER), g_strdup("--check"), nullptr};
  pb::StringPtr output;
  gint status = -1;
  g_spawn_sync(nullptr, argv, nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, pb::out(output), nullptr,
               &status, nullptr);
  for (gchar *word : argv) g_free(word);

  EXPECT_EQ(status, 0) << output.get();
  EXPECT_THAT(output.get(), HasSubstr("make a socket: refused\n"));
  EXPECT_THAT(output.get(), testing::Not(HasSubstr("ALLOWED")));
}

}  // namespace
}  // namespace phone::pictures

#include "pictures/video.hpp"

#include <signal.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string>

#include "pictures/header-reader.hpp"
#include "pictures/process.hpp"

namespace phone::pictures {
namespace {

constexpr int kNotFound = 127;  // as a shell answers
constexpr int kNotStarted = 126;
constexpr int kOutputOfProgram = 4;

Problem problem_of(const Ending &ending) {
  if (was_killed(ending)) return Problem::kBusy;
  if (ending.signal == SIGXCPU) return Problem::kTooSlow;
  if (ending.status == 0) return Problem::kNone;
  if (ending.status == kNotStarted) return Problem::kNoDecoder;
  if (ending.status != kNotFound) return Problem::kDamaged;
  static std::atomic<bool> reported = false;
  if (!reported.exchange(true)) {
    g_message("No previews of videos: the program ffmpegthumbnailer is not installed");
  }
  return Problem::kNoVideos;
}

/// Has the program write a picture into a memory file.
Problem extract(int fd, const Descriptor &output, int size, const Wish &wish) {
  const pid_t child = start_decoder({"--video", std::to_string(size)},
                                    {{fd, wire::kSocket}, {output.get(), kOutputOfProgram}});
  if (child < 0) return errno == ENOENT ? Problem::kNoDecoder : Problem::kBusy;
  Ending ending;
  switch (wait_for_end(child, wish.video_time_limit, wish.cancellation, ending)) {
    case Outcome::kTooSlow:
      return Problem::kTooSlow;
    case Outcome::kStarved:
      return Problem::kBusy;
    case Outcome::kCancelled:
      return Problem::kCancelled;
    case Outcome::kReady:
      break;
  }
  return problem_of(ending);
}

/// The longer side that the program is to deliver; it would enlarge a small video.
int size_for(int fd, const Wish &wish) {
  const int wanted = std::max(wish.width, wish.height);
  const auto header = read_header_of_file(fd);
  const int longer = header ? std::max(header->width, header->height) : 0;
  return longer > 0 ? std::min(wanted, longer) : wanted;
}

}  // namespace

Result decode_video(int fd, const Wish &wish) {
  const Descriptor output(memfd_create("video-picture", MFD_CLOEXEC));
  if (!output) return {Problem::kBusy, {}};
  const Problem problem = extract(fd, output, size_for(fd, wish), wish);
  if (problem != Problem::kNone) return {problem, {}};
  wire::Request order;
  order.flags = wish.flags;
  order.width = wish.width;
  order.height = wish.height;
  return Pool::shared()
      .decode(output.get(), order, wish.priority, wish.time_limit, wish.cancellation)
      .result;
}

}  // namespace phone::pictures

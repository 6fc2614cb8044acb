#include "pictures/picture-file.hpp"

#include <algorithm>
#include <cerrno>

#include "pictures/failures.hpp"
#include "pictures/header-reader.hpp"
#include "pictures/video.hpp"

namespace phone::pictures {
namespace {

/// Sizes up to here count as small pictures.
constexpr int kSmall = 512;

Problem problem_of(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return Problem::kMissing;
    case ELOOP:
    case EINVAL:
    case ENXIO:
      return Problem::kNotAFile;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
      return Problem::kBusy;
    default:
      return Problem::kNotReadable;
  }
}

bool is_small(int width, int height) { return std::max(width, height) <= kSmall; }

/// Nobody needs a larger box than a picture can be, and the answer is checked against it.
wire::Request order_for(const Wish &wish) {
  wire::Request order;
  order.flags = wish.flags;
  order.width = std::min(wish.width, kMaxSide);
  order.height = std::min(wish.height, kMaxSide);
  return order;
}

}  // namespace

OpenFile open_picture(const char *path) {
  OpenFile file;
  file.fd = Descriptor(open_regular_file(path));
  if (!file.fd || fstat(file.fd.get(), &file.info) != 0) {
    file.problem = problem_of(errno);
    return file;
  }
  file.problem = Problem::kNone;
  return file;
}

Result decode_picture(const OpenFile &file, const Wish &wish) {
  if (file.problem != Problem::kNone) return {file.problem, {}};
  const Identity identity = Identity::of(file.info);
  const bool small = is_small(wish.width, wish.height);
  if (const auto known = Failures::shared().find(identity, small)) return {*known, {}};

  Worker::Answer answer = Pool::shared().decode(file.fd.get(), order_for(wish), wish.priority,
                                                wish.time_limit, wish.cancellation);
  if (answer.is_drawing) {
    answer = Pool::shared().decode(file.fd.get(), order_for(wish), Priority::kDrawing,
                                   wish.time_limit, wish.cancellation);
  }
  if (answer.is_video) answer.result = decode_video(file.fd.get(), wish);
  if (is_lasting(answer.result.problem)) {
    Failures::shared().remember(identity, small, answer.result.problem);
  }
  return std::move(answer.result);
}

bool is_known_to_fail(const struct stat &info, int width, int height) {
  return Failures::shared().find(Identity::of(info), is_small(width, height)).has_value();
}

void remember_failure(const struct stat &info, int width, int height, Problem problem) {
  Failures::shared().remember(Identity::of(info), is_small(width, height), problem);
}

}  // namespace phone::pictures

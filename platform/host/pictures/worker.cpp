#include "pictures/worker.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace phone::pictures {
namespace {

/// After so many pictures a process is replaced, so that what libraries leak stays small.
constexpr std::uint32_t kRequestsOfALife = 4096;

bool send(int socket, const wire::Request &request, int fd) {
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  iovec data{const_cast<wire::Request *>(&request), sizeof request};
  msghdr message{};
  message.msg_iov = &data;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  cmsghdr *head = CMSG_FIRSTHDR(&message);
  head->cmsg_level = SOL_SOCKET;
  head->cmsg_type = SCM_RIGHTS;
  head->cmsg_len = CMSG_LEN(sizeof(int));
  std::memcpy(CMSG_DATA(head), &fd, sizeof fd);
  ssize_t sent;
  do {
    sent = sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
  } while (sent < 0 && errno == EINTR);
  return sent == sizeof request;
}

/// @return the length of the message, 0 when the other side is gone, -1 on an error
ssize_t receive_reply(int socket, wire::Reply &reply, Descriptor &pixels) {
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
  iovec data{&reply, sizeof reply};
  msghdr message{};
  message.msg_iov = &data;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  ssize_t got;
  do {
    got = recvmsg(socket, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  } while (got < 0 && errno == EINTR);
  const cmsghdr *head = CMSG_FIRSTHDR(&message);
  if (got >= 0 && head != nullptr && head->cmsg_level == SOL_SOCKET &&
      head->cmsg_type == SCM_RIGHTS && head->cmsg_len == CMSG_LEN(sizeof(int))) {
    int fd = -1;
    std::memcpy(&fd, CMSG_DATA(head), sizeof fd);
    pixels = Descriptor(fd);
  }
  return got;
}

/// Whether a reply describes a picture that can have been asked for.
bool is_sound(const wire::Reply &reply) {
  if (reply.width <= 0 || reply.height <= 0 || (reply.channels != 3 && reply.channels != 4)) {
    return false;
  }
  const gint64 line = static_cast<gint64>(reply.width) * reply.channels;
  return reply.row_stride >= line && reply.row_stride <= line + 64;
}

/// Takes the pixels over into a pixbuf of this process. The file must be sealed, or the process
/// at the other end could still change or cut it.
PixbufRef take_pixels(const wire::Reply &reply, const Descriptor &pixels) {
  constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
  struct stat info;
  const gint64 bytes = static_cast<gint64>(reply.row_stride) * reply.height;
  if (!pixels || fstat(pixels.get(), &info) != 0 || info.st_size != bytes ||
      (fcntl(pixels.get(), F_GET_SEALS) & kSeals) != kSeals) {
    return {};
  }
  PixbufRef pixbuf = PixbufRef::adopt(
      gdk_pixbuf_new(GDK_COLORSPACE_RGB, reply.channels == 4, 8, reply.width, reply.height));
  if (!pixbuf) return {};
  const int stride = gdk_pixbuf_get_rowstride(pixbuf.get());
  const auto line = static_cast<size_t>(reply.width) * static_cast<size_t>(reply.channels);
  guchar *to = gdk_pixbuf_get_pixels(pixbuf.get());
  const bool same = stride == reply.row_stride;
  const int pieces = same ? 1 : reply.height;
  const size_t size =
      same ? static_cast<size_t>(stride) * static_cast<size_t>(reply.height - 1) + line : line;
  for (int piece = 0; piece < pieces; ++piece) {
    const gint64 from = static_cast<gint64>(piece) * reply.row_stride;
    guchar *place = to + static_cast<gint64>(piece) * stride;
    for (size_t done = 0; done < size;) {
      const ssize_t got = pread(pixels.get(), place + done, size - done,
                                static_cast<off_t>(from + static_cast<gint64>(done)));
      if (got <= 0) return {};
      done += static_cast<size_t>(got);
    }
  }
  return pixbuf;
}

Problem problem_of(wire::Status status) {
  switch (status) {
    case wire::Status::kOk:
      return Problem::kNone;
    case wire::Status::kTooLarge:
      return Problem::kTooLarge;
    case wire::Status::kUnknown:
    case wire::Status::kVideo:
    case wire::Status::kDrawing:
      return Problem::kUnknown;
    case wire::Status::kTransient:
      return Problem::kBusy;
    case wire::Status::kDamaged:
      break;
  }
  return Problem::kDamaged;
}

}  // namespace

std::unique_ptr<Worker> Worker::start(int nice, bool drawings, Problem &problem) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
    problem = Problem::kBusy;
    return nullptr;
  }
  Descriptor ours(ends[0]);
  const Descriptor theirs(ends[1]);
  std::vector<std::string> arguments;
  if (drawings) arguments.emplace_back("--drawings");
  const pid_t child = start_decoder(arguments, {{theirs.get(), wire::kSocket}});
  if (child < 0) {
    problem = errno == EMFILE || errno == ENFILE || errno == EAGAIN || errno == ENOMEM
                  ? Problem::kBusy
                  : Problem::kNoDecoder;
    return nullptr;
  }
  // A process that does not give way is merely impolite.
  if (nice != 0 && setpriority(PRIO_PROCESS, static_cast<id_t>(child), nice) != 0) errno = 0;
  return std::unique_ptr<Worker>(new Worker(child, std::move(ours)));
}

Worker::~Worker() {
  if (child_ > 0) end_process(child_);
}

bool Worker::usable() const { return child_ > 0 && requests_ < kRequestsOfALife; }

Worker::Answer Worker::give_up(Problem problem) {
  end_process(child_);
  child_ = -1;
  socket_.reset();
  return {{problem, {}}};
}

/// The process has ended, or talks nonsense, which is treated alike.
Worker::Answer Worker::ended(bool by_file) {
  // It has closed its end and is about to exit; when it does not, it is made to.
  constexpr TimeLimit kExit{500 * G_TIME_SPAN_MILLISECOND, 500 * G_TIME_SPAN_MILLISECOND};
  Ending ending;
  const Outcome outcome = wait_for_end(child_, kExit, nullptr, ending);
  child_ = -1;
  socket_.reset();
  if (outcome != Outcome::kReady) return {{Problem::kBusy, {}}};
  if (was_killed(ending)) {
    Answer answer{{Problem::kBusy, {}}};
    answer.worth_another_try = true;
    return answer;
  }
  if (ending.status == wire::kOutOfMemory) return {{Problem::kTooLarge, {}}};
  // Any other exit status means that it never came as far as decoding.
  if (ending.status > 0 || !by_file) return {{Problem::kNoDecoder, {}}};
  return {{Problem::kDamaged, {}}};
}

Worker::Answer Worker::decode(int fd, const wire::Request &order, const TimeLimit &limit,
                              const Cancellation *cancellation) {
  wire::Request request = order;
  request.id = ++requests_;
  if (!send(socket_.get(), request, fd)) {
    const bool no_descriptors = errno == ETOOMANYREFS || errno == ENOMEM || errno == ENOBUFS;
    if (no_descriptors) return {{Problem::kBusy, {}}};
    Answer answer = ended(false);
    answer.worth_another_try = true;
    return answer;
  }
  switch (wait_for_child(socket_.get(), child_, limit, cancellation)) {
    case Outcome::kTooSlow:
      return give_up(Problem::kTooSlow);
    case Outcome::kStarved:
      return give_up(Problem::kBusy);
    case Outcome::kCancelled:
      return give_up(Problem::kCancelled);
    case Outcome::kReady:
      break;
  }
  return receive(request);
}

Worker::Answer Worker::receive(const wire::Request &request) {
  wire::Reply reply;
  Descriptor pixels;
  const ssize_t got = receive_reply(socket_.get(), reply, pixels);
  if (got == 0 || (got < 0 && errno == ECONNRESET)) return ended(true);
  if (got != sizeof reply || reply.magic != wire::kMagic || reply.id != request.id) {
    return give_up(Problem::kDamaged);
  }
  Answer answer{{problem_of(reply.status), {}, reply.thumbnail_mtime}};
  answer.is_video = reply.status == wire::Status::kVideo;
  answer.is_drawing = reply.status == wire::Status::kDrawing;
  if (reply.status != wire::Status::kOk) return answer;
  if (!pixels) return {{Problem::kBusy, {}}};  // no descriptor left to take them with
  if (!is_sound(reply) || reply.width > request.width || reply.height > request.height) {
    return give_up(Problem::kDamaged);
  }
  answer.result.pixbuf = take_pixels(reply, pixels);
  if (!answer.result.pixbuf) answer.result.problem = Problem::kBusy;
  return answer;
}

}  // namespace phone::pictures

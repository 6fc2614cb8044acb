/// The decoder process: gets open files over a socket and answers with pixels.
///   photobrowser-decoder            started by the platform, its socket as descriptor 3
///   photobrowser-decoder --drawings the same for drawings
///   photobrowser-decoder --video N  replaces itself by the program that takes a picture of at
///                                   most N pixels out of the video at descriptor 3, into 4
///   photobrowser-decoder --check    tries what the sandbox must refuse and says what happened
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "pictures/decoder/check.hpp"
#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/sandbox.hpp"
#include "pictures/descriptor.hpp"

namespace phone::pictures {
namespace {

/// If the owner dies during a decode that never ends, nobody else ends this process. Longer than
/// any owner waits for a process that gets little of the processor.
constexpr unsigned kForsakenSeconds = 60;

/// @return false when the owner is gone. `fd` is -1 when no file came with the request.
bool receive(wire::Request &request, int &fd) {
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
  iovec data{&request, sizeof request};
  msghdr message{};
  message.msg_iov = &data;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  ssize_t got;
  do {
    got = recvmsg(wire::kSocket, &message, MSG_CMSG_CLOEXEC);
  } while (got < 0 && errno == EINTR);
  fd = -1;
  const cmsghdr *head = CMSG_FIRSTHDR(&message);
  if (head != nullptr && head->cmsg_level == SOL_SOCKET && head->cmsg_type == SCM_RIGHTS &&
      head->cmsg_len == CMSG_LEN(sizeof(int))) {
    std::memcpy(&fd, CMSG_DATA(head), sizeof fd);
  }
  return got == sizeof request && request.magic == wire::kMagic;
}

bool send(const wire::Reply &reply, int fd) {
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  iovec data{const_cast<wire::Reply *>(&reply), sizeof reply};
  msghdr message{};
  message.msg_iov = &data;
  message.msg_iovlen = 1;
  if (fd >= 0) {
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr *head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(head), &fd, sizeof fd);
  }
  ssize_t sent;
  do {
    sent = sendmsg(wire::kSocket, &message, MSG_NOSIGNAL);
  } while (sent < 0 && errno == EINTR);
  return sent == sizeof reply;
}

/// The pixels as a memory file that nobody can change any more; -1 when there is no memory or no
/// descriptor for it.
int seal_pixels(GdkPixbuf *pixbuf) {
  const int fd = memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  if (fd < 0) return -1;
  const auto stride = static_cast<size_t>(gdk_pixbuf_get_rowstride(pixbuf));
  const auto height = static_cast<size_t>(gdk_pixbuf_get_height(pixbuf));
  const auto line = static_cast<size_t>(gdk_pixbuf_get_width(pixbuf)) *
                    static_cast<size_t>(gdk_pixbuf_get_n_channels(pixbuf));
  const guchar *pixels = gdk_pixbuf_read_pixels(pixbuf);
  // The last row of a pixbuf need not be padded; the file's is.
  const size_t present = (height - 1) * stride + line;
  bool good = ftruncate(fd, static_cast<off_t>(height * stride)) == 0;
  for (size_t done = 0; good && done < present;) {
    const ssize_t written = pwrite(fd, pixels + done, present - done, static_cast<off_t>(done));
    good = written > 0;
    if (good) done += static_cast<size_t>(written);
  }
  constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
  if (good && fcntl(fd, F_ADD_SEALS, kSeals) == 0) return fd;
  close(fd);
  return -1;
}

Order order_of(const wire::Request &request, bool drawings) {
  Order order;
  order.drawings = drawings;
  order.box = {request.width, request.height};
  order.upright = (request.flags & wire::kUpright) != 0;
  order.enlarge = (request.flags & wire::kEnlarge) != 0;
  order.preview = (request.flags & wire::kPreview) != 0;
  order.opaque = (request.flags & wire::kOpaque) != 0;
  return order;
}

bool answer(const wire::Request &request, int file, bool drawings) {
  wire::Reply reply;
  reply.id = request.id;
  if (file < 0 || request.width <= 0 || request.height <= 0) {
    reply.status = wire::Status::kTransient;
    return send(reply, -1);
  }
  const Decoded decoded = decode(file, order_of(request, drawings));
  reply.status = decoded.status;
  if (decoded.status != wire::Status::kOk) return send(reply, -1);

  GdkPixbuf *pixbuf = decoded.pixbuf.get();
  const Descriptor pixels(seal_pixels(pixbuf));
  if (pixels.get() < 0) {
    reply.status = wire::Status::kTransient;
    return send(reply, -1);
  }
  reply.width = gdk_pixbuf_get_width(pixbuf);
  reply.height = gdk_pixbuf_get_height(pixbuf);
  reply.row_stride = gdk_pixbuf_get_rowstride(pixbuf);
  reply.channels = gdk_pixbuf_get_n_channels(pixbuf);
  reply.thumbnail_mtime = decoded.thumbnail_mtime;
  return send(reply, pixels.get());
}

/// Libraries end the process when they get no memory; the owner is told why it ended.
[[noreturn]] void end_without_memory() { _exit(wire::kOutOfMemory); }

GLogWriterOutput write_log(GLogLevelFlags level, const GLogField *fields, gsize count, gpointer) {
  // GLib's only fatal message in a decoder is the one about memory.
  if ((level & G_LOG_FLAG_FATAL) != 0) end_without_memory();
  return g_log_writer_standard_streams(level, fields, count, nullptr);
}

int serve(bool drawings) {
  std::set_new_handler(end_without_memory);
  g_log_set_writer_func(write_log, nullptr, nullptr);
  load_decoders();
  if (drawings) load_drawing_decoder();
  if (!limit_resources() || !enter_sandbox()) return EXIT_FAILURE;
  for (;;) {
    wire::Request request;
    int fd = -1;
    if (!receive(request, fd)) return EXIT_SUCCESS;
    const Descriptor file(fd);
    alarm(kForsakenSeconds);
    const bool heard = answer(request, fd, drawings);
    alarm(0);
    if (!heard) return EXIT_SUCCESS;
  }
}

int become_video_program(const char *size) {
  if (!enter_video_sandbox()) return EXIT_FAILURE;
  execlp("ffmpegthumbnailer", "ffmpegthumbnailer", "-i", "/proc/self/fd/3", "-o", "/proc/self/fd/4",
         "-c", "png", "-s", size, nullptr);
  // What a shell answers for a command that is not there.
  return errno == ENOENT ? 127 : 126;
}

}  // namespace
}  // namespace phone::pictures

int main(int argc, char **argv) {
  using namespace phone::pictures;
  const std::string_view mode = argc > 1 ? argv[1] : "";
  if (mode == "--video" && argc == 3) _exit(become_video_program(argv[2]));
  if (mode == "--check") _exit(check_sandbox());
  // Nothing is to run after the last request: not even what a library left for the exit.
  _exit(serve(mode == "--drawings"));
}

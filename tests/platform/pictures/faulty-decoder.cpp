/// Stands in for the decoder program and misbehaves as $PB_FAULT says.
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "pictures/wire.hpp"

namespace {

using namespace phone::pictures;

void reply(const wire::Reply &message, int fd) {
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  iovec data{const_cast<wire::Reply *>(&message), sizeof message};
  msghdr packet{};
  packet.msg_iov = &data;
  packet.msg_iovlen = 1;
  if (fd >= 0) {
    packet.msg_control = control;
    packet.msg_controllen = sizeof control;
    cmsghdr *head = CMSG_FIRSTHDR(&packet);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(head), &fd, sizeof fd);
  }
  if (sendmsg(wire::kSocket, &packet, 0) < 0) _exit(1);
}

int memory_file(off_t bytes, bool sealed) {
  const int fd = memfd_create("faulty", MFD_ALLOW_SEALING);
  if (ftruncate(fd, bytes) != 0) _exit(1);
  if (sealed) fcntl(fd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE);
  return fd;
}

/// An answer of a picture of 10 by 10 pixels, right but for the fault.
void answer(std::string_view fault, std::uint32_t id) {
  constexpr int kSide = 10;
  constexpr int kStride = 32;
  wire::Reply message;
  message.id = fault == "answers-another" ? id + 1 : id;
  message.width = fault == "answers-larger" ? 5000 : kSide;
  message.height = kSide;
  message.row_stride = fault == "overlapping-rows" ? 8 : kStride;
  message.channels = fault == "odd-channels" ? 7 : 3;
  const int bytes = fault == "short-file" ? kStride * kSide - 1 : kStride * kSide;
  const int fd = memory_file(bytes, fault != "unsealed");
  reply(message, fault == "no-pixels" ? -1 : fd);
}

void work_for_ever() {
  volatile unsigned turns = 0;
  for (;;) {
    const unsigned next = turns + 1;
    turns = next;
  }
}

/// Works a third of the time, as on a machine that is busy with other things.
void work_now_and_then() {
  for (;;) {
    timespec begin{};
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &begin);
    do {
      clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    } while ((now.tv_sec - begin.tv_sec) * 1000000000 + now.tv_nsec - begin.tv_nsec < 5000000);
    usleep(10000);
  }
}

}  // namespace

int main(int argc, char **) {
  if (argc > 1) return 4;  // nothing but plain pictures
  const char *chosen = std::getenv("PB_FAULT");
  const std::string_view fault = chosen == nullptr ? "" : chosen;
  if (fault == "exits-at-once") return 3;
  for (;;) {
    wire::Request request;
    if (recv(wire::kSocket, &request, sizeof request, 0) != sizeof request) return 0;
    if (fault == "hangs") work_for_ever();
    if (fault == "sleeps") pause();
    if (fault == "starves") work_now_and_then();
    if (fault == "is-slow-to-begin") usleep(300000);
    if (fault == "closes-and-sleeps") close(wire::kSocket), pause();
    if (fault == "hangs-at-width-77" && request.width == 77) pause();
    if (fault == "crashes") std::abort();
    if (fault == "is-killed") raise(SIGKILL);
    if (fault == "is-killed-once" && unlink(std::getenv("PB_FAULT_WHILE")) == 0) raise(SIGKILL);
    if (fault == "is-alarmed") raise(SIGALRM);
    if (fault == "is-killed-for-now" && access(std::getenv("PB_FAULT_WHILE"), F_OK) == 0) {
      raise(SIGKILL);
    }
    if (fault == "runs-out-of-memory") return wire::kOutOfMemory;
    if (fault == "talks-nonsense") {
      if (send(wire::kSocket, "nonsense", 8, 0) < 0) return 1;
    } else {
      answer(fault, request.id);
    }
  }
}

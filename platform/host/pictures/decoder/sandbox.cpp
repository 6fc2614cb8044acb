#include "pictures/decoder/sandbox.hpp"

#include <fcntl.h>
#include <malloc.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <memory>

namespace phone::pictures {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The shadow memory of a sanitizer takes terabytes of addresses.
constexpr bool kLimitAddresses = false;
#else
constexpr bool kLimitAddresses = true;
#endif

constexpr rlim_t kPictureAddresses = 512ul << 20;
constexpr rlim_t kVideoAddresses = 2048ul << 20;
constexpr rlim_t kVideoSeconds = 10;
constexpr rlim_t kVideoOutput = 64ul << 20;

bool limit(__rlimit_resource resource, rlim_t value) {
  const rlimit both{value, value};
  return setrlimit(resource, &both) == 0;
}

/// Beyond the time comes a signal of its own, and only for a program that ignores it the one
/// that could also have come from outside.
bool limit_seconds(rlim_t seconds) {
  const rlimit softly{seconds, seconds + 2};
  return setrlimit(RLIMIT_CPU, &softly) == 0;
}

bool limit_addresses(rlim_t bytes) { return !kLimitAddresses || limit(RLIMIT_AS, bytes); }

void go_first_when_memory_ends() {
  const int fd = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
  if (fd < 0) return;
  constexpr char kScore[] = "800";
  // Where the kernel does not allow it, the process is merely as likely to go as any other.
  if (write(fd, kScore, sizeof kScore - 1) < 0) errno = 0;
  close(fd);
}

struct ReleaseFilter {
  void operator()(void *filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, ReleaseFilter>;

bool refuse(const Filter &filter, std::initializer_list<int> calls, int error = EPERM) {
  for (const int call : calls) {
    const int result =
        seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(error)), call, 0);
    // A call that this machine does not have cannot be made either.
    if (result != 0 && result != -EDOM) return false;
  }
  return true;
}

/// Calls that nothing here ever needs.
bool refuse_outside_world(const Filter &filter) {
  return refuse(filter, {SCMP_SYS(socket),
                         SCMP_SYS(socketpair),
                         SCMP_SYS(connect),
                         SCMP_SYS(bind),
                         SCMP_SYS(listen),
                         SCMP_SYS(accept),
                         SCMP_SYS(accept4),
                         SCMP_SYS(ptrace),
                         SCMP_SYS(process_vm_readv),
                         SCMP_SYS(process_vm_writev),
                         SCMP_SYS(pidfd_open),
                         SCMP_SYS(pidfd_getfd),
                         SCMP_SYS(mount),
                         SCMP_SYS(umount2),
                         SCMP_SYS(pivot_root),
                         SCMP_SYS(chroot),
                         SCMP_SYS(unshare),
                         SCMP_SYS(setns),
                         SCMP_SYS(bpf),
                         SCMP_SYS(perf_event_open),
                         SCMP_SYS(keyctl),
                         SCMP_SYS(add_key),
                         SCMP_SYS(request_key),
                         SCMP_SYS(io_uring_setup),
                         SCMP_SYS(userfaultfd),
                         SCMP_SYS(init_module),
                         SCMP_SYS(finit_module),
                         SCMP_SYS(kexec_load),
                         SCMP_SYS(reboot),
                         SCMP_SYS(swapon),
                         SCMP_SYS(swapoff)});
}

bool refuse_files(const Filter &filter) {
  return refuse(filter, {SCMP_SYS(open),
                         SCMP_SYS(openat),
                         SCMP_SYS(openat2),
                         SCMP_SYS(creat),
                         SCMP_SYS(open_by_handle_at),
                         SCMP_SYS(unlink),
                         SCMP_SYS(unlinkat),
                         SCMP_SYS(rename),
                         SCMP_SYS(renameat),
                         SCMP_SYS(renameat2),
                         SCMP_SYS(mkdir),
                         SCMP_SYS(mkdirat),
                         SCMP_SYS(rmdir),
                         SCMP_SYS(link),
                         SCMP_SYS(linkat),
                         SCMP_SYS(symlink),
                         SCMP_SYS(symlinkat),
                         SCMP_SYS(mknod),
                         SCMP_SYS(mknodat),
                         SCMP_SYS(chmod),
                         SCMP_SYS(fchmod),
                         SCMP_SYS(fchmodat),
                         SCMP_SYS(chown),
                         SCMP_SYS(fchown),
                         SCMP_SYS(lchown),
                         SCMP_SYS(fchownat),
                         SCMP_SYS(truncate),
                         SCMP_SYS(utimensat),
                         SCMP_SYS(utimes),
                         SCMP_SYS(futimesat),
                         SCMP_SYS(setxattr),
                         SCMP_SYS(lsetxattr),
                         SCMP_SYS(fsetxattr),
                         SCMP_SYS(removexattr),
                         SCMP_SYS(lremovexattr),
                         SCMP_SYS(fremovexattr)});
}

bool refuse_processes(const Filter &filter) {
  if (!refuse(filter, {SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork),
                       SCMP_SYS(kill), SCMP_SYS(pidfd_send_signal)})) {
    return false;
  }
  // Limits of this process alone: the C library asks for them.
  if (seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EPERM), SCMP_SYS(prlimit64), 1,
                       SCMP_A0(SCMP_CMP_NE, 0)) != 0) {
    return false;
  }
  // The C library turns to clone(), whose flags can be looked at.
  if (!refuse(filter, {SCMP_SYS(clone3)}, ENOSYS)) return false;
  return seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1,
                          SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)) == 0;
}

bool promise_no_privileges() {
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0;
}

}  // namespace

bool limit_resources() {
  // One heap for all threads: each further one would take 64 MB of the address space.
  mallopt(M_ARENA_MAX, 1);
  go_first_when_memory_ends();
  return limit(RLIMIT_CORE, 0) && limit_addresses(kPictureAddresses);
}

bool enter_sandbox() {
  if (!promise_no_privileges()) return false;
  const Filter filter(seccomp_init(SCMP_ACT_ALLOW));
  return filter && refuse_outside_world(filter) && refuse_files(filter) &&
         refuse_processes(filter) && seccomp_load(filter.get()) == 0;
}

bool enter_video_sandbox() {
  go_first_when_memory_ends();
  if (!promise_no_privileges() || !limit(RLIMIT_CORE, 0) || !limit_seconds(kVideoSeconds) ||
      !limit(RLIMIT_FSIZE, kVideoOutput) || !limit_addresses(kVideoAddresses)) {
    return false;
  }
  const Filter filter(seccomp_init(SCMP_ACT_ALLOW));
  return filter && refuse_outside_world(filter) && seccomp_load(filter.get()) == 0;
}

}  // namespace phone::pictures

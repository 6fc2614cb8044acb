#include "pictures/process.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "pictures/descriptor.hpp"

namespace phone::pictures {
namespace {

constexpr char kProgram[] = "photobrowser-decoder";

std::string own_folder() {
  Dl_info info;
  if (dladdr(reinterpret_cast<void *>(&own_folder), &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  const std::string file = info.dli_fname;
  const size_t slash = file.rfind('/');
  return slash == std::string::npos ? std::string() : file.substr(0, slash);
}

/// The actions and attributes of one start, freed with their scope.
class SpawnPlan {
 public:
  SpawnPlan() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
  }
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnPlan(const SpawnPlan &) = delete;
  SpawnPlan &operator=(const SpawnPlan &) = delete;

  bool keep_only(const std::vector<std::pair<int, int>> &descriptors) {
    bool good = posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDWR, 0) == 0 &&
                posix_spawn_file_actions_adddup2(&actions_, 0, 1) == 0;
    // Libraries complain about bad pictures at length; that is for developers.
    if (std::getenv("PHOTOBROWSER_DEBUG") == nullptr) {
      good = good && posix_spawn_file_actions_adddup2(&actions_, 0, 2) == 0;
    }
    int first_unused = 3;
    for (const auto &[ours, theirs] : descriptors) {
      good = good && posix_spawn_file_actions_adddup2(&actions_, ours, theirs) == 0;
      first_unused = std::max(first_unused, theirs + 1);
    }
    return good && posix_spawn_file_actions_addclosefrom_np(&actions_, first_unused) == 0;
  }

  /// No blocked and no ignored signals, whatever the application has done with them.
  bool reset_signals() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    return posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
           posix_spawnattr_setsigdefault(&attributes_, &all) == 0 &&
           posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) ==
               0;
  }

  pid_t start(const std::string &program, const std::vector<std::string> &arguments) {
    std::vector<char *> words{const_cast<char *>(kProgram)};
    for (const std::string &argument : arguments) {
      words.push_back(const_cast<char *>(argument.c_str()));
    }
    words.push_back(nullptr);
    pid_t child = -1;
    errno = posix_spawn(&child, program.c_str(), &actions_, &attributes_, words.data(), environ);
    return errno == 0 ? child : -1;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

Ending ending_of(pid_t child) {
  int status = 0;
  pid_t got;
  do {
    got = waitpid(child, &status, 0);
  } while (got < 0 && errno == EINTR);
  // Somebody else took it off the list: how it ended is not known.
  if (got != child) return {};
  if (WIFEXITED(status)) return {WEXITSTATUS(status), 0};
  return {-1, WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

}  // namespace

std::string decoder_path() {
  std::vector<std::string> places;
  const char *chosen = std::getenv("PHOTOBROWSER_DECODER");
  if (chosen != nullptr && chosen[0] == '/') {
    places.emplace_back(chosen);
  } else {
    const std::string folder = own_folder();
    if (!folder.empty()) {
      places.push_back(folder + "/" + kProgram);
      places.push_back(folder + "/../libexec/photobrowser/" + kProgram);
    }
    places.push_back(std::string(PHONE_LIBEXEC_DIR "/photobrowser/") + kProgram);
#ifdef PHONE_DECODER_IN_BUILD
    places.emplace_back(PHONE_DECODER_IN_BUILD);
#endif
  }
  const auto found = std::find_if(places.begin(), places.end(), [](const std::string &place) {
    return access(place.c_str(), X_OK) == 0;
  });
  return found == places.end() ? std::string() : *found;
}

pid_t start_decoder(const std::vector<std::string> &arguments,
                    std::initializer_list<std::pair<int, int>> descriptors) {
  const std::string program = decoder_path();
  if (program.empty()) {
    errno = ENOENT;
    return -1;
  }
  // Out of the way of the numbers that the child wants them at.
  constexpr int kOutOfTheWay = 16;
  std::vector<Descriptor> copies;
  std::vector<std::pair<int, int>> moves;
  for (const auto &[ours, theirs] : descriptors) {
    copies.emplace_back(fcntl(ours, F_DUPFD_CLOEXEC, kOutOfTheWay));
    if (!copies.back()) {
      // That number itself may be above the limit.
      if (errno == EINVAL) errno = EMFILE;
      return -1;
    }
    moves.emplace_back(copies.back().get(), theirs);
  }
  SpawnPlan plan;
  if (!plan.keep_only(moves) || !plan.reset_signals()) {
    errno = ENOMEM;
    return -1;
  }
  return plan.start(program, arguments);
}

bool was_killed(const Ending &ending) {
  return ending.signal == SIGKILL || ending.signal == SIGTERM || ending.signal == SIGALRM;
}

Ending end_process(pid_t child) {
  kill(child, SIGKILL);
  return ending_of(child);
}

namespace {

/// What a child has used of the processor, microseconds.
gint64 processor_time(pid_t child) {
  clockid_t clock;
  timespec used;
  if (clock_getcpuclockid(child, &clock) != 0 || clock_gettime(clock, &used) != 0) return 0;
  return used.tv_sec * G_TIME_SPAN_SECOND + used.tv_nsec / 1000;
}

}  // namespace

Outcome wait_for_child(int fd, pid_t child, const TimeLimit &limit,
                       const Cancellation *cancellation) {
  const gint64 begin = g_get_monotonic_time();
  const gint64 used_before = processor_time(child);
  gint64 deadline = begin + limit.usual;
  for (;;) {
    const Wait wait = wait_for(fd, deadline, cancellation);
    if (wait == Wait::kReady) return Outcome::kReady;
    if (wait == Wait::kCancelled) return Outcome::kCancelled;
    // Even on an idle machine it is not given every moment.
    const gint64 used = processor_time(child) - used_before;
    if (used >= limit.usual / 10 * 9) return Outcome::kTooSlow;
    const gint64 last = begin + limit.longest;
    if (g_get_monotonic_time() >= last) return Outcome::kStarved;
    deadline = std::min(deadline + limit.usual / 4, last);
  }
}

Outcome wait_for_end(pid_t child, const TimeLimit &limit, const Cancellation *cancellation,
                     Ending &ending) {
  const Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  const Outcome outcome =
      handle ? wait_for_child(handle.get(), child, limit, cancellation) : Outcome::kStarved;
  ending = outcome == Outcome::kReady ? ending_of(child) : end_process(child);
  return outcome;
}

}  // namespace phone::pictures

#include "app/program.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace gallery_test {
namespace {

constexpr gint64 kPatienceUs = 10 * G_USEC_PER_SEC;

/// The arguments of a call as the C functions want them.
class Arguments {
 public:
  explicit Arguments(std::vector<std::string> texts) : texts_(std::move(texts)) {
    for (std::string &text : texts_) pointers_.push_back(text.data());
    pointers_.push_back(nullptr);
  }
  gchar **get() { return pointers_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<gchar *> pointers_;
};

/// Where the phone's paths begin for the program: the package of the build, by a link.
void set_up_root() {
  const std::string usr = support::photobrowser_root() + "/usr";
  mkdir(usr.c_str(), 0700);
  if (!support::exists(usr + "/apps")) {
    EXPECT_EQ(symlink(PB_PACKAGE_DIR "/usr/apps", (usr + "/apps").c_str()), 0);
  }
}

std::vector<std::string> command(const std::vector<std::string> &arguments) {
  std::vector<std::string> all{PB_GALLERY};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return all;
}

pb::StringsPtr environment(const std::string &display) {
  pb::StringsPtr variables(g_get_environ());
  gchar **list = variables.release();
  list = display.empty() ? g_environ_unsetenv(list, "DISPLAY")
                         : g_environ_setenv(list, "DISPLAY", display.c_str(), TRUE);
  return pb::StringsPtr(g_environ_unsetenv(list, "WAYLAND_DISPLAY"));
}

}  // namespace

PrivateDisplay::PrivateDisplay() {
  int ends[2] = {-1, -1};
  if (pipe(ends) != 0) return;
  Arguments arguments(
      {"Xvfb", "-displayfd", "3", "-screen", "0", "480x800x24", "-nolisten", "tcp", "-noreset"});
  const int target = 3;
  pb::ErrorPtr error;
  g_spawn_async_with_pipes_and_fds(
      nullptr, arguments.get(), nullptr,
      static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                               G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL),
      nullptr, nullptr, -1, -1, -1, &ends[1], &target, 1, &server_, nullptr, nullptr, nullptr,
      pb::out(error));
  close(ends[1]);
  std::string number;
  char digit = 0;
  while (read(ends[0], &digit, 1) == 1 && digit != '\n') number += digit;
  close(ends[0]);
  if (number.empty()) return;
  name_ = ":" + number;
  setenv("DISPLAY", name_.c_str(), 1);
  EXPECT_TRUE(gtk_init_check(nullptr, nullptr));
}

PrivateDisplay::~PrivateDisplay() {
  if (GdkDisplay *display = gdk_display_get_default()) gdk_display_close(display);
  if (server_ == 0) return;
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

bool eventually(const std::function<bool()> &holds) {
  const gint64 end = g_get_monotonic_time() + kPatienceUs;
  while (!holds()) {
    if (g_get_monotonic_time() > end) return false;
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    g_usleep(10000);
  }
  return true;
}

Outcome run_to_the_end(const std::vector<std::string> &arguments, const std::string &display) {
  set_up_root();
  Arguments all(command(arguments));
  const pb::StringsPtr variables = environment(display);
  pb::StringPtr out;
  pb::StringPtr err;
  gint status = 0;
  Outcome outcome;
  if (!g_spawn_sync(nullptr, all.get(), variables.get(), G_SPAWN_DEFAULT, nullptr, nullptr,
                    pb::out(out), pb::out(err), &status, nullptr)) {
    return outcome;
  }
  if (WIFEXITED(status)) outcome.exit_code = WEXITSTATUS(status);
  outcome.out = out.get();
  outcome.err = err.get();
  return outcome;
}

Program::Program(const PrivateDisplay &display, const std::vector<std::string> &arguments)
    : err_path_(support::private_dir() + "/stderr") {
  set_up_root();
  Arguments all(command(arguments));
  const pb::StringsPtr variables = environment(display.name());
  const int err = open(err_path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  pb::ErrorPtr error;
  g_spawn_async_with_fds(nullptr, all.get(), variables.get(), G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                         nullptr, &pid_, -1, -1, err, pb::out(error));
  EXPECT_EQ(error, nullptr);
  close(err);
}

Program::~Program() { stop(); }

Outcome Program::stop() {
  Outcome outcome;
  if (pid_ != 0) {
    kill(pid_, SIGTERM);
    int status = 0;
    waitpid(pid_, &status, 0);
    if (WIFEXITED(status)) outcome.exit_code = WEXITSTATUS(status);
    pid_ = 0;
  }
  outcome.err = support::read_file(err_path_);
  return outcome;
}

}  // namespace gallery_test

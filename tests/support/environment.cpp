#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "support/process.hpp"
#include "support/remove-tree.hpp"
#include "support/temp-dir.hpp"

namespace support {
namespace {

/// Made in front of every static object and used behind the last, so it is never destroyed.
std::string &directory() {
  static auto *instance = new std::string;
  return *instance;
}

void point(const char *variable, const char *name) {
  const std::string path = directory() + "/" + name;
  if (mkdir(path.c_str(), 0700) != 0) std::abort();
  setenv(variable, path.c_str(), 1);
}

}  // namespace

void enter_private_environment() {
  char pattern[] = "/tmp/pb-test-XXXXXX";
  if (mkdtemp(pattern) == nullptr) {
    std::perror("no directory for the test");
    std::abort();
  }
  directory() = pattern;
  point("HOME", "home");
  point("XDG_DATA_HOME", "data");
  point("XDG_CONFIG_HOME", "config");
  point("XDG_CACHE_HOME", "cache");
  point("XDG_STATE_HOME", "state");
  point("XDG_RUNTIME_DIR", "run");
  point("TMPDIR", "tmp");
  point("PHOTOBROWSER_ROOT", "root");

  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TZ", "UTC", 1);
  setenv("GTK_MODULES", "", 1);
  setenv("GTK2_RC_FILES", "", 1);
  setenv("GTK_IM_MODULE", "gtk-im-context-simple", 1);
  setenv("NO_AT_BRIDGE", "1", 1);
  setenv("GSETTINGS_BACKEND", "memory", 1);
  // An address that no client understands keeps libraries from starting a bus of their own.
  setenv("DBUS_SESSION_BUS_ADDRESS", "none:", 0);
  // The machine's own daemons are none of a test's business.
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "none:", 1);
}

void leave_private_environment() { remove_tree(directory()); }

const std::string &private_dir() { return directory(); }

const std::string &photobrowser_root() {
  static const auto *root = new std::string(directory() + "/root");
  return *root;
}

}  // namespace support

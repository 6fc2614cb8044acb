#include "util/paths.hpp"

#include <algorithm>
#include <cstdlib>

#include "pb-debug.h"

namespace pb {

namespace {

/// ASCII letters and digits, a few signs that no shell looks at, and all of UTF-8 above ASCII.
bool is_plain(char c) {
  if (static_cast<unsigned char>(c) >= 0x80) return true;
  return g_ascii_isalnum(c) || std::string_view("/._+-@%=:,").find(c) != std::string_view::npos;
}

bool has_parent_component(std::string_view directory) {
  const std::string closed = std::string(directory) + "/";
  return closed.find("/../") != std::string::npos;
}

std::string read_root() {
  const char *value = std::getenv("PHOTOBROWSER_ROOT");
  if (value == nullptr || *value == '\0') return {};
  std::string root = value;
  if (!is_usable_root(root)) {
    PB_LOG(PB_LOG_ERROR, "PHOTOBROWSER_ROOT is ignored, it is not a plain absolute path: %s\n",
           value);
    return {};
  }
  while (root.ends_with('/')) root.pop_back();
  return root;
}

}  // namespace

bool is_usable_root(std::string_view directory) {
  return directory.starts_with('/') && std::all_of(directory.begin(), directory.end(), is_plain) &&
         !has_parent_component(directory);
}

std::string phone_path(std::string_view path) {
  static const std::string root = read_root();
  return root + std::string(path);
}

}  // namespace pb

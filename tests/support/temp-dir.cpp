#include "support/temp-dir.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/remove-tree.hpp"

namespace support {
namespace fs = std::filesystem;

bool remove_tree(const std::string &path) {
  std::error_code error;
  fs::permissions(path, fs::perms::owner_all, error);
  for (const fs::directory_entry &entry : fs::directory_iterator(path, error)) {
    if (entry.is_directory(error) && !entry.is_symlink(error)) remove_tree(entry.path());
  }
  fs::remove_all(path, error);
  return !error;
}

TempDir::TempDir() {
  std::string pattern = private_dir() + "/tmp/dir-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
}

TempDir::~TempDir() {
  if (!remove_tree(path_)) ADD_FAILURE() << path_ << " could not be removed";
}

std::string TempDir::path(std::string_view name) const { return path_ + "/" + std::string(name); }

std::string TempDir::make_dir(std::string_view name) const {
  const std::string full = path(name);
  std::error_code error;
  fs::create_directories(full, error);
  if (error) ADD_FAILURE() << full << ": " << error.message();
  return full;
}

std::string TempDir::write(std::string_view name, std::string_view bytes) const {
  const std::string full = path(name);
  std::error_code error;
  fs::create_directories(fs::path(full).parent_path(), error);
  std::ofstream out(full, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) ADD_FAILURE() << full << " could not be written";
  return full;
}

std::string read_file(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << path << " could not be read";
    return {};
  }
  return {std::istreambuf_iterator<char>(in), {}};
}

bool exists(const std::string &path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error));
}

}  // namespace support

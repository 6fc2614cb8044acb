#include "picture-supply.hpp"

#include <picture-loader.h>

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace gallery {

PictureSupply::PictureSupply(Arrived arrived) : arrived_(std::move(arrived)) {}

PictureSupply::~PictureSupply() {
  for (auto &[path, entry] : entries_) picture_loader_cancel(entry.request);
}

void PictureSupply::set_box(int width, int height) {
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  for (auto &[path, entry] : entries_) {
    picture_loader_cancel(std::exchange(entry.request, 0));
    entry.fresh = false;
  }
  load_next();
}

void PictureSupply::want(const std::string &current, const std::vector<std::string> &neighbours) {
  wanted_.assign(1, current);
  wanted_.insert(wanted_.end(), neighbours.begin(), neighbours.end());
  std::erase_if(entries_, [this](const auto &known) {
    const bool keep = std::find(wanted_.begin(), wanted_.end(), known.first) != wanted_.end();
    if (!keep) picture_loader_cancel(known.second.request);
    return !keep;
  });
  // A neighbour must not hold up what is looked at.
  if (const auto known = entries_.find(current); known == entries_.end() || !known->second.fresh) {
    for (auto &[path, entry] : entries_) {
      if (path != current) picture_loader_cancel(std::exchange(entry.request, 0));
    }
  }
  load_next();
}

PictureSupply::Stamp PictureSupply::stamp_of(const std::string &path) {
  constexpr gint64 kNanoseconds = 1000000000;
  struct stat info {};
  if (lstat(path.c_str(), &info) != 0) return {};
  return {info.st_ino, info.st_size, info.st_mtim.tv_sec * kNanoseconds + info.st_mtim.tv_nsec};
}

bool PictureSupply::look_again() {
  bool changed = false;
  for (auto &[path, entry] : entries_) {
    if (entry.request == 0 && !entry.fresh) continue;
    if (stamp_of(path) == entry.stamp) continue;
    picture_loader_cancel(std::exchange(entry.request, 0));
    entry.fresh = false;
    changed = true;
  }
  load_next();
  return changed;
}

const PictureSupply::Picture *PictureSupply::find(const std::string &path) const {
  const auto found = entries_.find(path);
  return found != entries_.end() ? &found->second.picture : nullptr;
}

/// One at a time, so that the most wanted picture has all of the machine.
void PictureSupply::load_next() {
  if (width_ <= 0 || height_ <= 0) return;
  for (const std::string &path : wanted_) {
    Entry &entry = entries_[path];
    if (entry.request != 0) return;
    if (entry.fresh) continue;
    load(path, entry);
    return;
  }
}

void PictureSupply::load(const std::string &path, Entry &entry) {
  entry.stamp = stamp_of(path);
  entry.request = picture_loader_load(path.c_str(), width_, height_, on_loaded, this);
}

void PictureSupply::on_loaded(guint request, GdkPixbuf *pixbuf, const gchar *problem,
                              gpointer self) {
  auto *supply = static_cast<PictureSupply *>(self);
  const auto found =
      std::find_if(supply->entries_.begin(), supply->entries_.end(),
                   [request](const auto &known) { return known.second.request == request; });
  if (found == supply->entries_.end()) return;
  Entry &entry = found->second;
  entry.request = 0;
  entry.fresh = true;
  entry.picture.pixbuf = pb::Ref<GdkPixbuf>::share(pixbuf);
  entry.picture.problem = pixbuf == nullptr && problem != nullptr ? problem : "";
  const std::string path = found->first;
  supply->load_next();
  supply->arrived_(path);
}

}  // namespace gallery

#include "media-browser/probe.hpp"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <tuple>

#include "media-browser/display.hpp"
#include "media-browser/name-date.hpp"
#include "media-browser/query.hpp"
#include "pictures/header-reader.hpp"

namespace phone::media {

namespace {

/// Work that may wait before the scanner has to.
constexpr std::size_t kMostJobs = 64;
constexpr gint64 kNanoseconds = 1'000'000'000;

gint64 date_of(const Candidate &candidate, gint64 taken) {
  if (taken != 0) return taken;
  const gint64 named = date_of_name(candidate.name);
  return named != 0 ? named : candidate.state.mtime / kNanoseconds;
}

}  // namespace

Found describe(const FolderPtr &folder, const Candidate &candidate, int descriptor) {
  Found found;
  found.folder = folder;
  found.name = candidate.name;
  found.state = candidate.state;
  found.kind = candidate.kind_by_name;
  gint64 taken = 0;
  if (const auto header = pictures::read_header_of_file(descriptor)) {
    found.kind = header->format == pictures::Format::kVideo ? kVideo : kPicture;
    found.width = header->width;
    found.height = header->height;
    found.orientation = header->orientation;
    found.duration = header->duration_ms;
    found.traits = (header->has_gps ? kHasGps : 0) | (header->refused ? kRefused : 0);
    taken = header->date_taken;
  }
  found.date = date_of(candidate, taken);
  return found;
}

void ProbePool::submit(ProbeJob job) {
  std::unique_lock lock(mutex_);
  done_.wait(lock, [this] { return jobs_.size() < kMostJobs || shared_.stopping; });
  jobs_.push_back(std::move(job));
  work_.notify_one();
}

void ProbePool::wait_until_idle() {
  std::unique_lock lock(mutex_);
  done_.wait(lock, [this] { return (jobs_.empty() && busy_ == 0) || shared_.stopping; });
}

void ProbePool::wake() {
  const std::scoped_lock lock(mutex_);
  work_.notify_all();
  done_.notify_all();
}

void ProbePool::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    work_.wait(lock, [this] { return !jobs_.empty() || shared_.stopping; });
    if (shared_.stopping) return;
    const ProbeJob job = std::move(jobs_.front());
    jobs_.pop_front();
    ++busy_;
    done_.notify_all();
    lock.unlock();
    probe(job);
    lock.lock();
    --busy_;
    done_.notify_all();
  }
}

void ProbePool::probe(const ProbeJob &job) {
  auto files = std::make_shared<std::vector<Found>>();
  files->reserve(job.files.size());
  for (const Candidate &candidate : job.files) {
    if (shared_.stopping) return;
    const Fd file(openat(job.descriptor->get(), candidate.name.c_str(),
                         O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file) {
      files->push_back(describe(job.folder, candidate, file.get()));
    } else if (errno != ENOENT && errno != ELOOP) {
      shared_.progress.problem("The file " + display_name(join(job.folder->path, candidate.name)) +
                               " cannot be read: " + g_strerror(errno) + ".");
    }
  }
  // Ids grow with the date inside a portion, so what came last is the newest picture, and pages
  // in the order of dates lie close together in the index.
  std::sort(files->begin(), files->end(), [](const Found &a, const Found &b) {
    return std::tie(a.date, a.name) < std::tie(b.date, b.name);
  });
  writer_.post_when_due([files](Writer &writer) { writer.store(*files); });
}

}  // namespace phone::media

#include "media-browser/announcer.hpp"

#include <gdk/gdk.h>

#include <cstring>
#include <utility>
#include <vector>

#include "media-browser/display.hpp"

namespace phone::media {

namespace {

/// Progress is for people: more often than this nobody can read it.
constexpr gint64 kProgressEvery = 100 * G_TIME_SPAN_MILLISECOND;

}  // namespace

Announcer &Announcer::instance() {
  // Never destroyed: an idle call may come while the process ends.
  static auto *announcer = new Announcer;
  return *announcer;
}

guint Announcer::add(media_index_cb callback, gpointer user_data) {
  const std::scoped_lock lock(mutex_);
  listeners_[++last_id_] = {callback, user_data};
  return last_id_;
}

void Announcer::remove(guint id) {
  const std::scoped_lock lock(mutex_);
  listeners_.erase(id);
}

void Announcer::announce(guint changes) {
  const std::scoped_lock lock(mutex_);
  const bool scheduled = pending_ != 0;
  pending_ |= changes;
  if (!scheduled && pending_ != 0) gdk_threads_add_idle(tell, this);
}

void Announcer::forget() {
  const std::scoped_lock lock(mutex_);
  pending_ = 0;
}

gboolean Announcer::tell(gpointer data) {
  auto *self = static_cast<Announcer *>(data);
  guint changes = 0;
  std::vector<guint> ids;
  {
    const std::scoped_lock lock(self->mutex_);
    changes = std::exchange(self->pending_, 0);
    for (const auto &[id, listener] : self->listeners_) ids.push_back(id);
  }
  if (changes == 0) return FALSE;
  // A listener may add and remove listeners, itself included.
  for (const guint id : ids) {
    Listener listener{};
    {
      const std::scoped_lock lock(self->mutex_);
      const auto found = self->listeners_.find(id);
      if (found == self->listeners_.end()) continue;
      listener = found->second;
    }
    listener.callback(changes, listener.user_data);
  }
  return FALSE;
}

void Progress::begin() {
  const std::scoped_lock lock(mutex_);
  running_ = true;
  files_seen_ = 0;
  problems_ = 0;
  problem_.clear();
}

void Progress::end() {
  const std::scoped_lock lock(mutex_);
  running_ = false;
}

void Progress::saw(guint64 entries) {
  {
    const std::scoped_lock lock(mutex_);
    files_seen_ += entries;
    const gint64 now = g_get_monotonic_time();
    if (now - last_announced_ < kProgressEvery) return;
    last_announced_ = now;
  }
  Announcer::instance().announce(MEDIA_INDEX_PROGRESS);
}

void Progress::set_media_files(guint64 files) {
  const std::scoped_lock lock(mutex_);
  media_files_ = files;
}

void Progress::problem(const std::string &sentence) {
  {
    const std::scoped_lock lock(mutex_);
    ++problems_;
    problem_ = sentence;
  }
  Announcer::instance().announce(MEDIA_INDEX_PROGRESS);
}

void Progress::lasting_problem(const std::string &sentence) {
  {
    const std::scoped_lock lock(mutex_);
    ++lasting_problems_;
    lasting_problem_ = sentence;
  }
  Announcer::instance().announce(MEDIA_INDEX_PROGRESS);
}

void Progress::fill(MediaIndexProgress &progress) const {
  const std::scoped_lock lock(mutex_);
  std::memset(&progress, 0, sizeof progress);
  progress.running = running_ ? TRUE : FALSE;
  progress.files_seen = files_seen_;
  progress.media_files = media_files_;
  progress.problems = problems_ + lasting_problems_;
  const std::string &sentence = problem_.empty() ? lasting_problem_ : problem_;
  const std::string_view fitting = cut_text(sentence, sizeof progress.problem - 1);
  std::memcpy(progress.problem, fitting.data(), fitting.size());
}

}  // namespace phone::media

#include <picture-loader.h>

#include <gdk/gdk.h>

#include <algorithm>
#include <check.hpp>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "pictures/picture-file.hpp"

namespace phone::pictures {
namespace {

/// Somebody waits, but can go on to another picture meanwhile.
constexpr TimeLimit kTimeLimit{2 * G_TIME_SPAN_SECOND, 10 * G_TIME_SPAN_SECOND};
constexpr TimeLimit kVideoTimeLimit{5 * G_TIME_SPAN_SECOND, 20 * G_TIME_SPAN_SECOND};

/// One request, from its beginning to its callback.
struct Job {
  guint id = 0;
  std::string path;
  int width = 0;
  int height = 0;
  picture_loaded_cb callback = nullptr;
  gpointer user_data = nullptr;
  Cancellation cancellation;
  Result result;
};

using JobPtr = std::shared_ptr<Job>;

gboolean deliver(gpointer);

/// Takes requests on one thread of its own, newest first: what somebody looks at now was asked
/// for last.
class Loader {
 public:
  static Loader &shared() {
    static Loader &loader = *new Loader;
    return loader;
  }

  void add(JobPtr job) {
    const std::scoped_lock lock(mutex_);
    live_.push_back(job);
    waiting_.push_back(std::move(job));
    if (!thread_.joinable()) {
      stopping_ = false;
      thread_ = std::thread([this] { run(); });
    }
    work_.notify_one();
  }

  /// @return false when the request has ended or was cancelled
  bool forget(guint id) {
    const std::scoped_lock lock(mutex_);
    const auto is_it = [id](const JobPtr &job) { return job->id == id; };
    const auto found = std::find_if(live_.begin(), live_.end(), is_it);
    if (found == live_.end()) return false;
    (*found)->cancellation.cancel();
    live_.erase(found);
    std::erase_if(waiting_, is_it);
    return true;
  }

  /// Requests whose decode has ended since the last call.
  std::vector<JobPtr> take_finished() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(finished_, {});
  }

  void stop() {
    std::thread thread;
    {
      const std::scoped_lock lock(mutex_);
      for (const JobPtr &job : live_) job->cancellation.cancel();
      live_.clear();
      waiting_.clear();
      // A delivery that is under way finds nothing, and nothing that ends from here on is live.
      finished_.clear();
      stopping_ = true;
      thread.swap(thread_);
    }
    work_.notify_one();
    if (thread.joinable()) thread.join();
  }

 private:
  void run() {
    for (;;) {
      JobPtr job;
      {
        std::unique_lock lock(mutex_);
        work_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (stopping_) return;
        job = std::move(waiting_.back());
        waiting_.pop_back();
      }
      load(*job);
      finish(std::move(job));
    }
  }

  void finish(JobPtr job) {
    const std::scoped_lock lock(mutex_);
    if (finished_.empty()) {
      gdk_threads_add_idle_full(G_PRIORITY_DEFAULT, deliver, nullptr, nullptr);
    }
    finished_.push_back(std::move(job));
  }

  static void load(Job &job) {
    if (job.cancellation.cancelled()) return;
    Wish wish;
    wish.width = job.width;
    wish.height = job.height;
    wish.flags = wire::kUpright;
    wish.time_limit = kTimeLimit;
    wish.video_time_limit = kVideoTimeLimit;
    wish.cancellation = &job.cancellation;
    job.result = decode_picture(open_picture(job.path.c_str()), wish);
  }

  std::mutex mutex_;
  std::condition_variable work_;
  // All guarded by mutex_. Live requests are those whose callback is still owed.
  std::vector<JobPtr> live_;
  std::vector<JobPtr> waiting_;
  std::vector<JobPtr> finished_;
  std::thread thread_;
  bool stopping_ = false;
};

void tell(const Job &job) {
  GdkPixbuf *pixbuf = job.result.pixbuf.get();
  const gchar *problem = pixbuf == nullptr ? sentence(job.result.problem) : nullptr;
  job.callback(job.id, pixbuf, problem, job.user_data);
}

gboolean deliver(gpointer) {
  for (const JobPtr &job : Loader::shared().take_finished()) {
    // A callback may have cancelled one of those that follow it.
    if (Loader::shared().forget(job->id)) tell(*job);
  }
  return G_SOURCE_REMOVE;
}

}  // namespace
}  // namespace phone::pictures

guint picture_loader_load(const gchar *path, gint width, gint height, picture_loaded_cb callback,
                          gpointer user_data) {
  PB_CHECK(path != NULL, 0);
  PB_CHECK(callback != NULL, 0);
  using namespace phone::pictures;
  static guint last_id = 0;
  if (++last_id == 0) ++last_id;
  const auto job = std::make_shared<Job>();
  job->id = last_id;
  job->path = path;
  job->width = std::max(width, 1);
  job->height = std::max(height, 1);
  job->callback = callback;
  job->user_data = user_data;
  Loader::shared().add(job);
  return job->id;
}

void picture_loader_cancel(guint request) { phone::pictures::Loader::shared().forget(request); }

void picture_loader_shutdown(void) {
  phone::pictures::Loader::shared().stop();
  phone::pictures::Pool::shared().shutdown();
}

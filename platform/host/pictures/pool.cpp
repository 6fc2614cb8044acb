#include "pictures/pool.hpp"

#include <algorithm>
#include <atomic>
#include <thread>

#include "pictures/process.hpp"

namespace phone::pictures {
namespace {

/// The picture in the viewer, and a call that cannot wait for it.
constexpr int kInteractiveLimit = 2;
constexpr int kBackgroundNice = 10;
constexpr int kDrawingLimit = 1;
constexpr int kDrawingNice = 5;

/// Said once: without the decoder every picture fails alike.
void report_missing_decoder() {
  static std::atomic<bool> reported = false;
  if (reported.exchange(true)) return;
  const std::string path = decoder_path();
  if (path.empty()) {
    g_warning("No pictures: the program photobrowser-decoder is not installed");
  } else {
    g_warning("No pictures: %s does not start", path.c_str());
  }
}

}  // namespace

class Pool::Place {
 public:
  Place(Pool &pool, Crew &crew) : pool_(pool), crew_(crew) {
    std::unique_lock lock(pool_.mutex_);
    pool_.freed_.wait(lock, [this] { return crew_.busy < crew_.limit; });
    ++crew_.busy;
  }
  ~Place() {
    {
      const std::scoped_lock lock(pool_.mutex_);
      --crew_.busy;
    }
    pool_.freed_.notify_all();
  }
  Place(const Place &) = delete;
  Place &operator=(const Place &) = delete;

 private:
  Pool &pool_;
  Crew &crew_;
};

Pool::Pool()
    : background_{std::max(static_cast<int>(std::thread::hardware_concurrency()) - 1, 1),
                  kBackgroundNice},
      interactive_{kInteractiveLimit},
      drawings_{kDrawingLimit, kDrawingNice, true} {}

Pool &Pool::shared() {
  static Pool &pool = *new Pool;
  return pool;
}

Pool::Crew &Pool::crew_for(Priority priority) {
  if (priority == Priority::kDrawing) return drawings_;
  return priority == Priority::kBackground ? background_ : interactive_;
}

std::unique_ptr<Worker> Pool::take(Crew &crew) {
  const std::scoped_lock lock(mutex_);
  if (crew.idle.empty()) return nullptr;
  std::unique_ptr<Worker> worker = std::move(crew.idle.back());
  crew.idle.pop_back();
  return worker;
}

void Pool::give_back(Crew &crew, std::unique_ptr<Worker> worker, unsigned generation) {
  if (!worker || !worker->usable()) return;
  // What is not kept ends after the lock is gone, with the argument.
  const std::scoped_lock lock(mutex_);
  if (generation == generation_) crew.idle.push_back(std::move(worker));
}

Worker::Answer Pool::decode(int fd, const wire::Request &order, Priority priority,
                            const TimeLimit &limit, const Cancellation *cancellation) {
  Crew &crew = crew_for(priority);
  const Place place(*this, crew);
  unsigned generation;
  {
    const std::scoped_lock lock(mutex_);
    generation = generation_;
  }
  constexpr int kTries = 2;
  Worker::Answer answer{{Problem::kBusy, {}}};
  for (int i = 0; i < kTries; ++i) {
    std::unique_ptr<Worker> worker = take(crew);
    if (!worker) worker = Worker::start(crew.nice, crew.drawings, answer.result.problem);
    if (!worker) break;
    answer = worker->decode(fd, order, limit, cancellation);
    give_back(crew, std::move(worker), generation);
    if (!answer.worth_another_try) break;
  }
  if (answer.result.problem == Problem::kNoDecoder) report_missing_decoder();
  return answer;
}

void Pool::shutdown() {
  // Ended outside the lock.
  std::vector<std::unique_ptr<Worker>> ended;
  std::vector<std::unique_ptr<Worker>> ended_too;
  std::vector<std::unique_ptr<Worker>> drawings_ended;
  {
    const std::scoped_lock lock(mutex_);
    ++generation_;
    ended.swap(background_.idle);
    ended_too.swap(interactive_.idle);
    drawings_ended.swap(drawings_.idle);
  }
}

}  // namespace phone::pictures

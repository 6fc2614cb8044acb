/// The decoder processes of this process.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "pictures/worker.hpp"

namespace phone::pictures {

enum class Priority {
  kBackground,   ///< thumbnails in advance
  kInteractive,  ///< somebody looks at the screen and waits
  kDrawing,      ///< drawings of either kind, in a process that has the fonts for them
};

/// Hands out decoder processes, started as they are needed: for background work as many as there
/// are processors but one, which give way to everything else on the machine; for interactive
/// work others, which background work cannot take. Any thread.
class Pool {
 public:
  /// The one of this process. It is never destroyed: threads may outlast static objects.
  static Pool &shared();

  /// Has an open file decoded by the next free process. Blocks. A process that is killed from
  /// outside is replaced and the file tried once more.
  Worker::Answer decode(int fd, const wire::Request &order, Priority priority,
                        const TimeLimit &limit, const Cancellation *cancellation);

  /// Ends the processes that are idle, and each other one when it is done.
  void shutdown();

  /// How many background requests can run at once.
  [[nodiscard]] int background_limit() const { return background_.limit; }

 private:
  /// The processes for one kind of work. Guarded by mutex_, but for the limit.
  struct Crew {
    const int limit;
    const int nice = 0;
    const bool drawings = false;
    int busy = 0;
    std::vector<std::unique_ptr<Worker>> idle;
  };
  /// The right to use one process of a crew.
  class Place;

  Pool();
  Crew &crew_for(Priority priority);
  std::unique_ptr<Worker> take(Crew &crew);
  void give_back(Crew &crew, std::unique_ptr<Worker> worker, unsigned generation);

  std::mutex mutex_;
  std::condition_variable freed_;
  Crew background_;
  Crew interactive_;
  Crew drawings_;
  unsigned generation_ = 0;  // guarded by mutex_
};

}  // namespace phone::pictures

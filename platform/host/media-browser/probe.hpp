/// Reads the headers of files that are new or have changed, on a few threads.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "media-browser/folder-fd.hpp"
#include "media-browser/found.hpp"
#include "media-browser/shared.hpp"
#include "media-browser/writer.hpp"

namespace phone::media {

/// A file whose header is to be read.
struct Candidate {
  std::string name;
  FileState state;
  int kind_by_name;
};

struct ProbeJob {
  FolderPtr folder;
  FdPtr descriptor;
  std::vector<Candidate> files;
};

class ProbePool {
 public:
  ProbePool(Shared &shared, Writer &writer) : shared_(shared), writer_(writer) {}

  /// The function of each thread: works until Shared::stopping.
  void run();
  /// Wakes all threads, to see that they have to stop.
  void wake();
  /// Adds work; waits while there is a lot of it. What it finds goes to the index thread.
  void submit(ProbeJob job);
  /// Waits until everything that was submitted has gone to the index thread.
  void wait_until_idle();

 private:
  void probe(const ProbeJob &job);

  Shared &shared_;
  Writer &writer_;
  std::mutex mutex_;
  std::condition_variable work_;
  std::condition_variable done_;
  std::deque<ProbeJob> jobs_;
  int busy_ = 0;
};

/// Reads one file's header. What its content does not tell is taken from its name and times.
/// @param descriptor the open file
Found describe(const FolderPtr &folder, const Candidate &candidate, int descriptor);

}  // namespace phone::media

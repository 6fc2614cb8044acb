/// One decoder process and the conversation with it.
#pragma once

#include <memory>

#include "pictures/cancellation.hpp"
#include "pictures/descriptor.hpp"
#include "pictures/process.hpp"
#include "pictures/result.hpp"
#include "pictures/wire.hpp"

namespace phone::pictures {

/// Belongs to one thread at a time.
class Worker {
 public:
  /// Starts a process that gives way to others by so much as `nice` says, 0 to 19, for drawings
  /// or for everything else.
  /// @return nothing, with the reason in `problem`: kNoDecoder or kBusy
  static std::unique_ptr<Worker> start(int nice, bool drawings, Problem &problem);
  /// Ends the process.
  ~Worker();
  Worker(const Worker &) = delete;
  Worker &operator=(const Worker &) = delete;

  /// How a conversation ended.
  struct Answer {
    Result result;
    /// The file is a video: not decoded here.
    bool is_video = false;
    /// The file is a drawing: to be asked of a process for these.
    bool is_drawing = false;
    /// The process ended by no fault of the file: worth another try with another worker.
    bool worth_another_try = false;
  };

  /// Has an open file decoded. Waits until it is done, the time is up or the request is
  /// cancelled; in the two latter cases the process is ended.
  Answer decode(int fd, const wire::Request &order, const TimeLimit &limit,
                const Cancellation *cancellation);

  /// False once the process has ended or has done so much that it is to be replaced.
  [[nodiscard]] bool usable() const;

 private:
  Worker(pid_t child, Descriptor socket) : child_(child), socket_(std::move(socket)) {}
  Answer ended(bool by_file);
  Answer give_up(Problem problem);
  Answer receive(const wire::Request &request);

  pid_t child_;
  Descriptor socket_;
  std::uint32_t requests_ = 0;
};

}  // namespace phone::pictures

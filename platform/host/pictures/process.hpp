/// Child processes of the decoder program, started without running anything of this process
/// between fork and exec.
#pragma once

#include <glib.h>
#include <sys/types.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "pictures/cancellation.hpp"

namespace phone::pictures {

/// Where the decoder program is: $PHOTOBROWSER_DECODER, beside this library, or where it is
/// installed. Empty when it is nowhere.
std::string decoder_path();

/// Starts the decoder program with nothing but the given descriptors, each as {ours, theirs}.
/// @return the child, or -1 with errno
pid_t start_decoder(const std::vector<std::string> &arguments,
                    std::initializer_list<std::pair<int, int>> descriptors);

/// How a child ended, or was made to.
struct Ending {
  /// The program gave this exit status, or -1 when a signal ended it.
  int status = -1;
  int signal = 0;
};

/// Whether a child was killed by no fault of its own: when memory ends, by somebody's hand, or
/// by its own alarm, which it sets for the case that nobody watches it.
[[nodiscard]] bool was_killed(const Ending &ending);

/// Kills a child and takes it off the list of processes.
Ending end_process(pid_t child);

/// How long a child may take. On a machine that is busy with other things, a child that was not
/// given the processor is not at fault, nor is one that waits for a disk: up to the longest time,
/// it may go on until it has used the usual time of a processor itself.
struct TimeLimit {
  gint64 usual = 2 * G_TIME_SPAN_SECOND;
  gint64 longest = 2 * G_TIME_SPAN_SECOND;
};

enum class Outcome {
  kReady,
  kTooSlow,  ///< it has used its time of a processor and is not done
  kStarved,  ///< the longest time is over, and it has waited for much of it
  kCancelled,
};

/// Waits until a descriptor of a child can be read or has been closed at its end.
Outcome wait_for_child(int fd, pid_t child, const TimeLimit &limit,
                       const Cancellation *cancellation);

/// Waits for a child that is to end by itself, and ends it when it does not.
Outcome wait_for_end(pid_t child, const TimeLimit &limit, const Cancellation *cancellation,
                     Ending &ending);

}  // namespace phone::pictures

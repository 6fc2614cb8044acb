/// A disk under SQLite that fails or loses power when a test says so.
#pragma once

#include <random>
#include <string>

namespace test {

/// Stands between SQLite and its files from its making to its end. One at a time, and no
/// connection may be open when it comes or goes. What it does may be told on any thread.
class FaultyDisk {
 public:
  enum class Act { kWrite, kSync, kOpen };

  FaultyDisk();
  ~FaultyDisk();
  FaultyDisk(const FaultyDisk &) = delete;
  FaultyDisk &operator=(const FaultyDisk &) = delete;

  /// Lets the nth act of a kind fail, counted from now.
  /// @param for_good also every later one
  static void fail(Act act, int nth, bool for_good);
  /// From the nth write on, nothing reaches the disk any more, whatever it is.
  static void lose_power_at_write(int nth);
  /// Lets everything succeed again.
  static void mend();
  /// Acts of a kind since the last fail(), lose_power_at_write() or mend().
  static int count(Act act);
  /// Whether an act has failed since then.
  static bool has_failed();

  /// Gives the files the contents that a power failure leaves: everything up to the last sync,
  /// and of what was written after it some sectors, but not others. All connections are closed.
  static void restore_after_power_loss(std::mt19937 &random);
};

}  // namespace test

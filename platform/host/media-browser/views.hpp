/// The orders of the whole index as readers see them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "media-browser/order.hpp"
#include "media-browser/query.hpp"

namespace phone::media {

/// Hands orders from the index thread to the readers. Any thread.
///
/// A reader that counts the files of a filter takes the newest orders of that filter, and reads
/// pages of these until it counts again: a list sees the rows that it has counted, whatever
/// arrives meanwhile.
class Views {
 public:
  using OrderPtr = std::shared_ptr<const Order>;

  // Readers.

  /// Takes the newest orders of a filter. @return its number of files; nothing when none of its
  /// orders has been made yet
  std::optional<std::size_t> count_anew(ClassMask mask);
  /// The order that a reader's pages come from; NULL when it has not been made yet. The index
  /// thread is asked for it then.
  OrderPtr read(const OrderKey &key);
  /// Waits for an order. @return NULL when it is not there in time
  OrderPtr wait(const OrderKey &key, std::chrono::milliseconds longest);
  /// The newest order, without taking it.
  OrderPtr newest(const OrderKey &key) const;

  /// Takes a file out of all orders at once, ahead of the index thread.
  void hide(gint32 id);
  /// What a reader shows instead of the flags and web id in the index, until the index thread has
  /// stored them.
  struct Marks {
    std::optional<int> flags;
    std::optional<gint64> nfid;
  };
  /// @return a ticket for stored_marks()
  guint64 mark(gint32 id, const Marks &marks);
  /// All that readers have to know ahead of the index. Taken before the index is read: what the
  /// index thread stores after that is then seen twice, and not missed.
  struct Ahead {
    std::set<gint32> hidden;
    std::unordered_map<gint32, Marks> marks;
  };
  [[nodiscard]] Ahead ahead() const;

  // The index thread.

  /// Orders that readers have asked for and nobody has made.
  std::vector<OrderKey> take_wanted();
  /// Orders that have to follow changes.
  [[nodiscard]] std::map<OrderKey, OrderPtr> alive() const;
  /// Replaces the newest orders. What is hidden stays out of them.
  void publish(const std::map<OrderKey, OrderPtr> &orders);
  /// The index says now what readers were told ahead of it: these files have gone.
  void stored_gone(const std::vector<gint32> &ids);
  /// The same for marks, unless they have changed again since the ticket.
  void stored_marks(gint32 id, guint64 ticket);
  /// Drops every order, for another index file.
  void clear();
  /// Called when an order is wanted, on the reader's thread and without a lock.
  void set_wanted_hook(std::function<void()> hook);

 private:
  OrderPtr find(const OrderKey &key);
  void forget_least_used(const OrderKey &kept);

  mutable std::mutex mutex_;
  std::condition_variable arrived_;
  std::map<OrderKey, OrderPtr> newest_;
  std::map<OrderKey, OrderPtr> taken_;
  std::map<OrderKey, guint64> last_use_;
  guint64 uses_ = 0;
  std::set<OrderKey> wanted_;
  std::set<gint32> hidden_;
  struct Told {
    Marks marks;
    guint64 ticket;
  };
  std::unordered_map<gint32, Told> marks_;
  guint64 last_ticket_ = 0;
  std::function<void()> wanted_hook_;
};

}  // namespace phone::media

#include "media-browser/views.hpp"

#include <algorithm>
#include <utility>

namespace phone::media {

namespace {

/// Orders that are kept up to date at the same time; each takes four bytes a file.
constexpr std::size_t kMostOrders = 6;

Views::OrderPtr without(const Views::OrderPtr &order, const std::set<gint32> &ids) {
  const bool touched =
      std::any_of(ids.begin(), ids.end(), [&](gint32 id) { return order->row_of(id).has_value(); });
  if (!touched) return order;
  return order->changed(IdSet({ids.begin(), ids.end()}), {}, {});
}

}  // namespace

std::optional<std::size_t> Views::count_anew(ClassMask mask) {
  const std::scoped_lock lock(mutex_);
  std::erase_if(taken_, [mask](const auto &entry) { return entry.first.mask == mask; });
  std::optional<std::size_t> count;
  for (const auto &[key, order] : newest_) {
    if (key.mask != mask) continue;
    taken_[key] = order;
    count = order->size();
  }
  return count;
}

Views::OrderPtr Views::find(const OrderKey &key) {
  last_use_[key] = ++uses_;
  if (const auto taken = taken_.find(key); taken != taken_.end()) return taken->second;
  const auto found = newest_.find(key);
  if (found == newest_.end()) return nullptr;
  taken_[key] = found->second;
  return found->second;
}

Views::OrderPtr Views::read(const OrderKey &key) {
  std::function<void()> hook;
  {
    const std::scoped_lock lock(mutex_);
    if (OrderPtr order = find(key)) return order;
    if (!wanted_.insert(key).second) return nullptr;
    hook = wanted_hook_;
  }
  if (hook) hook();
  return nullptr;
}

Views::OrderPtr Views::wait(const OrderKey &key, std::chrono::milliseconds longest) {
  if (OrderPtr order = read(key)) return order;
  std::unique_lock lock(mutex_);
  OrderPtr order;
  arrived_.wait_for(lock, longest, [&] { return (order = find(key)) != nullptr; });
  return order;
}

Views::OrderPtr Views::newest(const OrderKey &key) const {
  const std::scoped_lock lock(mutex_);
  const auto found = newest_.find(key);
  return found == newest_.end() ? nullptr : found->second;
}

void Views::hide(gint32 id) {
  const std::scoped_lock lock(mutex_);
  hidden_.insert(id);
  for (auto &[key, order] : newest_) order = without(order, {id});
}

guint64 Views::mark(gint32 id, const Marks &marks) {
  const std::scoped_lock lock(mutex_);
  Told &told = marks_[id];
  if (marks.flags) told.marks.flags = marks.flags;
  if (marks.nfid) told.marks.nfid = marks.nfid;
  told.ticket = ++last_ticket_;
  return told.ticket;
}

Views::Ahead Views::ahead() const {
  const std::scoped_lock lock(mutex_);
  Ahead result{hidden_, {}};
  for (const auto &[id, told] : marks_) result.marks.emplace(id, told.marks);
  return result;
}

std::vector<OrderKey> Views::take_wanted() {
  const std::scoped_lock lock(mutex_);
  std::vector<OrderKey> keys;
  for (const OrderKey &key : wanted_) {
    if (!newest_.contains(key)) keys.push_back(key);
  }
  wanted_.clear();
  return keys;
}

std::map<OrderKey, Views::OrderPtr> Views::alive() const {
  const std::scoped_lock lock(mutex_);
  return newest_;
}

void Views::forget_least_used(const OrderKey &kept) {
  while (newest_.size() > kMostOrders) {
    const auto least =
        std::min_element(newest_.begin(), newest_.end(), [&](const auto &a, const auto &b) {
          return std::pair(a.first == kept, last_use_[a.first]) <
                 std::pair(b.first == kept, last_use_[b.first]);
        });
    taken_.erase(least->first);
    last_use_.erase(least->first);
    newest_.erase(least);
  }
}

void Views::publish(const std::map<OrderKey, OrderPtr> &orders) {
  const std::scoped_lock lock(mutex_);
  for (const auto &[key, order] : orders) {
    newest_[key] = without(order, hidden_);
    forget_least_used(key);
  }
  arrived_.notify_all();
}

void Views::stored_gone(const std::vector<gint32> &ids) {
  const std::scoped_lock lock(mutex_);
  for (const gint32 id : ids) hidden_.erase(id);
}

void Views::stored_marks(gint32 id, guint64 ticket) {
  const std::scoped_lock lock(mutex_);
  const auto found = marks_.find(id);
  if (found != marks_.end() && found->second.ticket == ticket) marks_.erase(found);
}

void Views::clear() {
  const std::scoped_lock lock(mutex_);
  newest_.clear();
  taken_.clear();
  hidden_.clear();
  marks_.clear();
}

void Views::set_wanted_hook(std::function<void()> hook) {
  const std::scoped_lock lock(mutex_);
  wanted_hook_ = std::move(hook);
}

}  // namespace phone::media

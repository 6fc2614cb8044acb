#include <algorithm>

#include "media-browser/writer.hpp"

namespace phone::media {

namespace {

constexpr int kPublishShare = 10;
constexpr std::chrono::milliseconds kPublishPause{100};

}  // namespace

void Writer::tell_ready() {
  gint64 files = 0;
  for (const auto &[file_class, number] : counts_) files += number;
  if (files > 0) shared_.set_ready();
}

bool Writer::publish_is_due() const {
  if (touched_.empty() || in_transaction_) return false;
  // While a scan runs, showing what it finds takes a tenth of the time at most.
  const Clock::duration pause =
      std::max<Clock::duration>(kPublishPause, publish_cost_ * kPublishShare);
  return !scanning_ || !shared_.ready || Clock::now() >= last_publish_ + pause;
}

void Writer::publish() {
  if (touched_.empty()) return;
  const Clock::time_point start = Clock::now();
  std::sort(touched_.begin(), touched_.end());
  touched_.erase(std::unique(touched_.begin(), touched_.end()), touched_.end());
  std::map<OrderKey, Views::OrderPtr> orders = shared_.views.alive();
  for (auto &[key, order] : orders) {
    Views::OrderPtr changed = orders_->follow(key, *order, touched_);
    if (changed == nullptr) throw IndexFailure{sqlite3_extended_errcode(database_.get())};
    order = std::move(changed);
  }
  shared_.views.publish(orders);
  shared_.views.stored_gone(buried_for_readers_);
  buried_for_readers_.clear();
  touched_.clear();
  last_publish_ = Clock::now();
  publish_cost_ = last_publish_ - start;
  tell_ready();
  Announcer::instance().announce(MEDIA_INDEX_ROWS_CHANGED);
}

void Writer::make_wanted_orders() {
  const std::vector<OrderKey> wanted = shared_.views.take_wanted();
  if (wanted.empty()) return;
  // An order is made of everything that is committed, so the others have to be as new.
  commit();
  publish();
  std::map<OrderKey, Views::OrderPtr> orders;
  for (const OrderKey &key : wanted) {
    Views::OrderPtr order = orders_->build(key);
    if (order == nullptr) throw IndexFailure{sqlite3_extended_errcode(database_.get())};
    orders[key] = std::move(order);
  }
  shared_.views.publish(orders);
}

}  // namespace phone::media

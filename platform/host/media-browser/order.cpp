#include "media-browser/order.hpp"

namespace phone::media {

IdSet::IdSet(const std::vector<gint32> &ids) {
  gint32 largest = -1;
  for (const gint32 id : ids) largest = std::max(largest, id);
  words_.resize(static_cast<std::size_t>(largest + 1) / 64 + 1);
  for (const gint32 id : ids) {
    if (id >= 0) words_[static_cast<guint32>(id) / 64] |= guint64{1} << (id % 64);
  }
}

Order::Order(const std::vector<gint32> &ids) { append_split(ids); }

void Order::append(Piece piece) {
  if (piece->empty()) return;
  starts_.push_back(size_);
  size_ += piece->size();
  pieces_.push_back(std::move(piece));
}

void Order::append_split(const std::vector<gint32> &ids) {
  const std::size_t parts = (ids.size() + kPiece - 1) / kPiece;
  for (std::size_t part = 0; part < parts; ++part) {
    const auto first = ids.begin() + static_cast<std::ptrdiff_t>(ids.size() * part / parts);
    const auto last = ids.begin() + static_cast<std::ptrdiff_t>(ids.size() * (part + 1) / parts);
    append(std::make_shared<const std::vector<gint32>>(first, last));
  }
}

std::size_t Order::piece_of(std::size_t row) const {
  const auto behind = std::upper_bound(starts_.begin(), starts_.end(), row);
  return static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

gint32 Order::at(std::size_t row) const {
  const std::size_t piece = piece_of(row);
  return (*pieces_[piece])[row - starts_[piece]];
}

std::vector<gint32> Order::page(std::size_t first, std::size_t count) const {
  std::vector<gint32> ids;
  if (first >= size_) return ids;
  std::size_t wanted = std::min(count, size_ - first);
  ids.reserve(wanted);
  std::size_t piece = piece_of(first);
  std::size_t offset = first - starts_[piece];
  while (wanted > 0) {
    const std::vector<gint32> &from = *pieces_[piece++];
    const std::size_t taken = std::min(wanted, from.size() - offset);
    const auto begin = from.begin() + static_cast<std::ptrdiff_t>(offset);
    ids.insert(ids.end(), begin, begin + static_cast<std::ptrdiff_t>(taken));
    wanted -= taken;
    offset = 0;
  }
  return ids;
}

std::vector<gint32> Order::page_from_end(std::size_t first, std::size_t count) const {
  if (first >= size_) return {};
  const std::size_t wanted = std::min(count, size_ - first);
  std::vector<gint32> ids = page(size_ - first - wanted, wanted);
  std::reverse(ids.begin(), ids.end());
  return ids;
}

std::optional<std::size_t> Order::row_of(gint32 id) const {
  for (std::size_t piece = 0; piece < pieces_.size(); ++piece) {
    const std::vector<gint32> &ids = *pieces_[piece];
    // Counting has no early way out, which lets the compiler compare many ids at once.
    std::size_t hits = 0;
    for (const gint32 other : ids) hits += other == id ? 1 : 0;
    if (hits == 0) continue;
    const auto found = std::find(ids.begin(), ids.end(), id);
    return starts_[piece] + static_cast<std::size_t>(found - ids.begin());
  }
  return std::nullopt;
}

std::shared_ptr<Order> Order::without(const IdSet &leaving) const {
  auto result = std::make_shared<Order>();
  for (const Piece &piece : pieces_) {
    const auto leaves = [&leaving](gint32 id) { return leaving.has(id); };
    if (std::none_of(piece->begin(), piece->end(), leaves)) {
      result->append(piece);
      continue;
    }
    std::vector<gint32> kept;
    kept.reserve(piece->size());
    std::remove_copy_if(piece->begin(), piece->end(), std::back_inserter(kept), leaves);
    result->append(std::make_shared<const std::vector<gint32>>(std::move(kept)));
  }
  return result;
}

std::shared_ptr<const Order> Order::changed(
    const IdSet &leaving, const std::vector<gint32> &coming,
    const std::function<bool(gint32 present, gint32 comer)> &before) const {
  const std::shared_ptr<Order> kept = without(leaving);
  if (coming.empty()) return kept;
  auto result = std::make_shared<Order>();
  auto comer = coming.begin();
  for (std::size_t at = 0; at < kept->pieces_.size(); ++at) {
    const Piece &piece = kept->pieces_[at];
    const bool last = at + 1 == kept->pieces_.size();
    // Those whose place is ahead of the next piece belong into this one.
    auto behind = coming.end();
    if (!last) {
      const gint32 next = kept->pieces_[at + 1]->front();
      behind =
          std::partition_point(comer, coming.end(), [&](gint32 id) { return !before(next, id); });
    }
    if (comer == behind) {
      result->append(piece);
      continue;
    }
    std::vector<gint32> merged;
    merged.reserve(piece->size() + static_cast<std::size_t>(behind - comer));
    auto present = piece->begin();
    for (; comer != behind; ++comer) {
      const auto place = std::partition_point(present, piece->end(),
                                              [&](gint32 id) { return before(id, *comer); });
      merged.insert(merged.end(), present, place);
      merged.push_back(*comer);
      present = place;
    }
    merged.insert(merged.end(), present, piece->end());
    result->append_split(merged);
  }
  if (kept->pieces_.empty()) result->append_split(coming);
  return result;
}

}  // namespace phone::media

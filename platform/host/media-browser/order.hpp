/// A list of file ids in some order, cheap to read anywhere and cheap to change a little.
#pragma once

#include <glib.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace phone::media {

/// A set of ids that are small numbers.
class IdSet {
 public:
  explicit IdSet(const std::vector<gint32> &ids);
  [[nodiscard]] bool has(gint32 id) const {
    const auto at = static_cast<guint32>(id);
    return at / 64 < words_.size() && (words_[at / 64] >> (at % 64) & 1) != 0;
  }

 private:
  std::vector<guint64> words_;
};

/// Ids in ascending order of a key. It never changes, so threads share it freely; a changed order
/// is another object that shares all untouched pieces with this one.
class Order {
 public:
  /// Ids of a piece. Small enough to be copied for one new file, large enough that a million ids
  /// have a thousand pieces.
  static constexpr std::size_t kPiece = 1024;

  Order() = default;
  explicit Order(const std::vector<gint32> &ids);

  [[nodiscard]] std::size_t size() const { return size_; }
  /// @param row less than size()
  [[nodiscard]] gint32 at(std::size_t row) const;
  /// Ids of rows first, first + 1 and so on; as many as there are up to count.
  [[nodiscard]] std::vector<gint32> page(std::size_t first, std::size_t count) const;
  /// The same of the reversed order.
  [[nodiscard]] std::vector<gint32> page_from_end(std::size_t first, std::size_t count) const;
  [[nodiscard]] std::optional<std::size_t> row_of(gint32 id) const;

  /// The order without some ids and with others added.
  /// @param leaving ids that are taken out where they are in it
  /// @param coming ids that are put in, in ascending order of their keys; those that were in the
  ///        order are also in leaving
  /// @param before whether the key of an id of this order is below the key of an id of coming
  [[nodiscard]] std::shared_ptr<const Order> changed(
      const IdSet &leaving, const std::vector<gint32> &coming,
      const std::function<bool(gint32 present, gint32 comer)> &before) const;

 private:
  using Piece = std::shared_ptr<const std::vector<gint32>>;

  void append(Piece piece);
  void append_split(const std::vector<gint32> &ids);
  [[nodiscard]] std::shared_ptr<Order> without(const IdSet &leaving) const;
  [[nodiscard]] std::size_t piece_of(std::size_t row) const;

  std::vector<Piece> pieces_;
  /// Row of the first id of each piece.
  std::vector<std::size_t> starts_;
  std::size_t size_ = 0;
};

}  // namespace phone::media

/// Rows of a list of which only few are held. Costs follow the rows held, never the length of
/// the list: looking up, filling, dropping and renumbering are logarithmic in them.
#pragma once

#include <glib-object.h>

#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <utility>
#include <vector>

namespace phone::gtk {

/// The values of one row, of the types of its columns. Freed with their owner.
class RowValues {
 public:
  explicit RowValues(std::span<const GType> types);
  ~RowValues();
  RowValues(const RowValues &) = delete;
  RowValues &operator=(const RowValues &) = delete;

  GValue &operator[](std::size_t column) { return values_[column]; }

 private:
  std::size_t count_;
  std::unique_ptr<GValue[]> values_;
};

/// One row that is held.
struct FilledRow {
  FilledRow(std::span<const GType> types, bool is_pinned, bool is_outside, std::uint64_t when)
      : values(types), pinned(is_pinned), outside(is_outside), age(when) {}

  RowValues values;
  const bool pinned;        ///< stays until it is removed
  const bool outside;       ///< was filled outside the window
  const std::uint64_t age;  ///< when it was filled; later is larger
};

/// What a caller took out; destroying it releases the values.
using DroppedRows = std::vector<std::unique_ptr<FilledRow>>;

/// A search tree over row numbers, balanced by random priorities. A removal in front of many
/// rows leaves one pending shift at the top of their subtree.
class SparseRows {
 public:
  SparseRows();
  ~SparseRows();
  SparseRows(const SparseRows &) = delete;
  SparseRows &operator=(const SparseRows &) = delete;

  [[nodiscard]] FilledRow *find(int row) const;
  /// The row must not be held.
  FilledRow &insert(int row, std::unique_ptr<FilledRow> filled);
  /// Lets go of a row and keeps all numbers; nullptr when it is not held.
  std::unique_ptr<FilledRow> take(int row);
  /// Lets go of a row and moves all later rows one down; nullptr when it is not held.
  std::unique_ptr<FilledRow> take_and_renumber(int row);
  /// Lets go of all rows from this one on.
  DroppedRows take_from(int row);
  /// Lets go of all rows outside first to last that are not pinned.
  DroppedRows take_unpinned_outside(int first, int last);
  /// Row numbers and ages of all rows outside first to last that are not pinned.
  [[nodiscard]] std::vector<std::pair<std::uint64_t, int>> unpinned_outside(int first,
                                                                            int last) const;
  [[nodiscard]] bool empty() const { return root_ == nullptr; }

 private:
  struct Node;
  using NodePtr = std::unique_ptr<Node>;

  static void settle(Node &node);
  static void count(Node &node);
  static NodePtr merge(NodePtr left, NodePtr right);
  static std::pair<NodePtr, NodePtr> split(NodePtr tree, int row);
  static NodePtr remove_first(NodePtr tree, std::unique_ptr<FilledRow> *taken);
  std::unique_ptr<FilledRow> take(int row, int shift);

  NodePtr root_;
  std::minstd_rand priorities_;
};

}  // namespace phone::gtk

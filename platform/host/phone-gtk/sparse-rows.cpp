#include "phone-gtk/sparse-rows.hpp"

namespace phone::gtk {

RowValues::RowValues(std::span<const GType> types)
    : count_(types.size()), values_(std::make_unique<GValue[]>(types.size())) {
  for (std::size_t i = 0; i < count_; ++i) g_value_init(&values_[i], types[i]);
}

RowValues::~RowValues() {
  for (std::size_t i = 0; i < count_; ++i) g_value_unset(&values_[i]);
}

struct SparseRows::Node {
  int row;
  int shift = 0;     // still to be added to the rows of both subtrees
  int unpinned = 0;  // rows of this subtree that may be let go
  std::uint_fast32_t priority;
  std::unique_ptr<FilledRow> filled;
  NodePtr left;
  NodePtr right;
};

SparseRows::SparseRows() = default;
SparseRows::~SparseRows() = default;

/// Hands a pending shift to the children.
void SparseRows::settle(Node &node) {
  if (node.shift == 0) return;
  for (Node *child : {node.left.get(), node.right.get()}) {
    if (child == nullptr) continue;
    child->row += node.shift;
    child->shift += node.shift;
  }
  node.shift = 0;
}

void SparseRows::count(Node &node) {
  node.unpinned = (node.filled->pinned ? 0 : 1) + (node.left ? node.left->unpinned : 0) +
                  (node.right ? node.right->unpinned : 0);
}

/// All rows of left are before all rows of right.
SparseRows::NodePtr SparseRows::merge(NodePtr left, NodePtr right) {
  if (!left) return right;
  if (!right) return left;
  if (left->priority > right->priority) {
    settle(*left);
    left->right = merge(std::move(left->right), std::move(right));
    count(*left);
    return left;
  }
  settle(*right);
  right->left = merge(std::move(left), std::move(right->left));
  count(*right);
  return right;
}

/// Rows before the given one, and the others.
std::pair<SparseRows::NodePtr, SparseRows::NodePtr> SparseRows::split(NodePtr tree, int row) {
  if (!tree) return {};
  settle(*tree);
  if (tree->row < row) {
    auto [before, rest] = split(std::move(tree->right), row);
    tree->right = std::move(before);
    count(*tree);
    return {std::move(tree), std::move(rest)};
  }
  auto [before, rest] = split(std::move(tree->left), row);
  tree->left = std::move(rest);
  count(*tree);
  return {std::move(before), std::move(tree)};
}

SparseRows::NodePtr SparseRows::remove_first(NodePtr tree, std::unique_ptr<FilledRow> *taken) {
  settle(*tree);
  if (!tree->left) {
    *taken = std::move(tree->filled);
    return std::move(tree->right);
  }
  tree->left = remove_first(std::move(tree->left), taken);
  count(*tree);
  return tree;
}

FilledRow *SparseRows::find(int row) const {
  int shift = 0;
  for (const Node *node = root_.get(); node != nullptr;) {
    const int here = node->row + shift;
    if (here == row) return node->filled.get();
    shift += node->shift;
    node = row < here ? node->left.get() : node->right.get();
  }
  return nullptr;
}

FilledRow &SparseRows::insert(int row, std::unique_ptr<FilledRow> filled) {
  auto node = std::make_unique<Node>();
  node->row = row;
  node->priority = priorities_();
  node->filled = std::move(filled);
  count(*node);
  FilledRow &inserted = *node->filled;
  auto [before, rest] = split(std::move(root_), row);
  root_ = merge(merge(std::move(before), std::move(node)), std::move(rest));
  return inserted;
}

std::unique_ptr<FilledRow> SparseRows::take(int row, int shift) {
  std::unique_ptr<FilledRow> taken;
  auto [before, rest] = split(std::move(root_), row);
  auto [here, after] = split(std::move(rest), row + 1);
  if (here) here = remove_first(std::move(here), &taken);
  if (after) {
    after->row += shift;
    after->shift += shift;
  }
  root_ = merge(std::move(before), std::move(after));
  return taken;
}

std::unique_ptr<FilledRow> SparseRows::take(int row) { return take(row, 0); }

std::unique_ptr<FilledRow> SparseRows::take_and_renumber(int row) { return take(row, -1); }

DroppedRows SparseRows::take_from(int row) {
  auto [before, rest] = split(std::move(root_), row);
  root_ = std::move(before);
  DroppedRows dropped;
  while (rest) {
    dropped.emplace_back();
    rest = remove_first(std::move(rest), &dropped.back());
  }
  return dropped;
}

std::vector<std::pair<std::uint64_t, int>> SparseRows::unpinned_outside(int first, int last) const {
  struct Visit {
    const Node *node;
    int shift;
  };
  std::vector<std::pair<std::uint64_t, int>> found;
  std::vector<Visit> open{{root_.get(), 0}};
  while (!open.empty()) {
    const auto [node, shift] = open.back();
    open.pop_back();
    if (node == nullptr || node->unpinned == 0) continue;
    const int row = node->row + shift;
    if (!node->filled->pinned && (row < first || row > last)) {
      found.emplace_back(node->filled->age, row);
    }
    open.push_back({node->left.get(), shift + node->shift});
    open.push_back({node->right.get(), shift + node->shift});
  }
  return found;
}

DroppedRows SparseRows::take_unpinned_outside(int first, int last) {
  DroppedRows dropped;
  for (const auto &[age, row] : unpinned_outside(first, last)) dropped.push_back(take(row));
  return dropped;
}

}  // namespace phone::gtk

/// Random walks through lists with empty rows, step by step beside a model that says in a few
/// lines what each step has to do.
#include <optional>
#include <random>

#include "browsing-fixture.hpp"
#include "browsing-model.hpp"

namespace {

constexpr int kWalks = 40;
constexpr int kSteps = 60;

using Model = BrowsingModel;

class RandomWalk : public BrowsingFixture, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    random_.seed(static_cast<unsigned>(GetParam()));
    notified_.emplace(state(), "item-index");
    install();
  }
  void TearDown() override {
    notified_.reset();
    list_.reset();
    BrowsingFixture::TearDown();
  }

  gint pick(gint low, gint high) { return std::uniform_int_distribution<gint>(low, high)(random_); }
  /// A row that is mostly inside the list, sometimes next to it and sometimes far outside.
  gint pick_row() {
    const gint edge = std::max(model_.length, 1);
    switch (pick(0, 9)) {
      case 0:
        return G_MAXINT;
      case 1:
        return G_MININT;
      case 2:
        return pick(-2, 0);
      default:
        return pick(0, edge + 1);
    }
  }

  void install() {
    model_.rows.clear();
    const gint length = pick(0, 3) == 0 ? pick(0, 2) : pick(3, 12);
    const gint empty_of_ten = pick(0, 9);
    for (gint row = 0; row < length; ++row) {
      model_.rows.push_back(pick(1, 10) <= empty_of_ten ? kEmptyRow : next_id_++);
    }
    list_ = make_list(model_.rows);
    pb_app_common_reset_list_index(list_.get());
    model_.length = model_.count = length;
    model_.index = 0;
  }
  void install_again() {
    pb_app_common_reset_list_index(list_.get());
    model_.count = model_.length;
    model_.index = 0;
  }
  void add_row() {
    const auto item = pb::Ref<PbItem>::adopt(pb_item_new());
    item->id = next_id_++;
    pb_item_list_add(list_.get(), item.get(), 0, nullptr);
    // A row that is added after a removal comes behind what is left, not at the length.
    model_.rows.push_back(item->id);
    ++model_.length;
  }
  void remove_row() {
    const gint row = pick(0, std::max(model_.length - 1, 0));
    if (model_.at(row) == kEmptyRow) return;
    ASSERT_TRUE(pb_item_list_remove_by_index(list_.get(), row));
    model_.rows.erase(model_.rows.begin() + row);
  }
  void jump_by_property() {
    model_.index = pick(-1, model_.length + 2);
    ++model_.notified;
    g_object_set(state(), "item-index", model_.index, nullptr);
  }

  /// Does one thing to both and compares what came of it.
  void step() {
    const gint row = pick_row();
    switch (pick(0, 12)) {
      case 0:
        return install();
      case 1:
        return install_again();
      case 2:
        return add_row();
      case 3:
        return remove_row();
      case 4:
        return jump_by_property();
      case 5:
        EXPECT_EQ(pb_app_common_navigate_item_by_index(row) != FALSE, model_.go(row));
        return;
      case 6:
        EXPECT_EQ(pb_app_common_navigate_item_backward() != FALSE, model_.back());
        return;
      case 7:
        EXPECT_EQ(pb_app_common_navigate_item_forward() != FALSE, model_.forward());
        return;
      case 8:
        EXPECT_EQ(pb_app_common_check_previous_item_exist() != FALSE, model_.has_previous());
        return;
      case 9:
        EXPECT_EQ(pb_app_common_check_next_item_exist() != FALSE, model_.has_next());
        return;
      case 10:
        EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(row)),
                  model_.nth_from_current(row));
        return;
      case 11:
        EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_list(list_.get(), row)), model_.nth(row));
        return;
      default:
        EXPECT_EQ(pb_app_common_navigate_cluster_by_index(row) != FALSE, model_.go(0));
        return;
    }
  }

  std::mt19937 random_;
  Model model_;
  ListRef list_;
  std::optional<NotifyCount> notified_;
  gint next_id_ = 100;
};

TEST_P(RandomWalk, EndsWhereTheModelDoes) {
  for (int i = 0; i < kSteps && !HasFailure(); ++i) {
    SCOPED_TRACE("step " + std::to_string(i));
    step();
    EXPECT_EQ(state()->item_index, model_.index);
    EXPECT_EQ(hidden().n_entire_items, model_.count);
    EXPECT_EQ(notified_->count(), model_.notified);
  }
}

TEST_P(RandomWalk, BorrowsEveryItem) {
  for (int i = 0; i < kSteps; ++i) step();

  for (gint row = 0; row < model_.length; ++row) {
    const PbItem *item = pb_app_common_get_nth_item_from_list(list_.get(), row);
    if (item == nullptr) continue;
    EXPECT_EQ(G_OBJECT(item)->ref_count, 1U) << "row " << row;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, testing::Range(0, kWalks));

}  // namespace

/// Random moves between the lists of a selection against a model of plain vectors.
#include <algorithm>
#include <random>

#include "fixture.hpp"

namespace {

using split_list_test::new_list;
using split_list_test::private_of;
using split_list_test::Records;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;

using Names = std::vector<const MbItem *>;

Names names_of(GList *records) {
  Names names;
  for (const MbItem *record : pb::each<const MbItem>(records)) names.push_back(record);
  return names;
}

struct Model {
  Names unselected;
  Names selected;
  Names filtered;

  void select(std::size_t index) {
    if (index >= unselected.size()) return;
    selected.push_back(unselected[index]);
    unselected.erase(unselected.begin() + static_cast<std::ptrdiff_t>(index));
  }

  int unselect(bool by_web_id, int filter, int key) {
    const auto found = std::ranges::find_if(selected, [&](const MbItem *record) {
      return (by_web_id ? record->nfid : record->id) == key;
    });
    if (found == selected.end()) return -1;
    const MbItem *record = *found;
    selected.erase(found);
    const bool shown = filter != 3 - record->media_type;
    Names &receiver = shown ? unselected : filtered;
    const auto place = std::ranges::upper_bound(receiver, record->db_idx, {}, &MbItem::db_idx);
    const auto position = place - receiver.begin();
    receiver.insert(place, record);
    return shown ? static_cast<int>(position) : -2;
  }
};

class RandomMoves : public SplitListTest, public testing::WithParamInterface<int> {
 protected:
  int draw(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

  /// Records with few different indices and ids, so that there are equal ones.
  std::vector<MbItem> draw_records() {
    std::vector<MbItem> records;
    for (int i = draw(0, 60); i > 0; --i) {
      records.push_back(
          split_list_test::record(draw(-30, 30), draw(-15, 15), draw(-30, 30), draw(1, 2)));
    }
    std::ranges::stable_sort(records, {}, &MbItem::db_idx);
    return records;
  }

  std::mt19937 random_{static_cast<unsigned>(GetParam())};
};

TEST_P(RandomMoves, LoseNothing) {
  const SplitPtr list = new_list();
  Records unselected(draw_records());
  Records selected;
  Records filtered;
  Model model{names_of(unselected.head), {}, {}};
  Names all = model.unselected;
  private_of(list).count = static_cast<gint>(all.size());
  private_of(list).record_last = static_cast<gint>(all.size()) - 1;
  private_of(list).record_list = unselected.head;

  for (int move = 0; move < 300; ++move) {
    pb_split_set_filter_type(draw(0, 3));
    const bool by_web_id = draw(0, 1) == 1;
    pb_split_set_id_type(by_web_id ? 1 : draw(0, 1) * 2);
    if (draw(0, 1) == 0) {
      const int index = draw(0, static_cast<int>(model.unselected.size()));
      model.select(static_cast<std::size_t>(index));
      pb_split_list_select_item(list.get(), &unselected.head, &selected.head,
                                static_cast<guint>(index));
    } else {
      const int key = draw(-30, 30);
      const int expected = model.unselect(by_web_id, pb_split_get_filter_type(), key);
      ASSERT_EQ(pb_split_list_unselect_item(list.get(), &unselected.head, &selected.head,
                                            &filtered.head, key),
                expected)
          << "move " << move;
    }
    ASSERT_EQ(names_of(unselected.head), model.unselected) << "move " << move;
    ASSERT_EQ(names_of(selected.head), model.selected) << "move " << move;
    ASSERT_EQ(names_of(filtered.head), model.filtered) << "move " << move;
    ASSERT_TRUE(std::ranges::is_sorted(model.unselected, {}, &MbItem::db_idx));
    ASSERT_TRUE(std::ranges::is_sorted(model.filtered, {}, &MbItem::db_idx));
    ASSERT_EQ(pb_split_list_get_length(list.get()), static_cast<gint>(model.unselected.size()));
    ASSERT_EQ(private_of(list).record_last, pb_split_list_get_length(list.get()) - 1);
    ASSERT_EQ(private_of(list).record_list, unselected.head);
  }

  Names seen = model.unselected;
  seen.insert(seen.end(), model.selected.begin(), model.selected.end());
  seen.insert(seen.end(), model.filtered.begin(), model.filtered.end());
  std::ranges::sort(seen);
  std::ranges::sort(all);
  EXPECT_EQ(seen, all);
  pb_split_clear_record_list(list.get());
}

TEST_P(RandomMoves, KeepTheRowsInLine) {
  const gint total = draw(0, 350);
  split_list_test::serve(total);
  const SplitPtr list = SplitPtr::adopt(pb_split_get_list(nullptr));
  Records unselected;
  unselected.head = pb_split_list_get_records(list.get());
  Records selected;
  Records filtered;

  for (int move = 0; move < 120; ++move) {
    for (int idles = draw(0, 2); idles > 0; --idles) fake::run_next_idle();
    const gint left = pb_split_list_get_length(list.get());
    if (draw(0, 1) == 0 && left > 0) {
      const gint index = draw(0, left - 1);
      pb_split_list_select_item(list.get(), &unselected.head, &selected.head,
                                static_cast<guint>(index));
      pb_split_list_refresh_new_item_when_remove(list.get(), index);
    } else if (selected.head != nullptr) {
      const gint picked = draw(0, static_cast<gint>(g_list_length(selected.head)) - 1);
      const auto *record =
          static_cast<const MbItem *>(g_list_nth_data(selected.head, static_cast<guint>(picked)));
      const gint index = pb_split_list_unselect_item(list.get(), &unselected.head, &selected.head,
                                                     &filtered.head, record->id);
      pb_split_list_refresh_new_item_when_remove(list.get(), index);
    }
    auto shown = split_list_test::ids_of(list);
    auto records = unselected.ids();
    ASSERT_LE(shown.size(), records.size()) << "move " << move;
    records.resize(shown.size());
    ASSERT_EQ(shown, records) << "move " << move;
  }

  fake::run_idles();
  EXPECT_EQ(split_list_test::ids_of(list), unselected.ids());
  const auto numbers = split_list_test::numbers_of(list);
  for (std::size_t row = 0; row < numbers.size(); ++row) {
    ASSERT_EQ(numbers[row], static_cast<gint>(row));
  }
  pb_split_clear_record_list(list.get());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomMoves, testing::Range(0, 25));

}  // namespace

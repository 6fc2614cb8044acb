/// Random requests to the paged list against a model of the held range.
#include <algorithm>
#include <random>
#include <set>

#include "fixture.hpp"

namespace {

using item_list_test::fill;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::new_list;
using item_list_test::private_of;

/// Rows first to last are held; nothing is when last is before first.
struct Range {
  int first = 0;
  int last = -1;

  [[nodiscard]] bool empty() const { return last < first; }
  [[nodiscard]] bool has(int row) const { return row >= first && row <= last; }
  [[nodiscard]] int length() const { return last - first + 1; }
  bool operator==(const Range &) const = default;
};
void PrintTo(const Range &range, std::ostream *out) { *out << range.first << "-" << range.last; }

/// What the list has to do with a request, for a service that has available rows.
struct Model {
  Range held;
  int fetches = 0;

  void ask(int first, int last, int row, int available) {
    if (!held.empty() && held.has(row)) return;
    ++fetches;
    if (first == last) return;
    if (!held.empty() && row > held.last && row <= held.last + 100) {
      grow_down(available);
    } else if (!held.empty() && row < held.first && row >= held.first - 100) {
      grow_up(available);
    } else {
      held.first = row / 100 * 100;
      held.last = std::min(held.first + 99, std::max(available, held.first) - 1);
    }
  }

 private:
  void grow_down(int available) {
    const int last = std::min(held.last + 100, available - 1);
    if (last <= held.last) return;
    if (held.length() > 100) held.first += 100;
    held.last = last;
  }

  void grow_up(int available) {
    if (available < held.first) return;
    const int first = std::max(held.first - 100, 0);
    if (held.length() > 100) held.last -= 100;
    held.first = first;
  }
};

class RandomRequests : public ItemListTest, public testing::WithParamInterface<int> {
 protected:
  void build() {
    item_list_test::serve(GetParam());
    list_ = new_list();
    pb_item_list_build(list_.get(), 1, 0);
    model_.held.last = std::min(GetParam(), 100) - 1;
    fake::take_calls();
  }

  void ask(int first, int last, int row, int available) {
    model_.ask(first, last, row, available);
    fill(list_, pb_item_list_insert_data, first, last, row);
  }

  void expect_the_model() const {
    const PbItemListPrivate &priv = private_of(list_);
    const Range held{priv.page_start, priv.page_end};
    if (model_.held.empty()) {
      ASSERT_TRUE(priv.records.empty());
    } else {
      ASSERT_EQ(held, model_.held);
      ASSERT_EQ(priv.records.length(), model_.held.length());
    }
    ASSERT_LE(priv.records.length(), 200);
    ASSERT_EQ(static_cast<int>(fake::calls_of("fm_svc_mb_get_list").size()), model_.fetches);
  }

  void expect_the_right_records() const {
    const PbItemListPrivate &priv = private_of(list_);
    for (gint row = priv.page_start; row <= priv.page_end; ++row) {
      const MbItem *record = pb::item_list::held_record(list_.get(), row);
      ASSERT_NE(record, nullptr) << row;
      ASSERT_EQ(record->id, row + 1);
    }
  }

  /// A row that was made has the item of its number.
  void expect_the_right_row(int row) const {
    GtkVirtualListStore *store = GTK_VIRTUAL_LIST_STORE(list_.get());
    ASSERT_TRUE(gtk_virtual_list_store_row_is_filled(store, row));
    const auto columns = item_list_test::read_row(list_, row);
    ASSERT_TRUE(columns.item);
    ASSERT_EQ(columns.item->id, row + 1);
    ASSERT_EQ(columns.index, row);
  }

  ListPtr list_;
  Model model_;
  std::mt19937 random_{static_cast<unsigned>(GetParam())};
};

TEST_P(RandomRequests, MoveTheHeldRangeAsTheModelSays) {
  build();
  if (GetParam() == 0) return;
  std::uniform_int_distribution<int> any_row(0, GetParam() - 1);
  std::uniform_int_distribution<int> step(-130, 130);
  std::uniform_int_distribution<int> choice(0, 9);
  int row = 0;

  for (int request = 0; request < 400; ++request) {
    row = choice(random_) == 0 ? any_row(random_)
                               : std::clamp(row + step(random_), 0, GetParam() - 1);
    const bool alone = choice(random_) < 2;
    ask(alone ? row : 0, alone ? row : GetParam(), row, GetParam());

    ASSERT_NO_FATAL_FAILURE(expect_the_model()) << "request " << request << " for row " << row;
    ASSERT_NO_FATAL_FAILURE(expect_the_right_row(row));
  }
  expect_the_right_records();
}

TEST_P(RandomRequests, KeepTheRangeInOrderWhenFilesVanish) {
  build();
  if (GetParam() == 0) return;
  std::uniform_int_distribution<int> any_row(0, GetParam() - 1);
  std::uniform_int_distribution<int> any_count(0, GetParam());
  std::uniform_int_distribution<int> choice(0, 9);

  for (int request = 0; request < 200; ++request) {
    const int available = choice(random_) < 3 ? any_count(random_) : GetParam();
    item_list_test::serve(available);
    const int row = any_row(random_);
    ask(0, GetParam(), row, available);

    ASSERT_NO_FATAL_FAILURE(expect_the_model()) << "request " << request << " for row " << row;
  }
  expect_the_right_records();
}

TEST_P(RandomRequests, FetchNothingTwiceInAStraightScrollDown) {
  build();

  for (int row = 0; row < std::min(GetParam(), 1000); ++row) ask(0, 1000, row, GetParam());

  // One page is held from the build on; each further page is fetched when it is first needed.
  const int pages = (std::min(GetParam(), 1000) + 99) / 100;
  EXPECT_EQ(static_cast<int>(fake::calls_of("fm_svc_mb_get_list").size()), std::max(pages - 1, 0));
  const auto fetches = fake::calls_of("fm_svc_mb_get_list");
  EXPECT_EQ(std::set<std::string>(fetches.begin(), fetches.end()).size(), fetches.size());
}

TEST_P(RandomRequests, FetchNothingTwiceInAStraightScrollUp) {
  build();
  const int top = std::min(GetParam(), 1000) - 1;
  if (top < 0) return;
  ask(0, GetParam(), top, GetParam());
  fake::take_calls();
  model_.fetches = 0;
  const int missing = model_.held.first;

  for (int row = top; row >= 0; --row) {
    ask(0, GetParam(), row, GetParam());
    ASSERT_NO_FATAL_FAILURE(expect_the_model()) << "row " << row;
  }

  const auto fetches = fake::calls_of("fm_svc_mb_get_list");
  EXPECT_EQ(static_cast<int>(fetches.size()), (missing + 99) / 100);
  EXPECT_EQ(std::set<std::string>(fetches.begin(), fetches.end()).size(), fetches.size());
  expect_the_right_records();
}

/// A service with other files, in other numbers, for each filter; ids tell them apart.
constexpr gint kIdsOfFilter = 1'000'000;

gint total_of(gint64 filter) { return 150 + static_cast<gint>(filter) * 7 % 300; }

void serve_by_filter() {
  fake::Platform &phone = fake::platform();
  item_list_test::serve(0);
  phone.fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64 filter, gint *count,
                                              gint *) {
    *count = total_of(filter);
    return TRUE;
  };
  phone.fm_svc_mb_get_list = [](const gchar *, gint, gint sort, gint64 filter, gint, GList **list,
                                gint first, gint last, gint *) {
    EXPECT_EQ(sort, 3);
    const gint end = std::min(last, total_of(filter) - 1);
    const gint id = static_cast<gint>(filter) * kIdsOfFilter + first + 1;
    *list = end < first ? nullptr : fake::record_list(item_list_test::files(end - first + 1, id));
    return TRUE;
  };
}

class RandomSettings : public ItemListTest, public testing::WithParamInterface<int> {
 protected:
  void change_settings() {
    constexpr gint64 kFilters[] = {-2, -1, 1, 2, 3, 0x10, 0x13, 0x20};
    filter_ = kFilters[random_() % std::size(kFilters)];
    pb_app_common_set_filter_sort_type(static_cast<gint>(random_() % 6), filter_);
  }
  [[nodiscard]] gint64 filter_in_force() const {
    if (filter_ == -1) return 3;
    return filter_ == -2 ? 0x13 : filter_;
  }

  std::mt19937 random_{static_cast<unsigned>(GetParam())};
  gint64 filter_ = 0;
};

TEST_P(RandomSettings, StayThoseOfTheBuildInEveryFetch) {
  serve_by_filter();
  const ListPtr list = new_list();
  change_settings();
  const gint64 filter = filter_in_force();
  const gint total = total_of(filter);
  EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), total);

  for (int request = 0; request < 100; ++request) {
    change_settings();
    const gint row = static_cast<gint>(random_() % static_cast<unsigned>(total));
    const bool alone = random_() % 5 == 0;
    fill(list, pb_item_list_insert_data, alone ? row : 0, alone ? row : total, row);

    const auto columns = item_list_test::read_row(list, row);
    ASSERT_TRUE(columns.item) << "request " << request << " for row " << row;
    ASSERT_EQ(columns.item->id, static_cast<gint>(filter) * kIdsOfFilter + row + 1);
    const PbItemListPrivate &priv = private_of(list);
    ASSERT_LE(priv.records.length(), 200);
    ASSERT_EQ(priv.records.length(), priv.page_end - priv.page_start + 1);
    for (gint held = priv.page_start; held <= priv.page_end; ++held) {
      ASSERT_EQ(pb::item_list::held_record(list.get(), held)->id,
                static_cast<gint>(filter) * kIdsOfFilter + held + 1);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSettings, testing::Range(0, 10));

INSTANTIATE_TEST_SUITE_P(Totals, RandomRequests,
                         testing::Values(0, 1, 99, 100, 101, 250, 1000, 100000));

}  // namespace

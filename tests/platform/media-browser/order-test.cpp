#include "media-browser/order.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace {

using phone::media::IdSet;
using phone::media::Order;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Optional;

std::vector<gint32> numbers(int count, int first = 1) {
  std::vector<gint32> ids(static_cast<std::size_t>(count));
  for (int at = 0; at < count; ++at) ids[static_cast<std::size_t>(at)] = first + at;
  return ids;
}

bool by_value(gint32 present, gint32 comer) { return present < comer; }

std::vector<gint32> all(const Order &order) { return order.page(0, order.size()); }

TEST(Order, ReadsPagesAcrossPieces) {
  const Order order(numbers(5000));

  EXPECT_EQ(order.size(), 5000u);
  EXPECT_THAT(order.page(2046, 4), ElementsAre(2047, 2048, 2049, 2050));
  EXPECT_THAT(order.page(4998, 100), ElementsAre(4999, 5000));
  EXPECT_THAT(order.page(5000, 100), IsEmpty());
}

TEST(Order, ReadsPagesFromTheEnd) {
  const Order order(numbers(5000));

  EXPECT_THAT(order.page_from_end(0, 3), ElementsAre(5000, 4999, 4998));
  EXPECT_THAT(order.page_from_end(4998, 100), ElementsAre(2, 1));
  EXPECT_THAT(order.page_from_end(5000, 1), IsEmpty());
}

TEST(Order, FindsRows) {
  const Order order(numbers(5000));

  EXPECT_THAT(order.row_of(4001), Optional(4000u));
  EXPECT_EQ(order.row_of(5001), std::nullopt);
  EXPECT_EQ(order.at(4000), 4001);
}

TEST(Order, IsEmptyAtFirst) {
  const Order order;

  EXPECT_EQ(order.size(), 0u);
  EXPECT_THAT(order.page(0, 100), IsEmpty());
  EXPECT_THAT(order.page_from_end(0, 100), IsEmpty());
}

TEST(OrderChanged, LeavesTheOldOrderAlone) {
  const Order order(numbers(10));

  const auto changed = order.changed(IdSet({3, 4}), {}, by_value);

  EXPECT_THAT(all(*changed), ElementsAre(1, 2, 5, 6, 7, 8, 9, 10));
  EXPECT_THAT(all(order), ElementsAreArray(numbers(10)));
}

TEST(OrderChanged, PutsComersInTheirPlaces) {
  const Order order({10, 20, 30});

  const auto changed = order.changed(IdSet({}), {5, 15, 25, 35}, by_value);

  EXPECT_THAT(all(*changed), ElementsAre(5, 10, 15, 20, 25, 30, 35));
}

TEST(OrderChanged, FillsAnEmptyOrder) {
  EXPECT_THAT(all(*Order().changed(IdSet({}), numbers(3000), by_value)),
              ElementsAreArray(numbers(3000)));
}

TEST(OrderChanged, EmptiesAnOrder) {
  const Order order(numbers(3000));

  EXPECT_EQ(order.changed(IdSet(numbers(3000)), {}, by_value)->size(), 0u);
}

TEST(OrderChanged, AgreesWithASortedListOverManyChanges) {
  std::mt19937 random(3);
  // The key of an id is its remainder, then itself: neighbours in the order are far in number.
  const auto key = [](gint32 id) { return std::pair(id % 97, id); };
  const auto before = [key](gint32 a, gint32 b) { return key(a) < key(b); };
  std::vector<gint32> model = numbers(4000);
  std::sort(model.begin(), model.end(), before);
  auto order = std::make_shared<const Order>(model);
  gint32 last = 4000;
  for (int round = 0; round < 200; ++round) {
    std::vector<gint32> leaving;
    for (unsigned number = random() % 40; number > 0 && !model.empty(); --number) {
      const auto at = model.begin() + static_cast<std::ptrdiff_t>(random() % model.size());
      leaving.push_back(*at);
      model.erase(at);
    }
    std::vector<gint32> coming;
    for (unsigned number = random() % 40; number > 0; --number) coming.push_back(++last);
    if (!leaving.empty() && round % 2 == 0) coming.push_back(leaving.front());
    std::sort(coming.begin(), coming.end(), before);
    model.insert(model.end(), coming.begin(), coming.end());
    std::sort(model.begin(), model.end(), before);

    order = order->changed(IdSet(leaving), coming, before);

    ASSERT_EQ(all(*order), model) << "round " << round;
    const auto row = random() % model.size();
    ASSERT_EQ(order->row_of(model[row]), row);
  }
}

}  // namespace

#include "media-browser/natural-order.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using phone::media::compare_naturally;
using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(),
            [](const std::string &a, const std::string &b) { return compare_naturally(a, b) < 0; });
  return names;
}

TEST(NaturalOrder, ComparesNumbersByValue) {
  EXPECT_THAT(sorted({"IMG_10", "IMG_9", "IMG_100", "IMG_1"}),
              ElementsAre("IMG_1", "IMG_9", "IMG_10", "IMG_100"));
}

TEST(NaturalOrder, ComparesNumbersThatFitNoInteger) {
  EXPECT_THAT(sorted({"a99999999999999999999999999999", "a100000000000000000000000000000"}),
              ElementsAre("a99999999999999999999999999999", "a100000000000000000000000000000"));
}

TEST(NaturalOrder, IgnoresCase) {
  EXPECT_THAT(sorted({"banana", "Apple", "cherry", "apple2"}),
              ElementsAre("Apple", "apple2", "banana", "cherry"));
}

TEST(NaturalOrder, PutsAccentedLettersBesideTheirBase) {
  EXPECT_THAT(sorted({"zoo", "Ärger", "apfel", "énorme", "ende"}),
              ElementsAre("apfel", "Ärger", "ende", "énorme", "zoo"));
}

TEST(NaturalOrder, TakesDecomposedAndComposedSpellingsForNeighbours) {
  const std::string composed = "caf\u00e9.jpg";
  const std::string decomposed = "cafe\u0301.jpg";

  EXPECT_THAT(sorted({"cafz.jpg", composed, "cafd.jpg", decomposed}),
              ElementsAre("cafd.jpg", decomposed, composed, "cafz.jpg"));
}

TEST(NaturalOrder, CallsOnlyEqualBytesEqual) {
  EXPECT_EQ(compare_naturally("a1", "a1"), 0);
  EXPECT_NE(compare_naturally("a1", "A1"), 0);
  EXPECT_NE(compare_naturally("a1", "a01"), 0);
  EXPECT_NE(compare_naturally("caf\u00e9", "cafe\u0301"), 0);
}

TEST(NaturalOrder, PutsAPrefixFirst) {
  EXPECT_LT(compare_naturally("IMG", "IMG_1"), 0);
  EXPECT_LT(compare_naturally("", "a"), 0);
}

TEST(NaturalOrder, PutsStrayBytesBehindAllCharacters) {
  EXPECT_LT(compare_naturally("\U0001f600", "\xff"), 0);
  EXPECT_LT(compare_naturally("a\xfe", "a\xff"), 0);
}

TEST(NaturalOrder, IsATotalOrderOfHostileNames) {
  std::mt19937 random(7);
  const std::vector<std::string> parts{"a",  "A",    "1",    "01",     "0",       "9",
                                       "10", "\xff", "\xc3", "\u00e9", "e\u0301", "\u0301",
                                       " ",  "_",    ".",    "z"};
  std::vector<std::string> names;
  for (int at = 0; at < 60; ++at) {
    std::string name;
    for (unsigned length = random() % 4; length > 0; --length)
      name += parts[random() % parts.size()];
    names.push_back(name);
  }

  for (const std::string &a : names) {
    for (const std::string &b : names) {
      EXPECT_EQ(compare_naturally(a, b) < 0, compare_naturally(b, a) > 0) << a << " and " << b;
      EXPECT_EQ(compare_naturally(a, b) == 0, a == b);
      for (const std::string &c : names) {
        if (compare_naturally(a, b) < 0 && compare_naturally(b, c) < 0) {
          ASSERT_LT(compare_naturally(a, c), 0) << a << ", " << b << ", " << c;
        }
      }
    }
  }
}

}  // namespace

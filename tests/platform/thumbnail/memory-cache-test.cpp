#include "thumbnail/memory-cache.hpp"

#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

namespace phone::thumbnail {
namespace {

using support::kBlue;
using support::kRed;
using support::pixel_at;
using support::solid_pixbuf;

/// Bytes of a picture of 10 by 10 pixels: rows of 32, the last one not padded.
constexpr std::size_t kBytes = 9 * 32 + 30;

CacheKey key_of(std::uint64_t inode, int width = 0, int height = 0) {
  return {{1, inode, 3, 4, 5}, width, height};
}

TEST(MemoryCache, GivesWhatWasPut) {
  MemoryCache cache(100 * kBytes);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));

  const auto got = cache.get(key_of(1));

  ASSERT_TRUE(got);
  EXPECT_EQ(pixel_at(got.get(), 5, 5), kRed);
}

TEST(MemoryCache, GivesCopies) {
  MemoryCache cache(100 * kBytes);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));

  gdk_pixbuf_fill(cache.get(key_of(1)).get(), 0x0000ffff);

  EXPECT_EQ(pixel_at(cache.get(key_of(1)).get(), 5, 5), kRed);
}

TEST(MemoryCache, GivesNothingForAnotherKey) {
  MemoryCache cache(100 * kBytes);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));

  EXPECT_FALSE(cache.get(key_of(2)));
  EXPECT_FALSE(cache.get(key_of(1, 10, 10)));
}

TEST(MemoryCache, TellsFilesApartByEveryPartOfTheirIdentity) {
  MemoryCache cache(100 * kBytes);
  cache.put({{1, 2, 3, 4, 5}}, solid_pixbuf(10, 10, kRed));

  for (const pictures::Identity &other : {pictures::Identity{9, 2, 3, 4, 5},
                                          {1, 9, 3, 4, 5},
                                          {1, 2, 9, 4, 5},
                                          {1, 2, 3, 9, 5},
                                          {1, 2, 3, 4, 9}}) {
    EXPECT_FALSE(cache.get({other}));
  }
}

TEST(MemoryCache, ReplacesWhatHasTheSameKey) {
  MemoryCache cache(100 * kBytes);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));
  cache.put(key_of(1), solid_pixbuf(10, 10, kBlue));

  EXPECT_EQ(pixel_at(cache.get(key_of(1)).get(), 5, 5), kBlue);
  EXPECT_EQ(cache.bytes(), kBytes);
}

TEST(MemoryCache, StaysWithinItsBytes) {
  MemoryCache cache(8 * kBytes);
  for (std::uint64_t i = 0; i < 100; ++i) {
    cache.put(key_of(i), solid_pixbuf(10, 10, kRed));
    EXPECT_LE(cache.bytes(), 8 * kBytes);
  }

  EXPECT_EQ(cache.bytes(), 8 * kBytes);
}

TEST(MemoryCache, DropsWhatWasUsedLongestAgo) {
  MemoryCache cache(4 * kBytes);
  for (std::uint64_t i = 1; i <= 4; ++i) cache.put(key_of(i), solid_pixbuf(10, 10, kRed));
  EXPECT_TRUE(cache.get(key_of(1)));

  cache.put(key_of(5), solid_pixbuf(10, 10, kRed));

  EXPECT_TRUE(cache.get(key_of(1)));
  EXPECT_FALSE(cache.get(key_of(2)));
}

TEST(MemoryCache, DoesNotKeepWhatWouldPushOutMostOthers) {
  MemoryCache cache(4 * kBytes - 1);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));

  EXPECT_FALSE(cache.get(key_of(1)));
}

TEST(MemoryCache, IsEmptyAfterClearing) {
  MemoryCache cache(100 * kBytes);
  cache.put(key_of(1), solid_pixbuf(10, 10, kRed));
  cache.clear();

  EXPECT_FALSE(cache.get(key_of(1)));
  EXPECT_EQ(cache.bytes(), 0u);
}

}  // namespace
}  // namespace phone::thumbnail

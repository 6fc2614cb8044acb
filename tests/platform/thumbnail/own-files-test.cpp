#include "thumbnail/own-files.hpp"

#include <glib.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"

namespace phone::thumbnail {
namespace {

class Replaceable : public testing::Test {
 protected:
  ~Replaceable() override { set_picture_check(nullptr); }

  static std::string write(const std::string &folder, const std::string &name) {
    EXPECT_EQ(g_mkdir_with_parents(folder.c_str(), 0700), 0);
    EXPECT_TRUE(g_file_set_contents((folder + "/" + name).c_str(), "x", 1, nullptr));
    return folder + "/" + name;
  }
  static std::string shared_folder() { return std::string(g_get_user_cache_dir()) + "/thumbnails"; }

  support::TempDir dir_;
};

TEST_F(Replaceable, IsAFileOfOurStore) {
  EXPECT_TRUE(is_replaceable(write(store_folder() + "/0a", "1.jpg")));
}

TEST_F(Replaceable, IsAFileOfTheSharedCache) {
  EXPECT_TRUE(is_replaceable(write(shared_folder() + "/large", "1.png")));
}

TEST_F(Replaceable, IsAFileOfACacheKeptBehindALink) {
  dir_.make_dir("elsewhere");
  const std::string folder = store_folder();
  ASSERT_EQ(g_mkdir_with_parents(folder.substr(0, folder.rfind('/')).c_str(), 0700), 0);
  ASSERT_EQ(symlink(dir_.path("elsewhere").c_str(), folder.c_str()), 0);

  EXPECT_TRUE(is_replaceable(write(folder + "/0a", "1.jpg")));
}

TEST_F(Replaceable, IsNoFileElsewhere) {
  EXPECT_FALSE(is_replaceable(dir_.write("1.jpg", "x")));
  EXPECT_FALSE(is_replaceable(write(shared_folder() + "-of-mine", "1.jpg")));
  EXPECT_FALSE(is_replaceable(write(g_get_user_cache_dir(), "1.jpg")));
}

TEST_F(Replaceable, IsNoFileThatIsReachedOnlyThroughACache) {
  const std::string in_cache = write(store_folder() + "/0a", "1.jpg");
  const std::string outside = write(std::string(g_get_user_cache_dir()) + "/mine", "1.jpg");

  EXPECT_TRUE(is_replaceable(in_cache));
  EXPECT_FALSE(is_replaceable(store_folder() + "/../../mine/1.jpg"));
}

TEST_F(Replaceable, IsNoFileBehindALinkedFolderOfACache) {
  dir_.write("1.jpg", "x");
  ASSERT_EQ(g_mkdir_with_parents(store_folder().c_str(), 0700), 0);
  ASSERT_EQ(symlink(dir_.path().c_str(), (store_folder() + "/0a").c_str()), 0);

  EXPECT_FALSE(is_replaceable(store_folder() + "/0a/1.jpg"));
}

TEST_F(Replaceable, IsNoLink) {
  const std::string target = write(store_folder() + "/0a", "1.jpg");
  const std::string path = store_folder() + "/0a/2.jpg";
  ASSERT_EQ(symlink(target.c_str(), path.c_str()), 0);

  EXPECT_FALSE(is_replaceable(path));
}

TEST_F(Replaceable, IsNoFileWithASecondName) {
  const std::string path = write(store_folder() + "/0a", "1.jpg");
  ASSERT_EQ(link(path.c_str(), dir_.path("mine.jpg").c_str()), 0);

  EXPECT_FALSE(is_replaceable(path));
}

TEST_F(Replaceable, IsNoFolderAndNothingMissing) {
  write(store_folder() + "/0a", "1.jpg");

  EXPECT_FALSE(is_replaceable(store_folder() + "/0a"));
  EXPECT_FALSE(is_replaceable(store_folder() + "/0a/none.jpg"));
}

TEST_F(Replaceable, IsNoPictureThatPeopleKeepInACache) {
  const std::string path = write(store_folder() + "/0a", "1.jpg");
  set_picture_check([](const std::string &asked) { return asked.ends_with("/0a/1.jpg"); });

  EXPECT_FALSE(is_replaceable(path));
  EXPECT_TRUE(is_replaceable(write(store_folder() + "/0a", "2.jpg")));
}

}  // namespace
}  // namespace phone::thumbnail

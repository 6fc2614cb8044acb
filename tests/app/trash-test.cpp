#include "trash.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp-dir.hpp"

using gallery::move_to_trash;
using gallery::put_back;
using gallery::Trashed;
using testing::StartsWith;

namespace {

/// The trash of the user whose home this process has.
class Trash : public testing::Test {
 protected:
  std::string add(const std::string &name) { return folder_.write(name, "picture " + name); }

  /// Where a file lies after it was thrown away.
  Trashed thrown_away(const std::string &path) {
    const auto trashed = move_to_trash(path, problem_);
    EXPECT_TRUE(trashed) << problem_;
    return trashed.value_or(Trashed{});
  }

  support::TempDir folder_;
  std::string problem_;
};

}  // namespace

TEST_F(Trash, TakesAFile) {
  const std::string path = add("a.jpg");

  const Trashed trashed = thrown_away(path);

  EXPECT_FALSE(support::exists(path));
  EXPECT_EQ(trashed.path, path);
  EXPECT_EQ(support::read_file(trashed.file), "picture a.jpg");
  EXPECT_THAT(support::read_file(trashed.info), StartsWith("[Trash Info]"));
}

TEST_F(Trash, GivesAFileBack) {
  const std::string path = add("a.jpg");
  const Trashed trashed = thrown_away(path);

  EXPECT_TRUE(put_back(trashed, problem_));

  EXPECT_EQ(support::read_file(path), "picture a.jpg");
  EXPECT_FALSE(support::exists(trashed.file));
  EXPECT_FALSE(support::exists(trashed.info));
}

TEST_F(Trash, GivesBackTheFileThatWasThrownAwayLast) {
  const std::string path = add("a.jpg");
  thrown_away(path);
  folder_.write("a.jpg", "another one");
  const Trashed trashed = thrown_away(path);

  put_back(trashed, problem_);

  EXPECT_EQ(support::read_file(path), "another one");
}

TEST_F(Trash, NeverPutsAFileOverAnother) {
  const std::string path = add("a.jpg");
  const Trashed trashed = thrown_away(path);
  folder_.write("a.jpg", "another one");

  EXPECT_FALSE(put_back(trashed, problem_));

  EXPECT_EQ(support::read_file(path), "another one");
  EXPECT_TRUE(support::exists(trashed.file));
  EXPECT_EQ(problem_, "File exists");
}

TEST_F(Trash, KnowsNamesOfAnyBytes) {
  const std::string path = add("%41 \xff\n'\".jpg");

  const Trashed trashed = thrown_away(path);
  put_back(trashed, problem_);

  EXPECT_TRUE(support::exists(path));
}

TEST_F(Trash, SaysWhyAFileStays) {
  EXPECT_FALSE(move_to_trash(folder_.path("missing.jpg"), problem_));

  EXPECT_NE(problem_, "");
}

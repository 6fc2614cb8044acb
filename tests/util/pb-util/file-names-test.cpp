#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::platform;
using support::GlibTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

using MallocString = std::unique_ptr<gchar, pb::FreeWith<std::free>>;

/// A writable copy of a text in a larger buffer.
std::array<gchar, 600> buffer_of(const std::string &text) {
  std::array<gchar, 600> buffer{};
  std::copy(text.begin(), text.end(), buffer.begin());
  return buffer;
}

class GeneratedName : public testing::TestWithParam<const char *> {};

TEST_P(GeneratedName, IsRecognised) {
  EXPECT_TRUE(mb_util_check_default_generated_name(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Names, GeneratedName,
                         testing::Values("P100010_123456", "P1abcde_1bcdef", "P1.bcde_1bcdef"));

class OtherName : public testing::TestWithParam<const char *> {};

TEST_P(OtherName, IsNotRecognised) {
  EXPECT_FALSE(mb_util_check_default_generated_name(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Names, OtherName,
                         testing::Values("", "P", "P1000101_123456",  // 15 characters
                                         "P100010_12345",             // 13 characters
                                         "P100010_12345.",            // 5 characters up to the "."
                                         "P100010_1.3456", "PX00010_123456", "p100010_123456",
                                         "X100010_123456", "P100010_X23456", "P1000101123456",
                                         "P10001_1123456",  // "_" too early
                                         "P1_0010_123456",  // the first "_" counts
                                         "P100010__23456",  // no digit behind
                                         "P10001012345_6"));

TEST(OtherNames, IncludeNull) { EXPECT_FALSE(mb_util_check_default_generated_name(nullptr)); }

TEST(TrimSpace, ReturnsACopyWithoutOuterBlanks) {
  auto text = buffer_of("  ab c  ");

  const MallocString copy(mb_util_trim_space(text.data()));

  EXPECT_THAT(copy.get(), StrEq("ab c"));
}

TEST(TrimSpace, TrimsInPlace) {
  auto text = buffer_of("  ab c  ");

  const MallocString copy(mb_util_trim_space(text.data()));

  EXPECT_STREQ(text.data(), "ab c");
  EXPECT_NE(copy.get(), text.data());
}

TEST(TrimSpace, TrimsBlanksOnly) {
  auto text = buffer_of(" \tab\n ");

  const MallocString copy(mb_util_trim_space(text.data()));

  EXPECT_THAT(copy.get(), StrEq("\tab\n"));
}

TEST(TrimSpace, LeavesAnInnerTextAlone) {
  auto text = buffer_of("ab");

  const MallocString copy(mb_util_trim_space(text.data()));

  EXPECT_THAT(copy.get(), StrEq("ab"));
}

TEST(TrimSpace, GivesNothingForBlanks) {
  auto text = buffer_of("   ");

  EXPECT_EQ(mb_util_trim_space(text.data()), nullptr);

  EXPECT_STREQ(text.data(), "   ");
}

TEST(TrimSpace, GivesNothingForAnEmptyText) {
  auto text = buffer_of("");

  EXPECT_EQ(mb_util_trim_space(text.data()), nullptr);
}

TEST(TrimSpace, GivesNothingForNull) { EXPECT_EQ(mb_util_trim_space(nullptr), nullptr); }

TEST(FileExtName, PointsBehindTheLastDot) {
  const char *path = "/a.b/c.tar.gz";

  EXPECT_EQ(pb_get_file_ext_name(path), path + 11);
}

TEST(FileExtName, IsEmptyBehindADotAtTheEnd) { EXPECT_STREQ(pb_get_file_ext_name("/a/b."), ""); }

TEST(FileExtName, CountsADotOfADirectory) { EXPECT_STREQ(pb_get_file_ext_name("/a.b/c"), "b/c"); }

TEST(FileExtName, IsLogged) {
  pb_get_file_ext_name("/a/b.jpg");

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO, "[pb_get_file_ext_name]ext:jpg\n")));
}

TEST(FileExtName, IsNullWithoutADot) { EXPECT_EQ(pb_get_file_ext_name("/a/b"), nullptr); }

TEST(FileExtName, IsNullForNull) { EXPECT_EQ(pb_get_file_ext_name(nullptr), nullptr); }

TEST(ChangeFileExt, ReplacesTheExtension) {
  auto path = buffer_of("/a/b.jpg");

  EXPECT_TRUE(pb_util_change_file_ext("png", path.data()));

  EXPECT_STREQ(path.data(), "/a/b.png");
}

TEST(ChangeFileExt, TakesALongerExtension) {
  auto path = buffer_of("/a/b.x.c");

  EXPECT_TRUE(pb_util_change_file_ext("jpeg", path.data()));

  EXPECT_STREQ(path.data(), "/a/b.x.jpeg");
}

TEST(ChangeFileExt, FillsADotAtTheEnd) {
  auto path = buffer_of("b.");

  EXPECT_TRUE(pb_util_change_file_ext("png", path.data()));

  EXPECT_STREQ(path.data(), "b.png");
}

TEST(ChangeFileExt, TakesAHiddenFileInADirectory) {
  auto path = buffer_of("/.b");

  EXPECT_TRUE(pb_util_change_file_ext("png", path.data()));

  EXPECT_STREQ(path.data(), "/.png");
}

class UnchangedFileExt : public testing::TestWithParam<const char *> {};

TEST_P(UnchangedFileExt, IsRefused) {
  auto path = buffer_of(GetParam());

  EXPECT_FALSE(pb_util_change_file_ext("png", path.data()));

  EXPECT_STREQ(path.data(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Paths, UnchangedFileExt,
                         testing::Values("", ".", "a", "/a.b/c", "/a.b/", "/a/b", ".jpg"));

TEST(ChangeFileExt, RefusesNull) {
  auto path = buffer_of("/a/b.jpg");

  EXPECT_FALSE(pb_util_change_file_ext(nullptr, path.data()));
  EXPECT_FALSE(pb_util_change_file_ext("png", nullptr));

  EXPECT_STREQ(path.data(), "/a/b.jpg");
}

TEST(FileNameWithExt, IsTheLastComponent) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  EXPECT_TRUE(mb_get_file_name_with_ext("/mnt/ums/x.y.jpg", name.data()));

  EXPECT_STREQ(name.data(), "x.y.jpg");
}

TEST(FileNameWithExt, IsThePathWithoutASlash) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  EXPECT_TRUE(mb_get_file_name_with_ext("x.jpg", name.data()));

  EXPECT_STREQ(name.data(), "x.jpg");
}

TEST(FileNameWithExt, IsEmptyBehindASlashAtTheEnd) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{'x'};

  EXPECT_TRUE(mb_get_file_name_with_ext("/mnt/", name.data()));

  EXPECT_STREQ(name.data(), "");
}

TEST(FileNameWithExt, IsAtMost255Bytes) {
  std::array<gchar, PB_FILE_NAME_SIZE + 1> name{};
  name.back() = 'x';

  EXPECT_TRUE(mb_get_file_name_with_ext(("/a/" + std::string(300, 'n')).c_str(), name.data()));

  EXPECT_EQ(std::string(name.data()), std::string(255, 'n'));
  EXPECT_EQ(name.back(), 'x');
}

TEST(FileNameWithExt, IsTrueForNull) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{'x'};

  EXPECT_TRUE(mb_get_file_name_with_ext(nullptr, name.data()));
  EXPECT_TRUE(mb_get_file_name_with_ext("/a", nullptr));

  EXPECT_STREQ(name.data(), "");
}

TEST(FilenameFromPath, HasNoExtension) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  mb_get_filename_from_path("/a.d/x.y.jpg", name.data());

  EXPECT_STREQ(name.data(), "x.y");
}

TEST(FilenameFromPath, IsWholeWithoutADot) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  mb_get_filename_from_path("/a.d/x", name.data());

  EXPECT_STREQ(name.data(), "x");
}

TEST(FilenameFromPath, IsLogged) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  mb_get_filename_from_path("/a/x.jpg", name.data());

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[mb_get_filename_from_path]filename=x\n")));
}

TEST(FilenameFromPath, LogsANullPath) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{'k', '\0'};

  mb_get_filename_from_path(nullptr, name.data());

  EXPECT_STREQ(name.data(), "k");
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_get_filename_from_path]Path is NULL\n")));
}

TEST(FilenameFromPath, LogsAnEmptyName) {
  std::array<gchar, PB_FILE_NAME_SIZE> name{};

  mb_get_filename_from_path("/a/", name.data());

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_WARNING, "[mb_get_filename_from_path]len <= 0\n")));
}

TEST(FileDirNames, SplitsAPath) {
  std::array<gchar, 100> file{};
  std::array<gchar, 100> directory{};
  std::array<gchar, 100> path{};

  EXPECT_TRUE(
      pb_get_file_dir_names("/mnt/ums/Photos/x.jpg", file.data(), directory.data(), path.data()));

  EXPECT_STREQ(file.data(), "x.jpg");
  EXPECT_STREQ(directory.data(), "Photos");
  EXPECT_STREQ(path.data(), "/mnt/ums/Photos");
}

TEST(FileDirNames, TerminatesTheDirectoryPathOnePlaceLater) {
  std::array<gchar, 10> path{};
  path.fill(static_cast<gchar>(0xaa));

  pb_get_file_dir_names("/ab/c", nullptr, nullptr, path.data());

  EXPECT_EQ(std::string(path.data(), 6), "/ab\xaa" + std::string(1, '\0') + "\xaa");
}

TEST(FileDirNames, TerminatesTheOtherOutputs) {
  std::array<gchar, 10> file{};
  std::array<gchar, 10> directory{};
  file.fill(static_cast<gchar>(0xaa));
  directory.fill(static_cast<gchar>(0xaa));

  pb_get_file_dir_names("/ab/c", file.data(), directory.data(), nullptr);

  EXPECT_STREQ(file.data(), "c");
  EXPECT_STREQ(directory.data(), "ab");
}

TEST(FileDirNames, GivesAnEmptyDirectoryBetweenAdjacentSlashes) {
  std::array<gchar, 10> directory{'k', '\0'};

  EXPECT_TRUE(pb_get_file_dir_names("/a//c", nullptr, directory.data(), nullptr));

  EXPECT_STREQ(directory.data(), "");
}

TEST(FileDirNames, TakesTheComponentBetweenTheLastTwoSlashesOfARelativePath) {
  std::array<gchar, 10> directory{};

  EXPECT_TRUE(pb_get_file_dir_names("a/b/c", nullptr, directory.data(), nullptr));

  EXPECT_STREQ(directory.data(), "b");
}

TEST(FileDirNames, LeavesTheDirectoryForOneSlash) {
  std::array<gchar, 10> directory{'k', '\0'};

  EXPECT_TRUE(pb_get_file_dir_names("a/c", nullptr, directory.data(), nullptr));
  EXPECT_TRUE(pb_get_file_dir_names("/c", nullptr, directory.data(), nullptr));

  EXPECT_STREQ(directory.data(), "k");
}

TEST(FileDirNames, GivesAnEmptyFileBehindASlashAtTheEnd) {
  std::array<gchar, 10> file{'k', '\0'};

  EXPECT_TRUE(pb_get_file_dir_names("/a/", file.data(), nullptr, nullptr));

  EXPECT_STREQ(file.data(), "");
}

TEST(FileDirNames, IsFalseWithoutASlash) {
  std::array<gchar, 10> file{'k', '\0'};

  EXPECT_FALSE(pb_get_file_dir_names("x.jpg", file.data(), nullptr, nullptr));

  EXPECT_STREQ(file.data(), "k");
}

TEST(FileDirNames, AreLogged) {
  std::array<gchar, 100> file{};
  std::array<gchar, 100> directory{};

  pb_get_file_dir_names("/mnt/Photos/x.jpg", file.data(), directory.data(), nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[pb_get_file_dir_names]File Name = x.jpg\n"),
                          Logged(PB_LOG_INFO, "[pb_get_file_dir_names]Directory Name = Photos\n")));
}

class FileDirNamesCheck : public GlibTest {};

TEST_F(FileDirNamesCheck, WarnsAboutANullPath) {
  EXPECT_FALSE(pb_get_file_dir_names(nullptr, nullptr, nullptr, nullptr));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_get_file_dir_names: assertion 'file_path' failed"));
}

TEST(FullPathByRecord, JoinsFolderAndName) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};

  mb_util_get_full_path_by_record("DCIM/Camera", "x.jpg", 1, path.data());

  EXPECT_THAT(platform().calls, ElementsAre("fexplorer_get_full_path(\"DCIM/Camera/x.jpg\", 1)"));
}

TEST(FullPathByRecord, JoinsTheRootWithOneSlash) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};

  mb_util_get_full_path_by_record("/", "x.jpg", 0, path.data());

  EXPECT_THAT(platform().calls, ElementsAre("fexplorer_get_full_path(\"/x.jpg\", 0)"));
}

TEST(FullPathByRecord, ClearsTheFirstByteBeforeItAsks) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};
  path.fill('k');
  std::string seen;
  platform().fexplorer_get_full_path = [&seen](const gchar *, gint, gchar *full_path) {
    seen = std::string(full_path, 2);
    return TRUE;
  };

  mb_util_get_full_path_by_record("a", "b", 0, path.data());

  EXPECT_EQ(seen, std::string("\0k", 2));
}

TEST(FullPathByRecord, ReturnsTheAnswer) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};
  platform().fexplorer_get_full_path = [](const gchar *, gint, gchar *full_path) {
    strcpy(full_path, "/mnt/a/b");
    return 7;
  };

  EXPECT_EQ(mb_util_get_full_path_by_record("a", "b", 0, path.data()), 7);

  EXPECT_STREQ(path.data(), "/mnt/a/b");
}

TEST(FullPathByRecord, ReturnsAFailure) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};
  platform().fexplorer_get_full_path = [](const gchar *, gint, gchar *) { return FALSE; };

  EXPECT_FALSE(mb_util_get_full_path_by_record("a", "b", 0, path.data()));
}

TEST(FullPathByRecord, TakesTheLongestPathThatFits) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};

  mb_util_get_full_path_by_record("a", std::string(262, 'n').c_str(), 0, path.data());

  EXPECT_EQ(platform().calls.size(), 1u);
}

TEST(FullPathByRecord, RefusesAPathThatDoesNotFit) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{'k'};

  EXPECT_FALSE(mb_util_get_full_path_by_record("a", std::string(263, 'n').c_str(), 0, path.data()));

  EXPECT_STREQ(path.data(), "");
  EXPECT_THAT(platform().calls, IsEmpty());
  EXPECT_THAT(
      platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_util_get_full_path_by_record]path too long : 265\n")));
}

class FullPathByRecordCheck : public GlibTest {};

TEST_F(FullPathByRecordCheck, WarnsAboutMissingArguments) {
  std::array<gchar, PB_FULL_PATH_SIZE> path{};

  EXPECT_FALSE(mb_util_get_full_path_by_record(nullptr, "b", 0, path.data()));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("mb_util_get_full_path_by_record: assertion 'folder != NULL && name != "
                          "NULL && full_path != NULL' failed"));
}

}  // namespace

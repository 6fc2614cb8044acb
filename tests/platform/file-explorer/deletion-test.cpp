/// Deletion goes to the desktop's trash, and nothing is ever lost.
#include <dirent.h>
#include <file-explorer.h>
#include <gmock/gmock.h>
#include <media-mirror.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "../media-browser/library.hpp"

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Ne;

/// Names in the trash of the user's data home.
std::vector<std::string> trashed() {
  std::vector<std::string> names;
  const std::string folder = std::string(g_get_user_data_dir()) + "/Trash/files";
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
    names.push_back(entry.path().filename());
  }
  return names;
}

class Delete : public support::GlibTest {
 protected:
  support::TempDir dir_;
};

TEST_F(Delete, MovesTheFileToTheTrash) {
  const std::string path = dir_.write("a.jpg", "picture");

  EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), 0);

  EXPECT_FALSE(support::exists(path));
  EXPECT_THAT(trashed(), ElementsAre("a.jpg"));
  EXPECT_EQ(support::read_file(std::string(g_get_user_data_dir()) + "/Trash/files/a.jpg"),
            "picture");
}

TEST_F(Delete, TakesHostileNames) {
  for (const char *name : {"a b.jpg", "\"q\".jpg", "new\nline.jpg", "\xff\xfe.jpg", "-rf",
                           "$(rm x).jpg", "%s%n.jpg", "*"}) {
    const std::string path = dir_.write(name, name);

    EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), 0) << name;

    EXPECT_FALSE(support::exists(path));
  }
  EXPECT_EQ(trashed().size(), 8u);
}

TEST_F(Delete, KeepsFilesOfTheSameNameApart) {
  const std::string first = dir_.write("x/a.jpg", "1");
  const std::string second = dir_.write("y/a.jpg", "2");

  EXPECT_EQ(fexplorer_delete_file_only(first.c_str()), 0);
  EXPECT_EQ(fexplorer_delete_file_only(second.c_str()), 0);

  EXPECT_EQ(trashed().size(), 2u);
}

TEST_F(Delete, RemovesALinkAndNotWhatItNames) {
  const std::string target = dir_.write("a.jpg", "picture");
  const std::string link = dir_.path("link.jpg");
  ASSERT_EQ(symlink(target.c_str(), link.c_str()), 0);

  EXPECT_EQ(fexplorer_delete_file_only(link.c_str()), 0);

  EXPECT_TRUE(support::exists(target));
  EXPECT_FALSE(support::exists(link));
}

TEST_F(Delete, RefusesAFileInUse) {
  const std::string path = dir_.write("a.jpg", "picture");
  ASSERT_TRUE(fexplorer_set_file_open_status(path.c_str(), 1));

  EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), FEXPLORER_ERROR_IN_USE);
  EXPECT_TRUE(support::exists(path));

  fexplorer_set_file_open_status(path.c_str(), 0);
  EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), 0);
}

TEST_F(Delete, RefusesALockedFile) {
  const std::string path = dir_.write("a.jpg", "picture");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);

  EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), FEXPLORER_ERROR_IN_USE);

  EXPECT_TRUE(support::exists(path));
}

TEST_F(Delete, RefusesWhatIsNoFile) {
  const auto other = AllOf(Ne(0), Ne(FEXPLORER_ERROR_IN_USE), Ne(FEXPLORER_ERROR_NO_ACCESS));

  EXPECT_THAT(fexplorer_delete_file_only(dir_.path("missing.jpg").c_str()), other);
  EXPECT_THAT(fexplorer_delete_file_only(dir_.make_dir("folder").c_str()), other);
  EXPECT_THAT(fexplorer_delete_file_only("relative.jpg"), other);
  EXPECT_THAT(fexplorer_delete_file_only(nullptr), other);
  EXPECT_TRUE(support::exists(dir_.path("folder")));
}

TEST_F(Delete, RefusesAFolderThatMayNotBeWritten) {
  const std::string path = dir_.write("x/a.jpg", "picture");
  ASSERT_EQ(chmod(dir_.path("x").c_str(), 0555), 0);
  // To root every folder may be written, so another user tries.
  if (geteuid() == 0) {
    for (std::string part = dir_.path(); part.size() > 4; part = part.substr(0, part.rfind('/'))) {
      if (part != "/tmp") {
        ASSERT_EQ(chmod(part.c_str(), 0755), 0);
      }
    }
  }

  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(1);
    _exit(fexplorer_delete_file_only(path.c_str()));
  }
  int status = 0;
  waitpid(child, &status, 0);

  EXPECT_EQ(WEXITSTATUS(status), FEXPLORER_ERROR_NO_ACCESS);
  EXPECT_TRUE(support::exists(path));
  chmod(dir_.path("x").c_str(), 0755);
}

TEST_F(Delete, LeavesTheFileWhereThereIsNoTrash) {
  const std::string mounted = dir_.make_dir("memory");
  if (mount("memory", mounted.c_str(), "tmpfs", 0, "size=1m") != 0) {
    GTEST_SKIP() << "a file system without trash cannot be mounted here: " << g_strerror(errno);
  }
  const std::string path = dir_.write("memory/a.jpg", "picture");

  const gint code = fexplorer_delete_file_only(path.c_str());
  const bool there = support::exists(path);
  EXPECT_EQ(umount(mounted.c_str()), 0);

  EXPECT_NE(code, 0);
  EXPECT_TRUE(there);
}

class DeleteListed : public support::GlibTest {
 protected:
  test::Library library_;
};

TEST_F(DeleteListed, LeavesTheListsAtOnce) {
  library_.add("a.jpg", 1);
  library_.add("b.jpg", 2);
  library_.start();
  media_index_get_position(3, 0, 1);

  ASSERT_EQ(fexplorer_delete_file_only(library_.path("b.jpg").c_str()), 0);

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(DeleteListed, ThatFailsStaysInTheLists) {
  library_.add("a.jpg");
  library_.start();
  chmod(library_.path("a.jpg").c_str(), 0444);

  ASSERT_NE(fexplorer_delete_file_only(library_.path("a.jpg").c_str()), 0);

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(DeleteListed, CannotBeArchivedWithoutAWebCopy) {
  library_.add("a.jpg");
  library_.start();
  const std::string path = library_.path("a.jpg");

  EXPECT_NE(fexplorer_archive_file_only(path.c_str()), 0);
  EXPECT_NE(fexplorer_archive_file_only(library_.path("unknown.jpg").c_str()), 0);
  EXPECT_NE(fexplorer_archive_file_only(nullptr), 0);

  EXPECT_TRUE(support::exists(path));
}

TEST_F(DeleteListed, CannotBeArchivedWhileItsUploadIsPending) {
  library_.add("a.jpg");
  library_.start();
  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(library_.id_of("a.jpg"), -2, nullptr));

  EXPECT_NE(fexplorer_archive_file_only(library_.path("a.jpg").c_str()), 0);

  EXPECT_TRUE(support::exists(library_.path("a.jpg")));
}

TEST_F(DeleteListed, IsArchivedToTheTrashWhenItHasAWebCopy) {
  library_.add("a.jpg");
  library_.start();
  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(library_.id_of("a.jpg"), 17, nullptr));

  EXPECT_EQ(fexplorer_archive_file_only(library_.path("a.jpg").c_str()), 0);

  EXPECT_THAT(library_.list(), IsEmpty());
  EXPECT_THAT(trashed(), ElementsAre("a.jpg"));
}

}  // namespace

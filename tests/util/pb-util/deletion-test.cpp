#include <ostream>

#include "pb-debug.h"
#include "pb-util-file.h"
#include "pb-util-resource.h"
#include "support/fake-platform.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr const char *kPath = "/mnt/ums/x.jpg";

class Deletion : public support::DisplayTest {
 protected:
  static void refuse(gint error) {
    platform().fexplorer_delete_file_only = [error](const gchar *) { return error; };
    platform().fexplorer_archive_file_only = [error](const gchar *) { return error; };
  }

  static void open_resources() {
    pb_res_open();
    fake::take_calls();
  }
};

using DeleteFile = Deletion;

TEST_F(DeleteFile, UnsetsTheOpenStatusAndDeletes) {
  EXPECT_TRUE(pb_util_delete_file(kPath, FALSE));

  EXPECT_THAT(
      platform().calls,
      ElementsAre("fexplorer_initialize()", "fexplorer_set_file_open_status(\"/mnt/ums/x.jpg\", 0)",
                  "fexplorer_delete_file_only(\"/mnt/ums/x.jpg\")", "fexplorer_finalize()"));
}

TEST_F(DeleteFile, ArchivesWhenAsked) {
  EXPECT_TRUE(pb_util_delete_file(kPath, TRUE));

  EXPECT_THAT(
      platform().calls,
      ElementsAre("fexplorer_initialize()", "fexplorer_set_file_open_status(\"/mnt/ums/x.jpg\", 0)",
                  "fexplorer_archive_file_only(\"/mnt/ums/x.jpg\")", "fexplorer_finalize()"));
}

TEST_F(DeleteFile, ArchivesForEveryValueThatIsNotZero) {
  pb_util_delete_file(kPath, 2);

  EXPECT_THAT(calls_of("fexplorer_delete_file_only"), IsEmpty());
}

TEST_F(DeleteFile, GoesOnWhenTheOpenStatusCannotBeUnset) {
  platform().fexplorer_set_file_open_status = [](const gchar *, gint) { return FALSE; };

  EXPECT_TRUE(pb_util_delete_file(kPath, FALSE));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_util_delete_file]Failed to unset the file open "
                                 "status ====\n")));
}

TEST_F(DeleteFile, IsQuietOnSuccess) {
  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(DeleteFile, ReturnsAFailure) {
  refuse(10);

  EXPECT_FALSE(pb_util_delete_file(kPath, FALSE));
}

TEST_F(DeleteFile, LogsAFailureWithItsCode) {
  refuse(10);

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[pb_util_delete_file]pb_util_delete_file: "
                                              "fexplorer_delete_file failed. error code = 10\n")));
}

TEST_F(DeleteFile, ShowsAFailureBeforeItRestoresTheOpenStatus) {
  refuse(8);
  open_resources();

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(
      platform().calls,
      ElementsAre("fexplorer_initialize()", "fexplorer_set_file_open_status(\"/mnt/ums/x.jpg\", 0)",
                  "fexplorer_delete_file_only(\"/mnt/ums/x.jpg\")", "rsrc_get_system_string(10239)",
                  "rsrc_get_string(2, 62)", "gtk_style_dialog_new(1, NULL, 0)",
                  "gtk_style_dialog_set_title(GtkStyleDialog, \"system string 10239\")",
                  "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"string 62\")",
                  "gtk_style_dialog_set_destroy_timeout(GtkStyleDialog, 2000)",
                  "gtk_dialog_run(GtkStyleDialog)",
                  "fexplorer_set_file_open_status(\"/mnt/ums/x.jpg\", 1)", "fexplorer_finalize()"));
}

TEST_F(DeleteFile, ShowsItsTextsWithClosedResources) {
  refuse(8);

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(platform().calls,
              IsSupersetOf({"gtk_style_dialog_set_title(GtkStyleDialog, \"system string 10239\")",
                            "gtk_style_dialog_set_content_area_text(GtkStyleDialog, "
                            "\"string 62\")"}));
}

TEST_F(DeleteFile, ShowsTheNumbersOfItsTextsWithoutResources) {
  refuse(8);
  platform().rsrc_open_rsr = [](const gchar *) { return -1; };

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(platform().calls,
              IsSupersetOf({"gtk_style_dialog_set_title(GtkStyleDialog, \"10239\")",
                            "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"1062\")"}));
}

TEST_F(DeleteFile, LogsWhenTheOpenStatusCannotBeRestored) {
  refuse(8);
  platform().fexplorer_set_file_open_status = [](const gchar *, gint open) { return open == 0; };

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[pb_util_delete_file]Failed to set the file open "
                                              "status ====\n")));
}

TEST_F(DeleteFile, ReportsAFailureToArchive) {
  refuse(23);

  EXPECT_FALSE(pb_util_delete_file(kPath, TRUE));

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[pb_util_delete_file]pb_util_delete_file: "
                                              "fexplorer_delete_file failed. error code = 23\n")));
}

TEST_F(DeleteFile, WarnsWithoutAPath) {
  EXPECT_FALSE(pb_util_delete_file(nullptr, FALSE));

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_util_delete_file: assertion 'path' failed"));
}

using DeleteFileDeathTest = Deletion;

TEST_F(DeleteFileDeathTest, AbortsWhenTheExplorerDoesNotStart) {
  platform().fexplorer_initialize = [](gint *) { return FALSE; };

  EXPECT_DEATH(pb_util_delete_file(kPath, FALSE), "assertion failed");
}

using EditDeleteFile = Deletion;

TEST_F(EditDeleteFile, DeletesAlone) {
  EXPECT_TRUE(pb_util_edit_delete_file(kPath));

  EXPECT_THAT(platform().calls, ElementsAre("fexplorer_delete_file_only(\"/mnt/ums/x.jpg\")"));
}

TEST_F(EditDeleteFile, ShowsAFailure) {
  refuse(10);
  open_resources();

  EXPECT_FALSE(pb_util_edit_delete_file(kPath));

  EXPECT_THAT(
      platform().calls,
      ElementsAre("fexplorer_delete_file_only(\"/mnt/ums/x.jpg\")", "rsrc_get_system_string(10239)",
                  "rsrc_get_string(2, 63)", "gtk_style_dialog_new(1, NULL, 0)",
                  "gtk_style_dialog_set_title(GtkStyleDialog, \"system string 10239\")",
                  "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"string 63\")",
                  "gtk_style_dialog_set_destroy_timeout(GtkStyleDialog, 2000)",
                  "gtk_dialog_run(GtkStyleDialog)"));
}

TEST_F(EditDeleteFile, LogsAFailureWithItsCode) {
  refuse(5);

  pb_util_edit_delete_file(kPath);

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[pb_util_edit_delete_file]"
                                              "fexplorer_delete_file failed. error code = 5\n")));
}

TEST_F(EditDeleteFile, WarnsWithoutAPath) {
  EXPECT_FALSE(pb_util_edit_delete_file(nullptr));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_util_edit_delete_file: assertion 'path' failed"));
}

struct ErrorText {
  gint error;
  const char *text;
};

void PrintTo(const ErrorText &row, std::ostream *out) { *out << "error " << row.error; }

class DeletionErrors : public Deletion, public testing::WithParamInterface<ErrorText> {};

TEST_P(DeletionErrors, HaveTheirText) {
  refuse(GetParam().error);

  pb_util_delete_file(kPath, FALSE);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_content_area_text"),
              ElementsAre("gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"" +
                          std::string(GetParam().text) + "\")"));
}

INSTANTIATE_TEST_SUITE_P(Table, DeletionErrors,
                         testing::Values(ErrorText{8, "string 62"}, ErrorText{10, "string 63"},
                                         ErrorText{23, "string 73"},
                                         ErrorText{1, "system string 10114"},
                                         ErrorText{-1, "system string 10114"},
                                         ErrorText{9, "system string 10114"}),
                         [](const auto &row) { return "Error" + std::to_string(row.index); });

}  // namespace

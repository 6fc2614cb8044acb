#include <file-explorer.h>

#include "check.hpp"
#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-file.h"
#include "util/pb-util/private.hpp"

namespace {

constexpr gint kErrorDialog = 1;
constexpr gint kDialogTimeoutMs = 2000;

constexpr gint kTitle = 10239;
constexpr gint kInUseText = 1062;
constexpr gint kNoFileText = 1063;
constexpr gint kNoAccessText = 1073;
constexpr gint kOtherText = 10114;

gint text_of_error(gint error) {
  switch (error) {
    case FEXPLORER_ERROR_IN_USE:
      return kInUseText;
    case FEXPLORER_ERROR_NO_FILE:
      return kNoFileText;
    case FEXPLORER_ERROR_NO_ACCESS:
      return kNoAccessText;
    default:
      return kOtherText;
  }
}

/// Tells the user why a file is still there. The texts are copies: they are on the screen while
/// other callbacks may close the resources.
void show_deletion_error(gint error) {
  pb::StringPtr title;
  pb::StringPtr text;
  {
    const pb::util::ResourceScope scope;
    title = pb::util::copy_res_string(kTitle);
    text = pb::util::copy_res_string(text_of_error(error));
  }
  pb_util_show_dialog(kErrorDialog, title.get(), text.get(), PB_DIALOG_BUTTONS_NONE,
                      kDialogTimeoutMs, nullptr);
}

}  // namespace

gboolean pb_util_delete_file(const gchar *path, gboolean archive) {
  PB_CHECK(path, FALSE);
  const gboolean initialized = fexplorer_initialize(nullptr);
  g_assert(initialized);
  if (!fexplorer_set_file_open_status(path, 0)) {
    PB_LOG(PB_LOG_ERROR, "Failed to unset the file open status ====\n");
  }

  const gint error = archive ? fexplorer_archive_file_only(path) : fexplorer_delete_file_only(path);
  if (error != 0) {
    PB_LOG(PB_LOG_ERROR, "pb_util_delete_file: fexplorer_delete_file failed. error code = %d\n",
           error);
    show_deletion_error(error);
    if (!fexplorer_set_file_open_status(path, 1)) {
      PB_LOG(PB_LOG_ERROR, "Failed to set the file open status ====\n");
    }
  }
  fexplorer_finalize();
  return error == 0;
}

gboolean pb_util_edit_delete_file(const gchar *path) {
  PB_CHECK(path, FALSE);
  const gint error = fexplorer_delete_file_only(path);
  if (error == 0) return TRUE;
  PB_LOG(PB_LOG_ERROR, "fexplorer_delete_file failed. error code = %d\n", error);
  show_deletion_error(error);
  return FALSE;
}

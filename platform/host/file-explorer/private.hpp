/// What the files of the file explorer share.
#pragma once

#include <glib.h>

namespace phone::files {

/// Error codes of our own, beside those that the callers know by name.
enum Error : int {
  kNotAFile = 21,     ///< it is a folder or a device
  kNoCard = 30,       ///< there is no such storage
  kNoWebCopy = 61,    ///< archiving would lose the only copy
  kNotPossible = 95,  ///< the volume has no trash, or the disk failed
};

/// Whether somebody has said that a file is in use.
bool is_in_use(const char *path);

/// The code that callers know for an error number; 0 for none.
int code_of(int error_number);

/// Whether a file is protected: nobody may write it, or the file system holds it fast.
/// @return -1 with errno when the file cannot be looked at
int protection_of(const char *path);

/// Moves a file to the trash of its own volume.
/// @return 0 or an error code; the file is untouched then
int trash(const char *path);

}  // namespace phone::files

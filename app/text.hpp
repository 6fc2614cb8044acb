/// What the gallery says, in the language of the user.
#pragma once

#include <glib.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace gallery {

/// Numbers in the string file of the package.
enum class Text : int {
  kPhotos = 1000,
  kAllPictures = 1001,
  kAlbums = 1002,
  kBack = 1003,
  kLookingThrough = 1004,
  kNoPictures = 1005,
  kNoPicturesHint = 1006,
  kNoAlbums = 1007,
  kCannotRead = 1008,
  kCannotShow = 1009,
  kGone = 1010,
  kPlayHint = 1011,
  kNoPlayer = 1012,
  kPosition = 1013,
  kFullScreen = 1014,
  kNextPicture = 1015,
  kPreviousPicture = 1016,
  kNotMedia = 1018,
  kAlbumEmpty = 1019,
  kYourFolders = 1022,
  kNotListed = 1023,
  kLookingForPictures = 1024,
  kDismiss = 1025,
  kInTrash = 1026,
  kUndo = 1027,
  kNotTrashed = 1028,
  kNotPutBack = 1029,
  kName = 1030,
  kFolder = 1031,
  kSize = 1032,
  kDimensions = 1033,
  kChanged = 1034,
  kDetails = 1035,
  kHelp = 1036,
  kHelpArrows = 1037,
  kHelpOpen = 1038,
  kHelpBack = 1039,
  kHelpLists = 1040,
  kHelpEnds = 1041,
  kHelpTiles = 1042,
  kHelpZoom = 1043,
  kHelpFullScreen = 1044,
  kHelpSlideshow = 1045,
  kHelpDetails = 1046,
  kHelpDelete = 1047,
  kHelpUndo = 1048,
  kHelpQuit = 1049,
};

/// Takes all texts out of the string file, which dialogs close again at any time.
/// @return false when the file is not there
bool load_texts();

const std::string &text(Text id);

/// The text with each "{name}" replaced by its value; what a value contains is not looked at.
std::string fill(Text id,
                 std::initializer_list<std::pair<std::string_view, std::string_view>> values);

/// 12,345 as the user's language writes it.
std::string grouped(guint64 number);

/// A file name as one line of valid UTF-8: names on the disk are bytes.
std::string one_line(std::string_view bytes);

/// The last part of a path, for people.
std::string display_name(const std::string &path);

}  // namespace gallery

#include <gio/gio.h>
#include <image-headers.h>
#include <sys/stat.h>

#include <memory>

#include "info-page.hpp"
#include "text.hpp"

namespace gallery {
namespace {

using DatePtr = std::unique_ptr<GDateTime, pb::FreeWith<g_date_time_unref>>;
using ExifPtr = std::unique_ptr<WinkExifInfo, pb::FreeWith<wink_free_exifinfo>>;

/// As it is seen: from the fifth orientation on a picture lies on its side.
std::string dimensions_of(const std::string &path) {
  gint width = 0;
  gint height = 0;
  if (!wink_parse_from_file(path.c_str(), &width, &height)) return "";
  const ExifPtr exif(wink_create_jpeg_exifinfo_from_file(path.c_str()));
  if (exif && exif->orientation >= 5) std::swap(width, height);
  return grouped(static_cast<guint64>(width)) + " \xc3\x97 " +
         grouped(static_cast<guint64>(height));
}

std::string date_of(gint64 seconds) {
  const DatePtr date(g_date_time_new_from_unix_local(seconds));
  const pb::StringPtr words(date ? g_date_time_format(date.get(), "%x %H:%M") : nullptr);
  return words ? words.get() : "";
}

std::string size_of(goffset bytes) {
  const pb::StringPtr words(g_format_size(static_cast<guint64>(bytes)));
  return words.get();
}

}  // namespace

InfoPage::Rows details_of(const std::string &path) {
  const pb::StringPtr folder(g_path_get_dirname(path.c_str()));
  InfoPage::Rows rows{{text(Text::kName), display_name(path)},
                      {text(Text::kFolder), one_line(folder.get())}};
  struct stat info {};
  if (lstat(path.c_str(), &info) == 0) {
    rows.emplace_back(text(Text::kSize), size_of(info.st_size));
    const std::string dimensions = dimensions_of(path);
    if (!dimensions.empty()) rows.emplace_back(text(Text::kDimensions), dimensions);
    rows.emplace_back(text(Text::kChanged), date_of(info.st_mtim.tv_sec));
  }
  return rows;
}

InfoPage::Rows help() {
  const char *arrows = "\xe2\x86\x90 \xe2\x86\x92 \xe2\x86\x91 \xe2\x86\x93";
  return {{arrows, text(Text::kHelpArrows)},
          {"Return", text(Text::kHelpOpen)},
          {"Escape", text(Text::kHelpBack)},
          {"Ctrl 1, Ctrl 2", text(Text::kHelpLists)},
          {"Home, End", text(Text::kHelpEnds)},
          {"Ctrl +, Ctrl \xe2\x88\x92", text(Text::kHelpTiles)},
          {"+, \xe2\x88\x92, 0, 1", text(Text::kHelpZoom)},
          {"F11", text(Text::kHelpFullScreen)},
          {"Space", text(Text::kHelpSlideshow)},
          {"Alt Return", text(Text::kHelpDetails)},
          {"Delete", text(Text::kHelpDelete)},
          {"Ctrl Z", text(Text::kHelpUndo)},
          {"Ctrl Q", text(Text::kHelpQuit)}};
}

}  // namespace gallery

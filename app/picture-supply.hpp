/// The pictures around the one that is looked at, decoded for the window.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <glib.h>

#include <functional>
#include <glib-ptr.hpp>
#include <map>
#include <string>
#include <vector>

namespace gallery {

/// Main loop only, with the GDK lock.
class PictureSupply {
 public:
  struct Picture {
    pb::Ref<GdkPixbuf> pixbuf;  ///< NULL while it is loaded, and when it cannot be
    std::string problem;        ///< why it cannot be shown; "" otherwise
  };
  /// Told the path of a picture that is there now, or has a problem.
  using Arrived = std::function<void(const std::string &path)>;

  explicit PictureSupply(Arrived arrived);
  ~PictureSupply();
  PictureSupply(const PictureSupply &) = delete;
  PictureSupply &operator=(const PictureSupply &) = delete;

  /// The room for a picture, in pixels. Pictures of another size stay until they are replaced.
  void set_box(int width, int height);
  /// Asks for a picture, and after it for its neighbours in the order given; all others go.
  void want(const std::string &current, const std::vector<std::string> &neighbours);
  /// Files may have changed: asks again for the pictures of those that have.
  /// @return true when there are any
  bool look_again();
  /// (nullable) What there is of a picture that is wanted.
  [[nodiscard]] const Picture *find(const std::string &path) const;

 private:
  /// Tells one state of a file from another.
  struct Stamp {
    guint64 inode = 0;
    gint64 size = 0;
    gint64 changed_ns = 0;
    bool operator==(const Stamp &) const = default;
  };
  struct Entry {
    Picture picture;
    guint request = 0;   ///< of the loader; 0 when none is under way
    bool fresh = false;  ///< loaded for the box there is now
    Stamp stamp;         ///< of the file when it was asked for
  };

  static Stamp stamp_of(const std::string &path);
  static void on_loaded(guint request, GdkPixbuf *pixbuf, const gchar *problem, gpointer self);
  void load_next();
  void load(const std::string &path, Entry &entry);

  Arrived arrived_;
  int width_ = 0;
  int height_ = 0;
  std::vector<std::string> wanted_;  // the most wanted first
  std::map<std::string, Entry> entries_;
};

}  // namespace gallery

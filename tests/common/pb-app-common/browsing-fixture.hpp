/// The browsing state with lists whose rows the test chooses.
#pragma once

#include <pb-app-common.h>
#include <pb-debug.h>

#include <vector>

#include "common/logged-text.hpp"
#include "common/pb-app-common/private.hpp"
#include "glib-ptr.hpp"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

/// A row without an item.
inline constexpr gint kEmptyRow = 0;

using ListRef = pb::Ref<PbItemList>;

class BrowsingFixture : public support::GlibTest {
 protected:
  void SetUp() override {
    pb_app_common_initialize();
    fake::take_log();
  }
  void TearDown() override {
    if (alive_) pb_app_common_finalize();
  }
  /// Ends the state before the test does.
  void end_browsing() {
    pb_app_common_finalize();
    alive_ = false;
    fake::take_log();
  }

  static PbAppCommon *state() { return pb_app_common_get_instance(); }
  static pb::app_common::Private &hidden() { return *pb::app_common::private_of(state()); }

  /// A list with an item of every id, and an empty row for kEmptyRow. A header row is a row
  /// without an item.
  static ListRef make_list(const std::vector<gint> &ids) {
    ListRef list = ListRef::adopt(pb_item_list_new());
    const auto nobody = pb::Ref<PbItem>::adopt(pb_item_new());
    for (const gint id : ids) {
      const auto item = pb::Ref<PbItem>::adopt(pb_item_new());
      pb_item_set_info(item.get(), id, nullptr, ("/" + std::to_string(id)).c_str(), "jpg", 0);
      if (id == kEmptyRow) {
        pb_item_list_add(list.get(), nobody.get(), -1, nullptr);
      } else {
        pb_item_list_add(list.get(), item.get(), 0, nullptr);
      }
    }
    return list;
  }
  /// Makes a list of items current, at one of its rows, and forgets what that logged.
  static ListRef browse(const std::vector<gint> &ids, gint index = 0) {
    ListRef list = make_list(ids);
    pb_app_common_reset_list_index(list.get());
    state()->item_index = index;
    fake::take_log();
    fake::take_calls();
    return list;
  }
  /// The album list of the service.
  static void serve_albums(const std::vector<FmAlbumRecord> &albums) {
    fake::platform().fm_svc_mb_get_all_albums_ex = [=](gint, guint32, GList **list, gint *) {
      *list = fake::record_list(albums);
      return TRUE;
    };
  }
  /// The files of every album.
  static void serve_album_files(const std::vector<gint64> &ids) {
    fake::platform().fm_svc_mb_album_get_all_files_ex = [=](gint, gint, gint, FmFileList *list,
                                                            gint *) {
      fake::fill_file_list(list, ids);
      return TRUE;
    };
  }

  static gint id_of(const PbItem *item) { return item != nullptr ? item->id : kEmptyRow; }

 private:
  bool alive_ = true;
};

/// Counts the notifications of a property.
class NotifyCount {
 public:
  NotifyCount(PbAppCommon *object, const char *property)
      : object_(object),
        id_(g_signal_connect(object, (std::string("notify::") + property).c_str(),
                             G_CALLBACK(count_one), this)) {}
  ~NotifyCount() { g_signal_handler_disconnect(object_, id_); }
  NotifyCount(const NotifyCount &) = delete;
  NotifyCount &operator=(const NotifyCount &) = delete;

  [[nodiscard]] int count() const { return count_; }

 private:
  static void count_one(GObject *, GParamSpec *, gpointer self) {
    ++static_cast<NotifyCount *>(self)->count_;
  }

  PbAppCommon *object_;
  gulong id_;
  int count_ = 0;
};

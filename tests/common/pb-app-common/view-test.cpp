#include "browsing-fixture.hpp"
#include "common/pb-item-list/private.hpp"

namespace {

/// Real widgets that drive the lists.
class BuildForAView : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    pb_app_common_initialize();
    fake::serve_files({fake::make_item(501, "/a.jpg"), fake::make_item(502, "/b.jpg")});
    fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                         GdkPixbuf **pixbuf) {
      *pixbuf = support::solid_pixbuf(148, 148, support::kRed).release();
      return 1;
    };
    view_ = pb::Ref<GtkWidget>::sink(gtk_icon_view_new());
    adjustment_ =
        pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 100, 1, 10, 10)));
    pb_app_common_set_adjustment(view_.get(), adjustment_.get());
  }
  void TearDown() override {
    if (view_) pb_app_common_finalize();
  }

  static PbItemListPrivate &list() {
    return pb::item_list::private_of(pb_app_common_get_item_list());
  }

  pb::Ref<GtkWidget> view_;
  pb::Ref<GtkAdjustment> adjustment_;
};

TEST_F(BuildForAView, HandsTheViewToTheList) {
  pb_app_common_build_item_list(1, 0);

  EXPECT_EQ(GTK_WIDGET(list().icon_view.get()), view_.get());
}

TEST_F(BuildForAView, HandsTheAdjustmentToTheList) {
  pb_app_common_build_item_list(1, 0);

  EXPECT_EQ(list().vadjustment.get(), adjustment_.get());
}

TEST_F(BuildForAView, SurvivesADestroyedView) {
  gtk_widget_destroy(view_.get());

  EXPECT_TRUE(pb_app_common_build_item_list(1, 0));

  EXPECT_EQ(list().icon_view.get(), nullptr);
}

TEST_F(BuildForAView, TakesTheAdjustmentFromTheOldList) {
  pb_app_common_build_item_list(1, 0);
  const ListRef old = ListRef::share(pb_app_common_get_item_list());

  pb_app_common_build_item_list(1, 0);

  EXPECT_EQ(pb::item_list::private_of(old.get()).vadjustment.get(), nullptr);
}

}  // namespace

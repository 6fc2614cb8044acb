#include "fixture.hpp"

namespace {

using split_list_test::log_of;
using split_list_test::SplitListTest;
using testing::ElementsAre;
using testing::IsEmpty;

using SplitState = SplitListTest;

struct Widgets {
  GtkWidget *view = nullptr;
  GtkAdjustment *adjustment = nullptr;
  GtkWidget *paned = nullptr;
};

Widgets stored_widgets() {
  Widgets widgets;
  pb_split_list_get_adjustment_widget(&widgets.view, &widgets.adjustment, &widgets.paned);
  return widgets;
}

TEST_F(SplitState, IsZeroAtFirst) {
  EXPECT_EQ(pb_split_get_view_type(), 0);
  EXPECT_EQ(pb_split_get_filter_type(), 0);
  EXPECT_EQ(pb_split_get_id_type(), 0);
  EXPECT_EQ(pb_split_get_unselected_record_list(), nullptr);
}

TEST_F(SplitState, HasNoWidgetsAtFirst) {
  const Widgets widgets = stored_widgets();

  EXPECT_EQ(widgets.view, nullptr);
  EXPECT_EQ(widgets.adjustment, nullptr);
  EXPECT_EQ(widgets.paned, nullptr);
}

TEST_F(SplitState, KeepsTheViewType) {
  pb_split_set_view_type(-7);

  EXPECT_EQ(pb_split_get_view_type(), -7);
}

TEST_F(SplitState, KeepsTheFilterType) {
  pb_split_set_filter_type(9);

  EXPECT_EQ(pb_split_get_filter_type(), 9);
}

TEST_F(SplitState, GivesBackTheIdTypeThatWasSet) {
  EXPECT_EQ(pb_split_set_id_type(5), 5);

  EXPECT_EQ(pb_split_get_id_type(), 5);
}

TEST_F(SplitState, KeepsTheAddressOfTheUnselectedRecords) {
  GList link{};

  pb_split_set_unselected_record_list(&link);

  EXPECT_EQ(pb_split_get_unselected_record_list(), &link);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), IsEmpty());
}

TEST_F(SplitState, OutlivesTheLists) {
  GList link{};
  pb_split_set_unselected_record_list(&link);
  pb_split_set_view_type(3);
  pb_split_set_filter_type(2);
  pb_split_set_id_type(1);

  split_list_test::new_list().reset();

  EXPECT_EQ(pb_split_get_unselected_record_list(), &link);
  EXPECT_EQ(pb_split_get_view_type(), 3);
  EXPECT_EQ(pb_split_get_filter_type(), 2);
  EXPECT_EQ(pb_split_get_id_type(), 1);
}

TEST_F(SplitState, KeepsTheWidgets) {
  const split_list_test::View view;

  const Widgets widgets = stored_widgets();

  EXPECT_EQ(widgets.view, view.widget.get());
  EXPECT_EQ(widgets.adjustment, view.adjustment.get());
  EXPECT_EQ(widgets.paned, view.paned.get());
  EXPECT_THAT(log_of("pb_split_list_set_adjustment_widget"), IsEmpty());
}

TEST_F(SplitState, ReplacesTheAdjustmentAlone) {
  const split_list_test::View view;
  const auto other =
      pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 1, 1, 1, 1)));

  pb_split_list_set_adjustment_widget(nullptr, other.get(), nullptr);

  const Widgets widgets = stored_widgets();
  EXPECT_EQ(widgets.view, view.widget.get());
  EXPECT_EQ(widgets.adjustment, other.get());
  EXPECT_EQ(widgets.paned, view.paned.get());
  EXPECT_THAT(log_of("pb_split_list_set_adjustment_widget"),
              ElementsAre("It is not iconview widget\n", "It is not paned widget\n"));
}

TEST_F(SplitState, RefusesWidgetsOfOtherTypes) {
  const split_list_test::View view;

  pb_split_list_set_adjustment_widget(
      view.paned.get(), reinterpret_cast<GtkAdjustment *>(view.widget.get()), view.widget.get());

  const Widgets widgets = stored_widgets();
  EXPECT_EQ(widgets.view, view.widget.get());
  EXPECT_EQ(widgets.adjustment, view.adjustment.get());
  EXPECT_EQ(widgets.paned, view.paned.get());
  EXPECT_THAT(log_of("pb_split_list_set_adjustment_widget"),
              ElementsAre("It is not iconview widget\n", "It is not adjustment widget\n",
                          "It is not paned widget\n"));
}

TEST_F(SplitState, ForgetsWidgetsThatAreDestroyed) {
  { const split_list_test::View view; }

  const Widgets widgets = stored_widgets();

  EXPECT_EQ(widgets.view, nullptr);
  EXPECT_EQ(widgets.adjustment, nullptr);
  EXPECT_EQ(widgets.paned, nullptr);
}

TEST_F(SplitState, TakesNoReference) {
  const split_list_test::View view;

  EXPECT_EQ(item_list_test::references(view.widget.get()), 1U);
  EXPECT_EQ(item_list_test::references(view.adjustment.get()), 1U);
  EXPECT_EQ(item_list_test::references(view.paned.get()), 1U);
}

TEST_F(SplitState, WantsAnAddressForTheIconView) {
  GtkAdjustment *adjustment = nullptr;

  pb_split_list_get_adjustment_widget(nullptr, &adjustment, nullptr);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_split_list_get_adjustment_widget: assertion 'iconview&&adjustment' failed"));
}

TEST_F(SplitState, WantsAnAddressForTheAdjustment) {
  GtkWidget *view = nullptr;

  pb_split_list_get_adjustment_widget(&view, nullptr, nullptr);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_split_list_get_adjustment_widget: assertion 'iconview&&adjustment' failed"));
}

TEST_F(SplitState, NeedsNoAddressForThePanedWidget) {
  const split_list_test::View view;
  Widgets widgets;

  pb_split_list_get_adjustment_widget(&widgets.view, &widgets.adjustment, nullptr);

  EXPECT_EQ(widgets.view, view.widget.get());
}

}  // namespace

#include <cstdint>

#include "view-fixture.hpp"

using testing::ElementsAre;

namespace {

class Accessible : public test::ViewFixture {
 protected:
  AtkObject *grid() { return gtk_widget_get_accessible(widget()); }
  pb::Ref<AtkObject> cell(int row) {
    return pb::Ref<AtkObject>::adopt(atk_object_ref_accessible_child(grid(), row));
  }
  static bool has_state(AtkObject *object, AtkStateType state) {
    const auto states = pb::Ref<AtkStateSet>::adopt(atk_object_ref_state_set(object));
    return atk_state_set_contains_state(states.get(), state) != FALSE;
  }
  void name_rows() {
    phone_icon_view_set_name_func(
        view(),
        [](PhoneIconView *, gint row, gpointer) { return g_strdup_printf("Picture %d", row); },
        nullptr, nullptr);
  }
};

TEST_F(Accessible, IsAPaneWithAChildForEachRow) {
  show(1'000'000);

  EXPECT_EQ(atk_object_get_role(grid()), ATK_ROLE_LAYERED_PANE);
  EXPECT_EQ(atk_object_get_n_accessible_children(grid()), 1'000'000);
  EXPECT_TRUE(has_state(grid(), ATK_STATE_MANAGES_DESCENDANTS));
}

TEST_F(Accessible, IsTheSameObjectEachTime) {
  show(10);

  EXPECT_EQ(grid(), grid());
}

TEST_F(Accessible, HasIconsWithNames) {
  name_rows();
  show(100);

  EXPECT_EQ(atk_object_get_role(cell(3).get()), ATK_ROLE_ICON);
  EXPECT_STREQ(atk_object_get_name(cell(3).get()), "Picture 3");
}

TEST_F(Accessible, CountsRowsThatHaveNoName) {
  show(100);

  EXPECT_STREQ(atk_object_get_name(cell(3).get()), "4 / 100");
}

TEST_F(Accessible, ReadsNoRowOutOfSight) {
  name_rows();
  show(1'000'000);
  take_fills();

  EXPECT_STREQ(atk_object_get_name(cell(500'000).get()), "500001 / 1000000");

  EXPECT_TRUE(take_fills().empty());
}

TEST_F(Accessible, KnowsItsPlaceInTheTree) {
  show(100);

  EXPECT_EQ(atk_object_get_parent(cell(3).get()), grid());
  EXPECT_EQ(atk_object_get_index_in_parent(cell(3).get()), 3);
  EXPECT_EQ(atk_object_get_parent(grid()),
            gtk_widget_get_accessible(gtk_widget_get_parent(widget())));
}

TEST_F(Accessible, HasNoChildOutsideTheList) {
  show(100);

  EXPECT_FALSE(cell(100));
  EXPECT_FALSE(cell(-1));
}

TEST_F(Accessible, TellsTheCursorsCell) {
  show(100);
  focus();
  phone_icon_view_set_cursor_row(view(), 5);

  EXPECT_TRUE(has_state(cell(5).get(), ATK_STATE_FOCUSED));
  EXPECT_FALSE(has_state(cell(4).get(), ATK_STATE_FOCUSED));
}

TEST_F(Accessible, AnnouncesWhereTheCursorMoves) {
  name_rows();
  show(100);
  focus();
  std::vector<std::string> announced;
  g_signal_connect(grid(), "active-descendant-changed",
                   G_CALLBACK(+[](AtkObject *, AtkObject *child, std::vector<std::string> *names) {
                     names->push_back(atk_object_get_name(child));
                   }),
                   &announced);

  phone_icon_view_set_cursor_row(view(), 5);

  EXPECT_THAT(announced, ElementsAre("Picture 5"));
}

TEST_F(Accessible, TellsWhatIsSelected) {
  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_MULTIPLE);
  show(100);
  phone_icon_view_select_row(view(), 2);

  EXPECT_TRUE(has_state(cell(2).get(), ATK_STATE_SELECTED));
  EXPECT_TRUE(has_state(cell(3).get(), ATK_STATE_SELECTABLE));
  EXPECT_FALSE(has_state(cell(3).get(), ATK_STATE_SELECTED));
  EXPECT_EQ(atk_selection_get_selection_count(ATK_SELECTION(grid())), 1);
}

TEST_F(Accessible, SelectsOnBehalfOfAReader) {
  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_MULTIPLE);
  show(100);

  EXPECT_TRUE(atk_selection_add_selection(ATK_SELECTION(grid()), 4));

  EXPECT_TRUE(phone_icon_view_row_is_selected(view(), 4));
}

TEST_F(Accessible, OpensOnBehalfOfAReader) {
  show(100);

  EXPECT_TRUE(atk_action_do_action(ATK_ACTION(cell(4).get()), 0));

  EXPECT_THAT(activated_, ElementsAre(4));
}

TEST_F(Accessible, TellsWhereACellIs) {
  show(100);
  gint grid_x = 0;
  gint grid_y = 0;
  gint x = 0;
  gint y = 0;
  gint width = 0;
  gint height = 0;
  atk_component_get_extents(ATK_COMPONENT(grid()), &grid_x, &grid_y, &width, &height,
                            ATK_XY_SCREEN);

  atk_component_get_extents(ATK_COMPONENT(cell(4).get()), &x, &y, &width, &height, ATK_XY_SCREEN);

  EXPECT_EQ(x - grid_x, 166);
  EXPECT_EQ(y - grid_y, kMargin + kPitch);
  EXPECT_EQ(width, kCell);
  EXPECT_EQ(height, kCell);
}

TEST_F(Accessible, IsDefunctWhenRowsGetOtherNumbers) {
  show(100);
  const auto old = cell(4);

  gtk_virtual_list_store_set_total_size(store(), 50);

  EXPECT_TRUE(has_state(old.get(), ATK_STATE_DEFUNCT));
}

TEST_F(Accessible, OutlivesTheView) {
  show(100);
  const auto old_cell = cell(4);
  const auto old_grid = pb::Ref<AtkObject>::share(grid());

  gtk_widget_destroy(window_.get());
  window_.reset();
  view_.reset();

  EXPECT_TRUE(has_state(old_cell.get(), ATK_STATE_DEFUNCT));
  EXPECT_TRUE(has_state(old_grid.get(), ATK_STATE_DEFUNCT));
}

TEST_F(Accessible, LetsGoOfTheNameFunction) {
  show(100);
  int *owned = new int(1);
  phone_icon_view_set_name_func(
      view(), [](PhoneIconView *, gint, gpointer) -> gchar * { return nullptr; }, owned,
      [](gpointer data) { *static_cast<int *>(data) = 2; });

  phone_icon_view_set_name_func(view(), nullptr, nullptr, nullptr);

  EXPECT_EQ(*owned, 2);
  delete owned;
}

}  // namespace

#include "browsing-fixture.hpp"

namespace {

using fake::Logged;
using support::ExpectFinalized;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class AppCommon : public BrowsingFixture {
 protected:
  static GParamSpecInt *property(const char *name) {
    return G_PARAM_SPEC_INT(g_object_class_find_property(G_OBJECT_GET_CLASS(state()), name));
  }
  static gint read(const char *name) {
    gint value = -100;
    g_object_get(state(), name, &value, nullptr);
    return value;
  }
};

using AppCommonType = AppCommon;
using AppCommonStart = AppCommon;
using AppCommonProperty = AppCommon;
using AppCommonInstance = AppCommon;
using AppCommonEnd = AppCommon;

TEST_F(AppCommonType, HasTheNamePbAppCommon) {
  EXPECT_STREQ(g_type_name(PB_TYPE_APP_COMMON), "PbAppCommon");
}

TEST_F(AppCommonType, DerivesDirectlyFromGObject) {
  EXPECT_EQ(g_type_parent(PB_TYPE_APP_COMMON), G_TYPE_OBJECT);
}

TEST_F(AppCommonType, KeepsItsFieldsInOrder) {
  EXPECT_EQ(offsetof(PbAppCommon, category_type), sizeof(GObject));
  EXPECT_EQ(offsetof(PbAppCommon, item_index), sizeof(GObject) + 2 * sizeof(gint));
  EXPECT_EQ(offsetof(PbAppCommon, evt_delivery_handle), sizeof(GObject) + 3 * sizeof(gint));
}

TEST_F(AppCommonStart, HasNoCategory) { EXPECT_EQ(state()->category_type, -1); }

TEST_F(AppCommonStart, IsAtRowZero) { EXPECT_EQ(state()->item_index, 0); }

TEST_F(AppCommonStart, HasNoEventHandle) { EXPECT_EQ(state()->evt_delivery_handle, 0); }

TEST_F(AppCommonStart, HasItsChoices) {
  EXPECT_EQ(hidden().sort, 4);
  EXPECT_EQ(hidden().filter, -1);
  EXPECT_EQ(hidden().album_sort, 2);
  EXPECT_EQ(hidden().album_filter, 0);
  EXPECT_EQ(hidden().icon_size, 148);
}

TEST_F(AppCommonStart, HasNothingToShow) {
  EXPECT_EQ(hidden().n_entire_items, 0);
  EXPECT_EQ(hidden().item_list, nullptr);
  EXPECT_EQ(hidden().iconview, nullptr);
  EXPECT_EQ(hidden().adjustment, nullptr);
  EXPECT_FALSE(hidden().resync);
}

TEST_F(AppCommonStart, IsLogged) {
  end_browsing();

  pb_app_common_initialize();

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_app_common_initialize]+ Create PbAppCommon Object +\n")));
  end_browsing();
}

TEST_F(AppCommonStart, DoesNotLookForAnEarlierObject) {
  const auto first = pb::Ref<PbAppCommon>::adopt(state());

  pb_app_common_initialize();

  EXPECT_NE(state(), first.get());
}

TEST_F(AppCommonProperty, CategoryTypeHasItsRange) {
  EXPECT_EQ(property("category-type")->minimum, -1);
  EXPECT_EQ(property("category-type")->maximum, 5);
  EXPECT_EQ(property("category-type")->default_value, -1);
}

TEST_F(AppCommonProperty, ItemIndexHasItsRange) {
  EXPECT_EQ(property("item-index")->minimum, -1);
  EXPECT_EQ(property("item-index")->maximum, 2147483647);
  EXPECT_EQ(property("item-index")->default_value, -1);
}

TEST_F(AppCommonProperty, EvtDeliveryHandleHasItsRange) {
  EXPECT_EQ(property("evt-delivery-handle")->minimum, -1);
  EXPECT_EQ(property("evt-delivery-handle")->maximum, 2147483647);
  EXPECT_EQ(property("evt-delivery-handle")->default_value, -1);
}

TEST_F(AppCommonProperty, HasItsIds) {
  EXPECT_EQ(G_PARAM_SPEC(property("category-type"))->param_id, 1U);
  EXPECT_EQ(G_PARAM_SPEC(property("item-index"))->param_id, 2U);
  EXPECT_EQ(G_PARAM_SPEC(property("evt-delivery-handle"))->param_id, 3U);
}

TEST_F(AppCommonProperty, IsReadAndWritten) {
  for (const char *name : {"category-type", "item-index", "evt-delivery-handle"}) {
    EXPECT_EQ(G_PARAM_SPEC(property(name))->flags & G_PARAM_READWRITE, G_PARAM_READWRITE) << name;
  }
}

TEST_F(AppCommonProperty, WritesItsField) {
  g_object_set(state(), "category-type", 3, "item-index", 17, "evt-delivery-handle", 29, nullptr);

  EXPECT_EQ(state()->category_type, 3);
  EXPECT_EQ(state()->item_index, 17);
  EXPECT_EQ(state()->evt_delivery_handle, 29);
}

TEST_F(AppCommonProperty, ReadsItsField) {
  state()->category_type = 3;
  state()->item_index = 17;
  state()->evt_delivery_handle = 29;

  EXPECT_EQ(read("category-type"), 3);
  EXPECT_EQ(read("item-index"), 17);
  EXPECT_EQ(read("evt-delivery-handle"), 29);
}

TEST_F(AppCommonProperty, IsNotWrittenUnderAnotherId) {
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_INT);

  G_OBJECT_GET_CLASS(state())->set_property(G_OBJECT(state()), 4, &value,
                                            G_PARAM_SPEC(property("item-index")));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 4")));
}

TEST_F(AppCommonProperty, IsNotReadUnderAnotherId) {
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_INT);

  G_OBJECT_GET_CLASS(state())->get_property(G_OBJECT(state()), 4, &value,
                                            G_PARAM_SPEC(property("item-index")));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 4")));
}

TEST_F(AppCommonInstance, IsAlwaysTheSame) {
  EXPECT_EQ(pb_app_common_get_instance(), pb_app_common_get_instance());
}

TEST_F(AppCommonInstance, IsHandedOutSilently) {
  pb_app_common_get_instance();

  EXPECT_THAT(fake::platform().log, testing::IsEmpty());
}

TEST_F(AppCommonInstance, IsMissingAfterTheEnd) {
  end_browsing();

  EXPECT_EQ(pb_app_common_get_instance(), nullptr);
}

TEST_F(AppCommonInstance, IsLoggedAsMissing) {
  end_browsing();

  pb_app_common_get_instance();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_app_common_get_instance]pb_app_common_get_instance : "
                                 "g_app_common_instance == NULL\n")));
}

TEST_F(AppCommonEnd, FinalizesTheObject) {
  const ExpectFinalized watch(state());

  end_browsing();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(AppCommonEnd, DropsTheList) {
  ListRef list = browse({1, 2});
  const ExpectFinalized watch(list.get());
  list.reset();

  end_browsing();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(AppCommonEnd, KeepsAnObjectThatSomebodyHolds) {
  const auto held = pb::Ref<PbAppCommon>::share(state());

  pb_app_common_finalize();

  EXPECT_EQ(state(), held.get());
  g_object_ref(held.get());
}

TEST_F(AppCommonEnd, WithoutAnObjectIsLogged) {
  end_browsing();

  pb_app_common_finalize();

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_ERROR, "[pb_app_common_finalize]fail to get PbAppCommon object\n")));
}

TEST_F(AppCommonEnd, LetsTheObjectBeMadeAnew) {
  end_browsing();

  pb_app_common_initialize();

  EXPECT_EQ(state()->category_type, -1);
  end_browsing();
}

TEST_F(AppCommonEnd, OfALeakedObjectLeavesTheCurrentOne) {
  PbAppCommon *first = state();
  pb_app_common_initialize();
  const PbAppCommon *second = state();

  g_object_unref(first);

  EXPECT_EQ(state(), second);
}

}  // namespace

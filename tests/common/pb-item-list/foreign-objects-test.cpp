#include "common/foreign-objects.hpp"

#include "fixture.hpp"

namespace {

using item_list_test::ItemListTest;
using testing::ElementsAre;
using testing::IsEmpty;

PbItemList *as_list(gpointer object) { return static_cast<PbItemList *>(object); }

constexpr const char *kIsList = "PB_IS_ITEM_LIST(list)";
constexpr const char *kIsOldList = "PB_IS_ITEM_LIST(item_list)";
constexpr const char *kIsStore = "PB_IS_ITEM_LIST(PB_ITEM_LIST(store))";

constexpr EntryPoint kEntryPoints[] = {
    {"pb_item_list_add",
     [](gpointer object) {
       const auto item = pb::Ref<PbItem>::adopt(pb_item_new());
       pb_item_list_add(as_list(object), item.get(), 0, nullptr);
       return G_OBJECT(item.get())->ref_count == 1;
     },
     kIsList},
    {"pb_item_list_get_first",
     [](gpointer object) { return pb_item_list_get_first(as_list(object)) == nullptr; }, kIsList},
    {"pb_item_list_get_last",
     [](gpointer object) { return pb_item_list_get_last(as_list(object)) == nullptr; }, kIsList},
    {"pb_item_list_get_by_index",
     [](gpointer object) { return pb_item_list_get_by_index(as_list(object), 0) == nullptr; },
     kIsList},
    {"pb_item_list_vls_get_item_by_index",
     [](gpointer object) {
       return pb_item_list_vls_get_item_by_index(as_list(object), 0) == nullptr;
     },
     kIsList},
    {"pb_item_list_remove_by_index",
     [](gpointer object) { return pb_item_list_remove_by_index(as_list(object), 0) == FALSE; },
     kIsList},
    {"pb_item_list_build",
     [](gpointer object) { return pb_item_list_build(as_list(object), 1, 0) == 0; }, kIsList},
    {"pb_item_list_set_adjustment_cb",
     [](gpointer object) {
       pb_item_list_set_adjustment_cb(as_list(object), nullptr, nullptr, FALSE);
       return true;
     },
     kIsList},
    {"pb_item_list_icon_refresh_when_start",
     [](gpointer object) {
       pb_item_list_icon_refresh_when_start(as_list(object));
       return true;
     },
     kIsList},
    {"pb_item_list_vadjustment_cb",
     [](gpointer object) {
       pb_item_list_vadjustment_cb(nullptr, nullptr, as_list(object));
       return true;
     },
     kIsList},
    {"pb_item_list_rsync_current_icons",
     [](gpointer object) {
       pb_item_list_rsync_current_icons(as_list(object));
       return true;
     },
     kIsList},
    {"pb_item_list_icon_refresh_at_idle_cb",
     [](gpointer object) { return pb_item_list_icon_refresh_at_idle_cb(object) == FALSE; },
     kIsList},
    {"pb_item_get_sticky_sub_list",
     [](gpointer object) { return pb_item_get_sticky_sub_list(as_list(object)) == nullptr; },
     kIsList},
    {"pb_item_sub_list_disconnect_signal",
     [](gpointer object) {
       pb_item_sub_list_disconnect_signal(as_list(object));
       return true;
     },
     kIsOldList},
    {"pb_item_share_list_disconnect_signal",
     [](gpointer object) {
       pb_item_share_list_disconnect_signal(as_list(object));
       return true;
     },
     kIsOldList},
    {"pb_item_list_vls_disconnect_signal",
     [](gpointer object) {
       pb_item_list_vls_disconnect_signal(as_list(object));
       return true;
     },
     kIsOldList},
};

constexpr Foreign kObjects[] = {{"no object", make_nothing}, {"a plain object", make_plain_object},
                                {"a label", make_label},     {"an item", make_item},
                                {"a state", make_state},     {"another store", make_store}};

std::string name_of(const testing::TestParamInfo<EntryPoint> &test) { return test.param.name; }

class InPlaceOfAList : public ItemListTest, public testing::WithParamInterface<EntryPoint> {};

TEST_P(InPlaceOfAList, EverythingElseIsRefused) {
  for (const Foreign &foreign : kObjects) {
    SCOPED_TRACE(foreign.name);
    const auto object = pb::Ref<GObject>::adopt(foreign.make());
    fake::take_calls();

    EXPECT_TRUE(GetParam().call(object.get()));

    EXPECT_THAT(take_glib_warnings(), ElementsAre(refusal_of(GetParam())));
    EXPECT_THAT(fake::platform().calls, IsEmpty());
    EXPECT_THAT(fake::pending_idles(), IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(EveryEntryPoint, InPlaceOfAList, testing::ValuesIn(kEntryPoints), name_of);

template <void (*Handler)(GtkVirtualListStore *, gint, gint, gint)>
bool call_handler(gpointer store) {
  Handler(static_cast<GtkVirtualListStore *>(store), 0, 99, 0);
  return true;
}

constexpr EntryPoint kHandlers[] = {
    {"pb_item_list_insert_data", call_handler<pb_item_list_insert_data>, kIsStore},
    {"pb_item_list_sub_insert_data", call_handler<pb_item_list_sub_insert_data>, kIsStore},
    {"pb_item_list_album_insert_data", call_handler<pb_item_list_album_insert_data>, kIsStore},
    {"pb_item_list_share_insert_data", call_handler<pb_item_list_share_insert_data>, kIsStore},
};

class InPlaceOfAStore : public InPlaceOfAList {};

TEST_P(InPlaceOfAStore, EverythingElseIsRefused) {
  for (const Foreign &foreign : kObjects) {
    SCOPED_TRACE(foreign.name);
    const auto object = pb::Ref<GObject>::adopt(foreign.make());
    fake::take_calls();

    GetParam().call(object.get());

    // The cast that the condition names warns too.
    const auto warnings = take_glib_warnings();
    ASSERT_THAT(warnings, testing::Not(IsEmpty()));
    EXPECT_EQ(warnings.back(), refusal_of(GetParam()));
    EXPECT_THAT(fake::platform().calls, IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(EveryHandler, InPlaceOfAStore, testing::ValuesIn(kHandlers), name_of);

constexpr EntryPoint kQueries[] = {
    {"pb_item_sub_list_disconnect_signal",
     [](gpointer previous) {
       return pb::Ref<PbItemList>::adopt(pb_item_get_sub_list(as_list(previous))).get() != nullptr;
     },
     kIsOldList},
    {"pb_item_sub_list_disconnect_signal",
     [](gpointer previous) {
       return pb::Ref<PbItemList>::adopt(pb_item_get_sub_sorted_list(as_list(previous), nullptr))
                  .get() != nullptr;
     },
     kIsOldList},
    {"pb_item_sub_list_disconnect_signal",
     [](gpointer previous) {
       return pb::Ref<PbItemList>::adopt(pb_item_get_sorted_sub_list(as_list(previous), nullptr))
                  .get() != nullptr;
     },
     kIsOldList},
    {"pb_item_sub_list_disconnect_signal",
     [](gpointer previous) {
       return pb::Ref<PbItemList>::adopt(pb_item_get_refresh_sub_list(as_list(previous))).get() !=
              nullptr;
     },
     kIsOldList},
};

class InPlaceOfAPreviousList : public InPlaceOfAList {};

TEST_P(InPlaceOfAPreviousList, EverythingElseIsRefusedAndTheQueryGoesOn) {
  for (const Foreign &foreign : kObjects) {
    SCOPED_TRACE(foreign.name);
    const auto object = pb::Ref<GObject>::adopt(foreign.make());

    EXPECT_TRUE(GetParam().call(object.get()));

    const auto warnings = take_glib_warnings();
    if (object) {
      EXPECT_THAT(warnings, ElementsAre(refusal_of(GetParam())));
    } else {
      EXPECT_THAT(warnings, IsEmpty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryQuery, InPlaceOfAPreviousList, testing::ValuesIn(kQueries));

using InPlaceOfAnItemToAdd = ItemListTest;

TEST_F(InPlaceOfAnItemToAdd, IsRefusedWhateverItIs) {
  const auto list = item_list_test::new_list();
  for (const Foreign &foreign : kObjects) {
    const auto object = pb::Ref<GObject>::adopt(foreign.make());
    if (PB_IS_ITEM(object.get())) continue;

    pb_item_list_add(list.get(), reinterpret_cast<PbItem *>(object.get()), 0, nullptr);

    EXPECT_THAT(take_glib_warnings(),
                ElementsAre("pb_item_list_add: assertion 'PB_IS_ITEM(item)' failed"))
        << foreign.name;
  }
  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
}

}  // namespace

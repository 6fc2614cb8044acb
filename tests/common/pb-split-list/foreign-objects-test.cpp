#include "common/foreign-objects.hpp"

#include "fixture.hpp"

namespace {

using split_list_test::SplitListTest;
using testing::Combine;
using testing::ElementsAre;
using testing::IsEmpty;

PbSplitList *as_list(gpointer object) { return static_cast<PbSplitList *>(object); }

constexpr const char *kIsList = "PB_IS_SPLIT_LIST(list)";
constexpr const char *kIsItemList = "PB_IS_SPLIT_LIST(item_list)";

constexpr EntryPoint kEntryPoints[] = {
    {"pb_split_list_get_records",
     [](gpointer object) { return pb_split_list_get_records(as_list(object)) == nullptr; },
     kIsList},
    {"pb_split_clear_record_list",
     [](gpointer object) {
       pb_split_clear_record_list(as_list(object));
       return true;
     },
     kIsItemList},
    {"pb_split_get_full_record_list",
     [](gpointer object) { return pb_split_get_full_record_list(as_list(object)) == FALSE; },
     kIsList},
    {"pb_split_list_vadjustment_cb",
     [](gpointer object) {
       pb_split_list_vadjustment_cb(nullptr, nullptr, as_list(object));
       return true;
     },
     kIsList},
    {"pb_split_list_hpaned_cb",
     [](gpointer object) {
       pb_split_list_hpaned_cb(nullptr, nullptr, as_list(object));
       return true;
     },
     kIsList},
    {"pb_split_list_refresh_new_item_when_remove",
     [](gpointer object) {
       pb_split_list_refresh_new_item_when_remove(as_list(object), 0);
       return true;
     },
     kIsList},
    {"pb_split_list_icon_refresh_when_start",
     [](gpointer object) {
       pb_split_list_icon_refresh_when_start(as_list(object));
       return true;
     },
     kIsList},
    {"pb_split_list_get_nth_item",
     [](gpointer object) { return pb_split_list_get_nth_item(as_list(object), 0) == nullptr; },
     kIsList},
    {"pb_split_list_select_item",
     [](gpointer object) {
       split_list_test::Records records({split_list_test::record(1, 1)});
       GList *selected = nullptr;
       pb_split_list_select_item(as_list(object), &records.head, &selected, 0);
       return selected == nullptr;
     },
     kIsItemList},
    {"pb_split_list_unselect_item",
     [](gpointer object) {
       split_list_test::Records records({split_list_test::record(1, 1)});
       GList *none = nullptr;
       return pb_split_list_unselect_item(as_list(object), &none, &records.head, &none, 1) == -1;
     },
     kIsItemList},
};

constexpr EntryPoint kForeignOnly[] = {
    {"pb_split_list_get_length",
     [](gpointer object) { return pb_split_list_get_length(as_list(object)) == 0; }, kIsList},
    {"pb_split_get_list",
     [](gpointer object) { return pb_split_get_list(as_list(object)) == nullptr; },
     "previous == nullptr || PB_IS_SPLIT_LIST(previous)"},
    {"pb_split_get_filter_list",
     [](gpointer object) { return pb_split_get_filter_list(as_list(object)) == nullptr; },
     "previous == nullptr || PB_IS_SPLIT_LIST(previous)"},
};

GObject *make_plain_list_store() { return G_OBJECT(gtk_list_store_new(1, G_TYPE_INT)); }

constexpr Foreign kObjects[] = {{"APlainObject", make_plain_object},
                                {"ALabel", make_label},
                                {"AnItem", make_item},
                                {"AnItemList", make_list},
                                {"APlainListStore", make_plain_list_store}};
constexpr Foreign kNothing[] = {{"Nothing", make_nothing}};

std::string name_of(const testing::TestParamInfo<std::tuple<EntryPoint, Foreign>> &test) {
  return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param).name;
}

class InPlaceOfASplitList : public SplitListTest,
                            public testing::WithParamInterface<std::tuple<EntryPoint, Foreign>> {};

TEST_P(InPlaceOfASplitList, IsRefused) {
  const auto &[entry, foreign] = GetParam();
  const auto object = pb::Ref<GObject>::adopt(foreign.make());
  fake::take_calls();

  EXPECT_TRUE(entry.call(object.get()));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(refusal_of(entry)));
  EXPECT_THAT(fake::platform().calls, IsEmpty());
  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EveryEntryPoint, InPlaceOfASplitList,
                         Combine(testing::ValuesIn(kEntryPoints), testing::ValuesIn(kObjects)),
                         name_of);
INSTANTIATE_TEST_SUITE_P(EveryEntryPointWith, InPlaceOfASplitList,
                         Combine(testing::ValuesIn(kEntryPoints), testing::ValuesIn(kNothing)),
                         name_of);
INSTANTIATE_TEST_SUITE_P(EveryOptionalList, InPlaceOfASplitList,
                         Combine(testing::ValuesIn(kForeignOnly), testing::ValuesIn(kObjects)),
                         name_of);

}  // namespace

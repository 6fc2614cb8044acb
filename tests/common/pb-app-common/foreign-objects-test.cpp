#include "common/foreign-objects.hpp"

#include "browsing-fixture.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Foreign kForeign[] = {{"APlainObject", make_plain_object},
                                {"ALabel", make_label},
                                {"AnItem", make_item},
                                {"AState", make_state},
                                {"AnotherStore", make_store}};

class ForeignObject : public BrowsingFixture, public testing::WithParamInterface<Foreign> {
 protected:
  pb::Ref<GObject> object_ = pb::Ref<GObject>::adopt(GetParam().make());
};

TEST_P(ForeignObject, IsNotInstalledAsAList) {
  const ListRef list = browse({1, 2}, 1);

  pb_app_common_reset_list_index(reinterpret_cast<PbItemList *>(object_.get()));

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_app_common_reset_list_index: assertion 'PB_IS_ITEM_LIST(list)' failed"));
  EXPECT_EQ(pb_app_common_get_item_list(), list.get());
  EXPECT_EQ(state()->item_index, 1);
}

TEST_P(ForeignObject, HasNoNthItem) {
  EXPECT_EQ(pb_app_common_get_nth_item_from_list(reinterpret_cast<PbItemList *>(object_.get()), 0),
            nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_list_get_length: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

TEST_P(ForeignObject, IsNoViewThatAListFollows) {
  fake::platform().fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64, gint *count,
                                                         gint *) {
    *count = 1;
    return TRUE;
  };
  pb_app_common_set_adjustment(reinterpret_cast<GtkWidget *>(object_.get()),
                               reinterpret_cast<GtkAdjustment *>(object_.get()));

  EXPECT_TRUE(pb_app_common_build_item_list(1, 0));

  EXPECT_THAT(fake::platform().log,
              testing::IsSupersetOf(
                  {LoggedText("[pb_item_list_set_adjustment_cb]iconview is not ready\n"),
                   LoggedText("[pb_item_list_set_adjustment_cb]adjustment is not ready\n")}));
  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EveryKind, ForeignObject, testing::ValuesIn(kForeign),
                         [](const auto &test) { return std::string(test.param.name); });

}  // namespace

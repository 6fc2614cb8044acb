#include <pb-item-renderer.h>

#include "renderer-fixture.hpp"

namespace {

using support::ExpectFinalized;
using testing::ElementsAre;
using testing::HasSubstr;

class ItemRenderer : public RendererFixture {
 protected:
  GParamSpec *property(const char *name) {
    return g_object_class_find_property(G_OBJECT_GET_CLASS(cell_.get()), name);
  }
  PbItemRenderer *renderer() { return PB_ITEM_RENDERER(cell_.get()); }
};

using ItemRendererType = ItemRenderer;
using ItemRendererItem = ItemRenderer;
using ItemRendererFollowState = ItemRenderer;
using ItemRendererCheckButton = ItemRenderer;

TEST_F(ItemRendererType, HasTheNamePbItemRenderer) {
  EXPECT_STREQ(g_type_name(PB_TYPE_ITEM_RENDERER), "PbItemRenderer");
}

TEST_F(ItemRendererType, DerivesFromTheCellRenderer) {
  EXPECT_EQ(g_type_parent(PB_TYPE_ITEM_RENDERER), GTK_TYPE_CELL_RENDERER);
}

TEST_F(ItemRendererType, KeepsTheItemBehindItsParent) {
  EXPECT_EQ(offsetof(PbItemRenderer, item), sizeof(GtkCellRenderer));
}

TEST_F(ItemRendererType, IsMadeFloating) {
  GtkCellRenderer *cell = pb_item_renderer_new();

  EXPECT_TRUE(g_object_is_floating(cell));

  g_object_ref_sink(cell);
  g_object_unref(cell);
}

TEST_F(ItemRendererItem, IsAnItemThatIsReadAndWritten) {
  const GParamSpec *pspec = property("item");

  ASSERT_NE(pspec, nullptr);
  EXPECT_EQ(pspec->value_type, PB_TYPE_ITEM);
  EXPECT_EQ(pspec->flags & G_PARAM_READWRITE, G_PARAM_READWRITE);
  EXPECT_EQ(pspec->param_id, 1U);
}

TEST_F(ItemRendererItem, HasItsNickAndBlurb) {
  EXPECT_STREQ(g_param_spec_get_nick(property("item")), "PbItem Object");
  EXPECT_STREQ(g_param_spec_get_blurb(property("item")), "The PbItem to render");
}

TEST_F(ItemRendererItem, IsMissingAtFirst) { EXPECT_EQ(renderer()->item, nullptr); }

TEST_F(ItemRendererItem, IsReadAsWritten) {
  g_object_set(cell_.get(), "item", item_.get(), nullptr);

  PbItem *item = nullptr;
  g_object_get(cell_.get(), "item", &item, nullptr);

  EXPECT_EQ(pb::Ref<PbItem>::adopt(item).get(), item_.get());
}

TEST_F(ItemRendererItem, IsThePublicField) {
  g_object_set(cell_.get(), "item", item_.get(), nullptr);

  EXPECT_EQ(renderer()->item, item_.get());
}

TEST_F(ItemRendererItem, IsReferenced) {
  g_object_set(cell_.get(), "item", item_.get(), nullptr);

  EXPECT_EQ(G_OBJECT(item_.get())->ref_count, 2U);
}

TEST_F(ItemRendererItem, IsDroppedForTheNextOne) {
  const ExpectFinalized watch(item_.get());
  show_item();
  item_.reset();
  const auto next = pb::Ref<PbItem>::adopt(pb_item_new());

  g_object_set(cell_.get(), "item", next.get(), nullptr);

  EXPECT_TRUE(watch.finalized());
}

TEST_F(ItemRendererItem, SurvivesBeingSetAgain) {
  show_item();
  PbItem *item = item_.get();
  item_.reset();

  g_object_set(cell_.get(), "item", item, nullptr);

  EXPECT_TRUE(PB_IS_ITEM(renderer()->item));
}

TEST_F(ItemRendererItem, IsTakenAway) {
  show_item();

  g_object_set(cell_.get(), "item", nullptr, nullptr);

  EXPECT_EQ(renderer()->item, nullptr);
}

TEST_F(ItemRendererItem, GoesWithTheRenderer) {
  const ExpectFinalized item_watch(item_.get());
  const ExpectFinalized cell_watch(cell_.get());
  show_item();
  item_.reset();

  g_object_unref(cell_.release());

  pb_app_common_finalize();
  EXPECT_TRUE(item_watch.finalized());
}

TEST_F(ItemRendererFollowState, IsABooleanThatIsReadAndWritten) {
  const GParamSpec *pspec = property("follow-state");

  ASSERT_NE(pspec, nullptr);
  EXPECT_EQ(pspec->value_type, G_TYPE_BOOLEAN);
  EXPECT_EQ(pspec->flags & G_PARAM_READWRITE, G_PARAM_READWRITE);
  EXPECT_EQ(pspec->param_id, 2U);
}

TEST_F(ItemRendererFollowState, HasItsNickAndBlurb) {
  EXPECT_STREQ(g_param_spec_get_nick(property("follow-state")), "Follow State");
  EXPECT_STREQ(g_param_spec_get_blurb(property("follow-state")),
               "Whether the rendered pixbuf should be colorized according to the state");
}

TEST_F(ItemRendererFollowState, HasTheDefaultFalse) {
  EXPECT_FALSE(G_PARAM_SPEC_BOOLEAN(property("follow-state"))->default_value);
}

TEST_F(ItemRendererFollowState, IsReadAsWritten) {
  g_object_set(cell_.get(), "follow-state", TRUE, nullptr);

  gboolean follow = FALSE;
  g_object_get(cell_.get(), "follow-state", &follow, nullptr);

  EXPECT_TRUE(follow);
}

TEST_F(ItemRenderer, WritesNoOtherProperty) {
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_BOOLEAN);

  PbItemRendererClass *klass = PB_ITEM_RENDERER_GET_CLASS(cell_.get());
  G_OBJECT_CLASS(klass)->set_property(G_OBJECT(cell_.get()), 3, &value, property("item"));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 3")));
}

TEST_F(ItemRenderer, ReadsNoOtherProperty) {
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_BOOLEAN);

  PbItemRendererClass *klass = PB_ITEM_RENDERER_GET_CLASS(cell_.get());
  G_OBJECT_CLASS(klass)->get_property(G_OBJECT(cell_.get()), 3, &value, property("item"));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 3")));
}

TEST_F(ItemRendererCheckButton, NeedsARenderer) {
  pb_item_renderer_show_check_button(nullptr, TRUE);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_item_renderer_show_check_button: assertion "
                                                "'PB_IS_ITEM_RENDERER(renderer)' failed"));
}

TEST_F(ItemRendererCheckButton, DoesNotChangeTheSize) {
  show_file();

  pb_item_renderer_show_check_button(renderer(), TRUE);

  gint width = 0;
  gtk_cell_renderer_get_size(cell_.get(), nullptr, nullptr, nullptr, nullptr, &width, nullptr);
  EXPECT_EQ(width, 148);
}

}  // namespace

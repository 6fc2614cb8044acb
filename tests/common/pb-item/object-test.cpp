#include <pb-debug.h>
#include <pb-item.h>

#include "glib-ptr.hpp"
#include "support/fake-platform.hpp"

namespace {

using pb::Ref;
using support::ExpectFinalized;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StrEq;

/// A GObject that is no item.
Ref<GObject> foreign_object() {
  return Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_INITIALLY_UNOWNED, nullptr)));
}

PbItem *as_item(const Ref<GObject> &object) { return reinterpret_cast<PbItem *>(object.get()); }

class PbItemObject : public support::GlibTest {
 protected:
  Ref<PbItem> item_ = Ref<PbItem>::adopt(pb_item_new());
};

using PbItemType = PbItemObject;
using PbItemNew = PbItemObject;
using PbItemSetInfo = PbItemObject;
using PbItemDeleted = PbItemObject;
using PbItemPalmLoaded = PbItemObject;

TEST_F(PbItemType, HasTheNamePbItem) { EXPECT_STREQ(g_type_name(PB_TYPE_ITEM), "PbItem"); }

TEST_F(PbItemType, DerivesDirectlyFromGObject) {
  EXPECT_EQ(g_type_parent(PB_TYPE_ITEM), G_TYPE_OBJECT);
}

TEST_F(PbItemType, HasNoInterfaces) {
  guint n = 0;
  g_free(g_type_interfaces(PB_TYPE_ITEM, &n));

  EXPECT_EQ(n, 0U);
}

TEST_F(PbItemType, AddsNothingToItsParentsClass) {
  GTypeQuery query;
  g_type_query(PB_TYPE_ITEM, &query);

  EXPECT_EQ(query.class_size, sizeof(GObjectClass));
}

TEST_F(PbItemType, KeepsItsFieldsInOrder) {
  const std::vector<gsize> offsets = {
      offsetof(PbItem, parent),        offsetof(PbItem, is_cluster), offsetof(PbItem, id),
      offsetof(PbItem, filename),      offsetof(PbItem, thumb_path), offsetof(PbItem, attr),
      offsetof(PbItem, extension),     offsetof(PbItem, aux_text),   offsetof(PbItem, media_type),
      offsetof(PbItem, nfid),          offsetof(PbItem, favourite),  offsetof(PbItem, mark),
      offsetof(PbItem, cluster_index), offsetof(PbItem, album_id),   offsetof(PbItem, name),
      offsetof(PbItem, cate_type),     offsetof(PbItem, naid),       offsetof(PbItem, count)};

  EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end()));
}

TEST_F(PbItemNew, HandsOutOneReference) { EXPECT_EQ(G_OBJECT(item_.get())->ref_count, 1U); }

TEST_F(PbItemNew, HasNoIds) {
  EXPECT_EQ(item_->id, 0);
  EXPECT_EQ(item_->nfid, 0);
  EXPECT_EQ(item_->naid, 0);
  EXPECT_EQ(item_->album_id, 0);
}

TEST_F(PbItemNew, HasNoTexts) {
  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->thumb_path, nullptr);
  EXPECT_EQ(item_->extension, nullptr);
  EXPECT_EQ(item_->aux_text, nullptr);
  EXPECT_EQ(item_->name, nullptr);
}

TEST_F(PbItemNew, HasNoAttribute) { EXPECT_EQ(item_->attr, 0); }

TEST_F(PbItemNew, IsAFile) { EXPECT_EQ(item_->is_cluster, 0); }

TEST_F(PbItemNew, IsNotDeleted) { EXPECT_FALSE(pb_item_get_deleted(item_.get())); }

TEST_F(PbItemNew, IsNotPalmLoaded) { EXPECT_FALSE(pb_item_is_palm_pixbuf_ready(item_.get())); }

TEST_F(PbItemNew, FinalizesWithAllItsTexts) {
  const ExpectFinalized watch(item_.get());
  pb_item_set_info(item_.get(), 7, "/thumb", "/file", "jpg", 3);
  item_->aux_text = g_strdup("second");
  item_->name = g_strdup("album");

  item_.reset();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(PbItemSetInfo, StoresTheNumbers) {
  pb_item_set_info(item_.get(), 7, "/thumb", "/file", "jpg", 3);

  EXPECT_EQ(item_->id, 7);
  EXPECT_EQ(item_->attr, 3);
}

TEST_F(PbItemSetInfo, StoresTheTexts) {
  pb_item_set_info(item_.get(), 7, "/thumb", "/file", "jpg", 3);

  EXPECT_STREQ(item_->thumb_path, "/thumb");
  EXPECT_STREQ(item_->filename, "/file");
  EXPECT_STREQ(item_->extension, "jpg");
}

TEST_F(PbItemSetInfo, CopiesTheTexts) {
  gchar path[] = "/file";
  pb_item_set_info(item_.get(), 7, nullptr, path, nullptr, 3);

  path[1] = 'X';

  EXPECT_STREQ(item_->filename, "/file");
}

TEST_F(PbItemSetInfo, StoresNullForMissingTexts) {
  pb_item_set_info(item_.get(), 7, nullptr, nullptr, nullptr, 3);

  EXPECT_EQ(item_->thumb_path, nullptr);
  EXPECT_EQ(item_->filename, nullptr);
  EXPECT_EQ(item_->extension, nullptr);
}

TEST_F(PbItemSetInfo, LeavesThePreviousTextsToWhoeverHoldsThem) {
  pb_item_set_info(item_.get(), 7, "/old-thumb", "/old", "png", 3);
  const pb::StringPtr thumb_path(item_->thumb_path);
  const pb::StringPtr filename(item_->filename);
  const pb::StringPtr extension(item_->extension);

  pb_item_set_info(item_.get(), 8, "/thumb", "/file", "jpg", 4);

  EXPECT_STREQ(thumb_path.get(), "/old-thumb");
  EXPECT_STREQ(filename.get(), "/old");
  EXPECT_STREQ(extension.get(), "png");
}

TEST_F(PbItemSetInfo, ClearsTheDeletedMark) {
  pb_item_set_deleted(item_.get(), TRUE);

  pb_item_set_info(item_.get(), 7, nullptr, nullptr, nullptr, 3);

  EXPECT_FALSE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemSetInfo, ClearsPalmLoaded) {
  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  pb_item_set_info(item_.get(), 7, nullptr, nullptr, nullptr, 3);

  EXPECT_FALSE(pb_item_is_palm_pixbuf_ready(item_.get()));
}

TEST_F(PbItemSetInfo, WarnsAboutNoItem) {
  pb_item_set_info(nullptr, 7, nullptr, nullptr, nullptr, 3);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_info: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemSetInfo, WarnsAboutAForeignObject) {
  pb_item_set_info(as_item(foreign_object()), 7, nullptr, nullptr, nullptr, 3);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_info: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemDeleted, IsReadAsSet) {
  pb_item_set_deleted(item_.get(), TRUE);

  EXPECT_TRUE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemDeleted, GoesAgain) {
  pb_item_set_deleted(item_.get(), TRUE);

  pb_item_set_deleted(item_.get(), FALSE);

  EXPECT_FALSE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemDeleted, IsSetByTheLowestBit) {
  pb_item_set_deleted(item_.get(), 3);

  EXPECT_TRUE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemDeleted, IsNotSetByAnyOtherBit) {
  pb_item_set_deleted(item_.get(), 6);

  EXPECT_FALSE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemDeleted, LeavesPalmLoadedAlone) {
  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  pb_item_set_deleted(item_.get(), TRUE);

  EXPECT_TRUE(pb_item_is_palm_pixbuf_ready(item_.get()));
}

TEST_F(PbItemDeleted, CannotBeSetOnNoItem) {
  pb_item_set_deleted(nullptr, TRUE);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_deleted: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemDeleted, CannotBeSetOnAForeignObject) {
  pb_item_set_deleted(as_item(foreign_object()), TRUE);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_set_deleted: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemDeleted, IsNotReadFromNoItem) {
  EXPECT_FALSE(pb_item_get_deleted(nullptr));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_deleted: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemDeleted, IsNotReadFromAForeignObject) {
  EXPECT_FALSE(pb_item_get_deleted(as_item(foreign_object())));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_deleted: assertion 'PB_IS_ITEM(item)' failed"));
}

TEST_F(PbItemPalmLoaded, IsABooleanThatIsReadAndWritten) {
  const GParamSpec *pspec =
      g_object_class_find_property(G_OBJECT_GET_CLASS(item_.get()), "palm-loaded");

  ASSERT_NE(pspec, nullptr);
  EXPECT_EQ(pspec->value_type, G_TYPE_BOOLEAN);
  EXPECT_EQ(pspec->flags & G_PARAM_READWRITE, G_PARAM_READWRITE);
}

TEST_F(PbItemPalmLoaded, HasTheDefaultFalse) {
  GParamSpec *pspec = g_object_class_find_property(G_OBJECT_GET_CLASS(item_.get()), "palm-loaded");

  EXPECT_FALSE(G_PARAM_SPEC_BOOLEAN(pspec)->default_value);
}

TEST_F(PbItemPalmLoaded, HasThePropertyIdOne) {
  const GParamSpec *pspec =
      g_object_class_find_property(G_OBJECT_GET_CLASS(item_.get()), "palm-loaded");

  EXPECT_EQ(pspec->param_id, 1U);
}

TEST_F(PbItemPalmLoaded, IsReadAsWritten) {
  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  gboolean loaded = FALSE;
  g_object_get(item_.get(), "palm-loaded", &loaded, nullptr);

  EXPECT_TRUE(loaded);
}

TEST_F(PbItemPalmLoaded, MakesThePreviewReady) {
  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  EXPECT_TRUE(pb_item_is_palm_pixbuf_ready(item_.get()));
}

TEST_F(PbItemPalmLoaded, IsWrittenBack) {
  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  g_object_set(item_.get(), "palm-loaded", FALSE, nullptr);

  EXPECT_FALSE(pb_item_is_palm_pixbuf_ready(item_.get()));
}

TEST_F(PbItemPalmLoaded, LeavesTheDeletedMarkAlone) {
  pb_item_set_deleted(item_.get(), TRUE);

  g_object_set(item_.get(), "palm-loaded", FALSE, nullptr);

  EXPECT_TRUE(pb_item_get_deleted(item_.get()));
}

TEST_F(PbItemPalmLoaded, IsLoggedWithTheIdWhenWritten) {
  item_->id = 42;

  g_object_set(item_.get(), "palm-loaded", TRUE, nullptr);

  EXPECT_THAT(fake::platform().log,
              Contains(fake::Logged(PB_LOG_INFO, "[pb_item_set_property]palm-loaded[42]:1\n")));
}

TEST_F(PbItemPalmLoaded, IsFalseWithoutAWarningForNoItem) {
  EXPECT_FALSE(pb_item_is_palm_pixbuf_ready(nullptr));
}

TEST_F(PbItemPalmLoaded, IsFalseWithoutAWarningForAForeignObject) {
  EXPECT_FALSE(pb_item_is_palm_pixbuf_ready(as_item(foreign_object())));
}

TEST_F(PbItemPalmLoaded, IsTheOnlyPropertyThatIsWritten) {
  GParamSpec *pspec = g_object_class_find_property(G_OBJECT_GET_CLASS(item_.get()), "palm-loaded");
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_BOOLEAN);

  G_OBJECT_GET_CLASS(item_.get())->set_property(G_OBJECT(item_.get()), 2, &value, pspec);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 2")));
}

TEST_F(PbItemPalmLoaded, IsTheOnlyPropertyThatIsRead) {
  GParamSpec *pspec = g_object_class_find_property(G_OBJECT_GET_CLASS(item_.get()), "palm-loaded");
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_BOOLEAN);

  G_OBJECT_GET_CLASS(item_.get())->get_property(G_OBJECT(item_.get()), 2, &value, pspec);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(HasSubstr("invalid property id 2")));
}

}  // namespace

#include "common/foreign-objects.hpp"

#include "support/fake-platform.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PbItem *as_item(gpointer object) { return static_cast<PbItem *>(object); }

constexpr const char *kIsItem = "PB_IS_ITEM(item)";

constexpr EntryPoint kEntryPoints[] = {
    {"pb_item_set_info",
     [](gpointer object) {
       pb_item_set_info(as_item(object), 1, "/t", "/f", "jpg", 2);
       return true;
     },
     kIsItem},
    {"pb_item_set_album_info",
     [](gpointer object) {
       pb_item_set_album_info(as_item(object), 0, 0, 1, "name", 0, 2, 0, 3);
       return true;
     },
     kIsItem},
    {"pb_item_set_album_info_ex",
     [](gpointer object) {
       pb_item_set_album_info_ex(as_item(object), 1, "name", "/c", 2, 3, 4);
       return true;
     },
     kIsItem},
    {"pb_item_set_deleted",
     [](gpointer object) {
       pb_item_set_deleted(as_item(object), TRUE);
       return true;
     },
     kIsItem},
    {"pb_item_get_deleted",
     [](gpointer object) { return pb_item_get_deleted(as_item(object)) == FALSE; }, kIsItem},
    {"pb_item_get_thumbnail_pixbuf",
     [](gpointer object) { return pb_item_get_thumbnail_pixbuf(as_item(object)) == nullptr; },
     kIsItem},
    {"pb_item_get_only_cached_thumbnail_pixbuf",
     [](gpointer object) {
       return pb_item_get_only_cached_thumbnail_pixbuf(as_item(object)) == nullptr;
     },
     kIsItem},
    {"pb_item_get_render_pixbuf",
     [](gpointer object) { return pb_item_get_render_pixbuf(as_item(object)) == nullptr; },
     kIsItem},
    {"pb_item_get_only_cached_render_pixbuf",
     [](gpointer object) {
       return pb_item_get_only_cached_render_pixbuf(as_item(object)) == nullptr;
     },
     kIsItem},
    {"pb_item_get_pixbuf",
     [](gpointer object) { return pb_item_get_pixbuf(as_item(object)) == nullptr; }, kIsItem},
    {"pb_item_get_pixbuf_at_size",
     [](gpointer object) { return pb_item_get_pixbuf_at_size(as_item(object), 10, 10) == nullptr; },
     kIsItem},
    {"pb_item_get_palm_animation_pixbuf",
     [](gpointer object) {
       gboolean is_static = TRUE;
       return pb_item_get_palm_animation_pixbuf(as_item(object), &is_static) == nullptr;
     },
     kIsItem},
};

constexpr Foreign kForeign[] = {{"no object", make_nothing},
                                {"a plain object", make_plain_object},
                                {"a label", make_label},
                                {"a list", make_list},
                                {"a state", make_state}};

class InPlaceOfAnItem : public support::GlibTest, public testing::WithParamInterface<EntryPoint> {};

TEST_P(InPlaceOfAnItem, EverythingElseIsRefused) {
  for (const Foreign &foreign : kForeign) {
    SCOPED_TRACE(foreign.name);
    const auto object = pb::Ref<GObject>::adopt(foreign.make());
    fake::take_calls();

    EXPECT_TRUE(GetParam().call(object.get()));

    EXPECT_THAT(take_glib_warnings(), ElementsAre(refusal_of(GetParam())));
    EXPECT_THAT(fake::platform().calls, IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(EveryEntryPoint, InPlaceOfAnItem, testing::ValuesIn(kEntryPoints),
                         [](const auto &test) { return std::string(test.param.name); });

}  // namespace

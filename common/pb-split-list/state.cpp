#include <pb-debug.h>
#include <pb-split-list.h>
#include <check.hpp>

namespace {

/// One copy for the process. The widgets are borrowed, and NULL once they are destroyed.
struct State {
  gint view_type = PB_SPLIT_VIEW_FILES;
  gint filter_type = PB_SPLIT_FILTER_NONE;
  GList *unselected = nullptr;
  gint id_type = PB_SPLIT_ID_DATABASE;
  GtkWidget *icon_view = nullptr;
  GtkAdjustment *adjustment = nullptr;
  GtkWidget *paned = nullptr;
};

State g_state;

}  // namespace

void pb_split_set_view_type(gint view_type) { g_state.view_type = view_type; }

gint pb_split_get_view_type() { return g_state.view_type; }

void pb_split_set_filter_type(gint filter_type) { g_state.filter_type = filter_type; }

gint pb_split_get_filter_type() { return g_state.filter_type; }

void pb_split_set_unselected_record_list(GList *list) { g_state.unselected = list; }

GList *pb_split_get_unselected_record_list() { return g_state.unselected; }

gint pb_split_set_id_type(gint id_type) {
  g_state.id_type = id_type;
  return g_state.id_type;
}

gint pb_split_get_id_type() { return g_state.id_type; }

void pb_split_list_set_adjustment_widget(GtkWidget *iconview, GtkAdjustment *adjustment,
                                         GtkWidget *paned) {
  if (GTK_IS_ICON_VIEW(iconview)) {
    g_set_weak_pointer(&g_state.icon_view, iconview);
  } else {
    PB_LOG(PB_LOG_WARNING, "It is not iconview widget\n");
  }
  if (GTK_IS_ADJUSTMENT(adjustment)) {
    g_set_weak_pointer(&g_state.adjustment, adjustment);
  } else {
    PB_LOG(PB_LOG_WARNING, "It is not adjustment widget\n");
  }
  if (GTK_IS_PANED(paned)) {
    g_set_weak_pointer(&g_state.paned, paned);
  } else {
    PB_LOG(PB_LOG_WARNING, "It is not paned widget\n");
  }
}

void pb_split_list_get_adjustment_widget(GtkWidget **iconview, GtkAdjustment **adjustment,
                                         GtkWidget **paned) {
  PB_CHECK_AS("iconview&&adjustment", iconview && adjustment);
  *iconview = g_state.icon_view;
  *adjustment = g_state.adjustment;
  if (paned != nullptr) *paned = g_state.paned;
}

#include <media-browser.h>

#include <algorithm>
#include <cstdlib>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"

namespace {

constexpr gint kNothingLeft = -2;

/// Elements come from malloc because the media service frees them.
using NumbersPtr = pb::ListPtr<gint, std::free>;

/// The numbers 0 to length - 1 in order; null with ok = false when memory runs out.
NumbersPtr make_numbers(gint length, bool &ok) {
  NumbersPtr numbers;
  for (gint number = length - 1; number >= 0; --number) {
    auto *element = static_cast<gint *>(std::malloc(sizeof(gint)));
    ok = element != nullptr;
    if (!ok) return {};
    *element = number;
    numbers.reset(g_list_prepend(numbers.release(), element));
  }
  return numbers;
}

}  // namespace

void pb_random_list_init(GList **random_list, gint length) {
  PB_CHECK(random_list);
  fm_svc_mb_glist_free(random_list, TRUE);
  *random_list = nullptr;
  bool ok = true;
  NumbersPtr numbers = make_numbers(length, ok);
  if (!ok) return;
  *random_list = numbers.release();
}

gint pb_get_random_index(GList **random_list) {
  PB_CHECK(random_list, -1);
  const guint length = g_list_length(*random_list);
  if (length == 0) return kNothingLeft;
  const gint position = g_random_int_range(0, static_cast<gint32>(length));
  GList *drawn = g_list_nth(*random_list, static_cast<guint>(position));
  const gint number = *static_cast<gint *>(drawn->data);
  // The number's own storage stays: views may still point to it.
  *random_list = g_list_delete_link(*random_list, drawn);
  return number;
}

void mb_util_free_glist(GList *list) {
  if (list == nullptr) {
    PB_LOG(PB_LOG_INFO, "list = NULL\n");
    return;
  }
  const pb::ListPtr<void, std::free> owner(list);
}

gboolean user_bt_select_check(gint value) {
  if (value == 1 || value == 4) {
    PB_LOG(PB_LOG_INFO, "user_bt_select_check : %d... return TRUE\n", value);
    return TRUE;
  }
  PB_LOG(PB_LOG_INFO, "user_bt_select_check : %d... return FALSE\n", value);
  return FALSE;
}

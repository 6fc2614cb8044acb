#include <mutex>

#include "file-explorer.h"

namespace {

std::mutex mutex;
gint connections = 0;  // guarded by mutex

}  // namespace

gboolean fexplorer_initialize(gint *handle) {
  const std::scoped_lock lock(mutex);
  ++connections;
  if (handle != nullptr) *handle = connections;
  return TRUE;
}

gboolean fexplorer_finalize(void) {
  const std::scoped_lock lock(mutex);
  if (connections == 0) return FALSE;
  --connections;
  return TRUE;
}

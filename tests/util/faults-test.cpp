// What the helpers do when the system refuses. The functions below stand in front of the C
// library's and GConf's, by --wrap.
#include <gconf/gconf-value.h>
#include <pthread.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdlib>

#include "pb-debug.h"
#include "pb-util.h"
#include "support/fake-platform.hpp"

namespace {

/// What is to be refused; nothing at first.
struct Faults {
  int lock_error = 0;    ///< result of locking an error-checking mutex
  int unlock_error = 0;  ///< result of unlocking one, which is unlocked all the same
  int mallocs_left = -1;
  bool no_values = false;
  bool no_fork = false;
  int forks = 0;
  int wait_error = 0;
  int interrupted_waits = 0;
};
Faults g_faults;

bool is_resource_mutex(const pthread_mutex_t *mutex) {
  return mutex->__data.__kind == PTHREAD_MUTEX_ERRORCHECK_NP;
}

}  // namespace

extern "C" {

int __real_pthread_mutex_lock(pthread_mutex_t *mutex);
int __real_pthread_mutex_unlock(pthread_mutex_t *mutex);
void *__real_malloc(std::size_t size);
GConfValue *__real_gconf_value_new(GConfValueType type);
pid_t __real_fork();
pid_t __real_waitpid(pid_t pid, int *status, int options);
int __wrap_pthread_mutex_lock(pthread_mutex_t *mutex);
int __wrap_pthread_mutex_unlock(pthread_mutex_t *mutex);
void *__wrap_malloc(std::size_t size);
GConfValue *__wrap_gconf_value_new(GConfValueType type);
pid_t __wrap_fork();
pid_t __wrap_waitpid(pid_t pid, int *status, int options);

int __wrap_pthread_mutex_lock(pthread_mutex_t *mutex) {
  if (g_faults.lock_error != 0 && is_resource_mutex(mutex)) return g_faults.lock_error;
  return __real_pthread_mutex_lock(mutex);
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t *mutex) {
  const int result = __real_pthread_mutex_unlock(mutex);
  return g_faults.unlock_error != 0 && is_resource_mutex(mutex) ? g_faults.unlock_error : result;
}

void *__wrap_malloc(std::size_t size) {
  if (g_faults.mallocs_left == 0) return nullptr;
  if (g_faults.mallocs_left > 0) --g_faults.mallocs_left;
  return __real_malloc(size);
}

GConfValue *__wrap_gconf_value_new(GConfValueType type) {
  return g_faults.no_values ? nullptr : __real_gconf_value_new(type);
}

pid_t __wrap_fork() {
  ++g_faults.forks;
  if (!g_faults.no_fork) return __real_fork();
  errno = EAGAIN;
  return -1;
}

pid_t __wrap_waitpid(pid_t pid, int *status, int options) {
  if (g_faults.interrupted_waits > 0) {
    --g_faults.interrupted_waits;
    errno = EINTR;
    return -1;
  }
  const pid_t result = __real_waitpid(pid, status, options);
  if (g_faults.wait_error == 0) return result;
  errno = g_faults.wait_error;
  return -1;
}

}  // extern "C"

namespace {

using fake::Logged;
using fake::platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

TEST(ResourceLock, LogsItsErrorAndGoesOn) {
  pb_res_open();
  fake::take_log();
  g_faults.lock_error = EINVAL;

  EXPECT_THAT(pb_get_res_string(1000), StrEq("string 0"));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_res_string]Error locking mutex 22 \n\n")));
}

TEST(ResourceLock, LogsItsErrorForABitmapAndGoesOn) {
  pb_res_open();
  fake::take_log();
  g_faults.lock_error = EINVAL;

  GdkPixbuf *bitmap = pb_get_pixbuf(7);

  EXPECT_EQ(fake::image_id(bitmap), 7);
  g_object_unref(bitmap);
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_pixbuf]Error locking mutex 22 \n\n")));
}

TEST(ResourceLock, LogsItsDeadlockAndGoesOn) {
  pb_res_open();
  fake::take_log();
  g_faults.lock_error = EDEADLK;

  EXPECT_THAT(pb_get_res_string(1000), StrEq("string 0"));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_get_res_string]Mutex is already locked by the "
                                 "same thread \n\n")));
}

TEST(ResourceUnlock, LogsItsError) {
  pb_res_open();
  fake::take_log();
  g_faults.unlock_error = EPERM;

  EXPECT_THAT(pb_get_res_string(1000), StrEq("string 0"));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_res_string]Error unlocking mutex 1 \n\n")));
}

TEST(ResourceUnlock, LogsItsErrorForABitmap) {
  pb_res_open();
  fake::take_log();
  g_faults.unlock_error = EPERM;

  g_object_unref(pb_get_pixbuf(7));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_pixbuf]Error unlocking mutex 1 \n\n")));
}

TEST(RandomListWithoutMemory, IsNotStored) {
  GList *list = nullptr;
  g_faults.mallocs_left = 3;

  pb_random_list_init(&list, 10);

  g_faults.mallocs_left = -1;
  EXPECT_EQ(list, nullptr);
}

TEST(PhoneStatusWithoutMemory, IsFalse) {
  g_faults.no_values = true;
  gint value = 5;

  EXPECT_FALSE(mb_get_int_phone_status("/k", &value));
  EXPECT_FALSE(mb_set_int_phone_status("/k", 1));

  EXPECT_EQ(value, 5);
  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(SystemFaults, IncludeAFailedFork) {
  g_faults.no_fork = true;

  EXPECT_EQ(pb_util_system("true"), -1);
}

TEST(SystemFaults, IncludeAFailedWait) {
  g_faults.wait_error = ECHILD;

  EXPECT_EQ(pb_util_system("true"), -1);
}

TEST(SystemFaults, DoNotIncludeInterruptedWaits) {
  g_faults.interrupted_waits = 3;

  EXPECT_EQ(pb_util_system("exit 2"), 2 << 8);
  EXPECT_EQ(g_faults.interrupted_waits, 0);
}

TEST(SystemWithoutCommand, DoesNotFork) {
  EXPECT_EQ(pb_util_system(nullptr), 1);

  EXPECT_EQ(g_faults.forks, 0);
}

}  // namespace

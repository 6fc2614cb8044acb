/// Owners for what GLib hands out as raw pointers. Depends on GLib alone, so the library, the
/// host's platform and the gallery share it.
#pragma once

#include <glib-object.h>

#include <memory>
#include <mutex>
#include <utility>

namespace pb {

/// Deleter that calls one C function. It has no state, so the pointer stays one word.
template <auto Free>
struct FreeWith {
  template <typename T>
  void operator()(T *p) const noexcept {
    Free(p);
  }
};

/// Deleter for a list that owns its elements as well as its links.
template <typename T, auto Free>
struct FreeListOf {
  void operator()(GList *list) const noexcept {
    for (GList *link = list; link != nullptr; link = link->next) {
      if (link->data != nullptr) Free(static_cast<T *>(link->data));
    }
    g_list_free(list);
  }
};

using StringPtr = std::unique_ptr<gchar, FreeWith<g_free>>;
using StringsPtr = std::unique_ptr<gchar *, FreeWith<g_strfreev>>;
using ErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
/// Owns the links only; the elements belong to someone else.
using ListSpinePtr = std::unique_ptr<GList, FreeWith<g_list_free>>;
/// Owns the links and the elements.
template <typename T, auto Free>
using ListPtr = std::unique_ptr<GList, FreeListOf<T, Free>>;

/// Lets a C function fill an owner: `f(pb::out(error))`. What the owner held is freed first.
template <typename Owner>
class Out {
 public:
  explicit Out(Owner &owner) : owner_(owner) { owner_.reset(); }
  ~Out() { owner_.reset(raw_); }
  Out(const Out &) = delete;
  Out &operator=(const Out &) = delete;
  operator typename Owner::pointer *() { return &raw_; }  // NOLINT(google-explicit-constructor)

 private:
  Owner &owner_;
  typename Owner::pointer raw_ = nullptr;
};

template <typename Owner>
Out<Owner> out(Owner &owner) {
  return Out<Owner>(owner);
}

/// One strong reference to a GObject.
template <typename T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
  /// Takes over the caller's reference (transfer full).
  static Ref adopt(T *object) { return Ref(object); }
  /// Adds one to a borrowed object (transfer none).
  static Ref share(T *object) {
    if (object != nullptr) g_object_ref(object);
    return Ref(object);
  }
  /// Takes the floating reference of a new widget.
  static Ref sink(T *object) {
    if (object != nullptr) g_object_ref_sink(object);
    return Ref(object);
  }

  Ref(const Ref &other) : Ref(share(other.object_)) {}
  Ref(Ref &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  /// By value: safe for self-assignment.
  Ref &operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_ != nullptr) g_object_unref(object_);
  }

  [[nodiscard]] T *get() const { return object_; }
  T *operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// Hands the reference to the caller.
  [[nodiscard]] T *release() { return std::exchange(object_, nullptr); }
  void reset() { *this = Ref(); }

 private:
  explicit Ref(T *object) : object_(object) {}
  T *object_ = nullptr;
};

/// Walks the elements of a GList: `for (PbItem *item : pb::each<PbItem>(items))`. The list must
/// not change under the walk.
template <typename T>
class each {
 public:
  explicit each(const GList *list) : list_(list) {}

  class Iterator {
   public:
    explicit Iterator(const GList *link) : link_(link) {}
    T *operator*() const { return static_cast<T *>(link_->data); }
    Iterator &operator++() {
      link_ = link_->next;
      return *this;
    }
    bool operator!=(const Iterator &other) const { return link_ != other.link_; }

   private:
    const GList *link_;
  };

  [[nodiscard]] Iterator begin() const { return Iterator(list_); }
  [[nodiscard]] Iterator end() const { return Iterator(nullptr); }

 private:
  const GList *list_;
};

/// A main-loop source that is removed with its owner. A callback that returns FALSE calls
/// forget() first, because GLib has then removed the source itself.
class SourceId {
 public:
  SourceId() = default;
  explicit SourceId(guint id) : id_(id) {}
  SourceId(const SourceId &) = delete;
  SourceId &operator=(const SourceId &) = delete;
  SourceId(SourceId &&other) noexcept : id_(std::exchange(other.id_, 0)) {}
  SourceId &operator=(SourceId &&other) noexcept {
    if (this != &other) {
      remove();
      id_ = std::exchange(other.id_, 0);
    }
    return *this;
  }
  ~SourceId() { remove(); }

  [[nodiscard]] bool pending() const { return id_ != 0; }
  void forget() { id_ = 0; }
  void remove() {
    if (id_ != 0) g_source_remove(std::exchange(id_, 0));
  }

 private:
  guint id_ = 0;
};

/// Holds a GMutex that the C side shares for one scope.
class MutexLock {
 public:
  explicit MutexLock(GMutex &mutex) : mutex_(mutex) { g_mutex_lock(&mutex_); }
  ~MutexLock() { g_mutex_unlock(&mutex_); }
  MutexLock(const MutexLock &) = delete;
  MutexLock &operator=(const MutexLock &) = delete;

 private:
  GMutex &mutex_;
};

}  // namespace pb

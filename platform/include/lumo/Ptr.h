// Counted entities and the pointers to them.
#pragma once

#include "lumo/Assert.h"
#include "lumo/Exception.h"
#include "lumo/Export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace Lumo {

struct TypeRecord;
class NotifieeList;

/// Set once at start by a program that shares entities between threads: counts then change with
/// locked increments instead of plain ones.
extern LUMO_EXPORT bool enableThreadSafePointers;

/// Adds one to a count of references.
inline void countUp(std::uint32_t& count) {
  if (enableThreadSafePointers) {
    __atomic_fetch_add(&count, 1, __ATOMIC_RELAXED);
  } else {
    ++count;
  }
}

/// Counts down and returns what is left.
inline std::uint32_t countDown(std::uint32_t& count) {
  if (enableThreadSafePointers) return __atomic_sub_fetch(&count, 1, __ATOMIC_ACQ_REL);
  return --count;
}

/// The base of every entity: it carries the reference count. An entity lives on the heap, is held
/// only through `Ptr`, and dies with its last reference. A type of this library overrides
/// `fwkType` alone.
class LUMO_EXPORT PtrInterface {
 public:
  PtrInterface() = default;
  PtrInterface(const PtrInterface&) = delete;
  PtrInterface& operator=(const PtrInterface&) = delete;

  /// What a framework around the library may override: life, notifications and type of an entity:
  virtual void maybeDelete() const;
  virtual NotifieeList* notifieeList() const;
  virtual bool referenceTrackingEnabled() const;
  virtual void hasNotificationActiveIs(bool active) const;
  virtual void zeroReferencesIs() const;
  virtual const TypeRecord* fwkType() const;
  virtual ~PtrInterface();

  /// What `Ptr` counts by; the last one out calls `zeroReferencesIs`:
  void referenceInc() const { countUp(references_); }
  void referenceDec() const {
    if (countDown(references_) == 0) zeroReferencesIs();
  }
  std::uint32_t references() const { return references_; }
  bool hasNotificationActive() const { return notificationActive_; }
  /// Whether a strep text names the entity, so that its end must be told (lumo/NamedEntities.h).
  void namedIs(bool named) const { named_ = named; }

 private:
  mutable std::uint32_t references_ = 0;
  mutable bool notificationActive_ = false;
  mutable bool named_ = false;
};

/// A counted pointer to an entity; null by default.
template <class T>
class Ptr {
 public:
  using Element = T;

  Ptr() = default;
  Ptr(std::nullptr_t) {}
  Ptr(T* object) : object_(object) {
    if (object_) object_->referenceInc();
  }
  Ptr(const Ptr& other) : Ptr(other.object_) {}
  Ptr(Ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ptr(const Ptr<U>& other) : Ptr(other.ptr()) {}
  Ptr& operator=(Ptr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ptr() {
    if (object_) object_->referenceDec();
  }

  /// The entity, null for none; the pointer keeps its reference.
  T* ptr() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// Of the entity's identity.
  std::size_t hash() const { return std::hash<T*>{}(object_); }
  template <class U>
  bool operator==(const Ptr<U>& other) const {
    return object_ == other.ptr();
  }

 private:
  T* object_ = nullptr;
};

/// The entity as `T`, or null when it is of another type.
template <class T, class U>
Ptr<T> dynamicPtrCast(const Ptr<U>& entity) {
  return Ptr<T>(dynamic_cast<T*>(entity.ptr()));
}

/// The record of live entities, for leak reports. Off unless a program sets hooks.
struct AllocationTracking {
  void (*allocated)(const PtrInterface*, const std::type_info&) = nullptr;
  void (*failed)(const std::type_info&) = nullptr;
};
extern LUMO_EXPORT AllocationTracking allocationTracking;
/// Tell of an entity that came, or of one whose constructor raised, to `allocationTracking`:
void trackAllocation(const PtrInterface* entity, const std::type_info& type);
void trackDeallocation(const std::type_info& type);

/// Makes an entity the way that every factory does: constructed to the end, entered in the
/// allocation tracking, its notification state on. Raises `RangeException` "null ValidPtr" when the
/// allocation gives nothing.
template <class T, class... Args>
Ptr<T> newEntity(Args&&... args) {
  T* raw = nullptr;
  try {
    raw = new (std::nothrow) T(std::forward<Args>(args)...);
  } catch (...) {
    trackDeallocation(typeid(T));
    throw;
  }
  if (!raw) throw RangeException("null ValidPtr");
  Ptr<T> entity(raw);
  trackAllocation(raw, typeid(T));
  entity->hasNotificationActiveIs(true);
  return entity;
}

} // namespace Lumo

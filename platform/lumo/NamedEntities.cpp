#include "lumo/NamedEntities.h"

#include <cstring>
#include <mutex>
#include <unordered_map>

namespace Lumo {

namespace {

struct Names {
  std::mutex mutex;
  /// An entity has a name for each type that it was written as.
  std::unordered_multimap<const PtrInterface*, NamedEntity> byEntity;
};

Names& names() {
  static auto* const table = new Names; // entities may die while the process ends
  return *table;
}

bool isNamed(const NamedEntity& name, const char* type, const void* object) {
  return name.object == object && std::strcmp(name.type, type) == 0;
}

} // namespace

void nameEntity(const PtrInterface& entity, const NamedEntity& name) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  const auto [begin, end] = table.byEntity.equal_range(&entity);
  for (auto it = begin; it != end; ++it) {
    if (!isNamed(it->second, name.type, name.object)) continue;
    it->second.writable = it->second.writable || name.writable;
    return;
  }
  table.byEntity.emplace(&entity, name);
  entity.namedIs(true);
}

const void* namedEntity(const char* type, const void* object, bool writable) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  for (const auto& [entity, name] : table.byEntity) {
    if (isNamed(name, type, object)) return name.writable || !writable ? object : nullptr;
  }
  return nullptr;
}

void forgetEntity(const PtrInterface& entity) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  table.byEntity.erase(&entity);
}

} // namespace Lumo

#include "lumo/NamedEntities.h"

#include <cstring>
#include <mutex>
#include <unordered_map>

namespace Lumo {

namespace {

struct Names {
  std::mutex mutex;
  std::unordered_map<const PtrInterface*, NamedEntity> byEntity;
};

Names& names() {
  static auto* const table = new Names; // entities may die while the process ends
  return *table;
}

} // namespace

void nameEntity(const PtrInterface& entity, const NamedEntity& name) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  const auto [it, inserted] = table.byEntity.try_emplace(&entity, name);
  if (!inserted) it->second.writable = it->second.writable || name.writable;
  entity.namedIs(true);
}

const void* namedEntity(const char* type, const void* object, bool writable) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  for (const auto& [entity, name] : table.byEntity) {
    if (name.object != object || std::strcmp(name.type, type) != 0) continue;
    return name.writable || !writable ? object : nullptr;
  }
  return nullptr;
}

void forgetEntity(const PtrInterface& entity) {
  Names& table = names();
  const std::lock_guard guard(table.mutex);
  table.byEntity.erase(&entity);
}

} // namespace Lumo

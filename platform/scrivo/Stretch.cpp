#include "scrivo/Stretch.h"

#include "Kept.h"

#include <algorithm>
#include <new>

namespace scrivo {

void Stretch::free(Kept* kept) { ::operator delete(kept); }

Stretch::Kept* Stretch::Kept::make(Kept head, std::string_view bytes,
                                   const std::vector<Indent>& indents) {
  head.length = static_cast<std::uint32_t>(bytes.size());
  head.indents = static_cast<std::uint16_t>(indents.size());
  const std::size_t room = sizeof(Kept) + indents.size() * sizeof(Indent) + bytes.size();
  char* const memory = static_cast<char*>(::operator new(room));
  Kept* const kept = ::new (memory) Kept(head);
  char* const behind = std::copy_n(reinterpret_cast<const char*>(indents.data()),
                                   indents.size() * sizeof(Indent), memory + sizeof(Kept));
  std::copy(bytes.begin(), bytes.end(), behind);
  return kept;
}

} // namespace scrivo

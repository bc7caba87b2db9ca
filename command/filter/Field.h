// The fields of a route that an expression asks about.
#pragma once

#include "rova/route/ShownRoutes.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace command::filter {

/// What the values of a field are.
enum class Type : unsigned char { prefix, address, number, name, word, flag };

/// Where a route has the values of a field: in what it shows of itself, or of its vias.
using Values = std::variant<
    Kesh::IpGenPrefix Rova::RouteHead::*, std::uint32_t Rova::RouteHead::*,
    std::string_view Rova::RouteHead::*, bool Rova::RouteHead::*, std::uint32_t Rova::ShownVias::*,
    bool Rova::ShownVias::*, std::vector<Kesh::IpGenPrefix> Rova::ShownVias::*,
    std::vector<std::string> Rova::ShownVias::*, std::vector<std::uint32_t> Rova::ShownVias::*>;

/// A word of a field that has few, and the text that routes have for it.
struct FieldWord {
  std::string word;
  std::string value;
};

struct Field {
  std::string_view name;
  Type type;
  Values values;
  /// Those of the JSON of a listing that show it; empty for none, as of what tells routes apart.
  std::array<std::string_view, 2> keys;
  std::string_view meaning;
  const std::vector<FieldWord>& (*words)() = nullptr; ///< of Type::word
};

/// All of them: the one list.
std::span<const Field> fields();

/// The field of that name; null if there is none.
const Field* findField(std::string_view name);

/// Whether it is one of the vias, which routes share.
bool isOfVias(const Field& field);

} // namespace command::filter

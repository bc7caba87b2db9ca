// The fields of a route that a comparison leaves out.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace command {

class IgnoredFields {
 public:
  /// Reads names with commas between them. Raises UsageError for one that is none.
  explicit IgnoredFields(std::string_view names);

  bool empty() const { return keys_.empty(); }
  /// The entry of a route, `"PREFIX":{...}` as a listing prints it, without all that stands under
  /// the keys of these fields.
  std::string without(std::string_view entry) const;
  /// Whether what stands under a key is left out.
  bool has(std::string_view key) const;

 private:
  void add(std::string_view name);

  std::vector<std::string_view> keys_;
};

/// The names of the fields that can be left out.
std::vector<std::string> ignorableFields();

} // namespace command

// Access by name: building objects, reading, writing and calling their attributes, walking their
// collections.
#pragma once

#include "lumo/TypeRecordOf.h"

#include <boost/container/small_vector.hpp>
#include <string_view>

namespace Lumo {

/// Does `op` on the object, asking the bases of its type for attributes that are theirs. Raises an
/// internal error for what nobody supports, a range error for a null handle.
LUMO_EXPORT GenericPtr operate(GenericIf& object, const AttributeOp& op, const GenericPtr& key = {},
                               const GenericPtr& value = {});

/// The attribute of that name; raises a range error that lists the type's attributes for a name
/// that is none.
LUMO_EXPORT const AttributeRecord& attributeOf(const TypeRecord& type, std::string_view name);

// The operations by the attribute's name. Their errors are those of `attributeOf` and `operate`:
LUMO_EXPORT GenericPtr read(GenericIf& object, std::string_view attribute);
LUMO_EXPORT void write(GenericIf& object, std::string_view attribute, const GenericPtr& value);
LUMO_EXPORT GenericPtr readMember(GenericIf& object, std::string_view attribute,
                                  const GenericPtr& key);
LUMO_EXPORT void writeMember(GenericIf& object, std::string_view attribute, const GenericPtr& key,
                             const GenericPtr& value);
LUMO_EXPORT GenericPtr call(GenericIf& object, std::string_view method, ArgumentSpan arguments);

/// Builds an object. Raises range errors for arguments of another number or type, and for a type
/// that is not built by name.
LUMO_EXPORT GenericPtr construct(const TypeRecord& type, const GenericArguments& arguments);
/// Reads a strep text. A type with a collection stops the process.
LUMO_EXPORT GenericPtr fromStrep(const TypeRecord& type, const String& text);

/// A walk over a collection; it keeps the object alive.
class LUMO_EXPORT Walk {
 public:
  /// From the start, or from a key: at the end when the key is no member. Raises a range error for
  /// an attribute that is no collection.
  Walk(GenericPtr object, const AttributeRecord& attribute, const GenericPtr* key = nullptr);

  explicit operator bool() const { return functions_.iterNonnull(*iterator_); }
  /// The key of the member at which the walk stands.
  GenericPtr key() const { return functions_.iterKey(*iterator_); }
  /// The member, a default value when it has been deleted meanwhile.
  GenericPtr value() const { return functions_.iterObj(*iterator_); }
  /// Moves on.
  void next() { functions_.iterInc(*iterator_); }
  /// Deletes the member; the walk goes on with `next`.
  void del() { functions_.iterDel(*iterator_); }

 private:
  GenericPtr object_;
  Ptr<GenericIterator> iterator_;
  IteratorFunctions functions_{};
};

} // namespace Lumo

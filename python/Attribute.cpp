#include "Attribute.h"

#include "Activity.h"
#include "Collection.h"
#include "Convert.h"
#include "Object.h"
#include "Text.h"
#include "lumo/Reflect.h"

namespace rova_python {

namespace {

const Lumo::AttributeRecord& rowOf(void* closure) {
  return *static_cast<const Lumo::AttributeRecord*>(closure);
}

PyObject* get(PyObject* self, void* closure) {
  return locked([&] {
    const Lumo::AttributeRecord& row = rowOf(closure);
    const Lumo::GenericPtr& object = genericOf(self);
    if (Lumo::isCollection(row.kind)) return makeCollection(object, row);
    return toPython(Lumo::operate(*object, {&row, Lumo::OpCode::read}));
  });
}

/// The row by which the object's own type has the attribute. A derived type may fix what its base
/// writes, and the base's class writes to objects of both.
const Lumo::AttributeRecord& ownRow(const Lumo::TypeRecord& type,
                                    const Lumo::AttributeRecord& row) {
  const auto* const own = &type == row.owner ? nullptr : type.attribute(row.name);
  return own ? *own : row;
}

/// Why the attribute cannot be written; null when it can.
const char* obstacle(const Lumo::AttributeRecord& row, PyObject* value) {
  if (Lumo::isCollection(row.kind)) return "is a collection: change its members";
  if (row.kind == Lumo::AttributeKind::computed) return "is worked out and cannot be written";
  if (!row.write) return "is given to the constructor and fixed then";
  if (!value) return "cannot be deleted";
  return nullptr;
}

int set(PyObject* self, PyObject* value, void* closure) {
  return lockedInt([&] {
    const Lumo::GenericPtr& object = genericOf(self);
    const Lumo::AttributeRecord& row = ownRow(object->type(), rowOf(closure));
    const auto refuse = [&](const std::string& why) {
      raise(PyExc_AttributeError, pythonName(object->type()) + "." + row.name + " " + why);
    };
    if (const char* const why = obstacle(row, value)) refuse(why);
    if (object->constant()) refuse("cannot be written: its handle is constant");
    Lumo::operate(*object, {&row, Lumo::OpCode::write}, {},
                  namedFromPython(value, *row.valueType, row.name));
    return 0;
  });
}

} // namespace

PyGetSetDef propertyOf(const Lumo::AttributeRecord& row, const char* doc) {
  return {row.name, get, set, doc, const_cast<Lumo::AttributeRecord*>(&row)};
}

std::string docOf(const Lumo::AttributeRecord& row) {
  if (Lumo::isCollection(row.kind)) {
    return std::string("collection of ") + row.valueType->name + " by " + row.keyType->name +
           (row.kind == Lumo::AttributeKind::ordered ? ", in the order of the keys" : "");
  }
  std::string doc = row.valueType->name;
  if (row.mayBeNull) doc += " or None";
  if (row.kind == Lumo::AttributeKind::computed) return doc + ", computed";
  return row.write ? doc : doc + ", read only";
}

} // namespace rova_python

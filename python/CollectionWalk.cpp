#include "CollectionWalk.h"

#include "Activity.h"
#include "Convert.h"
#include "Slot.h"
#include "lumo/Reflect.h"

#include <memory>

namespace rova_python {

namespace {

struct Walker {
  PyObject head;
  Lumo::Walk walk;
  Part part;
  bool begun; ///< the walk stands at what was given last, which may be deleted meanwhile
};

PyTypeObject* walkerType = nullptr;

Walker& walkerOf(PyObject* self) { return *reinterpret_cast<Walker*>(self); }

Ref partOf(const Walker& walker) {
  if (walker.part == Part::keys) return toPython(walker.walk.key());
  Ref value = toPython(walker.walk.value());
  if (walker.part == Part::values) return value;
  return owned(PyTuple_Pack(2, toPython(walker.walk.key()).get(), value.get()));
}

PyObject* step(PyObject* object) {
  return locked([&]() -> Ref {
    Walker& walker = walkerOf(object);
    if (walker.begun && walker.walk) walker.walk.next();
    walker.begun = true;
    return walker.walk ? partOf(walker) : Ref(); // the end has no exception
  });
}

void destroy(PyObject* object) {
  PyTypeObject* const type = Py_TYPE(object);
  discard(walkerOf(object).walk);
  type->tp_free(object);
  Py_DECREF(type);
}

} // namespace

Ref startWalk(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& attribute, Part part) {
  Lumo::Walk walk(object, attribute);
  Ref made = owned(walkerType->tp_alloc(walkerType, 0));
  new (&walkerOf(made.get()).walk) Lumo::Walk(std::move(walk));
  walkerOf(made.get()).part = part;
  return made;
}

void makeWalkType() {
  PyType_Slot slots[] = {
      {Py_tp_doc, const_cast<char*>("A walk over a collection; it survives changes of it.")},
      {Py_tp_dealloc, slot(destroy)},
      {Py_tp_iter, slot(PyObject_SelfIter)},
      {Py_tp_iternext, slot(step)},
      {0, nullptr},
  };
  PyType_Spec spec = {"rova.CollectionIterator", sizeof(Walker), 0,
                      Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
  walkerType = reinterpret_cast<PyTypeObject*>(owned(PyType_FromSpec(&spec)).release());
}

} // namespace rova_python

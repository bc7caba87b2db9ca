#include "Errors.h"

#include "lumo/Exception.h"
#include "scrivo/Exception.h"
#include "sources/SourceError.h"
#include "vanta/Exception.h"

#include <new>

namespace rova_python {

namespace {

// The classes live as long as the process: exceptions may come at any time.
struct ErrorClasses {
  PyObject* error = nullptr;
  PyObject* range = nullptr;
  PyObject* internal = nullptr;
  PyObject* errnoError = nullptr;
  PyObject* corruption = nullptr;
  PyObject* source = nullptr;
};
ErrorClasses classes;

struct ErrorRow {
  const char* name;
  PyObject* ErrorClasses::*slot;
  PyObject** base; ///< Python's class that it is one of too, or null
  const char* doc;
};

const ErrorRow rows[] = {
    {"rova.RangeException", &ErrorClasses::range, &PyExc_ValueError,
     "A value stands outside its type's range, or a text cannot be read as its type."},
    {"rova.InternalException", &ErrorClasses::internal, &PyExc_RuntimeError,
     "A rule between parts of the program was broken."},
    {"rova.ErrnoException", &ErrorClasses::errnoError, &PyExc_OSError,
     "A system call failed; errno and strerror say how."},
    {"rova.CorruptionDetectedException", &ErrorClasses::corruption, nullptr,
     "A record of a shared table is not whole: its writer died, or its memory was damaged."},
    {"rova.SourceError", &ErrorClasses::source, nullptr,
     "A source cannot give a state; the message names the input, the place and what was expected."},
};

/// A text of any bytes, as messages with names out of configurations are.
Ref messageOf(const std::string& text) {
  return Ref::steal(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

void set(PyObject* exception, const std::string& message) {
  if (const Ref text = messageOf(message)) PyErr_SetObject(exception, text.get());
}

/// Sets one of the exceptions that have an error number. OSError itself chooses the class that
/// Python has for the number.
void setErrno(PyObject* exception, const Lumo::ErrnoException& error) {
  const std::string system = Lumo::errorString(error.number());
  const Ref text = messageOf(error.text().empty() ? system : error.text() + ": " + system);
  if (!text) return;
  const Ref made = Ref::steal(PyObject_CallFunction(exception, "iO", error.number(), text.get()));
  if (!made) return;
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(made.get())), made.get());
}

void addClass(PyObject* module, const char* fullName, PyObject*& slot, PyObject* bases,
              const char* doc) {
  slot = owned(PyErr_NewExceptionWithDoc(fullName, doc, bases, nullptr)).release();
  check(PyModule_AddObjectRef(module, fullName + sizeof "rova." - 1, slot));
}

} // namespace

void raiseCurrent() noexcept {
  try {
    throw;
  } catch (const PythonError&) {
    // set already
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const scrivo::WriteException& error) {
    setErrno(PyExc_OSError, error);
  } catch (const scrivo::sigintException& error) {
    set(PyExc_OSError, error.what());
  } catch (const Lumo::ErrnoException& error) {
    setErrno(classes.errnoError, error);
  } catch (const Lumo::RangeException& error) {
    set(classes.range, error.what());
  } catch (const Lumo::InternalException& error) {
    set(classes.internal, error.what());
  } catch (const Tembra::CorruptionDetectedException& error) {
    set(classes.corruption, error.what());
  } catch (const sources::SourceError& error) {
    set(classes.source, error.what());
  } catch (const std::exception& error) {
    set(classes.error, error.what());
  }
}

void raise(PyObject* exception, const std::string& message) {
  set(exception, message);
  throw PythonError();
}

PyObject* addErrors(PyObject* module) {
  return guarded([&] {
    addClass(module, "rova.Error", classes.error, nullptr,
             "The base of what the library raises beyond Python's own exceptions.");
    for (const ErrorRow& row : rows) {
      const Ref bases = owned(row.base ? PyTuple_Pack(2, classes.error, *row.base)
                                       : PyTuple_Pack(1, classes.error));
      addClass(module, row.name, classes.*row.slot, bases.get(), row.doc);
    }
    return Ref::borrow(module);
  });
}

} // namespace rova_python

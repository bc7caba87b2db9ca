// Displays as Python objects: what a display writes as a model, read back as dictionaries, lists
// and values.
#pragma once

#include "Ref.h"

#include "lumo/Type.h"

#include <string_view>

namespace rova_python {

/// What a display wrote in the format of models: a document, nothing (then an empty dictionary), or
/// the members of an object without its braces. Raises rova.Error for a text that is no model.
Ref modelOfText(std::string_view json);

/// Renders the object's display and gives its model. `args` and `kwargs`, each of which may be
/// null, are those of the displaying method, without descriptor and format. Raises TypeError for an
/// object that displays nothing, and what the display raises.
Ref modelOf(const Lumo::GenericPtr& object, PyObject* args, PyObject* kwargs);

/// The method that displays: the first with the arguments `fd` and `fmt`, or `dump` beside plain
/// attributes of those names; null when the type displays nothing.
const Lumo::AttributeRecord* displayMethod(const Lumo::TypeRecord& type);

/// Adds `_model_of_text`, for the package's own tests and benchmark. Null with a Python exception
/// when that fails.
PyObject* addModels(PyObject* module);

} // namespace rova_python

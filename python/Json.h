// JSON text to Python objects, as json.loads makes them.
#pragma once

#include "Ref.h"

#include <cstddef>

namespace rova_python {

/// How many bytes behind the text must be readable; they may hold anything.
extern const std::size_t jsonPadding;

/// The document at `text`: a dictionary or a list. Of equal keys the last one counts. Raises
/// rova.Error with the place for a text that is no JSON, RecursionError for one that nests too
/// deep.
Ref objectOfJson(const char* text, std::size_t length);

} // namespace rova_python

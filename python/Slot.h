// Functions in the tables that Python's types are made from.
#pragma once

namespace rova_python {

/// A function as the value of a slot.
template <class Function>
void* slot(Function function) {
  return reinterpret_cast<void*>(function);
}

} // namespace rova_python

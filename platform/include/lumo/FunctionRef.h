// A function to call back, for who is compiled once and not once a caller.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace Lumo {

template <class Signature>
class FunctionRef;

/// Anything that can be called with those arguments, as a parameter: it is valid for as long as
/// what it was made from, and costs no more than a call through a pointer.
template <class Result, class... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  /// Refers to whatever can be called so, for as long as that lives.
  template <class Callable>
  requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef>)
      FunctionRef(Callable&& callable)
      : callable_(std::addressof(callable)),
        call_([](const void* object, Arguments... arguments) -> Result {
          const auto& function = *static_cast<const std::remove_reference_t<Callable>*>(object);
          return function(std::forward<Arguments>(arguments)...);
        }) {}

  Result operator()(Arguments... arguments) const {
    return call_(callable_, std::forward<Arguments>(arguments)...);
  }

 private:
  const void* callable_;
  Result (*call_)(const void* object, Arguments... arguments);
};

} // namespace Lumo

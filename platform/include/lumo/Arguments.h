// Calling constructors and methods with arguments that are known by name only.
#pragma once

#include "lumo/TypeOf.h"

#include <string>

namespace Lumo {

/// Types without values.
template <class... Types>
struct TypeList {
  /// How many there are.
  static constexpr std::size_t size = sizeof...(Types);
};
template <class... A, class... B>
TypeList<A..., B...> operator+(TypeList<A...>, TypeList<B...>);

/// The arguments without the container that holds them, which must outlive the result.
LUMO_EXPORT ArgumentSpan spanOf(const GenericArguments& arguments);
/// Raises a range error unless there are as many arguments as the table has.
LUMO_EXPORT void needArguments(const ArgumentRecord* table, ArgumentSpan arguments);
/// Raises `exception` again with the argument's name in front.
[[noreturn]] LUMO_EXPORT void rethrowForArgument(const RangeException& exception,
                                                 const ArgumentRecord& argument);

/// An argument as a `T`; raises a range error that names it when it is of another type.
template <class T>
decltype(auto) unwrapArgument(const GenericPtr& value, const ArgumentRecord& argument) {
  try {
    return unwrap<T>(value);
  } catch (const RangeException& exception) {
    rethrowForArgument(exception, argument);
  }
}

/// Calls `function` with the arguments as the types of the list.
template <class... Types, class Function>
decltype(auto) applyArguments(TypeList<Types...>, const ArgumentRecord* table,
                              ArgumentSpan arguments, Function function) {
  needArguments(table, arguments);
  return [&]<std::size_t... at>(std::index_sequence<at...>)->decltype(auto) {
    return function(unwrapArgument<std::remove_cvref_t<Types>>(arguments[at], table[at])...);
  }
  (std::index_sequence_for<Types...>());
}

/// Builds a `T` from the arguments of its constructor.
template <class T, class Types>
T unwrapConstructorArgs(const TypeRecord& type, ArgumentSpan arguments, Types types) {
  return applyArguments(types, type.constructorArguments, arguments,
                        [](const auto&... values) { return T(values...); });
}

/// A method of any signature as a function of an object and arguments.
template <class Object, class Result, class... Args>
struct Callable {
  using Owner = Object;
  /// The records of the result and of the arguments in their order:
  static constexpr const TypeRecord& result = typeOf<Result>();
  static constexpr std::array<const TypeRecord*, sizeof...(Args)> types = {&typeOf<Args>()...};

  /// Raises range errors for arguments of another number or type.
  template <auto method>
  static GenericPtr unwrapFunctionArgs(Owner* object, const ArgumentRecord* table,
                                       ArgumentSpan arguments) {
    return applyArguments(
        TypeList<Args...>(), table, arguments, [object](const auto&... values) -> GenericPtr {
          if constexpr (std::is_void_v<Result>) {
            (object->*method)(values...);
            return {};
          } else {
            return wrapAttrValue<std::remove_cvref_t<Result>>((object->*method)(values...));
          }
        });
  }
};

template <class Method>
struct CallableOf;
/// The same for a pointer to member: the method may change its object, or (below) may not.
template <class Owner, class Result, class... Args>
struct CallableOf<Result (Owner::*)(Args...)> : Callable<Owner, Result, Args...> {
  /// Whether the method is const.
  static constexpr bool isConstant = false;
};
template <class Owner, class Result, class... Args>
struct CallableOf<Result (Owner::*)(Args...) const> : Callable<Owner, Result, Args...> {
  static constexpr bool isConstant = true;
};

} // namespace Lumo

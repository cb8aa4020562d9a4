#pragma once

#include <concepts>
#include <memory>
#include <type_traits>

namespace greycard {

template <class Signature>
class FunctionRef;

/// Refers to a callable that outlives it: two pointers, no allocation, one indirect call. For the
/// function argument of a search, which is called thousands of times and never stored. A plain
/// function is passed by its address.
template <class Result, class... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  template <class Callable>
  requires(!std::same_as<std::remove_cvref_t<Callable>, FunctionRef> &&
           std::is_invocable_r_v<Result, Callable&, Arguments...>)
      FunctionRef(Callable&& callable)  // implicit: a lambda is passed as it stands
      : object_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
        call_([](void* object, Arguments... arguments) -> Result {
          return (*static_cast<std::remove_reference_t<Callable>*>(object))(arguments...);
        }) {}

  Result operator()(Arguments... arguments) const { return call_(object_, arguments...); }

 private:
  void* object_;
  Result (*call_)(void*, Arguments...);
};

}  // namespace greycard

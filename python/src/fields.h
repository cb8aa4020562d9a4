#pragma once

// Structs of the library as Python classes with the same fields. What is compiled depends on the
// fields' types, not on the structs': there are hundreds of fields.

#include <pybind11/operators.h>
#include <pybind11/pybind11.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "arrays.h"
#include "calls.h"

namespace greycard::python {

/// Where a field lies in the structs of a bound type.
struct FieldPlace {
  const std::type_info* type;
  std::ptrdiff_t offset;

  template <typename T, typename M>
  static FieldPlace of(M T::*member) {
    alignas(T) static const char memory[sizeof(T)] = {};
    const T& any = *reinterpret_cast<const T*>(memory);
    return {&typeid(T), reinterpret_cast<const char*>(&(any.*member)) - memory};
  }
  /// \throws py::type_error when the object is not of the type
  void* in(py::handle self) const;
  template <typename M>
  M& as(py::handle self) const {
    return *static_cast<M*>(in(self));
  }
};

/// Makes a property of the class.
void addProperty(py::handle bound, const char* name, const py::cpp_function& get,
                 const py::cpp_function& set, const char* doc);

/// A table of numbers: a live view that keeps the object alive. Assigning copies the numbers.
template <Number T>
void tableField(py::handle bound, const char* name, FieldPlace place, const Shape& shape,
                const char* doc);
/// Values that Python gets as copies: what their memory is can change under a reference.
template <typename M>
void copiedField(py::handle bound, const char* name, FieldPlace place, const char* doc) {
  addProperty(
      bound, name,
      py::cpp_function([place](const py::object& self) -> M { return place.as<const M>(self); },
                       py::is_method(bound)),
      py::cpp_function(
          [place](const py::object& self, M value) { place.as<M>(self) = std::move(value); },
          py::is_method(bound)),
      doc);
}
template <Number T>
void vectorField(py::handle bound, const char* name, FieldPlace place, const char* doc);
void textField(py::handle bound, const char* name, FieldPlace place, const char* doc);
/// A path as a str, as os.fsdecode has it: pathlib has no empty one, which stands here for none.
void pathField(py::handle bound, const char* name, FieldPlace place, const char* doc);
/// A struct inside the struct: a live reference that keeps the object alive.
template <typename M>
void nestedField(py::handle bound, const char* name, FieldPlace place, const char* doc) {
  addProperty(bound, name,
              py::cpp_function([place](const py::object& self) -> M& { return place.as<M>(self); },
                               py::is_method(bound), py::return_value_policy::reference_internal),
              py::cpp_function(
                  [place](const py::object& self, const M& value) { place.as<M>(self) = value; },
                  py::is_method(bound)),
              doc);
}

extern template void tableField<double>(py::handle, const char*, FieldPlace, const Shape&,
                                        const char*);
extern template void tableField<float>(py::handle, const char*, FieldPlace, const Shape&,
                                       const char*);
extern template void tableField<bool>(py::handle, const char*, FieldPlace, const Shape&,
                                      const char*);
extern template void tableField<std::int32_t>(py::handle, const char*, FieldPlace, const Shape&,
                                              const char*);
extern template void tableField<std::uint64_t>(py::handle, const char*, FieldPlace, const Shape&,
                                               const char*);
extern template void vectorField<double>(py::handle, const char*, FieldPlace, const char*);
extern template void vectorField<float>(py::handle, const char*, FieldPlace, const char*);
extern template void vectorField<std::int32_t>(py::handle, const char*, FieldPlace, const char*);
extern template void vectorField<std::uint16_t>(py::handle, const char*, FieldPlace, const char*);
extern template void copiedField<double>(py::handle, const char*, FieldPlace, const char*);
extern template void copiedField<float>(py::handle, const char*, FieldPlace, const char*);
extern template void copiedField<bool>(py::handle, const char*, FieldPlace, const char*);
extern template void copiedField<std::int32_t>(py::handle, const char*, FieldPlace, const char*);
extern template void copiedField<std::optional<double>>(py::handle, const char*, FieldPlace,
                                                        const char*);
extern template void copiedField<std::vector<std::string>>(py::handle, const char*, FieldPlace,
                                                           const char*);

template <typename T>
struct IsNumberVector : std::false_type {};
template <Number T>
struct IsNumberVector<std::vector<T>> : std::true_type {};

template <typename T>
struct IsCopied : std::bool_constant<!std::is_class_v<T>> {};
template <>
struct IsCopied<ProgressArg> : std::true_type {};
template <typename T>
struct IsCopied<std::vector<T>> : std::true_type {};
template <typename T>
struct IsCopied<std::optional<T>> : std::true_type {};
template <typename T>
struct IsCopied<std::shared_ptr<T>> : std::true_type {};
template <typename T, std::size_t N>
struct IsCopied<std::array<T, N>> : std::true_type {};
template <typename A, typename B>
struct IsCopied<std::pair<A, B>> : std::true_type {};

/// One field: tables of numbers and nested structs live, everything else as copies, to be assigned
/// whole.
template <typename T, typename M>
void field(py::handle bound, const char* name, M T::*member, const char* doc) {
  const FieldPlace place = FieldPlace::of(member);
  if constexpr (NumberTable<M>) {
    tableField<typename TableTraits<M>::Element>(bound, name, place, TableTraits<M>::shape(), doc);
  } else if constexpr (IsNumberVector<M>::value) {
    vectorField<typename M::value_type>(bound, name, place, doc);
  } else if constexpr (std::is_same_v<M, std::string>) {
    textField(bound, name, place, doc);
  } else if constexpr (std::is_same_v<M, std::filesystem::path>) {
    pathField(bound, name, place, doc);
  } else if constexpr (IsCopied<M>::value) {
    copiedField<M>(bound, name, place, doc);
  } else {
    nestedField<M>(bound, name, place, doc);
  }
}

/// An enumeration of which only the named values can be made.
template <typename E>
class Enum : public py::enum_<E> {
 public:
  using Value = std::underlying_type_t<E>;

  Enum(py::handle scope, const char* name, const char* doc)
      : py::enum_<E>(scope, name, doc), values_(std::make_shared<std::vector<Value>>()) {
    this->def(py::init([values = values_, noun = std::string(name)](Value value) {
                for (const Value known : *values)
                  if (known == value) return static_cast<E>(value);
                throw py::value_error(noun + " has no value " + std::to_string(value));
              }),
              py::arg("value"), py::prepend());
  }

  Enum& value(const char* name, E value, const char* doc = nullptr) {
    py::enum_<E>::value(name, value, doc);
    values_->push_back(static_cast<Value>(value));
    return *this;
  }

 private:
  std::shared_ptr<std::vector<Value>> values_;
};

using FieldNames = std::shared_ptr<std::vector<std::string>>;

/// __repr__, and __reduce__ for pickle and copy, by the names of the fields.
void addShownAndPickled(py::handle bound, const FieldNames& names);
/// Sets attributes. \throws py::error_already_set (AttributeError) for a name that is none
void setFields(py::handle object, const py::kwargs& fields);

/// A struct that can be made with its fields as keywords, copied, compared, shown and pickled.
template <typename T>
class Struct : public py::class_<T> {
 public:
  Struct(py::handle scope, const char* name, const char* doc)
      : py::class_<T>(scope, name, doc), names_(std::make_shared<std::vector<std::string>>()) {
    this->def(py::init([](const py::kwargs& fields) {
                auto made = std::make_unique<T>();
                setFields(py::cast(made.get(), py::return_value_policy::reference), fields);
                return made;
              }),
              "With the fields given as keywords, the others at their defaults.");
    if constexpr (std::equality_comparable<T>) {
      this->def(py::self == py::self);
      this->attr("__hash__") = py::none();
    }
    addShownAndPickled(*this, names_);
  }

  template <typename Owner, typename M>
  Struct& field(const char* name, M Owner::*member, const char* doc) {
    python::field(*this, name, static_cast<M T::*>(member), doc);
    names_->emplace_back(name);
    return *this;
  }

 private:
  FieldNames names_;
};

}  // namespace greycard::python

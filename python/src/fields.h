#pragma once

// Structs of the library as Python classes with the same fields.

#include <pybind11/operators.h>
#include <pybind11/pybind11.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "arrays.h"
#include "errors.h"

namespace greycard::python {

template <typename T>
struct IsNumberVector : std::false_type {};
template <Number T>
struct IsNumberVector<std::vector<T>> : std::true_type {};

/// Values that Python gets as copies: what their memory is can change under a reference.
template <typename T>
struct IsCopied : std::bool_constant<!std::is_class_v<T>> {};
template <>
struct IsCopied<std::string> : std::true_type {};
template <>
struct IsCopied<std::filesystem::path> : std::true_type {};
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

/// One field. Tables of numbers are live views, nested structs live references, both of which keep
/// the object alive; strings and lists are copies, to be assigned whole.
template <typename Class, typename T, typename M>
void field(Class& bound, const char* name, M T::*member, const char* doc) {
  const std::string noun = name;
  if constexpr (NumberTable<M>) {
    using Element = typename TableTraits<M>::Element;
    bound.def_property(
        name,
        [member](const py::object& self) -> py::array_t<Element> {
          return viewOf(self.cast<T&>().*member, self);
        },
        [member, noun](T& self, const py::object& value) {
          self.*member = tableFrom<M>(value, noun);
        },
        doc);
  } else if constexpr (IsNumberVector<M>::value) {
    using Element = typename M::value_type;
    bound.def_property(
        name, [member](const T& self) { return self.*member; },
        [member, noun](T& self, const py::object& value) {
          self.*member = vectorFrom<Element>(value, noun);
        },
        doc);
  } else if constexpr (std::is_same_v<M, std::string>) {
    bound.def_property(
        name, [member](const T& self) { return textForPeople((self.*member).c_str()); },
        [member](T& self, std::string value) { self.*member = std::move(value); }, doc);
  } else if constexpr (IsCopied<M>::value) {
    bound.def_property(
        name, [member](const T& self) { return self.*member; },
        [member](T& self, M value) { self.*member = std::move(value); }, doc);
  } else {
    bound.def_property(
        name,
        py::cpp_function([member](T& self) -> M& { return self.*member; },
                         py::return_value_policy::reference_internal),
        py::cpp_function([member](T& self, const M& value) { self.*member = value; }), doc);
  }
}

/// A struct that can be made with its fields as keywords, copied, compared, shown and pickled.
template <typename T>
class Struct : public py::class_<T> {
 public:
  Struct(py::handle scope, const char* name, const char* doc)
      : py::class_<T>(scope, name, doc), names_(std::make_shared<std::vector<std::string>>()) {
    this->def(py::init([](const py::kwargs& fields) {
                auto made = std::make_unique<T>();
                const py::object view = py::cast(made.get(), py::return_value_policy::reference);
                for (const auto& [key, value] : fields) view.attr(key) = value;
                return made;
              }),
              "With the fields given as keywords, the others at their defaults.");
    this->def("__copy__", [](const T& self) { return T(self); });
    this->def(
        "__deepcopy__", [](const T& self, const py::dict&) { return T(self); }, py::arg("memo"));
    if constexpr (std::equality_comparable<T>) {
      this->def(py::self == py::self);
      this->attr("__hash__") = py::none();
    }
    this->def("__repr__", [names = names_](const py::object& self) {
      std::string text;
      for (const std::string& field : *names)
        text += (text.empty() ? "" : ", ") + field + "=" +
                py::repr(self.attr(field.c_str())).template cast<std::string>();
      return py::type::of(self).attr("__name__").template cast<std::string>() + "(" + text + ")";
    });
    this->def("__reduce__", [names = names_](const py::object& self) {
      py::dict fields;
      for (const std::string& field : *names) fields[field.c_str()] = self.attr(field.c_str());
      const py::object make = py::module_::import("functools").attr("partial");
      return py::make_tuple(make(py::type::of(self), **fields), py::tuple());
    });
  }

  template <typename Owner, typename M>
  Struct& field(const char* name, M Owner::*member, const char* doc) {
    python::field(*this, name, static_cast<M T::*>(member), doc);
    names_->emplace_back(name);
    return *this;
  }

 private:
  std::shared_ptr<std::vector<std::string>> names_;
};

}  // namespace greycard::python

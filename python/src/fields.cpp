#include "fields.h"

#include "errors.h"

namespace greycard::python {

void* FieldPlace::in(py::handle self) const {
  py::detail::type_caster_generic caster(*type);
  if (self.is_none() || !caster.load(self, false))
    throw py::type_error("a field was asked of " + described(self));
  return static_cast<char*>(caster.value) + offset;
}

void addProperty(py::handle bound, const char* name, const py::cpp_function& get,
                 const py::cpp_function& set, const char* doc) {
  const py::handle property(reinterpret_cast<PyObject*>(&PyProperty_Type));
  py::setattr(bound, name, property(get, set, py::none(), doc));
}

template <Number T>
void tableField(py::handle bound, const char* name, FieldPlace place, const Shape& shape,
                const char* doc) {
  const std::string noun = name;
  addProperty(bound, name,
              py::cpp_function(
                  [place, shape](const py::object& self) -> py::array_t<T> {
                    return py::array(py::dtype::of<T>(), shape, place.in(self), self);
                  },
                  py::is_method(bound)),
              py::cpp_function(
                  [place, shape, noun](const py::object& self, const py::object& value) {
                    void* const to = place.in(self);
                    const py::array from = readNumbers(value, noun, py::dtype::of<T>(), shape);
                    std::memmove(to, from.data(), static_cast<std::size_t>(from.nbytes()));
                  },
                  py::is_method(bound)),
              doc);
}

template <Number T>
void vectorField(py::handle bound, const char* name, FieldPlace place, const char* doc) {
  const std::string noun = name;
  addProperty(bound, name,
              py::cpp_function(
                  [place](const py::object& self) -> py::array_t<T> {
                    return arrayOf(std::span<const T>(place.as<const std::vector<T>>(self)));
                  },
                  py::is_method(bound)),
              py::cpp_function(
                  [place, noun](const py::object& self, const py::object& value) {
                    place.as<std::vector<T>>(self) = vectorFrom<T>(value, noun);
                  },
                  py::is_method(bound)),
              doc);
}

void textField(py::handle bound, const char* name, FieldPlace place, const char* doc) {
  addProperty(bound, name,
              py::cpp_function(
                  [place](const py::object& self) {
                    return textForPeople(place.as<const std::string>(self));
                  },
                  py::is_method(bound)),
              py::cpp_function(
                  [place](const py::object& self, std::string value) {
                    place.as<std::string>(self) = std::move(value);
                  },
                  py::is_method(bound)),
              doc);
}

void pathField(py::handle bound, const char* name, FieldPlace place, const char* doc) {
  using std::filesystem::path;
  addProperty(bound, name,
              py::cpp_function(
                  [place](const py::object& self) {
                    const std::string& text = place.as<const path>(self).native();
                    const auto size = static_cast<py::ssize_t>(text.size());
                    PyObject* const made = PyUnicode_DecodeFSDefaultAndSize(text.data(), size);
                    if (made == nullptr) throw py::error_already_set();
                    return py::reinterpret_steal<py::str>(made);
                  },
                  py::is_method(bound)),
              py::cpp_function([place](const py::object& self,
                                       const path& value) { place.as<path>(self) = value; },
                               py::is_method(bound)),
              doc);
}

template void tableField<double>(py::handle, const char*, FieldPlace, const Shape&, const char*);
template void tableField<float>(py::handle, const char*, FieldPlace, const Shape&, const char*);
template void tableField<bool>(py::handle, const char*, FieldPlace, const Shape&, const char*);
template void tableField<std::int32_t>(py::handle, const char*, FieldPlace, const Shape&,
                                       const char*);
template void tableField<std::uint64_t>(py::handle, const char*, FieldPlace, const Shape&,
                                        const char*);
template void vectorField<double>(py::handle, const char*, FieldPlace, const char*);
template void vectorField<float>(py::handle, const char*, FieldPlace, const char*);
template void vectorField<std::int32_t>(py::handle, const char*, FieldPlace, const char*);
template void vectorField<std::uint16_t>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<double>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<float>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<bool>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<std::int32_t>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<std::optional<double>>(py::handle, const char*, FieldPlace, const char*);
template void copiedField<std::vector<std::string>>(py::handle, const char*, FieldPlace,
                                                    const char*);

void addShownAndPickled(py::handle bound, const FieldNames& names) {
  py::setattr(bound, "__repr__",
              py::cpp_function(
                  [names](const py::object& self) {
                    std::string text;
                    for (const std::string& field : *names)
                      text += (text.empty() ? "" : ", ") + field + "=" +
                              py::repr(self.attr(field.c_str())).cast<std::string>();
                    return py::type::of(self).attr("__name__").cast<std::string>() + "(" + text +
                           ")";
                  },
                  py::name("__repr__"), py::is_method(bound)));
  py::setattr(bound, "__reduce__",
              py::cpp_function(
                  [names](const py::object& self) {
                    py::dict fields;
                    for (const std::string& field : *names)
                      fields[field.c_str()] = self.attr(field.c_str());
                    const py::object make = py::module_::import("functools").attr("partial");
                    return py::make_tuple(make(py::type::of(self), **fields), py::tuple());
                  },
                  py::name("__reduce__"), py::is_method(bound)));
}

void setFields(py::handle object, const py::kwargs& fields) {
  for (const auto& [name, value] : fields) py::setattr(object, name, value);
}

}  // namespace greycard::python

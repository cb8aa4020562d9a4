// What jobs refuse with, beside JobError itself.

#include "greycard/jobs/apply_lut2d.h"
#include "greycard/jobs/estimate_sigma.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/jobs/read_flat_field.h"
#include "jobs.h"

namespace greycard::python {
namespace {

// Never given back, as those of errors.cpp.
struct JobRefusals {
  py::handle noChart, doubtfulChart, colourFlatField, doubtfulFlatField, wrongSampleBits;
};
JobRefusals& jobRefusals() {
  static JobRefusals known;
  return known;
}

py::handle makeRefusal(py::module_& m, const char* name, const char* doc) {
  const std::string fullName = m.attr("__name__").cast<std::string>() + "." + name;
  const py::handle made =
      PyErr_NewExceptionWithDoc(fullName.c_str(), doc, m.attr("JobError").ptr(), nullptr);
  if (!made) throw py::error_already_set();
  m.add_object(name, made);
  return made;
}

void raiseRefusal(py::handle type, const std::exception& error) {
  PyErr_SetObject(type.ptr(), textForPeople(error.what()).ptr());
}

// With what the exception tells beside its text.
void raiseTelling(py::handle type, const std::exception& error, const char* name,
                  const py::object& value) {
  const py::object made = type(textForPeople(error.what()));
  made.attr(name) = value;
  PyErr_SetObject(type.ptr(), made.ptr());
}

void translateRefusal(std::exception_ptr thrown) {
  const JobRefusals& known = jobRefusals();
  try {
    std::rethrow_exception(thrown);
  } catch (const NoChart& error) {
    raiseTelling(known.noChart, error, "why", py::cast(error.why()));
  } catch (const DoubtfulChart& error) {
    raiseRefusal(known.doubtfulChart, error);
  } catch (const ColourFlatField& error) {
    raiseRefusal(known.colourFlatField, error);
  } catch (const DoubtfulFlatField& error) {
    raiseRefusal(known.doubtfulFlatField, error);
  } catch (const WrongSampleBits& error) {
    raiseTelling(known.wrongSampleBits, error, "fact", textForPeople(error.fact().c_str()));
  }
}

}  // namespace

void bindJobErrors(py::module_& m) {
  JobRefusals& known = jobRefusals();
  known.noChart = makeRefusal(m, "NoChart",
                              "There is no chart in the picture, as far as can be seen; `why` is a "
                              "ChartRefusal.");
  known.doubtfulChart = makeRefusal(m, "DoubtfulChart",
                                    "There is a chart, but in a place where it can't be; "
                                    "LocateOptions.force goes on all the same.");
  known.colourFlatField =
      makeRefusal(m, "ColourFlatField", "A colour picture where nobody says how it becomes luma.");
  known.doubtfulFlatField = makeRefusal(
      m, "DoubtfulFlatField", "A picture that is no flat field, or one that hides its noise.");
  known.wrongSampleBits =
      makeRefusal(m, "WrongSampleBits",
                  "The picture's samples can't be of the bits that the options say; `fact` is what "
                  "they are, without the advice.");
  py::register_exception_translator(translateRefusal);
}

}  // namespace greycard::python

// The module of Python: import qd.

#include "platform/Version.h"
#include "workbench/python/Script.h"

namespace qd::workbench::script {

namespace {

void SetLanguage(const std::string& language) {
  bool known = false;
  Place().Run([&] { known = Place().SetLanguage(language); });
  if (!known) throw py::value_error("there is no language " + language);
}

}  // namespace

void FillModule(py::module_& module) {
  module.doc() =
      "Works with models as the workbench does: reads, asks, changes, meshes, measures and writes them.";
  module.attr("__version__") = QD_WRT_VERSION;
  const auto& error = py::register_exception<Failure>(module, "Error");
  error.attr("__doc__") = "What went wrong, in the words of the workbench.";
  const auto& gone = py::register_exception<Gone>(module, "GoneError", error.ptr());
  gone.attr("__doc__") = "A record or a document that is not there any more was used.";
  const py::object note = py::reinterpret_steal<py::object>(PyErr_NewExceptionWithDoc(
      "qd.Note", "Something that is to be known of what went well.", PyExc_UserWarning, nullptr));
  module.attr("Note") = note;
  BindRecords(module);
  BindDocument(module);
  module.def("set_language", &SetLanguage, py::arg("language"),
             "The language of sentences and titles: 'en', 'de', 'ja', 'ko' or 'zh'.");
}

}  // namespace qd::workbench::script

// The module of Python: import qd.

#include <pybind11/stl.h>

#include "platform/Version.h"
#include "platform/text/Characters.h"
#include "workbench/python/Script.h"
#include "workbench/session/ScriptWords.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench::script {

namespace {

void SetLanguage(const std::string& language) {
  bool known = false;
  Place().Run([&] { known = Place().SetLanguage(language); });
  if (!known) throw py::value_error("there is no language " + language);
}

/// A title is what tells entries apart: that a script runs again adds nothing.
bool AddToMenus(const std::string& title, const py::object& function, const std::vector<std::string>& kinds) {
  constexpr std::size_t kLongest = 100;  // characters
  if (IsBlank(FromUtf8(title)) || FromUtf8(title).size() > kLongest) {
    throw py::value_error("a title has 1 to 100 characters");
  }
  if (PyCallable_Check(function.ptr()) == 0) throw py::type_error("a function is wanted");
  for (const std::string& kind : kinds) {
    bool known = false;
    for (const std::uint16_t type : {kDataGeom, kDataMset, kDataGset, kDataMaterial, kDataCord}) {
      known = known || kind == ScriptKindOf(type);
    }
    if (!known) throw py::value_error("there are no records of the kind " + kind);
  }
  return Place().AddEntry({title, kinds}, function);
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
  module.def(
      "menu", &AddToMenus, py::arg("title"), py::arg("function"), py::arg("kinds") = std::vector<std::string>(),
      "Adds an entry to the menus of rows in the window's trees, for records of some kinds, as Document.at calls "
      "them, or of any. The function is called with the selected records. Returns False without a window.");
  module.def("set_language", &SetLanguage, py::arg("language"),
             "The language of sentences and titles: 'en', 'de', 'ja', 'ko' or 'zh'.");
}

}  // namespace qd::workbench::script

// The module as a library that Python's own program loads: import qd.

#include "workbench/python/Script.h"  // first: Qt makes a macro of a name that Python's headers use

#include "workbench/app/MessageTables.h"

namespace {

using namespace qd::workbench;

/// A program that has no window. Never taken down: documents may go after the module, at the end of the program.
class Alone final : public script::IPlace {
 public:
  Windowless& Surroundings() override { return m_surroundings; }
  bool SetLanguage(const std::string& language) override {
    return m_texts.SetLanguage(QString::fromStdString(language));
  }
  IScriptWindow* Window() override { return nullptr; }
  script::DocumentPtr Current() override { return nullptr; }
  void Run(const std::function<void()>& work) override { work(); }
  void Later(std::function<void()> work) override { work(); }
  bool AddEntry(ScriptEntry, const script::py::object&) override { return false; }

 private:
  MessageTables m_texts;
  Windowless m_surroundings{script::FindExchangeProgram()};
};

}  // namespace

script::IPlace& script::Place() {
  static auto* place = new Alone;
  return *place;
}

PYBIND11_MODULE(qd, module) {
  script::Place();
  script::FillModule(module);
}

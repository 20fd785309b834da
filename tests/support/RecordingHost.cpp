#include "support/RecordingHost.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <list>
#include <sstream>
#include <utility>
#include <variant>

#include "host/CQDCommandObj.h"
#include "support/RecordingInterfaces.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

namespace {

template <typename Values, typename Write>
std::string List(const Values& values, const Write& write) {
  std::string text;
  for (const auto& value : values) text += (text.empty() ? "" : " ") + write(value);
  return "[" + text + "]";
}

std::string Braced(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : " ") + part;
  return "{" + text + "}";
}

}  // namespace

// ---- the log --------------------------------------------------------------------------------------------

HostLog::~HostLog() {
  for (const auto& [call, count] : m_brackets) EXPECT_EQ(count, 0) << call << ", begun less ended";
}

void HostLog::Write(const std::string& call, const std::vector<std::string>& arguments) {
  m_text += std::string(static_cast<std::size_t>(m_depth) * 2, ' ') + call;
  if (!arguments.empty()) {
    std::string list;
    for (const std::string& argument : arguments) list += (list.empty() ? "" : ", ") + argument;
    m_text += "(" + list + ")";
  }
  m_text += "\n";
}

bool HostLog::Act(const std::string& call, const std::vector<std::string>& arguments) {
  const auto refused = m_refused.find(call);
  m_wasRefused = refused != m_refused.end() && refused->second-- <= 0;
  Write(m_wasRefused ? "refused: " + call : call, arguments);
  return !m_wasRefused;
}

std::string HostLog::Take() {
  return std::exchange(m_text, {});
}

// ---- arguments ------------------------------------------------------------------------------------------

std::string HostLog::Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string HostLog::Word(const CString& text) {
  return workbench::ToUtf8(text);
}

std::string HostLog::Colour(COLORREF colour) {
  char text[16];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", colour & 0xFF, colour >> 8 & 0xFF, colour >> 16);
  return text;
}

std::string HostLog::Record(iterator itr) const {
  if (itr == 0) return "none";
  switch (workbench::TypeOf(itr)) {
    case kDataGeom:
      if (const tagTGeom* part = m_data.GetGeomPool().GetAtNU(itr)) return Word(part->name);
      break;
    case kDataMset:
      if (const tagTMset* mset = m_data.GetMsetPool().GetAtNU(itr)) {
        return mset->name.empty() ? "mesh of " + Record(mset->geom) : Word(mset->name);
      }
      break;
    case kDataGset:
      if (const tagTGset* gset = m_data.GetGsetPool().GetAtNU(itr)) return Word(gset->name);
      break;
    case kDataMaterial:
      if (const tagTMaterial* material = m_data.GetMaterialPool().GetAtNU(itr)) return Word(material->name);
      break;
    case kDataCord:
      if (const tagTCord* cord = m_data.GetCordPool().GetAtNU(itr)) return Word(cord->GetName());
      break;
    case kDataGKey:
      return "key of " + Record(workbench::GKeyPool::GeomOfKey(itr));
    case kDataMGInfo:
      return "generation " + std::to_string(workbench::NumberOf(itr));
    default:
      return std::to_string(itr);
  }
  return "gone";
}

std::string HostLog::Records(const std::vector<iterator>& itrs) const {
  return List(itrs, [this](iterator itr) { return Record(itr); });
}

std::string HostLog::Part(int cadItem) const {
  return Record(m_data.GetGeomPool().ItrOfNumber(cadItem));
}

std::string HostLog::Parts(const std::vector<int>& cadItems) const {
  return List(cadItems, [this](int cadItem) { return Part(cadItem); });
}

std::string HostLog::Mset(std::uint32_t key) const {
  const iterator itr = m_data.GetMsetPool().GetItrByKey(key & kMsetKeyMask);
  return key == (key & kMsetKeyMask) ? Record(itr) : "key with flags of " + Record(itr);
}

std::string HostLog::Msets(const std::vector<std::uint32_t>& keys) const {
  return List(keys, [this](std::uint32_t key) { return Mset(key); });
}

std::string HostLog::Change(const tagTGeom& record, const tagTGeom* old) {
  const tagTGeom was = old != nullptr ? *old : tagTGeom();
  std::vector<std::string> parts;
  if (record.name != was.name) parts.push_back("name=" + Word(record.name));
  if (record.colour != was.colour) parts.push_back("colour=" + Colour(record.colour));
  if (record.material != was.material) parts.emplace_back("material");
  if (record.gset != was.gset) parts.emplace_back("gset");
  if (record.kind != was.kind || record.flexible != was.flexible || record.shape != was.shape ||
      record.origin != was.origin || record.id != was.id || record.cadItem != was.cadItem) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

std::string HostLog::Change(const tagTMset& record, const tagTMset* old) const {
  const tagTMset was = old != nullptr ? *old : tagTMset();
  std::vector<std::string> parts;
  if (record.name != was.name) parts.push_back("name=" + Word(record.name));
  if (record.colour != was.colour) parts.push_back("colour=" + Colour(record.colour));
  if (record.key != was.key) parts.push_back("key=" + std::to_string(record.key));
  if (record.parent != was.parent) {
    parts.push_back("parent=" + (record.parent != 0 ? Mset(record.parent) : std::string("none")));
  }
  if (record.geom != was.geom || record.property != was.property || record.mgInfo != was.mgInfo ||
      record.mesh != was.mesh || record.id != was.id || record.nodeCount != was.nodeCount ||
      record.elementCount != was.elementCount) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

std::string HostLog::Change(const tagTCord& record, const tagTCord* old) const {
  const tagTCord was = old != nullptr ? *old : tagTCord();
  std::vector<std::string> parts;
  if (record.GetName() != was.GetName()) parts.push_back("name=" + Word(record.GetName()));
  if (record.kind != was.kind || record.parent != was.parent || record.origin != was.origin ||
      record.xAxis != was.xAxis || record.xyPlane != was.xyPlane || record.id != was.id) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

// ---- the document ---------------------------------------------------------------------------------------

struct RecordingDocument::Interfaces {
  Interfaces(HostLog& log, workbench::Database& data, workbench::Display& real)
      : session(log, data), view(log, real.Parts()), display(log, real, data.GetCordPool()) {}
  RecordingSession session;
  RecordingView view;
  RecordingDisplay display;
};

class RecordingDocument::Dialog final : public IQDCurrentDialog {
 public:
  explicit Dialog(HostLog& log) : m_log(log) {}
  void Update(int reserved) override { m_log.Act("dialog.Update", {HostLog::Number(reserved)}); }

 private:
  HostLog& m_log;
};

RecordingDocument::RecordingDocument()
    : m_interfaces(std::make_unique<Interfaces>(m_log, GetDatabase(), GetDisplay())),
      m_dialog(std::make_unique<Dialog>(m_log)) {}

RecordingDocument::~RecordingDocument() = default;

void RecordingDocument::SetPostMode(bool on) {
  m_interfaces->view.SetPostMode(on);
}

void RecordingDocument::SetDialogOpen(bool open) {
  SetCurrentDialog(open ? m_dialog.get() : nullptr);
}

CQDViewBase* RecordingDocument::GetActiveView() {
  m_interfaces->view.SetReal(WorkDocument::GetActiveView());
  return m_viewOpen ? &m_interfaces->view : nullptr;
}
CQDDBSession* RecordingDocument::GetDBSession() {
  return &m_interfaces->session;
}
CCADSession* RecordingDocument::GetCADSession() {
  return &m_interfaces->display.parts;
}
CQDMeshManager* RecordingDocument::GetMeshManager() {
  return &m_interfaces->display.meshes;
}
CQDLabelManager* RecordingDocument::GetLabelManager() {
  return &m_interfaces->display.labels;
}
CQDModelRange* RecordingDocument::GetModelRange() {
  return &m_interfaces->display.range;
}
CQDPostManager* RecordingDocument::GetPostManager() {
  return &m_interfaces->display.post;
}
CMPUData* RecordingDocument::GetMPUData() {
  return &m_interfaces->display.looks;
}
ISectionAPI* RecordingDocument::GetSectionAPI() {
  return &m_interfaces->display.sections;
}

void RecordingDocument::Import() {
  m_log.Act("doc.Import");
  WorkDocument::Import();
}

int RecordingDocument::RunCommand(const CQDCommandObj& command) {
  std::vector<std::string> arguments{HostLog::Word(command.GetName())};
  for (const auto& [name, value] : command.GetParameters()) {
    std::string text;
    if (const int* number = std::get_if<int>(&value)) text = std::to_string(*number);
    if (const auto* word = std::get_if<CString>(&value)) text = HostLog::Word(*word);
    if (const auto* itr = std::get_if<iterator>(&value)) text = m_log.Record(*itr);
    if (const auto* itrs = std::get_if<std::vector<iterator>>(&value)) text = m_log.Records(*itrs);
    if (const auto* sets = std::get_if<std::vector<tagTGset>>(&value)) {
      text = List(*sets, [](const tagTGset& set) { return HostLog::Word(set.name); });
    }
    arguments.push_back(HostLog::Word(name) + "=" + text);
  }
  if (!m_log.Act("doc.RunCommand", arguments)) return 0;
  const HostLog::Inside inside(m_log);
  return WorkDocument::RunCommand(command);
}

int RecordingDocument::DeleteData(int operation, const std::vector<iterator>& itrs) {
  if (!m_log.Act("doc.DeleteData", {HostLog::Number(operation), m_log.Records(itrs)})) return 0;
  const HostLog::Inside inside(m_log);
  return WorkDocument::DeleteData(operation, itrs);
}

void RecordingDocument::SetModelInfoChangedFlag(int changed) {
  m_log.Act("doc.SetModelInfoChangedFlag", {HostLog::Number(changed)});
}

void RecordingDocument::SetPendingUpdate(int pending) {
  m_log.Act("doc.SetPendingUpdate", {HostLog::Number(pending)});
  WorkDocument::SetPendingUpdate(pending);
}

void RecordingDocument::ReMakeAllLabel(int notify) {
  m_log.Act("doc.ReMakeAllLabel", {HostLog::Number(notify)});
  WorkDocument::ReMakeAllLabel(notify);
}

void RecordingDocument::ClearSelectBuffer(int notify) {
  m_log.Act("doc.ClearSelectBuffer", {HostLog::Number(notify)});
  const HostLog::Inside inside(m_log);
  WorkDocument::ClearSelectBuffer(notify);
}

void RecordingDocument::AddToSelBuffer(iterator itr) {
  m_log.Act("doc.AddToSelBuffer", {m_log.Record(itr)});
  WorkDocument::AddToSelBuffer(itr);
}

int RecordingDocument::IsSelecting() const {
  return m_selecting ? 1 : WorkDocument::IsSelecting();
}

void RecordingDocument::AddCheckedMset(iterator itr) {
  m_log.Act("doc.AddCheckedMset", {m_log.Record(itr)});
  WorkDocument::AddCheckedMset(itr);
}

void RecordingDocument::AddCheckedPair(iterator itr) {
  m_log.Act("doc.AddCheckedPair", {m_log.Record(itr)});
  WorkDocument::AddCheckedPair(itr);
}

void RecordingDocument::AddCheckedLoad(iterator itr) {
  m_log.Act("doc.AddCheckedLoad", {m_log.Record(itr)});
  WorkDocument::AddCheckedLoad(itr);
}

void RecordingDocument::AddCheckedBoundary(iterator itr) {
  m_log.Act("doc.AddCheckedBoundary", {m_log.Record(itr)});
  WorkDocument::AddCheckedBoundary(itr);
}

// ---- around the document --------------------------------------------------------------------------------

/// A page is known by its title and its first row.
void RecordingProperties::SetPropertySet(std::unique_ptr<IPropertySet> page) {
  if (page != nullptr) page->ShowProperty();
  m_page = std::move(page);
  std::string text = m_page == nullptr ? "none" : "empty page";
  if (m_page != nullptr && m_page->GetRows().size() > 1) {
    const CBCGPProp& first = *m_page->GetRows()[1];
    text = HostLog::Word(m_page->GetRows()[0]->name) + ": " + HostLog::Word(first.name);
    if (!first.value.empty()) text += " " + HostLog::Word(first.value);
  }
  m_log.Act("pages.SetPropertySet", {text});
}

void RecordingProperties::Refresh() {
  m_log.Act("pages.Refresh");
}

RecordingApp::RecordingApp(HostLog& log) : m_log(log) {
  IQueryMenuID2Idx::Instance().SetLastCommand(0);
}

void RecordingApp::OpenDialog(int flag, CQDDocBase*, const CString& dialogClass, void* data) {
  const auto& itrs = *static_cast<std::list<iterator>*>(data);
  m_log.Act("app.OpenDialog",
            {HostLog::Number(flag), HostLog::Word(dialogClass), m_log.Records({itrs.begin(), itrs.end()})});
}

void RecordingApp::CloseDialog(CQDDocBase*, const CString& dialogClass) {
  m_log.Act("app.CloseDialog", {HostLog::Word(dialogClass)});
}

void RecordingApp::OpenMeshDialog(int flag, CQDDocBase*, const CString& dialogClass, void* data) {
  const auto& itrs = *static_cast<std::list<iterator>*>(data);
  m_log.Act("app.OpenMeshDialog",
            {HostLog::Number(flag), HostLog::Word(dialogClass), m_log.Records({itrs.begin(), itrs.end()})});
}

void RecordingApp::CloseMeshDialog(CQDDocBase*, const CString& dialogClass) {
  m_log.Act("app.CloseMeshDialog", {HostLog::Word(dialogClass)});
}

void RecordingApp::SetSelectAssignedContact(CQDDocBase*, std::list<iterator>& parts) {
  m_log.Act("app.SetSelectAssignedContact", {m_log.Records({parts.begin(), parts.end()})});
}

void RecordingApp::Warn(const CString& text) {
  m_log.Act("warning", {HostLog::Word(text)});
}

int RecordingApp::Run(const CString& title, const std::function<int(const ProgressCall&)>& work) {
  m_log.Act("long work", {HostLog::Word(title)});
  return work([this](double) { return !m_stop; });
}

/// What the pointers are depends on the dialog.
void RecordingApp::Open(CQDDocBase*, const CString& dialogClass, const void* first, const void* second) {
  const std::string name = HostLog::Word(dialogClass);
  std::vector<std::string> arguments{name};
  const auto itr = [](const void* pointer) { return *static_cast<const iterator*>(pointer); };
  if (name.find("IncludeExclude") != std::string::npos || name == "CQDCmdColorDlg") {
    arguments.push_back(m_log.Record(itr(first)));
  } else if (name == "CQDCmdCordDlg" && first != nullptr) {
    const auto* system = static_cast<const tagTCordGUI*>(first);
    arguments.push_back("mode " + std::to_string(system->mode));
    arguments.push_back(m_log.Record(system->itr));
  } else if (name.starts_with("CQDMesh") && first != nullptr) {
    const auto* mesh = static_cast<const tagTMeshGUI*>(first);
    arguments.push_back(m_log.Records(mesh->targets) + (mesh->remesh ? " again" : ""));
    if (second != nullptr) arguments.push_back(m_log.Record(itr(second)));
  } else if (first != nullptr) {
    const auto* operands = static_cast<const tagTGeomGUI*>(first);
    arguments.push_back("type " + std::to_string(operands->type));
    arguments.push_back(m_log.Records(operands->keys));
  }
  if (name.starts_with("CQDMesh") || name == "CQDGeomTransformDlg") {
    arguments.push_back("command " + std::to_string(IQueryMenuID2Idx::Instance().GetLastCommand()));
  }
  m_log.Act("DoModeless", arguments);
}

}  // namespace qd::test

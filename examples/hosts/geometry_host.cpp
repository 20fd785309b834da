// A program with a model of parts and the tree's own branch for them: titles, boxes, menus, renaming and deleting.
// Its own is what it has: the parts, and how they are written. All else that a document may be asked for is there
// with nothing in it (host/NullDatabase.h, host/NullDisplay.h).
#include <host/NullDisplay.h>
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/core/CQDTreeListCtrl.h>
#include <qd_wrt/core/Factories.h>
#include <qd_wrt/geometry/CQDTreeItemGeom.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

#include <algorithm>
#include <map>
#include <utility>

using Parts = std::map<qd::iterator, qd::tagTGeom>;

class PartPool : public qd::CQDNullGeomPool {
 public:
  Parts parts;
  qd::CQDUpdateRecord changes;  // of the open transaction
  std::vector<qd::iterator> GetItrList() const override {
    std::vector<qd::iterator> itrs;
    for (const auto& [itr, part] : parts) itrs.push_back(itr);
    return itrs;
  }
  const qd::tagTGeom* GetAtNU(qd::iterator itr) const override {
    const auto found = parts.find(itr);
    return found != parts.end() ? &found->second : nullptr;
  }
  int Private_Modify(qd::iterator itr, const qd::tagTGeom& record, int, int) override {
    parts[itr] = record;
    changes.changes.push_back({qd::kDataGeom, qd::kChangeModified, itr});
    return 1;
  }
};

class Session : public qd::CQDNullDBSession {
 public:
  PartPool pool;
  qd::CWorksTreeBar* bar = nullptr;
  qd::CQDDocBase* doc = nullptr;
  qd::DPoolGeom& GetGeomPool() override { return pool; }
  int BeginTransaction(const qd::CString&) override { return m_before = pool.parts, 1; }
  int CommitTransaction(int) override {
    const qd::CQDUpdateRecord record = std::exchange(pool.changes, {});
    bar->UpdateDB(doc, qd::HintOf(record));
    return 1;
  }
  void RollbackTransaction() override { pool.parts = m_before, pool.changes = {}; }

 private:
  Parts m_before;
};

class Document : public qd::CQDNullModelDocument {
 public:
  Document() : CQDNullModelDocument(L"pump") { session.doc = this; }
  Session session;
  qd::CQDDBSession* GetDBSession() override { return &session; }
  int DeleteData(int, const std::vector<qd::iterator>& itrs) override {
    for (const qd::iterator itr : itrs) {
      session.pool.parts.erase(itr);
      session.pool.changes.changes.push_back({qd::kDataGeom, qd::kChangeDeleted, itr});
    }
    return session.CommitTransaction(1);
  }
};

class Root : public qd::CQDTreeItem {
 public:
  explicit Root(qd::CQDTreeListCtrl* control) : CQDTreeItem(control, nullptr, L"pump", 0, 0) {}
  int MakeChildItems() override {
    auto* parts = new qd::CQDTreeItemGeom(GetControl(), this);  // owned by this node
    parts->MakeItem(qd::kInsertLast);
    parts->Expand(1);
    return 1;
  }
};

class Factory : public qd::IQDTreeGroupFactory {
 public:
  ~Factory() override = default;
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override { return new Root(control); }
};

int main() {
  qd::HeadlessToolkit toolkit;  // a program with a window makes its own, or QtToolkit
  Document doc;
  qd::tagTGeom part;
  part.id = part.cadItem = 1;
  part.name = L"Housing";
  doc.session.pool.parts[1] = part;
  part.id = part.cadItem = 2;
  part.name = L"Screw";
  doc.session.pool.parts[2] = part;
  Factory factory;
  qd::CWorksTreeBar bar;
  doc.session.bar = &bar;
  bar.SetDocument(&doc);
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  bar.CreateTreeItems(1, &factory, 1);
  toolkit.Pump();

  // What the user sees and does reaches the model, and what the model says is seen.
  qd::CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  qd::CQDTreeItem* screw = tree.FindGeomNode(2);
  bool right = screw != nullptr && screw->GetTitle() == L"Screw";
  if (right) screw->OnEditChange(L"Bolt");
  right = right && doc.session.pool.parts[2].name == L"Bolt" && screw->GetTitle() == L"Bolt";
  if (right) screw->OnClickCheck(screw->GetCheckStatus());
  right = right && doc.GetCADSession()->GetRenderObjects().GetShowHide(2) == 0;
  doc.DeleteData(qd::kDeleteModelData, {1});
  right = right && tree.FindGeomNode(1) == nullptr;
  bar.DestroyTreeItems();
  bar.DestroyWindow();
  return right ? 0 : 1;
}

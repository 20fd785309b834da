#pragma once

#include "support/Mesh.h"

namespace qd::test {

/// A document with two geometry sets, three parts and two mesh sets, one in the other, all rows open.
class SessionTest : public MeshTest {
 protected:
  SessionTest() {
    m_first = AddSet(L"first");
    m_second = AddSet(L"second");
    m_a = AddPartTo(m_first, L"a");
    m_b = AddPartTo(m_first, L"b");
    m_c = AddPartTo(m_second, L"c");
    m_outer = AddMset(L"outer", 0, 2, m_a);
    m_inner = AddMset(L"inner", m_outer);
    Open();
    // What is selected in a closed branch is asked for only once it is open.
    for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
      bar->GetTreeCtrl().GetQDRootItem()->ForEachBelow([](CQDTreeItem* node) { node->Expand(1); });
    }
  }
  bool IsPartShown(iterator part) {
    return m_doc.GetDisplay().Parts().GetShowHide(Data().GetGeomPool().GetAtNU(part)->cadItem) != 0;
  }
  /// The parts and mesh sets that are shown.
  std::string Shown() {
    std::string shown;
    for (const auto& [name, part] : {std::pair("a", m_a), std::pair("b", m_b), std::pair("c", m_c)}) {
      if (IsPartShown(part)) shown += name;
    }
    if (IsShown(m_outer)) shown += " outer";
    if (IsShown(m_inner)) shown += " inner";
    return shown;
  }
  std::vector<iterator> SelectedIn(CWorksTreeBar& bar) {
    std::vector<iterator> records;
    for (const HTREEITEM row : bar.GetTreeCtrl().GetSelectedItems()) {
      records.push_back(bar.GetTreeCtrl().NodeOf(row)->GetIterator());
    }
    return records;
  }
  void Run(void (workbench::Session::*act)()) {
    (m_session.get()->*act)();
    Settle();
  }

  iterator m_first = 0, m_second = 0, m_a = 0, m_b = 0, m_c = 0, m_outer = 0, m_inner = 0;
};

}  // namespace qd::test

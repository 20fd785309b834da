#include "benchmarks/scaling/ModelWorld.h"

#include <algorithm>

namespace qd::scaling {

ModelWorld::ModelWorld(const Fill& fill, const std::vector<long>& trees, bool selected, Extent extent)
    : m_model(fill, trees), m_selected(selected), m_extent(extent) {}

void ModelWorld::Begin() {
  m_all = Records();
  m_some = Some(m_all);
  Branch().Expand(1);
  Branch().ForEachBelow([](CQDTreeItem* node) { node->Expand(1); });
  m_model.Settle();
  if (m_selected) Tree().SelectAll(1);
}

std::vector<Case> ModelWorld::Cases() {
  std::vector<Case> cases;
  AddChanges(cases);
  if (m_extent == Extent::Everything) {
    AddChangesOfAll(cases);
    AddSelection(cases);
    AddNodes(cases);
  }
  AddOwnCases(cases);
  return cases;
}

bool ModelWorld::RowsStand() {
  return std::all_of(m_some.begin(), m_some.end(), [this](iterator itr) {
    const CQDTreeItem* node = NodeOf(itr);
    return node != nullptr && Tree().IsLive(node->GetTreeItemHandle());
  });
}

Case ModelWorld::Act(const char* name, Growth growth, const std::function<void()>& act,
                     const std::function<bool()>& check) {
  return {name, growth, [this, act, check](Meter& meter) {
            meter([&] {
              act();
              m_model.Settle();
            });
            return check();
          }};
}

Case ModelWorld::Command(const char* name, Growth growth, CQDTreeItem& node, unsigned command,
                         const std::function<bool()>& check) {
  return Act(
      name, growth, [&node, command] { node.OnMenuEvent(command); }, check);
}

Case ModelWorld::Change(std::string name, Growth growth, const std::function<void()>& act,
                        const std::function<void()>& prepare) {
  return {std::move(name), growth, [this, act, prepare](Meter& meter) {
            prepare();
            m_model.Settle();
            const Look before = LookNow();
            meter([&] {
              act();
              m_model.Settle();
            });
            return LookNow() != before;
          }};
}

Case ModelWorld::ThereAndBack(const char* name, const std::function<void()>& there,
                              const std::function<bool()>& isThere, const std::function<void()>& back) {
  return {name, Growth::NLogN, [this, there, isThere, back](Meter& meter) {
            bool was = false;
            meter([&] {
              there();
              m_model.Settle();
              was = isThere();
              back();
              m_model.Settle();
            });
            return was && !isThere();
          }};
}

ModelWorld::Look ModelWorld::LookNow() {
  Look look{test::DigestOf(m_model.Doc()), {}};
  const CQDTreeItem* middle = NodeOf(Middle());
  for (const CQDTreeItem* parent :
       {static_cast<const CQDTreeItem*>(&Branch()),
        static_cast<const CQDTreeItem*>(middle != nullptr ? middle->GetParent() : nullptr)}) {
    if (parent == nullptr) continue;
    HTREEITEM row = Tree().GetChildItem(parent->GetTreeItemHandle());
    for (std::size_t i = 0; row && i < kSome; ++i, row = Tree().GetNextSiblingItem(row))
      look.rows.emplace_back(row, Tree().WhichCheck(row));
  }
  return look;
}

void ModelWorld::SelectRows(const std::vector<iterator>& itrs) {
  Tree().ResetSelection(1);
  for (const iterator itr : itrs)
    Tree().SetItemState(NodeOf(itr)->GetTreeItemHandle(), kRowSelected, kRowSelected);
}

// ---- one record -----------------------------------------------------------------------------------------

void ModelWorld::AddChanges(std::vector<Case>& cases) {
  const auto rename = [this](iterator itr) { m_model.Act([&] { Rename(itr, L"other"); }); };
  const auto isOther = [this] { return NodeOf(Middle())->GetTitle().find(L"other") != CString::npos; };
  cases.push_back(Act(
      "change_one", Growth::Constant, [this, rename] { rename(Middle()); }, isOther));
  cases.push_back({"undo_and_redo_of_change", Growth::Constant, [=, this](Meter& meter) {
                     rename(Middle());
                     m_model.Settle();
                     bool undone = false;
                     meter([&] {
                       Data().Undo();
                       m_model.Settle();
                       undone = !isOther();
                       Data().Redo();
                       m_model.Settle();
                     });
                     return undone && isOther();
                   }});
  cases.push_back(Act(
      "add_one", Growth::Constant, [this] { m_model.Act([this] { AddRecord(); }); },
      [this] { return Records().size() == m_all.size() + 1; }));
  cases.push_back(Act(
      "roll_back_one", Growth::Constant,
      [this] {
        CTransaction transaction(&Data());
        transaction.Begin(L"act");
        Rename(Middle(), L"other");
      },
      [=] { return !isOther(); }));
  cases.push_back({"delete_last_and_undo", Growth::Constant, [this](Meter& meter) {
                     bool gone = false;
                     meter([&] {
                       Delete({m_all.back()});
                       m_model.Settle();
                       gone = NodeOf(m_all.back()) == nullptr;
                       Data().Undo();
                       m_model.Settle();
                     });
                     return gone && RowsStand() && NodeOf(m_all.back()) != nullptr;
                   }});
  cases.push_back(Act(
      "changes_in_turn", Growth::NLogN,
      [=, this] {
        for (std::size_t i = 0; i < m_all.size(); i += 10) rename(m_all[i]);
      },
      [this] { return NodeOf(m_all[10])->GetTitle().find(L"other") != CString::npos; }));
}

// ---- all records ----------------------------------------------------------------------------------------

void ModelWorld::AddChangesOfAll(std::vector<Case>& cases) {
  const auto renameAll = [this] {
    m_model.Act([this] {
      for (const iterator itr : m_all) Rename(itr, L"other " + std::to_wstring(itr & 0xFFFFFF));
    });
  };
  cases.push_back(Act("change_all", Growth::NLogN, renameAll, [this] {
    return RowsStand() && NodeOf(Middle())->GetTitle().find(L"other") != CString::npos;
  }));
  cases.push_back({"undo_and_redo_of_change_of_all", Growth::NLogN, [=, this](Meter& meter) {
                     renameAll();
                     m_model.Settle();
                     meter([&] {
                       Data().Undo();
                       m_model.Settle();
                       Data().Redo();
                       m_model.Settle();
                     });
                     return RowsStand();
                   }});
  cases.push_back({"roll_back_all", Growth::NLogN, [this](Meter& meter) {
                     meter([&] {
                       CTransaction transaction(&Data());
                       transaction.Begin(L"act");
                       for (const iterator itr : m_all) Rename(itr, L"other " + std::to_wstring(itr & 0xFFFFFF));
                     });
                     return RowsStand() && NodeOf(Middle())->GetTitle().find(L"other") == CString::npos;
                   }});
  cases.push_back(Act(
      "add_as_many", Growth::NLogN,
      [this] {
        m_model.Act([this] {
          for (std::size_t i = 0; i < m_all.size(); ++i) AddRecord();
        });
      },
      [this] { return Records().size() == 2 * m_all.size(); }));
  cases.push_back(Act(
      "delete_all", Growth::NLogN, [this] { Delete(m_all); }, [this] { return Records().empty(); }));
  cases.push_back({"undo_and_redo_of_delete_all", Growth::NLogN, [this](Meter& meter) {
                     Delete(m_all);
                     m_model.Settle();
                     bool back = false;
                     meter([&] {
                       Data().Undo();
                       m_model.Settle();
                       back = RowsStand();
                       Data().Redo();
                       m_model.Settle();
                     });
                     return back && Records().empty();
                   }});
  cases.push_back({"delete_in_turn", Growth::NLogN, [this](Meter& meter) {
                     // From the back, so that what stands on a record goes before it.
                     meter([&] {
                       for (std::size_t i = 0; i < m_all.size() / 10; ++i) Delete({m_all[m_all.size() - 1 - i]});
                       m_model.Settle();
                     });
                     return Records().size() == m_all.size() - m_all.size() / 10;
                   }});
  cases.push_back({"delete_every_second", Growth::NLogN, [this](Meter& meter) {
                     std::vector<iterator> half;
                     for (std::size_t i = 0; i < m_all.size(); i += 2) half.push_back(m_all[i]);
                     meter([&] {
                       Delete(half);
                       m_model.Settle();
                     });
                     return Records().size() == m_all.size() - half.size();
                   }});
}

// ---- selection by the host ------------------------------------------------------------------------------

void ModelWorld::AddPicking(std::vector<Case>& cases) {
  cases.push_back(Act(
      "select_one_by_record", Growth::Linear, [this] { Tree().SetSelection(0, {Middle()}); },
      [this] { return Tree().GetSelectedCount() == 1; }));
  cases.push_back({"select_another_by_record", Growth::Constant, [this](Meter& meter) {
                     Tree().SetSelection(0, {m_all.front()});
                     m_model.Settle();
                     meter([&] {
                       Tree().SetSelection(0, {Middle()});
                       m_model.Settle();
                     });
                     return Tree().GetSelectedCount() == 1;
                   }});
  cases.push_back(Act(
      "select_all_by_record", Growth::NLogN, [this] { Tree().SetSelection(0, m_all); },
      [this] { return Tree().GetSelectedCount() == static_cast<int>(m_all.size()); }));
  cases.push_back(Act(
      "pick_one_in_the_view", Growth::Linear,
      [this] { m_model.Trees().Pick({Middle()}, workbench::PickMode::Replace); },
      [this] { return Tree().GetSelectedCount() == 1; }));
  cases.push_back({"pick_one_more_with_ten_picked", Growth::Constant, [this](Meter& meter) {
                     for (std::size_t i = 0; i < 10; ++i)
                       m_model.Trees().Pick({m_some[3 + 6 * i]},
                                            i != 0 ? workbench::PickMode::Toggle : workbench::PickMode::Replace);
                     m_model.Settle();
                     meter([&] {
                       m_model.Trees().Pick({m_some[1]}, workbench::PickMode::Toggle);
                       m_model.Settle();
                     });
                     return Tree().GetSelectedCount() == 11;
                   }});
}

// ---- selection, boxes, requests ---------------------------------------------------------------------------

void ModelWorld::AddSelection(std::vector<Case>& cases) {
  if (IsPicked()) AddPicking(cases);
  cases.push_back({"tell_of_the_selection", Growth::NLogN, [this](Meter& meter) {
                     Tree().SelectAll(1);
                     std::vector<CQDTreeItem*> nodes;
                     meter([&] {
                       Tree().OnSelchangAction();
                       Tree().GetSelectedTreeItems(nodes, 0);
                       m_model.Settle();
                     });
                     return nodes.size() >= m_all.size();
                   }});
  cases.push_back({"menu_of_all", Growth::NLogN, [this](Meter& meter) {
                     SelectRows(m_all);
                     const std::size_t before = m_model.GetScreen().MenusShown();
                     meter([&] {
                       Tree().ShowContextMenu({5, 5});
                       m_model.Settle();
                     });
                     return m_model.GetScreen().MenusShown() == before + 1;
                   }});
  cases.push_back({"menu_of_one", Growth::Constant, [this](Meter& meter) {
                     SelectRows({Middle()});
                     const std::size_t before = m_model.GetScreen().MenusShown();
                     meter([&] {
                       Tree().ShowContextMenu({5, 5});
                       m_model.Settle();
                     });
                     return m_model.GetScreen().MenusShown() == before + 1;
                   }});
  cases.push_back(Change(
      "click_box_of_one", IsChain() ? Growth::Linear : Growth::Constant,
      [this] { NodeOf(Middle())->OnClickCheck(NodeOf(Middle())->GetCheckStatus()); },
      [this] { SelectRows({Middle()}); }));
  cases.push_back(Act(
      "rebuild", Growth::NLogN, [this] { m_model.Trees().MakeAnew(); }, [this] { return RowsStand(); }));
  cases.push_back(Act(
      "change_language", Growth::NLogN, [this] { Tree().OnChangeLanguage(); }, [this] { return RowsStand(); }));
  cases.push_back(Act(
      "requests_of_the_host", Growth::NLogN,
      [this] {
        Tree().RestoreLabel();
        Tree().ShowHideAllLabel(0);
        Tree().ShowHideAllSection(0);
        Tree().ShowHideLabel(TArray<iterator>(m_all), 1);
        Tree().OnChangeProgram();
        Tree().OnPrePostMode(1);
        Tree().OnPrePostMode(0);
        Tree().RefreshRows(m_all);
      },
      [this] { return RowsStand(); }));
  cases.push_back(Act(
      "destroy", Growth::NLogN, [this] { Tree().DestroyTreeItems(); },
      [this] { return m_model.Tree().GetQDRootItem() == nullptr; }));
}

// ---- nodes ----------------------------------------------------------------------------------------------

void ModelWorld::AddNodes(std::vector<Case>& cases) {
  // A node without a type of its own has that of the nearest node above that has one.
  cases.push_back({"find_and_ask_nodes", IsChain() ? Growth::Linear : Growth::Constant,
                   [this](Meter& meter) {
                     std::size_t found = 0;
                     meter([&] {
                       for (const iterator itr : m_some) {
                         CQDTreeItem* node = NodeOf(itr);
                         found += node != nullptr && node->GetControl() == &Tree() && !node->GetTitle().empty() &&
                                          node->GetCheckStatus() >= 0 && node->GetTreeItemType() < 0xFFFF
                                      ? 1
                                      : 0;
                       }
                     });
                     return found == kSome;
                   },
                   kSome});
  cases.push_back({"children_by_index", Growth::NLogN, [this](Meter& meter) {
                     int found = 0;
                     const int count = Branch().GetChildCount();
                     meter([&] {
                       for (int i = 0; i < count; ++i) found += Branch().GetChild(i) != nullptr ? 1 : 0;
                     });
                     return found == count;
                   }});
  cases.push_back({"first_child_deleted_in_turn", Growth::NLogN, [this](Meter& meter) {
                     const int before = Branch().GetChildCount();
                     meter([&] {
                       while (Branch().GetChildCount() > before / 2) Branch().DeleteChild(Branch().GetChild(0));
                     });
                     return Branch().GetChildCount() == before / 2;
                   }});
  cases.push_back({"all_below", Growth::Linear, [this](Meter& meter) {
                     int count = 0;
                     meter([&] { count = Branch().GetAllChildCount(); });
                     return count >= static_cast<int>(m_all.size());
                   }});
  cases.push_back(ThereAndBack(
      "show_and_hide_branch", [this] { Branch().Show(0, 1); },
      [this] { return NodeOf(Middle())->GetCheckStatus() == kUnchecked; }, [this] { Branch().Show(1, 1); }));
  cases.push_back(ThereAndBack(
      "check_and_uncheck_branch", [this] { Branch().SetCheck(kUnchecked, 1); },
      [this] { return NodeOf(Middle())->GetCheckStatus() == kUnchecked; },
      [this] {
        Branch().SetCheck(kChecked, 1);
        Branch().GetChecked();
      }));
  cases.push_back({"only_one_checked", Growth::NLogN, [this](Meter& meter) {
                     meter([&] { Branch().CheckOnlyInChild(NodeOf(Middle()), kChecked, 1); });
                     // The last record may be nested in the middle one, and is switched with it.
                     return NodeOf(Middle())->GetCheckStatus() == kChecked &&
                            NodeOf(m_all.front())->GetCheckStatus() == kUnchecked;
                   }});
  cases.push_back(ThereAndBack(
      "select_branch_and_clear", [this] { Branch().Select(1); },
      [this] { return Tree().IsSelected(Branch().GetTreeItemHandle()); }, [this] { Branch().UnSelect(1); }));
  cases.push_back({"click_select_node", Growth::Linear, [this](Meter& meter) {
                     meter([&] {
                       Tree().SelectCTItem(NodeOf(Middle()));
                       m_model.Settle();
                     });
                     return Tree().GetSelectedCount() == 1;
                   }});
  cases.push_back(Act(
      "sort_by_data", Growth::NLogN, [this] { Tree().SortByData(Branch().GetTreeItemHandle()); },
      [this] { return RowsStand(); }));
}

}  // namespace qd::scaling

#pragma once

#include <map>

#include "host/IWorksTree.h"
#include "platform/Export.h"
#include "qd_wrt/core/Factories.h"

namespace qd {

/// The host's way to all works trees: every operation goes to the trees of each type, in ascending order of type.
/// The host makes one object when its panes are known.
class QD_EXPORT CWorksTreeManager : public IWorksTreeManager {
 public:
  /// Neither the panes nor the factory are owned. The shared icon set exists from here on.
  CWorksTreeManager(std::map<long, CSwitchDockablePane*> panes, IQDTreeGroupFactory* groupFactory);
  ~CWorksTreeManager() override;

  /// Builds all trees of a document; those of `activeType` learn that they are active.
  void CreateTreeItems(CQDDocBase* doc, const long& activeType) override;
  /// Must be called before a document's panes go.
  void DestroyTreeItems(CQDDocBase* doc) override;
  /// Default panes hear of it too.
  void OnChangeLanguage() override;
  /// Default panes are not told, on purpose: they show no menus.
  void OnChangeProgram() override;
  /// Hands the host's update record to all trees of the document.
  void UpdateDB(CQDDocBase* doc, std::uint64_t hint) override;
  /// Default panes get the colour too.
  void SetBkColor(unsigned long colour) override;
  void ResetSelection(CQDDocBase* doc, int flag) override;
  void ResetFilePath(CQDDocBase* doc) override;

 private:
  template <typename Request>
  void ForDocument(CQDDocBase* doc, const Request& request) const;
  template <typename Request>
  void ForAll(const Request& request) const;
  template <typename Request>
  void ForDefaultPanes(const Request& request) const;

  IQDTreeGroupFactory* m_pGroupFactory;
};

}  // namespace qd

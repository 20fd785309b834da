#pragma once

#include <memory>
#include <vector>

#include "platform/CWnd.h"
#include "platform/Export.h"
#include "platform/Picture.h"
#include "platform/Types.h"

namespace qd {

/// A pop-up menu whose entries may carry pictures. A plain value: the toolkit draws it while it is open.
class QD_EXPORT BCMenu {
 public:
  /// A line of a menu.
  struct Entry {
    /// What choosing the line does.
    enum class Kind { Command, Separator, SubMenu } kind = Kind::Command;  ///< what the line is
    unsigned id = 0;                    ///< number of the command, 0 for a line that is none
    CString text;                       ///< what the line says
    const Picture* picture = nullptr;   ///< not owned; null for none
    bool checked = false;               ///< whether a mark stands before it
    std::shared_ptr<BCMenu> subMenu{};  ///< null for none
  };

  /// Copies of a menu show the same entries, also those that are added to one of them later.
  BCMenu() = default;
  virtual ~BCMenu() = default;

  /// Appends an entry; always succeeds (1).
  int Append(Entry entry);
  /// Appends a submenu. The object may go before this menu; entries that are added to it until then show too.
  int AppendSubMenu(BCMenu& subMenu, CString text);
  /// Marks the entry `id`, also one in a submenu, as checked or not. Returns 1, or 0 when there is none.
  int CheckMenu(unsigned id, int check);
  const std::vector<Entry>& Entries() const { return *m_entries; }  ///< from top to bottom
  /// Shows the menu at a screen position and returns the chosen command, 0 for none. Messages are handled
  /// meanwhile, so anything may have changed when it returns.
  unsigned Track(CPoint screen, CWnd& owner) const;

 private:
  Entry* Find(unsigned id);

  std::shared_ptr<std::vector<Entry>> m_entries = std::make_shared<std::vector<Entry>>();
};

}  // namespace qd

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Export.h"
#include "platform/Types.h"
#include "platform/text/Folding.h"
#include "platform/tree/TreePart.h"
#include "qd_wrt/treelist/LaterRows.h"

namespace qd {

/// Goes to the row whose title begins with what is being typed: the next one from the caret on, round the end. The
/// same letter again and again walks through the rows that begin with it.
class QD_EXPORT TypeAhead : private TreePart {
 public:
  /// The tree owns it.
  TypeAhead(CTreeCtrl& tree, const IRowRecords& records) : TreePart(tree), m_records(records) {}

  /// Whether the user is typing the beginning of a title; a pause ends it.
  bool IsTyping() const { return !m_typed.empty(); }
  /// Takes a character in. Returns the row to go to; none when there is none, or not yet.
  HTREEITEM OnChar(int character);
  /// Whether a timer of the tree's window is one of its own.
  static bool IsTimer(unsigned id) { return id == kTypingTimer || id == kSearchTimer; }
  /// Likewise, when the search has gone on.
  HTREEITEM OnTimer(unsigned id);
  /// A key was pressed: the search is over, and what is being typed too unless a blank may belong to it.
  void OnKey(int key);
  void EndTyping();  ///< what was typed is forgotten
  /// The window goes.
  void Forget() { m_search.reset(); }

 private:
  static constexpr unsigned kTypingTimer = 2;
  static constexpr unsigned kSearchTimer = 3;

  /// The search for the title that is being typed, in the rows from the caret on. Any key ends it, so does another
  /// caret; when rows come, go or move it begins anew, a few times.
  struct TitleSearch {
    std::string key;  // of the beginning that is looked for
    Accents accents = Accents::kLeftOut;
    bool behind = false;  // the caret itself comes last
    HTREEITEM caret;
    HTREEITEM next;        // row to look at
    std::size_t left = 0;  // rows not looked at yet
    std::uint64_t revision = 0;
    int restarts = 0;
  };

  void BeginTitleSearch();
  HTREEITEM GoOnWithTitle();
  HTREEITEM EndTitleSearch();
  HTREEITEM RowBehind(HTREEITEM row) const;

  const IRowRecords& m_records;
  CString m_typed;
  std::optional<TitleSearch> m_search;
};

}  // namespace qd

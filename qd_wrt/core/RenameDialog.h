#pragma once

#include <cstddef>
#include <vector>

#include "host/CQDDialog.h"
#include "platform/CWnd.h"
#include "qd_wrt/core/RenamePlan.h"

namespace qd {

/// Asks by which rule many rows are to be renamed, and shows what becomes of each while it is typed. The plan is
/// checked, refuses nothing and is in order when the dialog ends with kDialogOk.
class QD_EXPORT RenameDialog final : public CQDDialog {
 public:
  RenameDialog(CQDDocBase* doc, RenamePlan& plan);  ///< the plan must outlive the dialog
  ~RenameDialog() override;

  /// Lines that the list has at most; what is refused comes first.
  static constexpr std::size_t kMostLines = 10'000;

  /// Of its controls.
  enum ControlId : int {
    kPattern = 101,
    kSought,
    kReplacement,
    kAsTheyAre,
    kCapitals,
    kSmallLetters,
    kFirst,
    kStep,
    kList,
    kSaid
  };

 protected:
  void OnInitDialog() override;
  void OnCommand(int id) override;
  CString OnLine(int id, std::size_t line) override;

 private:
  /// Lets the plan go on between the messages of the window.
  class Ticker final : public CWnd {
   public:
    explicit Ticker(RenameDialog& dialog) : m_dialog(dialog) {}
    void Run(bool run);

   protected:
    void OnTimer(unsigned) override { m_dialog.GoOn(); }

   private:
    RenameDialog& m_dialog;
    bool m_runs = false;
  };

  void TakeRule();
  void GoOn();
  void Say();

  RenamePlan& m_plan;
  NamingRule::Letters m_letters = NamingRule::Letters::AsTheyAre;
  const char* m_fault = nullptr;    // key of the sentence
  bool m_isWanted = false;          // the user has pressed OK
  std::vector<std::size_t> m_rows;  // by line, once all are looked at
  Ticker m_ticker{*this};
};

}  // namespace qd

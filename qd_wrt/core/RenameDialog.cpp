#include "qd_wrt/core/RenameDialog.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "platform/Toolkit.h"

namespace qd {

namespace {

using Kind = DialogControl::Kind;
using Verdict = RenamePlan::Verdict;

// The window's thread does nothing else meanwhile.
constexpr auto kSlice = std::chrono::milliseconds(5);

enum LabelId : int { kPatternLabel = 201, kHint, kSoughtLabel, kReplacementLabel, kFirstLabel, kStepLabel };

// Fields stand behind their labels, in the order in which Tab goes through them.
constexpr std::array<DialogControl, 18> kControls{
    {{kPatternLabel, Kind::Label, L"Name", 7, 9, 58, 10},
     {RenameDialog::kPattern, Kind::TextField, L"", 68, 7, 225, 13},
     {kHint, Kind::Label, L"{name}", 68, 23, 225, 20},
     {kSoughtLabel, Kind::Label, L"Replace", 7, 47, 58, 10},
     {RenameDialog::kSought, Kind::TextField, L"", 68, 45, 225, 13},
     {kReplacementLabel, Kind::Label, L"By", 7, 64, 58, 10},
     {RenameDialog::kReplacement, Kind::TextField, L"", 68, 62, 225, 13},
     {RenameDialog::kAsTheyAre, Kind::RadioButton, L"Letters as they are", 68, 80, 85, 10},
     {RenameDialog::kCapitals, Kind::RadioButton, L"Capitals", 155, 80, 68, 10},
     {RenameDialog::kSmallLetters, Kind::RadioButton, L"Small letters", 225, 80, 68, 10},
     {kFirstLabel, Kind::Label, L"First number", 7, 97, 58, 10},
     {RenameDialog::kFirst, Kind::TextField, L"", 68, 95, 60, 13},
     {kStepLabel, Kind::Label, L"Step", 140, 97, 85, 10},
     {RenameDialog::kStep, Kind::TextField, L"", 233, 95, 60, 13},
     {RenameDialog::kList, Kind::Lines, L"", 7, 115, 286, 100},
     {RenameDialog::kSaid, Kind::Label, L"", 7, 219, 286, 20},
     {kDialogOk, Kind::PushButton, L"OK", 186, 242, 52, 13},
     {kDialogCancel, Kind::PushButton, L"Cancel", 241, 242, 52, 13}}};
constexpr DialogTemplate kTemplate{10420, L"Rename", 300, 260, kControls};

const char* ReasonOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::Blank:
      return "IDS_QD_WRT_RENAME_BLANK";
    case Verdict::Taken:
      return "IDS_QD_WRT_RENAME_TAKEN";
    case Verdict::Twice:
      return "IDS_QD_WRT_RENAME_TWICE";
    case Verdict::Shared:
      return "IDS_QD_WRT_RENAME_SHARED";
    default:
      return nullptr;
  }
}

CString TextWith(const char* key, std::initializer_list<std::size_t> numbers) {
  std::vector<CString> arguments;
  for (const std::size_t number : numbers) arguments.push_back(std::to_wstring(number));
  return qdFormat(CMSGFunction::GetValue(key), arguments);
}

}  // namespace

void RenameDialog::Ticker::Run(bool run) {
  if (std::exchange(m_runs, run) == run || GetPeer() == nullptr) return;
  constexpr unsigned kTimer = 1;
  run ? GetPeer()->SetTimer(kTimer, 1) : GetPeer()->KillTimer(kTimer);
}

RenameDialog::RenameDialog(CQDDocBase* doc, RenamePlan& plan) : CQDDialog(kTemplate, doc), m_plan(plan) {
  m_ticker.Create(nullptr, 0, {0, 0, 1, 1});
}

RenameDialog::~RenameDialog() {
  m_ticker.DestroyWindow();
}

void RenameDialog::OnInitDialog() {
  SetCaption(TextWith("IDS_QD_WRT_RENAME_MANY", {m_plan.RowCount()}));
  const std::pair<int, const char*> texts[] = {{kPatternLabel, "IDS_QD_WRT_RENAME_PATTERN"},
                                               {kSoughtLabel, "IDS_QD_WRT_RENAME_SOUGHT"},
                                               {kReplacementLabel, "IDS_QD_WRT_RENAME_BY"},
                                               {kAsTheyAre, "IDS_QD_WRT_RENAME_AS_THEY_ARE"},
                                               {kCapitals, "IDS_QD_WRT_RENAME_CAPITALS"},
                                               {kSmallLetters, "IDS_QD_WRT_RENAME_SMALL"},
                                               {kFirstLabel, "IDS_QD_WRT_RENAME_FIRST"},
                                               {kStepLabel, "IDS_QD_WRT_RENAME_STEP"},
                                               {kDialogOk, "IDS_QD_BASE_OK"},
                                               {kDialogCancel, "IDS_QD_BASE_CANCEL"}};
  for (const auto& [id, key] : texts) SetItemText(id, CMSGFunction::GetValue(key));
  const NamingRule rule;
  SetItemText(kPattern, rule.pattern);
  SetItemText(kFirst, rule.first);
  SetItemText(kStep, rule.step);
  CheckDlgButton(kAsTheyAre, true);
  TakeRule();
}

void RenameDialog::OnCommand(int id) {
  using Letters = NamingRule::Letters;
  switch (id) {
    case kAsTheyAre:
    case kCapitals:
    case kSmallLetters:
      m_letters = id == kCapitals ? Letters::Capitals : id == kSmallLetters ? Letters::Small : Letters::AsTheyAre;
      return TakeRule();
    case kPattern:
    case kSought:
    case kReplacement:
    case kFirst:
    case kStep:
      return TakeRule();
    case kDialogOk:
      // What was typed last may not have been looked at to its end.
      m_isWanted = m_fault == nullptr;
      return GoOn();
    case kDialogCancel:
      m_isWanted = false;  // names that are being put in order are not to be given any more
      break;
    default:
      break;
  }
  CQDDialog::OnCommand(id);
}

void RenameDialog::TakeRule() {
  QueryFault fault;
  m_plan.SetRule({GetItemText(kPattern), GetItemText(kSought), GetItemText(kReplacement), m_letters,
                  GetItemText(kFirst), GetItemText(kStep)},
                 fault);
  m_fault = fault.key;
  m_isWanted = false;
  m_rows.clear();
  GoOn();
}

/// A slice of what is left to do: of looking at the rows and, once the user has said so, of putting them in order.
void RenameDialog::GoOn() {
  using Clock = std::chrono::steady_clock;
  const auto isEnough = [end = Clock::now() + kSlice] { return Clock::now() >= end; };
  const bool isRight = m_fault == nullptr;
  const bool isSeen = isRight && m_plan.IsChecked() && !m_rows.empty();
  const bool isChecked = isRight && m_plan.Check(isEnough);
  if (isChecked && (m_plan.RefusedCount() != 0 || m_plan.RenamedCount() == 0)) m_isWanted = false;
  const bool isDone = isChecked && (!m_isWanted || m_plan.Order(isEnough));
  m_ticker.Run(isRight && !isDone);
  if (isDone && m_isWanted) return CQDDialog::OnCommand(kDialogOk);
  if (isChecked && !isSeen) m_rows = m_plan.RefusedFirst(kMostLines);
  Say();
  if (!isSeen) ShowLines(kList, isRight ? std::min(m_plan.RowCount(), kMostLines) : 0);
}

void RenameDialog::Say() {
  const std::size_t refused = m_plan.RefusedCount();
  const bool isDone = m_plan.IsChecked() && !m_isWanted;
  const std::string_view fault = m_fault != nullptr ? m_fault : "";
  const bool isOfPattern = fault == "IDS_QD_WRT_RENAME_BRACES" || fault == "IDS_QD_WRT_RENAME_DIGITS";
  SetItemText(kHint, CMSGFunction::GetValue(isOfPattern ? fault : "IDS_QD_WRT_RENAME_HINT"));
  CString said;
  if (m_fault != nullptr) {
    if (!isOfPattern) said = CMSGFunction::GetValue(fault);
  } else if (refused != 0) {
    said = TextWith("IDS_QD_WRT_RENAME_CONFLICTS", {refused});
  } else if (!isDone) {
    said = TextWith("IDS_QD_WRT_RENAME_LOOKING", {m_plan.CheckedCount(), m_plan.RowCount()});
  } else {
    said = TextWith("IDS_QD_WRT_RENAME_COUNT", {m_plan.RenamedCount(), m_plan.RowCount()});
  }
  SetItemText(kSaid, said);
  const bool anyNew = m_plan.RenamedCount() != 0 || !m_plan.IsChecked();
  EnableItem(kDialogOk, m_fault == nullptr && refused == 0 && anyNew && !m_isWanted);
}

CString RenameDialog::OnLine(int, std::size_t line) {
  const std::size_t row = line < m_rows.size() ? m_rows[line] : line;
  if (row >= m_plan.RowCount()) return {};
  CString before = m_plan.NameOf(row);
  const CString behind = m_plan.NewNameOf(row);
  if (before == behind) return before;
  const Verdict verdict = m_plan.VerdictOf(row);
  CString text = (RenamePlan::IsRefused(verdict) ? L"! " : L"") + before + L" \x2192 " + behind;
  if (const char* reason = ReasonOf(verdict)) text += L" (" + CMSGFunction::GetValue(reason) + L")";
  return text;
}

}  // namespace qd

#include <algorithm>
#include <map>
#include <utility>

#include "platform/headless/HeadlessPainter.h"
#include "platform/headless/HeadlessToolkit.h"

namespace qd {

namespace {

/// Takes the first of a list; `otherwise` when there is none.
template <typename T>
T TakeFirst(std::vector<T>& list, T otherwise) {
  if (list.empty()) return otherwise;
  T first = std::move(list.front());
  list.erase(list.begin());
  return first;
}

}  // namespace

/// A dialog as a table of texts, worked by the script.
class HeadlessDialog final : public IDialogPeer {
 public:
  HeadlessDialog(HeadlessToolkit& toolkit, CDialog& owner, const DialogTemplate& layout)
      : m_toolkit(toolkit), m_owner(owner), m_layout(layout), m_caption(layout.caption) {
    for (const DialogControl& control : layout.controls) m_controls[control.id] = {CString(control.text)};
  }

  void SetCaption(const CString& text) override { m_caption = text; }
  void SetText(int id, const CString& text) override {
    if (m_controls.contains(id)) m_controls[id].text = text;
  }
  CString GetText(int id) const override { return m_controls.contains(id) ? m_controls.at(id).text : CString(); }
  void Enable(int id, bool enable) override {
    if (m_controls.contains(id)) m_controls[id].enabled = enable;
  }
  void ShowLines(int id, std::size_t count) override {
    if (m_controls.contains(id)) m_controls[id].lines = count;
  }
  void SetChecked(int id, bool checked) override {
    if (m_controls.contains(id)) m_controls[id].checked = checked;
  }
  bool IsChecked(int id) const override { return m_controls.contains(id) && m_controls.at(id).checked; }
  void End(int result) override {
    m_result = result;
    m_open = false;
  }

  int Run() override {
    m_toolkit.m_dialogs.push_back(Describe());
    using Step = HeadlessToolkit::DialogStep;
    const std::vector<Step> steps = TakeFirst(m_toolkit.m_dialogAnswers, std::vector<Step>{});
    for (const Step& step : steps) {
      if (!m_open) break;
      if (step.text) m_controls[step.id].text = *step.text;
      if (step.meanwhile) step.meanwhile();
      if (m_open && step.id != 0) Press(step.id);
      m_toolkit.FinishSlices();
    }
    const bool isWorked =
        std::any_of(steps.begin(), steps.end(), [](const Step& step) { return step.text.has_value(); });
    if (isWorked) m_toolkit.m_dialogs.push_back(Describe());
    return m_result;
  }

 private:
  struct Control {
    CString text{};
    bool checked = false;
    bool enabled = true;
    std::size_t lines = 0;
  };

  void Press(int id) {
    if (m_controls.contains(id) && !m_controls[id].enabled) return;
    for (const DialogControl& control : m_layout.controls) {
      if (control.id != id || control.kind != DialogControl::Kind::RadioButton) continue;
      for (const DialogControl& other : m_layout.controls) m_controls[other.id].checked = other.id == id;
    }
    m_owner.Press(id);
  }

  std::string Describe() {
    const auto narrow = [](const CString& text) {
      std::string bytes;
      for (const wchar_t unit : text) bytes += unit < 0x80 ? static_cast<char>(unit) : '?';
      return bytes;
    };
    std::string description = narrow(m_caption);
    for (const DialogControl& control : m_layout.controls) {
      const Control& state = m_controls.at(control.id);
      description += (state.checked ? "|(x) " : state.enabled ? "|" : "|(-) ") + narrow(state.text);
      if (control.kind != DialogControl::Kind::Lines) continue;
      constexpr std::size_t kMostTold = 10;
      for (std::size_t line = 0; line < std::min(state.lines, kMostTold); ++line) {
        description += "[" + narrow(m_owner.LineOf(control.id, line)) + "]";
      }
    }
    return description;
  }

  HeadlessToolkit& m_toolkit;
  CDialog& m_owner;
  const DialogTemplate& m_layout;
  CString m_caption;
  std::map<int, Control> m_controls;
  int m_result = kDialogCancel;
  bool m_open = true;
};

std::unique_ptr<IDialogPeer> HeadlessToolkit::MakeDialog(CDialog& owner, const DialogTemplate& layout) {
  return std::make_unique<HeadlessDialog>(*this, owner, layout);
}

MessageAnswer HeadlessToolkit::ShowMessage(const CString& text, MessageButtons buttons) {
  m_messages.push_back(text);
  const MessageAnswer closed = buttons == MessageButtons::Ok      ? MessageAnswer::Ok
                               : buttons == MessageButtons::YesNo ? MessageAnswer::No
                                                                  : MessageAnswer::Cancel;
  if (const auto meanwhile = std::exchange(m_whileMessage, nullptr)) meanwhile();
  return TakeFirst(m_messageAnswers, closed);
}

}  // namespace qd

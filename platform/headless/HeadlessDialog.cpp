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
    for (const DialogControl& control : layout.controls) m_controls[control.id] = {CString(control.text), false};
  }

  void SetCaption(const CString& text) override { m_caption = text; }
  void SetText(int id, const CString& text) override {
    if (m_controls.contains(id)) m_controls[id].text = text;
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
    for (const int id : TakeFirst(m_toolkit.m_dialogAnswers, std::vector<int>{})) {
      if (m_open) Press(id);
    }
    return m_result;
  }

 private:
  struct Control {
    CString text;
    bool checked = false;
  };

  void Press(int id) {
    for (const DialogControl& control : m_layout.controls) {
      if (control.id != id || control.kind != DialogControl::Kind::RadioButton) continue;
      for (const DialogControl& other : m_layout.controls) m_controls[other.id].checked = other.id == id;
    }
    m_owner.Press(id);
  }

  std::string Describe() const {
    const auto narrow = [](const CString& text) {
      std::string bytes;
      for (const wchar_t unit : text) bytes += unit < 0x80 ? static_cast<char>(unit) : '?';
      return bytes;
    };
    std::string description = narrow(m_caption);
    for (const DialogControl& control : m_layout.controls) {
      const Control& state = m_controls.at(control.id);
      description += (state.checked ? "|(x) " : "|") + narrow(state.text);
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
  return TakeFirst(m_messageAnswers, closed);
}

}  // namespace qd

#pragma once

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/CWnd.h"
#include "platform/Toolkit.h"

namespace qd {

/// The text of an edit box or a list without a screen, with a caret that typing and pasting follow.
class HeadlessTextBox final : public ITextBox {
 public:
  HeadlessTextBox(CWnd& owner, PeerKind kind) : m_owner(owner), m_kind(kind) {}

  /// The key that is on its way to the box; it is handled at most once.
  void BeginKey(const Message& key) { m_key = &key; }
  void EndKey() { m_key = nullptr; }
  void HandleKey() override {
    const Message* key = std::exchange(m_key, nullptr);
    if (key == nullptr || m_kind != PeerKind::Edit) return;
    if (key->kind == MessageKind::Char) return Insert(CString(1, static_cast<wchar_t>(key->key)));
    if (key->kind != MessageKind::KeyDown || key->key != kKeyDelete) return;
    if (m_from == m_to) m_to = std::min(m_to + 1, m_text.size());
    Insert({});
  }
  /// The user's.
  void Insert(const CString& text) {
    ReplaceSelection(text);
    m_owner.Dispatch({.kind = MessageKind::TextChanged, .target = &m_owner});
  }

  void SetText(const CString& text) override {
    m_text = text;
    m_from = m_to = text.size();
  }
  CString GetText() const override { return m_text; }
  void SelectAll() override { Select(0, m_text.size()); }
  void AddChoice(const CString& text) override {
    if (m_text.empty()) m_text = text;
  }
  std::size_t GetCaret() const override { return m_to; }
  void Select(std::size_t from, std::size_t to) override {
    m_from = std::min(from, m_text.size());
    m_to = std::min(to, m_text.size());
  }
  void ReplaceSelection(const CString& text) override {
    const std::size_t first = std::min(m_from, m_to);
    m_text.replace(first, std::max(m_from, m_to) - first, text);
    m_from = m_to = first + text.size();
  }
  void SetHint(const CString& text) override { m_hint = text; }
  void SetColours(const std::optional<Colours>& colours) override { m_colours = colours; }

  const CString& GetHint() const { return m_hint; }
  const std::optional<Colours>& GetColours() const { return m_colours; }

 private:
  CWnd& m_owner;
  PeerKind m_kind;
  CString m_text;
  std::size_t m_from = 0;
  std::size_t m_to = 0;  // where the caret is
  CString m_hint;
  std::optional<Colours> m_colours;
  const Message* m_key = nullptr;
};

}  // namespace qd

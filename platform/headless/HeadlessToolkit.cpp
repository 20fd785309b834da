#include "platform/headless/HeadlessToolkit.h"

#include <algorithm>
#include <utility>

#include "platform/BCMenu.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/headless/HeadlessPainter.h"
#include "platform/headless/HeadlessTextBox.h"

namespace qd {

/// A rectangle with a parent.
class HeadlessPeer final : public IPeer {
 public:
  HeadlessPeer(HeadlessToolkit& toolkit, CWnd& owner, PeerKind kind, HeadlessPeer* parent, const CRect& area)
      : m_toolkit(toolkit), m_owner(owner), m_kind(kind), m_parent(parent), m_area(area), m_box(owner, kind) {
    toolkit.m_windows.push_back(&owner);
  }
  ~HeadlessPeer() override { m_toolkit.Forget(&m_owner); }
  HeadlessPeer(const HeadlessPeer&) = delete;
  HeadlessPeer& operator=(const HeadlessPeer&) = delete;

  void Move(const CRect& area) override {
    const bool resized = area.Width() != m_area.Width() || area.Height() != m_area.Height();
    m_area = area;
    if (resized) m_owner.Dispatch({.kind = MessageKind::Size, .target = &m_owner});
    Invalidate(ClientRect());
  }
  CRect ClientRect() const override {
    const bool bar = m_kind == PeerKind::SurfaceVScroll && m_scroll.maximum > 0;
    const int width = m_area.Width() - (bar ? m_toolkit.GetMetric(Metric::ScrollBarWidth) : 0);
    return {0, 0, std::max(width, 0), std::max(m_area.Height(), 0)};
  }
  void Show(bool) override {}
  bool IsSeen() const override { return m_owner.IsShown() && (m_parent == nullptr || m_parent->IsSeen()); }
  void Enable(bool) override {}
  void Invalidate(const CRect& area) override {
    auto& dirty = m_toolkit.m_dirty;
    const auto found =
        std::find_if(dirty.begin(), dirty.end(), [this](const auto& entry) { return entry.first == &m_owner; });
    if (found == dirty.end()) {
      dirty.emplace_back(&m_owner, area);
      return;
    }
    CRect& all = found->second;
    all = {std::min(all.left, area.left), std::min(all.top, area.top), std::max(all.right, area.right),
           std::max(all.bottom, area.bottom)};
  }
  void PaintNow() override { m_toolkit.PaintDirty(); }
  CPoint ToScreen(CPoint point) const override {
    const CPoint origin =
        m_parent != nullptr ? m_parent->ToScreen({m_area.left, m_area.top}) : CPoint{m_area.left, m_area.top};
    return {origin.x + point.x, origin.y + point.y};
  }
  void TakeFocus() override {
    CWnd* before = std::exchange(m_toolkit.m_focus, &m_owner);
    if (before == &m_owner) return;
    if (before != nullptr) before->Dispatch({.kind = MessageKind::FocusLost, .target = before});
    m_owner.Dispatch({.kind = MessageKind::FocusGained, .target = &m_owner});
  }
  bool HasFocus() const override { return m_toolkit.m_focus == &m_owner; }
  void SetTimer(unsigned id, unsigned milliseconds) override {
    KillTimer(id);
    m_toolkit.m_timers.push_back({&m_owner, id, milliseconds, m_toolkit.m_now + milliseconds});
  }
  void KillTimer(unsigned id) override {
    std::erase_if(m_toolkit.m_timers,
                  [&](const auto& timer) { return timer.owner == &m_owner && timer.id == id; });
  }
  void Post(unsigned id, std::uint64_t parameter) override {
    m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_owner, .id = id, .parameter = parameter});
  }
  void SetScroll(const ScrollState& state) override {
    const bool resizes = m_kind == PeerKind::SurfaceVScroll && (state.maximum > 0) != (m_scroll.maximum > 0);
    m_scroll = state;
    if (resizes) m_owner.Dispatch({.kind = MessageKind::Size, .target = &m_owner});
  }
  void SetCursor(CursorShape shape) override { m_pointer = shape == CursorShape::Arrow ? "arrow" : "resize"; }
  void SetCursor(const Picture&) override { m_pointer = "picture"; }
  void AnnounceFocus(std::uint64_t row) override { m_toolkit.m_announced.push_back(row); }
  void SetAccessible(const Accessible& what) override { m_accessible = what; }
  void Announce() override { m_toolkit.m_spoken.push_back(m_accessible.name); }
  void Raise() override {}
  ITextBox* TextBox() override { return IsText() ? &m_box : nullptr; }
  void ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) override {
    m_toolkit.m_tip = {text, screen, background, colour, &m_owner};
  }

  const ScrollState& Scroll() const { return m_scroll; }
  const std::string& Pointer() const { return m_pointer; }
  bool IsText() const { return m_kind == PeerKind::Edit || m_kind == PeerKind::DropDownList; }
  HeadlessTextBox& Box() { return m_box; }
  const HeadlessTextBox& Box() const { return m_box; }
  const Accessible& GetAccessible() const { return m_accessible; }

 private:
  HeadlessToolkit& m_toolkit;
  CWnd& m_owner;
  PeerKind m_kind;
  HeadlessPeer* m_parent;
  CRect m_area;
  ScrollState m_scroll;
  std::string m_pointer = "arrow";
  HeadlessTextBox m_box;
  Accessible m_accessible;
};

HeadlessToolkit::~HeadlessToolkit() {
  CloseWindows();
}

std::unique_ptr<IPeer> HeadlessToolkit::MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) {
  return std::make_unique<HeadlessPeer>(*this, owner, kind, static_cast<HeadlessPeer*>(parent), area);
}

// ---- script ---------------------------------------------------------------------------------------------

void HeadlessToolkit::Enqueue(Message message) {
  m_queue.push_back(message);
}

void HeadlessToolkit::Click(CWnd& window, CPoint point, unsigned flags) {
  Enqueue({.kind = MessageKind::LeftDown, .target = &window, .point = point, .flags = flags});
  Enqueue({.kind = MessageKind::LeftUp, .target = &window, .point = point, .flags = flags});
}

void HeadlessToolkit::RightClick(CWnd& window, CPoint point, unsigned flags) {
  Enqueue({.kind = MessageKind::RightDown, .target = &window, .point = point, .flags = flags});
  Enqueue({.kind = MessageKind::RightUp, .target = &window, .point = point, .flags = flags});
}

void HeadlessToolkit::DoubleClick(CWnd& window, CPoint point) {
  Click(window, point);
  Enqueue({.kind = MessageKind::LeftDouble, .target = &window, .point = point});
  Enqueue({.kind = MessageKind::LeftUp, .target = &window, .point = point});
}

void HeadlessToolkit::Key(CWnd& window, int key, unsigned flags) {
  Enqueue({.kind = MessageKind::KeyDown, .target = &window, .flags = flags, .key = key});
}

void HeadlessToolkit::Type(CWnd& window, const CString& text) {
  for (const wchar_t character : text) {
    Enqueue({.kind = MessageKind::Char, .target = &window, .key = static_cast<int>(character)});
  }
}

void HeadlessToolkit::Paste(CWnd& window, const CString& text) {
  if (IsAlive(&window)) static_cast<HeadlessPeer*>(window.GetPeer())->Box().Insert(text);
}

void HeadlessToolkit::SetColour(SystemColour which, COLORREF colour) {
  m_colours[which] = colour;
  for (CWnd* window : m_windows) Enqueue({.kind = MessageKind::LookChanged, .target = window});
}

CWnd* HeadlessToolkit::FindChild(const CWnd& parent, int id) const {
  const auto found = std::find_if(m_windows.begin(), m_windows.end(), [&](const CWnd* window) {
    return window->GetParent() == &parent && window->GetDlgCtrlID() == id;
  });
  return found != m_windows.end() ? *found : nullptr;
}

void HeadlessToolkit::Pump() {
  while (!m_queue.empty()) {
    const Message message = m_queue.front();
    m_queue.pop_front();
    Note(message);
    DispatchNow(message);
  }
  PaintDirty();
}

void HeadlessToolkit::Advance(unsigned milliseconds) {
  m_now += milliseconds;
  for (Timer& timer : m_timers) {
    for (; timer.due <= m_now; timer.due += std::max(timer.period, 1U)) {
      Enqueue({.kind = MessageKind::Timer, .target = timer.owner, .id = timer.id});
    }
  }
}

void HeadlessToolkit::FinishSlices() {
  constexpr unsigned kAtOnce = 1;
  const auto goesOn = [](const Timer& timer) { return timer.period <= kAtOnce; };
  while (std::any_of(m_timers.begin(), m_timers.end(), goesOn)) {
    Advance(kAtOnce);
    Pump();
  }
}

/// What the window system itself makes of a message, whoever handles it.
void HeadlessToolkit::Note(const Message& message) {
  if (!IsAlive(message.target)) return;
  if (message.kind <= MessageKind::MouseMove) m_cursor = message.target->ClientToScreen(message.point);
  // A released right button asks for the menu, after everything that the release brings about.
  if (message.kind == MessageKind::RightUp) {
    Enqueue({.kind = MessageKind::ContextMenu, .target = message.target, .point = m_cursor});
  }
}

void HeadlessToolkit::DispatchNow(const Message& message) {
  if (!IsAlive(message.target)) return;
  const bool typed = message.kind == MessageKind::KeyDown || message.kind == MessageKind::Char;
  const auto* peer = static_cast<const HeadlessPeer*>(message.target->GetPeer());
  if (typed && peer->IsText()) return TypeInto(*message.target, message);
  message.target->Dispatch(message);
}

/// A key on its way into an edit box or a list.
void HeadlessToolkit::TypeInto(CWnd& window, const Message& message) {
  auto* peer = static_cast<HeadlessPeer*>(window.GetPeer());
  peer->Box().BeginKey(message);
  const bool handled = message.kind == MessageKind::KeyDown && window.PreTranslateMessage(message);
  // Whoever hears of the key, or of what it types, may take the box down.
  const auto stands = [&] { return IsAlive(&window) && window.GetPeer() == peer; };
  if (!stands()) return;
  if (!handled) peer->Box().HandleKey();
  if (!stands()) return;
  peer->Box().EndKey();
  if (!handled) window.Dispatch(message);
}

void HeadlessToolkit::PaintDirty() {
  for (const auto& [window, area] : std::exchange(m_dirty, {})) {
    if (!IsAlive(window)) continue;
    ++m_paints;
    if (m_screen) {
      m_screen(*window, area);
    } else {
      Paint(*window);
    }
  }
}

std::vector<std::string> HeadlessToolkit::Paint(CWnd& window) {
  HeadlessPainter painter(window.GetClientRect());
  CDC dc(painter);
  window.OnPaint(dc);
  return painter.TakeCalls();
}

int HeadlessToolkit::TakePaintCount() {
  return std::exchange(m_paints, 0);
}

std::map<unsigned, unsigned> HeadlessToolkit::TimersOf(const CWnd& window) const {
  std::map<unsigned, unsigned> timers;
  for (const Timer& timer : m_timers) {
    if (timer.owner == &window) timers.emplace(timer.id, timer.period);
  }
  return timers;
}

ScrollState HeadlessToolkit::ScrollOf(const CWnd& window) const {
  return IsAlive(&window) ? static_cast<const HeadlessPeer*>(window.GetPeer())->Scroll() : ScrollState{};
}

std::string HeadlessToolkit::PointerOf(const CWnd& window) const {
  return IsAlive(&window) ? static_cast<const HeadlessPeer*>(window.GetPeer())->Pointer() : "";
}

Accessible HeadlessToolkit::AccessibleOf(const CWnd& window) const {
  return IsAlive(&window) ? static_cast<const HeadlessPeer*>(window.GetPeer())->GetAccessible() : Accessible{};
}

std::optional<ITextBox::Colours> HeadlessToolkit::BoxColoursOf(const CWnd& window) const {
  return IsAlive(&window) ? static_cast<const HeadlessPeer*>(window.GetPeer())->Box().GetColours() : std::nullopt;
}

CString HeadlessToolkit::HintOf(const CWnd& window) const {
  return IsAlive(&window) ? static_cast<const HeadlessPeer*>(window.GetPeer())->Box().GetHint() : CString();
}

bool HeadlessToolkit::IsAlive(const CWnd* window) const {
  return std::find(m_windows.begin(), m_windows.end(), window) != m_windows.end();
}

void HeadlessToolkit::Forget(CWnd* window) {
  std::erase(m_windows, window);
  std::erase_if(m_dirty, [window](const auto& entry) { return entry.first == window; });
  std::erase_if(m_timers, [window](const Timer& timer) { return timer.owner == window; });
  std::erase_if(m_queue, [window](const Message& message) { return message.target == window; });
  if (m_focus == window) m_focus = nullptr;
}

// ---- toolkit --------------------------------------------------------------------------------------------

int HeadlessToolkit::GetMetric(Metric metric) const {
  switch (metric) {
    case Metric::ScrollBarWidth:
      return 17;
    case Metric::ScrollBarHeight:
      return 17;
    case Metric::DragWidth:
      return 4;
    case Metric::DragHeight:
      return 4;
  }
  return 0;
}

COLORREF HeadlessToolkit::GetColour(SystemColour colour) const {
  if (const auto chosen = m_colours.find(colour); chosen != m_colours.end()) return chosen->second;
  switch (colour) {
    case SystemColour::Window:
      return Rgb(255, 255, 255);
    case SystemColour::WindowText:
      return Rgb(0, 0, 0);
    case SystemColour::Highlight:
      return Rgb(0, 120, 215);
    case SystemColour::HighlightText:
      return Rgb(255, 255, 255);
    case SystemColour::ButtonFace:
      return Rgb(240, 240, 240);
    case SystemColour::ButtonText:
      return Rgb(0, 0, 0);
    case SystemColour::Shadow:
      return Rgb(160, 160, 160);
  }
  return 0;
}

void HeadlessToolkit::PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const {
  widths.resize(text.size() + 1);
  const int width = font.bold ? kBoldWidth : kCharacterWidth;
  for (std::size_t i = 0; i <= text.size(); ++i) widths[i] = static_cast<int>(i) * width;
}

CaptureEnd HeadlessToolkit::RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) {
  const std::weak_ptr<void> life = owner.Life();
  while (!m_queue.empty()) {
    const Message message = m_queue.front();
    m_queue.pop_front();
    if (!IsAlive(message.target)) continue;
    Note(message);
    if (message.kind == MessageKind::CaptureLost) return CaptureEnd::Lost;
    const CaptureVerdict verdict = decide(message);
    if (verdict == CaptureVerdict::Dispatch || verdict == CaptureVerdict::StopAndDispatch) DispatchNow(message);
    if (life.expired() || !IsAlive(&owner)) return CaptureEnd::Lost;
    if (verdict == CaptureVerdict::Stop || verdict == CaptureVerdict::StopAndDispatch) return CaptureEnd::Stopped;
  }
  return CaptureEnd::Lost;  // the script has ended with the button down
}

unsigned HeadlessToolkit::TrackMenu(CWnd&, const BCMenu& menu, CPoint) {
  m_menus.push_back(DescribeMenu(menu));
  m_lastMenu = DescribeMenu(menu, true);
  if (m_menuAnswers.empty()) return 0;
  const unsigned answer = m_menuAnswers.front();
  m_menuAnswers.erase(m_menuAnswers.begin());
  return answer;
}

}  // namespace qd

#include "platform/qt/QtTexts.h"

#include <QApplication>
#include <algorithm>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"

namespace qd {

const QtTexts::Shaped* QtTexts::Of(const Font& font, std::wstring_view text) {
  constexpr std::size_t kLongest = 200;
  constexpr std::size_t kMost = 1'000;  // some screens full
  const auto isControl = [](wchar_t element) {
    constexpr wchar_t kFirstPrinting = 0x20;
    constexpr wchar_t kDelete = 0x7F;
    constexpr wchar_t kLastControl = 0x9F;
    constexpr wchar_t kLineSeparator = 0x2028;
    constexpr wchar_t kParagraphSeparator = 0x2029;
    return element < kFirstPrinting || (element >= kDelete && element <= kLastControl) ||
           element == kLineSeparator || element == kParagraphSeparator;
  };
  if (text.empty() || text.size() > kLongest || std::any_of(text.begin(), text.end(), isControl)) return nullptr;
  if (const QFont base = QApplication::font(); base != m_base) {
    m_base = base;
    m_young.clear();
    m_old.clear();
  }
  std::wstring key(text);
  key += {L'\0', font.bold ? L'b' : L'n', static_cast<wchar_t>(font.height)};
  key += font.face;
  if (const auto found = m_young.find(key); found != m_young.end()) return found->second.get();
  if (m_young.size() >= kMost) m_old = std::exchange(m_young, {});
  auto before = m_old.extract(key);
  auto& kept = m_young[std::move(key)];
  kept = before.empty() ? Shape(font, text) : std::move(before.mapped());
  return kept.get();
}

std::unique_ptr<const QtTexts::Shaped> QtTexts::Shape(const Font& font, std::wstring_view text) const {
  auto shaped = std::make_unique<Shaped>();
  const QString shown = ToQt(text);
  QTextOption option;
  // A name goes the way of its own letters, whatever the program's language: its end, cut or not, is where they
  // end.
  option.setTextDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  QTextLayout& layout = shaped->layout;
  layout.setText(shown);
  layout.setFont(QtToolkit::FontOf(font));
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  shaped->width = line.naturalTextWidth();
  shaped->height = line.height();
  return shaped;
}

}  // namespace qd

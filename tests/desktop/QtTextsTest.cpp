// Texts that are kept for the next time look as the library draws them, and as the program's font is now.

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/qt/QtToolkit.h"

namespace qd::test {
namespace {

constexpr CRect kCanvas{0, 0, 300, 40};
constexpr CRect kCell{10, 5, 290, 35};

struct Sample {
  const char* name;
  std::wstring text;
  Font font;
  TextAlign align;
};

class Canvas final : public CWnd {
 public:
  explicit Canvas(const Sample& sample) : m_sample(sample) { Create(nullptr, 0, kCanvas); }
  void OnPaint(CDC& dc) override {
    dc.FillSolidRect(kCanvas, Rgb(255, 255, 255));
    dc.SetTextColor(Rgb(0, 0, 0));
    dc.SelectFont(m_sample.font);
    dc.Text(kCell, m_sample.text, m_sample.align);
  }

 private:
  const Sample& m_sample;
};

class QtTextsLook : public ::testing::TestWithParam<Sample> {
 protected:
  ~QtTextsLook() override { QApplication::setFont(m_font); }

  QtToolkit m_toolkit;

 private:
  QFont m_font = QApplication::font();
};

QImage AsTheLibraryDraws(const Sample& sample, const QPixmap& like) {
  QPixmap drawn(like.size());
  drawn.setDevicePixelRatio(like.devicePixelRatio());
  drawn.fill(Qt::white);
  QPainter painter(&drawn);
  const QString text = QString::fromStdWString(sample.text);
  painter.setFont(QtToolkit::FontOf(sample.font));
  painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  const Qt::Alignment align = sample.align == TextAlign::Right    ? Qt::AlignRight
                              : sample.align == TextAlign::Centre ? Qt::AlignHCenter
                                                                  : Qt::AlignLeft;
  painter.drawText(QRect(kCell.left, kCell.top, kCell.Width(), kCell.Height()),
                   static_cast<int>(align | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine, text);
  painter.end();
  return drawn.toImage().convertToFormat(QImage::Format_RGB32);
}

TEST_P(QtTextsLook, LikeTheLibrarysOwn) {
  Sample sample = GetParam();
  const Canvas canvas(sample);
  QWidget* widget = QtToolkit::WidgetOf(canvas);
  const auto expectRight = [&](const char* when) {
    const QPixmap shown = widget->grab();
    const QImage expected = AsTheLibraryDraws(sample, shown);
    EXPECT_EQ(shown.toImage().convertToFormat(QImage::Format_RGB32), expected) << when;
    QImage empty(expected.size(), QImage::Format_RGB32);
    empty.fill(Qt::white);
    EXPECT_NE(expected, empty);
  };
  expectRight("shaped");
  expectRight("kept");
  sample.font.bold = !sample.font.bold;
  expectRight("once the row is bold, or no more");
  QFont larger = QApplication::font();
  larger.setPointSizeF(larger.pointSizeF() + 3);
  QApplication::setFont(larger);
  expectRight("after the user has chosen another font");
}

INSTANTIATE_TEST_SUITE_P(
    All, QtTextsLook,
    ::testing::Values(Sample{"Left", L"Housing 12", {}, TextAlign::Left},
                      Sample{"Right", L"1,234", {}, TextAlign::Right},
                      Sample{"Centre", L"Fit", {}, TextAlign::Centre},
                      Sample{"Bold", L"Current set", {{}, 0, true}, TextAlign::Left},
                      Sample{"RightToLeft", L"\x645\x636\x62E\x629 (7) pump", {}, TextAlign::Left},
                      Sample{"Wide", L"\x90E8\x54C1 e\x301", {}, TextAlign::Left}),
    [](const auto& sample) { return std::string(sample.param.name); });

TEST(QtTextsCut, NamesLoseTheirEndWhereTheyAreTooWide) {
  const QtToolkit toolkit;
  const auto look = [](const wchar_t* word, TextAlign align) {
    std::wstring text;
    for (int i = 0; i < 20; ++i) text += word;
    const Sample sample{"", text + L"...", {}, align};
    const Canvas canvas(sample);
    return QtToolkit::WidgetOf(canvas)->grab().toImage();
  };
  const wchar_t* fromRight = L"\x5D1\x5D5\x5E8\x5D2 ";
  EXPECT_EQ(look(fromRight, TextAlign::Left), look(fromRight, TextAlign::Right));
  EXPECT_NE(look(L"Bolt ", TextAlign::Left), look(L"Bolt ", TextAlign::Right));
}

}  // namespace
}  // namespace qd::test

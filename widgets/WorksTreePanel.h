#pragma once

#include <QIcon>
#include <QImage>
#include <QWidget>
#include <memory>

#include "platform/Export.h"

namespace qd {

class CWorksTreeBar;

/// A panel of the module as a widget, without rows yet. The first one makes the toolkit, unless the program has
/// made Qt's, which lasts until the application ends; a program with a toolkit of another kind is ended with a
/// sentence.
class QD_QT_EXPORT WorksTreePanel : public QWidget {
  Q_OBJECT
 public:
  explicit WorksTreePanel(QWidget* parent = nullptr);  ///< usual for widgets: `parent`, when there is one, owns it
  ~WorksTreePanel() override;

  /// The panel with everything that it can do: searching, columns, state, documents.
  CWorksTreeBar& Bar() const { return *m_bar; }

  /// The number of an icon for rows (HostRow::icon) that looks as this one, for icons of themes
  /// (QIcon::fromTheme), files and images; 0 for none.
  static unsigned IconNumber(const QIcon& icon);
  static unsigned IconNumber(const QImage& image);  ///< likewise

  QSize sizeHint() const override;  ///< as wide as titles of the usual length with the other columns

 private:
  std::unique_ptr<CWorksTreeBar> m_bar;
};

}  // namespace qd

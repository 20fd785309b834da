#include "workbench/app/Mnemonics.h"

#include <QAction>
#include <QList>
#include <QMenu>
#include <QSet>

namespace qd::workbench {

namespace {

/// Where the marked letter stands, or -1. Two marks are one ampersand.
qsizetype MarkedLetter(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return i + 1;
    ++i;
  }
  return -1;
}

bool IsKey(QChar letter) {
  return letter.unicode() < 0x80 && letter.isLetterOrNumber();
}

/// The first letter that is free, those that begin a word before others; -1 for none.
qsizetype FreeLetter(const QString& text, const QSet<QChar>& taken) {
  for (const bool atBegin : {true, false}) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const bool begins = i == 0 || text[i - 1].isSpace();
      if (begins == atBegin && IsKey(text[i]) && !taken.contains(text[i].toLower())) return i;
    }
  }
  return -1;
}

QString WithoutMark(QString text, qsizetype letter) {
  const bool inBrackets =
      letter >= 2 && text[letter - 2] == '(' && letter + 1 < text.size() && text[letter + 1] == ')';
  return inBrackets ? text.remove(letter - 2, 4) : text.remove(letter - 1, 1);
}

}  // namespace

void GiveMnemonics(QMenu& menu) {
  QSet<QChar> taken;
  QList<QAction*> without;
  for (QAction* action : menu.actions()) {
    if (action->isSeparator()) continue;
    const QString text = action->text();
    const qsizetype letter = MarkedLetter(text);
    if (letter < 0 || taken.contains(text[letter].toLower())) {
      without.append(action);
    } else {
      taken.insert(text[letter].toLower());
    }
  }
  for (QAction* action : without) {
    QString text = action->text();
    if (const qsizetype letter = MarkedLetter(text); letter >= 0) text = WithoutMark(text, letter);
    qsizetype letter = FreeLetter(text, taken);
    if (letter >= 0) {
      taken.insert(text[letter].toLower());
      text.insert(letter, '&');
    } else {
      QChar next('a');
      while (next <= 'z' && taken.contains(next)) next = QChar(next.unicode() + 1);
      if (next > 'z') continue;  // more entries than letters
      taken.insert(next);
      const qsizetype dots = text.endsWith(QChar(0x2026)) ? text.size() - 1 : text.size();
      text.insert(dots, QStringLiteral("(&%1)").arg(next.toUpper()));
    }
    action->setText(text);
  }
}

}  // namespace qd::workbench

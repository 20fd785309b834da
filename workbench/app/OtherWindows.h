#pragma once

#include <QObject>
#include <QStringList>

#include "workbench/app/Message.h"
#include "workbench/app/MessageTables.h"

namespace qd::workbench {

/// Starts programs of their own for other documents, with the language and variant of this one: a variant is that
/// of a whole program. They live on when this one ends; as long as both live, an unexpected end is told.
class OtherWindows final : public QObject {
  Q_OBJECT

 public:
  explicit OtherWindows(const MessageTables& messages, QObject* parent = nullptr)
      : QObject(parent), m_messages(messages) {}

  void Start(const QStringList& documents);

 signals:
  void Said(const qd::workbench::Message& message);

 private:
  const MessageTables& m_messages;
};

}  // namespace qd::workbench

#pragma once

#include <QJsonObject>
#include <QString>

#include "workbench/batch/ModelInfo.h"

namespace qd::workbench {

/// What there is to know of a file, for people, line by line.
QString InfoText(const QString& path, const ModelInfo& info);
/// Likewise for programs; docs/manual/command-line.md describes it.
QJsonObject InfoJson(const QString& path, const ModelInfo& info);

}  // namespace qd::workbench

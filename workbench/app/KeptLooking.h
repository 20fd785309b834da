#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "workbench/display/Looking.h"
#include "workbench/display/Sections.h"

namespace qd::workbench {

// From where a document is looked at, and what cuts its picture, as they stand in its file. Anything may stand in
// a file: what is no camera or no plane is passed over.

QJsonObject JsonOf(const ViewCamera& camera);
void TakeUpCamera(const QJsonObject& json, Looking& looking);
QJsonArray JsonOf(const Sections& sections);
void TakeUpSections(const QJsonArray& json, Sections& sections);

}  // namespace qd::workbench

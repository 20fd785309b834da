#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace qd::test {

/// A folder for the files of one test.
class Files {
 public:
  /// Makes a model with the program that makes the examples.
  QString Make(const QStringList& what, const QString& name) {
    const QString path = m_folder.filePath(name);
    const QString program = QCoreApplication::applicationDirPath() + "/qd_make_models";
    EXPECT_EQ(QProcess::execute(program, QStringList(what) << path), 0);
    return path;
  }
  QString Write(const QString& name, const QByteArray& bytes) {
    QFile file(m_folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }
  static QByteArray Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QString Folder() const { return m_folder.path(); }

 private:
  QTemporaryDir m_folder;
};

}  // namespace qd::test

// Base of a test class in which each function has an empty working directory of its
// own.
#pragma once

#include <QObject>
#include <QTest>
#include <optional>

#include "support/OwnFolder.h"

/// Qt Test calls these around each function of a class that inherits them, unless
/// it has its own.
class OwnFolderTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    folder_.emplace();
    QVERIFY(folder_->isValid());
  }
  void cleanup() { folder_.reset(); }

 private:
  std::optional<OwnFolder> folder_;
};

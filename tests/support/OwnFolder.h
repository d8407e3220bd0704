// An empty working directory for a single test function.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

/// Everything in the working directory, by name.
inline QStringList namesHere() {
  return QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// An empty working directory for one test function; the old one comes back.
class OwnFolder {
 public:
  OwnFolder() : outside_(QDir::currentPath()), folder_(outside_ + QStringLiteral("/XXXXXX")) {
    // A child that gives up its rights still finds its way here.
    constexpr auto all = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner |
                         QFileDevice::ExeGroup | QFileDevice::ExeOther;
    valid_ = folder_.isValid() && QFile::setPermissions(outside_, all) &&
             QFile::setPermissions(folder_.path(), all) && QDir::setCurrent(folder_.path());
  }
  ~OwnFolder() { QDir::setCurrent(outside_); }
  Q_DISABLE_COPY_MOVE(OwnFolder)

  [[nodiscard]] bool isValid() const { return valid_; }

 private:
  QString outside_;
  QTemporaryDir folder_;
  bool valid_ = false;
};

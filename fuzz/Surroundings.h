#pragma once

#include <clocale>

#include "FuzzTarget.h"
#include "support/ScratchFolder.h"

namespace fuzz {

/// What the code under test finds around it: a scratch folder for home,
/// settings and working directory, and an application object.
template <typename Application>
class Surroundings {
 public:
  /// Made at the first call. The folder is gone at the end of the process.
  static void provide() { static Surroundings only; }

 private:
  Surroundings() : app_(*new Application(count_, words_)) {
    // The scratch folder also is the home of others, who keep files there.
    require(scratch_.isValid() && QDir().mkdir(QStringLiteral("here")) &&
                QDir::setCurrent(QStringLiteral("here")),
            "there is an empty folder");
    // The application took over the user's locale, which the C library's
    // scanner would follow.
    std::setlocale(LC_ALL, "C");
    // The toolkit comments on each odd value, which would drown a finding.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
      if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
    });
  }

  ScratchFolder scratch_;
  char name_[5] = "fuzz";
  char* words_[2] = {name_, nullptr};
  int count_ = 1;
  /// Never taken down: at the end of a process the toolkit does that after what it
  /// needs for it.
  Application& app_;
};

}  // namespace fuzz

// A thousand kills during saves. One process does nothing but save, all files
// in turn and in two versions; it is killed at any moment, begun anew, and what
// it leaves must be whole.

#include <QRandomGenerator>
#include <QRegularExpression>
#include <array>
#include <csignal>
#include <poll.h>

#include "SavedState.h"
#include "support/FileText.h"
#include "support/InChild.h"
#include "support/OwnFolder.h"
#include "support/OwnFolderTest.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

const QByteArray macros = QByteArray("\nmacro Key_F5\nscore\n/macro\n").repeated(200);

/// Files of the toolkit's that a kill has kept from being renamed.
QStringList leftovers() {
  static const QRegularExpression temporary(QStringLiteral("\\.(txt|conf)\\.[A-Za-z]{6}$"));
  return (namesHere() + QDir(storeFolder).entryList(QDir::Files)).filter(temporary);
}

/// A child that saves until it is killed, and tells when it has saved
/// everything once.
class Saver {
 public:
  explicit Saver(const std::array<SavedState, 2>& versions) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
      return;
    child_ = startChild([&] {
      for (int round = 0;; ++round) {
        if (!versions[static_cast<std::size_t>(round % 2)].save())
          return notAsWished;
        (void)AutomationFiles::writeMacros(MacroTable());
        if (round == 0 && ::write(ends[1], "1", 1) != 1)
          return notAsWished;
      }
    });
    ::close(ends[1]);
    told_ = ends[0];
  }
  ~Saver() {
    (void)kill();
    ::close(told_);
  }
  Q_DISABLE_COPY_MOVE(Saver)

  /// False where a save fails or does not come to its end.
  [[nodiscard]] bool hasSavedOnce() const {
    pollfd waiting{.fd = told_, .events = POLLIN, .revents = 0};
    char byte = 0;
    return ::poll(&waiting, 1, 10'000) == 1 && ::read(told_, &byte, 1) == 1;
  }
  /// False where it has ended by itself.
  bool kill() {
    if (child_ <= 0)
      return false;
    ::kill(child_, SIGKILL);
    int status = 0;
    ::waitpid(child_, &status, 0);
    child_ = -1;
    return WIFSIGNALED(status);
  }

 private:
  pid_t child_ = -1;
  int told_ = -1;
};

}  // namespace

class TestKills : public OwnFolderTest {
  Q_OBJECT

 private Q_SLOTS:
  void aThousandKillsLeaveEveryFileWhole();
};

void TestKills::aThousandKillsLeaveEveryFileWhole() {
  constexpr int kills = 1000;
  const std::array<SavedState, 2> versions{SavedState(1), SavedState(2)};
  std::array<QByteArrayList, 2> expected;
  for (const std::size_t version : {0U, 1U}) {
    QVERIFY(versions[version].save());
    expected[version] = storedBytes();
  }
  for (int file = 0; file < expected[0].size(); ++file) {
    QVERIFY(expected[0].at(file).size() > 500);
    QVERIFY(expected[0].at(file).size() != expected[1].at(file).size());
  }

  QRandomGenerator random(1);
  int inTheMiddle = 0;
  int emptiedMacros = 0;
  for (int kill = 0; kill < kills; ++kill) {
    QVERIFY(put(automation::macrosPath, macros));
    const qsizetype leftBefore = leftovers().size();
    {
      Saver saver(versions);
      // Some are killed in their first saves, and none of these may wait.
      if (kill % 4 != 0)
        QVERIFY2(saver.hasSavedOnce(), "a save after a kill fails or hangs");
      ::usleep(random.bounded(1U, 4000U));
      QVERIFY2(saver.kill(), "a save after a kill fails");
    }
    const QByteArrayList found = storedBytes();
    for (int file = 0; file < found.size(); ++file)
      QVERIFY2(found.at(file) == expected[0].at(file) || found.at(file) == expected[1].at(file),
               qPrintable(QStringLiteral("after kill %1 file %2 is neither the old nor the new")
                              .arg(kill)
                              .arg(file)));
    const QByteArray left = contentsOf(automation::macrosPath);
    QVERIFY(left.isEmpty() || left == macros);
    QVERIFY2(leftovers().size() <= leftBefore + 1, "a kill leaves more than one file behind");
    inTheMiddle += found != expected[0] && found != expected[1] ? 1 : 0;
    emptiedMacros += left.isEmpty() ? 1 : 0;
  }
  // The kills came where they hurt.
  QVERIFY2(inTheMiddle > kills / 10, qPrintable(QString::number(inTheMiddle)));
  QVERIFY2(emptiedMacros > kills / 10, qPrintable(QString::number(emptiedMacros)));

  // What they left behind is in nobody's way.
  const std::optional<SavedState> start = SavedState::load();
  QVERIFY(start);
  QVERIFY(start->aliases.entries() == versions[0].aliases.entries() ||
          start->aliases.entries() == versions[1].aliases.entries());
  for (const SavedState& version : versions) {
    QVERIFY(version.save());
    QVERIFY(SavedState::load() == version);
  }
}

KELMORA_TEST_MAIN(TestKills)
#include "tst_kills.moc"

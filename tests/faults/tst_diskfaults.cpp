// Disks that take no more and folders that take nothing: whatever is saved
// there tells the truth about it, the old file stays whole, and once the fault
// is mended the next save succeeds.

#include <QFileInfo>
#include <QGuiApplication>
#include <QTextCursor>
#include <QTextDocument>
#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "SavedState.h"
#include "settings/SettingsFile.h"
#include "support/FileText.h"
#include "support/InChild.h"
#include "support/OwnFolder.h"
#include "support/OwnFolderTest.h"
#include "support/ScratchMain.h"
#include "terminal/session/SessionCapture.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::settings;
using namespace kelmora::terminal;

namespace {

constexpr rlim_t sizeLimit = 300;

/// Something that goes wrong with the working directory's disk, in a child.
struct Fault {
  const char* name;
  /// False where this user cannot have it.
  bool (*prepare)();
  bool (*begin)();
  bool (*end)();
  /// The administrator's rights, and the owner's over a file that mends its own
  /// permissions, may find a way around it.
  bool alwaysFatal;
};

bool nothing() {
  return true;
}

bool limitSizes(rlim_t size) {
  rlimit limit{};
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
    return false;
  limit.rlim_cur = size;
  return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

#ifdef Q_OS_LINUX
bool mountDisk(const char* options) {
  return QDir().mkdir(QStringLiteral("disk")) && leaveCommonMounts() &&
         mount("none", "disk", "tmpfs", 0, options) == 0 && chdir("disk") == 0;
}

bool fillDisk() {
  QFile filler(QStringLiteral("filler"));
  if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
    return false;
  while (filler.write(QByteArray(512, 'f')) > 0) {
  }
  return true;
}

bool takeAllNames() {
  for (int i = 0; put(QStringLiteral("filler%1").arg(i), {}); ++i) {
  }
  return true;
}

bool freeDisk() {
  for (const QString& name : namesHere())
    if (name.startsWith(QStringLiteral("filler")) && !QFile::remove(name))
      return false;
  return true;
}
#endif

bool setModes(mode_t file, mode_t folder) {
  for (const QString& place : {QStringLiteral("."), storeFolder}) {
    for (const QString& name : QDir(place).entryList(QDir::Files))
      if (chmod(QFile::encodeName(place + u'/' + name).constData(), file) != 0)
        return false;
    if (QDir(place).exists() && chmod(QFile::encodeName(place).constData(), folder) != 0)
      return false;
  }
  return true;
}

bool lockFolder() {
  constexpr uid_t nobody = 65534;
  if (!setModes(0444, 0555))
    return false;
  // Rights bind an ordinary user alone, by all three of the process's names.
  return geteuid() != 0 || (setresgid(nobody, nobody, 0) == 0 && setresuid(nobody, nobody, 0) == 0);
}

bool unlockFolder() {
  uid_t real = 0, effective = 0, saved = 0;
  if (getresuid(&real, &effective, &saved) != 0 || (saved == 0 && setresuid(0, 0, 0) != 0))
    return false;
  return (saved != 0 || setresgid(0, 0, 0) == 0) && setModes(0600, 0755);
}

const std::vector<Fault>& faults() {
  static const std::vector<Fault> all{
      {"no file may be longer", nothing, [] { return limitSizes(sizeLimit); },
       [] { return limitSizes(RLIM_INFINITY); }, true},
#ifdef Q_OS_LINUX
      {"the disk is full", [] { return mountDisk("size=128k"); }, fillDisk, freeDisk, true},
      {"the disk takes no more files", [] { return mountDisk("size=1m,nr_inodes=20"); },
       takeAllNames, freeDisk, true},
#endif
      {"folder and files can only be read", nothing, lockFolder, unlockFolder, false},
  };
  return all;
}

/// Something that the client saves.
struct Saved {
  const char* name;
  QString file;
  /// What it says about its success; nothing where it says nothing.
  std::optional<bool> (*save)(const SavedState& state);
  /// Whether its owner may save it although it is protected against writing.
  bool mendsPermissions = false;
};

std::optional<bool> saveSession(const SavedState& state) {
  QTextDocument document;
  QTextCursor(&document).insertText(QStringList(state.variables.keys()).join(u'\n'));
  return captureSession(document, "#000000", QStringLiteral("session.html"));
}

const std::vector<Saved>& allSaved() {
  static const std::vector<Saved> all{
      {"aliases", automation::aliasesPath,
       [](const SavedState& state) {
         return std::optional(AutomationFiles().writeAliases(state.aliases));
       }},
      {"triggers", automation::triggersPath,
       [](const SavedState& state) {
         return std::optional(AutomationFiles().writeTriggers(state.triggers));
       }},
      {"variables", automation::variablesPath,
       [](const SavedState& state) {
         return std::optional(AutomationFiles().writeVariables(state.variables));
       }},
      {"settings store", storePath,
       [](const SavedState& state) {
         SettingsStore({storePath}).save(state.settings, state.place);
         return std::optional<bool>();
       },
       true},
      {"exported settings", QStringLiteral("my.settings"),
       [](const SavedState& state) {
         return std::optional(
             settings::exportSettings(state.settings, QStringLiteral("my.settings")));
       }},
      {"saved session", QStringLiteral("session.html"), saveSession},
  };
  return all;
}

/// Where a scenario came to before it went wrong.
int stopped(const char* where) {
  std::fprintf(stderr, "stopped: %s\n", where);
  return notAsWished;
}

}  // namespace

class TestDiskFaults : public OwnFolderTest {
  Q_OBJECT

 private Q_SLOTS:
  void theOldFileStandsUntilTheNewOneCan_data();
  void theOldFileStandsUntilTheNewOneCan();
  void aFirstSaveThatFailsLeavesNothingToStumbleOver_data();
  void aFirstSaveThatFailsLeavesNothingToStumbleOver();
  void theMacroFileKeepsItsRule_data();
  void theMacroFileKeepsItsRule();

 private:
  const SavedState old_{1};
  const SavedState new_{2};
};

void TestDiskFaults::theOldFileStandsUntilTheNewOneCan_data() {
  QTest::addColumn<int>("fault");
  QTest::addColumn<int>("saved");
  for (std::size_t fault = 0; fault < faults().size(); ++fault)
    for (std::size_t saved = 0; saved < allSaved().size(); ++saved)
      QTest::addRow("%s: %s", allSaved()[saved].name, faults()[fault].name)
          << static_cast<int>(fault) << static_cast<int>(saved);
}

void TestDiskFaults::theOldFileStandsUntilTheNewOneCan() {
  QFETCH(int, fault);
  QFETCH(int, saved);
  const Fault& disk = faults()[static_cast<std::size_t>(fault)];
  const Saved& thing = allSaved()[static_cast<std::size_t>(saved)];
  const bool mustFail = disk.alwaysFatal || geteuid() == 0 || !thing.mendsPermissions;
  const int result = inChild([&] {
    if (!disk.prepare())
      return cannotTry;
    if (thing.save(new_) == false)
      return stopped("the first save");
    const QByteArray newBytes = contentsOf(thing.file);
    if (thing.save(old_) == false)
      return stopped("the second save");
    const QByteArray oldBytes = contentsOf(thing.file);
    if (oldBytes.size() < 400 || newBytes.size() < 400 || oldBytes == newBytes)
      return stopped("saving what differs");
    if (!disk.begin())
      return cannotTry;
    const std::optional<bool> outcome = thing.save(new_);
    const QByteArray found = contentsOf(thing.file);
    const bool failed = found == oldBytes;
    if (mustFail && !failed)
      return stopped("keeping the old file");
    if (!failed && found != newBytes)
      return stopped("keeping one of the files whole");
    if (outcome && *outcome == failed)
      return stopped("telling the truth");
    if (!disk.end())
      return stopped("mending the disk");
    if (thing.save(new_) == false || contentsOf(thing.file) != newBytes)
      return stopped("saving afterwards");
    return asWished;
  });
  if (result == cannotTry)
    QSKIP("this user cannot have such a disk");
  QCOMPARE(result, asWished);
}

void TestDiskFaults::aFirstSaveThatFailsLeavesNothingToStumbleOver_data() {
  theOldFileStandsUntilTheNewOneCan_data();
}

void TestDiskFaults::aFirstSaveThatFailsLeavesNothingToStumbleOver() {
  QFETCH(int, fault);
  QFETCH(int, saved);
  const Fault& disk = faults()[static_cast<std::size_t>(fault)];
  const Saved& thing = allSaved()[static_cast<std::size_t>(saved)];
  const int result = inChild([&] {
    if (!disk.prepare())
      return cannotTry;
    if (!disk.begin())
      return cannotTry;
    if (thing.save(new_) == true)
      return stopped("telling of the failure");
    // An empty file is what a start makes of a missing one.
    if (QFileInfo(thing.file).size() != 0)
      return stopped("leaving no part of the file");
    if (!disk.end())
      return stopped("mending the disk");
    if (thing.save(new_) == false || contentsOf(thing.file).size() < 400)
      return stopped("saving afterwards");
    return asWished;
  });
  if (result == cannotTry)
    QSKIP("this user cannot have such a disk");
  QCOMPARE(result, asWished);
}

void TestDiskFaults::theMacroFileKeepsItsRule_data() {
  QTest::addColumn<int>("fault");
  for (std::size_t fault = 0; fault < faults().size(); ++fault)
    QTest::newRow(faults()[fault].name) << static_cast<int>(fault);
}

void TestDiskFaults::theMacroFileKeepsItsRule() {
  QFETCH(int, fault);
  const Fault& disk = faults()[static_cast<std::size_t>(fault)];
  const int result = inChild([&] {
    if (!disk.prepare())
      return cannotTry;
    const QByteArray bytes = "\nmacro Key_F5\nscore\n/macro\n";
    if (!put(automation::macrosPath, bytes) || !disk.begin())
      return cannotTry;
    // It succeeds where the file cannot be opened, and empties it where it can.
    const bool succeeded = AutomationFiles::writeMacros(MacroTable());
    if (contentsOf(automation::macrosPath) != (succeeded ? bytes : QByteArray("")))
      return stopped("keeping the rule");
    return succeeded == disk.alwaysFatal ? stopped("opening the file") : asWished;
  });
  if (result == cannotTry)
    QSKIP("this user cannot have such a disk");
  QCOMPARE(result, asWished);
}

KELMORA_VALUE_TEST_MAIN(TestDiskFaults)
#include "tst_diskfaults.moc"

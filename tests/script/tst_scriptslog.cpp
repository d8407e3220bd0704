#include <QTest>

#include "script/Log.h"
#include "script/ScriptFixture.h"
#include "support/LogLines.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

/// What scripts lose is in the log for whoever switches it on, without the text
/// of what was typed.
class TestScriptsLog : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isSilentUnlessSwitchedOn();
  void tellsWhatIsLost_data();
  void tellsWhatIsLost();
  void tellsOfTimersThatWaitAtTheEnd();
};

void TestScriptsLog::isSilentUnlessSwitchedOn() {
  QVERIFY(!scriptsLog().isDebugEnabled());
  QVERIFY(!scriptsLog().isInfoEnabled());
  QVERIFY(!scriptsLog().isWarningEnabled());
  QVERIFY(!scriptsLog().isCriticalEnabled());
}

void TestScriptsLog::tellsWhatIsLost_data() {
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<QStringList>("lines");
  QTest::newRow("a run that is stopped") << QStringList{"/repeat 500, /repeat 500, secret"}
                                         << QStringList{"run stopped, lists and loops open: 3"};
  QTest::newRow("an endless alias")
      << QStringList{"secret alias"}
      << QStringList{"endless alias stopped, lists and loops open: 1"};
  QTest::newRow("the same in a loop is told once")
      << QStringList{"/repeat 3, secret alias"}
      << QStringList{"endless alias stopped, lists and loops open: 2"};
  QTest::newRow("an argument that is cut") << QStringList{"/set secret, " + QString(2000, u'x')}
                                           << QStringList{"argument cut, command \"/set\""};
  QTest::newRow("a value that is cut")
      << QStringList{"/add secret, {secret}"} << QStringList{"value or text cut, command \"/add\""};
  QTest::newRow("a text that is cut") << QStringList{"/set a, {secret}{secret}"}
                                      << QStringList{"value or text cut, command \"/set\""};
  QTest::newRow("a pause whose id is taken")
      << QStringList{"/repeat 2, secret pause"}
      << QStringList{"pause refused, its id is taken; actions dropped: 2"};
  QTest::newRow("a pause that is cancelled")
      << QStringList{"secret pause", "/unpause secret"}
      << QStringList{"timer cancelled by a script; actions dropped: 2"};
  QTest::newRow("nothing is lost")
      << QStringList{"secret", "/set secret, 5", "/unpause secret", "/set secret", "secret pause"}
      << QStringList();
}

void TestScriptsLog::tellsWhatIsLost() {
  QFETCH(const QStringList, actions);
  ScriptFixture script(100'000);
  script.host.keepsLines = false;
  script.variables.set("secret", QString(50'000, u'x'));
  script.aliases["secret alias"] = QStringList{"secret alias"};
  script.aliases["secret pause"] = QStringList{"/pause secret, 60000", "secret", "secret"};
  const LogLines log("kelmora.scripts");
  script.run(actions);
  QTEST(log.lines(), "lines");
}

void TestScriptsLog::tellsOfTimersThatWaitAtTheEnd() {
  const LogLines log("kelmora.scripts");
  {
    ScriptFixture script;
    script.run({"/pause t, 60000", "secret"});
    script.run({"/pause u, 60000", "secret"});
    QCOMPARE(log.lines(), QStringList());
  }
  QCOMPARE(log.lines(), QStringList{"waiting timers dropped at the end: 2"});
}

KELMORA_TEST_MAIN(TestScriptsLog)
#include "tst_scriptslog.moc"

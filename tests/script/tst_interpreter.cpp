#include "script/ActionQueue.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"
#include "support/ScratchMain.h"

#include <QBuffer>
#include <QTest>
#include <QTextStream>

namespace {

class RecordingHost : public ScriptHost {
 public:
  RecordingHost() { device_.open(QIODevice::ReadWrite); }
  [[nodiscard]] QIODevice& gameDevice() override { return device_; }
  void sendLine(QTextStream& stream, const QString& line) override {
    sent << line;
    devices << stream.device();
    unicodeDetection << stream.autoDetectUnicode();
  }

  QStringList sent;
  QList<QIODevice*> devices;
  QList<bool> unicodeDetection;

 private:
  QBuffer device_;
};

}  // namespace

class TestInterpreter : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void sends_data();
  void sends();
  void aListRunsInOrderThroughOneDevice();
  void anEmptyListSendsNothing();
};

void TestInterpreter::sends_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("line");
  QTest::newRow("a plain line is sent as it is") << "look" << "look";
  QTest::newRow("blanks at its ends are kept") << "  look " << "  look ";
  QTest::newRow("an empty action sends an empty line") << "" << "";
  QTest::newRow("a doubled slash sends a single one") << "//who" << "/who";
  QTest::newRow("only the first of three slashes is taken off") << "///who" << "//who";
  QTest::newRow("two slashes alone send one") << "//" << "/";
  QTest::newRow("a slash alone is sent") << "/" << "/";
  QTest::newRow("a slash word that is no command is sent with its slash") << "/wave" << "/wave";
  QTest::newRow("braces are not replaced in what is sent") << "say {name}" << "say {name}";
}

void TestInterpreter::sends() {
  QFETCH(const QString, action);
  QFETCH(const QString, line);
  RecordingHost host;
  Interpreter interpreter(host);
  QTextStream stream(&host.gameDevice());
  QString timerId;
  QCOMPARE(interpreter.interpretAction(action, stream, timerId), 0);
  QCOMPARE(host.sent, QStringList{line});
  QVERIFY(timerId.isEmpty());
}

void TestInterpreter::aListRunsInOrderThroughOneDevice() {
  RecordingHost host;
  Interpreter interpreter(host);
  ActionQueue queue(host, interpreter);
  queue.runActions({"north", "", "//open door"});
  QCOMPARE(host.sent, (QStringList{"north", "", "/open door"}));
  QCOMPARE(host.devices, QList<QIODevice*>(3, &host.gameDevice()));
  QCOMPARE(host.unicodeDetection, QList<bool>(3, true));
}

void TestInterpreter::anEmptyListSendsNothing() {
  RecordingHost host;
  Interpreter interpreter(host);
  ActionQueue queue(host, interpreter);
  queue.runActions({});
  QVERIFY(host.sent.isEmpty());
}

KELMORA_TEST_MAIN(TestInterpreter)
#include "tst_interpreter.moc"

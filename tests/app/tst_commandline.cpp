#include "app/CommandLine.h"
#include "support/ScratchMain.h"

using namespace kelmora::app;

/// What the program answers to its arguments instead of opening its window.
class TestCommandLine : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void opensTheWindow_data();
  void opensTheWindow();
  void answers_data();
  void answers();
};

void TestCommandLine::opensTheWindow_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::newRow("no argument") << QStringList();
  QTest::newRow("arguments that are no options") << QStringList{"kelmora.example", "4023"};
  QTest::newRow("an option of the toolkit") << QStringList{"-reverse"};
  QTest::newRow("one with two dashes") << QStringList{"--reverse"};
  QTest::newRow("one with a value") << QStringList{"-stylesheet", "play.qss"};
  QTest::newRow("one with a value behind an equals sign") << QStringList{"-style=fusion"};
  QTest::newRow("one whose value looks like ours") << QStringList{"-style", "--help"};
  QTest::newRow("what a session manager adds") << QStringList{"-session", "1_2_3"};
  QTest::newRow("ours behind two dashes alone") << QStringList{"--", "--help"};
}

void TestCommandLine::opensTheWindow() {
  QFETCH(const QStringList, arguments);
  QVERIFY(!answerTo(arguments).has_value());
}

void TestCommandLine::answers_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::addColumn<int>("exitCode");
  QTest::addColumn<QString>("beginning");
  const auto unknown = [](const char* option) {
    return QStringLiteral("kelmora: Unknown option '%1'.\nTry 'kelmora --help'.\n").arg(option);
  };
  QTest::newRow("--help") << QStringList{"--help"} << 0 << "Usage: kelmora [options]\n";
  QTest::newRow("-h") << QStringList{"-h"} << 0 << "Usage: kelmora [options]\n";
  QTest::newRow("--version") << QStringList{"--version"} << 0 << "kelmora 3.9b\n";
  QTest::newRow("-v") << QStringList{"-v"} << 0 << "kelmora 3.9b\n";
  QTest::newRow("both: the help is enough")
      << QStringList{"-v", "-h"} << 0 << "Usage: kelmora [options]\n";
  QTest::newRow("among others") << QStringList{"-style", "fusion", "x", "--version"} << 0
                                << "kelmora 3.9b\n";
  QTest::newRow("an unknown option") << QStringList{"--port"} << 2 << unknown("port");
  QTest::newRow("an unknown short one") << QStringList{"-x"} << 2 << unknown("x");
  QTest::newRow("an unknown one beside ours")
      << QStringList{"--help", "--port"} << 2 << unknown("port");
  QTest::newRow("a value too many")
      << QStringList{"--version=2"} << 2 << "kelmora: Unexpected value after '--version'.\n";
  QTest::newRow("a value that is missing")
      << QStringList{"-style"} << 2 << "kelmora: Missing value after '-style'.\n";
}

void TestCommandLine::answers() {
  QFETCH(const QStringList, arguments);
  QFETCH(const int, exitCode);
  QFETCH(const QString, beginning);
  const auto answer = answerTo(arguments);
  QVERIFY(answer.has_value());
  QCOMPARE(answer->text.left(beginning.size()), beginning);
  QVERIFY(answer->text.endsWith('\n'));
  QCOMPARE(answer->exitCode, exitCode);
}

KELMORA_TEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"

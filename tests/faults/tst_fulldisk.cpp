#include <QApplication>
#include <QCheckBox>
#include <QDialog>

#include "app/PlayWindow.h"
#include "automation/EditorControls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/SizeLimit.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

constexpr rlim_t fullDisk = 200;
const QString longText(500, u'x');

}  // namespace

/// A player goes on on a full disk: everything stays as it was in the files and
/// as it is in the window, and is saved as soon as there is room again.
class TestFullDisk : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void editorsKeepTheirEntries_data();
  void editorsKeepTheirEntries();
  void appliedOptionsStayInForce();
  void closingKeepsTheOldVariables();
  void anExportThatFailsSaysSo();
  void aSavedSessionKeepsTheOldOne();
};

void TestFullDisk::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  for (const QString& name : QDir().entryList(QDir::Files))
    QFile::remove(name);
}

void TestFullDisk::editorsKeepTheirEntries_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("entry");
  QTest::addColumn<QString>("file");
  QTest::newRow("aliases") << 8 << "alias"
                           << "aliases.txt";
  QTest::newRow("triggers") << 9 << "trigger"
                            << "triggers.txt";
}

void TestFullDisk::editorsKeepTheirEntries() {
  QFETCH(int, action);
  QFETCH(QString, entry);
  QFETCH(QString, file);
  const QString old = QStringLiteral("\n%1 \"old\"\n%2\n/%1\n").arg(entry, longText);
  writeFile(file, old.toLatin1());
  PlayWindow play(5000);
  play.actions.at(action)->trigger();
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog)
    QFAIL("no editor");
  const EditorControls editor(*dialog, entry);
  QVERIFY(editor.complete() && editor.label);
  {
    const SizeLimit limit(fullDisk);
    click(editor.add);
    click(editor.edit);
    retype(editor.label, QStringLiteral("new"));
    retype(editor.commands, QStringLiteral("say hello"));
    click(editor.save);
    QCOMPARE(contentsOf(file), old.toLatin1());
    QCOMPARE(editor.items(), (QStringList{"old", "new"}));
  }
  // Any later change takes all of them along.
  click(editor.edit);
  click(editor.save);
  QCOMPARE(contentsOf(file),
           old.toLatin1() + QStringLiteral("\n%1 \"new\"\nsay hello\n/%1\n").arg(entry).toLatin1());
  click(editor.close);
}

void TestFullDisk::appliedOptionsStayInForce() {
  PlayWindow play(5000, {{"proxyPassword", longText}});
  QVERIFY(!play.profile.settings.flushInput);
  const auto flushStored = [&] { return play.store.value("flushInput").toInt() != 0; };
  const auto apply = [&] {
    play.actions.at(5)->trigger();
    QDialog* dialog = play.dialogTitled("General Settings");
    for (QCheckBox* box : dialog->findChildren<QCheckBox*>())
      if (box->text() == "Flush input bar")
        box->setChecked(true);
    click(buttonOf(*dialog, "Apply"));
    return !dialog->isVisible();
  };
  {
    const SizeLimit limit(fullDisk);
    QVERIFY(apply());
    QVERIFY(play.profile.settings.flushInput);
    QVERIFY(!flushStored());
    QCOMPARE(play.store.value("proxyPassword").toString(), longText);
  }
  QVERIFY(apply());
  QVERIFY(flushStored());
}

void TestFullDisk::closingKeepsTheOldVariables() {
  const QByteArray old = "\nvariable long \"" + longText.toLatin1() + "\"\n";
  writeFile("variables.txt", old);
  PlayWindow play(5000);
  play.type("/set gold, 5");
  {
    const SizeLimit limit(fullDisk);
    QVERIFY(play.window->close());
  }
  QCOMPARE(contentsOf("variables.txt"), old);
  QCOMPARE(play.profile.variables.value("gold"), QString("5"));
  play.window->show();
  QVERIFY(play.window->close());
  QCOMPARE(contentsOf("variables.txt"), "\nvariable gold \"5\"\n" + old);
}

void TestFullDisk::anExportThatFailsSaysSo() {
  PlayWindow play(5000);
  const auto file = ExpectedDialog::file("my.settings", "Export Settings",
                                         "Kelmora Client Settings (*.settings)");
  {
    const DialogAnswers answers{file};
    play.actions.at(3)->trigger();
    QVERIFY(answers.allCame());
  }
  const QByteArray old = contentsOf("my.settings");
  QCOMPARE(old.count('\n'), 37);
  play.profile.settings.port = 4023;
  {
    const SizeLimit limit(fullDisk);
    const DialogAnswers answers{
        file, ExpectedDialog::information(
                  "Export Settings",
                  "There has been a failure exporting settings to the specified file.")};
    play.actions.at(3)->trigger();
    QVERIFY(answers.allCame());
  }
  QCOMPARE(contentsOf("my.settings"), old);
  const DialogAnswers answers{file};
  play.actions.at(3)->trigger();
  QVERIFY(contentsOf("my.settings").contains("\nport 4023\n"));
}

void TestFullDisk::aSavedSessionKeepsTheOldOne() {
  PlayWindow play(5000);
  play.type("first words");
  const auto file = ExpectedDialog::file("session.html");
  const DialogAnswers answers{file, file, file};
  play.actions.at(2)->trigger();
  const QByteArray old = contentsOf("session.html");
  QVERIFY(old.contains("first words"));
  play.type("second words");
  {
    const SizeLimit limit(fullDisk);
    play.actions.at(2)->trigger();
  }
  QCOMPARE(contentsOf("session.html"), old);
  QVERIFY(play.text().contains("second words"));
  play.actions.at(2)->trigger();
  QVERIFY(contentsOf("session.html").contains("second words"));
}

KELMORA_GUI_TEST_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

/// The dialogs of a real window, opened by their toolbar actions.
class TestDialogsFromToolbar : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void opens_data();
  void opens();
  void applyingTheGeneralSettingsReachesTheWindow();
  void applyingWritesTheVariables_data();
  void applyingWritesTheVariables();
  void anAliasAddedInItsEditorRunsAtOnce();
};

void TestDialogsFromToolbar::opens_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("title");
  QTest::addColumn<bool>("modal");
  QTest::newRow("general settings") << 5 << "General Settings" << true;
  QTest::newRow("proxy settings") << 6 << "Proxy Settings" << true;
  QTest::newRow("macros") << 7 << "Macros" << true;
  QTest::newRow("aliases") << 8 << "Aliases" << true;
  QTest::newRow("triggers") << 9 << "Triggers" << true;
  QTest::newRow("help, beside which one can play on") << 10 << "Kelmora Help" << false;
}

void TestDialogsFromToolbar::opens() {
  QFETCH(const int, action);
  QFETCH(const QString, title);
  QFETCH(const bool, modal);
  PlayWindow play(5000);
  QDialog* dialog = play.dialogTitled(title);
  QVERIFY(dialog);
  QVERIFY(!dialog->isVisible());
  // The same dialog each time: created once, shown and hidden.
  for (int round = 0; round < 2; ++round) {
    play.actions.at(action)->trigger();
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->isModal(), modal);
    QCOMPARE(play.dialogTitled(title), dialog);
    dialog->close();
    QVERIFY(!dialog->isVisible());
  }
}

void TestDialogsFromToolbar::applyingTheGeneralSettingsReachesTheWindow() {
  PlayWindow play(5000, {{"hostName", "localhost"}});
  play.actions.at(5)->trigger();
  QDialog* dialog = play.dialogTitled("General Settings");
  for (QCheckBox* box : dialog->findChildren<QCheckBox*>())
    if (box->text() == "Flush input bar")
      box->setChecked(true);
  for (QComboBox* box : dialog->findChildren<QComboBox*>())
    if (box->findText("localhost 4023") >= 0)
      box->setCurrentText("localhost 4023");
  click(buttonOf(*dialog, "Apply"));
  QVERIFY(!dialog->isVisible());
  QCOMPARE(play.profile.settings.port, 4023);
  play.type("gone");
  QCOMPARE(play.bar->text(), QString());
  QCOMPARE(play.store.value("port").toInt(), 4023);
  QCOMPARE(play.store.value("yellow").toString(), QString("#5e610b"));
}

void TestDialogsFromToolbar::applyingWritesTheVariables_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("title");
  QTest::addColumn<QString>("button");
  QTest::addColumn<bool>("written");
  QTest::newRow("general settings") << 5 << "General Settings"
                                    << "Apply" << true;
  QTest::newRow("general settings, cancelled") << 5 << "General Settings"
                                               << "Cancel" << false;
  QTest::newRow("proxy settings") << 6 << "Proxy Settings"
                                  << "Apply" << true;
  QTest::newRow("proxy settings, cancelled") << 6 << "Proxy Settings"
                                             << "Cancel" << false;
  QTest::newRow("interface settings") << 5 << "Interface Settings"
                                      << "Apply" << true;
  QTest::newRow("interface settings, cancelled") << 5 << "Interface Settings"
                                                 << "Cancel" << false;
}

void TestDialogsFromToolbar::applyingWritesTheVariables() {
  QFETCH(const int, action);
  QFETCH(const QString, title);
  QFETCH(const QString, button);
  QFETCH(const bool, written);
  QFile::remove("variables.txt");
  PlayWindow play(5000);
  QCOMPARE(contentsOf("variables.txt"), QByteArray());
  play.type("/set hp, 15");
  play.actions.at(action)->trigger();
  if (title == "Interface Settings")
    click(buttonOf(*play.dialogTitled("General Settings"), "Interface style"));
  QVERIFY(play.dialogTitled(title)->isVisible());
  click(buttonOf(*play.dialogTitled(title), button));
  QVERIFY(!play.dialogTitled(title)->isVisible());
  QCOMPARE(contentsOf("variables.txt"),
           written ? QByteArray("\nvariable hp \"15\"\n") : QByteArray());
}

void TestDialogsFromToolbar::anAliasAddedInItsEditorRunsAtOnce() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.actions.at(8)->trigger();
  QDialog* dialog = play.dialogTitled("Aliases");
  click(buttonOf(*dialog, "Add alias"));
  click(buttonOf(*dialog, "Edit alias"));
  auto* name = dialog->findChild<QLineEdit*>();
  name->selectAll();
  QTest::keyClicks(name, "hi");
  click(buttonOf(*dialog, "Save alias"));
  click(buttonOf(*dialog, "Close"));
  QCOMPARE(play.profile.aliases.entries().first().name, QString("hi"));
  play.type("hi;mark");
  // The commands field was left empty, which is one empty line.
  QTRY_COMPARE(server.received(), QByteArray("\r\nmark\r\n"));
}

KELMORA_GUI_TEST_MAIN(TestDialogsFromToolbar)
#include "tst_dialogsfromtoolbar.moc"

#include <QAction>
#include <QApplication>
#include <QGridLayout>
#include <QMetaMethod>
#include <QNetworkProxy>
#include <QProgressBar>
#include <QStyle>
#include <QTcpSocket>
#include <QTest>
#include <QToolBar>

#include "app/MainWidget.h"
#include "app/Profile.h"
#include "settings/SettingsFields.h"
#include "support/DialogAnswers.h"
#include "support/OwnStore.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::settings;
using namespace kelmora::terminal;

/// The window as it stands after construction, before any connection.
class TestMainWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void theSlotTableHasFifteenSlotsInOrder();
  void titleAndIcon();
  void firstStartPlacesTheWindow();
  void storedPlaceIsTaken();
  void hostilePlaces_data();
  void hostilePlaces();
  void layoutIsOneColumn();
  void thePaneIsBlackAndReadOnly();
  void fontsComeFromTheSettings();
  void vitalsBars_data();
  void vitalsBars();
  void vitalsFollowThePrompt_data();
  void vitalsFollowThePrompt();
  void promptsWithinOneFrameEndOnTheLast_data();
  void promptsWithinOneFrameEndOnTheLast();
  void theBarHasTheFocusAtTheStart();
  void closingSavesTheSettings();
  void destructionSavesNothing();
  void theStoredStyleIsTaken();
  void anUnknownStyleChangesNothing();
  void theStoredProxyIsInstalledOnlyWhereItIsUsed_data();
  void theStoredProxyIsInstalledOnlyWhereItIsUsed();
  void everyToolbarActionGivesTheBarTheFocus();
  void hostileStoresStart_data();
  void hostileStoresStart();

 private:
  OwnStore store_;
};

void TestMainWidget::init() {
  store_.clear();
}

void TestMainWidget::theSlotTableHasFifteenSlotsInOrder() {
  const QMetaObject& meta = MainWidget::staticMetaObject;
  QStringList slotNames;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
    slotNames << QString::fromLatin1(meta.method(i).methodSignature());
  QCOMPARE(slotNames,
           (QStringList{"connectToServer()", "disconnectFromServer()",
                        "displaySocketError(QAbstractSocket::SocketError)", "readSocketData()",
                        "clientConnected()", "clientDisconnected()", "configureSettings()",
                        "proxySettings()", "saveBuffer()", "saveSettings()", "loadSettings()",
                        "editMacros()", "editTriggers()", "editAliases()", "showHelp()"}));
}

void TestMainWidget::titleAndIcon() {
  Profile profile(store_.place());
  const MainWidget window(profile);
  QCOMPARE(window.windowTitle(), QString("Kelmora - The Official Client"));
  const QImage picture = QIcon(":/icons/mainicon.png").pixmap(64).toImage();
  QVERIFY(!picture.isNull());
  QCOMPARE(window.windowIcon().pixmap(64).toImage(), picture);
}

void TestMainWidget::firstStartPlacesTheWindow() {
  Profile profile(store_.place());
  const MainWidget window(profile);
  QCOMPARE(window.size(), QSize(800, 800));
  QCOMPARE(window.pos(), QPoint(200, 200));
  QCOMPARE(window.findChild<QToolBar*>()->iconSize(), QSize(48, 48));
}

void TestMainWidget::storedPlaceIsTaken() {
  store_.set("size", QSize(640, 500));
  store_.set("pos", QPoint(30, 40));
  Profile profile(store_.place());
  const MainWidget window(profile);
  QCOMPARE(window.size(), QSize(640, 500));
  QCOMPARE(window.pos(), QPoint(30, 40));
}

void TestMainWidget::hostilePlaces_data() {
  QTest::addColumn<QVariant>("size");
  QTest::addColumn<QVariant>("pos");
  QTest::newRow("a giant window opens at the default size")
      << QVariant(QSize(2000000000, 2000000000)) << QVariant(QPoint(200, 200));
  QTest::newRow("a negative size opens at the default size")
      << QVariant(QSize(-5, -5)) << QVariant(QPoint(200, 200));
  QTest::newRow("a size that is no size opens at the default size")
      << QVariant("huge") << QVariant(QPoint(200, 200));
  QTest::newRow("a place outside every screen opens at the default place")
      << QVariant(QSize(800, 800)) << QVariant(QPoint(2000000000, -2000000000));
}

void TestMainWidget::hostilePlaces() {
  QFETCH(const QVariant, size);
  QFETCH(const QVariant, pos);
  store_.set("size", size);
  store_.set("pos", pos);
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  QCOMPARE(window.size(), QSize(800, 800));
  QCOMPARE(window.pos(), QPoint(200, 200));
}

void TestMainWidget::layoutIsOneColumn() {
  Profile profile(store_.place());
  const MainWidget window(profile);
  const auto* grid = qobject_cast<QGridLayout*>(window.layout());
  QVERIFY(grid);
  QCOMPARE(grid->columnCount(), 1);
  QCOMPARE(grid->itemAtPosition(0, 0)->widget(), window.findChild<QToolBar*>());
  QCOMPARE(grid->itemAtPosition(1, 0)->widget(), window.findChild<OutputWidget*>());
  QCOMPARE(grid->itemAtPosition(2, 0)->widget(), window.findChild<InputWidget*>());
}

void TestMainWidget::thePaneIsBlackAndReadOnly() {
  Profile profile(store_.place());
  const MainWidget window(profile);
  auto* pane = window.findChild<OutputWidget*>();
  QCOMPARE(pane->palette().color(QPalette::Active, QPalette::Base), QColor(Qt::black));
  QCOMPARE(pane->palette().color(QPalette::Inactive, QPalette::Base), QColor(Qt::black));
  QVERIFY(pane->isReadOnly());
  QVERIFY(pane->openExternalLinks());
  QCOMPARE(settled(*pane).document()->maximumBlockCount(), 750);
}

void TestMainWidget::fontsComeFromTheSettings() {
  store_.set("outfont", "Courier,14,-1,5,50,0,0,0,0,0");
  store_.set("infont", "Courier,9,-1,5,75,0,0,0,0,0");
  Profile profile(store_.place());
  const MainWidget window(profile);
  QCOMPARE(window.findChild<OutputWidget*>()->font().pointSize(), 14);
  QCOMPARE(window.findChild<OutputWidget*>()->font().family(), QString("Courier"));
  QCOMPARE(window.findChild<InputWidget*>()->font().pointSize(), 9);
  QVERIFY(window.findChild<InputWidget*>()->font().bold());
}

void TestMainWidget::vitalsBars_data() {
  QTest::addColumn<int>("index");
  QTest::addColumn<QRect>("geometry");
  QTest::addColumn<QString>("styleSheet");
  QTest::newRow("hit points") << 0 << QRect(QPoint(670, 10), QPoint(787, 25))
                              << "::chunk { background-color: red }";
  QTest::newRow("spell points") << 1 << QRect(QPoint(670, 30), QPoint(787, 45))
                                << "::chunk { background-color: blue }";
  QTest::newRow("endurance points")
      << 2 << QRect(QPoint(670, 50), QPoint(787, 65)) << "::chunk { background-color: green }";
}

void TestMainWidget::vitalsBars() {
  QFETCH(const int, index);
  QFETCH(const QRect, geometry);
  QFETCH(const QString, styleSheet);
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  const auto bars = window.findChild<QToolBar*>()->findChildren<QProgressBar*>("progHP");
  QCOMPARE(bars.size(), 3);
  QCOMPARE(bars.at(index)->geometry(), geometry);
  QCOMPARE(bars.at(index)->styleSheet(), styleSheet);
  QCOMPARE(bars.at(index)->value(), 100);
  QCOMPARE(bars.at(index)->minimum(), 0);
  QCOMPARE(bars.at(index)->maximum(), 100);
  QVERIFY(!bars.at(index)->isTextVisible());
}

void TestMainWidget::vitalsFollowThePrompt_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QList<int>>("values");
  const auto row = [](const char* name, const char* line, const QList<int>& values) {
    QTest::newRow(name) << QByteArray(line) << values;
  };
  row("a prompt moves all three", "hp: [ 50 / 200 ], sp: [ 10 / 10 ], ep: [ 0 / 80 ]",
      {25, 100, 0});
  row("a value above its maximum keeps the bar",
      "hp: [ 300 / 200 ], sp: [ 5 / 10 ], ep: [ 40 / 80 ]", {100, 50, 50});
  row("a negative value empties the bar", "HP: [-3/200], SP: [10/10], EP: [80/80]", {0, 100, 100});
  row("a maximum of nothing keeps the bar", "HP: [0/0], SP: [1/0], EP: [1/4]", {100, 100, 25});
  row("any other line keeps all three", "You have 3 hp.", {100, 100, 100});
}

void TestMainWidget::vitalsFollowThePrompt() {
  QFETCH(const QByteArray, line);
  QFETCH(const QList<int>, values);
  Profile profile(store_.place());
  MainWidget window(profile);
  window.parseVitals(line.constData());
  QList<int> shown;
  for (const QProgressBar* bar : window.findChildren<QProgressBar*>("progHP"))
    shown << bar->value();
  QCOMPARE(shown, values);
}

void TestMainWidget::promptsWithinOneFrameEndOnTheLast_data() {
  QTest::addColumn<QByteArrayList>("prompts");
  QTest::addColumn<QList<int>>("values");
  QTest::newRow("the second stands")
      << QByteArrayList{"HP: [1/10], SP: [2/10], EP: [3/10]", "HP: [9/10], SP: [8/10], EP: [7/10]"}
      << QList<int>{90, 80, 70};
  QTest::newRow("the third of three stands")
      << QByteArrayList{"HP: [1/10], SP: [2/10], EP: [3/10]", "HP: [9/10], SP: [8/10], EP: [7/10]",
                        "HP: [4/10], SP: [5/10], EP: [6/10]"}
      << QList<int>{40, 50, 60};
  QTest::newRow("a bar that the last one cannot move keeps what the one before said")
      << QByteArrayList{"HP: [1/10], SP: [2/10], EP: [3/10]", "HP: [9/10], SP: [8/10], EP: [7/10]",
                        "HP: [4/0], SP: [50/10], EP: [6/10]"}
      << QList<int>{90, 80, 60};
}

void TestMainWidget::promptsWithinOneFrameEndOnTheLast() {
  QFETCH(const QByteArrayList, prompts);
  QFETCH(const QList<int>, values);
  Profile profile(store_.place());
  MainWidget window(profile);
  for (const QByteArray& prompt : prompts)
    window.parseVitals(prompt.constData());
  const auto shown = [&] {
    QList<int> percentages;
    for (const QProgressBar* bar : window.findChildren<QProgressBar*>("progHP"))
      percentages << bar->value();
    return percentages;
  };
  QTRY_COMPARE(shown(), values);
  QTest::qWait(50);  // and stays so
  QCOMPARE(shown(), values);
}

void TestMainWidget::theBarHasTheFocusAtTheStart() {
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  QCOMPARE(QApplication::focusWidget(), window.findChild<InputWidget*>());
}

void TestMainWidget::closingSavesTheSettings() {
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  window.resize(700, 600);
  window.move(50, 60);
  QVERIFY(window.close());
  ClientSettings record;
  const WindowPlace place = SettingsStore(store_.place()).load(record);
  QCOMPARE(place.size, QSize(700, 600));
  QCOMPARE(place.pos, QPoint(50, 60));
  // Every option, and the size and the place of the window.
  QCOMPARE(static_cast<std::size_t>(store_.keys().size()), settings::fields().size() + 2);
}

void TestMainWidget::destructionSavesNothing() {
  {
    Profile profile(store_.place());
    MainWidget window(profile);
    window.resize(700, 600);
  }
  QVERIFY(store_.keys().isEmpty());
}

void TestMainWidget::theStoredStyleIsTaken() {
  const QString before = QApplication::style()->objectName();
  const QString other = before == "windows" ? QString("fusion") : QString("windows");
  store_.set("interfaceStyle", other);
  Profile profile(store_.place());
  const MainWidget window(profile);
  const QString taken = QApplication::style()->objectName();
  QApplication::setStyle(before);
  QCOMPARE(taken, other);
}

void TestMainWidget::theStoredProxyIsInstalledOnlyWhereItIsUsed_data() {
  QTest::addColumn<int>("used");
  QTest::addColumn<QString>("host");
  QTest::newRow("used: it is the application's") << 1 << "stored.invalid";
  QTest::newRow("not used: the application's stays what it was") << 0 << "before.invalid";
}

void TestMainWidget::theStoredProxyIsInstalledOnlyWhereItIsUsed() {
  QFETCH(const int, used);
  QFETCH(const QString, host);
  QNetworkProxy::setApplicationProxy(
      QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("before.invalid")));
  store_.set("useProxyServer", used);
  store_.set("proxyHostName", "stored.invalid");
  Profile profile(store_.place());
  const MainWidget window(profile);
  const QString installed = QNetworkProxy::applicationProxy().hostName();
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  QCOMPARE(installed, host);
}

void TestMainWidget::everyToolbarActionGivesTheBarTheFocus() {
  store_.set("hostName", "127.0.0.1");
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  // Those that ask for a file wait for an answer: saving, exporting and importing.
  const auto cancelled = ExpectedDialog::file({});
  const DialogAnswers answers{cancelled, cancelled, cancelled};
  for (QAction* action : window.findChild<QToolBar*>()->actions()) {
    if (action->isSeparator())
      continue;
    action->setEnabled(true);
    window.findChild<OutputWidget*>()->setFocus();
    action->trigger();
    QVERIFY2(window.focusWidget() == window.findChild<InputWidget*>(), qPrintable(action->text()));
  }
}

void TestMainWidget::anUnknownStyleChangesNothing() {
  const QString before = QApplication::style()->objectName();
  Profile profile(store_.place());
  MainWidget window(profile);
  QCOMPARE(profile.settings.interfaceStyle, QString("Plastique"));
  QCOMPARE(QApplication::style()->objectName(), before);
}

void TestMainWidget::hostileStoresStart_data() {
  QTest::addColumn<QString>("key");
  QTest::addColumn<QVariant>("value");
  QTest::newRow("a font of a hundred thousand points")
      << "outfont" << QVariant("Courier,100000,-1,5,50,0,0,0,0,0");
  QTest::newRow("an input font of a hundred thousand pixels")
      << "infont" << QVariant("Courier,-1,100000,5,50,0,0,0,0,0");
  QTest::newRow("a font that is none") << "infont" << QVariant("no,font");
  QTest::newRow("a font that is a list") << "outfont" << QVariant(QStringList{"a", "b"});
  QTest::newRow("giant icons") << "iconSize" << QVariant(QSize(1 << 30, 1 << 30));
  QTest::newRow("icons of nothing") << "iconSize" << QVariant(QSize(0, 0));
  QTest::newRow("negative icons") << "iconSize" << QVariant(QSize(-48, -48));
  QTest::newRow("a colour of a thousand letters") << "white" << QVariant(QString(1000, 'x'));
  QTest::newRow("a colour that is markup") << "white" << QVariant("\"><b>");
  QTest::newRow("a flag that is a text") << "splitInput" << QVariant("perhaps");
  QTest::newRow("a style of a megabyte") << "interfaceStyle" << QVariant(QString(1000000, 'y'));
  QTest::newRow("a proxy of no known type")
      << "proxyType" << QVariant(std::numeric_limits<int>::max());
}

void TestMainWidget::hostileStoresStart() {
  QFETCH(const QString, key);
  QFETCH(const QVariant, value);
  store_.set(key, value);
  store_.set("useProxyServer", 1);
  Profile profile(store_.place());
  MainWidget window(profile);
  window.show();
  QVERIFY(QTest::qWaitForWindowExposed(&window));
  QVERIFY(window.height() <= 4096);
  QVERIFY(window.findChild<InputWidget*>()->isVisible());
  window.grab();
}

KELMORA_GUI_TEST_MAIN(TestMainWidget)
#include "tst_mainwidget.moc"

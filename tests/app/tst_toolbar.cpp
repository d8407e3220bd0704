#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QProxyStyle>
#include <QStyle>
#include <QTranslator>

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

namespace {

constexpr int importAction = 4;
constexpr int configureAction = 5;

QImage pictureOf(const QString& name) {
  return QIcon(QStringLiteral(":/icons/%1.png").arg(name)).pixmap(48).toImage();
}

/// The three bars as a player sees them: where they are, and how much of each
/// can be seen.
QList<QRect> seenBars(const PlayWindow& play) {
  QList<QRect> seen;
  for (const QProgressBar* bar : play.window->findChildren<QProgressBar*>("progHP"))
    seen << bar->visibleRegion().boundingRect().translated(bar->pos());
  return seen;
}

const QList<QRect> wholeBars{QRect(670, 10, 118, 16), QRect(670, 30, 118, 16),
                             QRect(670, 50, 118, 16)};

/// A style whose tool bars have small icons.
class SmallIcons : public QProxyStyle {
 public:
  SmallIcons() : QProxyStyle(QStringLiteral("Fusion")) {}
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    return metric == PM_ToolBarIconSize ? 12 : QProxyStyle::pixelMetric(metric, option, widget);
  }
};

/// Says every text of the window in another language.
class Foreign : public QTranslator {
 public:
  [[nodiscard]] bool isEmpty() const override { return false; }
  [[nodiscard]] QString translate(const char* context, const char* source, const char* /*comment*/,
                                  int /*count*/) const override {
    const QString text = QString::fromUtf8(source);
    if (qstrcmp(context, "MainWidget") != 0)
      return {};
    return text.startsWith("Ctrl+") ? "Alt+" + text : "foreign " + text;
  }
};

}  // namespace

/// The row of buttons above the pane, with the bars beside them.
class TestToolbar : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void rows_data();
  void rows();
  void separatorsStandBetweenTheGroups();
  void textAndShortcutAreTranslatedTheStatusTipIsNot();
  void isFilledFromTheStart_data();
  void isFilledFromTheStart();
  void anImportedIconSizeLeavesTheBarsWhole_data();
  void anImportedIconSizeLeavesTheBarsWhole();
  void anAppliedIconSizeLeavesTheBarsWhole_data();
  void anAppliedIconSizeLeavesTheBarsWhole();
  void anotherStyleLeavesTheBarsWhole();
  void sizesThatTheToolkitTakes_data();
  void sizesThatTheToolkitTakes();

 private:
  static QToolBar& barOf(const PlayWindow& play) { return *play.window->findChild<QToolBar*>(); }
  static void importSizes(PlayWindow& play, QSize size) {
    writeFile("icons.settings", QStringLiteral("iconSize.width %1\niconSize.height %2\n")
                                    .arg(size.width())
                                    .arg(size.height())
                                    .toLatin1());
    const DialogAnswers answers{ExpectedDialog::file("icons.settings")};
    play.actions.at(importAction)->trigger();
    QCoreApplication::processEvents();
  }
  static void sizeRows();

  const QString styleAtStart_ = QApplication::style()->objectName();
};

void TestToolbar::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestToolbar::cleanup() {
  QApplication::setStyle(styleAtStart_);
}

void TestToolbar::rows_data() {
  QTest::addColumn<int>("index");
  QTest::addColumn<QString>("icon");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("shortcut");
  QTest::addColumn<bool>("enabled");
  const auto row = [](int index, const char* icon, const char* text, const char* shortcut,
                      bool enabled = true) {
    QTest::newRow(text) << index << QString(icon) << QString(text) << QString(shortcut) << enabled;
  };
  row(0, "connect", "Play Kelmora (Ctrl+J)", "Ctrl+J");
  row(1, "disconnect", "Disconnect from Kelmora (Ctrl+D)", "Ctrl+D", false);
  row(2, "savebuffer", "Save game session to file (Ctrl+S)", "Ctrl+S");
  row(3, "savesettings", "Export settings (Ctrl+E)", "Ctrl+E");
  row(4, "loadsettings", "Import settings (Ctrl+I)", "Ctrl+I");
  row(5, "configure", "General settings (Ctrl+G)", "Ctrl+G");
  row(6, "proxy", "Proxy settings (Ctrl+P)", "Ctrl+P");
  row(7, "macros", "Edit macros (Ctrl+M)", "Ctrl+M");
  row(8, "aliases", "Edit aliases (Ctrl+L)", "Ctrl+L");
  row(9, "triggers", "Edit triggers (Ctrl+T)", "Ctrl+T");
  row(10, "help", "Kelmora help (Ctrl+H)", "Ctrl+H");
}

void TestToolbar::rows() {
  QFETCH(const int, index);
  QFETCH(const QString, icon);
  QFETCH(const QString, text);
  QFETCH(const QString, shortcut);
  QFETCH(const bool, enabled);
  const PlayWindow play(5000);
  QCOMPARE(play.actions.size(), 11);
  const QAction& action = *play.actions.at(index);
  QVERIFY(!pictureOf(icon).isNull());
  QCOMPARE(action.icon().pixmap(48).toImage(), pictureOf(icon));
  QCOMPARE(action.text(), text);
  QCOMPARE(action.statusTip(), text);
  QCOMPARE(action.shortcut(), QKeySequence(shortcut));
  QCOMPARE(action.isEnabled(), enabled);
}

void TestToolbar::separatorsStandBetweenTheGroups() {
  const PlayWindow play(5000);
  QList<int> places;
  const QList<QAction*> actions = barOf(play).actions();
  for (int i = 0; i < actions.size(); ++i)
    if (actions.at(i)->isSeparator())
      places << i;
  QCOMPARE(places, (QList<int>{2, 6, 9, 13, 15}));
  QCOMPARE(actions.size(), 16);
}

void TestToolbar::textAndShortcutAreTranslatedTheStatusTipIsNot() {
  Foreign foreign;
  QVERIFY(QCoreApplication::installTranslator(&foreign));
  const PlayWindow play(5000);
  QCoreApplication::removeTranslator(&foreign);
  const PlayWindow plain(5000);
  for (int i = 0; i < 11; ++i) {
    const QAction& action = *plain.actions.at(i);
    QCOMPARE(play.actions.at(i)->text(), "foreign " + action.text());
    QCOMPARE(play.actions.at(i)->shortcut(), QKeySequence("Alt+" + action.shortcut().toString()));
    QCOMPARE(play.actions.at(i)->statusTip(), action.statusTip());
  }
}

void TestToolbar::isFilledFromTheStart_data() {
  sizeRows();
}

void TestToolbar::isFilledFromTheStart() {
  QFETCH(const QSize, size);
  const PlayWindow play(5000, {{"iconSize", size}, {"size", QSize(1000, 800)}});
  QCOMPARE(barOf(play).iconSize(), size);
  QCOMPARE(barOf(play).height(), 70);
  QCOMPARE(seenBars(play), wholeBars);
}

void TestToolbar::sizeRows() {
  QTest::addColumn<QSize>("size");
  for (const int length : {1, 7, 11, 16, 24, 32, 48, 49, 64, 96, 99})
    QTest::addRow("%d by %d", length, length) << QSize(length, length);
  QTest::newRow("flat") << QSize(99, 1);
  QTest::newRow("tall") << QSize(1, 99);
}

void TestToolbar::anImportedIconSizeLeavesTheBarsWhole_data() {
  sizeRows();
  QTest::newRow("nothing") << QSize(0, 0);
  QTest::newRow("far beyond the bar") << QSize(600, 600);
}

void TestToolbar::anImportedIconSizeLeavesTheBarsWhole() {
  QFETCH(const QSize, size);
  PlayWindow play(5000, {{"size", QSize(1000, 800)}});
  for (const QSize imported : {size, QSize(48, 48)}) {
    importSizes(play, imported);
    QCOMPARE(barOf(play).iconSize(), imported);
    QCOMPARE(barOf(play).height(), 70);
    QCOMPARE(barOf(play).minimumHeight(), 70);
    QCOMPARE(barOf(play).maximumHeight(), 70);
    QCOMPARE(seenBars(play), wholeBars);
    QCOMPARE(play.window->size(), QSize(1000, 800));
  }
}

void TestToolbar::anAppliedIconSizeLeavesTheBarsWhole_data() {
  sizeRows();
}

void TestToolbar::anAppliedIconSizeLeavesTheBarsWhole() {
  QFETCH(const QSize, size);
  PlayWindow play(5000, {{"size", QSize(1000, 800)}});
  for (const QSize applied : {size, QSize(48, 48)}) {
    play.actions.at(configureAction)->trigger();
    for (QDialog* dialog : play.window->findChildren<QDialog*>()) {
      if (dialog->windowTitle() != "Interface Settings")
        continue;
      const auto fields = dialog->findChildren<QLineEdit*>();
      QCOMPARE(fields.size(), 2);
      fields.first()->setText(QString::number(applied.width()));
      fields.last()->setText(QString::number(applied.height()));
      buttonOf(*dialog, "Apply")->click();
    }
    QCoreApplication::processEvents();
    QCOMPARE(play.profile.settings.iconSize, applied);
    QCOMPARE(barOf(play).iconSize(), applied);
    QCOMPARE(barOf(play).height(), 70);
    QCOMPARE(seenBars(play), wholeBars);
  }
}

void TestToolbar::anotherStyleLeavesTheBarsWhole() {
  // The style's own icon size, so that a change of style changes it.
  const PlayWindow play(5000, {{"iconSize", QSize(-1, -1)}, {"size", QSize(1000, 800)}});
  QVERIFY(barOf(play).iconSize() != QSize(12, 12));
  QApplication::setStyle(new SmallIcons);
  QCoreApplication::processEvents();
  QCOMPARE(barOf(play).iconSize(), QSize(12, 12));
  QCOMPARE(barOf(play).height(), 70);
  QCOMPARE(seenBars(play), wholeBars);
}

void TestToolbar::sizesThatTheToolkitTakes_data() {
  QTest::addColumn<QSize>("stored");
  QTest::addColumn<QSize>("shown");
  const int own = QApplication::style()->pixelMetric(QStyle::PM_ToolBarIconSize);
  QTest::newRow("nothing") << QSize(0, 0) << QSize(0, 0);
  QTest::newRow("no width") << QSize(0, 48) << QSize(0, 48);
  QTest::newRow("a thousand pixels") << QSize(1000, 1000) << QSize(1000, 1000);
  QTest::newRow("as much as any widget can have")
      << QSize(16777215, 16777215) << QSize(16777215, 16777215);
  QTest::newRow("a negative width is the style's own size") << QSize(-5, 20) << QSize(own, own);
  QTest::newRow("a negative height, too") << QSize(20, -1) << QSize(own, own);
  QTest::newRow("more than any widget can have is the default")
      << QSize(16777216, 16) << QSize(48, 16);
  QTest::newRow("the largest number is the default")
      << QSize(2147483647, 2147483647) << QSize(48, 48);
}

void TestToolbar::sizesThatTheToolkitTakes() {
  QFETCH(const QSize, stored);
  QFETCH(const QSize, shown);
  PlayWindow play(5000, {{"size", QSize(1000, 800)}});
  importSizes(play, stored);
  QCOMPARE(play.profile.settings.iconSize, stored);
  QCOMPARE(barOf(play).iconSize(), shown);
  const PlayWindow again(5000, {{"iconSize", stored}, {"size", QSize(1000, 800)}});
  QCOMPARE(barOf(again).iconSize(), shown);
  for (const PlayWindow* window : {&std::as_const(play), &again}) {
    QCOMPARE(window->window->size(), QSize(1000, 800));
    QVERIFY(window->window->minimumSizeHint().width() < 400);
    QCOMPARE(seenBars(*window), wholeBars);
    QVERIFY(!window->window->grab().isNull());
  }
}

KELMORA_GUI_TEST_MAIN(TestToolbar)
#include "tst_toolbar.moc"

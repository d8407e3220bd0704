#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>

#include "DialogSupport.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/StyleWidget.h"
#include "settings/ServerHosts.h"
#include "support/DialogAnswers.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;
using namespace kelmora::settings;

namespace {

using Record = ClientSettings;

/// The check boxes, from the first row below the header down.
constexpr std::pair<const char*, bool Record::*> options[] = {
    {"Display ANSI color", &Record::displayAnsiColor},
    {"Enable local echo", &Record::displayLocalEcho},
    {"Play beeps", &Record::playBeeps},
    {"Parse html tags", &Record::parseHtml},
    {"Flush input bar", &Record::flushInput},
    {"Display clickable URLs", &Record::displayURLs},
    {"Split input by following string:", &Record::splitInput},
};
constexpr int optionCount = static_cast<int>(std::size(options));
constexpr int splitStringRow = 1 + optionCount;
constexpr int buttonsRow = splitStringRow + 2;

struct Cell {
  int row;
  int column;
  const char* type;  // what the widget inherits
  const char* text;
};

constexpr Cell cellsBesideTheOptions[] = {
    {0, 0, "QLabel", "Settings"},
    {0, 1, "QLabel", "Normal Colors"},
    {0, 2, "QLabel", "Bold Colors"},
    {0, 3, "QLabel", "Display"},
    {splitStringRow, 0, "QLineEdit", ""},
    {splitStringRow + 1, 0, "QLabel", ""},
    {buttonsRow, 0, "QPushButton", "Apply"},
    {1, 1, "QPushButton", "Black"},
    {2, 1, "QPushButton", "Red"},
    {3, 1, "QPushButton", "Green"},
    {4, 1, "QPushButton", "Yellow"},
    {5, 1, "QPushButton", "Blue"},
    {6, 1, "QPushButton", "Magenta"},
    {7, 1, "QPushButton", "Cyan"},
    {8, 1, "QPushButton", "White"},
    {1, 2, "QPushButton", "Black"},
    {2, 2, "QPushButton", "Red"},
    {3, 2, "QPushButton", "Green"},
    {4, 2, "QPushButton", "Yellow"},
    {5, 2, "QPushButton", "Blue"},
    {6, 2, "QPushButton", "Magenta"},
    {7, 2, "QPushButton", "Cyan"},
    {8, 2, "QPushButton", "White"},
    {1, 3, "QPushButton", "Output Window"},
    {2, 3, "QPushButton", "Input Bar"},
    {3, 3, "QPushButton", "Interface style"},
    {5, 3, "QLabel", "Use the following server:"},
    {6, 3, "QComboBox", ""},
    {buttonsRow, 3, "QPushButton", "Cancel"},
};

QList<Cell> allCells() {
  QList<Cell> cells(std::begin(cellsBesideTheOptions), std::end(cellsBesideTheOptions));
  int row = 1;
  for (const auto& option : options)
    cells << Cell{row++, 0, "QCheckBox", option.first};
  return cells;
}

/// Whether each of them is on, in their order.
QList<bool> optionsOf(const Record& record) {
  QList<bool> values;
  for (const auto& option : options)
    values << record.*option.second;
  return values;
}

constexpr const char* colourNames[] = {"black", "red",     "green", "yellow",
                                       "blue",  "magenta", "cyan",  "white"};

QString textOf(const QWidget* widget) {
  const char* property = qobject_cast<const QComboBox*>(widget) ? "placeholderText" : "text";
  return widget->property(property).toString();
}

QString colourText(const ColourTexts& colours, int index) {
  return QString::fromLatin1(colours.at(static_cast<std::size_t>(index)).text());
}

}  // namespace

class TestConfigureWidget : public QObject, private SettingsDialogTest<ConfigureWidget> {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void hasItsTitleAndIconAndIsModal();
  void everyWidgetStandsInItsPlace_data();
  void everyWidgetStandsInItsPlace();
  void nothingElseStandsInTheGrid();
  void declaresItsSlotsInOrder();
  void itsButtonsAreTranslated();
  void headersAreCentred();
  void offersTwelveServers();
  void isHiddenUntilShown();

  void showsTheRecord();
  void showsAColourTextThatIsNoneAsBlack_data();
  void showsAColourTextThatIsNoneAsBlack();
  void selectsTheStoredServer_data();
  void selectsTheStoredServer();

  void anOptionIsTakenOverOnApply_data();
  void anOptionIsTakenOverOnApply();
  void aColourIsChosenInItsDialog_data();
  void aColourIsChosenInItsDialog();
  void aCancelledColourStays();
  void aFontIsChosenInItsDialog_data();
  void aFontIsChosenInItsDialog();
  void aCancelledFontStays();
  void theStyleButtonOpensTheStyleDialog();

  void theRecordIsCompleteWhenTheWindowIsTold();
  void applyUntouchedChangesOnlyTheColoursLetters();
  void applyStoresTheChosenServer_data();
  void applyStoresTheChosenServer();
  void anUnmatchedServerStays();
  void cancelStoresNothing_data();
  void cancelStoresNothing();
  void aSecondShowReloadsEverything();

  void enterAppliesFromATextField();
  void tabFollowsTheColumns();
  void everyControlHasItsOwnSpokenName();
  void storedValuesDoNotBlowTheDialogUp();

 private:
  QCheckBox* option(int i) const { return at<QCheckBox>(*dialog_, i + 1, 0); }
  QPushButton* colour(int i, int column) const { return at<QPushButton>(*dialog_, i + 1, column); }
  QLineEdit* splitString() const { return at<QLineEdit>(*dialog_, splitStringRow, 0); }
  QComboBox* server() const { return at<QComboBox>(*dialog_, 6, 3); }
};

void TestConfigureWidget::initTestCase() {
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestConfigureWidget::init() {
  create();
}

void TestConfigureWidget::cleanup() {
  window_.reset();
}

void TestConfigureWidget::hasItsTitleAndIconAndIsModal() {
  compareHead(*dialog_, "General Settings", "configure");
  QVERIFY(dialog_->isModal());
  QCOMPARE(dialog_->parentWidget(), window_.get());
}

void TestConfigureWidget::everyWidgetStandsInItsPlace_data() {
  QTest::addColumn<int>("row");
  QTest::addColumn<int>("column");
  QTest::addColumn<QByteArray>("type");
  QTest::addColumn<QString>("text");
  for (const Cell& cell : allCells())
    QTest::addRow("%s \"%s\" in row %d, column %d", cell.type, cell.text, cell.row, cell.column)
        << cell.row << cell.column << QByteArray(cell.type) << QString::fromLatin1(cell.text);
}

void TestConfigureWidget::everyWidgetStandsInItsPlace() {
  QFETCH(const int, row);
  QFETCH(const int, column);
  QFETCH(const QByteArray, type);
  QFETCH(const QString, text);
  const QWidget* widget = at(*dialog_, row, column);
  QVERIFY(widget);
  QVERIFY(widget->inherits(type.constData()));
  QCOMPARE(textOf(widget), text);
}

void TestConfigureWidget::nothingElseStandsInTheGrid() {
  QStringList expected;
  for (const Cell& cell : allCells())
    expected << QStringLiteral("%1,%2").arg(cell.row).arg(cell.column);
  expected.sort();
  QCOMPARE(placesIn(*dialog_), expected);
}

void TestConfigureWidget::declaresItsSlotsInOrder() {
  QCOMPARE(
      methodsOf(ConfigureWidget::staticMetaObject),
      QStringList({"applySettings()", "cancelDialog()",   "blackPressed()",   "redPressed()",
                   "greenPressed()",  "yellowPressed()",  "bluePressed()",    "magentaPressed()",
                   "cyanPressed()",   "whitePressed()",   "blackPressedB()",  "redPressedB()",
                   "greenPressedB()", "yellowPressedB()", "bluePressedB()",   "magentaPressedB()",
                   "cyanPressedB()",  "whitePressedB()",  "outFontPressed()", "inFontPressed()",
                   "selectStyle()"}));
}

void TestConfigureWidget::itsButtonsAreTranslated() {
  const Foreign language("ConfigureWidget");
  const auto* inForeign = new ConfigureWidget(*window_, host_, settings_);
  QCOMPARE(buttonTexts(*inForeign), foreign(buttonTexts(*dialog_)));
}

void TestConfigureWidget::headersAreCentred() {
  int headers = 0;
  for (const QLabel* label : dialog_->findChildren<QLabel*>()) {
    if (label->text().isEmpty())
      continue;
    ++headers;
    QVERIFY2(label->alignment() & Qt::AlignHCenter, qPrintable(label->text()));
  }
  QCOMPARE(headers, 5);
}

void TestConfigureWidget::offersTwelveServers() {
  QStringList expected;
  for (const QString& host :
       {settings::webDomain(), settings::serverHost(), settings::serverAddress()})
    expected << host + " 4023" << host + " 5000" << host + " 11995" << host + " 23";
  QCOMPARE(itemsOf(*server()), expected);
  QVERIFY(!server()->isEditable());
}

void TestConfigureWidget::isHiddenUntilShown() {
  QVERIFY(!dialog_->isVisible());
  QVERIFY(!window_->findChild<StyleWidget*>()->isVisible());
  dialog_->showDialog();
  QVERIFY(dialog_->isVisible());
}

void TestConfigureWidget::showsTheRecord() {
  settings_.normalColour[3] = ColourText("#102030");
  settings_.boldColour[7] = ColourText("#AbCdEf");
  settings_.outFont = QFont("DejaVu Serif", 13, QFont::Bold, true);
  settings_.inFont = QFont("DejaVu Sans", 7);
  settings_.displayAnsiColor = false;
  settings_.parseHtml = true;
  settings_.splitString = "||";
  dialog_->showDialog();

  for (int i = 0; i < 8; ++i) {
    QCOMPARE(colour(i, 1)->palette().color(QPalette::Button),
             QColor(colourText(settings_.normalColour, i)));
    QCOMPARE(colour(i, 2)->palette().color(QPalette::Button),
             QColor(colourText(settings_.boldColour, i)));
  }
  QCOMPARE(buttonOf(*dialog_, "Output Window")->font().toString(), settings_.outFont.toString());
  QCOMPARE(buttonOf(*dialog_, "Input Bar")->font().toString(), settings_.inFont.toString());
  for (int i = 0; i < optionCount; ++i)
    QCOMPARE(option(i)->isChecked(), optionsOf(settings_)[i]);
  QCOMPARE(splitString()->text(), QString("||"));
}

void TestConfigureWidget::showsAColourTextThatIsNoneAsBlack_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<QString>("applied");
  QTest::newRow("an empty text") << QByteArray() << "#000000";
  QTest::newRow("letters that name nothing") << QByteArray("garbage") << "#000000";
  QTest::newRow("a number sign alone") << QByteArray("#") << "#000000";
  QTest::newRow("six digits that are none") << QByteArray("#GGGGGG") << "#000000";
  QTest::newRow("bytes above 127") << QByteArray("\xff\xfe\x80") << "#000000";
  QTest::newRow("a colour's name is one") << QByteArray("red") << "#ff0000";
  QTest::newRow("three digits are one") << QByteArray("#fA0") << "#ffaa00";
}

void TestConfigureWidget::showsAColourTextThatIsNoneAsBlack() {
  QFETCH(const QByteArray, text);
  QFETCH(const QString, applied);
  settings_.boldColour[2] = ColourText(text);
  dialog_->showDialog();
  QCOMPARE(colour(2, 2)->palette().color(QPalette::Button).name(), applied);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(colourText(settings_.boldColour, 2), applied);
}

void TestConfigureWidget::selectsTheStoredServer_data() {
  QTest::addColumn<QString>("host");
  QTest::addColumn<int>("port");
  QTest::addColumn<int>("index");
  const auto row = [](const char* name, const QString& host, int port, int index) {
    QTest::newRow(name) << host << port << index;
  };
  row("the default server", settings::serverHost(), 5000, 5);
  row("the web domain on its first port", settings::webDomain(), 4023, 0);
  row("the address on its last port", settings::serverAddress(), 23, 11);
  row("the default host on a port that is not offered", settings::serverHost(), 5001, -1);
  row("a host in other letters", settings::serverHost().toUpper(), 5000, -1);
  row("another host", "play.example.net", 5000, -1);
  row("the port inside the host name", settings::serverHost() + " 5000", 1, -1);
  row("no host", "", 5000, -1);
  row("a negative port", settings::serverHost(), -5000, -1);
  row("part of an entry", settings::serverHost().first(3), 5000, -1);
}

void TestConfigureWidget::selectsTheStoredServer() {
  QFETCH(const QString, host);
  QFETCH(const int, port);
  QFETCH(const int, index);
  server()->setCurrentIndex(3);
  settings_.hostName = host;
  settings_.port = port;
  dialog_->showDialog();
  QCOMPARE(server()->currentIndex(), index);
  if (index < 0) {
    QCOMPARE(server()->currentText(), QString());
    QCOMPARE(server()->placeholderText(), host + ' ' + QString::number(port));
  }
}

void TestConfigureWidget::anOptionIsTakenOverOnApply_data() {
  QTest::addColumn<int>("index");
  for (int i = 0; i < optionCount; ++i)
    QTest::addRow("%s", options[i].first) << i;
}

void TestConfigureWidget::anOptionIsTakenOverOnApply() {
  QFETCH(const int, index);
  const QList<bool> before = optionsOf(settings_);
  for (const bool twice : {false, true}) {
    show();
    option(index)->setFocus();
    QTest::keyClick(option(index), Qt::Key_Space);
    QCOMPARE(optionsOf(settings_)[index], twice ? !before[index] : before[index]);
    click(buttonOf(*dialog_, "Apply"));
    QList<bool> expected = before;
    if (!twice)
      expected[index] = !expected[index];
    QCOMPARE(optionsOf(settings_), expected);
  }
}

void TestConfigureWidget::aColourIsChosenInItsDialog_data() {
  QTest::addColumn<int>("index");
  QTest::addColumn<int>("column");
  for (int column = 1; column <= 2; ++column)
    for (int i = 0; i < 8; ++i)
      QTest::addRow("%s %s", column == 1 ? "normal" : "bold", colourNames[i]) << i << column;
}

void TestConfigureWidget::aColourIsChosenInItsDialog() {
  QFETCH(const int, index);
  QFETCH(const int, column);
  const ClientSettings before = settings_;
  show();
  QPushButton* chosen = colour(index, column);
  const QColor old = chosen->palette().color(QPalette::Button);
  const QColor next("#12c4Ef");
  QColor offered;
  QString title;
  const QWidget* parent = nullptr;
  const DialogAnswers answers{ExpectedDialog::of<QColorDialog>([&](QColorDialog& dialog) {
    offered = dialog.currentColor();
    title = dialog.windowTitle();
    parent = dialog.parentWidget();
    dialog.setCurrentColor(next);
    click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
  })};
  click(chosen);
  QVERIFY(answers.allCame());
  QCOMPARE(offered, old);
  QCOMPARE(title, QColorDialog().windowTitle());  // the toolkit's own title
  QCOMPARE(parent, dialog_);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
    QCOMPARE(chosen->palette().color(group, QPalette::Button), next);
  QCOMPARE(settings_, before);  // not before Apply

  click(buttonOf(*dialog_, "Apply"));
  for (int i = 0; i < 8; ++i) {
    const auto expected = [&](const ColourTexts& texts, int ofColumn) {
      return ofColumn == column && i == index ? QString("#12c4ef") : colourText(texts, i).toLower();
    };
    QCOMPARE(colourText(settings_.normalColour, i), expected(before.normalColour, 1));
    QCOMPARE(colourText(settings_.boldColour, i), expected(before.boldColour, 2));
  }
}

void TestConfigureWidget::aCancelledColourStays() {
  show();
  QPushButton* chosen = colour(1, 1);
  const QColor old = chosen->palette().color(QPalette::Button);
  const DialogAnswers answers{ExpectedDialog::of<QColorDialog>([](QColorDialog& dialog) {
    dialog.setCurrentColor(Qt::cyan);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  })};
  click(chosen);
  QVERIFY(answers.allCame());
  QCOMPARE(chosen->palette().color(QPalette::Button), old);
  QVERIFY(dialog_->isVisible());
}

void TestConfigureWidget::aFontIsChosenInItsDialog_data() {
  QTest::addColumn<QByteArray>("label");
  QTest::addColumn<int>("place");
  QTest::newRow("of the output pane") << QByteArray("Output Window") << 0;
  QTest::newRow("of the input bar") << QByteArray("Input Bar") << 1;
}

void TestConfigureWidget::aFontIsChosenInItsDialog() {
  QFETCH(const QByteArray, label);
  QFETCH(const int, place);
  settings_.outFont = QFont("DejaVu Sans Mono", 10);
  settings_.inFont = QFont("DejaVu Sans", 8);
  const ClientSettings before = settings_;
  show();
  QPushButton* chosen = buttonOf(*dialog_, label.constData());
  const QString old = chosen->font().toString();
  const QFont next("DejaVu Serif", 17, QFont::Bold);
  QString offered;
  QString title;
  QString taken;
  const QWidget* parent = nullptr;
  const DialogAnswers answers{ExpectedDialog::of<QFontDialog>([&](QFontDialog& dialog) {
    offered = dialog.currentFont().family();
    title = dialog.windowTitle();
    parent = dialog.parentWidget();
    dialog.setCurrentFont(next);
    taken = dialog.currentFont().toString();
    click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
  })};
  click(chosen);
  QVERIFY(answers.allCame());
  QCOMPARE(offered, (place == 0 ? before.outFont : before.inFont).family());
  QCOMPARE(title, QFontDialog().windowTitle());  // the toolkit's own title
  QCOMPARE(parent, dialog_);
  QVERIFY(taken != old);
  QCOMPARE(chosen->font().toString(), taken);
  QCOMPARE(settings_, before);  // not before Apply

  click(buttonOf(*dialog_, "Apply"));
  const QStringList fonts{settings_.outFont.toString(), settings_.inFont.toString()};
  const QStringList stored{before.outFont.toString(), before.inFont.toString()};
  QCOMPARE(fonts[place], taken);
  QCOMPARE(fonts[1 - place], stored[1 - place]);
  QCOMPARE(host_.calls, QList{Occasion::GeneralApplied});
}

void TestConfigureWidget::aCancelledFontStays() {
  show();
  QPushButton* chosen = buttonOf(*dialog_, "Input Bar");
  const QString old = chosen->font().toString();
  const DialogAnswers answers{ExpectedDialog::of<QFontDialog>([](QFontDialog& dialog) {
    dialog.setCurrentFont(QFont("DejaVu Serif", 17));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  })};
  click(chosen);
  QVERIFY(answers.allCame());
  QCOMPARE(chosen->font().toString(), old);
}

void TestConfigureWidget::theStyleButtonOpensTheStyleDialog() {
  show();
  QPushButton* style = buttonOf(*dialog_, "Interface style");
  QVERIFY(!style->icon().isNull());
  QCOMPARE(style->icon().pixmap(32).toImage(), QIcon(":/icons/style.png").pixmap(32).toImage());
  auto* styleDialog = window_->findChild<StyleWidget*>();
  settings_.iconSize = {37, 46};
  click(style);
  QVERIFY(styleDialog->isVisible());
  QCOMPARE(at<QLineEdit>(*styleDialog, 0, 1)->text(), QString("37"));
  QVERIFY(dialog_->isVisible());
  click(buttonOf(*styleDialog, "Apply"));
  QCOMPARE(host_.calls, QList{Occasion::InterfaceApplied});
}

void TestConfigureWidget::theRecordIsCompleteWhenTheWindowIsTold() {
  show();
  option(0)->click();
  splitString()->setText("&&");
  server()->setCurrentIndex(10);
  colour(0, 1)->setPalette(QPalette(QColor("#010203")));
  colour(7, 2)->setPalette(QPalette(QColor("#040506")));
  buttonOf(*dialog_, "Output Window")->setFont(QFont("DejaVu Serif", 11));
  buttonOf(*dialog_, "Input Bar")->setFont(QFont("DejaVu Serif", 12));
  host_.onCall = [&] {
    QCOMPARE(settings_.normalColour[0], ColourText("#010203"));
    QCOMPARE(settings_.boldColour[7], ColourText("#040506"));
    QVERIFY(!settings_.displayAnsiColor);
    QCOMPARE(settings_.splitString, QString("&&"));
    QCOMPARE(settings_.outFont.pointSize(), 11);
    QCOMPARE(settings_.inFont.pointSize(), 12);
    QCOMPARE(settings_.port, 11995);
    QVERIFY(dialog_->isVisible());
  };
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(host_.calls, QList{Occasion::GeneralApplied});
  QVERIFY(!dialog_->isVisible());
}

void TestConfigureWidget::applyUntouchedChangesOnlyTheColoursLetters() {
  ClientSettings expected;
  for (ColourTexts* palette : {&expected.normalColour, &expected.boldColour})
    for (ColourText& text : *palette)
      text.assign(text.text().toLower());
  show();
  QTest::keyClick(dialog_, Qt::Key_Enter);
  QCOMPARE(colourText(settings_.normalColour, 3), QString("#5e610b"));
  QCOMPARE(settings_.outFont.toString(), expected.outFont.toString());
  QCOMPARE(settings_.inFont.toString(), expected.inFont.toString());
  QCOMPARE(settings_, expected);
  QCOMPARE(host_.calls, QList{Occasion::GeneralApplied});
}

void TestConfigureWidget::applyStoresTheChosenServer_data() {
  QTest::addColumn<int>("index");
  for (int i = 0; i < 12; ++i)
    QTest::addRow("entry %d", i) << i;
}

void TestConfigureWidget::applyStoresTheChosenServer() {
  QFETCH(const int, index);
  settings_.hostName = "play.example.net";
  settings_.port = 4000;
  show();
  server()->setFocus();
  QTest::keyClick(server(), Qt::Key_Home);
  for (int i = 0; i < index; ++i)
    QTest::keyClick(server(), Qt::Key_Down);
  click(buttonOf(*dialog_, "Apply"));
  const QStringList hosts{settings::webDomain(), settings::serverHost(), settings::serverAddress()};
  const QList<int> ports{4023, 5000, 11995, 23};
  QCOMPARE(settings_.hostName, hosts[index / 4]);
  QCOMPARE(settings_.port, ports[index % 4]);
}

void TestConfigureWidget::anUnmatchedServerStays() {
  settings_.hostName = "play.example.net";
  settings_.port = 4000;
  show();
  splitString()->setText("/");
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.hostName, QString("play.example.net"));
  QCOMPARE(settings_.port, 4000);
  QCOMPARE(settings_.splitString, QString("/"));
  QCOMPARE(host_.calls, QList{Occasion::GeneralApplied});
  QVERIFY(!dialog_->isVisible());
}

void TestConfigureWidget::cancelStoresNothing_data() {
  QTest::addColumn<int>("way");
  QTest::newRow("by the button") << 0;
  QTest::newRow("by Escape") << 1;
  QTest::newRow("by closing the window") << 2;
}

void TestConfigureWidget::cancelStoresNothing() {
  QFETCH(const int, way);
  const ClientSettings before = settings_;
  show();
  for (int i = 0; i < optionCount; ++i)
    option(i)->click();
  splitString()->setText("changed");
  server()->setCurrentIndex(0);
  if (way == 0)
    click(buttonOf(*dialog_, "Cancel"));
  else if (way == 1)
    QTest::keyClick(dialog_, Qt::Key_Escape);
  else
    dialog_->close();
  QVERIFY(!dialog_->isVisible());
  QCOMPARE(settings_, before);
  QCOMPARE(host_.calls, QList<Occasion>());
}

void TestConfigureWidget::aSecondShowReloadsEverything() {
  show();
  for (int i = 0; i < optionCount; ++i)
    option(i)->click();
  for (int i = 0; i < 8; ++i)
    for (const int column : {1, 2})
      colour(i, column)->setPalette(QPalette(QColor(Qt::gray)));
  splitString()->setText("changed");
  server()->setCurrentIndex(-1);
  buttonOf(*dialog_, "Output Window")->setFont(QFont("DejaVu Serif", 15));
  buttonOf(*dialog_, "Input Bar")->setFont(QFont("DejaVu Serif", 15));
  buttonOf(*dialog_, "Cancel")->setFocus();
  click(buttonOf(*dialog_, "Cancel"));
  show();
  for (int i = 0; i < 8; ++i)
    QCOMPARE(colour(i, 1)->palette().color(QPalette::Button),
             QColor(colourText(settings_.normalColour, i)));
  QCOMPARE(splitString()->text(), QString(";"));
  QCOMPARE(server()->currentIndex(), 5);
  QCOMPARE(buttonOf(*dialog_, "Output Window")->font().toString(), settings_.outFont.toString());
  QCOMPARE(dialog_->focusWidget(), option(0));
  for (int i = 0; i < optionCount; ++i)
    QCOMPARE(option(i)->isChecked(), optionsOf(settings_)[i]);
}

void TestConfigureWidget::enterAppliesFromATextField() {
  show();
  splitString()->setFocus();
  splitString()->clear();
  QTest::keyClicks(splitString(), "##");
  QTest::keyClick(splitString(), Qt::Key_Return);
  QCOMPARE(settings_.splitString, QString("##"));
  QVERIFY(!dialog_->isVisible());
}

void TestConfigureWidget::tabFollowsTheColumns() {
  show();
  QList<QWidget*> expected;
  for (int row = 1; row <= splitStringRow; ++row)
    expected << at(*dialog_, row, 0);
  for (const int column : {1, 2})
    for (int i = 0; i < 8; ++i)
      expected << colour(i, column);
  for (const int row : {1, 2, 3, 6})
    expected << at(*dialog_, row, 3);
  expected << at(*dialog_, buttonsRow, 0) << at(*dialog_, buttonsRow, 3);
  QCOMPARE(tabOrder(*dialog_), expected);
}

void TestConfigureWidget::everyControlHasItsOwnSpokenName() {
  show();
  QStringList names = spokenNames(*dialog_);
  QVERIFY2(!names.contains(QString()), qPrintable(names.join('|')));
  QCOMPARE(names.removeDuplicates(), 0);
  QCOMPARE(spokenName(server()), QString("Use the following server:"));
}

void TestConfigureWidget::storedValuesDoNotBlowTheDialogUp() {
  show();
  const QSize usual = dialog_->sizeHint();
  settings_.outFont = QFont("Courier", 200);
  settings_.inFont.setLetterSpacing(QFont::AbsoluteSpacing, 400);
  settings_.hostName = QString(100000, 'x');
  settings_.splitString = QString(100000, ';');
  dialog_->showDialog();
  QCOMPARE(server()->placeholderText(), QString(39, 'x') + QChar(0x2026));
  QVERIFY2(dialog_->sizeHint().width() <= usual.width() * 2, "too wide");
  QVERIFY2(dialog_->sizeHint().height() <= usual.height() * 2, "too high");
  QCOMPARE(buttonOf(*dialog_, "Output Window")->font().pointSize(), 200);
}

KELMORA_GUI_TEST_MAIN(TestConfigureWidget)
#include "tst_configurewidget.moc"

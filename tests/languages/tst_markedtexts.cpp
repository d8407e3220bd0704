#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QSet>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <iterator>

#include "EveryWindow.h"
#include "TranslationFile.h"
#include "app/CommandLine.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "net/StatusLines.h"
#include "script/CommandTable.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

namespace {

/// Translates every text into itself with a mark before it.
class Marker : public QTranslator {
 public:
  Marker() { QCoreApplication::installTranslator(this); }
  [[nodiscard]] bool isEmpty() const override { return false; }
  [[nodiscard]] QString translate(const char* context, const char* source, const char* /*comment*/,
                                  int /*count*/) const override {
    asked_[QString::fromUtf8(context)] << QString::fromUtf8(source);
    return mark + QString::fromUtf8(source);
  }
  /// The texts of the context that were translated up to now.
  [[nodiscard]] QSet<QString> asked(const QString& context) const { return asked_[context]; }
  static constexpr QChar mark{0x2020};

 private:
  mutable QHash<QString, QSet<QString>> asked_;
};

bool isMarked(const QString& text) {
  return text.contains(Marker::mark);
}

/// All texts of the context, as the translations have them.
QSet<QString> textsOfContext(const QString& context) {
  QSet<QString> texts;
  for (const Translated& text : textsIn(translationFiles().value(0)))
    if (text.context == context)
      texts << text.source;
  return texts;
}

/// Notes the title and the text of each message box and file dialog that opens.
class BoxesSeen : public QObject {
 public:
  BoxesSeen() { qApp->installEventFilter(this); }
  [[nodiscard]] const QStringList& texts() const { return texts_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Show)
      return false;
    if (const auto* box = qobject_cast<QMessageBox*>(watched))
      texts_ << box->windowTitle() << box->text();
    else if (const auto* files = qobject_cast<QFileDialog*>(watched))
      texts_ << files->windowTitle() << files->nameFilters();
    return false;
  }

 private:
  QStringList texts_;
};

/// A text that is the same in every language, and why.
struct Exception {
  const char* place;
  const char* text;  ///< a pattern for the whole text
  const char* reason;
};

constexpr Exception exceptions[]{
    {"MainWidget.windowTitle", "Kelmora - The Official Client", "the program's name"},
    {"(QAction|QToolButton).statusTip", ".*", "told to be untranslated"},
    {"kelmora::dialogs::.*|QPushButton.(toolTip|accessibleDescription)", "#[0-9a-f]{6}",
     "the value of a colour"},
    {"QComboBox.(item|placeholderText)", "[a-z0-9.]+ [0-9]+", "a server and its port"},
    {"QComboBox.item", "Fusion|Windows", "a style, as the toolkit calls it"},
    {"QComboBox.item", "Key_F1|rat|hi", "an entry of the player's"},
    {"QLineEdit.text", "rat|hi", "an entry of the player's"},
    {"QLineEdit.text", ";", "what divides the input, unless the player says otherwise"},
    {"QLineEdit.text", "[1-9]{1,2}", "a length in pixels"},
    {"QToolButton.text", "[^a-zA-Z]|Aa|\u201cw\u201d|[.][*]", "a sign, with words as its name"},
    {"QLabel.toolTip", "http://.*", "the address of a page"},
    {"QProgressBar.(format|text)", ".*%", "not shown: the bars have no text"},
};

}  // namespace

/// Nothing that a player reads is written past the translation.
class TestMarkedTexts : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyTextOfEveryWindow();
  void theMenuOverThePane();
  void boxesAndFileDialogs();
  void failuresAtTheStart();
  void linesOfScripts();
  void statusLines();
  void answersOnTheCommandLine();
  void theKeyThatCannotBeBound();

 private:
  static QString unmarkedIn(const QStringList& texts);
};

QString TestMarkedTexts::unmarkedIn(const QStringList& texts) {
  QStringList unmarked;
  for (const QString& text : texts)
    if (!isMarked(text))
      unmarked << text;
  return unmarked.join(u'\n');
}

void TestMarkedTexts::everyTextOfEveryWindow() {
  const Marker marker;
  const EveryWindow windows;
  QList<const QWidget*> open{&windows.main()};
  for (const QDialog* dialog : windows.dialogs()) {
    QVERIFY2(dialog->isVisible(), dialog->metaObject()->className());
    open << dialog;
  }
  QCOMPARE(open.size(), 9);

  qsizetype marked = 0;
  QStringList unmarked;
  QSet<const Exception*> met;
  for (const QWidget* window : open)
    for (const ShownText& shown : textsOf(*window)) {
      const auto* const exception =
          std::find_if(std::begin(exceptions), std::end(exceptions), [&](const Exception& row) {
            return QRegularExpression(QRegularExpression::anchoredPattern(row.place))
                       .match(shown.place)
                       .hasMatch() &&
                   QRegularExpression(QRegularExpression::anchoredPattern(row.text))
                       .match(shown.text)
                       .hasMatch();
          });
      if (isMarked(shown.text))
        ++marked;
      else if (exception != std::end(exceptions))
        met << exception;
      else
        unmarked << QStringLiteral("%1 in %2: %3")
                        .arg(shown.place, QString::fromLatin1(window->metaObject()->className()),
                             shown.text);
    }
  QCOMPARE(unmarked.join(u'\n'), QString());
  QVERIFY2(marked > 150, qPrintable(QString::number(marked)));
  for (const Exception& exception : exceptions)
    QVERIFY2(met.contains(&exception), exception.reason);
}

void TestMarkedTexts::theMenuOverThePane() {
  const Marker marker;
  const EveryWindow windows;
  for (QDialog* dialog : windows.dialogs())
    dialog->hide();
  QStringList texts;
  QTimer open;
  connect(&open, &QTimer::timeout, this, [&] {
    if (const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
      for (const QAction* action : menu->actions())
        if (!action->isSeparator())
          texts << action->text();
      QApplication::activePopupWidget()->close();
    }
  });
  open.start(5);
  const QPoint place = windows.pane().viewport()->rect().center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                          windows.pane().viewport()->mapToGlobal(place));
  QCoreApplication::sendEvent(windows.pane().viewport(), &event);
  QVERIFY(texts.size() >= 4);
  QCOMPARE(unmarkedIn(texts), QString());
}

void TestMarkedTexts::boxesAndFileDialogs() {
  const Marker marker;
  const EveryWindow windows;
  for (QDialog* dialog : windows.dialogs())
    dialog->hide();
  const BoxesSeen seen;
  const auto box = ExpectedDialog::information();
  const auto ask = ExpectedDialog::question({}, {}, QMessageBox::No);
  const auto key = ExpectedDialog::of<KeyPressWidget>([](KeyPressWidget& dialog) {
    QTest::keyClick(dialog.findChild<KeyPressInput*>(), Qt::Key_F1);
    dialog.submitKey();
  });
  writeFile("wrong.settings", "wrong");
  {
    const DialogAnswers answers{ExpectedDialog::file({}), ExpectedDialog::file("none/my.settings"),
                                box, ExpectedDialog::file("wrong.settings"), box};
    windows.main().saveBuffer();
    windows.main().saveSettings();
    windows.main().loadSettings();
  }
  {
    const DialogAnswers answers{key, box, ask, box, box, ask, box, box, ask};
    windows.makeMistakesInEditors();
  }
  QCOMPARE(unmarkedIn(seen.texts()), QString());
  QCOMPARE(seen.texts().size(), 26);
}

void TestMarkedTexts::failuresAtTheStart() {
  const Marker marker;
  const QStringList names{"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"};
  for (const QString& name : names)
    writeFile(name, "no sense\n");
  const BoxesSeen seen;
  {
    const auto box = ExpectedDialog::information();
    const DialogAnswers answers{box, box, box, box};
    const EveryWindow windows;
  }
  for (const QString& name : names)
    QFile::remove(name);
  QCOMPARE(unmarkedIn(seen.texts()), QString());
  QCOMPARE(seen.texts().size(), 8);
}

void TestMarkedTexts::linesOfScripts() {
  const Marker marker;
  EveryWindow windows;
  windows.profile().aliases.append({.name = "round", .commands = {"round"}});
  QStringList list{"/set v, 1", "/delete none", "/add none, 1", "/unpause none", "round"};
  for (const script::CommandRow& row : script::commandRows())
    list << row.word;
  list << "/isequal 1, 1"
       << "/condloop /isequal 1, 1"
       << "/set long, " + QString(2000, 'x') << "/repeat 9, /add long, {long}{long}"
       << "/pause id, 60000";
  windows.main().runActions(list);
  windows.main().runActions({"/pause id, 60000"});
  windows.main().runActions({"/unpause id"});
  windows.main().runActions({"/repeat 1000, /repeat 1000, /repeat 1000, /isequal 1, 1"});
  QStringList unmarked;
  for (const QString& line : settled(windows.pane()).toPlainText().split('\n'))
    if ((line.startsWith("## ") || line.startsWith("++ ")) && !isMarked(line))
      unmarked << line;
  // The list of variables has no words of the client's.
  QCOMPARE(unmarked, QStringList{"++  v : 1"});
  QCOMPARE(marker.asked("Script"), textsOfContext("Script"));
}

void TestMarkedTexts::statusLines() {
  const Marker marker;
  QStringList lines{net::attemptLine("host", 23, 1000), net::connectedLine(),
                    net::disconnectedLine()};
  for (const auto error : {QAbstractSocket::HostNotFoundError,
                           QAbstractSocket::ConnectionRefusedError, QAbstractSocket::NetworkError})
    lines << net::errorLine(error).value_or(QString());
  QCOMPARE(unmarkedIn(lines), QString());
  QCOMPARE(marker.asked("StatusLines"), textsOfContext("StatusLines"));
}

void TestMarkedTexts::answersOnTheCommandLine() {
  const Marker marker;
  for (const char* argument : {"--help", "--port"})
    QVERIFY2(isMarked(app::answerTo({argument})->text), argument);
  QCOMPARE(marker.asked("CommandLine"), textsOfContext("CommandLine"));
}

void TestMarkedTexts::theKeyThatCannotBeBound() {
  const Marker marker;
  KeyPressInput input(nullptr);
  QTest::keyClick(&input, Qt::Key_Menu);
  QVERIFY2(isMarked(input.text()), qPrintable(input.text()));
}

KELMORA_GUI_TEST_MAIN(TestMarkedTexts)
#include "tst_markedtexts.moc"

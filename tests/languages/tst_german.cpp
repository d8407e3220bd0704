#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <optional>

#include "EveryWindow.h"
#include "app/ApplicationFonts.h"
#include "app/Translations.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::app;

/// The window and its dialogs in German, against those in English.
class TestGerman : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void thePaneSpeaksGerman();
  void keysStayTheSame();
  void filesAreTheSame();

 private:
  static QList<QByteArray> filesWritten();
};

void TestGerman::initTestCase() {
  if (!QFile::exists(":/translations/kelmora_de.qm"))
    QSKIP("built without lrelease");
  installApplicationFonts();
}

void TestGerman::thePaneSpeaksGerman() {
  const Translations translations("de");
  const EveryWindow windows;
  windows.main().runActions({"/set", "/delete gold", "/variables"});
  const QStringList lines = settled(windows.pane()).toPlainText().split('\n');
  for (const char* line :
       {"## /set braucht zwei Argumente", "## Keine solche Variable zum L\u00f6schen: gold",
        "++ Globale Variablen:"})
    QVERIFY2(lines.contains(QString::fromUtf8(line)), line);
}

void TestGerman::keysStayTheSame() {
  const auto keys = [](const QString& language) {
    const Translations translations(language);
    const EveryWindow windows;
    QStringList found;
    for (const QAction* action : windows.main().findChildren<QAction*>())
      found << action->shortcut().toString(QKeySequence::PortableText);
    return found;
  };
  const QStringList inEnglish = keys({});
  QVERIFY(inEnglish.contains("Ctrl+J"));
  QCOMPARE(keys("de"), inEnglish);
}

/// All that the client writes, after the same has been done in it by the buttons of
/// the language that it speaks.
QList<QByteArray> TestGerman::filesWritten() {
  const OwnFolder folder;
  EveryWindow windows;
  for (QDialog* dialog : windows.dialogs())
    dialog->hide();
  const auto edit = [](QDialog& editor, const char* context, const QString& one,
                       const QString& label) {
    const auto button = [&](const QString& words) {
      return buttonOf(editor,
                      QCoreApplication::translate(context, words.arg(one).toUtf8().constData()));
    };
    click(button("Add %1"));
    click(button("Edit %1"));
    retype(editor.findChild<QPlainTextEdit*>(), "say hello\nwave");
    retype(editor.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly), label);
    click(button("Save %1"));
    editor.close();
  };
  windows.dialog<AliasWidget>().showEditor();
  edit(windows.dialog<AliasWidget>(), "AliasWidget", "alias", "greet");
  windows.dialog<TriggerWidget>().showEditor();
  edit(windows.dialog<TriggerWidget>(), "TriggerWidget", "trigger", "{*} arrives");
  windows.main().runActions({"/set gold, 1234567.5", "/multiply gold, 2", "/add gold, 1000"});
  {
    const DialogAnswers answers{ExpectedDialog::file("my.settings"),
                                ExpectedDialog::file("session.html")};
    windows.main().saveSettings();
    windows.main().saveBuffer();
  }
  windows.main().storeSettings();
  QList<QByteArray> files;
  for (const char* name : {"macros.txt", "aliases.txt", "triggers.txt", "variables.txt",
                           "my.settings", "session.html"})
    files << contentsOf(name);
  return files << windows.storeText();
}

void TestGerman::filesAreTheSame() {
  const QList<QByteArray> inEnglish = filesWritten();
  std::optional<Translations> translations(std::in_place, "de");
  const QList<QByteArray> inGerman = filesWritten();
  QVERIFY(inEnglish.at(1).contains("greet"));
  QVERIFY(inEnglish.at(2).contains("{*} arrives"));
  QVERIFY(inEnglish.at(3).contains("gold"));
  for (qsizetype i = 4; i < inEnglish.size(); ++i)
    QVERIFY(inEnglish.at(i).size() > 200);
  QCOMPARE(inGerman, inEnglish);
}

KELMORA_GUI_TEST_MAIN(TestGerman)
#include "tst_german.moc"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include "EveryWindow.h"
#include "app/ApplicationFonts.h"
#include "app/Translations.h"
#include "automation/editors/EditorWidget.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "dialogs/HelpWidget.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/SplitHandle.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

/// Collects what is wider or higher than its place.
class CutTexts {
 public:
  /// All that is written in a window or in a part of one.
  void lookAt(const QWidget& part);
  /// For DialogAnswers.
  [[nodiscard]] ExpectedDialog::Act look() {
    return [this](QDialog& dialog) { lookAt(dialog); };
  }
  [[nodiscard]] QString words() const { return cut_.join(u'\n'); }
  /// How many texts were looked at.
  [[nodiscard]] int count() const { return count_; }

 private:
  void check(const QWidget& widget, const QString& text, QSize needed);

  QStringList cut_;
  int count_ = 0;
};

void CutTexts::check(const QWidget& widget, const QString& text, QSize needed) {
  ++count_;
  const bool isInside = widget.parentWidget()->rect().contains(widget.geometry());
  if (!isInside || widget.width() < needed.width() || widget.height() < needed.height())
    cut_ << QStringLiteral("%1 \"%2\" needs %3x%4 and has %5x%6 at %7, %8")
                .arg(QString::fromLatin1(widget.parentWidget()->metaObject()->className()), text)
                .arg(needed.width())
                .arg(needed.height())
                .arg(widget.width())
                .arg(widget.height())
                .arg(widget.x())
                .arg(widget.y());
}

void CutTexts::lookAt(const QWidget& part) {
  const auto isShown = [&](const QWidget& widget) {
    return widget.window() == part.window() && widget.isVisible();
  };
  for (const auto* label : part.findChildren<QLabel*>())
    if (isShown(*label) && !label->text().isEmpty())
      check(*label, label->text(),
            label->wordWrap() ? QSize(0, label->heightForWidth(label->width()))
                              : label->minimumSizeHint());
  for (const auto* button : part.findChildren<QAbstractButton*>())
    // A button of a toolbar shows its picture and not its text.
    if (isShown(*button) && !button->text().isEmpty() &&
        (button->icon().isNull() || !button->inherits("QToolButton")))
      check(*button, button->text(), button->minimumSizeHint());
  for (const auto* field : part.findChildren<QLineEdit*>())
    if (isShown(*field) && !field->placeholderText().isEmpty())
      check(*field, field->placeholderText(),
            {field->fontMetrics().horizontalAdvance(field->placeholderText()),
             field->minimumSizeHint().height()});
}

}  // namespace

/// Nothing that is written in a window is cut, in either language and in a large font
/// of the desktop. The tests run again at other scales of the screen.
class TestCutTexts : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();
  void inDialogs_data() { rows(); }
  void inDialogs();
  void inThePane_data() { rows(); }
  void inThePane();
  void inMessageBoxes_data() { rows(); }
  void inMessageBoxes();
  void aCutTextIsFound();

 private:
  static void rows();
  static void allBoxes(CutTexts& cut);
  static void boxesOfTheStart(CutTexts& cut);

  QFont usual_;
  std::unique_ptr<Translations> translations_;
};

void TestCutTexts::initTestCase() {
  if (!QFile::exists(":/translations/kelmora_de.qm"))
    QSKIP("built without lrelease");
  installApplicationFonts();
  usual_ = QApplication::font();
}

void TestCutTexts::rows() {
  QTest::addColumn<QString>("language");
  QTest::addColumn<int>("percent");
  QTest::newRow("English") << QString() << 100;
  QTest::newRow("German") << "de" << 100;
  QTest::newRow("English in a large font") << QString() << 200;
  QTest::newRow("German in a large font") << "de" << 200;
}

void TestCutTexts::init() {
  const char* const row = QTest::currentDataTag();
  if (!row)
    return;
  QFETCH(const QString, language);
  QFETCH(const int, percent);
  translations_ = std::make_unique<Translations>(language);
  QFont font = usual_;
  font.setPointSizeF(usual_.pointSizeF() * percent / 100);
  QApplication::setFont(font);
}

void TestCutTexts::cleanup() {
  translations_.reset();
  QApplication::setFont(usual_);
}

void TestCutTexts::inDialogs() {
  QFETCH(const QString, language);
  QFETCH(const int, percent);
  const EveryWindow windows;
  QVERIFY(buttonOf(windows.main(), language.isEmpty() ? "Apply" : "\u00dcbernehmen"));
  CutTexts cut;
  for (QDialog* dialog : windows.dialogs()) {
    cut.lookAt(*dialog);
    if (!dynamic_cast<automation::EditorWidget*>(dialog))
      continue;
    if (percent == 100)
      QCOMPARE(dialog->size(), QSize(520, 440));
    dialog->resize(dialog->minimumSize());
    QCoreApplication::processEvents();
    if (percent == 100)
      QCOMPARE(dialog->size(), QSize(420, 360));
    cut.lookAt(*dialog);
  }
  if (percent == 100)
    QCOMPARE(windows.dialog<HelpWidget>().size(), QSize(575, 400));
  QCOMPARE(cut.words(), QString());
  QVERIFY2(cut.count() > 80, qPrintable(QString::number(cut.count())));
}

void TestCutTexts::inThePane() {
  const EveryWindow windows;
  for (QDialog* dialog : windows.dialogs())
    dialog->hide();
  auto& bar = *windows.pane().findChild<terminal::FindBar*>();
  auto& count = *bar.findChild<QLabel*>();
  auto& sought = *bar.findChild<QLineEdit*>();
  CutTexts cut;
  for (const int width : {800, 640})
    for (const char* words : {"", "line", "nothing of it"}) {
      windows.main().resize(width, 600);
      sought.setText(words);
      QTRY_COMPARE(count.text().isEmpty(), sought.text().isEmpty());
      QCoreApplication::processEvents();
      cut.lookAt(bar);
      QVERIFY(windows.pane().viewport()->geometry().contains(bar.geometry()));
    }
  QCOMPARE(cut.words(), QString());
  QCOMPARE(cut.count(), 6 * 7 + 4);
  const auto& handle = *windows.pane().findChild<terminal::SplitHandle*>();
  QVERIFY(handle.isVisible());
  QCOMPARE(handle.height(), terminal::SplitHandle::thickness);
  QVERIFY(windows.pane().rect().contains(handle.geometry()));
}

void TestCutTexts::allBoxes(CutTexts& cut) {
  const EveryWindow windows;
  for (QDialog* dialog : windows.dialogs())
    dialog->hide();
  const auto box = ExpectedDialog::information().seenBy(cut.look());
  const auto ask = ExpectedDialog::question({}, {}, QMessageBox::No).seenBy(cut.look());
  const auto key = ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    QTest::keyClick(dialog.findChild<KeyPressInput*>(), Qt::Key_F1);
    cut.lookAt(dialog);
    dialog.submitKey();
  });
  writeFile("wrong.settings", "wrong");
  const DialogAnswers answers{ExpectedDialog::file("none/my.settings"),
                              box,
                              ExpectedDialog::file("wrong.settings"),
                              box,
                              key,
                              box,
                              ask,
                              box,
                              box,
                              ask,
                              box,
                              box,
                              ask};
  windows.main().saveSettings();
  windows.main().loadSettings();
  windows.makeMistakesInEditors();
}

void TestCutTexts::boxesOfTheStart(CutTexts& cut) {
  const QStringList names{"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"};
  for (const QString& name : names)
    writeFile(name, "no sense\n");
  {
    const auto box = ExpectedDialog::information().seenBy(cut.look());
    const DialogAnswers answers{box, box, box, box};
    const EveryWindow windows;
  }
  for (const QString& name : names)
    QFile::remove(name);
}

void TestCutTexts::inMessageBoxes() {
  CutTexts cut;
  allBoxes(cut);
  boxesOfTheStart(cut);
  QCOMPARE(cut.words(), QString());
  // A text and a button in each of 14, two more buttons' in the three questions ...
  QVERIFY2(cut.count() >= 14 * 2 + 3, qPrintable(QString::number(cut.count())));
}

void TestCutTexts::aCutTextIsFound() {
  QWidget window;
  window.resize(200, 200);
  auto* const label = new QLabel("a long label", &window);
  auto* const wrapped = new QLabel("some words in a label with a long text", &window);
  wrapped->setWordWrap(true);
  auto* const button = new QToolButton(&window);
  button->setText("button");
  auto* const field = new QLineEdit(&window);
  field->setPlaceholderText("what to type here");
  int x = 0;
  for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(wrapped),
                          static_cast<QWidget*>(button), static_cast<QWidget*>(field)})
    widget->setGeometry(x += 20, 0, 20, 20);
  window.show();
  CutTexts cut;
  cut.lookAt(window);
  QCOMPARE(cut.count(), 4);
  QCOMPARE(cut.words().count(u'\n'), 3);
}

KELMORA_GUI_TEST_MAIN(TestCutTexts)
#include "tst_cuttexts.moc"

#include <QApplication>
#include <QProcess>

#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

/// DialogAnswers answers what is expected, and says what is not.
class TestDialogAnswers : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void eachIsAnsweredInItsTurn();
  void aQuestionGetsItsButtonOrKey();
  void aFileIsChosenCancelledAndReplaced();
  void anAnswerMayOpenTheNextDialog();
  void dialogsThatWereOpenAreLeftAlone();
  void whatIsNotExpectedIsTold_data();
  void whatIsNotExpectedIsTold();
};

void TestDialogAnswers::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestDialogAnswers::eachIsAnsweredInItsTurn() {
  QWidget window;
  const DialogAnswers answers{ExpectedDialog::information("Title", "Words"),
                              ExpectedDialog::information()};
  QVERIFY(!answers.allCame());
  QCOMPARE(QMessageBox::information(&window, "Title", "Words"), QMessageBox::Ok);
  QVERIFY(!answers.allCame());
  QCOMPARE(QMessageBox::information(nullptr, "Other title", "Other words"), QMessageBox::Ok);
  QVERIFY(answers.allCame());
  QCOMPARE(answers.parents(), (QList<const QWidget*>{&window, nullptr}));
}

void TestDialogAnswers::aQuestionGetsItsButtonOrKey() {
  const DialogAnswers answers{ExpectedDialog::question("Title", "Words", QMessageBox::Yes),
                              ExpectedDialog::question("Title", "Words", QMessageBox::No),
                              ExpectedDialog::question("Title", "Words", Qt::Key_Escape)};
  for (const auto answer : {QMessageBox::Yes, QMessageBox::No, QMessageBox::No})
    QCOMPARE(QMessageBox::question(nullptr, "Title", "Words"), answer);
  QVERIFY(answers.allCame());
}

void TestDialogAnswers::aFileIsChosenCancelledAndReplaced() {
  const QString path = QDir::current().absoluteFilePath("file.txt");
  writeFile(path, "x");
  const auto save = [] {
    return QFileDialog::getSaveFileName(nullptr, "Save", {}, "Texts (*.txt)");
  };
  const DialogAnswers answers{ExpectedDialog::file("file.txt", "Save", "Texts (*.txt)"),
                              ExpectedDialog::file({}), ExpectedDialog::file("new.txt")};
  QCOMPARE(save(), path);
  QCOMPARE(save(), QString());
  QCOMPARE(save(), QDir::current().absoluteFilePath("new.txt"));
  QVERIFY(answers.allCame());
}

void TestDialogAnswers::anAnswerMayOpenTheNextDialog() {
  const DialogAnswers answers{ExpectedDialog::of<QMessageBox>([](QMessageBox& box) {
                                QCOMPARE(QMessageBox::information(&box, "Second", "Words"),
                                         QMessageBox::Ok);
                                box.accept();
                              }),
                              ExpectedDialog::information("Second")};
  QMessageBox::warning(nullptr, "First", "Words");
  QVERIFY(answers.allCame());
}

void TestDialogAnswers::dialogsThatWereOpenAreLeftAlone() {
  QDialog open;
  open.setModal(true);
  open.show();
  const DialogAnswers answers{ExpectedDialog::information()};
  QTest::qWait(50);
  QVERIFY(open.isVisible());
  QMessageBox::information(&open, "Title", "Words");
  QTest::qWait(50);
  QVERIFY(open.isVisible());
}

void TestDialogAnswers::whatIsNotExpectedIsTold_data() {
  QTest::addColumn<QString>("check");
  QTest::addColumn<QStringList>("said");
  const QString words = "information (Ok) \"Title\": \"Words\"";
  const QString missing = "this dialog never came: ";
  const QString unexpected = "this dialog was not expected: ";
  const QString open = "this dialog is still open after its answer: ";
  QTest::newRow("a dialog that never comes")
      << "aDialogThatNeverComes" << QStringList{missing + "file dialog \"Save\""};
  QTest::newRow("a dialog too much")
      << "aDialogTooMuch" << QStringList{unexpected + words + "; expected was none"};
  const QString other = "information (Ok) \"Title\": \"Other words\"";
  QTest::newRow("other words") << "otherWords"
                               << QStringList{unexpected + words + "; expected was " + other,
                                              missing + other};
  QTest::newRow("another kind of box")
      << "anotherKind"
      << QStringList{
             unexpected + "question (Yes No) \"Title\": \"Words\"; expected was information (Ok)",
             missing + "information (Ok)"};
  QTest::newRow("the wrong order")
      << "theWrongOrder"
      << QStringList{unexpected +
                         "information (Ok) \"Second\": \"Words\"; expected was "
                         "information (Ok) \"First\"",
                     missing + "information (Ok) \"Second\""};
  QTest::newRow("an answer that leaves the dialog open")
      << "anAnswerThatLeavesTheDialogOpen"
      << QStringList{open + "other box (Ok) \"Title\": \"Words\""};
  QTest::newRow("a name that the dialog refuses")
      << "aNameThatTheDialogRefuses"
      << QStringList{unexpected + "other box (Ok) \"Open\"", open + "file dialog \"Open\""};
}

void TestDialogAnswers::whatIsNotExpectedIsTold() {
  QFETCH(const QString, check);
  QFETCH(const QStringList, said);
  QProcess process;
  process.start(QCoreApplication::applicationFilePath(), {"FailingAnswers", check});
  QVERIFY(process.waitForFinished());
  QVERIFY(process.exitCode() > 0);
  QStringList failures;
  for (const QString& line : QString::fromLocal8Bit(process.readAll()).split('\n'))
    if (line.startsWith("FAIL!"))
      failures << line.section(") ", 1);
  QCOMPARE(failures.size(), said.size());
  for (qsizetype number = 0; number < said.size(); ++number)
    QVERIFY2(failures.at(number).startsWith(said.at(number)), qPrintable(failures.at(number)));
}

KELMORA_GUI_TEST_MAIN(TestDialogAnswers)
#include "tst_dialoganswers.moc"

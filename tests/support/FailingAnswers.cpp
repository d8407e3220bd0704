// What a test says when the dialogs are not those that it expects. These fail on
// purpose; tst_dialoganswers runs them in a process of their own.

#include <QApplication>

#include "support/DialogAnswers.h"
#include "support/ScratchMain.h"

class FailingAnswers : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

  void aDialogThatNeverComes() { const DialogAnswers answers{ExpectedDialog::file("a", "Save")}; }

  void aDialogTooMuch() {
    const DialogAnswers answers;
    QMessageBox::information(nullptr, "Title", "Words");
    QVERIFY(!answers.allCame());
  }

  void otherWords() {
    const DialogAnswers answers{ExpectedDialog::information("Title", "Other words")};
    QMessageBox::information(nullptr, "Title", "Words");
  }

  void anotherKind() {
    const DialogAnswers answers{ExpectedDialog::information()};
    QMessageBox::question(nullptr, "Title", "Words");
  }

  void theWrongOrder() {
    const DialogAnswers answers{ExpectedDialog::information("First"),
                                ExpectedDialog::information("Second")};
    QMessageBox::information(nullptr, "Second", "Words");
    QMessageBox::information(nullptr, "First", "Words");
  }

  void anAnswerThatLeavesTheDialogOpen() {
    const DialogAnswers answers{ExpectedDialog::of<QMessageBox>([](QMessageBox& /*box*/) {})};
    QMessageBox::warning(nullptr, "Title", "Words");
  }

  void aNameThatTheDialogRefuses() {
    const DialogAnswers answers{ExpectedDialog::file("no folder/name")};
    (void)QFileDialog::getOpenFileName(nullptr, "Open");
  }
};

KELMORA_GUI_TEST_MAIN(FailingAnswers)
#include "FailingAnswers.moc"

#include "support/DialogAnswers.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <utility>

namespace {

QString kindOf(const QMessageBox& box) {
  QStringList buttons;
  for (const auto& [button, name] :
       {std::pair{QMessageBox::Ok, "Ok"}, {QMessageBox::Yes, "Yes"}, {QMessageBox::No, "No"}})
    if (box.standardButtons().testFlag(button))
      buttons << QLatin1String(name);
  const qsizetype others = box.buttons().size() - buttons.size();
  if (others != 0)
    buttons << QStringLiteral("and %1 more").arg(others);
  const QString icon = box.icon() == QMessageBox::Information ? QStringLiteral("information")
                       : box.icon() == QMessageBox::Question  ? QStringLiteral("question")
                                                              : QStringLiteral("other box");
  return QStringLiteral("%1 (%2)").arg(icon, buttons.join(u' '));
}

void press(QDialog& dialog, QMessageBox::StandardButton answer) {
  auto* box = qobject_cast<QMessageBox*>(&dialog);
  QTest::mouseClick(box->button(answer), Qt::LeftButton);
}

/// How often it is looked whether a dialog has the keyboard, before it is answered
/// without.
constexpr int patience = 400;

/// Whether a file dialog asks whether to replace the file.
bool isReplaceQuestion(const QDialog& dialog) {
  const auto* box = qobject_cast<const QMessageBox*>(&dialog);
  return box && qobject_cast<QFileDialog*>(box->parentWidget()) && box->button(QMessageBox::Yes);
}

}  // namespace

DialogLooks DialogLooks::of(const QDialog& dialog) {
  if (const auto* box = qobject_cast<const QMessageBox*>(&dialog))
    return {kindOf(*box), box->windowTitle(), box->text()};
  if (const auto* files = qobject_cast<const QFileDialog*>(&dialog))
    return {QStringLiteral("file dialog"), files->windowTitle(), files->nameFilters().join(u';')};
  return {QString::fromLatin1(dialog.metaObject()->className()), dialog.windowTitle(), {}};
}

QString DialogLooks::words() const {
  QString words = kind;
  if (!title.isNull())
    words += QStringLiteral(" \"%1\"").arg(title);
  if (!text.isNull())
    words += QStringLiteral(": \"%1\"").arg(text);
  return words;
}

ExpectedDialog ExpectedDialog::information(const QString& title, const QString& text) {
  return {{QStringLiteral("information (Ok)"), title, text},
          [](QDialog& dialog) { press(dialog, QMessageBox::Ok); }};
}

ExpectedDialog ExpectedDialog::question(const QString& title, const QString& text,
                                        QMessageBox::StandardButton answer) {
  return {{QStringLiteral("question (Yes No)"), title, text},
          [answer](QDialog& dialog) { press(dialog, answer); }};
}

ExpectedDialog ExpectedDialog::question(const QString& title, const QString& text, Qt::Key answer) {
  return {{QStringLiteral("question (Yes No)"), title, text},
          [answer](QDialog& dialog) { QTest::keyClick(dialog.windowHandle(), answer); }};
}

ExpectedDialog ExpectedDialog::file(const QString& name, const QString& title,
                                    const QString& filters) {
  return {{QStringLiteral("file dialog"), title, filters}, [name](QDialog& dialog) {
            if (name.isEmpty()) {
              QTest::keyClick(&dialog, Qt::Key_Escape);
              return;
            }
            auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            edit->setText(QDir::current().absoluteFilePath(name));
            QTest::keyClick(edit, Qt::Key_Return);
          }};
}

bool ExpectedDialog::isMeant(const QDialog& dialog) const {
  const DialogLooks seen = DialogLooks::of(dialog);
  return (seen.kind == looks_.kind || dialog.inherits(looks_.kind.toLatin1().constData())) &&
         (looks_.title.isNull() || seen.title == looks_.title) &&
         (looks_.text.isNull() || seen.text == looks_.text);
}

DialogAnswers::DialogAnswers(const QList<ExpectedDialog>& expected) : expected_(expected) {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isModal() && window->isVisible())
      passedOver_ << window;
  // Behind the timer's own turn: an answer may lead to another question, and a
  // timer that waits for its turn to end sees none.
  connect(&timer_, &QTimer::timeout, this, &DialogAnswers::look, Qt::QueuedConnection);
  timer_.start(5);
}

DialogAnswers::~DialogAnswers() {
  for (const ExpectedDialog& missing : std::as_const(expected_))
    fail(QStringLiteral("this dialog never came: ") + missing.words());
}

void DialogAnswers::look() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || !dialog->isVisible() || passedOver_.contains(dialog))
    return;
  if (!dialog->isActiveWindow() && ++looks_ < patience)
    return;
  looks_ = 0;
  passedOver_ << dialog;
  const QPointer<QDialog> met = dialog;
  meet(*dialog);
  // A dialog that opens later may lie at the same place, or be the same.
  passedOver_.removeOne(dialog);
  if (!met || !met->isVisible())
    return;
  fail(QStringLiteral("this dialog is still open after its answer: ") +
       DialogLooks::of(*met).words());
  met->done(QDialog::Rejected);
}

void DialogAnswers::meet(QDialog& dialog) {
  if (isReplaceQuestion(dialog)) {
    press(dialog, QMessageBox::Yes);
    return;
  }
  parents_ << dialog.parentWidget();
  if (!expected_.isEmpty() && expected_.first().isMeant(dialog)) {
    expected_.takeFirst().answer(dialog);
    return;
  }
  fail(QStringLiteral("this dialog was not expected: %1; expected was %2")
           .arg(DialogLooks::of(dialog).words(),
                expected_.isEmpty() ? QStringLiteral("none") : expected_.first().words()));
  dialog.done(QDialog::Rejected);
}

void DialogAnswers::fail(const QString& message) {
  failed_ = true;
  QTest::qFail(qPrintable(message), __FILE__, __LINE__);
}

#pragma once

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

/// Answers the file dialogs and message boxes that come up, as a player does.
class Answers : public QObject {
 public:
  /// An empty name presses Cancel.
  explicit Answers(const QString& fileName) {
    const auto answer = [this, fileName] {
      QWidget* modal = QApplication::activeModalWidget();
      if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
        seen << dialog->windowTitle() + " | " + dialog->nameFilters().join(';');
        modes << dialog->acceptMode();
        folders << dialog->directory().absolutePath();
        parents << dialog->parentWidget();
        if (fileName.isEmpty()) {
          QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
          auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
          edit->setText(QDir::current().absoluteFilePath(fileName));
          QTest::keyClick(edit, Qt::Key_Return);
        }
      } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        if (auto* yes = box->button(QMessageBox::Yes)) {
          QTest::mouseClick(yes, Qt::LeftButton);
          return;
        }
        seen << box->windowTitle() + ": " + box->text();
        buttons << box->standardButtons();
        icons << box->icon();
        parents << box->parentWidget();
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
      }
    };
    // Behind the timer's own turn: an answer may lead to another question.
    connect(&timer_, &QTimer::timeout, this, answer, Qt::QueuedConnection);
    timer_.start(20);
  }

  /// What came up, but for the question whether to replace a file.
  QStringList seen;
  /// Whose each of them was.
  QList<const QWidget*> parents;
  /// Those of the message boxes among them.
  QList<QMessageBox::StandardButtons> buttons;
  QList<QMessageBox::Icon> icons;
  /// Those of the file dialogs among them, and where each of them started.
  QList<QFileDialog::AcceptMode> modes;
  QStringList folders;

 private:
  QTimer timer_;
};

#pragma once

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The button of a dialog with exactly this text; null where there is none.
inline QPushButton* buttonOf(const QDialog& dialog, const QString& text) {
  for (auto* button : dialog.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (button->text() == text)
      return button;
  }
  return nullptr;
}

/// The signatures of the slots that a class itself declares, in their order.
inline QStringList slotsOf(const QMetaObject& type) {
  QStringList found;
  for (int index = type.methodOffset(); index < type.methodCount(); ++index)
    found << QString::fromLatin1(type.method(index).methodSignature());
  return found;
}

/// Waits until a modal dialog of this class is active and then calls `act` with it,
/// once. The dialog's own event loop runs meanwhile, so this works by a timer.
template <typename Dialog>
class WhenShown {
 public:
  explicit WhenShown(std::function<void(Dialog&)> act) : act_(std::move(act)) {
    timer_.setInterval(1);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog || !dialog->isActiveWindow())
        return;
      timer_.stop();
      seen_ = true;
      act_(*dialog);
    });
    timer_.start();
  }
  Q_DISABLE_COPY_MOVE(WhenShown)

  [[nodiscard]] bool seen() const { return seen_; }

 private:
  std::function<void(Dialog&)> act_;
  QTimer timer_;
  bool seen_ = false;
};

/// Answers the next message box with a button or a key, and keeps what the box said.
class BoxAnswer {
 public:
  explicit BoxAnswer(QMessageBox::StandardButton answer)
      : shown_([this, answer](QMessageBox& box) {
          note(box);
          if (auto* button = box.button(answer))
            QTest::mouseClick(button, Qt::LeftButton);
          else
            box.reject();
        }) {}
  explicit BoxAnswer(Qt::Key answer)
      : shown_([this, answer](QMessageBox& box) {
          note(box);
          QTest::keyClick(box.windowHandle(), answer);
        }) {}
  Q_DISABLE_COPY_MOVE(BoxAnswer)

  /// The box's title, text, icon and buttons; empty where none has come up.
  [[nodiscard]] QStringList said() const { return said_; }

  static QStringList information(const QString& title, const QString& text) {
    return {title, text, QStringLiteral("information"), QStringLiteral("Ok")};
  }
  static QStringList question(const QString& title, const QString& text) {
    return {title, text, QStringLiteral("question"), QStringLiteral("Yes No")};
  }

 private:
  void note(const QMessageBox& box) {
    QStringList buttons;
    for (const auto& [button, name] :
         {std::pair{QMessageBox::Ok, "Ok"}, {QMessageBox::Yes, "Yes"}, {QMessageBox::No, "No"}}) {
      if (box.standardButtons().testFlag(button))
        buttons << QLatin1String(name);
    }
    const qsizetype others = box.buttons().size() - buttons.size();
    if (others != 0)
      buttons << QStringLiteral("and %1 more").arg(others);
    const QString icon = box.icon() == QMessageBox::Information ? QStringLiteral("information")
                         : box.icon() == QMessageBox::Question  ? QStringLiteral("question")
                                                                : QStringLiteral("other");
    said_ = {box.windowTitle(), box.text(), icon, buttons.join(u' ')};
  }

  QStringList said_;
  WhenShown<QMessageBox> shown_;
};

/// The controls of an editor. The buttons are found by their texts, as by a player;
/// `entry` is the word for an entry in these texts.
class EditorControls {
 public:
  EditorControls(QDialog& dialog, const QString& entry)
      : list(dialog.findChild<QComboBox*>()),
        commands(dialog.findChild<QPlainTextEdit*>()),
        label(dialog.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly)),
        edit(buttonOf(dialog, QStringLiteral("Edit ") + entry)),
        save(buttonOf(dialog, QStringLiteral("Save ") + entry)),
        cancel(buttonOf(dialog, QStringLiteral("Cancel %1 edit").arg(entry))),
        add(buttonOf(dialog, QStringLiteral("Add ") + entry)),
        remove(buttonOf(dialog, QStringLiteral("Delete ") + entry)),
        close(buttonOf(dialog, QStringLiteral("Close"))) {}

  [[nodiscard]] bool complete() const {
    return list && commands && edit && save && cancel && add && remove && close;
  }

  /// The words for the controls that are enabled, in the order in which they are read.
  [[nodiscard]] QString enabled() const {
    QStringList words;
    for (const auto& [control, word] : named()) {
      if (control && control->isEnabled())
        words << word;
    }
    return words.join(u' ');
  }

  /// The word for the control that has the focus.
  [[nodiscard]] QString focused() const {
    for (const auto& [control, word] : named()) {
      if (control && control->hasFocus())
        return word;
    }
    return {};
  }

  [[nodiscard]] QStringList items() const {
    QStringList texts;
    for (int index = 0; index < list->count(); ++index)
      texts << list->itemText(index);
    return texts;
  }

  [[nodiscard]] QList<std::pair<QWidget*, QString>> named() const {
    return {{commands, "commands"}, {label, "label"},   {edit, "edit"},
            {save, "save"},         {cancel, "cancel"}, {list, "list"},
            {add, "add"},           {remove, "delete"}, {close, "close"}};
  }

  QComboBox* list;
  QPlainTextEdit* commands;
  QLineEdit* label;  // null where labels cannot be changed
  QPushButton* edit;
  QPushButton* save;
  QPushButton* cancel;
  QPushButton* add;
  QPushButton* remove;
  QPushButton* close;
};

/// Clicks with the mouse, which does nothing where the button is disabled.
inline void click(QPushButton* button) {
  QTest::mouseClick(button, Qt::LeftButton);
}

/// Deletes all text of the field and types another one, key by key.
template <typename Field>
void retype(Field* field, const QString& text) {
  field->setFocus();
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(field, Qt::Key_Delete);
  for (const QChar character : text) {
    if (character == u'\n')
      QTest::keyClick(field, Qt::Key_Return);
    else
      QTest::keyClicks(field, character);
  }
}

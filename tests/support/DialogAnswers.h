// Answers the modal dialogs that come up while a test runs: message boxes, file
// dialogs and any other.
//
//   const DialogAnswers answers{ExpectedDialog::file("my.settings"),
//                               ExpectedDialog::information("Import Settings")};
//   importAction->trigger();
//
// The test fails, and says which, when a dialog comes that is not the next one of
// the list, or has not come when the list goes out of scope. A dialog that is not
// expected is closed, so that the test goes on.
#pragma once

#include <QFileDialog>
#include <QMessageBox>
#include <QObject>
#include <QTimer>
#include <functional>
#include <initializer_list>

/// A dialog as a player sees it.
struct DialogLooks {
  QString kind;   ///< "information (Ok)", "file dialog", or the class of another dialog
  QString title;  ///< null in what is expected: any
  QString text;   ///< of a message box, or the filters of a file dialog; null as above

  static DialogLooks of(const QDialog& dialog);
  [[nodiscard]] QString words() const;
};

/// A dialog that a test expects, and what is done with it.
class ExpectedDialog {
 public:
  using Act = std::function<void(QDialog&)>;

  /// A box with nothing but Ok, which is pressed.
  static ExpectedDialog information(const QString& title = {}, const QString& text = {});
  /// A box with Yes and No, of which one is pressed, or some key.
  static ExpectedDialog question(const QString& title, const QString& text,
                                 QMessageBox::StandardButton answer);
  static ExpectedDialog question(const QString& title, const QString& text, Qt::Key answer);
  /// A file dialog that gets this name and Enter, and Yes if it asks whether to
  /// replace the file. An empty name closes it with Escape.
  static ExpectedDialog file(const QString& name, const QString& title = {},
                             const QString& filters = {});
  /// Any other dialog, which must be closed when `act` has returned.
  template <typename Dialog>
  static ExpectedDialog of(std::function<void(Dialog&)> act) {
    const QString kind = QString::fromLatin1(Dialog::staticMetaObject.className());
    return {{kind, {}, {}},
            [act = std::move(act)](QDialog& dialog) { act(*qobject_cast<Dialog*>(&dialog)); }};
  }

  /// The same, and before the answer somebody looks at it.
  [[nodiscard]] ExpectedDialog seenBy(const Act& look) const {
    return {looks_, [look, act = act_](QDialog& dialog) {
              look(dialog);
              act(dialog);
            }};
  }
  [[nodiscard]] bool isMeant(const QDialog& dialog) const;
  [[nodiscard]] QString words() const { return looks_.words(); }
  void answer(QDialog& dialog) const { act_(dialog); }

 private:
  ExpectedDialog(DialogLooks looks, Act act) : looks_(std::move(looks)), act_(std::move(act)) {}

  DialogLooks looks_;
  Act act_;
};

/// As long as it lives, answers the modal dialogs that open, in this order. Those
/// that were open before are left alone. Without any row it is an assertion that
/// no dialog comes.
class DialogAnswers : public QObject {
 public:
  explicit DialogAnswers(const QList<ExpectedDialog>& expected);
  DialogAnswers(std::initializer_list<ExpectedDialog> expected = {})
      : DialogAnswers(QList<ExpectedDialog>(expected)) {}
  ~DialogAnswers() override;
  Q_DISABLE_COPY_MOVE(DialogAnswers)

  /// Whether all that were expected have come up to now, and no other.
  [[nodiscard]] bool allCame() const { return expected_.isEmpty() && !failed_; }
  /// The windows over which the dialogs came, in order.
  [[nodiscard]] const QList<const QWidget*>& parents() const { return parents_; }

 private:
  void look();
  void meet(QDialog& dialog);
  void fail(const QString& message);

  QList<ExpectedDialog> expected_;
  QList<const QWidget*> parents_;
  /// Those that need no answer: open before, or being answered at the moment.
  QWidgetList passedOver_;
  QTimer timer_;
  int looks_ = 0;
  bool failed_ = false;
};

// What the tests of the dialogs share: a dialog with its surroundings, and what can
// be seen and heard of it.
#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QGridLayout>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>
#include <functional>
#include <memory>

#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"
#include "support/Controls.h"

using namespace kelmora;
using namespace kelmora::dialogs;
using namespace kelmora::settings;

/// Stands in for the main window: notes what a dialog asks it to do, in order.
class RecordingHost : public SettingsHost {
 public:
  void applySettings(Occasion occasion) override {
    calls << occasion;
    if (onCall)
      onCall();
  }

  QList<Occasion> calls;
  /// Looks at the dialog and the record while a call is being made.
  std::function<void()> onCall;
};

/// A settings dialog with all that it needs: base of a test class, which calls
/// create() before each test function.
template <typename Dialog>
class SettingsDialogTest {
 protected:
  void create() {
    settings_ = ClientSettings();
    host_.calls.clear();
    host_.onCall = nullptr;
    window_ = std::make_unique<QWidget>();
    window_->resize(800, 800);
    window_->show();
    dialog_ = new Dialog(*window_, host_, settings_);
  }
  void show() {
    dialog_->showDialog();
    QVERIFY(QTest::qWaitForWindowActive(dialog_));
  }

  ClientSettings settings_;
  RecordingHost host_;
  std::unique_ptr<QWidget> window_;
  Dialog* dialog_ = nullptr;
};

inline QGridLayout* gridOf(const QWidget& dialog) {
  return qobject_cast<QGridLayout*>(dialog.layout());
}

/// The widget in a cell; null where there is none, or one of another class.
template <typename Widget = QWidget>
Widget* at(const QWidget& dialog, int row, int column) {
  QLayoutItem* item = gridOf(dialog)->itemAtPosition(row, column);
  return item ? qobject_cast<Widget*>(item->widget()) : nullptr;
}

/// The title, and the icon of that name among the resources.
inline void compareHead(const QDialog& dialog, const QString& title, const QString& icon) {
  const QIcon expected(QStringLiteral(":/icons/%1.png").arg(icon));
  QCOMPARE(dialog.windowTitle(), title);
  QVERIFY(!dialog.windowIcon().isNull());
  QCOMPARE(dialog.windowIcon().pixmap(32).toImage(), expected.pixmap(32).toImage());
}

/// "row,column" of every item, sorted; and "a span" for an item that fills more
/// than one cell.
inline QStringList placesIn(const QWidget& dialog) {
  const QGridLayout* grid = gridOf(dialog);
  QStringList places;
  for (int i = 0; i < grid->count(); ++i) {
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(i, &row, &column, &rows, &columns);
    if (rows != 1 || columns != 1)
      places << QStringLiteral("a span");
    places << QStringLiteral("%1,%2").arg(row).arg(column);
  }
  places.sort();
  return places;
}

/// What a screen reader calls the widget: a name given to it, its label, or
/// else its text. (A combo box gives its current text for a name.)
inline QString spokenName(QWidget* widget) {
  if (!widget->accessibleName().isEmpty())
    return widget->accessibleName();
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
  if (!accessible)
    return QString();
  const auto labels = accessible->relations(QAccessible::Label);
  return (labels.isEmpty() ? accessible : labels.first().first)->text(QAccessible::Name);
}

/// The widgets in the order in which Tab reaches them, from the one with the focus
/// once around.
inline QList<QWidget*> tabOrder(const QWidget& dialog) {
  QList<QWidget*> order;
  for (QWidget* focus = dialog.focusWidget(); focus && !order.contains(focus);
       focus = dialog.focusWidget()) {
    order << focus;
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  return order;
}

/// What a screen reader calls each of them.
inline QStringList spokenNames(const QWidget& dialog) {
  QStringList names;
  for (QWidget* widget : tabOrder(dialog))
    names << spokenName(widget);
  return names;
}

/// As long as it lives, every text of a dialog comes in another language.
class Foreign : public QTranslator {
 public:
  explicit Foreign(const char* dialog) : dialog_(dialog) {
    QCoreApplication::installTranslator(this);
  }
  [[nodiscard]] bool isEmpty() const override { return false; }
  [[nodiscard]] QString translate(const char* context, const char* source, const char* /*comment*/,
                                  int /*count*/) const override {
    return context == dialog_ ? QStringLiteral("foreign ") + QString::fromUtf8(source) : QString();
  }

 private:
  QByteArray dialog_;
};

/// The texts of all buttons and check boxes, in the order in which they were
/// made.
inline QStringList buttonTexts(const QWidget& dialog) {
  QStringList texts;
  for (const QAbstractButton* each : dialog.findChildren<QAbstractButton*>())
    texts << each->text();
  return texts;
}

/// The same in the other language.
inline QStringList foreign(QStringList texts) {
  return texts.replaceInStrings(QRegularExpression(QStringLiteral("^")),
                                QStringLiteral("foreign "));
}

#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QMetaMethod>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <functional>

#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::dialogs;
using namespace kelmora::settings;

/// Stands for the window: records what a dialog asks for, in order.
class RecordingHost : public SettingsHost {
 public:
  void installProxy() override { record(QStringLiteral("proxy")); }
  void buildColourSpans() override { record(QStringLiteral("spans")); }
  void setOutputFont(const QFont& font) override {
    record(QStringLiteral("output font ") + font.toString());
  }
  void setInputFont(const QFont& font) override {
    record(QStringLiteral("input font ") + font.toString());
  }
  void setToolbarIconSize(QSize size) override {
    record(QStringLiteral("icons %1x%2").arg(size.width()).arg(size.height()));
  }
  void storeSettings() override { record(QStringLiteral("store")); }

  QStringList calls;
  /// Looks at the world while a call is being made.
  std::function<void(const QString& call)> onCall;

 private:
  void record(const QString& call) {
    calls << call;
    if (onCall)
      onCall(call);
  }
};

inline QGridLayout* gridOf(const QWidget& dialog) {
  return qobject_cast<QGridLayout*>(dialog.layout());
}

/// What stands in a cell; null where nothing does or it is no such widget.
template <typename Widget = QWidget>
Widget* at(const QWidget& dialog, int row, int column) {
  QLayoutItem* item = gridOf(dialog)->itemAtPosition(row, column);
  return item ? qobject_cast<Widget*>(item->widget()) : nullptr;
}

inline QPushButton* button(const QWidget& dialog, const char* text) {
  for (QPushButton* candidate : dialog.findChildren<QPushButton*>())
    if (candidate->text() == QLatin1String(text))
      return candidate;
  return nullptr;
}

inline void click(QWidget* widget) {
  QTest::mouseClick(widget, Qt::LeftButton);
}

/// The slots that the class itself declares, in order.
inline QStringList slotsOf(const QMetaObject& type) {
  QStringList names;
  for (int i = type.methodOffset(); i < type.methodCount(); ++i)
    if (type.method(i).methodType() == QMetaMethod::Slot)
      names << QString::fromLatin1(type.method(i).methodSignature());
  return names;
}

/// "row,column Class" of every item, each in one cell of its own.
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

/// The widgets that Tab leads through, from the present focus once around.
inline QList<QWidget*> tabOrder(const QWidget& dialog) {
  QList<QWidget*> order;
  for (QWidget* focus = dialog.focusWidget(); focus && !order.contains(focus);
       focus = dialog.focusWidget()) {
    order << focus;
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  return order;
}

/// Says every text of a dialog in another language, as long as it lives.
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

/// The texts of all buttons, check boxes among them, in the order of their
/// making.
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

/// Answers the next modal dialog of that type, as soon as it is open.
template <typename Dialog>
class Answer : public QObject {
 public:
  explicit Answer(std::function<void(Dialog&)> answer) : answer_(std::move(answer)) {
    connect(&timer_, &QTimer::timeout, this, [this] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog || !dialog->isVisible())
        return;
      timer_.stop();
      given_ = true;
      answer_(*dialog);
    });
    timer_.start(5);
  }
  [[nodiscard]] bool given() const { return given_; }

 private:
  std::function<void(Dialog&)> answer_;
  QTimer timer_;
  bool given_ = false;
};

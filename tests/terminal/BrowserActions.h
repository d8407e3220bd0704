#pragma once

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>
#include <QWheelEvent>

#include "LayoutContents.h"
#include "PictureCompare.h"
#include "TwoLayouts.h"

using namespace kelmora;

/// What a player may do with a pane, and what can be observed of it besides what it
/// paints.
namespace browser_actions {

/// Something that a player does. It returns what was observed, which contains the text
/// `among` if the action had its effect.
struct Action {
  const char* name;
  const char* among;
  std::function<QString(QTextBrowser&)> act;
};

/// Where the view and the caret are.
inline QString state(const QTextBrowser& browser) {
  const QTextCursor cursor = browser.textCursor();
  const QRect caret = browser.cursorRect();
  return QStringLiteral("[at %1, %2-%3, caret %4,%5 %6x%7]")
      .arg(browser.verticalScrollBar()->value())
      .arg(cursor.anchor())
      .arg(cursor.position())
      .arg(caret.x())
      .arg(caret.y())
      .arg(caret.width())
      .arg(caret.height());
}

inline void scrollTo(QTextBrowser& browser, double part) {
  QScrollBar& bar = *browser.verticalScrollBar();
  bar.setValue(static_cast<int>(part * bar.maximum()));
}
inline void placeCaret(QTextBrowser& browser, int position) {
  QTextCursor cursor(browser.document());
  cursor.setPosition(position);
  browser.setTextCursor(cursor);
}

inline QString mouse(QTextBrowser& browser, QEvent::Type type, QPoint at,
                     Qt::KeyboardModifiers keys = Qt::NoModifier) {
  const bool moves = type == QEvent::MouseMove;
  const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, at, browser.viewport()->mapToGlobal(QPointF(at)),
                    moves ? Qt::NoButton : Qt::LeftButton, held, keys);
  QCoreApplication::sendEvent(browser.viewport(), &event);
  return state(browser);
}
inline QString drag(QTextBrowser& browser, QPoint from, QPoint to) {
  QString told = mouse(browser, QEvent::MouseButtonPress, from);
  for (int i = 1; i <= 8; ++i)
    told += mouse(browser, QEvent::MouseMove, from + (to - from) * i / 8);
  told += mouse(browser, QEvent::MouseButtonRelease, to);
  return told + browser.textCursor().selectedText();
}
inline QString hover(QTextBrowser& browser, QPoint at) {
  QMouseEvent event(QEvent::MouseMove, at, browser.viewport()->mapToGlobal(QPointF(at)),
                    Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(browser.viewport(), &event);
  return QString::number(browser.viewport()->cursor().shape());
}
inline QString keys(QTextBrowser& browser, std::initializer_list<QKeyCombination> pressed) {
  QString told;
  for (const QKeyCombination key : pressed) {
    QTest::keyClick(&browser, key.key(), key.keyboardModifiers());
    told += state(browser);
  }
  return told;
}
/// Points all over the view.
template <typename See>
QString everywhere(QTextBrowser& browser, const See& see) {
  QString told;
  for (int y = 1; y < browser.viewport()->height(); y += 7)
    for (int x = 1; x < browser.viewport()->width(); x += 11)
      told += see(QPoint(x, y)) + u' ';
  return told;
}
/// Records the signals of a browser in their order, as long as it exists.
class Signals {
 public:
  explicit Signals(QTextBrowser& browser) {
    QObject::connect(&browser, &QTextBrowser::highlighted, &context_,
                     [this](const QUrl& link) { told += "highlighted " + link.toString() + '\n'; });
    QObject::connect(&browser, &QTextBrowser::anchorClicked, &context_,
                     [this](const QUrl& link) { told += "clicked " + link.toString() + '\n'; });
    QObject::connect(&browser, &QTextBrowser::selectionChanged, &context_,
                     [this] { told += "selection\n"; });
    QObject::connect(&browser, &QTextBrowser::cursorPositionChanged, &context_,
                     [this] { told += "position\n"; });
  }
  QString told;

 private:
  QObject context_;
};

std::vector<Action> mouseActions();
std::vector<Action> keyActions();
std::vector<Action> programActions();

}  // namespace browser_actions

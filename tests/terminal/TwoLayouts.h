#pragma once

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextLayout>

#include "terminal/layout/PaneLayout.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// The layout under test: the one place where it is made.
inline void giveLayoutUnderTest(QTextDocument& document) {
  document.setDocumentLayout(new PaneLayout(document));
}

/// Lays out all of a page, so that no height is an estimate.
inline constexpr qreal belowEverything = 1e9;

/// Lays out all between two heights and reports the size to the browser. Returns
/// whether a height changed.
inline bool layOut(QTextBrowser& browser, qreal top, qreal bottom) {
  auto* layout = dynamic_cast<PaneLayout*>(browser.document()->documentLayout());
  if (!layout)
    return false;
  const bool changed = layout->layOut(top, bottom);
  layout->emitSizeChange();
  // The caller of layOut() has to have the changes painted.
  if (changed)
    browser.viewport()->update();
  return changed;
}

/// Two browsers with the same content, in a window each: one with the toolkit's
/// layout, the other with the layout under test.
class TwoLayouts {
 public:
  explicit TwoLayouts(const QFont& font, QSize size = {320, 240}) {
    giveLayoutUnderTest(*found.document());
    for (QTextBrowser* browser : {&expected, &found}) {
      browser->document()->setDefaultStyleSheet(QStringLiteral("a { color: #6fa8ff }"));
      browser->setWordWrapMode(QTextOption::WordWrap);
      browser->setOpenLinks(false);
      browser->setReadOnly(true);
      QPalette palette = browser->palette();
      palette.setColor(QPalette::Base, Qt::black);
      palette.setColor(QPalette::Text, Qt::white);
      browser->setPalette(palette);
      browser->setFont(font);
      browser->resize(size);
    }
  }

  /// Does the same to both.
  template <typename Change>
  void both(const Change& change) {
    change(expected);
    change(found);
  }
  void show() {
    both([](QTextBrowser& browser) { browser.show(); });
    QCoreApplication::processEvents();
  }
  /// Shows all scroll bars, always: if one came and went by an estimated height, the
  /// two pages would differ in size.
  void showBars() {
    both([](QTextBrowser& browser) {
      browser.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
      browser.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    });
  }
  void resize(QSize size) {
    both([size](QTextBrowser& browser) { browser.resize(size); });
  }

  /// Lays out everything in both and sets the scroll bars by it. False if the bars keep
  /// coming and going without end.
  [[nodiscard]] bool settle() {
    takeBarPolicies();
    return layOutAll() && agreeOnBars();
  }
  /// Scrolls both to the same height, given as a fraction of the toolkit's range.
  void scrollTo(double part) {
    const QScrollBar& bar = *expected.verticalScrollBar();
    const int value = static_cast<int>(part * bar.maximum());
    both([value](QTextBrowser& browser) { browser.verticalScrollBar()->setValue(value); });
    alignAcross();
  }
  /// The caret may scroll a page to the right by an amount that depends on what was
  /// laid out by then; with an estimated width it may be a pixel or two off.
  void alignAcross() {
    const QScrollBar& right = *expected.horizontalScrollBar();
    if (right.maximum() == found.horizontalScrollBar()->maximum())
      found.horizontalScrollBar()->setValue(right.value());
  }

  QTextBrowser expected;
  QTextBrowser found;

 private:
  [[nodiscard]] static bool isUnfinished(const QTextDocument& document) {
    QTextBlock block = document.begin();
    while (block.isValid() && block.layout()->lineCount() > 0)
      block = block.next();
    return block.isValid();
  }
  bool layOutAll() {
    for (int tries = 0; tries < 20; ++tries) {
      // Asked for the size, the toolkit lays out the rest of the document, but not
      // always all of it if the page has shrunk before.
      both([](QTextBrowser& browser) { (void)browser.document()->size(); });
      if (isUnfinished(*expected.document()))
        expected.document()->markContentsDirty(0, expected.document()->characterCount());
      const bool changed = layOut(found, 0, belowEverything);
      QCoreApplication::processEvents();
      if (!changed)
        return true;
    }
    return false;
  }
  /// Some pages fit without a scroll bar, but not next to one. Whether they have one
  /// depends on what was there before, in both layouts. The toolkit's page then gets the
  /// bars of the other one, if it would keep them by itself.
  bool agreeOnBars() {
    const auto bars = [](const QTextBrowser& browser) {
      return std::pair(browser.verticalScrollBar()->isVisible(),
                       browser.horizontalScrollBar()->isVisible());
    };
    if (bars(expected) == bars(found))
      return true;
    const auto policy = [](bool shown) {
      return shown ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    };
    const auto [down, right] = bars(found);
    expected.setVerticalScrollBarPolicy(policy(down));
    expected.setHorizontalScrollBarPolicy(policy(right));
    if (!layOutAll())
      return false;
    if ((expected.verticalScrollBar()->maximum() > 0) == down &&
        (expected.horizontalScrollBar()->maximum() > 0) == right)
      return true;
    takeBarPolicies();
    return layOutAll();
  }
  void takeBarPolicies() {
    expected.setVerticalScrollBarPolicy(found.verticalScrollBarPolicy());
    expected.setHorizontalScrollBarPolicy(found.horizontalScrollBarPolicy());
  }
};

/// Scrolls to the end until its height is no longer an estimate; false if that never
/// happens.
inline bool scrollToEnd(QTextBrowser& browser) {
  QScrollBar& bar = *browser.verticalScrollBar();
  for (int tries = 0; tries < 30; ++tries) {
    const int maximum = bar.maximum();
    bar.setValue(maximum);
    (void)browser.viewport()->grab();
    QCoreApplication::processEvents();
    if (bar.maximum() == maximum && bar.value() == maximum)
      return true;
  }
  return false;
}

/// Scrolls until a block, whose height was estimated at first, is at the top or as near
/// to it as possible.
inline bool scrollToBlock(QTextBrowser& browser, int number) {
  const QScrollBar& bar = *browser.verticalScrollBar();
  const auto top = [&] {
    const QTextBlock block = browser.document()->findBlockByNumber(number);
    return static_cast<int>(browser.document()->documentLayout()->blockBoundingRect(block).top());
  };
  for (int tries = 0; tries < 30; ++tries) {
    const int maximum = bar.maximum();
    browser.verticalScrollBar()->setValue(top());
    (void)browser.viewport()->grab();
    QCoreApplication::processEvents();
    if (bar.maximum() == maximum && bar.value() == std::min(top(), maximum))
      return true;
  }
  return false;
}

#pragma once

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextLayout>

#include "terminal/view/PaneLayout.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// The layout under test: the one place where it is made.
inline void giveLayoutUnderTest(QTextDocument& document) {
  document.setDocumentLayout(new PaneLayout(document));
}

/// Nothing of a page stays an estimate.
inline constexpr qreal belowEverything = 1e9;

/// Lays out what stands between two heights and has the browser know it; true
/// where a height changed.
inline bool layOut(QTextBrowser& browser, qreal top, qreal bottom) {
  auto* layout = dynamic_cast<PaneLayout*>(browser.document()->documentLayout());
  if (!layout)
    return false;
  const bool changed = layout->layOut(top, bottom);
  layout->tellSize();
  // Who has the layout work shows what came of it.
  if (changed)
    browser.viewport()->update();
  return changed;
}

/// Two browsers that are shown the same, side by side in a window each: one
/// with the toolkit's layout, the other with the layout under test.
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

  /// The same is done to both.
  template <typename Change>
  void both(const Change& change) {
    change(expected);
    change(found);
  }
  void show() {
    both([](QTextBrowser& browser) { browser.show(); });
    QCoreApplication::processEvents();
  }
  /// Where bars come and go by an estimated height, the page is of another size.
  void showBars() {
    both([](QTextBrowser& browser) {
      browser.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
      browser.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    });
  }
  void resize(QSize size) {
    both([size](QTextBrowser& browser) { browser.resize(size); });
  }

  /// Both layouts tell final heights, and the scroll bars know them. False where
  /// that has no end.
  [[nodiscard]] bool settle() {
    takeBarPolicies();
    return layOutAll() && agreeOnBars();
  }
  /// Scrolls both to the same height, in parts of the toolkit's range.
  void scrollTo(double part) {
    const QScrollBar& bar = *expected.verticalScrollBar();
    const int value = static_cast<int>(part * bar.maximum());
    both([value](QTextBrowser& browser) { browser.verticalScrollBar()->setValue(value); });
    alignAcross();
  }
  /// How far to the right a caret has taken a page goes by what was laid out by
  /// then, and a width that was estimated may be a pixel or two off.
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
      // The toolkit lays out all that is left when it is asked for the size, but
      // where a page shrank before that it may not come to its end.
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
  /// Some pages fit without a bar, but not beside one: whether there is one goes
  /// by what was there before, in either layout. There the toolkit's page takes
  /// the bars of the other one, as long as it would keep them by itself.
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

/// Until the end that was an estimate is the end; false if that is never.
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

/// Until a block that stood at an estimated height stands at the top, or as
/// near as it gets.
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

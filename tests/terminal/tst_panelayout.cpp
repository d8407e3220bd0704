#include <QApplication>
#include <QTest>

#include "LayoutCompare.h"
#include "LayoutContents.h"
#include "support/ScratchMain.h"

using namespace layout_contents;

namespace {

using Write = std::function<void(QTextBrowser&)>;

/// How often a content is repeated on a page, so that it can be scrolled.
constexpr int repeats = 4;

void fill(TwoLayouts& two, const Write& write) {
  for (int i = 0; i < repeats; ++i)
    two.both(write);
}

/// Drops paragraphs from the top, as a pane does.
void dropParagraphs(QTextBrowser& browser, int count) {
  QTextDocument& document = *browser.document();
  document.setMaximumBlockCount(std::max(1, document.blockCount() - count));
  document.setMaximumBlockCount(0);
}

QTextCursor selection(QTextBrowser& browser, int anchor, int position) {
  QTextCursor cursor(browser.document());
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  return cursor;
}

}  // namespace

/// The pane's layout paints the same as the toolkit's own, at the same places.
class TestPaneLayout : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aPageIsPaintedAlike_data() { pages(Fonts::All); }
  void aPageIsPaintedAlike();
  void everythingStandsAtTheSamePlace_data() { pages(Fonts::All); }
  void everythingStandsAtTheSamePlace();
  void whatComesIntoSightIsPaintedAlike_data() { pages(Fonts::All); }
  void whatComesIntoSightIsPaintedAlike();
  void anotherSizeIsPaintedAlike_data() { pages(Fonts::TwoOfThem); }
  void anotherSizeIsPaintedAlike();
  void textThatComesAndGoesIsPaintedAlike_data() { pages(Fonts::TwoOfThem); }
  void textThatComesAndGoesIsPaintedAlike();
  void selectionsArePaintedAlike_data() { pages(Fonts::All); }
  void selectionsArePaintedAlike();
  void barsComeAndGoAlike_data() { pages(Fonts::TwoOfThem); }
  void barsComeAndGoAlike();

 private:
  /// For tests that paint a page many times: they use the pane's font and only one of
  /// the others, a different one for each content.
  enum class Fonts { All, TwoOfThem };
  static void pages(Fonts which);
};

void TestPaneLayout::pages(Fonts which) {
  QTest::addColumn<Write>("write");
  QTest::addColumn<QFont>("font");
  const auto all = fonts();
  std::size_t other = 1;
  for (const Content& content : allContents()) {
    for (std::size_t i = 0; i < all.size(); ++i)
      if (which == Fonts::All || i == 0 || i == other)
        QTest::addRow("%s, %s", content.name, all[i].name) << content.write << all[i].font;
    other = other % (all.size() - 1) + 1;
  }
}

void TestPaneLayout::aPageIsPaintedAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  two.showBars();
  fill(two, write);
  two.show();
  QVERIFY(two.settle());
  QCOMPARE(isOfOneColour(pictureOf(*two.expected.viewport())),
           two.expected.toPlainText().trimmed().isEmpty());
  using Ratios = std::vector<double>;
  const std::pair<double, Ratios> views[]{{0, {1, 1.5}}, {0.5, {1, 2}}, {1, {1, 1.5}}};
  for (const auto& [height, pixelRatios] : views) {
    two.scrollTo(height);
    for (const double pixelRatio : pixelRatios)
      COMPARE_LAYOUTS(layout_compare::ofPictures(two, pixelRatio));
  }
  COMPARE_LAYOUTS(layout_compare::ofScrollBars(two));
}

void TestPaneLayout::everythingStandsAtTheSamePlace() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  two.showBars();
  fill(two, write);
  two.show();
  QVERIFY(two.settle());
  two.scrollTo(0.3);
  COMPARE_LAYOUTS(layout_compare::ofNumbers(two, 2000));
}

void TestPaneLayout::whatComesIntoSightIsPaintedAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  two.showBars();
  fill(two, write);
  two.show();
  two.scrollTo(0);
  COMPARE_LAYOUTS(layout_compare::ofPages(two));
  two.both([](QTextBrowser& browser) { QVERIFY(scrollToEnd(browser)); });
  COMPARE_LAYOUTS(layout_compare::ofPages(two));
  two.both([](QTextBrowser& browser) {
    QVERIFY(scrollToBlock(browser, browser.document()->blockCount() / 2));
  });
  COMPARE_LAYOUTS(layout_compare::ofPages(two));
  two.resize({250, 200});
  two.both([](QTextBrowser& browser) { QVERIFY(scrollToEnd(browser)); });
  COMPARE_LAYOUTS(layout_compare::ofPages(two));
}

void TestPaneLayout::anotherSizeIsPaintedAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  two.showBars();
  fill(two, write);
  two.show();
  for (const QSize& size : {QSize(317, 240), QSize(180, 240), QSize(330, 100), QSize(700, 500)}) {
    two.resize(size);
    QVERIFY(two.settle());
    for (const double height : {0.0, 0.5, 1.0}) {
      two.scrollTo(height);
      COMPARE_LAYOUTS(layout_compare::ofPictures(two));
    }
    COMPARE_LAYOUTS(layout_compare::ofBlocks(two));
    COMPARE_LAYOUTS(layout_compare::ofScrollBars(two));
  }
}

void TestPaneLayout::textThatComesAndGoesIsPaintedAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  two.showBars();
  fill(two, write);
  two.show();
  QVERIFY(two.settle());
  const auto compare = [&two] {
    if (!two.settle())
      return QStringLiteral("it is never laid out");
    two.scrollTo(1);
    return layout_compare::firstOf({layout_compare::ofScreens(two), layout_compare::ofPictures(two),
                                    layout_compare::ofBlocks(two), layout_compare::ofSizes(two)});
  };
  two.both([](QTextBrowser& browser) { insertText(browser, "more in the last paragraph"); });
  COMPARE_LAYOUTS(compare());
  two.both([](QTextBrowser& browser) { appendStatus(browser, "<i>a status line</i>"); });
  COMPARE_LAYOUTS(compare());
  two.both(write);
  COMPARE_LAYOUTS(compare());
  const int blocks = two.expected.document()->blockCount();
  for (const int count : {1, 1, blocks / 3, blocks / 3}) {
    two.both([count](QTextBrowser& browser) { dropParagraphs(browser, count); });
    COMPARE_LAYOUTS(compare());
  }
  two.both([](QTextBrowser& browser) { browser.clear(); });
  COMPARE_LAYOUTS(compare());
  two.both(write);
  COMPARE_LAYOUTS(compare());
}

void TestPaneLayout::selectionsArePaintedAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font, {320, 400});
  two.showBars();
  fill(two, write);
  two.show();
  QVERIFY(two.settle());
  const int end = two.expected.document()->characterCount() - 1;
  const QTextBlock middle = two.expected.document()->findBlock(end / 2);
  const auto select = [&two](int anchor, int position) {
    two.both([=](QTextBrowser& browser) {
      browser.setTextCursor(selection(browser, anchor, position));
    });
    return layout_compare::ofPictures(two);
  };
  two.scrollTo(0);
  COMPARE_LAYOUTS(select(0, end));
  COMPARE_LAYOUTS(select(std::min(3, end), std::min(7, end)));
  COMPARE_LAYOUTS(select(std::min(40, end), std::min(2, end)));
  COMPARE_LAYOUTS(select(std::min(1, end), middle.position()));
  COMPARE_LAYOUTS(select(middle.position(), middle.position() + middle.length() - 1));
  COMPARE_LAYOUTS(select(middle.position(), std::min(middle.position() + middle.length(), end)));
  COMPARE_LAYOUTS(select(end / 3, 2 * end / 3));
}

void TestPaneLayout::barsComeAndGoAlike() {
  QFETCH(const Write, write);
  QFETCH(const QFont, font);
  TwoLayouts two(font);
  fill(two, write);
  two.show();
  const auto compare = [&two] {
    if (!two.settle())
      return QStringLiteral("it is never laid out");
    two.scrollTo(0);
    return layout_compare::firstOf({layout_compare::ofScrollBars(two), layout_compare::ofSizes(two),
                                    layout_compare::ofPictures(two)});
  };
  COMPARE_LAYOUTS(compare());
  for (const QSize& size : {QSize(180, 240), QSize(330, 100), QSize(700, 500), QSize(317, 240)}) {
    two.resize(size);
    COMPARE_LAYOUTS(compare());
  }
  two.both(
      [](QTextBrowser& browser) { dropParagraphs(browser, browser.document()->blockCount()); });
  COMPARE_LAYOUTS(compare());
  two.both(write);
  COMPARE_LAYOUTS(compare());
}

KELMORA_GUI_TEST_MAIN(TestPaneLayout)
#include "tst_panelayout.moc"

#include <QApplication>
#include <QTest>

#include "LayoutCompare.h"
#include "RandomPages.h"
#include "support/ScratchMain.h"

/// Does the same random things to random pages with both layouts; they must look the
/// same to the pixel.
class TestPaneLayoutRandom : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void randomPages();

 private:
  /// What was done up to the first difference; empty if there is none.
  static QString playedToADifference(unsigned seed);
};

namespace {

/// All that can be compared once all is laid out.
QString differenceOfAll(TwoLayouts& two, double height) {
  if (!two.settle())
    return QStringLiteral("the heights never stand still");
  two.scrollTo(height);
  return layout_compare::firstOf({layout_compare::ofScreens(two), layout_compare::ofPictures(two),
                                  layout_compare::ofNumbers(two, 100)});
}

/// What can be compared while most heights are estimates.
QString differenceOfTheEnd(TwoLayouts& two) {
  if (!scrollToEnd(two.expected) || !scrollToEnd(two.found))
    return QStringLiteral("the end is never reached");
  two.alignAcross();
  return layout_compare::ofPages(two);
}

}  // namespace

QString TestPaneLayoutRandom::playedToADifference(unsigned seed) {
  RandomPage page(seed);
  TwoLayouts two(page.font(), page.size());
  // If a scroll bar depends on an estimate, the page may have another size.
  const bool fixedBars = page.pick(2) == 0;
  if (fixedBars)
    two.showBars();
  two.show();
  QStringList played;
  for (int changes = 4 + page.pick(12); changes > 0; --changes) {
    played += page.change(two);
    QString difference;
    switch (page.pick(4)) {
      case 0:
        two.both([](QTextBrowser& browser) { (void)pictureOf(browser); });
        break;
      case 1:
        difference = differenceOfAll(two, page.pick(11) / 10.0);
        break;
      case 2:
        if (fixedBars)
          difference = differenceOfTheEnd(two);
        break;
      default:
        break;
    }
    if (difference.isEmpty() && changes == 1)
      difference = differenceOfAll(two, page.pick(11) / 10.0);
    if (!difference.isEmpty())
      return difference + QStringLiteral(" after\n") + played.join(u'\n');
  }
  return {};
}

void TestPaneLayoutRandom::randomPages() {
  // More of them when asked for, from any seed on. Of the first 3,000 eight
  // differ: by a shade of letters that the toolkit paints for the first time (765,
  // 1897), a bar that one of both pages fits without (819), the blank that ends a
  // line from right to left (1818), and what nobody has found out (1436, 1851,
  // 2421, 2752).
  bool given = false;
  const int asked = qEnvironmentVariableIntValue("KELMORA_PAGES", &given);
  const int first = std::max(1, qEnvironmentVariableIntValue("KELMORA_FIRST_PAGE"));
  const int pages = given ? asked : 150;
  int differences = 0;
  for (int seed = first; seed < first + pages; ++seed) {
    const QString difference = playedToADifference(static_cast<unsigned>(seed));
    if (difference.isEmpty())
      continue;
    ++differences;
    qWarning().noquote() << QStringLiteral("page %1: ").arg(seed) + difference;
    QVERIFY2(differences < 5, "and so on");
  }
  QCOMPARE(differences, 0);
}

KELMORA_GUI_TEST_MAIN(TestPaneLayoutRandom)
#include "tst_panelayout_random.moc"

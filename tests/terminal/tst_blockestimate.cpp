#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <random>

#include "LayoutContents.h"
#include "support/ScratchMain.h"
#include "terminal/layout/BlockEstimate.h"
#include "terminal/layout/BlockLines.h"
#include "terminal/layout/PaneLayout.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// If an estimate is called certain, breaking the block into lines gives that size.
class TestBlockEstimate : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void wordsInAFontOfOnePitchAreCertain();
  void whatIsCertainIsRight_data();
  void whatIsCertainIsRight();
  void otherTextIsNeverCertain_data();
  void otherTextIsNeverCertain();

 private:
  struct Comparison {
    int certain = 0;
    int all = 0;
    QString difference;
  };
  static QString difference(const QTextBlock& block, BlockEstimate& estimate, qreal width,
                            Comparison& comparison);
};

namespace {

const QFont& fixedPitch() {
  static const QFont font = layout_contents::fonts().front().font;
  return font;
}

void prepare(QTextDocument& document, const QFont& font) {
  document.setDefaultFont(font);
  QTextOption option;
  option.setWrapMode(QTextOption::WordWrap);
  document.setDefaultTextOption(option);
}

QString shown(const QSizeF& size) {
  return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

}  // namespace

QString TestBlockEstimate::difference(const QTextBlock& block, BlockEstimate& estimate, qreal width,
                                      Comparison& comparison) {
  const BlockEstimate::Size size = estimate.of(block, width);
  ++comparison.all;
  if (!size.isCertain)
    return {};
  ++comparison.certain;
  const QSizeF right = blocklines::place(block, width);
  if (size.pixels == right)
    return {};
  return QStringLiteral("\"%1\" at %2 pixels is %3, expected %4")
      .arg(block.text().replace(QChar::LineSeparator, u'|'))
      .arg(width)
      .arg(shown(size.pixels), shown(right));
}

void TestBlockEstimate::wordsInAFontOfOnePitchAreCertain() {
  QTextDocument document(QStringLiteral("You see a lamp, and the keeper's door. It is shut"));
  prepare(document, fixedPitch());
  BlockEstimate estimate;
  estimate.measureFont(document);
  for (int width = 8; width < 700; ++width) {  // from one letter up, in pixels
    Comparison comparison;
    const QString told = difference(document.begin(), estimate, width, comparison);
    QVERIFY2(told.isEmpty(), qPrintable(told));
    QCOMPARE(comparison.certain, 1);
  }
}

void TestBlockEstimate::whatIsCertainIsRight_data() {
  QTest::addColumn<QString>("letters");
  QTest::addColumn<QFont>("font");
  QTest::addColumn<int>("atLeastCertain");  // in per cent of the blocks
  QString printable;
  for (char16_t code = u' '; code <= u'~'; ++code)
    printable += QChar(code);
  const QString blanks = QString(20, u' ');
  const QString words = QStringLiteral("lampTHE0129 '.,_  ");
  const QString breaks = QChar(QChar::LineSeparator) + QString(QChar::Nbsp);
  for (const QFont& font : {fixedPitch(), QFont(fixedPitch().family(), 7),
                            QFont(fixedPitch().family(), 31), QFont("DejaVu Sans Mono", 10)}) {
    const QString name = font.toString();
    const auto row = [&](const char* what, const QString& letters, int certain) {
      QTest::addRow("%s, %s", what, qPrintable(name)) << letters << font << certain;
    };
    row("words", words, 15);
    row("words and breaks", words + breaks, 15);
    row("all that can be printed", printable + blanks, 1);
    row("punctuation", QStringLiteral("ab (){}[]<>!?/-+$%&'\".,:;|~  "), 1);
    row("beginnings and ends", QStringLiteral("ab .,'_ (!"), 1);
  }
}

void TestBlockEstimate::whatIsCertainIsRight() {
  QFETCH(const QString, letters);
  QFETCH(const QFont, font);
  QFETCH(const int, atLeastCertain);
  bool given = false;
  const int asked = qEnvironmentVariableIntValue("KELMORA_PAGES", &given);
  std::mt19937 engine(1);
  const auto pick = [&engine](qsizetype count) {
    return static_cast<int>(engine() % static_cast<unsigned>(count));
  };
  QTextDocument document;
  prepare(document, font);
  document.setDocumentLayout(new PaneLayout(document));
  BlockEstimate estimate;
  estimate.measureFont(document);
  Comparison comparison;
  for (int i = 0; i < (given ? asked : 1500); ++i) {
    QString text;
    for (int length = pick(120); length > 0; --length)
      text += letters[pick(letters.size())];
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    cursor.insertText(text, {});
    const qreal width = pick(4) ? pick(800) : pick(800) / 8.0;
    const QString told = difference(document.begin(), estimate, width, comparison);
    QVERIFY2(told.isEmpty(), qPrintable(told));
  }
  const QString told = QStringLiteral("%1 of %2").arg(comparison.certain).arg(comparison.all);
  QVERIFY2(comparison.certain * 100 >= comparison.all * atLeastCertain, qPrintable(told));
}

void TestBlockEstimate::otherTextIsNeverCertain_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QFont>("font");
  const auto row = [](const char* name, const char* html, const QFont& font = fixedPitch()) {
    QTest::newRow(name) << QString::fromUtf8(html) << font;
  };
  row("letters of many widths", "lamp", layout_contents::fonts()[1].font);
  row("bold", "a <b>lamp</b>");
  row("raised", "a<sup>2</sup>");
  row("another size", "<font size=6>a</font>");
  row("a margin", "<p>a</p>");
  row("an item", "<ul><li>a</ul>");
  row("a rule", "<hr>");
  row("aligned", "<div align=right>a</div>");
  row("another script", "漢字");
  row("a letter that need not be in the font", "ä");
  row("from right to left", "שלום");
  row("a hidden hyphen", "soft\u00ADly");
  row("a tab", "<pre>\t</pre>");
}

void TestBlockEstimate::otherTextIsNeverCertain() {
  QFETCH(const QString, html);
  QFETCH(const QFont, font);
  QTextDocument document;
  prepare(document, font);
  document.setHtml(html);
  BlockEstimate estimate;
  estimate.measureFont(document);
  QVERIFY(!estimate.of(document.begin(), 300).isCertain);
  // Measuring again forgets the formats.
  prepare(document, fixedPitch());
  document.setPlainText(QStringLiteral("a lamp"));
  estimate.measureFont(document);
  QVERIFY(estimate.of(document.begin(), 300).isCertain);
}

KELMORA_GUI_TEST_MAIN(TestBlockEstimate)
#include "tst_blockestimate.moc"

#include <QApplication>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include "IdleHost.h"
#include "PaneHtml.h"
#include "PipelineSupport.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// The most that a single read brings, in bytes.
constexpr qsizetype readSize = 16384;
/// A read takes up to 0.3 s, and many times as long on a busy machine or with
/// sanitizers. Without the filter it would take hours.
constexpr qint64 patience = 10000;

/// The text without blanks, because the importer drops those behind a comment.
QString lettersOf(const QString& html) {
  static const QRegularExpression blanks("\\s");
  QTextDocument document;
  document.setHtml(html);
  return document.toPlainText().remove(blanks);
}

}  // namespace

/// How the pane shows what comes through safeMarkup.
class TestSafeMarkupPane : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void markupIsShown();
  void blocksAreShown();
  void sizesAndAlignmentsAreShown();
  void whatIsHiddenIsNotShown();
  void aStrayBracketChangesNothingBehindIt_data();
  void aStrayBracketChangesNothingBehindIt();
  void aWebLinkIsAnAnchor();
  void noOtherLinkIsAnAnchor_data();
  void noOtherLinkIsAnAnchor();
  void aPictureLeavesNothing();
  void tablesStayReadableAndMakeNoFrames();
  void hostileMarkupIsShownInTime_data();
  void hostileMarkupIsShownInTime();
  void allowedMarkupLooksAsItWould();
  void coloursWithoutEndLookAsTheyWould();
  void oddMarkupHasTheTextItWould();

 private:
  void insert(const QString& html) { insertServerHtml(*pane_, html); }
  [[nodiscard]] QTextCharFormat formatOf(const QString& text) const {
    return settled(*pane_).document()->find(text).charFormat();
  }

  IdleHost host_;
  QWidget* window_ = nullptr;
  OutputWidget* pane_ = nullptr;
};

void TestSafeMarkupPane::init() {
  window_ = new QWidget;
  auto* bar = new InputWidget(host_, window_);
  pane_ = new OutputWidget(*bar, window_);
  pane_->setGeometry(0, 0, 400, 300);
  window_->show();
}

void TestSafeMarkupPane::cleanup() {
  delete window_;
}

void TestSafeMarkupPane::markupIsShown() {
  insert(
      "plain <b>bold</b> <i>slanted</i> <u>lined</u> <font color=red>red</font> "
      "<span style='background-color:#0000ff;font-weight:bold'>blue</span>");
  QCOMPARE(settled(*pane_).toPlainText(), QString("plain bold slanted lined red blue"));
  QVERIFY(formatOf("plain").fontWeight() < QFont::Bold);
  QCOMPARE(formatOf("bold").fontWeight(), int(QFont::Bold));
  QVERIFY(formatOf("slanted").fontItalic());
  QVERIFY(formatOf("lined").fontUnderline());
  QCOMPARE(formatOf("red").foreground().color(), QColor("red"));
  QCOMPARE(formatOf("blue").background().color(), QColor("#0000ff"));
  QCOMPARE(formatOf("blue").fontWeight(), int(QFont::Bold));
}

void TestSafeMarkupPane::blocksAreShown() {
  insert("start<ul><li>first</li><li>second</li></ul><h1>head</h1><p>end</p>");
  QCOMPARE(settled(*pane_).toPlainText(), QString("start\nfirst\nsecond\nhead\nend"));
  const QTextList* list = settled(*pane_).document()->find("first").block().textList();
  QVERIFY(list);
  QCOMPARE(list->count(), 2);
  QCOMPARE(settled(*pane_).document()->find("head").blockFormat().headingLevel(), 1);
}

void TestSafeMarkupPane::sizesAndAlignmentsAreShown() {
  insert(
      "plain <font size=6>large</font> <span style='font-size:20pt'>points</span> "
      "<span style='font-style:italic'>a<span style='font-style:normal'>straight</span></span> "
      "<address>street</address>"
      "<p align=right>right</p><h2 align=center>head</h2>"
      "<dl><dt>term<dd>meaning</dl>");
  QCOMPARE(formatOf("plain").intProperty(QTextFormat::FontSizeAdjustment), 0);
  QCOMPARE(formatOf("large").intProperty(QTextFormat::FontSizeAdjustment), 3);
  QCOMPARE(formatOf("points").fontPointSize(), 20.0);
  QVERIFY(!formatOf("straight").fontItalic());
  QVERIFY(formatOf("street").fontItalic());
  const auto blockOf = [this](const char* text) {
    return settled(*pane_).document()->find(QString::fromLatin1(text)).blockFormat();
  };
  QVERIFY(blockOf("right").alignment().testFlag(Qt::AlignRight));
  QVERIFY(blockOf("head").alignment().testFlag(Qt::AlignHCenter));
  QCOMPARE(blockOf("term").leftMargin(), 0.0);
  QVERIFY(blockOf("meaning").leftMargin() > 0);
}

void TestSafeMarkupPane::whatIsHiddenIsNotShown() {
  insert("a<title>head</title>b<style>p { color: red }</style>c<script>if (a<b) d()</script>e");
  QCOMPARE(settled(*pane_).toPlainText(), QString("abce"));
}

void TestSafeMarkupPane::aStrayBracketChangesNothingBehindIt_data() {
  QTest::addColumn<QByteArray>("read");
  QTest::addColumn<QString>("shown");
  QTest::newRow("two brackets and a blank") << QByteArray("a << b\nz") << "a << b\nz";
  QTest::newRow("a bracket and a blank") << QByteArray("a < b\nz") << "a < b\nz";
  QTest::newRow("a bracket and a tab") << QByteArray("a <\tb\nz") << "a <    b\nz";
  QTest::newRow("a bracket at the end of its line") << QByteArray("a <\nz") << "a <\nz";
  QTest::newRow("a tag cut by the end of its line") << QByteArray("a <b\nz") << "a <b\nz";
  QTest::newRow("an end tag cut by the end of its line") << QByteArray("a </b\nz") << "a </b\nz";
  QTest::newRow("a quoted value cut by the end of its line")
      << QByteArray("a <i class=\"b\nz\"") << "a <i class=\"b\nz\"";
  QTest::newRow("a comment without an end") << QByteArray("a <!-- b\nz") << "a <!-- b\nz";
  QTest::newRow("a list cut by the end of its line") << QByteArray("a <ul\nz") << "a <ul\nz";
}

void TestSafeMarkupPane::aStrayBracketChangesNothingBehindIt() {
  QFETCH(const QByteArray, read);
  QFETCH(const QString, shown);
  Client client;
  client.read(read, ::markup);
  QCOMPARE(client.host.texts.size(), 1);
  pane_->showServerText(client.host.texts.first());
  QCOMPARE(settled(*pane_).toPlainText(), shown);
  QVERIFY(formatOf("z").fontWeight() < QFont::Bold);
  QVERIFY(!formatOf("z").fontItalic());
  QCOMPARE(settled(*pane_).document()->blockCount(), 1);
}

void TestSafeMarkupPane::aWebLinkIsAnAnchor() {
  insert("<a href=\"http://a.b/c&#32\">http://a.b/c&#32</a>;now");
  QVERIFY(formatOf("http").isAnchor());
  QCOMPARE(formatOf("http").anchorHref(), QString("http://a.b/c&#32"));
  QVERIFY(!formatOf("now").isAnchor());
  insert("<a href='https://x/?a=1&amp;b=\"2\"'>other</a>");
  QCOMPARE(formatOf("other").anchorHref(), QString("https://x/?a=1&amp;b=\"2\""));
}

void TestSafeMarkupPane::noOtherLinkIsAnAnchor_data() {
  QTest::addColumn<QString>("html");
  QTest::newRow("a link to a file") << "<a href=\"file:///etc/passwd\">x</a>";
  QTest::newRow("a link to a file behind controls") << "<a href=\"\x01 file:///etc/passwd\">x</a>";
  QTest::newRow("a link to a file in entities") << "<a href=\"&#102;ile:///etc/passwd\">x</a>";
  QTest::newRow("a link without a scheme") << "<a href=/etc/passwd>x</a>";
  QTest::newRow("a named place") << "<a name=place>x</a>";
}

void TestSafeMarkupPane::noOtherLinkIsAnAnchor() {
  QFETCH(const QString, html);
  insert(html);
  QCOMPARE(settled(*pane_).toPlainText(), QString("x"));
  QVERIFY(!formatOf("x").isAnchor());
  QCOMPARE(formatOf("x").anchorHref(), QString());
  QVERIFY(!formatOf("x").fontUnderline());
}

void TestSafeMarkupPane::aPictureLeavesNothing() {
  insert("<img src=file:///etc/passwd>");
  QVERIFY(settled(*pane_).document()->isEmpty());
}

void TestSafeMarkupPane::tablesStayReadableAndMakeNoFrames() {
  insert("<table><tr><td>one</td><td>two</td></tr><tr><td>three</td></tr></table>end");
  QCOMPARE(settled(*pane_).toPlainText(), QString("\n one two\n three\nend"));
  QVERIFY(settled(*pane_).document()->rootFrame()->childFrames().isEmpty());
}

void TestSafeMarkupPane::hostileMarkupIsShownInTime_data() {
  QTest::addColumn<QString>("piece");
  const auto row = [](const char* name, const char* piece) {
    QTest::newRow(name) << QString::fromUtf8(piece);
  };
  row("nested tables", "<table><tr><td>x");
  row("cells that span endless columns", "<table><tr><td colspan=99999999 rowspan=99999999>x");
  row("endless pictures", "<img src=x width=99999999 height=99999999>");
  row("endless sizes",
      "<p style=\"line-height:99999999%;font-size:999999pt;margin-left:99999999px\">x");
  row("endless sizes of a span", "<span style=\"font-size:999999pt;color:red\">x");
  row("ever larger letters", "<font size=7><big>x");
  row("letters of many faces", "<font face=\"a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p\">x");
  row("nested lists", "<ul>x");
  row("nested lists with items", "<ol><li>x");
  row("items without a list", "<li>x");
  row("nested lists of terms", "<dl>x");
  row("nested lists of terms with what they are", "<dl><dt>x<dd>x");
  row("terms without a list", "<dt>x<dd>x");
  row("nested addresses", "<address>x");
  row("nested text without breaks", "<nobr>x");
  row("the largest letters", "<span style=\"font-size:200pt\">x");
  row("titles without an end", "<title>x");
  row("nested quotations", "<blockquote>x");
  row("nested divisions", "<div>x");
  row("nested divisions without text", "<div>");
  row("nested centred text", "<center>x");
  row("nested preformatted text", "<pre>x\n");
  row("nested headings", "<h1>x");
  row("headings side by side", "<h1>x</h1>");
  row("bold text within bold text", "<b>");
  row("raised text within raised text", "<sup>x");
  row("blocks within bold text", "<b><div>x");
  row("paragraphs", "<p>x");
  row("links", "<a href=http://x>x");
  row("rules", "<hr>");
  row("rules of endless width", "<hr width=99999999 size=99999999>");
  row("line breaks", "<br>");
  row("brackets", "<");
  row("a style sheet", "<style>@import url(file:///etc/passwd);*{font-size:999999pt}");
  row("forms", "<form><select><option><textarea>");
  row("the entity of zero", "&#0;");
  row("the entity beyond the last character", "&#x110000;");
  row("the entity of half a character", "&#xD800;");
  row("the entity of the other half", "&#xDC00;");
  row("the entity of an endless number", "&#99999999999;");
  row("the entity of a negative number", "&#-1;");
  row("the entity of the greatest number", "&#xffffffff;");
  row("the entities that frame tables", "&#xfdd0;&#xfdd1;");
  row("the entity that stands for an object", "&#xfffc;");
  row("the entity of a paragraph's end", "&#x2029;x");
  row("the entity of reversed text", "&#x202e;&#x202d;");
  row("ampersands", "&&#;");
}

void TestSafeMarkupPane::hostileMarkupIsShownInTime() {
  QFETCH(const QString, piece);
  const QString html = safeMarkup(piece.repeated(readSize / piece.size())).html();
  // Several reads, as each might make the next one slower; then the client's own text.
  for (int read = 0; read < 3; ++read) {
    ProcessorClock timer;
    timer.start();
    insertServerHtml(*pane_, html);
    QCoreApplication::processEvents();
    QVERIFY2(timer.elapsed() < patience, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(settled(*pane_).document()->blockCount() <= OutputWidget::limits.paragraphs);
  }
  appendStatusLine(*pane_, "<i>status</i>");
  QCOMPARE(settled(*pane_).document()->lastBlock().text(), QString("status"));
  QVERIFY(settled(*pane_).document()->rootFrame()->childFrames().isEmpty());
}

void TestSafeMarkupPane::allowedMarkupLooksAsItWould() {
  const std::array<QString, 50> pieces{
      "<font size=5>",
      "<font size='-2'>",
      "<p align=right>",
      "<div align='Center'>",
      "<h3 align=justify>",
      "<dl>",
      "</dl>",
      "<dt>",
      "<dd>",
      "<address>",
      "<nobr>",
      "<span style='font-size:14pt'>",
      "<b>",
      "</b>",
      "<I>",
      "</i>",
      "<u>",
      "<font color=red>",
      "<font\ncolor='#00ff00' face=Arial>",
      "</font>",
      "<span style=\"color:#BDBDBD;background-color:#000000\">",
      "<span style='Font-Weight : bold; text-decoration:underline'>",
      "</span>",
      "<br>",
      "<br/>",
      "<p>",
      "</p>",
      "<div>",
      "</div>",
      "<center>",
      "</center>",
      "<ul>",
      "</ul>",
      "<li>",
      "</li>",
      "<ol>",
      "<h2>",
      "</h2>",
      "<pre>",
      "</pre>",
      "<blockquote>",
      "</blockquote>",
      "<hr>",
      "<a href=http://x/?a&amp;b>",
      "<a href='mailto:x&amp;y'>",
      "</a>",
      "<sub>",
      "a > &lt;b\n",
      "&#32;&nbsp;",
      "<code>"};
  QRandomGenerator random(5);
  for (int run = 0; run < 1000; ++run) {
    QString html;
    // Too few tags to exceed the limit of nested blocks.
    for (quint32 count = random.bounded(30U); count > 0; --count)
      html += pieces[random.bounded(static_cast<quint32>(pieces.size()))];
    QTextDocument given;
    QTextDocument safe;
    given.setHtml(html);
    safe.setHtml(safeMarkup(html).html());
    QVERIFY2(safe.toHtml() == given.toHtml(),
             qPrintable(html + "\nbecame " + safeMarkup(html).html()));
  }
}

void TestSafeMarkupPane::coloursWithoutEndLookAsTheyWould() {
  const std::array<QString, 8> pieces{"<span style=\"color:#BDBDBD;background-color:#000000\">",
                                      "<span style=\"color:#ff0000\">",
                                      "<span style=\"color:#00ff00\">",
                                      "<span style=\"background-color:#0000ff\">",
                                      "<a href=\"http://a.b\">http://a.b</a>",
                                      "<br>\n",
                                      "&#32;&nbsp;",
                                      "text"};
  QRandomGenerator random(7);
  for (int run = 0; run < 100; ++run) {
    QString html;
    for (quint32 count = random.bounded(1000U); count > 0; --count)
      html += pieces[random.bounded(static_cast<quint32>(pieces.size()))];
    QTextDocument given;
    QTextDocument safe;
    QTextCursor(&given).insertHtml(html);
    QTextCursor(&safe).insertHtml(safeMarkup(html).html());
    QVERIFY2(safe.toHtml() == given.toHtml(), qPrintable(html));
  }
}

void TestSafeMarkupPane::oddMarkupHasTheTextItWould() {
  const std::array<QString, 40> pieces{"<b",
                                       "<i ",
                                       "</b",
                                       "<",
                                       "<",
                                       ">",
                                       ">",
                                       ">",
                                       "/",
                                       "\"",
                                       "'",
                                       "=",
                                       " ",
                                       "\n",
                                       "\\",
                                       "&",
                                       ";",
                                       "x",
                                       "y",
                                       "!",
                                       "-",
                                       "<!--",
                                       "-->",
                                       "<!x",
                                       "<?y",
                                       "<blink ",
                                       "<p ",
                                       "<br ",
                                       "<br/>",
                                       "<font ",
                                       "color=",
                                       "red",
                                       "<a href=",
                                       "http://x",
                                       "</a>",
                                       "</ b>",
                                       "&amp;",
                                       "&#60;",
                                       QString(QChar(0xA0)),
                                       QString(QChar(0x2029))};
  QRandomGenerator random(6);
  int compared = 0;
  for (int run = 0; run < 20000; ++run) {
    QString html;
    for (quint32 count = random.bounded(12U); count > 0; --count)
      html += pieces[random.bounded(static_cast<quint32>(pieces.size()))];
    const QString safe = safeMarkup(html).html();
    // A bracket that begins no tag is shown here, where the importer would
    // drop all up to the next closing one.
    if (safe.contains("&lt;"))
      continue;
    QVERIFY2(lettersOf(safe) == lettersOf(html), qPrintable(html + "\nbecame " + safe));
    ++compared;
  }
  QVERIFY(compared > 5000);
}

KELMORA_GUI_TEST_MAIN(TestSafeMarkupPane)
#include "tst_safemarkup_pane.moc"

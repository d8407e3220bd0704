#include <QApplication>
#include <QTest>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>
#include <random>

#include "IdleHost.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/PaneHtml.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/session/DocumentHtml.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

using namespace Qt::StringLiterals;

namespace {

/// The bytes that must be written: the toolkit's HTML in Latin-1, then as UTF-8.
QByteArray asTheToolkit(const QTextDocument& document) {
  return QString::fromLatin1(document.toHtml().toLatin1()).toUtf8();
}

/// A few words from where two texts differ; nothing where they do not.
QByteArray difference(const QByteArray& is, const QByteArray& should) {
  const auto [one, other] = std::mismatch(is.begin(), is.end(), should.begin(), should.end());
  if (one == is.end() && other == should.end())
    return {};
  const qsizetype from = std::max<qsizetype>(one - is.begin() - 60, 0);
  return "is: ..." + is.mid(from, 200) + "...\nshould be: ..." + should.mid(from, 200) + "...";
}

/// How quickHtml(), or else documentHtml(), differs from the toolkit; empty if neither
/// does.
QByteArray fault(const QTextDocument& document) {
  const QByteArray should = asTheToolkit(document);
  const QByteArray wrong = difference(quickHtml(document).value_or(should), should);
  return wrong.isEmpty() ? difference(documentHtml(document), should) : wrong;
}

QTextCharFormat linkTo(const QString& target) {
  QTextCharFormat link;
  link.setAnchor(true);
  link.setAnchorHref(target);
  link.setForeground(QColor(0x6f, 0xa8, 0xff));
  return link;
}

/// Makes random documents.
class Author {
 public:
  explicit Author(unsigned seed) : engine_(seed) {}

  void write(QTextDocument& document) {
    QTextCursor cursor(&document);
    if (pick(2) == 0)
      document.setDefaultFont(QFont(QStringLiteral("Courier"), 8 + pick(5)));
    for (int pieces = pick(60); pieces > 0; --pieces) {
      switch (pick(12)) {
        case 0:
          cursor.insertBlock();
          break;
        case 1:
          cursor.insertBlock(paragraph(), look());
          break;
        case 2:
          cursor.insertText(text(), linkTo(text()));
          break;
        case 3:
          cursor.insertText(text(), linkTo(QStringLiteral("http://a.example/%1").arg(pick(9))));
          break;
        case 4:
          cursor.insertText(text());
          break;
        default:
          cursor.insertText(text(), look());
      }
    }
  }

  QString text() {
    static const QStringList words{QStringLiteral("You see a lamp."),
                                   QStringLiteral(" "),
                                   QStringLiteral("  "),
                                   QStringLiteral("\t"),
                                   QStringLiteral("\u2028"),
                                   QStringLiteral("\u2028\u2028"),
                                   QStringLiteral("\u00a0"),
                                   QStringLiteral("\u00ad\u0085"),
                                   QStringLiteral("<b>"),
                                   QStringLiteral("Tom & Jerry"),
                                   QStringLiteral("&amp;"),
                                   QStringLiteral("\"'`"),
                                   QStringLiteral("gr\u00fcn"),
                                   QStringLiteral("\u20ac\u0431\u4e2d"),
                                   QString::fromUcs4(U"\U0001f600"),
                                   QStringLiteral("\x01\x1b\x7f"),
                                   QStringLiteral("http://a.example/?b=c&d=\"e\""),
                                   QStringLiteral("x")};
    QString text;
    for (int count = 1 + pick(4); count > 0; --count)
      text += words.at(pick(static_cast<int>(words.size())));
    return text;
  }

  QString markup() {
    static const QStringList tags{
        QStringLiteral("b"),   QStringLiteral("i"),      QStringLiteral("u"),  QStringLiteral("s"),
        QStringLiteral("tt"),  QStringLiteral("big"),    QStringLiteral("p"),  QStringLiteral("h2"),
        QStringLiteral("pre"), QStringLiteral("center"), QStringLiteral("sub")};
    static const QStringList odd{QStringLiteral("<hr>"), QStringLiteral("<ul><li>a<li>b</ul>"),
                                 QStringLiteral("<blockquote>quoted</blockquote>"),
                                 QStringLiteral("<ol start=4><li>c<ul><li>d</ul></ol>"),
                                 QStringLiteral("<p></p>")};
    if (pick(16) == 0)
      return odd.at(pick(static_cast<int>(odd.size())));
    if (pick(8) == 0)
      return QStringLiteral("<a href=\"http://a.example/%1?b=1&amp;c\">%2</a>")
          .arg(pick(1000))
          .arg(text().toHtmlEscaped());
    if (pick(4) == 0)
      return QStringLiteral("<font size=%1 face=\"Arial\" color=\"#%2\">%3</font><br>")
          .arg(1 + pick(7))
          .arg(pick(0x1000000), 6, 16, QLatin1Char('0'))
          .arg(text().toHtmlEscaped());
    const QString& tag = tags.at(pick(static_cast<int>(tags.size())));
    return QStringLiteral("<%1>%2</%1>").arg(tag, text().toHtmlEscaped());
  }

  int pick(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }

 private:
  QTextCharFormat look() {
    QTextCharFormat look;
    if (pick(3) != 0)
      look.setForeground(QColor::fromRgb(static_cast<QRgb>(pick(4)) * 0x40));
    if (pick(3) == 0)
      look.setBackground(QColor::fromRgb(static_cast<QRgb>(pick(3)) * 0x4000));
    if (pick(8) == 0)
      look.setFontWeight(QFont::Bold);
    if (pick(8) == 0)
      look.setFontItalic(true);
    if (pick(8) == 0)
      look.setFontUnderline(true);
    if (pick(16) == 0)
      look.setFontPointSize(7 + pick(20));
    if (pick(16) == 0)
      look.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    if (pick(16) == 0)
      look.setToolTip(QStringLiteral("\"tip\""));
    return look;
  }

  QTextBlockFormat paragraph() {
    QTextBlockFormat format;
    if (pick(2) == 0)
      format.setAlignment(Qt::AlignHCenter);
    if (pick(3) == 0)
      format.setTopMargin(pick(20));
    if (pick(4) == 0)
      format.setIndent(pick(3));
    if (pick(4) == 0)
      format.setHeadingLevel(pick(7));
    if (pick(4) == 0)
      format.setNonBreakableLines(true);
    if (pick(4) == 0)
      format.setBackground(Qt::darkGreen);
    if (pick(4) == 0)
      format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    if (pick(4) == 0)
      format.setLineHeight(120, QTextBlockFormat::ProportionalHeight);
    return format;
  }

  std::mt19937 engine_;
};

}  // namespace

/// A document is written as the toolkit writes it.
class TestDocumentHtml : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theQuickWayIsExactHere();
  void isWhatTheToolkitWrites_data();
  void isWhatTheToolkitWrites();
  void anyTextIsWrittenAsByTheToolkit();
  void anyPaneIsWrittenAsByTheToolkit();
  void manyLinksAreWrittenHere();
  void whatIsMoreThanParagraphsIsLeftToTheToolkit_data();
  void whatIsMoreThanParagraphsIsLeftToTheToolkit();
  void theDocumentStaysAsItIs();

 private:
  using Writing = void (*)(QTextCursor& cursor);
};

void TestDocumentHtml::theQuickWayIsExactHere() {
  QVERIFY(isQuickHtmlExact());
}

void TestDocumentHtml::isWhatTheToolkitWrites_data() {
  QTest::addColumn<Writing>("writing");
  const auto row = [](const char* name, Writing writing) { QTest::newRow(name) << writing; };
  row("nothing at all", [](QTextCursor&) {});
  row("empty paragraphs", [](QTextCursor& cursor) { cursor.insertText(u"\n\na\n\n"_s); });
  row("an empty paragraph that would begin in red", [](QTextCursor& cursor) {
    QTextCharFormat red;
    red.setForeground(Qt::red);
    cursor.insertBlock({}, red);
    cursor.insertBlock({}, {});
  });
  row("a paragraph that would begin in bold and does not", [](QTextCursor& cursor) {
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertBlock({}, bold);
    cursor.insertText(u"plain"_s, QTextCharFormat());
    cursor.insertText(u"bold"_s, bold);
  });
  row("line breaks and blanks in every place", [](QTextCursor& cursor) {
    cursor.insertText(u"  a \u2028 \u2028b\t \t c\u00a0 \u00a0\u2028\n \n\t\n\u2028"_s);
  });
  row("letters that HTML has another meaning for",
      [](QTextCursor& cursor) { cursor.insertText(u"<a href=\"b\">'c' & &amp; &#33;</a>"_s); });
  row("every letter of Latin-1", [](QTextCursor& cursor) {
    for (char16_t letter = 0; letter < 0x100; ++letter)
      cursor.insertText(QChar(letter));
  });
  row("letters outside Latin-1, halves of them too", [](QTextCursor& cursor) {
    cursor.insertText(QString::fromUcs4(U"\u20ac\u4e2d\U0001f600a") + QChar(0xd83d) + u"b\ufeff"_s);
  });
  row("a link to every letter", [](QTextCursor& cursor) {
    for (char16_t letter = 0; letter < 0x180; ++letter)
      cursor.insertText(u"x"_s, linkTo(u"http://"_s + QChar(letter) + u"b"_s));
  });
  row("a link to a line break",
      [](QTextCursor& cursor) { cursor.insertText(u"x"_s, linkTo(u"a\u2028b\u2029c"_s)); });
  row("a link to nowhere, and none with a target", [](QTextCursor& cursor) {
    cursor.insertText(u"x"_s, linkTo({}));
    QTextCharFormat noLink = linkTo(u"b"_s);
    noLink.setAnchor(false);
    cursor.insertText(u"x"_s, noLink);
  });
  row("links that differ in a look alone", [](QTextCursor& cursor) {
    for (const Qt::GlobalColor colour : {Qt::red, Qt::blue, Qt::red}) {
      QTextCharFormat link = linkTo(u"a"_s);
      link.setForeground(colour);
      cursor.insertText(u"x"_s, link);
      link.setFontUnderline(true);
      cursor.insertText(u"y"_s, link);
    }
  });
  row("the letters that stand for samples",
      [](QTextCursor& cursor) { cursor.insertText(u"a\ue000b\ue001c"_s, linkTo(u"d\ue001e"_s)); });
  row("a title and another font", [](QTextCursor& cursor) {
    cursor.document()->setMetaInformation(QTextDocument::DocumentTitle, u"a <title>\nof two"_s);
    cursor.document()->setDefaultFont(QFont(u"Courier"_s, 17, QFont::Bold, true));
    QTextCharFormat small;
    small.setFontPointSize(9);
    cursor.insertText(u"small"_s, small);
  });
  row("a page of a colour", [](QTextCursor& cursor) {
    QTextFrameFormat page = cursor.document()->rootFrame()->frameFormat();
    page.setBackground(Qt::darkBlue);
    cursor.document()->rootFrame()->setFrameFormat(page);
    cursor.insertText(u"a"_s);
  });
}

void TestDocumentHtml::isWhatTheToolkitWrites() {
  QFETCH(Writing, writing);
  QTextDocument document;
  QTextCursor cursor(&document);
  writing(cursor);
  QCOMPARE(fault(document), QByteArray());
}

void TestDocumentHtml::anyTextIsWrittenAsByTheToolkit() {
  int writtenHere = 0;
  for (unsigned seed = 0; seed < 500; ++seed) {
    QTextDocument document;
    Author(seed).write(document);
    const QByteArray wrong = fault(document);
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + wrong));
    writtenHere += quickHtml(document) ? 1 : 0;
  }
  QCOMPARE(writtenHere, 500);
}

void TestDocumentHtml::anyPaneIsWrittenAsByTheToolkit() {
  int writtenHere = 0;
  for (unsigned seed = 0; seed < 200; ++seed) {
    Author author(seed);
    IdleHost host;
    QWidget window;
    OutputWidget pane(*new InputWidget(host, &window), &window);
    for (int pieces = 1 + author.pick(20); pieces > 0; --pieces) {
      switch (author.pick(6)) {
        case 0:
          pane.appendStatusLine(safeMarkup(author.markup()));
          break;
        case 1:
          pane.echoSentText(author.text() + QStringLiteral("\r\n"));
          break;
        case 2:
          pane.printError(author.text());
          break;
        case 3:
          pane.printText(author.text(), QColor(Qt::cyan));
          break;
        default:
          insertServerHtml(pane, author.markup());
      }
    }
    const QTextDocument& document = *settled(pane).document();
    const QByteArray wrong = fault(document);
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + wrong));
    writtenHere += quickHtml(document) ? 1 : 0;
  }
  // Some documents were written the quick way, and some by the toolkit.
  QVERIFY2(writtenHere > 40 && writtenHere < 180, qPrintable(QString::number(writtenHere)));
}

void TestDocumentHtml::manyLinksAreWrittenHere() {
  QTextDocument document;
  QTextCursor cursor(&document);
  cursor.beginEditBlock();
  for (int number = 0; number < 15000; ++number) {
    cursor.insertText(QStringLiteral("see "), QTextCharFormat());
    cursor.insertText(QStringLiteral("this"),
                      linkTo(QStringLiteral("http://a.example/?b=%1&c").arg(number)));
    if (number % 20 == 0)
      cursor.insertBlock();
  }
  cursor.endEditBlock();
  QVERIFY(quickHtml(document));
  QCOMPARE(fault(document), QByteArray());
}

void TestDocumentHtml::whatIsMoreThanParagraphsIsLeftToTheToolkit_data() {
  QTest::addColumn<Writing>("writing");
  const auto row = [](const char* name, Writing writing) { QTest::newRow(name) << writing; };
  row("a list", [](QTextCursor& cursor) { cursor.createList(QTextListFormat::ListDisc); });
  row("a table", [](QTextCursor& cursor) { cursor.insertTable(2, 2); });
  row("a frame", [](QTextCursor& cursor) { cursor.insertFrame({}); });
  row("a ruler", [](QTextCursor& cursor) { cursor.insertHtml(u"a<hr>b"_s); });
  row("a picture", [](QTextCursor& cursor) { cursor.insertImage(u"a.png"_s); });
  row("letters in the format of a picture", [](QTextCursor& cursor) {
    QTextImageFormat picture;
    picture.setName(u"a.png"_s);
    cursor.insertText(u"x"_s, picture);
  });
  row("a place to jump to",
      [](QTextCursor& cursor) { cursor.insertHtml(u"<a name=\"b\">c</a>"_s); });
  row("text from right to left", [](QTextCursor& cursor) { cursor.insertText(u"\u05d0\u05d1"_s); });
  row("a link to two lines",
      [](QTextCursor& cursor) { cursor.insertText(u"x"_s, linkTo(u"a\nb"_s)); });
}

void TestDocumentHtml::whatIsMoreThanParagraphsIsLeftToTheToolkit() {
  QFETCH(Writing, writing);
  QTextDocument document;
  QTextCursor cursor(&document);
  cursor.insertText(QStringLiteral("before\n"));
  QVERIFY(quickHtml(document));
  writing(cursor);
  QVERIFY(!quickHtml(document));
  QCOMPARE(fault(document), QByteArray());
}

void TestDocumentHtml::theDocumentStaysAsItIs() {
  QTextDocument document;
  Author(1).write(document);
  (void)document.toHtml();  // here the toolkit adds a format of its own
  document.setModified(false);
  const int revision = document.revision();
  const qsizetype formats = document.allFormats().size();
  (void)documentHtml(document);
  QCOMPARE(document.revision(), revision);
  QCOMPARE(document.allFormats().size(), formats);
  QVERIFY(!document.isModified());
}

KELMORA_GUI_TEST_MAIN(TestDocumentHtml)
#include "tst_documenthtml.moc"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <functional>

#include "IdleHost.h"
#include "PaneHtml.h"
#include "PipelineSupport.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// Shows a read, sent through the pipeline, in the pane.
class PaneHost : public RecordingHost {
 public:
  explicit PaneHost(OutputWidget& pane) : pane_(pane) {}
  void showServerText(ServerText text) override { pane_.showServerText(std::move(text)); }

 private:
  OutputWidget& pane_;
};

}  // namespace

class TestOutputWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void isReadOnlyAndWrapsAtWords();
  void keepsAtMost750Paragraphs();
  void whatIsTallerThanBarsCanCountIsDroppedFromTheTop_data();
  void whatIsTallerThanBarsCanCountIsDroppedFromTheTop();
  void serverTextContinuesTheLastParagraph();
  void aLongParagraphIsContinuedAtALineBreak();
  void aDivisionChangesNoTextAndNoColour();
  void aLineWithoutEndIsDividedAnywhereButInACharacter();
  void aStatusLineIsAParagraphOfItsOwn();
  void messages_data();
  void messages();
  void theEchoEndsItsLine();
  void aLinkIsReadableOnBlack();
  void writesKeepTheirOrder();
  void everythingIsWrittenAtTheEnd_data();
  void everythingIsWrittenAtTheEnd();
  void theViewFollowsWhateverArrives();
  void behindAnyTextThereIsNothingLeftToScroll_data();
  void behindAnyTextThereIsNothingLeftToScroll();
  void theNewestLineStaysInSightWhateverTheSize_data();
  void theNewestLineStaysInSightWhateverTheSize();
  void theNewestLineStaysInSightInAnyFont();
  void aLittleAboveTheEndIsTheEndStill();
  void aReaderFurtherUpKeepsTheLineAtTheTop_data();
  void aReaderFurtherUpKeepsTheLineAtTheTop();
  void aLocalFileIsNeverReadIntoThePane();
  void aClickOnALocalLinkKeepsTheText();
  void declaresNoSlotsOrSignals();

 private:
  /// Shows lines that are wrapped in a narrow pane.
  void fillWithLines(int lines) {
    const QString line =
        QStringLiteral("a line of some words that are wider than half a pane<br>\n");
    for (int i = 0; i < lines; ++i)
      insertServerHtml(*pane_, line);
    QTRY_VERIFY(pane_->settled());
    QTest::qWait(0);
  }
  [[nodiscard]] QTextCharFormat formatOf(const QString& text) const {
    return settled(*pane_).document()->find(text).charFormat();
  }

  IdleHost host_;
  QWidget* window_ = nullptr;
  OutputWidget* pane_ = nullptr;
};

void TestOutputWidget::init() {
  window_ = new QWidget;
  auto* bar = new InputWidget(host_, window_);
  pane_ = new OutputWidget(*bar, window_);
  pane_->setGeometry(0, 0, 400, 300);
  window_->show();
}

void TestOutputWidget::cleanup() {
  delete window_;
}

void TestOutputWidget::isReadOnlyAndWrapsAtWords() {
  QVERIFY(pane_->isReadOnly());
  QCOMPARE(pane_->wordWrapMode(), QTextOption::WordWrap);
  QVERIFY(pane_->openExternalLinks());
}

void TestOutputWidget::keepsAtMost750Paragraphs() {
  QCOMPARE(settled(*pane_).document()->maximumBlockCount(), 750);
  for (int i = 0; i < 800; ++i)
    appendStatusLine(*pane_, QStringLiteral("<i>line %1</i>").arg(i));
  QCOMPARE(settled(*pane_).document()->blockCount(), 750);
  QCOMPARE(settled(*pane_).document()->firstBlock().text(), QString("line 50"));
  QCOMPARE(settled(*pane_).document()->lastBlock().text(), QString("line 799"));
}

void TestOutputWidget::whatIsTallerThanBarsCanCountIsDroppedFromTheTop_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<std::function<void(OutputWidget&)>>("change");
  const auto inPoints = [](int size) {
    return [size](OutputWidget& pane) {
      QFont font = pane.font();
      font.setPointSize(size);
      pane.setFont(font);
    };
  };
  const QString emptyLines = QStringLiteral("<br>\n").repeated(1000);
  const QString words = QStringLiteral("You see a lamp here. ").repeated(350) + "<br>\n";
  QTest::newRow("lines beyond all measure")
      << emptyLines << std::function<void(OutputWidget&)>(inPoints(200));
  QTest::newRow("a larger font for the same lines")
      << words << std::function<void(OutputWidget&)>(inPoints(200));
  QTest::newRow("a narrower pane for the same lines")
      << words << std::function<void(OutputWidget&)>([](OutputWidget& pane) {
           pane.resize(80, pane.height());
           QFont font = pane.font();
           font.setPointSize(150);
           pane.setFont(font);
         });
}

void TestOutputWidget::whatIsTallerThanBarsCanCountIsDroppedFromTheTop() {
  QFETCH(const QString, text);
  QFETCH(const std::function<void(OutputWidget&)>, change);
  pane_->resize(800, 300);
  pane_->show();
  const auto height = [&] {
    QTextDocument& document = *settled(*pane_).document();
    return document.documentLayout()->blockBoundingRect(document.lastBlock()).bottom();
  };
  for (int i = 0; i < 300; ++i)
    insertServerHtml(*pane_, text);
  (void)settled(*pane_).document();
  change(*pane_);
  for (int i = 0; i < 30; ++i)
    insertServerHtml(*pane_, text);
  insertServerHtml(*pane_, "the newest");
  QVERIFY2(height() <= OutputWidget::limits.tallest, qPrintable(QString::number(height())));
  QVERIFY2(height() > OutputWidget::limits.tallest / 8, qPrintable(QString::number(height())));
  QVERIFY(settled(*pane_).toPlainText().endsWith("the newest"));
  QCOMPARE(settled(*pane_).document()->maximumBlockCount(), OutputWidget::limits.paragraphs);
}

void TestOutputWidget::serverTextContinuesTheLastParagraph() {
  insertServerHtml(*pane_, "one ");
  insertServerHtml(*pane_, "two<br>\nthree");
  QCOMPARE(settled(*pane_).document()->blockCount(), 1);
  QCOMPARE(settled(*pane_).toPlainText(), QString("one two\nthree"));
}

void TestOutputWidget::aLongParagraphIsContinuedAtALineBreak() {
  const QString line = QString(1023, 'x') + "<br>\n";
  for (int i = 0; i < 4; ++i)
    insertServerHtml(*pane_, line);
  insertServerHtml(*pane_, "end");
  QCOMPARE(settled(*pane_).document()->blockCount(),
           1);  // 4,099 characters, and no line break since
  insertServerHtml(*pane_, "<br>\n");
  QCOMPARE(settled(*pane_).document()->blockCount(), 2);
  QCOMPARE(settled(*pane_).document()->firstBlock().text().size(), 4099);
  QCOMPARE(settled(*pane_).document()->lastBlock().text(), QString());
  // A read of many lines is divided into as many paragraphs as necessary.
  insertServerHtml(*pane_, line.repeated(100));
  QCOMPARE(settled(*pane_).document()->blockCount(), 22);
  for (QTextBlock block = settled(*pane_).document()->begin(); block.isValid();
       block = block.next())
    QVERIFY(block.text().size() <= 4096 + 1024);
}

void TestOutputWidget::aDivisionChangesNoTextAndNoColour() {
  QTextDocument undivided;
  const std::array<const char*, 3> colours{"#ff0000", "#00ff00", "#0000ff"};
  for (int read = 0; read < 100; ++read) {
    QString html;
    for (int line = 0; line < 30; ++line)
      html += QStringLiteral("<span style=\"color:%1\">line&#32;%2<br>\n")
                  .arg(QLatin1String(colours.at(static_cast<std::size_t>(line % 3))))
                  .arg(read * 30 + line);
    insertServerHtml(*pane_, html);
    QTextCursor end(&undivided);
    end.movePosition(QTextCursor::End);
    end.insertHtml(html);
  }
  QVERIFY(settled(*pane_).document()->blockCount() > 1);
  QCOMPARE(undivided.blockCount(), 1);
  QCOMPARE(settled(*pane_).toPlainText(), undivided.toPlainText());
  QTextCursor shown(settled(*pane_).document());
  QTextCursor expected(&undivided);
  for (int i = 1; i < undivided.characterCount(); ++i) {
    expected.setPosition(i);
    shown.setPosition(i);
    if (!shown.atBlockStart())
      QCOMPARE(shown.charFormat().foreground(), expected.charFormat().foreground());
  }
  insertServerHtml(*pane_, "last");
  QCOMPARE(settled(*pane_).document()->lastBlock().text().section(QChar::LineSeparator, -1),
           QString("last"));
}

void TestOutputWidget::aLineWithoutEndIsDividedAnywhereButInACharacter() {
  const QString text = "x" + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(50000);
  for (qsizetype i = 0; i < text.size(); i += 10001)
    insertServerHtml(*pane_, text.mid(i, 10001));
  QCOMPARE(settled(*pane_).document()->blockCount(), 2);
  QCOMPARE(settled(*pane_).document()->firstBlock().text().size(), 65535);
  QCOMPARE(settled(*pane_).toPlainText().remove('\n'), text);
}

void TestOutputWidget::aStatusLineIsAParagraphOfItsOwn() {
  insertServerHtml(*pane_, "text");
  appendStatusLine(*pane_, "<span style=\"color:#BDBDBD\"><i>status</i>");
  QCOMPARE(settled(*pane_).document()->blockCount(), 2);
  QCOMPARE(settled(*pane_).toPlainText(), QString("text\nstatus"));
  QVERIFY(formatOf("status").fontItalic());
  QCOMPARE(formatOf("status").foreground().color(), QColor("#BDBDBD"));
}

void TestOutputWidget::messages_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("write");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QColor>("colour");
  QTest::addColumn<QColor>("background");
  using Write = std::function<void(OutputWidget&)>;
  QTest::newRow("an error is yellow on red, behind two number signs")
      << Write([](OutputWidget& pane) { pane.printError("wrong"); }) << "## wrong\n"
      << QColor(Qt::yellow) << QColor(Qt::red);
  QTest::newRow("an information is white on blue, behind two plus signs")
      << Write([](OutputWidget& pane) { pane.printInfo("told"); }) << "++ told\n"
      << QColor(Qt::white) << QColor(Qt::blue);
  QTest::newRow("an echoed line is yellow on black")
      << Write([](OutputWidget& pane) { pane.echoSentText("look\r\n"); }) << "look\n"
      << QColor(Qt::yellow) << QColor(Qt::black);
  QTest::newRow("a printed text has its colour, on black")
      << Write([](OutputWidget& pane) { pane.printText("hello", QColor("#FF8000")); }) << "hello\n"
      << QColor("#FF8000") << QColor(Qt::black);
  QTest::newRow("a printed text in a colour that is none is white, never black on black")
      << Write([](OutputWidget& pane) { pane.printText("hello", QColor()); }) << "hello\n"
      << QColor(Qt::white) << QColor(Qt::black);
  QTest::newRow("markup in a message is plain text")
      << Write([](OutputWidget& pane) { pane.printError("<b>bold</b> &amp;"); })
      << "## <b>bold</b> &amp;\n"
      << QColor(Qt::yellow) << QColor(Qt::red);
}

void TestOutputWidget::messages() {
  QFETCH(const std::function<void(OutputWidget&)>, write);
  QFETCH(const QString, text);
  QFETCH(const QColor, colour);
  QFETCH(const QColor, background);
  write(*pane_);
  QCOMPARE(settled(*pane_).toPlainText(), text);
  QCOMPARE(formatOf(text.trimmed()).foreground().color(), colour);
  QCOMPARE(formatOf(text.trimmed()).background().color(), background);
}

void TestOutputWidget::theEchoEndsItsLine() {
  pane_->echoSentText("look\r\n");
  insertServerHtml(*pane_, "You see a lamp.");
  QCOMPARE(settled(*pane_).toPlainText(), QString("look\nYou see a lamp."));
}

void TestOutputWidget::aLinkIsReadableOnBlack() {
  insertServerHtml(*pane_, "see <a href=\"http://a.example\">there</a>");
  const QTextCharFormat format = formatOf("there");
  QCOMPARE(format.anchorHref(), QString("http://a.example"));
  QVERIFY(format.foreground().color().lightness() > 128);
}

void TestOutputWidget::writesKeepTheirOrder() {
  insertServerHtml(*pane_, "server ");
  pane_->printError("error");
  appendStatusLine(*pane_, "<i>status</i>");
  pane_->printInfo("info");
  pane_->echoSentText("echo\r\n");
  insertServerHtml(*pane_, "server again");
  QCOMPARE(settled(*pane_).toPlainText(),
           QString("server ## error\n\nstatus++ info\necho\nserver again"));
}

void TestOutputWidget::everythingIsWrittenAtTheEnd_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("write");
  QTest::addColumn<QString>("text");
  using Write = std::function<void(OutputWidget&)>;
  const auto row = [](const char* name, const char* text, const Write& write) {
    QTest::newRow(name) << write << QString::fromLatin1(text);
  };
  row("an error", "## new\n", [](auto& pane) { pane.printError("new"); });
  row("an information", "++ new\n", [](auto& pane) { pane.printInfo("new"); });
  row("a printed text", "new\n", [](auto& pane) { pane.printText("new", Qt::green); });
  row("an echoed line", "new\n", [](auto& pane) { pane.echoSentText("new\r\n"); });
  row("a status line", "\nnew", [](auto& pane) { appendStatusLine(pane, "<i>new</i>"); });
  row("server text", "new", [](auto& pane) {
    PaneHost host(pane);
    Client().pipeline.readSocketData("new", plainText, host);
  });
  row("server text of the client's own making", "new",
      [](auto& pane) { insertServerHtml(pane, "<span style=\"color:#ff0000\">new"); });
  row("server text for the toolkit's importer", "new",
      [](auto& pane) { insertServerHtml(pane, "<b>new</b>"); });
}

void TestOutputWidget::everythingIsWrittenAtTheEnd() {
  QFETCH(const std::function<void(OutputWidget&)>, write);
  QFETCH(const QString, text);
  insertServerHtml(*pane_, "old words");
  // The player has moved the caret to copy something.
  QTextCursor caret = settled(*pane_).textCursor();
  caret.setPosition(3);
  caret.setPosition(0, QTextCursor::KeepAnchor);
  pane_->setTextCursor(caret);
  QCOMPARE(settled(*pane_).textCursor().selectedText(), QString("old"));
  write(*pane_);
  QCOMPARE(settled(*pane_).toPlainText(), "old words" + text);
  QVERIFY(settled(*pane_).textCursor().atEnd());
}

void TestOutputWidget::theViewFollowsWhateverArrives() {
  const auto atBottom = [this] {
    if (!QTest::qWaitFor([this] { return pane_->settled(); }))
      return false;
    return pane_->viewport()->rect().contains(pane_->cursorRect()) &&
           settled(*pane_).textCursor().atEnd();
  };
  for (int i = 0; i < 100; ++i)
    insertServerHtml(*pane_, "line<br>\n");
  QTRY_VERIFY(pane_->settled());
  QVERIFY(pane_->verticalScrollBar()->maximum() > 0);
  QVERIFY(atBottom());
  pane_->verticalScrollBar()->setValue(0);
  appendStatusLine(*pane_, "<i>status</i>");
  QVERIFY(atBottom());
  pane_->verticalScrollBar()->setValue(0);
  pane_->printInfo("info");
  QVERIFY(atBottom());
}

void TestOutputWidget::behindAnyTextThereIsNothingLeftToScroll_data() {
  everythingIsWrittenAtTheEnd_data();
}

void TestOutputWidget::behindAnyTextThereIsNothingLeftToScroll() {
  QFETCH(const std::function<void(OutputWidget&)>, write);
  fillWithLines(100);
  QScrollBar* bar = pane_->verticalScrollBar();
  QVERIFY(bar->maximum() > 0);
  QCOMPARE(bar->value(), bar->maximum());
  bar->setValue(0);
  write(*pane_);
  QTRY_VERIFY(pane_->settled());
  QCOMPARE(bar->value(), bar->maximum());
}

void TestOutputWidget::theNewestLineStaysInSightWhateverTheSize_data() {
  QTest::addColumn<int>("lines");
  QTest::addColumn<QSize>("size");
  // The toolkit would lay out a short text at once and a long one little by little.
  for (const int lines : {100, 5000}) {
    const auto row = [lines](const char* name, const QSize& size) {
      QTest::addRow("%s, %d lines", name, lines) << lines << size;
    };
    row("narrower", {200, 300});
    row("narrower by a little", {399, 300});
    row("wider", {700, 300});
    row("lower", {400, 150});
    row("higher", {400, 500});
    row("narrower and lower", {150, 100});
    row("wider and higher", {800, 600});
    row("narrower and higher", {150, 600});
    row("wider and lower", {800, 100});
  }
}

void TestOutputWidget::theNewestLineStaysInSightWhateverTheSize() {
  QFETCH(const int, lines);
  QFETCH(const QSize, size);
  fillWithLines(lines);
  QScrollBar* bar = pane_->verticalScrollBar();
  const auto showsTheNewestLine = [&] {
    return settled(*pane_).textCursor().atEnd() &&
           pane_->viewport()->rect().contains(pane_->cursorRect());
  };
  QVERIFY(showsTheNewestLine());
  pane_->resize(size);
  QVERIFY(showsTheNewestLine());
  QTest::qWait(30);
  QVERIFY(showsTheNewestLine());
  QCOMPARE(bar->value(), bar->maximum());
  // Resize it again, as happens while the player drags the window's edge.
  for (const QSize& next : {size - QSize(40, 30), QSize(400, 300)}) {
    pane_->resize(next);
    QVERIFY(showsTheNewestLine());
    QTest::qWait(30);
    QCOMPARE(bar->value(), bar->maximum());
  }
}

void TestOutputWidget::theNewestLineStaysInSightInAnyFont() {
  fillWithLines(100);
  for (const int size : {30, 6, 14}) {
    pane_->setFont(QFont(pane_->font().family(), size));
    QTest::qWait(30);
    QVERIFY(pane_->viewport()->rect().contains(pane_->cursorRect()));
    QCOMPARE(pane_->verticalScrollBar()->value(), pane_->verticalScrollBar()->maximum());
  }
}

void TestOutputWidget::aLittleAboveTheEndIsTheEndStill() {
  fillWithLines(100);
  QScrollBar* bar = pane_->verticalScrollBar();
  // Only the margin below the last line is not visible.
  bar->setValue(bar->maximum() - 4);
  pane_->resize(200, 300);
  QTRY_COMPARE(bar->value(), bar->maximum());
  bar->setValue(bar->maximum() - 5);
  const int value = bar->value();
  pane_->resize(200, 200);
  QCOMPARE(bar->value(), value);
}

void TestOutputWidget::aReaderFurtherUpKeepsTheLineAtTheTop_data() {
  theNewestLineStaysInSightWhateverTheSize_data();
}

void TestOutputWidget::aReaderFurtherUpKeepsTheLineAtTheTop() {
  QFETCH(const int, lines);
  QFETCH(const QSize, size);
  fillWithLines(lines);
  QScrollBar* bar = pane_->verticalScrollBar();
  bar->setValue(bar->maximum() / 2);
  const QTextCursor top = pane_->cursorForPosition({0, 0});
  const int above = pane_->cursorRect(top).top();
  pane_->resize(size);
  QCOMPARE(pane_->cursorRect(top).top(), above);
  QTest::qWait(30);
  QCOMPARE(pane_->cursorRect(top).top(), above);
  QVERIFY(bar->value() < bar->maximum());
}

void TestOutputWidget::aLocalFileIsNeverReadIntoThePane() {
  QFile file("secret.txt");
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("secret");
  file.close();
  const QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
  for (const auto type : {QTextDocument::HtmlResource, QTextDocument::ImageResource,
                          QTextDocument::StyleSheetResource, QTextDocument::MarkdownResource})
    for (const QUrl& name : {url, QUrl("secret.txt")})
      QVERIFY(settled(*pane_).document()->resource(type, name).toByteArray().isEmpty());
}

void TestOutputWidget::aClickOnALocalLinkKeepsTheText() {
  QFile file("other.html");
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("<p>other</p>");
  file.close();
  insertServerHtml(*pane_, "here");
  pane_->setSource(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
  pane_->setSource(QUrl("other.html"));
  QCOMPARE(settled(*pane_).toPlainText(), QString("here"));
}

void TestOutputWidget::declaresNoSlotsOrSignals() {
  const QMetaObject* meta = pane_->metaObject();
  QCOMPARE(meta->methodCount(), meta->methodOffset());
}

KELMORA_GUI_TEST_MAIN(TestOutputWidget)
#include "tst_outputwidget.moc"

#include <QDesktopServices>
#include <QLabel>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextEdit>
#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

#include "DialogSupport.h"
#include "dialogs/HelpWidget.h"
#include "support/FileText.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

constexpr const char* licenceFile = "licenses.txt";

void writeLicences(const QByteArray& bytes) {
  writeFile(licenceFile, bytes);
}

}  // namespace

class TestHelpWidget : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  void open(const QUrl& url) { opened_ << url; }

 private Q_SLOTS:
  void init();
  void cleanup();
  void cleanupTestCase();

  void hasItsTitleIconAndSizeAndIsNotModal();
  void everyWidgetStandsInItsPlace();
  void declaresItsOnlySlot();
  void itsButtonsAreTranslated();
  void theHeadLinesAreSetInCourierNew();
  void aLinkOpensTheBrowser_data();
  void aLinkOpensTheBrowser();

  void showsTheLicences_data();
  void showsTheLicences();
  void theLicencesAreReadOnlyAndShowTheirTop();
  void aMissingFileLeavesTheBoxEmpty();
  void aFolderInThePlaceOfTheFileLeavesTheBoxEmpty();
  void aPipeInThePlaceOfTheFileIsNotWaitedFor();
  void aGiantFileIsShownInPart_data();
  void aGiantFileIsShownInPart();
  void theFileIsReadAtConstructionAlone();

  void closes_data();
  void closes();
  void tabGoesRoundAndBack();
  void leavesTheWindowUsable();

 private:
  void create() {
    window_ = std::make_unique<QWidget>();
    window_->show();
    dialog_ = new HelpWidget(*window_);
  }
  void show() {
    create();
    dialog_->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog_));
  }
  QTextEdit* licences() const { return at<QTextEdit>(*dialog_, 7, 0); }

  QList<QUrl> opened_;
  std::unique_ptr<QWidget> window_;
  HelpWidget* dialog_ = nullptr;
};

void TestHelpWidget::init() {
  opened_.clear();
  for (const char* scheme : {"http", "https"})
    QDesktopServices::setUrlHandler(scheme, this, "open");
}

void TestHelpWidget::cleanup() {
  window_.reset();
  QFile::remove(licenceFile);
  QDir().rmdir(licenceFile);
}

void TestHelpWidget::cleanupTestCase() {
  for (const char* scheme : {"http", "https"})
    QDesktopServices::unsetUrlHandler(scheme);
}

void TestHelpWidget::hasItsTitleIconAndSizeAndIsNotModal() {
  create();
  compareHead(*dialog_, "Kelmora Help", "help");
  QCOMPARE(dialog_->size(), QSize(575, 400));
  QVERIFY(!dialog_->isModal());
  QVERIFY(!dialog_->isVisible());
  dialog_->show();
  QVERIFY(QTest::qWaitForWindowActive(dialog_));
  QCOMPARE(dialog_->size(), QSize(575, 400));
}

void TestHelpWidget::everyWidgetStandsInItsPlace() {
  create();
  QCOMPARE(at<QLabel>(*dialog_, 0, 0)->text(), QString("Kelmora Client v3.9b"));
  const QString attribution = at<QLabel>(*dialog_, 1, 0)->text();
  QVERIFY(!attribution.isEmpty() && !attribution.contains('\n'));
  QCOMPARE(at<QLabel>(*dialog_, 6, 0)->text(),
           QString("This client has been released under the following licenses:"));
  QVERIFY(licences());
  QCOMPARE(at<QPushButton>(*dialog_, 9, 0)->text(), QString("Close"));
  QCOMPARE(placesIn(*dialog_),
           QStringList({"0,0", "1,0", "2,0", "3,0", "4,0", "6,0", "7,0", "9,0"}));
  for (const int row : {0, 1, 2, 3, 4, 6})
    QVERIFY(at<QLabel>(*dialog_, row, 0)->alignment() & Qt::AlignHCenter);
}

void TestHelpWidget::declaresItsOnlySlot() {
  QCOMPARE(methodsOf(HelpWidget::staticMetaObject), QStringList("closeDialog()"));
}

void TestHelpWidget::itsButtonsAreTranslated() {
  create();
  const Foreign language("HelpWidget");
  const auto* inForeign = new HelpWidget(*window_);
  QCOMPARE(buttonTexts(*inForeign), foreign(buttonTexts(*dialog_)));
}

void TestHelpWidget::theHeadLinesAreSetInCourierNew() {
  create();
  const auto describe = [](const QWidget* widget) {
    const QFont& font = widget->font();
    return QStringLiteral("%1 %2 %3").arg(font.family()).arg(font.pointSize()).arg(font.weight());
  };
  QCOMPARE(describe(at(*dialog_, 0, 0)), QString("Courier New 16 700"));
  QCOMPARE(describe(at(*dialog_, 1, 0)), QString("Courier New 14 400"));
  QCOMPARE(describe(licences()), QString("Courier New 8 400"));
}

void TestHelpWidget::aLinkOpensTheBrowser_data() {
  QTest::addColumn<int>("row");
  QTest::addColumn<QString>("words");
  QTest::addColumn<QString>("description");
  QTest::addColumn<QString>("address");
  QTest::newRow("the tutorial") << 2 << "Client tutorial"
                                << " - A guide to using this client" << KELMORA_TUTORIAL_URL;
  QTest::newRow("the site") << 3 << "Official site"
                            << " - Kelmora's official website" << KELMORA_SITE_URL;
  QTest::newRow("the wiki") << 4 << "Official wiki"
                            << " - Kelmora's community wiki" << KELMORA_WIKI_URL;
}

void TestHelpWidget::aLinkOpensTheBrowser() {
  QFETCH(const int, row);
  QFETCH(const QString, words);
  QFETCH(const QString, description);
  QFETCH(const QString, address);
  show();
  auto* label = at<QLabel>(*dialog_, row, 0);
  QCOMPARE(label->textFormat(), Qt::RichText);
  QVERIFY(label->openExternalLinks());
  static const QRegularExpression form("^<a href=\"([^\"]*)\">([^<]*)</a>([^<]*)$");
  const QRegularExpressionMatch match = form.match(label->text());
  QVERIFY2(match.hasMatch(), qPrintable(label->text()));
  QCOMPARE(match.captured(2), words);
  QCOMPARE(match.captured(3), description);
  const QUrl target(address);
  QVERIFY(target.isValid() && target.scheme().startsWith("http") && !target.host().isEmpty());
  QCOMPARE(match.captured(1), address.toHtmlEscaped());
  QCOMPARE(label->toolTip(), address);

  // First by the mouse, a few pixels into the centred text, then by the keyboard.
  const int textWidth = label->fontMetrics().horizontalAdvance(words + description);
  QTest::mouseClick(label, Qt::LeftButton, {},
                    QPoint((label->width() - textWidth) / 2 + 10, label->height() / 2));
  QCOMPARE(opened_, QList<QUrl>{target});
  at(*dialog_, 9, 0)->setFocus();
  for (int i = 2; i <= row; ++i)
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  QCOMPARE(dialog_->focusWidget(), label);
  QTest::keyClick(label, Qt::Key_Return);
  QCOMPARE(opened_, QList<QUrl>({target, target}));
  licences()->setFocus();
  for (int i = 4; i >= row; --i)
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Backtab);
  QCOMPARE(dialog_->focusWidget(), label);
  QTest::keyClick(label, Qt::Key_Return);
  QCOMPARE(opened_.size(), 3);
  QVERIFY(dialog_->isVisible());
}

void TestHelpWidget::showsTheLicences_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<QString>("text");
  QTest::newRow("lines") << QByteArray("one\n\ntwo\n") << "one\n\ntwo\n";
  QTest::newRow("lines of another system") << QByteArray("one\r\ntwo") << "one\ntwo";
  QTest::newRow("a carriage return alone is no end of a line")
      << QByteArray("one\rtwo") << "onetwo";
  QTest::newRow("an empty file") << QByteArray() << "";
  QTest::newRow("Latin-1") << QByteArray("\xe9t\xe9 \xa9") << QString::fromLatin1("\xe9t\xe9 \xa9");
  QTest::newRow("UTF-8 is read byte by byte")
      << QByteArray("\xc2\xa9") << QString::fromLatin1("\xc2\xa9");
  QTest::newRow("markup is text") << QByteArray("<b>a</b> &amp;") << "<b>a</b> &amp;";
  QTest::newRow("a byte 255 ends the text") << QByteArray(
                                                   "before\xff"
                                                   "after")
                                            << "before";
  QTest::newRow("a byte 254 does not") << QByteArray(
                                              "before\xfe"
                                              "after")
                                       << QString::fromLatin1(
                                              "before\xfe"
                                              "after");
  QTest::newRow("a line of 4096 characters is whole") << QByteArray(4096, 'x') + '\n'
                                                      << QString(4096, 'x') + '\n';
  QTest::newRow("a longer line is shown in several")
      << QByteArray(9000, 'x') + "\ny"
      << QString(4096, 'x') + '\n' + QString(4096, 'x') + '\n' + QString(808, 'x') + "\ny";
  QTest::newRow("a byte 255 at the start") << QByteArray(
                                                  "\xff"
                                                  "after")
                                           << "";
}

void TestHelpWidget::showsTheLicences() {
  QFETCH(const QByteArray, bytes);
  QFETCH(const QString, text);
  writeLicences(bytes);
  create();
  QCOMPARE(licences()->toPlainText(), text);
}

void TestHelpWidget::theLicencesAreReadOnlyAndShowTheirTop() {
  writeLicences(QByteArray("a line of it\n").repeated(500));
  show();
  QVERIFY(licences()->isReadOnly());
  QCOMPARE(licences()->textCursor().position(), 0);
  QVERIFY(licences()->verticalScrollBar()->maximum() > 0);
  QCOMPARE(licences()->verticalScrollBar()->value(), 0);
  const QString before = licences()->toPlainText();
  QTest::keyClicks(licences(), "x");
  QCOMPARE(licences()->toPlainText(), before);
  licences()->setFocus();
  QTest::keyClick(licences(), Qt::Key_PageDown);
  QVERIFY(licences()->verticalScrollBar()->value() > 0);
}

void TestHelpWidget::aMissingFileLeavesTheBoxEmpty() {
  show();
  QCOMPARE(licences()->toPlainText(), QString());
}

void TestHelpWidget::aFolderInThePlaceOfTheFileLeavesTheBoxEmpty() {
  QVERIFY(QDir().mkdir(licenceFile));
  create();
  QCOMPARE(licences()->toPlainText(), QString());
}

void TestHelpWidget::aPipeInThePlaceOfTheFileIsNotWaitedFor() {
#ifdef Q_OS_UNIX
  QCOMPARE(mkfifo(licenceFile, 0600), 0);
  create();
  QCOMPARE(licences()->toPlainText(), QString());
#else
  QSKIP("There are no pipes in folders here");
#endif
}

void TestHelpWidget::aGiantFileIsShownInPart_data() {
  QTest::addColumn<QByteArray>("piece");
  QTest::newRow("of lines") << QByteArray(79, 'a') + '\n';
  QTest::newRow("without an end of line") << QByteArray(80, 'a');
  QTest::newRow("of words without an end of line") << QByteArray("abcd ").repeated(16);
  QTest::newRow("of empty lines") << QByteArray(80, '\n');
  QTest::newRow("of zero bytes") << QByteArray(80, '\0');
}

void TestHelpWidget::aGiantFileIsShownInPart() {
  QFETCH(const QByteArray, piece);
  writeLicences(piece.repeated(2 * 1024 * 1024 / 80));
  QVERIFY(QFile::resize(licenceFile, qint64{100} * 1024 * 1024));
  ProcessorClock clock;
  clock.start();
  show();
  dialog_->resize(600, 500);
  dialog_->grab();
  QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
  const QString text = licences()->toPlainText();
  QVERIFY(text.size() >= HelpWidget::largestLicenceText);
  QVERIFY(text.size() < HelpWidget::largestLicenceText + 1024);
}

void TestHelpWidget::theFileIsReadAtConstructionAlone() {
  writeLicences("first");
  show();
  writeLicences("second");
  dialog_->hide();
  dialog_->show();
  QCOMPARE(licences()->toPlainText(), QString("first"));
}

void TestHelpWidget::closes_data() {
  QTest::addColumn<int>("way");
  QTest::newRow("by the button") << 0;
  QTest::newRow("by Escape") << 1;
  QTest::newRow("by Enter") << 2;
}

void TestHelpWidget::closes() {
  QFETCH(const int, way);
  writeLicences("text");
  show();
  QCOMPARE(dialog_->focusWidget(), licences());
  if (way == 0)
    click(buttonOf(*dialog_, "Close"));
  else
    QTest::keyClick(dialog_->focusWidget(), way == 1 ? Qt::Key_Escape : Qt::Key_Return);
  QVERIFY(!dialog_->isVisible());
}

void TestHelpWidget::tabGoesRoundAndBack() {
  show();
  const QList<QWidget*> expected{licences(), at(*dialog_, 9, 0), at(*dialog_, 2, 0),
                                 at(*dialog_, 3, 0), at(*dialog_, 4, 0)};
  QCOMPARE(tabOrder(*dialog_), expected);
  QCOMPARE(tabOrder(*dialog_), expected);
  for (int i = 5; i-- > 0;) {
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Backtab);
    QCOMPARE(dialog_->focusWidget(), expected[i]);
  }
}

void TestHelpWidget::leavesTheWindowUsable() {
  show();
  QVERIFY(!QApplication::activeModalWidget());
}

KELMORA_GUI_TEST_MAIN(TestHelpWidget)
#include "tst_helpwidget.moc"

#include <QApplication>
#include <QDesktopServices>
#include <QImage>
#include <QTextBlock>

#include "OpenWatch.h"
#include "app/PlayWindow.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

const char* const schemes[] = {"http", "https", "mailto",      "file",     "data",
                               "qrc",  "ftp",   "javascript",  "vbscript", "telnet",
                               "ssh",  "smb",   "view-source", "about",    "x-unheard-of"};

/// Stands for every program that the desktop would start.
class Desktop : public QObject {
  Q_OBJECT

 public:
  Desktop() {
    for (const char* scheme : schemes)
      QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
  }
  ~Desktop() override {
    for (const char* scheme : schemes)
      QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
  }
  Q_DISABLE_COPY_MOVE(Desktop)

  QStringList opened;

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void open(const QUrl& url) { opened << url.toString(); }
};

constexpr auto secretText = "the words of a local file";

}  // namespace

/// A server that wants more than to show text, end to end: nothing is run,
/// opened, read or asked for but by the player's own click on a web or mail
/// address.
class TestHostileText : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase_data();
  void initTestCase();
  void init();
  void cleanup();

  void nothingIsReadOrAskedFor_data();
  void nothingIsReadOrAskedFor();
  void nothingIsRun_data();
  void nothingIsRun();
  void aClickOpensAWebOrMailAddress_data();
  void aClickOpensAWebOrMailAddress();
  void aClickOpensNothingElse_data();
  void aClickOpensNothingElse();
  void theWatchersWouldNotice();

 private:
  /// Shows the text and waits until it is there.
  void show(const QByteArray& text);
  void clickOn(const QString& words);
  /// Where the toolkit would look for such a name.
  static QByteArray fullPath(const char* name) {
    return QFile::encodeName(QDir::current().absoluteFilePath(QLatin1String(name)));
  }

  std::unique_ptr<GameServer> server_;
  std::unique_ptr<QTcpServer> trap_;
  std::unique_ptr<PlayWindow> play_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<OpenWatch> files_;
};

void TestHostileText::initTestCase_data() {
  QTest::addColumn<bool>("linked");
  QTest::newRow("addresses as text") << false;
  QTest::newRow("addresses as links") << true;
}

void TestHostileText::initTestCase() {
  writeFile("secret.html", secretText);
  writeFile("secret.css", "* { color: #123456; font-size: 40pt }");
  QImage image(16, 16, QImage::Format_RGB32);
  image.fill(Qt::magenta);
  QVERIFY(image.save("secret.png"));
}

void TestHostileText::init() {
  server_ = std::make_unique<GameServer>();
  trap_ = std::make_unique<QTcpServer>();
  QVERIFY(trap_->listen(QHostAddress::LocalHost));
  play_ = std::make_unique<PlayWindow>(server_->port(),
                                       PlayWindow::Options{{"parseHtml", 1}, {"displayURLs", 0}});
  QVERIFY(play_->connectTo(*server_));
  settled(*play_->pane).clear();
  desktop_ = std::make_unique<Desktop>();
  files_ = std::make_unique<OpenWatch>();
  for (const char* name : {"secret.html", "secret.css", "secret.png"})
    QVERIFY(files_->watch(name));
}

void TestHostileText::cleanup() {
  desktop_.reset();
  play_.reset();
}

void TestHostileText::show(const QByteArray& text) {
  server_->send(text + "<br>the-end-of-it\r\n");
  QTRY_VERIFY(play_->text().contains("the-end-of-it"));
  play_->window->grab();
  QCoreApplication::processEvents();
}

void TestHostileText::clickOn(const QString& words) {
  QTextCursor place = settled(*play_->pane).document()->find(words);
  QVERIFY(!place.isNull());
  place.setPosition(place.selectionStart() + 1);
  const QPoint point = play_->pane->cursorRect(place).center();
  QVERIFY(play_->pane->viewport()->rect().contains(point));
  QTest::mouseMove(play_->pane->viewport(), point);
  QTest::mouseClick(play_->pane->viewport(), Qt::LeftButton, Qt::NoModifier, point);
  QCoreApplication::processEvents();
}

void TestHostileText::nothingIsReadOrAskedFor_data() {
  QTest::addColumn<QByteArray>("markup");
  // %F stands for the folder's files by their whole path, %T for a web server.
  const auto row = [](const char* name, const char* markup) {
    QTest::newRow(name) << QByteArray(markup);
  };
  row("a picture by a relative name", "<img src=\"secret.png\">");
  row("a picture by its path", "<img src=\"%F/secret.png\">");
  row("a picture of the file scheme", "<img src='file://%F/secret.png'>");
  row("a picture in capitals", "<IMG SRC='FILE://%F/secret.png'>");
  row("a picture cut by a line break", "<img\r\nsrc='secret.png'\r\n>");
  row("a picture of the web", "<img src='%T/x.png'>");
  row("a picture within the address", "<img src='data:image/png;base64,iVBORw0KGgo='>");
  row("a picture of the program's own", "<img src=':/icons/mainicon.png'>");
  row("a picture of the program's own by its scheme", "<img src='qrc:/icons/mainicon.png'>");
  row("a linked style sheet", "<link rel=stylesheet type='text/css' href='secret.css'>text");
  row("a linked style sheet in a head",
      "<html><head><link rel=stylesheet "
      "href='file://%F/secret.css'></head><body>text</body></html>");
  row("an imported style sheet", "<style>@import url('secret.css');</style>text");
  row("an imported style sheet of the web", "<style>@import '%T/x.css';</style>text");
  row("a style that names a file", "<p style=\"background-image:url('secret.png')\">text</p>");
  row("a list marked by a file", "<ul style=\"list-style-image:url(secret.png)\"><li>text</ul>");
  row("an object", "<object data='secret.html'></object>");
  row("a frame within the page", "<iframe src='secret.html'></iframe>");
  row("a frame set", "<frameset><frame src='file://%F/secret.html'></frameset>");
  row("an embedded file", "<embed src='secret.html'>");
  row("a page's background", "<body background='secret.png'>text</body>");
  row("a table's background",
      "<table background='secret.png'><tr><td background='%T/x'>text</table>");
  row("a button with a picture", "<form><input type=image src='secret.png'></form>");
  row("a sound", "<audio src='%T/x.wav' autoplay></audio><bgsound src='secret.html'>");
  row("a page that leads on", "<meta http-equiv=refresh content='0;url=file://%F/secret.html'>");
  row("another base", "<base href='file://%F/'><img src='secret.png'>");
  row("a base of the web", "<base href='%T/'><img src='x.png'><a href='x'>text</a>");
  row("a script's source", "<script src='secret.html'></script>");
  row("an entity of a document type",
      "<!DOCTYPE x [<!ENTITY y SYSTEM 'file://%F/secret.html'>]><x>&y;</x>");
  row("an inclusion", "<!--#include file='secret.html' --><?php include 'secret.html' ?>");
  row("a link that is not clicked", "<a href='%T/x'>text</a>");
  row("a web address that is not clicked", "%T/x");
  row("a picture around a colour code", "<im\x1b[31mg src='secret.png'>");
}

void TestHostileText::nothingIsReadOrAskedFor() {
  QFETCH(QByteArray, markup);
  QFETCH_GLOBAL(bool, linked);
  play_->profile.settings.displayURLs = linked;
  markup.replace("%F", fullPath("."));
  markup.replace("%T", "http://127.0.0.1:" + QByteArray::number(trap_->serverPort()));
  QVERIFY(!files_->wasOpened());
  show(markup);
  QVERIFY(!files_->wasOpened());
  QVERIFY(!trap_->hasPendingConnections());
  QCOMPARE(desktop_->opened, QStringList());
  QVERIFY(!play_->text().contains(secretText));
  QVERIFY(!play_->text().contains(QChar::ObjectReplacementCharacter));
  for (const QTextFormat& format : settled(*play_->pane).document()->allFormats()) {
    QVERIFY(!format.isImageFormat());
    QVERIFY(!format.hasProperty(QTextFormat::BackgroundImageUrl));
    QVERIFY(format.foreground().color() != QColor("#123456"));
  }
  // Nor does the next line suffer.
  server_->send("still the game's\r\n");
  QTRY_VERIFY(play_->text().contains("still the game's"));
  QCOMPARE(play_->formatOf("still").fontPointSize(), 0.0);
}

void TestHostileText::nothingIsRun_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::newRow("commands of the client") << QByteArray("/set stolen, yes\r\n/echo x\r\n");
  QTest::newRow("commands in tags")
      << QByteArray("<a href='/set stolen, yes'>/set stolen, yes</a>");
  QTest::newRow("a script") << QByteArray("<script>alert(1)</script>");
  QTest::newRow("events") << QByteArray("<b onclick='x()' onmouseover='y()' onload='z()'>text</b>");
  QTest::newRow("a name of an alias") << QByteArray("go\r\n");
  QTest::newRow("a terminal's reports") << QByteArray("\x1b[6nm\x1b[cm\x1b]0;title\x07m\x05m");
  QTest::newRow("telnet questions")
      << QByteArray("\xff\xfd\x18\xff\xfa\x18\x01\xff\xf0\xff\xf6", 11);
}

void TestHostileText::nothingIsRun() {
  QFETCH(QByteArray, text);
  play_->profile.aliases.append({"go", {"/set stolen, yes", "north"}});
  const QString title = play_->window->windowTitle();
  show(text);
  QTest::qWait(10);
  QCOMPARE(server_->received(), QByteArray());
  QVERIFY(play_->profile.variables.entries().isEmpty());
  QCOMPARE(desktop_->opened, QStringList());
  QCOMPARE(play_->window->windowTitle(), title);
}

void TestHostileText::aClickOpensAWebOrMailAddress_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<QString>("words");
  QTest::addColumn<QString>("opened");
  const auto row = [](const char* name, const char* text, const char* words, const char* opened) {
    QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(words)
                        << QString::fromLatin1(opened);
  };
  row("a web link", "<a href='http://a.example/x?y=1'>click here</a>", "click here",
      "http://a.example/x?y=1");
  row("a web link in capitals", "<A HREF='HTTPS://a.example/X'>click here</A>", "click here",
      "https://a.example/X");
  row("a secure link", "<a href=\"https://a.example/\">click here</a>", "click here",
      "https://a.example/");
  row("a mail address", "<a href='mailto:robin@a.example'>click here</a>", "click here",
      "mailto:robin@a.example");
  row("a coloured link", "<a href='http://a.example/'>\x1b[31mclick here\x1b[0m</a>", "click here",
      "http://a.example/");
  row("an address in the text", "see http://a.example/news for more", "a.example/news",
      "http://a.example/news&#32");
  row("an address without its scheme", "see www.a.example.", "www.a.example",
      "http://www.a.example.");
}

void TestHostileText::aClickOpensAWebOrMailAddress() {
  QFETCH(QByteArray, text);
  QFETCH(QString, words);
  QFETCH(QString, opened);
  // What makes links of addresses also does it within the server's own links.
  play_->profile.settings.displayURLs = !text.contains("href") && !text.contains("HREF");
  show(text);
  QCOMPARE(desktop_->opened, QStringList());
  const QString before = play_->text();
  clickOn(words);
  QCOMPARE(desktop_->opened.size(), 1);
  QCOMPARE(desktop_->opened.first(), opened);
  QCOMPARE(play_->text(), before);
}

void TestHostileText::aClickOpensNothingElse_data() {
  QTest::addColumn<QByteArray>("address");
  for (const char* address : {"file:///etc/passwd",
                              "FILE:///etc/passwd",
                              "file:secret.html",
                              "file://a.example/share",
                              "secret.html",
                              "./secret.html",
                              "/etc/passwd",
                              "//a.example/share",
                              "\\\\a.example\\share",
                              "#place",
                              "?question",
                              ":/icons/mainicon.png",
                              "qrc:/icons/mainicon.png",
                              "data:text/html,<b>x</b>",
                              "data:text/html;base64,PGI+",
                              "javascript:alert(1)",
                              "java\tscript:alert(1)",
                              "java&#10;script:alert(1)",
                              "&#106;avascript:alert(1)",
                              "vbscript:x",
                              "ftp://a.example/x",
                              "telnet://a.example",
                              "ssh://a.example",
                              "smb://a.example/x",
                              "view-source:http://a.example",
                              "about:blank",
                              "x-unheard-of:x",
                              "\001file:///etc/passwd",
                              "f&#105;le:///etc/passwd",
                              "c:/autoexec.bat"})
    QTest::newRow(address) << QByteArray(address);
}

void TestHostileText::aClickOpensNothingElse() {
  QFETCH(QByteArray, address);
  QFETCH_GLOBAL(bool, linked);
  play_->profile.settings.displayURLs = linked;
  for (const char* quote : {"'", "\""}) {
    settled(*play_->pane).clear();
    show("<a href=" + (quote + address) + quote + ">click here</a>");
    const QString before = play_->text();
    clickOn("click here");
    if (QTest::currentTestFailed())
      return;
    QCOMPARE(desktop_->opened, QStringList());
    QVERIFY(!files_->wasOpened());
    QCOMPARE(play_->text(), before);
  }
}

void TestHostileText::theWatchersWouldNotice() {
  QCOMPARE(contentsOf("secret.html"), QByteArray(secretText));
  QVERIFY(files_->wasOpened());
  for (const char* scheme : schemes)
    QDesktopServices::openUrl(QUrl(QLatin1String(scheme) + ":x"));
  QCOMPARE(desktop_->opened.size(), qsizetype(std::size(schemes)));
}

KELMORA_GUI_TEST_MAIN(TestHostileText)
#include "tst_hostiletext.moc"

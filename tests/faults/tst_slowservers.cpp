#include <QApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextBlock>
#include <poll.h>

#include "RawServer.h"
#include "app/PlayWindow.h"
#include "support/FileText.h"
#include "support/LiteralPane.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/LiteralPipeline.h"
#include "terminal/markup/SafeMarkup.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::settings;
using namespace kelmora::terminal;

namespace {

/// The window's way from bytes to pane, in its plainest form.
class LiteralWindow {
 public:
  LiteralWindow() {
    const ClientSettings defaults;
    AnsiTranslator::ColourTexts normal;
    AnsiTranslator::ColourTexts bold;
    for (std::size_t i = 0; i < normal.size(); ++i) {
      normal.at(i) = defaults.normalColour.at(i).text();
      bold.at(i) = defaults.boldColour.at(i).text();
    }
    pipeline_.buildColourSpans(normal, bold);
  }
  void read(const QByteArray& bytes, const PipelineOptions& options) {
    pane.insertServerHtml(safeMarkup(pipeline_.htmlOf(bytes, options)).html());
  }

  LiteralPane pane{OutputWidget::limits.lengths.longParagraph,
                   OutputWidget::limits.lengths.longestParagraph};

 private:
  LiteralPipeline pipeline_;
};

/// Text and looks, run by run.
QStringList runsOf(const QTextDocument& document) {
  QStringList runs;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    runs << QStringLiteral("paragraph");
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextCharFormat looks = part.fragment().charFormat();
      runs << QStringLiteral("%1 on %2, weight %3, slanted %4, to '%5': %6")
                  .arg(looks.foreground().color().name(), looks.background().color().name())
                  .arg(looks.fontWeight())
                  .arg(looks.fontItalic())
                  .arg(looks.anchorHref(), part.fragment().text());
    }
  }
  return runs;
}

QByteArray colouredSession() {
  const QByteArrayList pieces{"\x1b[1;31m",
                              "\x1b[0m",
                              "\x1b[38;5;196m",
                              "\x1b[44m",
                              "A wolf howls. ",
                              "  ",
                              "\r\n",
                              "\t",
                              "http://a.example/x?y=1 ",
                              "www.kelmora.example",
                              "\xe2\x94\x80\xe2\x94\x80",
                              "caf\xc3\xa9",
                              "\xff\xfb\x01",
                              "<b>tag</b>",
                              "5 < 6 & 7 > 2",
                              "\x07",
                              "hp: [ 50 / 200 ], sp: [ 10 / 10 ], ep: [ 0 / 80 ]\r\n"};
  QRandomGenerator random(4);
  QByteArray session;
  while (session.size() < 2500)
    session +=
        pieces.at(static_cast<qsizetype>(random.bounded(static_cast<quint32>(pieces.size()))));
  return session + "\xff\xfd\x01m>\x1b[0mthe end.";
}

}  // namespace

/// Servers that are slower than any real one.
class TestSlowServers : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void oneByteAtATime_data();
  void oneByteAtATime();
  void aServerThatNeverReadsHoldsUpNobody();
  void aServerThatReadsLateGetsEveryLineInOrder();
  void triggersCannotBeMadeToFillTheMemory();

 private:
  static QString longLine(int number) {
    return QStringLiteral("line %1 ").arg(number) + QString(20'000, u'x');
  }
  static void typeLongLines(PlayWindow& play, int count);
};

void TestSlowServers::init() {
  QFile::remove("triggers.txt");
}

void TestSlowServers::oneByteAtATime_data() {
  QTest::addColumn<int>("parseHtml");
  QTest::newRow("as it comes") << 0;
  QTest::newRow("with tags parsed") << 1;
}

void TestSlowServers::oneByteAtATime() {
  QFETCH(int, parseHtml);
  GameServer server;
  PlayWindow play(server.port(), {{"parseHtml", parseHtml}, {"playBeeps", 0}});
  QVERIFY(play.connectTo(server));
  server.peer()->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  LiteralWindow literal;
  literal.pane.setFont(play.pane->font());
  // From the same start; what a cleared pane goes on with is not the matter.
  server.send("\x1b[0mstart");
  QTRY_VERIFY(play.text().endsWith("start"));
  const PipelineOptions options{.playBeeps = false, .parseHtml = parseHtml != 0};
  literal.read("\x1b[0mstart", options);

  int reads = 0;
  connect(play.window->findChild<QTcpSocket*>(), &QTcpSocket::readyRead, this, [&] { ++reads; });
  const QByteArray session = colouredSession();
  for (qsizetype i = 0; i < session.size(); ++i) {
    server.send(session.mid(i, 1));
    // Until it has been read, so that no two bytes become one read.
    QVERIFY(QTest::qWaitFor([&] { return reads == i + 1; }));
    literal.read(session.mid(i, 1), options);
  }
  const QStringList shown = runsOf(*settled(*play.pane).document());
  const QStringList expected = runsOf(*literal.pane.document());
  QVERIFY2(literal.pane.toPlainText().endsWith("end."), qPrintable(expected.last()));
  // The literal pane has none of the window's status lines above.
  QCOMPARE(shown.mid(shown.size() - expected.size() + 1), expected.mid(1));
}

void TestSlowServers::typeLongLines(PlayWindow& play, int count) {
  QElapsedTimer clock;
  for (int i = 0; i < count; ++i) {
    clock.start();
    play.bar->setText(longLine(i));
    QTest::keyClick(play.bar, Qt::Key_Return);
    QCoreApplication::processEvents();
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
  }
}

void TestSlowServers::aServerThatNeverReadsHoldsUpNobody() {
  std::atomic<bool> done = false;
  RawServer deaf([&](int connection) {
    while (!done && RawServer::send(connection, "Hello?\r\n"))
      ::usleep(20'000);
  });
  PlayWindow play(deaf.port());
  play.window->connectToServer();
  QTRY_COMPARE(play.connectionStates(), QString("-+-"));
  // Shown or not is not the matter here; remembered they are as at the start.
  play.profile.settings.displayLocalEcho = false;
  typeLongLines(play, 300);
  auto* const socket = play.window->findChild<QTcpSocket*>();
  QVERIFY(socket->bytesToWrite() > 1'000'000);
  // The server is still heard, and all that was typed is there to be sent again.
  settled(*play.pane).clear();
  QTRY_VERIFY(play.text().contains("Hello?"));
  QTest::keyClick(play.bar, Qt::Key_Up);
  QCOMPARE(play.bar->text(), longLine(299));

  // Nor does it keep the player from leaving it for another one.
  play.window->disconnectFromServer();
  QVERIFY(play.actions.at(0)->isEnabled());
  GameServer server;
  play.profile.settings.port = server.port();
  QVERIFY(play.connectTo(server));
  play.type("alive");
  QTRY_VERIFY(!server.received().isEmpty());
  QTest::qWait(20);
  QCOMPARE(server.received(), QByteArray("alive\r\n"));
  QTest::keyClick(play.bar, Qt::Key_Up);
  QTest::keyClick(play.bar, Qt::Key_Up);
  QCOMPARE(play.bar->text(), longLine(299));
  done = true;
}

void TestSlowServers::aServerThatReadsLateGetsEveryLineInOrder() {
  GameServer listener;
  PlayWindow play(listener.port(), {{"displayLocalEcho", 0}});
  QVERIFY(play.connectTo(listener));
  // Not before all is typed; then everything is read.
  listener.peer()->setReadBufferSize(1);
  for (int i = 0; i < 300; ++i)
    play.window->runActions({longLine(i)});
  QCoreApplication::processEvents();
  auto* const socket = play.window->findChild<QTcpSocket*>();
  QVERIFY(socket->bytesToWrite() > 0);
  listener.peer()->setReadBufferSize(0);
  QByteArray expected;
  for (int i = 0; i < 300; ++i)
    expected += longLine(i).toLatin1() + "\r\n";
  QTRY_COMPARE_WITH_TIMEOUT(listener.received().size(), expected.size(), 60'000);
  QVERIFY(listener.received() == expected);
}

void TestSlowServers::triggersCannotBeMadeToFillTheMemory() {
  // A short line of the server's costs the client a long answer.
  const QByteArray answer = QByteArray("say ") + QByteArray(1'000'000, 'a');
  writeFile("triggers.txt", "\ntrigger \"ask\"\n" + answer + "\n/trigger\n");
  RawServer deaf([&](int connection) {
    RawServer::send(connection, QByteArray("ask\r\n").repeated(150) + "done\r\n");
    // Stays until the client goes, and takes nothing.
    pollfd gone{.fd = connection, .events = POLLRDHUP, .revents = 0};
    ::poll(&gone, 1, 60'000);
  });
  PlayWindow play(deaf.port(), {{"displayLocalEcho", 0}});
  play.window->connectToServer();
  QTRY_VERIFY_WITH_TIMEOUT(play.text().contains("done"), 60'000);
  auto* const socket = play.window->findChild<QTcpSocket*>();
  QVERIFY(socket->bytesToWrite() > 10'000'000);
  QVERIFY(socket->bytesToWrite() < qint64{64} * 1024 * 1024 + answer.size() + 2);
}

KELMORA_GUI_TEST_MAIN(TestSlowServers)
#include "tst_slowservers.moc"

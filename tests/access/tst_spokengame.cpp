#include <QElapsedTimer>
#include <QRect>
#include <QStandardPaths>
#include <QTest>

#include "access/HeardClient.h"
#include "support/ScratchMain.h"

/// What a screen reader is told of the game, on a real accessibility bus.
class TestSpokenGame : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanupTestCase();
  void theWindowIsFound();
  void itsOwnLinesAreSpoken();
  void linesComeOnceAndInOrder();
  void aPromptComesAndWhatGoesOnIsNotRepeated();
  void aFloodIsCutShort();
  void theBarsAnswerButSayNothing();
  void thePaneIsReadByLinesAndWords();
  void aLateReaderStillGetsEarlierLines();
  void whatIsFoundIsSpoken();

 private:
  /// Until so many lines have been spoken, and a little longer.
  [[nodiscard]] QStringList spokenAfter(const QByteArray& bytes, qsizetype lines);
  [[nodiscard]] Accessible named(const QString& role, const QString& name) const {
    return client_->application().find(role, name).value_or(Accessible());
  }

  GameServer server_;
  std::unique_ptr<HeardClient> client_;
};

namespace {

/// Longer than the client waits for the rest of a line.
constexpr int aWhile = 400;  // milliseconds

struct Piece {
  QString text;
  int start = -1;
  int end = -1;
};

/// The piece of the pane's text around an offset.
Piece pieceAt(const Accessible& pane, int offset, quint32 granularity) {
  const QVariantList answer = pane.callForAll("Text", "GetTextAtOffset", {offset, granularity});
  return {answer.value(0).toString(), answer.value(1).toInt(), answer.value(2).toInt()};
}

constexpr quint32 byWord = 1;
constexpr quint32 byLine = 5;

}  // namespace

void TestSpokenGame::initTestCase() {
  client_ = std::make_unique<HeardClient>(server_);
  QVERIFY2(!client_->application().isNull(), client_->log().constData());
}

void TestSpokenGame::init() {
  QVERIFY(client_->isRunning());
  client_->forget();
}

void TestSpokenGame::cleanupTestCase() {
  client_.reset();
}

QStringList TestSpokenGame::spokenAfter(const QByteArray& bytes, qsizetype lines) {
  server_.send(bytes);
  (void)QTest::qWaitFor([&] { return client_->spoken().size() >= lines; });
  QTest::qWait(aWhile);
  return client_->spoken();
}

void TestSpokenGame::theWindowIsFound() {
  QVERIFY(!named("frame", "Kelmora - The Official Client").isNull());
  QVERIFY(!named("tool bar", "Toolbar").isNull());
  QVERIFY(named("text", "Input bar").is(state::focusable));
  QVERIFY(named("label", "Game text").is(state::focusable));
}

void TestSpokenGame::itsOwnLinesAreSpoken() {
  client_->button("Play Kelmora").press();
  QTRY_COMPARE(client_->spoken().size(), 2);
  QCOMPARE(
      client_->spoken(),
      (QStringList{
          QStringLiteral("Attempting to connect to 127.0.0.1 on port %1...").arg(server_.port()),
          "Connected to host!"}));
}

void TestSpokenGame::linesComeOnceAndInOrder() {
  QTRY_VERIFY(server_.peer());
  const QByteArray hall =
      "\x1b[1;31mThe \x1b[32mhall\x1b[0m\r\n"
      "A <b>long</b> hall & more: http://kelmora.example/\r\n"
      "\r\n"
      "   Exits:\tnorth.\r\n";
  QCOMPARE(spokenAfter(hall, 3),
           (QStringList{"The hall", "A <b>long</b> hall & more: http://kelmora.example/",
                        "Exits: north."}));
  QCOMPARE(client_->announcements().size(), 1);
  client_->forget();
  QStringList lines;
  QByteArray bytes;
  for (int i = 1; i <= 20; ++i) {
    lines << QStringLiteral("Robin says: %1").arg(i);
    bytes += lines.last().toLatin1() + '\n';
  }
  QCOMPARE(spokenAfter(bytes, lines.size()), lines);
}

void TestSpokenGame::aPromptComesAndWhatGoesOnIsNotRepeated() {
  QCOMPARE(spokenAfter("Welcome.\nName: ", 2), (QStringList{"Welcome.", "Name:"}));
  QCOMPARE(spokenAfter("Hello, Robin.\nTwo", 4),
           (QStringList{"Welcome.", "Name:", "Hello, Robin.", "Two"}));
  server_.send("\n");
}

void TestSpokenGame::aFloodIsCutShort() {
  constexpr int count = 20000;
  constexpr qint64 mostLines = 25;
  constexpr qint64 afterEachLine = 40;  // milliseconds
  QElapsedTimer timer;
  timer.start();
  for (int line = 1; line <= count; ++line)
    server_.peer()->write("line " + QByteArray::number(line) + '\n');
  QTRY_VERIFY_WITH_TIMEOUT(!client_->spoken().isEmpty() &&
                               client_->spoken().last() == QStringLiteral("line %1").arg(count),
                           15000);
  const qint64 most = 2 + timer.elapsed() / (mostLines * afterEachLine);
  QVERIFY(client_->announcements().size() <= most);
  qint64 heard = 0;
  for (QStringList lines : client_->announcements()) {
    if (lines.first().endsWith(" left out"))
      heard += lines.takeFirst().section(u' ', 0, 0).toLongLong();
    QVERIFY(lines.size() <= mostLines);
    for (const QString& line : lines)
      QCOMPARE(line, QStringLiteral("line %1").arg(++heard));
  }
  QCOMPARE(heard, count);
  qInfo("a flood of %d lines: %lld announcements", count,
        static_cast<long long>(client_->announcements().size()));
}

void TestSpokenGame::theBarsAnswerButSayNothing() {
  const Accessible hit = named("progress bar", "Hit points");
  const Accessible spell = named("progress bar", "Spell points");
  const Accessible endurance = named("progress bar", "Endurance points");
  for (int points = 99; points >= 50; --points) {
    const QByteArray number = QByteArray::number(points);
    server_.send("HP: [" + number + "/100], SP: [" + number + "/200], EP: [1/2]\n");
    QTest::qWait(20);
  }
  QTRY_COMPARE(hit.property("Value", "CurrentValue").toDouble(), 50.0);
  QCOMPARE(spell.property("Value", "CurrentValue").toDouble(), 25.0);
  QCOMPARE(endurance.property("Value", "CurrentValue").toDouble(), 50.0);
  QCOMPARE(hit.property("Value", "MaximumValue").toDouble(), 100.0);
  for (const HeardClient::Event& event : client_->events())
    if (event.name == QLatin1String("PropertyChange accessible-value"))
      QVERIFY2(event.source.role() != QLatin1String("progress bar"),
               qPrintable(event.source.name()));
}

void TestSpokenGame::thePaneIsReadByLinesAndWords() {
  QByteArray text;
  for (int line = 1; line <= 3000; ++line)
    text += "This is line " + QByteArray::number(line) + " of a tale.\n";
  server_.send(text + "The end");
  QTRY_VERIFY(client_->spoken().endsWith("The end"));
  const Accessible pane = named("label", "Game text");
  const int length = pane.property("Text", "CharacterCount").toInt();
  QVERIFY(length > 10000);

  QElapsedTimer timer;
  timer.start();
  const Piece last = pieceAt(pane, length - 2, byLine);
  QCOMPARE(last.text.trimmed(), QString("The end"));
  const Piece before = pieceAt(pane, last.start - 2, byLine);
  QCOMPARE(before.text.trimmed(), QString("This is line 3000 of a tale."));
  QCOMPARE(pieceAt(pane, before.start + 6, byWord).text.trimmed(), QString("is"));
  // Far above what is in sight, too.
  const Piece far = pieceAt(pane, length / 3, byLine);
  const auto numberIn = [](const Piece& line) {
    return line.text.section(QStringLiteral("line "), 1).section(u' ', 0, 0).toInt();
  };
  QVERIFY2(numberIn(far) > 0, qPrintable(far.text));
  QCOMPARE(numberIn(pieceAt(pane, far.end + 2, byLine)), numberIn(far) + 1);
  qInfo("five questions about %d characters took %lld ms", length,
        static_cast<long long>(timer.elapsed()));

  const auto place = [&pane](int offset) {
    const QVariantList answer =
        pane.callForAll("Text", "GetCharacterExtents", {offset, quint32{0}});
    return QRect(answer.value(0).toInt(), answer.value(1).toInt(), answer.value(2).toInt(),
                 answer.value(3).toInt());
  };
  const QRect first = place(last.start);
  const QRect second = place(last.start + 1);
  QVERIFY(first.width() > 0 && first.height() > 0);
  QVERIFY(second.left() > first.left());
  QCOMPARE(second.top(), first.top());
  QVERIFY(place(before.start).top() < first.top());
  QCOMPARE(pane.property("Text", "CaretOffset").toInt(), length);
}

void TestSpokenGame::aLateReaderStillGetsEarlierLines() {
  server_.send("\n");
  QTest::qWait(aWhile);
  client_->forget();
  for (int i = 1; i <= 5; ++i) {
    server_.send("late " + QByteArray::number(i) + '\n');
    QTRY_COMPARE(client_->spoken().size(), i);
  }
  if (client_->notices().isEmpty())
    QSKIP("announcements carry their text with them here");
  QStringList texts;
  for (const Accessible& notice : client_->notices())
    texts << notice.name();
  QCOMPARE(texts, (QStringList{"late 1", "late 2", "late 3", "late 4", "late 5"}));
}

void TestSpokenGame::whatIsFoundIsSpoken() {
  const QString tool = QStringLiteral("xdotool");
  if (QStandardPaths::findExecutable(tool).isEmpty())
    QSKIP("xdotool is not installed");
  const auto press = [&tool](const QStringList& words) {
    QCOMPARE(QProcess::execute(tool, words), 0);
  };
  QCOMPARE(spokenAfter("A troll waits.\nAnother troll comes.\n", 2).size(), 2);
  press({"search", "--onlyvisible", "--name", "Kelmora - The", "windowfocus", "--sync"});
  press({"key", "ctrl+f"});
  QTRY_VERIFY(!named("text", "Find in the game text").isNull());
  for (const char* const button : {"Older hit", "Newer hit", "Close"})
    QVERIFY2(!named("push button", button).isNull(), button);
  for (const char* const option : {"Upper and lower case", "Whole words", "Regular expression"}) {
    const Accessible button = named("check box", option);
    QVERIFY2(button.is(state::focusable) && !button.is(state::checked), option);
  }
  client_->forget();
  press({"type", "--delay", "5", "troll"});
  QTRY_VERIFY(!client_->spoken().isEmpty());
  QCOMPARE(client_->spoken(), (QStringList{"Another troll comes.", "2 of 2"}));
  client_->forget();
  press({"key", "F3"});
  QTRY_VERIFY(!client_->spoken().isEmpty());
  QCOMPARE(client_->spoken(), (QStringList{"A troll waits.", "1 of 2"}));
  client_->forget();
  press({"type", "--delay", "5", "x"});
  QTRY_COMPARE(client_->spoken(), QStringList{"No hit"});
  press({"key", "Escape"});
}

KELMORA_TEST_MAIN(TestSpokenGame)
#include "tst_spokengame.moc"

// The way from a line in the pane to a trigger that fires on it: in a real window, on a
// real connection, and once more after the window was closed.

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <array>
#include <random>
#include <string_view>

#include "../automation/EditorControls.h"
#include "PlayWindow.h"
#include "automation/editors/TriggerWidget.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

using namespace kelmora::automation;

namespace {

/// What the menu's entry does and whether it is enabled. Points at the words where they
/// came last in the pane.
enum class Entry { None, Disabled, Triggered };

Entry makeTriggerAt(PlayWindow& play, const QString& words) {
  OutputWidget& pane = settled(*play.pane);
  QTextCursor end(pane.document());
  end.movePosition(QTextCursor::End);
  const QTextCursor found = pane.document()->find(
      words, end, QTextDocument::FindBackward | QTextDocument::FindCaseSensitively);
  if (found.isNull())
    return Entry::None;
  Entry entry = Entry::None;
  QTimer::singleShot(0, &pane, [&entry] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
      return;
    for (QAction* action : menu->actions()) {
      if (action->text().remove('&') == "Make a Trigger of This Line\u2026") {
        entry = action->isEnabled() ? Entry::Triggered : Entry::Disabled;
        action->trigger();
      }
    }
    menu->close();
  });
  const QPoint place = pane.cursorRect(found).center() - QPoint(3, 0);
  QContextMenuEvent event(QContextMenuEvent::Mouse, place, pane.viewport()->mapToGlobal(place));
  QCoreApplication::sendEvent(pane.viewport(), &event);
  return entry;
}

/// A line with everything that is shown or stored in another way than it came, and with
/// a word of its own that stands alone.
QByteArray randomLine(std::mt19937& random, const QByteArray& word) {
  static constexpr std::array<std::string_view, 26> pieces{
      "\"",       "{*}",      "%s",      "\t",        "  ",         " ",        " ",
      "\xc3\xbc", "\x1b[31m", "\x1b[0m", "&lt;",      "&",          "<b>",      "</b>",
      "<",        ">",        "You",     "dies. Bob", "www.a.test", "http://b", "\xe2\x80\x9c",
      "\xfc",     "&nbsp;",   "\x01",    "(x, y)",    "Www.w"};
  const auto addSome = [&random](QByteArray& line) {
    for (auto length = random() % 8; length > 0; --length) {
      const std::string_view piece = pieces.at(random() % pieces.size());
      line.append(piece.data(), static_cast<qsizetype>(piece.size()));
    }
  };
  QByteArray line;
  addSome(line);
  line += ' ' + word + ' ';
  addSome(line);
  return line;
}

[[nodiscard]] bool hasShown(PlayWindow& play, const QString& words) {
  return QTest::qWaitFor([&] { return play.text().contains(words); });
}

}  // namespace

class TestTriggerOfLine : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void theTriggerFiresNowAndAfterANewStart_data();
  void theTriggerFiresNowAndAfterANewStart();
  void triggersOfRandomLinesFire_data();
  void triggersOfRandomLinesFire();
  void whatIsCancelledLeavesNoTrace();
  void linesOfTheClientOfferNoTrigger();
  void aPromptAndWhatIsBehindItAreTwo();
};

void TestTriggerOfLine::init() {
  writeFile("triggers.txt", "\ntrigger \"other\"\nother\n/trigger\n");
}

void TestTriggerOfLine::theTriggerFiresNowAndAfterANewStart_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QString>("clicked");
  QTest::addColumn<QString>("pattern");
  QTest::addColumn<bool>("html");
  const auto row = [](const char* what, const QByteArray& line, const QString& clicked,
                      const QString& pattern, bool html = false) {
    QTest::newRow(what) << line << clicked << pattern << html;
  };
  row("plain text", "The orc dies.", "orc", "The orc dies.");
  row("a line that begins with a quotation mark", "\"Hello\" says Bob.", "Bob", "says Bob.");
  row("quotation marks within", "Bob says \"hello\" to you.", "hello", "Bob says");
  row("umlauts",
      "Gr\xc3\xbc\xc3\x9f"
      "e aus K\xc3\xb6ln",
      "aus", "aus");
  row("wildcards", "{*} tells you: {*}", "tells", "tells you:");
  row("a per cent sign", "You feel 100% better", "better", "You feel 100% better");
  row("tabs", "Name:\tBob the Great", "Bob", "Bob the Great");
  row("blanks around and within", "   HP  10   SP 20  ", "SP", "HP  10   SP 20");
  row("another colour between two blanks", "The \x1b[31m orc\x1b[0m dies.", "dies",
      "The  orc dies.");
  row("an address without a scheme", "see www.kelmora.example now", "see",
      "see www.kelmora.example now");
  row("an address", "see http://kelmora.example/a now", "see", "see http://kelmora.example/a now");
  row("an entity", "Bob &amp; Al rest.", "rest", "Bob &amp; Al rest.");
  row("angle brackets", "<Bob> says: 3 < 4", "says", "<Bob> says: 3 < 4");
  row("tags that are parsed", "The <b>old</b> orc dies.", "orc", "The <b>old</b> orc dies.", true);
}

void TestTriggerOfLine::theTriggerFiresNowAndAfterANewStart() {
  QFETCH(const QByteArray, line);
  QFETCH(const QString, clicked);
  QFETCH(const QString, pattern);
  QFETCH(const bool, html);
  const DialogAnswers none;
  const PlayWindow::Options options{{"parseHtml", int{html}}, {"displayURLs", 1}};
  const QByteArray read = "Before.\r\n" + line + "\r\nBehind.\r\n";
  {
    GameServer server;
    PlayWindow play(server.port(), options);
    QVERIFY(play.connectTo(server));
    server.send(read);
    QVERIFY(hasShown(play, "Behind."));
    QCOMPARE(makeTriggerAt(play, clicked), Entry::Triggered);
    auto* const editor = play.window->findChild<TriggerWidget*>();
    QVERIFY(editor->isVisible());
    const EditorControls controls(*editor, "trigger");
    QCOMPARE(controls.label->text(), pattern);
    retype(controls.commands, "smile");
    click(controls.save);
    click(controls.close);
    QCOMPARE(server.received(), QByteArray());
    server.send(read);
    QTRY_COMPARE(server.received(), QByteArray("smile\r\n"));
    QVERIFY(play.window->close());
  }
  GameServer server;
  PlayWindow play(server.port(), options);
  QCOMPARE(play.profile.triggers.size(), 2);
  QVERIFY(play.connectTo(server));
  server.send(read);
  QTRY_COMPARE(server.received(), QByteArray("smile\r\n"));
}

void TestTriggerOfLine::triggersOfRandomLinesFire_data() {
  QTest::addColumn<bool>("html");
  QTest::newRow("tags are shown") << false;
  QTest::newRow("tags are parsed") << true;
}

void TestTriggerOfLine::triggersOfRandomLinesFire() {
  QFETCH(const bool, html);
  const DialogAnswers none;
  GameServer server;
  PlayWindow play(server.port(), {{"parseHtml", int{html}}, {"displayURLs", 1}});
  QVERIFY(play.connectTo(server));
  const EditorControls controls(*play.window->findChild<TriggerWidget*>(), "trigger");
  std::mt19937 random(7);  // NOLINT(*-msc51-cpp,cert-msc32-c): the same lines in every run
  for (int turn = 0; turn < 40; ++turn) {
    const QByteArray word = "word" + QByteArray::number(turn) + 'e';
    const QByteArray line = randomLine(random, word);
    // Tags of one line are not to hide the next ones.
    const QByteArray read = "\x1b[0m" + line + (html ? "></b>\r\n" : "\r\n");
    const QByteArray behind = "Behind " + QByteArray::number(turn) + '.';
    server.send(read + behind + "\r\n");
    QVERIFY(hasShown(play, behind));
    QVERIFY2(makeTriggerAt(play, word) == Entry::Triggered, line.toPercentEncoding().constData());
    retype(controls.commands, word);
    click(controls.save);
    click(controls.close);
    server.forget();
    server.send(read);
    QVERIFY2(QTest::qWaitFor([&] { return server.received().contains(word + "\r\n"); }),
             (line.toPercentEncoding() + " -> " + controls.label->text().toUtf8()).constData());
  }
}

void TestTriggerOfLine::whatIsCancelledLeavesNoTrace() {
  const QByteArray file = contentsOf("triggers.txt");
  const DialogAnswers none;
  {
    GameServer server;
    PlayWindow play(server.port());
    const QList<TriggerEntry> entries = play.profile.triggers.entries();
    QVERIFY(play.connectTo(server));
    server.send("\"Hello\" says Bob.\r\n");
    QVERIFY(hasShown(play, "says Bob."));
    QCOMPARE(makeTriggerAt(play, "Bob"), Entry::Triggered);
    const EditorControls controls(*play.window->findChild<TriggerWidget*>(), "trigger");
    QCOMPARE(contentsOf("triggers.txt"), file);
    retype(controls.commands, "smile");
    click(controls.cancel);
    QCOMPARE(play.profile.triggers.entries(), entries);
    QCOMPARE(contentsOf("triggers.txt"), file);
    click(controls.close);
    QVERIFY(play.window->close());
  }
  QCOMPARE(contentsOf("triggers.txt"), file);
}

void TestTriggerOfLine::linesOfTheClientOfferNoTrigger() {
  const DialogAnswers none;
  GameServer server;
  PlayWindow play(server.port(), {{"displayLocalEcho", 1}});
  QVERIFY(play.connectTo(server));
  server.send("The orc dies.\r\n");
  QVERIFY(hasShown(play, "The orc dies."));
  play.type("smile at Bob;/delete nothing;/variables");
  QVERIFY(hasShown(play, "++ "));
  for (const char* words : {"smile at Bob", "No such", "Global", "Attempting"})
    QVERIFY2(makeTriggerAt(play, words) == Entry::Disabled, words);
}

void TestTriggerOfLine::aPromptAndWhatIsBehindItAreTwo() {
  const DialogAnswers none;
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("HP:10 SP:20> ");
  QVERIFY(hasShown(play, "SP:20> "));
  server.send("You hit the orc.\r\n");
  QVERIFY(hasShown(play, "SP:20> You hit the orc."));
  auto* const editor = play.window->findChild<TriggerWidget*>();
  for (const QString& words : {QString("hit the"), QString("SP:")}) {
    QCOMPARE(makeTriggerAt(play, words), Entry::Triggered);
    const EditorControls controls(*editor, "trigger");
    QCOMPARE(controls.label->text(), QString(words == "SP:" ? "HP:10 SP:20>" : "You hit the orc."));
    click(controls.close);
  }
}

KELMORA_GUI_TEST_MAIN(TestTriggerOfLine)
#include "tst_triggerofline.moc"

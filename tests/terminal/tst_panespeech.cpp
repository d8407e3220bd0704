#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/speech/PaneSpeech.h"

using namespace kelmora::terminal;
using namespace std::chrono_literals;

/// When and how what comes into the pane is announced.
class TestPaneSpeech : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void linesThatComeTogetherAreAnnouncedTogether();
  void aPromptComesWhenItDoesNotGoOn();
  void aLineInPiecesComesAsOne();
  void thePlayersOwnLineIsNotSpoken();
  void theClientsOwnLinesAreSpoken_data();
  void theClientsOwnLinesAreSpoken();
  void markupIsSpokenAsItsText_data();
  void markupIsSpokenAsItsText();
  void aFloodIsCutShort_data();
  void aFloodIsCutShort();

 private:
  QStringList announced_;
  std::unique_ptr<PaneSpeech> speech_;
};

namespace {

ServerText plain(const QString& text) {
  QString lines = text;
  lines.replace(u'\n', QChar::LineSeparator);
  return StyledText{lines, {{lines.size(), {}}}};
}

ServerText markup(const QString& html) {
  return safeMarkupPieces(html, 8192);
}

}  // namespace

void TestPaneSpeech::init() {
  announced_.clear();
  speech_ = std::make_unique<PaneSpeech>([this](const QString& text) { announced_ << text; });
}

void TestPaneSpeech::linesThatComeTogetherAreAnnouncedTogether() {
  speech_->hear(plain("one\ntwo\n"));
  speech_->hear(plain("\nthree\n"));
  QCOMPARE(announced_, QStringList());
  QTRY_COMPARE(announced_, QStringList{"one\ntwo\nthree"});
  speech_->hear(plain("four\n"));
  QTRY_COMPARE(announced_.size(), 2);
  QCOMPARE(announced_.last(), QString("four"));
}

void TestPaneSpeech::aPromptComesWhenItDoesNotGoOn() {
  QElapsedTimer timer;
  timer.start();
  speech_->hear(plain("a hall\nName: "));
  QTRY_COMPARE(announced_, (QStringList{"a hall", "Name:"}));
  QVERIFY(timer.elapsed() >= PaneSpeech::endOfPrompt.count() * 9 / 10);
  speech_->hear(plain("Robin\n"));
  QTRY_COMPARE(announced_.size(), 3);
  QCOMPARE(announced_.last(), QString("Robin"));
}

void TestPaneSpeech::aLineInPiecesComesAsOne() {
  for (const char* piece : {"You ", "see ", "a ", "door.\n"})
    speech_->hear(plain(QString::fromLatin1(piece)));
  QTRY_COMPARE(announced_, QStringList{"You see a door."});
}

void TestPaneSpeech::thePlayersOwnLineIsNotSpoken() {
  speech_->hear(plain("> "));
  speech_->hearEcho();
  speech_->hear(plain("You wave.\n"));
  QTRY_COMPARE(announced_, QStringList{">\nYou wave."});
}

void TestPaneSpeech::theClientsOwnLinesAreSpoken_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("spoken");
  QTest::newRow("an error") << "## no such command\n"
                            << "## no such command";
  QTest::newRow("what a script prints") << "<b>&amp;\n"
                                        << "<b>&amp;";
}

void TestPaneSpeech::theClientsOwnLinesAreSpoken() {
  QFETCH(const QString, text);
  speech_->hear(text);
  QTRY_COMPARE(announced_.size(), 1);
  QTEST(announced_.first(), "spoken");
}

void TestPaneSpeech::markupIsSpokenAsItsText_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("spoken");
  QTest::newRow("colours and line breaks")
      << "<span style=\"color:#ff0000\">The&#32;hall</span><br>A&#32;door.<br>"
      << "The hall\nA door.";
  QTest::newRow("entities") << "a &lt; b &amp; c<br>"
                            << "a < b & c";
  QTest::newRow("a link") << "<a href=\"http://kelmora.example/\">the site</a><br>"
                          << "the site";
  QTest::newRow("a picture") << "before <img src=\"x.png\"> behind<br>"
                             << "before behind";
}

void TestPaneSpeech::markupIsSpokenAsItsText() {
  QFETCH(const QString, html);
  speech_->hear(markup(html));
  QTRY_COMPARE(announced_.size(), 1);
  QTEST(announced_.first(), "spoken");
  announced_.clear();
  speech_->hear(safeMarkup(html));
  QTRY_COMPARE(announced_.size(), 1);
  QTEST(announced_.first(), "spoken");
}

void TestPaneSpeech::aFloodIsCutShort_data() {
  QTest::addColumn<bool>("asMarkup");
  QTest::newRow("of text") << false;
  QTest::newRow("of HTML") << true;
}

void TestPaneSpeech::aFloodIsCutShort() {
  QFETCH(const bool, asMarkup);
  constexpr int reads = 100;
  constexpr int linesOfRead = 200;
  int line = 0;
  QElapsedTimer timer;
  timer.start();
  for (int read = 0; read < reads; ++read) {
    QString text;
    for (int i = 0; i < linesOfRead; ++i)
      text += QStringLiteral("line %1").arg(++line) + (asMarkup ? "<br>" : "\n");
    speech_->hear(asMarkup ? markup(text) : plain(text));
    QTest::qWait(12);
  }
  const QString last = QStringLiteral("line %1").arg(line);
  QTRY_VERIFY(!announced_.isEmpty() && announced_.last().endsWith(last));
  // Each announcement has its lines and the word of what is left out, and may be
  // followed by the next only after the time for them.
  const qint64 pause = (SpokenLines::mostLines + 1) * PaneSpeech::afterEachLine.count();
  QVERIFY(announced_.size() <= 2 + timer.elapsed() / pause);
  qint64 heard = 0;
  for (const QString& announcement : announced_) {
    QStringList lines = announcement.split(u'\n');
    QVERIFY2(lines.first().endsWith(" lines left out"), qPrintable(lines.first()));
    heard += lines.takeFirst().section(u' ', 0, 0).toLongLong();
    QVERIFY(lines.size() <= SpokenLines::mostLines);
    heard += lines.size();
    // Its lines are the newest of their time, in order.
    QCOMPARE(lines.last(), QStringLiteral("line %1").arg(heard));
  }
  QCOMPARE(heard, line);
}

KELMORA_GUI_TEST_MAIN(TestPaneSpeech)
#include "tst_panespeech.moc"

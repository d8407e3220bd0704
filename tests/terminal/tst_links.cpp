#include <QTest>

#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "terminal/core/Links.h"

using namespace kelmora;
using namespace kelmora::terminal;

class TstLinks : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void linkifies_data();
  void linkifies();
  void aLinkBodyTakesTheseBytesAlone();
  void resolves_data();
  void resolves();
  void hostileTextsTakeLinearTime_data();
  void hostileTextsTakeLinearTime();
};

void TstLinks::linkifies_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("linked");
  const auto row = [](const char* name, const char* html, const char* linked) {
    QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(linked);
  };
  row("text without addresses stays", "You&#32;see&#32;a&#32;troll.",
      "You&#32;see&#32;a&#32;troll.");
  row("a bare host gets a scheme", "www.example",
      R"(<a href="http://www.example">http://www.example</a>)");
  row("a capital at its start is lost", "Www.example",
      R"(<a href="http://www.example">http://www.example</a>)");
  row("capitals further on are no host", "wWw.example WWW.example", "wWw.example WWW.example");
  row("a run of them is one", "www.Www.www.a", R"(<a href="http://www.a">http://www.a</a>)");
  row("a host inside a word counts", "xwww.a", R"(x<a href="http://www.a">http://www.a</a>)");
  row("a host with a scheme keeps one", "http://www.example",
      R"(<a href="http://www.example">http://www.example</a>)");
  row("a host with a secure scheme keeps it", "https://www.example",
      R"(<a href="https://www.example">https://www.example</a>)");
  row("a secure scheme doubled is one", "https://https://a.b",
      R"(<a href="https://a.b">https://a.b</a>)");
  row("the first of two schemes counts when it is secure", "https://http://a.b",
      R"(<a href="https://a.b">https://a.b</a>)");
  row("the first of two schemes counts when it is plain", "http://https://a.b",
      R"(<a href="http://a.b">http://a.b</a>)");
  row("a plain scheme doubled is one", "http://http://a.b",
      R"(<a href="http://a.b">http://a.b</a>)");
  row("a secure scheme before a doubled plain one is taken step by step",
      "https://http://http://a.b", R"(<a href="https://http">https://http</a>://a.b)");
  row("three plain schemes leave a pair", "http://http://http://a.b",
      R"(<a href="http://a.b">http://a.b</a>)");
  row("a capital scheme is made small", "Http://a.b Https://c.d!",
      R"(<a href="http://a.b ">http://a.b </a><a href="https://c.d">https://c.d</a>!)");
  row("a scheme of capitals is none", "HTTP://a.b", "HTTP://a.b");
  row("a scheme alone is no link", "http://!", "http://!");
  row("an address after a blank ends at the semicolon of the next", "see&#32;http://a.b/c&#32;now",
      R"(see&#32;<a href="http://a.b/c&#32">http://a.b/c&#32</a>;now)");
  row("line breaks end an address", "http://a<br>\nhttp://b<br>\n",
      "<a href=\"http://a\">http://a</a><br>\n<a href=\"http://b\">http://b</a><br>\n");
  row("real blanks do not", "http://a b\tc\nd<",
      "<a href=\"http://a b\tc\nd\">http://a b\tc\nd</a><");
  row("a letter outside ASCII ends an address", "http://a.b/\xC3\xA9",
      "<a href=\"http://a.b/\">http://a.b/</a>\xC3\xA9");
  row("an address inside markup is wrapped too", R"(<img src="http://a.b">)",
      R"(<img src="<a href="http://a.b">http://a.b</a>">)");
}

void TstLinks::linkifies() {
  QFETCH(QString, html);
  QFETCH(QString, linked);
  linkify(html);
  QCOMPARE(html, linked);
}

void TstLinks::aLinkBodyTakesTheseBytesAlone() {
  const QByteArray others = "%&#=+?/.-_* \t\n\v\f\r";
  for (char16_t character = 1; character < 0x250; ++character) {
    const bool letterOrDigit = character < 128 && QChar(character).isLetterOrNumber();
    const bool taken =
        letterOrDigit || (character < 128 && others.contains(static_cast<char>(character)));
    QString html = QStringLiteral("http://a") + QChar(character);
    linkify(html);
    QVERIFY2(html.endsWith(QLatin1String("</a>")) == taken,
             QByteArray::number(static_cast<int>(character)).constData());
  }
}

void TstLinks::resolves_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("resolved");
  const auto row = [](const char* name, const char* html, const char* resolved) {
    QTest::newRow(name) << QString::fromLatin1(html) << QString::fromLatin1(resolved);
  };
  row("nothing stays nothing", "", "");
  row("text stays", "a<br>\nb", "a<br>\nb");
  row("a space placeholder is a blank", "a<space>b", "a&#32;b");
  row("a tab is four blanks, every second hard", "<tab>", "&#32;&nbsp;&#32;&nbsp;");
  row("two tabs are eight", "<tab><tab>", "&#32;&nbsp;&#32;&nbsp;&#32;&nbsp;&#32;&nbsp;");
  row("a blank before a tab pairs with its first", "&#32;<tab>", "&#32;&nbsp;&nbsp;&#32;&nbsp;");
  row("one blank stays", "a&#32;b", "a&#32;b");
  row("two blanks are a soft and a hard one", "&#32;&#32;", "&#32;&nbsp;");
  row("three blanks", "&#32;&#32;&#32;", "&#32;&nbsp;&#32;");
  row("four blanks", "&#32;&#32;&#32;&#32;", "&#32;&nbsp;&#32;&nbsp;");
  row("a blank and a placeholder of one pair up", "&#32;<space>", "&#32;&nbsp;");
  row("angle brackets", "<lt>b<gt>", "&lt;b&gt;");
  row("placeholders of another case are markup", "<LT><Space><TAB><Gt>", "<LT><Space><TAB><Gt>");
  row("brackets made late make no placeholder", "<<lt>gt>", "<&lt;gt>");
  row("a placeholder inside another is found once", "<sp<space>ace>", "<sp&#32;ace>");
}

void TstLinks::resolves() {
  QFETCH(QString, html);
  QFETCH(QString, resolved);
  resolvePlaceholders(html);
  QCOMPARE(html, resolved);
}

void TstLinks::hostileTextsTakeLinearTime_data() {
  QTest::addColumn<QString>("unit");
  for (const char* unit : {"http://", "https://", "www.", "http://!", "www.!", "http://a!", "a",
                           "w", "<tab>", "&#32;", "<lt>", "<space>", "<", "&#32"})
    QTest::addRow("ten million characters of \"%s\"", unit) << QString::fromLatin1(unit);
}

void TstLinks::hostileTextsTakeLinearTime() {
  QFETCH(QString, unit);
  constexpr qsizetype size = 10'000'000;
  QString html = QStringLiteral("http://a") + unit.repeated(size / unit.size()) + QLatin1Char('!');
  ProcessorClock timer;
  timer.start();
  linkify(html);
  resolvePlaceholders(html);
  QVERIFY2(timer.elapsed() < 20000, "not linear");
  QVERIFY(html.endsWith(QLatin1Char('!')));
}

KELMORA_TEST_MAIN(TstLinks)
#include "tst_links.moc"

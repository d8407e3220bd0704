#include <QRandomGenerator>
#include <QTest>

#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

namespace {

/// Writes random lines, most of them made of words that mean something.
class LineWriter {
 public:
  explicit LineWriter(quint32 seed) : random_(seed) {}

  QString line() {
    QString text;
    for (int left = random_.bounded(9); left > 0; --left)
      text += part();
    return random_.bounded(400) == 0 ? text.repeated(random_.bounded(300)) : text;
  }

 private:
  QString part() {
    static const QStringList words{"/set ",
                                   "/delete ",
                                   "/variables",
                                   "/add ",
                                   "/subtract ",
                                   "/multiply ",
                                   "/divide ",
                                   "/isequal ",
                                   "/isnotequal ",
                                   "/islessthan ",
                                   "/isgreaterthan ",
                                   "/islessthanorequal ",
                                   "/isgreaterthanorequal ",
                                   "/cond ",
                                   "/condloop ",
                                   "/repeat ",
                                   "/echo ",
                                   "/pause ",
                                   "/unpause ",
                                   "//",
                                   "/",
                                   "/repeat 3,",
                                   "/cond /repeat 2, ",
                                   "/set a,{a}{b}",
                                   "/add b, {a}",
                                   "{a}",
                                   "{b}",
                                   "{",
                                   "}",
                                   "{}",
                                   "a",
                                   "b",
                                   "c",
                                   "d",
                                   ",",
                                   ", ",
                                   " ",
                                   "\t",
                                   "\n",
                                   "1",
                                   "2",
                                   "5",
                                   "-1",
                                   "0.5",
                                   "1e39",
                                   "nan",
                                   "2147483647",
                                   "-2147483648",
                                   "t",
                                   "FF8000",
                                   "\u00e9",
                                   "\u20ac"};
    if (random_.bounded(12) != 0)
      return words[random_.bounded(int(words.size()))];
    // Any code unit, even NUL or half of a surrogate pair.
    return QString(
        QChar(static_cast<char16_t>(random_.bounded(random_.bounded(2) == 0 ? 256 : 65536))));
  }

  QRandomGenerator random_;
};

}  // namespace

class TestRandomScripts : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void anyLineComesToAnEnd();
};

void TestRandomScripts::anyLineComesToAnEnd() {
  LineWriter writer(11);
  qsizetype lines = 0;
  for (int script = 0; script < 1000; ++script) {
    ScriptFixture room;
    room.host.keepsLines = false;
    for (const char* name : {"a", "b", "/d"})
      room.aliases[name] = QStringList{writer.line(), writer.line()};
    for (int list = 0; list < 40; ++list) {
      const QStringList actions{writer.line(), writer.line(), writer.line()};
      lines += actions.size();
      room.host.log.clear();
      room.run(actions);
      const QStringList stops = room.host.noted("## Script stopped after ");
      QVERIFY2(stops.size() <= 1, qPrintable(stops.join(u'\n')));
    }
    for (const QString& value : room.variables.entries())
      QVERIFY(value.size() <= VariableTable::maximumLength);
    for (const QString& id : room.timers.byId().keys())
      room.timers.unpause(id);
    QVERIFY(room.host.timerParent().children().isEmpty());
  }
  QVERIFY(lines >= 100'000);
}

KELMORA_TEST_MAIN(TestRandomScripts)
#include "tst_randomscripts.moc"

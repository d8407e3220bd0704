#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include "script/CommandTable.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

/// What has to hold for every row. The compiler checks that each has a handler.
class TestCommandTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void wordsCanBeTyped();
  void noWordStandsTwice();
  void theErrorFitsTheForm();
  void everyRowRuns();
  void argumentsAreTakenAsTheRowSays();
};

void TestCommandTable::wordsCanBeTyped() {
  static const QRegularExpression word(QStringLiteral("^/[a-z]+$"));
  QVERIFY(!commandRows().empty());
  for (const CommandRow& row : commandRows())
    QVERIFY2(word.match(row.word).hasMatch(), row.word.data());
}

void TestCommandTable::noWordStandsTwice() {
  QSet<QString> words;
  for (const CommandRow& row : commandRows()) {
    QVERIFY2(!words.contains(row.word), row.word.data());
    words << row.word;
  }
}

void TestCommandTable::theErrorFitsTheForm() {
  const QHash<ArgumentForm, QString> errors{
      {ArgumentForm::One, " takes one argument"},
      {ArgumentForm::OneUntrimmed, " takes one argument"},
      {ArgumentForm::Two, " takes two arguments"},
      {ArgumentForm::TextAndMaybeColour, " takes at least one argument"},
  };
  for (const CommandRow& row : commandRows())
    QCOMPARE(errorOf(row),
             row.form == ArgumentForm::None ? QString() : row.word + errors[row.form]);
}

void TestCommandTable::everyRowRuns() {
  for (const CommandRow& row : commandRows()) {
    // The line does not go to the server: the command takes it or refuses it.
    ScriptFixture script;
    script.run({row.word, row.word + QStringLiteral(" a"), row.word + QStringLiteral(" a, b")});
    QVERIFY2(script.host.noted(QStringLiteral("> ") + row.word).isEmpty(), row.word.data());
    const bool refusesNone = row.form != ArgumentForm::None;
    QCOMPARE(script.host.errors().contains("## " + errorOf(row)), refusesNone);
    // A longer word is not the command.
    QCOMPARE(script.logOf({row.word + u'x'}), QStringList{"> " + row.word + u'x'});
  }
}

void TestCommandTable::argumentsAreTakenAsTheRowSays() {
  // If the variable is replaced, the text becomes too long, which is told.
  for (const CommandRow& row : commandRows()) {
    const auto cuts = [&](const QString& arguments) {
      ScriptFixture script;
      script.variables.set("v", QString(VariableTable::maximumLength, u'1'));
      script.run({row.word + u' ' + arguments});
      return !script.host.errors().filter(QStringLiteral("characters: %1").arg(row.word)).isEmpty();
    };
    const bool first =
        row.substituted == Substituted::First || row.substituted == Substituted::Both;
    const bool second =
        row.substituted == Substituted::Second || row.substituted == Substituted::Both;
    QVERIFY2(cuts("{v}{v}, x") == first, row.word.data());
    QVERIFY2(cuts("x, {v}{v}") == second, row.word.data());
  }
}

KELMORA_TEST_MAIN(TestCommandTable)
#include "tst_commandtable.moc"

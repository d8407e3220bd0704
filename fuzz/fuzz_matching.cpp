#include "FuzzTarget.h"
#include "automation/LiteralMatcher.h"
#include "automation/core/TextLines.h"
#include "automation/core/TriggerTable.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

/// Keeps what triggers do when they fire. Where a table is given, it also removes that
/// table's first entry each time.
class Recorder : public TriggerHost {
 public:
  void setVariable(const QString& name, const QString& value) override { events << name << value; }
  void runActions(const QStringList& commands) override {
    events << commands;
    if (table)
      table->removeAt(0);
  }

  QStringList events;
  TriggerTable* table = nullptr;
};

QStringList firedBy(TriggerTable& table, const QByteArray& line, TriggerTable* changed) {
  Recorder recorder;
  recorder.table = changed;
  table.check(line, recorder);
  return recorder.events;
}

}  // namespace

/// The input is one pattern a line, an empty line, and then the lines of a server.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray input = fuzz::bytesOf(data, size);
  TextLines lines(input);
  TriggerTable table;
  for (auto line = lines.next(); line && !line->isEmpty(); line = lines.next())
    table.append({QString::fromUtf8(*line), {QString::number(table.size())}});
  while (const auto line = lines.next()) {
    const QByteArray text = line->toByteArray();
    Recorder expected;
    literal::check(table.entries(), text, expected);
    fuzz::require(firedBy(table, text, nullptr) == expected.events,
                  "the table fires what its patterns match one by one");
    TriggerTable changing = table;
    fuzz::require(firedBy(changing, text, &changing) == expected.events,
                  "a table changed by its own triggers first finishes the line");
  }
  return 0;
}

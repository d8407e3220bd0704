#include <QApplication>
#include <QRandomGenerator>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include "support/ScratchMain.h"
#include "terminal/reading/PaneHits.h"

using namespace kelmora::terminal;

/// The hits in a document are known while it grows and shrinks.
class TestPaneHits : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theNewestParagraphIsLookedThroughFirst();
  void afterEachChangeTheyAreThoseOfTheWholeText();
  void ofTooManyTheNewestAreKept();
};

namespace {

/// Has the hits follow the document, which tells of changes only if it has a layout.
void follow(QTextDocument& document, PaneHits& hits) {
  (void)document.documentLayout();
  QObject::connect(
      &document, &QTextDocument::contentsChange, &document,
      [&hits](int from, int removed, int added) { hits.takeChange(from, removed, added); });
}

QStringList told(const PaneHits& hits) {
  QStringList list;
  for (const PaneHits::Place& place : hits.places())
    list << QStringLiteral("%1+%2").arg(place.start).arg(place.length);
  return list;
}

QStringList wholeText(const QTextDocument& document, const TextFinder& finder) {
  QStringList list;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    for (const TextFinder::Hit& hit : finder.hitsIn(block.text()))
      list << QStringLiteral("%1+%2").arg(block.position() + hit.start).arg(hit.length);
  return list;
}

}  // namespace

void TestPaneHits::theNewestParagraphIsLookedThroughFirst() {
  QTextDocument document(QStringLiteral("an orc\nno\nthe orc"));
  PaneHits hits(document);
  hits.look(TextFinder(QStringLiteral("orc"), {}));
  QVERIFY(hits.advance());
  QCOMPARE(told(hits), (QStringList{"14+3"}));
  QVERIFY(hits.advance());
  QVERIFY(hits.advance());
  QCOMPARE(told(hits), (QStringList{"3+3", "14+3"}));
  QVERIFY(!hits.advance());
}

void TestPaneHits::afterEachChangeTheyAreThoseOfTheWholeText() {
  QRandomGenerator random(7);
  QTextDocument document;
  PaneHits hits(document);
  const TextFinder finder(QStringLiteral("ab"), {});
  hits.look(finder);
  follow(document, hits);
  for (int change = 0; change < 2000; ++change) {
    QTextCursor end(&document);
    end.movePosition(QTextCursor::End);
    switch (random.bounded(6)) {
      case 0:
        end.insertBlock();
        break;
      case 1:
        // As the pane drops what is too far up.
        document.setMaximumBlockCount(std::max(document.blockCount() - random.bounded(4), 1));
        document.setMaximumBlockCount(0);
        break;
      case 2:
        // As the pane ends a paragraph that has become long.
        end.setPosition(document.lastBlock().position());
        end.insertBlock();
        break;
      case 3:
        if (random.bounded(50) == 0)
          document.clear();
        break;
      default:
        end.insertText(random.bounded(2) ? QStringLiteral("a") : QStringLiteral("b ab"));
    }
    // Text comes while it is still being looked through.
    for (int turns = random.bounded(5); turns > 0 && hits.advance(); --turns) {
    }
    if (random.bounded(3) > 0)
      continue;
    while (hits.advance()) {
    }
    QCOMPARE(told(hits), wholeText(document, finder));
  }
}

void TestPaneHits::ofTooManyTheNewestAreKept() {
  QTextDocument document(QString(6000, u'x') + u'\n' + QString(6000, u'x'));
  PaneHits hits(document);
  const TextFinder finder(QStringLiteral("x"), {});
  hits.look(finder);
  follow(document, hits);
  const auto look = [&] {
    while (hits.advance()) {
    }
    const QStringList all = wholeText(document, finder);
    QCOMPARE(told(hits), all.last(std::min<qsizetype>(all.size(), PaneHits::most)));
  };
  look();
  QTextCursor end(&document);
  end.movePosition(QTextCursor::End);
  end.insertText(QStringLiteral("xx"));
  look();
  // There is room again for older ones.
  end.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
  end.removeSelectedText();
  look();
}

KELMORA_GUI_TEST_MAIN(TestPaneHits)
#include "tst_panehits.moc"

#include "BrowserActions.h"

namespace browser_actions {

namespace {

/// The point in the middle of the first letter of a text.
QPoint pointAt(QTextBrowser& browser, const QString& text) {
  const QTextCursor found = browser.document()->find(text);
  QTextCursor begin(browser.document());
  begin.setPosition(found.selectionStart());
  return browser.cursorRect(begin).center() + QPoint(2, 0);
}

QString findAll(QTextBrowser& browser, QTextDocument::FindFlags flags) {
  QString told;
  for (int i = 0; i < 4; ++i)
    told += (browser.find(QStringLiteral("lamp"), flags) ? "found" : "none") + state(browser);
  return told;
}

/// A range that is as wide as the view.
QImage drawn(const QTextBrowser& browser, const QRectF& clip) {
  QImage image(clip.size().toSize(), QImage::Format_RGB32);
  image.fill(Qt::gray);
  QPainter painter(&image);
  painter.translate(-clip.topLeft());
  browser.document()->drawContents(&painter, clip);
  return image;
}

QString sum(const QImage& image) {
  return QString::number(
      qHashBits(image.constBits(), static_cast<std::size_t>(image.sizeInBytes())));
}

}  // namespace

std::vector<Action> mouseActions() {
  return {
      {"a selection within a line", "question",
       [](auto& browser) {
         return drag(browser, {20, 60}, {120, 62});
       }},
      {"a selection over lines", "hall",
       [](auto& browser) {
         return drag(browser, {50, 12}, {90, 170});
       }},
      {"a selection upwards", "hung with",
       [](auto& browser) {
         return drag(browser, {90, 170}, {30, 20});
       }},
      {"a selection beside the lines", "lamp",
       [](auto& browser) {
         scrollTo(browser, 0.5);
         return drag(browser, {280, 10}, {1, 150});
       }},
      {"a selection out of the page", "lamp",
       [](auto& browser) {
         scrollTo(browser, 0.3);
         return drag(browser, {30, 100}, {40, -30});
       }},
      {"a double click on a word, then one more click", "banners[",
       [](auto& browser) {
         const QPoint at = pointAt(browser, "banners");
         QString told = mouse(browser, QEvent::MouseButtonPress, at);
         told += mouse(browser, QEvent::MouseButtonRelease, at);
         told += mouse(browser, QEvent::MouseButtonDblClick, at);
         told += browser.textCursor().selectedText();
         told += mouse(browser, QEvent::MouseButtonRelease, at);
         told += mouse(browser, QEvent::MouseButtonPress, at);
         return told + browser.textCursor().selectedText();
       }},
      {"a double click and a drag by words", "banners",
       [](auto& browser) {
         const QPoint at = pointAt(browser, "banners");
         QString told = mouse(browser, QEvent::MouseButtonDblClick, at);
         told += mouse(browser, QEvent::MouseMove, at + QPoint(70, 30));
         return told + browser.textCursor().selectedText();
       }},
      {"a click with Shift held", "x",
       [](auto& browser) {
         return drag(browser, {20, 60}, {40, 60}) +
                mouse(browser, QEvent::MouseButtonPress, {100, 140}, Qt::ShiftModifier) +
                browser.textCursor().selectedText();
       }},
      {"clicks on links", "clicked http://a.example/b\n",
       [](auto& browser) {
         const Signals all(browser);
         for (const char* text : {"a place", "somebody", "banners"}) {
           const QPoint at = pointAt(browser, text);
           (void)mouse(browser, QEvent::MouseButtonPress, at);
           (void)mouse(browser, QEvent::MouseButtonRelease, at);
         }
         return all.told;
       }},
      {"the mouse over links", "highlighted mailto:x@y",
       [](auto& browser) {
         const Signals all(browser);
         const QString shapes =
             everywhere(browser, [&browser](QPoint at) { return hover(browser, at); });
         return all.told + shapes;
       }},
      {"the wheel", "[at 180,",
       [](auto& browser) {
         QString told;
         for (const int by : {-120, -240, 120}) {
           QWheelEvent event(QPointF(30, 30), browser.mapToGlobal(QPointF(30, 30)), {}, {0, by},
                             Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
           QCoreApplication::sendEvent(browser.viewport(), &event);
           told += state(browser);
         }
         return told;
       }},
  };
}

std::vector<Action> keyActions() {
  using enum Qt::Key;
  return {
      {"pages down and up", "[at 476,",
       [](auto& browser) {
         return keys(browser, {Key_PageDown, Key_PageDown, Key_PageDown, Key_PageUp, Key_Space});
       }},
      {"the end and the begin", "[at 0,",
       [](auto& browser) {
         return keys(browser, {Key_End, Key_Home, Qt::CTRL | Key_End, Qt::CTRL | Key_Home});
       }},
      {"lines down and up", "[at 40,",
       [](auto& browser) {
         return keys(browser, {Key_Down, Key_Down, Key_Up, Key_Right, Key_Left});
       }},
      {"all selected and copied", "line 39 of it",
       [](auto& browser) {
         const QString told = keys(browser, {Qt::CTRL | Key_A, Qt::CTRL | Key_C});
         return told + QApplication::clipboard()->text();
       }},
      {"from link to link", "clicked mailto:x@y",
       [](auto& browser) {
         const Signals all(browser);
         QString told = keys(browser, {Key_Tab, Key_Tab, Key_Tab, Key_Backtab, Key_Return});
         return told + all.told;
       }},
      {"a caret that goes by lines, words and pages", "[at 238",
       [](auto& browser) {
         browser.setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
         placeCaret(browser, 30);
         return keys(browser, {Key_Down, Key_Down, Key_Down, Key_End, Key_Down, Key_Home, Key_Up,
                               Qt::CTRL | Key_Right, Qt::CTRL | Key_Left, Key_PageDown, Key_Down,
                               Key_PageDown, Key_PageUp, Qt::CTRL | Key_End, Key_Up, Key_Up,
                               Qt::CTRL | Key_Home, Qt::CTRL | Key_Down});
       }},
      {"a selection by keys", "hung with",
       [](auto& browser) {
         browser.setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
         placeCaret(browser, 30);
         const QString told =
             keys(browser, {Qt::SHIFT | Key_Down, Qt::SHIFT | Key_Down, Qt::SHIFT | Key_End,
                            Qt::SHIFT | Key_PageDown, Qt::SHIFT | Key_Left, Qt::SHIFT | Key_Up});
         return told + browser.textCursor().selectedText();
       }},
      {"a caret in text of both directions", "x",
       [](auto& browser) {
         browser.setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
         placeCaret(browser, browser.document()->find(QStringLiteral("hear")).position());
         return keys(browser, {Key_Right, Key_Right, Key_Right, Key_Left, Key_Down, Key_Up,
                               Key_Home, Key_Left, Key_End, Key_Right});
       }},
  };
}

std::vector<Action> programActions() {
  return {
      {"a search forwards", "found[",
       [](auto& browser) {
         browser.moveCursor(QTextCursor::Start);
         return findAll(browser, {});
       }},
      {"a search backwards", "found[",
       [](auto& browser) {
         browser.moveCursor(QTextCursor::End);
         return findAll(browser, QTextDocument::FindBackward);
       }},
      {"a search by an expression", "[at ",
       [](auto& browser) {
         browser.moveCursor(QTextCursor::Start);
         QString told;
         while (browser.find(QRegularExpression(QStringLiteral("line 1?[05]\\b"))))
           told += state(browser);
         return told;
       }},
      {"links under the points of the view", "http://a.example/2",
       [](auto& browser) {
         return everywhere(browser, [&](QPoint at) { return browser.anchorAt(at); });
       }},
      {"characters under the points of the view", " ",
       [](auto& browser) {
         scrollTo(browser, 0.4);
         return everywhere(browser, [&](QPoint at) {
           return QString::number(browser.cursorForPosition(at).position());
         });
       }},
      {"a caret placed far away and brought in sight", "[at ",
       [](auto& browser) {
         QString told;
         const int end = browser.document()->characterCount() - 1;
         for (const int position : {end, 0, end / 2, end / 3, end - 1}) {
           placeCaret(browser, position);
           browser.ensureCursorVisible();
           told += state(browser);
         }
         return told;
       }},
      {"a place with a name scrolled to", "[at 5",
       [](auto& browser) {
         QTextCursor cursor = browser.document()->find(QStringLiteral("line 17"));
         QTextCharFormat format;
         format.setAnchor(true);
         format.setAnchorNames({QStringLiteral("here")});
         cursor.mergeCharFormat(format);
         browser.scrollToAnchor(QStringLiteral("here"));
         return state(browser);
       }},
      {"the text and its HTML", "line 39 of it",
       [](auto& browser) { return browser.toPlainText() + browser.toHtml(); }},
      {"pages and sizes", "1 pages",
       [](auto& browser) {
         const QSizeF size = browser.document()->size();
         return QStringLiteral("%1 pages, %2x%3")
             .arg(browser.document()->pageCount())
             .arg(size.width())
             .arg(size.height());
       }},
      {"letters made larger and smaller", "[at ",
       [](auto& browser) {
         browser.zoomIn(5);
         QString told = state(browser);
         browser.zoomOut(2);
         return told + state(browser);
       }},
      {"a page drawn in parts", " ",
       [](auto& browser) {
         QString told;
         for (const QRectF& clip : {QRectF(0, 0, 300, 80), QRectF(30, 55, 100, 111),
                                    QRectF(0, 700, 300, 33), QRectF(0, 20000, 300, 100)})
           told += sum(drawn(browser, clip)) + u' ';
         return told;
       }},
      {"what a screen reader and an input method are told", " 8x16 ",
       [](auto& browser) {
         QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&browser);
         QAccessibleTextInterface* text = reader ? reader->textInterface() : nullptr;
         if (!text)
           return QString();
         QString told;
         const QPoint corner = browser.mapToGlobal(QPoint(0, 0));
         for (int i = 0; i < text->characterCount(); i += 7) {
           const QRect rect = text->characterRect(i).translated(-corner);
           told += QStringLiteral("%1,%2 %3x%4 ")
                       .arg(rect.x())
                       .arg(rect.y())
                       .arg(rect.width())
                       .arg(rect.height());
           told += QString::number(text->offsetAtPoint(corner + rect.center())) + u' ';
         }
         const QRect caret = browser.inputMethodQuery(Qt::ImCursorRectangle).toRect();
         return told + QStringLiteral("%1,%2").arg(caret.x()).arg(caret.y());
       }},
      {"a page read from right to left", " ",
       [](auto& browser) {
         browser.setLayoutDirection(Qt::RightToLeft);
         scrollTo(browser, 0.2);
         return everywhere(browser, [&](QPoint at) {
           return QString::number(browser.cursorForPosition(at).position());
         });
       }},
      {"other margins, indents and tabs", "[at ",
       [](auto& browser) {
         browser.document()->setDocumentMargin(17);
         browser.document()->setIndentWidth(11);
         browser.setTabStopDistance(33);
         return state(browser);
       }},
      {"words broken anywhere", "[at ",
       [](auto& browser) {
         browser.setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
         return state(browser);
       }},
      {"a size after another", "11: ",
       [](auto& browser) {
         QString told;
         for (int i = 0; i < 12; ++i) {
           browser.resize(120 + 53 * (i * 5 % 12), 100 + 31 * (i * 7 % 12));
           (void)browser.document()->size();
           layOut(browser, 0, belowEverything);
           QCoreApplication::processEvents();
           const QScrollBar& down = *browser.verticalScrollBar();
           const QScrollBar& right = *browser.horizontalScrollBar();
           told += QStringLiteral("%1: %2/%3/%4 %5/%6 ")
                       .arg(i)
                       .arg(down.maximum())
                       .arg(down.pageStep())
                       .arg(down.singleStep())
                       .arg(right.maximum())
                       .arg(right.pageStep());
         }
         return told;
       }},
  };
}

}  // namespace browser_actions

#include "RandomPages.h"

#include <QTextDocumentFragment>

#include "LayoutContents.h"

QFont RandomPage::font() {
  const auto all = layout_contents::fonts();
  return all.at(static_cast<std::size_t>(pick(static_cast<int>(all.size())))).font;
}

QString RandomPage::change(TwoLayouts& two) {
  const int kind = pick(20);
  if (kind < 12)
    return add(two, kind);
  switch (kind) {
    case 12:
    case 13:
      return resize(two);
    case 14:
    case 15:
      return select(two);
    case 16:
      return drop(two);
    case 17:
      return edit(two);
    case 18:
      return scroll(two);
    default:
      return rare(two);
  }
}

QString RandomPage::of(const std::vector<const char*>& all) {
  return QString::fromUtf8(all.at(static_cast<std::size_t>(pick(static_cast<int>(all.size())))));
}

QString RandomPage::word() {
  return of({"lamp",
             "the",
             "a",
             "north",
             "of",
             "banners",
             "12/40",
             "-----",
             "שלום",
             "عربي",
             "漢字かな",
             "😀",
             "\t",
             "\u00A0\u00A0x",
             "",
             "x  y ",
             "(one)",
             "e\u0301",
             "soft\u00ADly",
             "!",
             "--------------------"
             "--------------------"});
}

QString RandomPage::words() {
  QString text;
  for (int count = pick(12); count >= 0; --count)
    text += word() + (pick(8) ? " " : "");
  return text;
}

QString RandomPage::lines() {
  QString text;
  for (int count = pick(pick(4) ? 3 : 30); count >= 0; --count)
    text += words() + (pick(3) ? QString(QChar::LineSeparator) : pick(2) ? "\n" : "");
  return text;
}

QColor RandomPage::colour() {
  return QColor::fromHsv(pick(360), pick(256), pick(256));
}

QString RandomPage::markup(int depth) {
  QString html;
  for (int count = pick(4); count >= 0; --count)
    html += depth > 0 && pick(2) ? element(depth - 1) : words().toHtmlEscaped();
  return html;
}

QString RandomPage::tagged(const QString& tag, const QString& inner) {
  return '<' + tag + '>' + inner + (pick(12) ? "</" + tag.section(' ', 0, 0) + '>' : QString());
}

QString RandomPage::list(const QString& tag, int depth) {
  QString items;
  for (int count = pick(4); count >= 0; --count)
    items += tagged("li", markup(depth));
  return tagged(tag, items);
}

QString RandomPage::element(int depth) {
  switch (pick(9)) {
    case 0:
      return list(of({"ul", "ol", "ol start=8", "ol start=998"}), depth);
    case 1:
      return "<dl>" + tagged("dt", markup(0)) + tagged("dd", markup(depth)) + "</dl>";
    case 2:
      return tagged(of({"h1", "h2", "h3", "h4 align=right", "h5 align=center", "h6"}),
                    markup(depth));
    case 3:
      return tagged(of({"p", "p align=right", "p align=center", "p align=justify", "div",
                        "div align=right", "center", "blockquote", "pre"}),
                    markup(depth));
    case 4:
      return of({"<br>", "<hr>", "<br><br>", "<p></p>", "<ul><li></ul>"});
    case 5:
      return tagged("a href=\"http://a.example/" + QString::number(pick(9)) + '"', words());
    case 6:
      return tagged(
          "font size=" + of({"1", "2", "5", "7", "+1", "-2"}) + " color=" + colour().name(),
          markup(depth));
    case 7:
      return tagged(QStringLiteral("span style=\"background-color:%1;font-size:%2px\"")
                        .arg(colour().name())
                        .arg(4 + pick(30)),
                    markup(depth));
    default:
      return tagged(of({"b", "i", "u", "s", "big", "small", "sub", "sup", "tt", "nobr", "code"}),
                    markup(depth));
  }
}

QString RandomPage::add(TwoLayouts& two, int kind) {
  if (kind < 4) {
    const QString text = lines();
    two.both([&](QTextBrowser& browser) { layout_contents::insertText(browser, text); });
    return "text " + text;
  }
  if (kind < 6) {
    const QString text = lines();
    const QColor front = colour();
    const QColor back = colour();
    two.both([&](QTextBrowser& browser) {
      layout_contents::insertColoured(browser, text, front, back);
    });
    return "coloured text " + text;
  }
  const QString html = markup(3);
  if (kind < 10) {
    two.both([&](QTextBrowser& browser) { layout_contents::insertHtml(browser, html); });
    return "HTML " + html;
  }
  two.both([&](QTextBrowser& browser) { layout_contents::appendStatus(browser, html); });
  return "status line " + html;
}

QString RandomPage::resize(TwoLayouts& two) {
  const QSize before = two.expected.size();
  const QSize after = pick(2) ? size() : before + QSize(pick(9) - 4, pick(9) - 4);
  two.resize(after);
  return QStringLiteral("resize to %1x%2").arg(after.width()).arg(after.height());
}

QString RandomPage::select(TwoLayouts& two) {
  const int end = two.expected.document()->characterCount();
  const int anchor = pick(end);
  const int position = pick(2) ? pick(end) : std::min(anchor + pick(60), end - 1);
  two.both([=](QTextBrowser& browser) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    browser.setTextCursor(cursor);
  });
  return QStringLiteral("select %1 to %2").arg(anchor).arg(position);
}

QString RandomPage::drop(TwoLayouts& two) {
  const int left = std::max(1, two.expected.document()->blockCount() - 1 - pick(6));
  two.both([left](QTextBrowser& browser) {
    browser.document()->setMaximumBlockCount(left);
    browser.document()->setMaximumBlockCount(0);
  });
  return QStringLiteral("drop all but %1").arg(left);
}

QString RandomPage::edit(TwoLayouts& two) {
  const int end = two.expected.document()->characterCount();
  const int from = pick(end);
  const int to = std::min(from + pick(pick(3) ? 3 : 80), end - 1);
  const int kind = pick(4);
  const QString text = words();
  two.both([&](QTextBrowser& browser) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    if (kind == 0)
      cursor.insertText(text);
    else if (kind == 1)
      cursor.removeSelectedText();
    else
      cursor.insertBlock();
  });
  return QStringLiteral("edit %1 from %2 to %3 ").arg(kind).arg(from).arg(to) + text;
}

QString RandomPage::scroll(TwoLayouts& two) {
  const double part = pick(3) / 2.0;
  two.scrollTo(part);
  return QStringLiteral("scroll to %1").arg(part);
}

QString RandomPage::rare(TwoLayouts& two) {
  const int kind = pick(6);
  const QFont other = font();
  two.both([&](QTextBrowser& browser) {
    switch (kind) {
      case 0:
        browser.setFont(other);
        return;
      case 1:
        browser.clear();
        return;
      case 2:
        browser.zoomIn(1);
        return;
      case 3: {
        const QTextDocumentFragment content(browser.document());
        browser.document()->clear();
        QTextCursor(browser.document()).insertFragment(content);
        return;
      }
      case 4:
        browser.document()->setMaximumBlockCount(12);
        return;
      default:
        browser.document()->setMaximumBlockCount(0);
    }
  });
  return QStringLiteral("rare change %1 ").arg(kind) + other.toString();
}

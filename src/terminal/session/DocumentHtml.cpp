#include "terminal/session/DocumentHtml.h"

#include <QTextCursor>
#include <QTextDocument>

#include "terminal/session/DocumentRuns.h"
#include "terminal/session/HtmlForms.h"

namespace kelmora::terminal {

namespace {

qsizetype sizeOf(const HtmlForms::Ends& ends) {
  return ends.before.size() + ends.behind.size();
}

/// An approximation in bytes: characters that are written as entities take more.
qsizetype sizeOf(const DocumentRuns& content, const HtmlForms& forms) {
  qsizetype size = sizeOf(forms.page());
  for (const DocumentRuns::Paragraph& paragraph : content.paragraphs)
    size += paragraph.text.size() + sizeOf(forms.around(paragraph));
  for (const DocumentRuns::Run& run : content.runs)
    size += sizeOf(forms.around(run));
  return size;
}

QByteArray written(const DocumentRuns& content, const HtmlForms& forms) {
  QByteArray html;
  html.reserve(sizeOf(content, forms) * 9 / 8);
  html += forms.page().before;
  auto run = content.runs.begin();
  for (const DocumentRuns::Paragraph& paragraph : content.paragraphs) {
    const HtmlForms::Ends& ends = forms.around(paragraph);
    html += ends.before;
    QStringView text(paragraph.text);
    for (const auto end = run + paragraph.runs; run != end; ++run) {
      const HtmlForms::Ends& around = forms.around(*run);
      html += around.before;
      forms.letters().append(html, text.first(run->length));
      html += around.behind;
      text = text.sliced(run->length);
    }
    html += ends.behind;
  }
  html += forms.page().behind;
  return html;
}

QByteArray toolkitHtml(const QTextDocument& document) {
  return HtmlForms::bytesOf(document.toHtml());
}

void writeABitOfEverything(QTextDocument& document) {
  document.setDefaultStyleSheet(QStringLiteral("a { color: #6fa8ff }"));
  QTextCursor cursor(&document);
  cursor.insertHtml(QStringLiteral(
      "  <span style=\"color:#ff0000\">red <span style=\"background-color:#0000ff\"> &lt;both&gt;"
      "<a href=\"http://a/?b=&quot;c&quot;&amp;d\"> link</a></span></span>&nbsp; plain<br>  &amp;"
      "<b>bold <i> italic</i></b><p></p><p align=center>'middle' </p><h2> head</h2>"));
  cursor.insertBlock();
  QTextCharFormat look;
  look.setForeground(Qt::yellow);
  look.setBackground(Qt::black);
  cursor.insertText(QStringLiteral(" \t two  blanks \u2028\u2028 \u00e9\u20ac \n\n"), look);
  cursor.insertText(QStringLiteral("  \" '"), QTextCharFormat());
}

}  // namespace

QByteArray documentHtml(const QTextDocument& document) {
  if (isQuickHtmlExact())
    if (auto html = quickHtml(document))
      return *std::move(html);
  return toolkitHtml(document);
}

std::optional<QByteArray> quickHtml(const QTextDocument& document) {
  if (const auto content = DocumentRuns::of(document))
    if (const auto forms = HtmlForms::learn(document, *content))
      return written(*content, *forms);
  return std::nullopt;
}

bool isQuickHtmlExact() {
  static const bool exact = [] {
    QTextDocument document;
    writeABitOfEverything(document);
    return quickHtml(document) == toolkitHtml(document);
  }();
  return exact;
}

}  // namespace kelmora::terminal

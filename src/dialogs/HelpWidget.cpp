#include "dialogs/HelpWidget.h"

#include <QFile>
#include <QFileInfo>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

namespace {

constexpr QSize initialSize{575, 400};
constexpr qsizetype longestParagraph = 4096;  // characters
constexpr char endOfLicences = '\xff';        // a quirk of this client: it ends the text

QFont courierNew(int points, QFont::Weight weight = QFont::Normal) {
  QFont font(QStringLiteral("Courier New"), points, weight);
  font.setStyleHint(QFont::TypeWriter);  // where the family is missing
  return font;
}

/// The text engine's time grows with the square of a paragraph's length, so a
/// line that no licence has is continued in a new one.
QString inShortParagraphs(const QString& text) {
  QString result;
  result.reserve(text.size() + text.size() / longestParagraph);
  qsizetype length = 0;
  for (const QChar c : text) {
    length = c == QLatin1Char('\n') ? 0 : length + 1;
    if (length > longestParagraph) {
      result += QLatin1Char('\n');
      length = 1;
    }
    result += c;
  }
  return result;
}

QString licenceText() {
  const QString path = QStringLiteral("licenses.txt");
  QFile file(path);
  // Opening a pipe would wait for its other end.
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
    return QString();
  QByteArray bytes = file.read(HelpWidget::largestLicenceText);
  if (const qsizetype end = bytes.indexOf(endOfLicences); end >= 0)
    bytes.truncate(end);
  return inShortParagraphs(QString::fromLatin1(bytes));
}

/// A label with one link, which is ready for Enter as soon as Tab leads to it.
class LinkLabel : public QLabel {
 public:
  LinkLabel(const QString& html, QWidget* parent) : QLabel(html, parent) {
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    setOpenExternalLinks(true);
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
      QLabel::focusNextPrevChild(true);  // onto the link
  }
  // The label's own way back never leaves a link that begins the text.
  bool focusNextPrevChild(bool next) override {
    return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call)
  }
};

}  // namespace

HelpWidget::HelpWidget(QWidget& parent) : QDialog(&parent) {
  setWindowTitle(tr("Kelmora Help"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/help.png")));
  resize(initialSize);

  auto* grid = new QGridLayout(this);
  const auto add = [&](int row, QLabel* label) {
    label->setAlignment(Qt::AlignCenter);
    grid->addWidget(label, row, 0);
    return label;
  };
  const auto addLabel = [&](int row, const QString& text) {
    return add(row, new QLabel(text, this));
  };
  const auto addLink = [&](int row, const char* address, const QString& words,
                           const QString& description) {
    const QString target = QString::fromUtf8(address);
    const QString html = QStringLiteral("<a href=\"%1\">%2</a> - %3")
                             .arg(target.toHtmlEscaped(), words, description);
    add(row, new LinkLabel(html, this))->setToolTip(target);
  };

  addLabel(0, tr("Kelmora Client v3.9b"))->setFont(courierNew(16, QFont::Bold));
  addLabel(1, tr("Made by the Kelmora client authors"))->setFont(courierNew(14));
  addLink(2, KELMORA_TUTORIAL_URL, tr("Client tutorial"), tr("A guide to using this client"));
  addLink(3, KELMORA_SITE_URL, tr("Official site"), tr("Kelmora's official website"));
  addLink(4, KELMORA_WIKI_URL, tr("Official wiki"), tr("Kelmora's community wiki"));
  QLabel* header = addLabel(6, tr("This client has been released under the following licenses:"));

  auto* licences = new QTextEdit(this);
  licences->setReadOnly(true);
  licences->setTabChangesFocus(true);
  licences->setUndoRedoEnabled(false);
  licences->setFont(courierNew(8));
  licences->setPlainText(licenceText());
  licences->moveCursor(QTextCursor::Start);
  header->setBuddy(licences);
  grid->addWidget(licences, 7, 0);
  grid->setRowStretch(7, 1);

  auto* close = new QPushButton(tr("Close"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &HelpWidget::closeDialog);
  grid->addWidget(close, 9, 0, Qt::AlignHCenter);

  // Rows without a widget keep things apart.
  const int gap = fontMetrics().height() / 2;
  for (const int row : {5, 8})
    grid->setRowMinimumHeight(row, gap);
  licences->setFocus();
}

void HelpWidget::closeDialog() {
  hide();
}

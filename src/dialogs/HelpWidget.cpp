#include "dialogs/HelpWidget.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QUrl>

#include "files/Files.h"

namespace {

constexpr QSize initialSize{575, 400};        // pixels
constexpr qsizetype longestParagraph = 4096;  // characters
constexpr char endOfLicences = '\xff';        // a quirk of this client: this byte ends the text

QFont courierNew(int points, QFont::Weight weight = QFont::Normal) {
  QFont font(QStringLiteral("Courier New"), points, weight);
  font.setStyleHint(QFont::TypeWriter);  // where the family is missing
  return font;
}

/// The time that the text box needs for a paragraph grows with the square of its
/// length. So a line that is longer than any of a real licence goes on in a new
/// paragraph.
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
  const auto file =
      kelmora::files::read(QStringLiteral("licenses.txt"), HelpWidget::largestLicenceText);
  if (!file)
    return QString();
  QByteArray bytes = file->bytes;
  bytes.replace('\r', "");  // part of the end of a line in other systems' files
  if (const qsizetype end = bytes.indexOf(endOfLicences); end >= 0)
    bytes.truncate(end);
  return inShortParagraphs(QString::fromLatin1(bytes));
}

/// A label that begins with one link. As soon as the Tab key has reached it, Enter
/// opens the link.
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
      QLabel::focusNextPrevChild(true);  // selects the link
  }
  // With the toolkit's own version, Shift+Tab never leaves a link at the start of
  // the text.
  bool focusNextPrevChild(bool next) override {
    return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call)
  }
};

struct LinkRow {
  int row;
  const char* address;
  const char* words;
  const char* description;
};

constexpr LinkRow linkRows[] = {
    {2, KELMORA_TUTORIAL_URL, QT_TRANSLATE_NOOP("HelpWidget", "Client tutorial"),
     QT_TRANSLATE_NOOP("HelpWidget", "A guide to using this client")},
    {3, KELMORA_SITE_URL, QT_TRANSLATE_NOOP("HelpWidget", "Official site"),
     QT_TRANSLATE_NOOP("HelpWidget", "Kelmora's official website")},
    {4, KELMORA_WIKI_URL, QT_TRANSLATE_NOOP("HelpWidget", "Official wiki"),
     QT_TRANSLATE_NOOP("HelpWidget", "Kelmora's community wiki")},
};

/// The address of a row: of the tutorial the guide that is installed with the program,
/// where there is one.
QString addressOf(const LinkRow& link) {
  if (&link == &linkRows[0] && *KELMORA_GUIDE) {
    const QFileInfo guide(QDir(QCoreApplication::applicationDirPath()),
                          QStringLiteral(KELMORA_GUIDE));
    if (guide.isFile())
      return QUrl::fromLocalFile(guide.canonicalFilePath()).toString(QUrl::FullyEncoded);
  }
  return QString::fromUtf8(link.address);
}

QTextEdit* licenceBox(QWidget* parent) {
  auto* box = new QTextEdit(parent);
  box->setReadOnly(true);
  box->setTabChangesFocus(true);
  box->setUndoRedoEnabled(false);
  box->setFont(courierNew(8));
  constexpr int fewestLines = 8;  // however large the desktop's font above it is
  box->setMinimumHeight(fewestLines * QFontMetrics(box->font()).lineSpacing());
  box->setPlainText(licenceText());
  box->moveCursor(QTextCursor::Start);
  return box;
}

QLabel* addCentred(QGridLayout& grid, int row, QLabel* label) {
  label->setAlignment(Qt::AlignCenter);
  grid.addWidget(label, row, 0);
  return label;
}

}  // namespace

HelpWidget::HelpWidget(QWidget& parent) : QDialog(&parent) {
  setWindowTitle(tr("Kelmora Help"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/help.png")));
  resize(initialSize);
  auto* grid = new QGridLayout(this);
  addHead(*grid);
  addLicences(*grid);
  auto* close = new QPushButton(tr("Close"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &HelpWidget::closeDialog);
  grid->addWidget(close, 9, 0, Qt::AlignHCenter);
  // The rows 5 and 8 hold no widget: they keep their neighbours apart.
  for (const int row : {5, 8})
    grid->setRowMinimumHeight(row, fontMetrics().height() / 2);
}

void HelpWidget::addHead(QGridLayout& grid) {
  const QString nameAndVersion = tr("Kelmora Client v%1").arg(QStringLiteral(KELMORA_VERSION));
  addCentred(grid, 0, new QLabel(nameAndVersion, this))->setFont(courierNew(16, QFont::Bold));
  addCentred(grid, 1, new QLabel(tr("Made by the Kelmora client authors"), this))
      ->setFont(courierNew(14));
  for (const LinkRow& link : linkRows) {
    const QString target = addressOf(link);
    const QString html = QStringLiteral("<a href=\"%1\">%2</a> - %3")
                             .arg(target.toHtmlEscaped(), tr(link.words), tr(link.description));
    addCentred(grid, link.row, new LinkLabel(html, this))->setToolTip(target);
  }
}

void HelpWidget::addLicences(QGridLayout& grid) {
  QLabel* header = addCentred(
      grid, 6, new QLabel(tr("This client has been released under the following licenses:"), this));
  QTextEdit* licences = licenceBox(this);
  header->setBuddy(licences);
  grid.addWidget(licences, 7, 0);
  grid.setRowStretch(7, 1);
  licences->setFocus();
}

void HelpWidget::closeDialog() {
  hide();
}

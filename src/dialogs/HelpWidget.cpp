#include "dialogs/HelpWidget.h"

#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

namespace {

constexpr QSize initialSize{575, 400};
constexpr char endOfLicences = '\xff';  // a quirk of old: this byte ends the text

QFont courierNew(int points, QFont::Weight weight = QFont::Normal) {
  QFont font(QStringLiteral("Courier New"), points, weight);
  font.setStyleHint(QFont::TypeWriter);  // where the family is missing
  return font;
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
  return QString::fromLatin1(bytes);
}

}  // namespace

HelpWidget::HelpWidget(QWidget& parent) : QDialog(&parent) {
  setWindowTitle(tr("Kelmora Help"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/help.png")));
  resize(initialSize);

  auto* grid = new QGridLayout(this);
  const auto addLabel = [&](int row, const QString& text) {
    auto* label = new QLabel(text, this);
    label->setAlignment(Qt::AlignCenter);
    grid->addWidget(label, row, 0);
    return label;
  };
  const auto addLink = [&](int row, const char* address, const QString& words,
                           const QString& description) {
    const QString target = QString::fromUtf8(address);
    QLabel* label = addLabel(row, QStringLiteral("<a href=\"%1\">%2</a> - %3")
                                      .arg(target.toHtmlEscaped(), words, description));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setOpenExternalLinks(true);
    label->setToolTip(target);
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
  grid->addWidget(close, 9, 0);

  // Rows without a widget keep things apart.
  const int gap = fontMetrics().height() / 2;
  for (const int row : {5, 8})
    grid->setRowMinimumHeight(row, gap);
  licences->setFocus();
}

void HelpWidget::closeDialog() {
  hide();
}

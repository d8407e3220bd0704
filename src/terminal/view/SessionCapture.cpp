#include "terminal/view/SessionCapture.h"

#include <QTextDocument>

#include "files/TextFile.h"

bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName) {
  // A quirk of this client: a <body> tag stands before a complete HTML document.
  const QByteArray page = "<body bgcolor=\"" + background + "\">" + document.toHtml().toLatin1();
  // What is Latin-1 by then is written as the UTF-8 that the page says it is.
  return textfile::replace(fileName, QString::fromLatin1(page).toUtf8());
}

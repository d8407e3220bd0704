#include "terminal/view/SessionCapture.h"

#include "files/Files.h"
#include "terminal/view/DocumentHtml.h"

namespace kelmora::terminal {

bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName) {
  // A quirk of this client: a <body> tag stands before a complete HTML document.
  const QByteArray body = "<body bgcolor=\"" + background + "\">";
  return files::replace(fileName, QString::fromLatin1(body).toUtf8() + documentHtml(document));
}

}  // namespace kelmora::terminal

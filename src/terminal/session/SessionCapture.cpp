#include "terminal/session/SessionCapture.h"

#include <QTextDocument>
#include <algorithm>

#include "files/Files.h"
#include "terminal/core/Log.h"
#include "terminal/session/DocumentHtml.h"

namespace kelmora::terminal {

namespace {

qsizetype outsideLatin1(const QString& text) {
  return std::count_if(text.begin(), text.end(),
                       [](QChar character) { return character.unicode() > 0xFF; });
}

}  // namespace

bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName) {
  // A quirk of this client: a <body> tag stands before a complete HTML document.
  const QByteArray body = "<body bgcolor=\"" + background + "\">";
  if (!files::replace(fileName, QString::fromLatin1(body).toUtf8() + documentHtml(document))) {
    qCWarning(paneLog) << "the session was not saved";
    return false;
  }
  if (paneLog().isInfoEnabled())
    if (const qsizetype lost = outsideLatin1(document.toPlainText()); lost > 0)
      qCInfo(paneLog) << "characters of the session saved as question marks:" << lost;
  return true;
}

}  // namespace kelmora::terminal

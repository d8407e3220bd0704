#include "terminal/view/SessionCapture.h"

#include <QFile>
#include <QTextDocument>
#include <QTextStream>

bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName) {
  QFile file(fileName);
  if (!file.open(QIODevice::WriteOnly))
    return false;
  QTextStream stream(&file);
  stream << "<body bgcolor=\"" << QLatin1String(background) << "\">"
         << QLatin1String(document.toHtml().toLatin1());
  return true;
}

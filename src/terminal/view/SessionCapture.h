#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

namespace kelmora::terminal {

/// Writes a document as a web page with that background ("#rrggbb"). Characters
/// outside Latin-1 become "?"; the file is UTF-8, as its own header says. False
/// when the file cannot be written; an old file stands then.
bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName);

}  // namespace kelmora::terminal

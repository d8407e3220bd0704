#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

namespace kelmora::terminal {

/// Writes a document into a file as a web page with that background ("#rrggbb").
/// Characters outside Latin-1 become "?"; the file is UTF-8, as its header says.
/// Returns false if the file cannot be written; an old file is then unchanged.
bool captureSession(const QTextDocument& document, const QByteArray& background,
                    const QString& fileName);

}  // namespace kelmora::terminal

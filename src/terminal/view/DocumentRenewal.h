#pragma once

#include <QtGlobal>

class QTextDocument;
class QTextEdit;

/// How many of a document's formats the characters in it have.
[[nodiscard]] qsizetype characterFormatsInUse(const QTextDocument& document);

/// Makes an edit's document anew, with none but the formats in use, in the same
/// view and with the same selection. Settings of the document stay.
void renewDocument(QTextEdit& edit);

#pragma once

class QTextEdit;

/// Makes an edit's document anew, with none but the formats in use, in the same
/// view and with the same selection. Settings of the document stay.
void renewDocument(QTextEdit& edit);

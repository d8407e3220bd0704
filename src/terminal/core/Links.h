#pragma once

#include <QString>

/// Wraps web addresses in a read's HTML in links. Blanks are still "&#32;" at
/// this stage, so a link's body runs on until the ";" of one.
void linkify(QString& html);

/// Replaces the placeholders "<space>", "<tab>", "<lt>" and "<gt>" by what they
/// stand for, and makes every second of adjoining blanks a hard one.
void resolvePlaceholders(QString& html);

#pragma once

#include "app/PlayWindow.h"
#include "tools/GuidePage.h"

// What the reader of a page does in the window by keys and clicks. Each fails the test
// where that cannot be done.

/// Types over what is in the input bar, and presses Enter.
void typeLine(const PlayWindow& window, const QString& line);
/// A key, such as "Ctrl+J", wherever the window has the keyboard.
void pressKey(const PlayWindow& window, const QString& name);
/// Adds an alias, a trigger or a macro, as `word` says.
void addEntry(const PlayWindow& window, const QString& word, const kelmora::tools::GuideStep& step);
void editAlias(const PlayWindow& window, const kelmora::tools::GuideStep& step);
/// Presses a key that asks for a file, and names it.
void nameFile(const PlayWindow& window, const kelmora::tools::GuideStep& step);
void turnWheelUp(const PlayWindow& window);
void findWords(const PlayWindow& window, const kelmora::tools::GuideStep& step);
/// Makes a trigger of words that the pane shows, by its menu.
void makeTrigger(const PlayWindow& window, const kelmora::tools::GuideStep& step);
/// Clicks a box of the general settings.
void switchOption(const PlayWindow& window, const QString& label);

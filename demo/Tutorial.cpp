#include "demo/Tutorial.h"

namespace kelmora::demo {

namespace {

// A further chapter is one further row: the list, the numbers and the way
// from chapter to chapter follow from it.
constexpr Chapter kChapters[] = {
    {"Typing",
     "The bar at the bottom of the window is where you speak to the world. Type a "
     "line, press Enter, and it goes on its way; what you sent is shown in yellow, "
     "and the world's answer follows.\n\n"
     "After Enter your line stays in the bar, selected. Press Enter again to send it "
     "once more, or just type: the new words replace it. Escape empties the bar.\n\n"
     "Try it: type `look`, or `look fountain` if you are in the square."},
    {"The lines you typed before",
     "Everything you send is remembered, the latest 256 lines of it. Up brings back "
     "the line before, Up again the one before that; Down goes the other way, and "
     "past the newest line to an empty bar.\n\n"
     "Try it: type `say hello`, then `inventory`, then press Up twice and Enter. You "
     "have said hello twice, and typed it once."},
    {"Several commands at once",
     "One line can hold several commands with a semicolon between them. They are "
     "sent one after another, each as if you had typed it alone.\n\n"
     "Try it: type `look;inventory;score`.\n\n"
     "If you would rather keep your semicolons for winking, change the string that "
     "splits a line, or switch splitting off, in the General settings (Ctrl+G)."},
    {"Links",
     "An address in the text becomes a link: click it, and your web browser opens "
     "it.\n\n"
     "Try it: type `link`.\n\n"
     "Links can be switched off with \"Display clickable URLs\" in the General "
     "settings."},
    {"Reading back, and finding",
     "Turn the mouse wheel up over the text, or drag the bar beside it, to read what "
     "has gone by. When the world speaks again the text divides: above, you go on "
     "reading where you are, and below, the play goes on. Drag the border if you want "
     "more of one or the other. Escape, or going down to the end, closes the upper "
     "part.\n\n"
     "Try it: turn the wheel up until you see where you came in, and type `look`.\n\n"
     "Ctrl+F finds words in all that is kept. Enter goes to the next older place, "
     "Escape brings you back to your line. A click with the right button opens a menu, "
     "with which a line becomes a trigger; the last chapter but one tells what that "
     "is.\n\n"
     "Try it: press Ctrl+F and type `Kelmora`."},
    {"Colours",
     "The world speaks in sixteen colours of its own, eight normal and eight bold, "
     "and now and then in one of 256 others.\n\n"
     "Try it: type `colours`.\n\n"
     "Is the red too red? Every one of the sixteen has a button in the General "
     "settings (Ctrl+G), and the fonts of the window and of the bar are there too."},
    {"The three bars",
     "At the right of the toolbar three bars show how you are: red for hit points, "
     "blue for spell points, green for endurance. They follow the line that the "
     "world sends after each answer, the one that begins with \"hp:\".\n\n"
     "Try it: walk to the North Gate (`map` shows the way), type `kill straw` and "
     "watch the bars. `cast spark` hurts a foe and costs spell points, `flee` ends a "
     "fight the wise way, and `rest` gives everything back."},
    {"The toolbar",
     "Each button of the toolbar has a key:\n\n"
     "  `Ctrl+J`  play, that is, connect       `Ctrl+D`  disconnect\n"
     "  `Ctrl+S`  save this session to a file\n"
     "  `Ctrl+E`  export your settings         `Ctrl+I`  import them\n"
     "  `Ctrl+G`  general settings             `Ctrl+P`  proxy (when not connected)\n"
     "  `Ctrl+M`  macros                       `Ctrl+L`  aliases\n"
     "  `Ctrl+T`  triggers                     `Ctrl+H`  help\n\n"
     "A saved session is a web page: it keeps the colours and can be read in any "
     "browser."},
    {"Let the client play along",
     "The client can do some of the work. Four small things show how.\n\n"
     "A variable keeps a text. Type `/set town,Kelmora`, then "
     "`/echo I live in {town}, FFCC00`: the name in braces is replaced, and the six "
     "digits are the colour.\n\n"
     "An alias is a short word for several lines. Press Ctrl+L, add an alias, edit "
     "it, call it `hi`, and give it the two lines `say Good morning!` and `look`. "
     "Save it, close the window, and type `hi`.\n\n"
     "A trigger answers the world by itself. Press Ctrl+T, add a trigger, and give "
     "it the pattern `{*} tells you: {*}` and the one line "
     "`/echo {_trigOut0} began with {_trigOut1}, 80FF80`. Each star catches one "
     "word. Then type `bob`.\n\n"
     "A timer holds back what follows. Type `say one;/pause later, 3000;say two` "
     "and wait three seconds; `/unpause later` would have called it off."},
    {"Off you go",
     "That is all you need. `help` lists what you can do here, `map` shows where, "
     "and `score` keeps count: there are sixteen places to see, six creatures to "
     "meet, and a key that somebody really ought to find.\n\n"
     "Mind the step, and greet the lighthouse from us."},
};

}  // namespace

std::span<const Chapter> tutorial() {
  return kChapters;
}

}  // namespace kelmora::demo

#pragma once

#include <QStringList>

namespace kelmora::tools {

class Studio;

/// Pictures of the guide, which tell the story of a newcomer's first minutes.
void takeGuidePictures(Studio& studio);
[[nodiscard]] QStringList guidePictures();
/// A picture of each dialog and of the window, each by its own name.
void takeDialogPictures(Studio& studio);
[[nodiscard]] QStringList dialogPictures();
/// The pictures of a short film of play, with the milliseconds of each in its name.
void takeFilm(Studio& studio);

}  // namespace kelmora::tools

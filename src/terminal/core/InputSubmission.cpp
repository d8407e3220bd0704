#include "terminal/core/InputSubmission.h"

namespace kelmora::terminal {

InputSubmission submitInput(const QString& line, const InputOptions& options,
                            InputHistory& history) {
  history.endBrowsing();
  if (options.echoEnabled)
    history.record(line);

  InputSubmission submission;
  if (!options.splitInput) {
    submission.route = InputSubmission::Route::WholeLine;
    submission.actions = {line};
  } else if (options.splitString.isEmpty()) {
    // Splitting at an empty text would cut the line into letters.
    submission.actions = {line};
  } else {
    submission.actions = line.split(options.splitString, Qt::KeepEmptyParts, Qt::CaseSensitive);
  }
  const bool keeps = !options.flushInput && options.echoEnabled && options.displayLocalEcho;
  submission.afterwards =
      keeps ? InputSubmission::Afterwards::SelectAll : InputSubmission::Afterwards::EmptyBar;
  return submission;
}

}  // namespace kelmora::terminal

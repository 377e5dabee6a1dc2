// Progress as a headless host shows it: on standard error, when that is a
// terminal and neither --quiet nor --verbose asked otherwise. The plug-in's
// progress dialog is a bar with its percent; an import, which has no dialog
// of its own, is a running count of the layers and keyframes made so far.
// Each redraw overwrites the line; the line is ended when the work ends.
#pragma once

#include <string>

namespace aehost {

// Whether progress is drawn at all in this run.
bool ProgressVisible();

// "TITLE [#####     ] 50%" over the current line.
void DrawProgressBar(const std::string& title, int percent);
// Ends the line of progress if one is drawn, so that what follows (the end of
// the work, or a message in the middle of it) starts on a line of its own.
void EndProgressLine();

// The count of an import of `file`: started before the flavor runs, bumped by
// the suites that make layers and add keyframes, ended when it returns.
void BeginImportProgress(const std::string& file);
void CountImportedLayer();
void CountImportedKeyframes(long long count);
void EndImportProgress();

}  // namespace aehost

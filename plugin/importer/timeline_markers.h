#pragma once
// The document's timeline markers become markers of the imported composition. A marker's
// name and note share one comment, divided by a line feed; a marker equal in time, length
// and comment to one already there is left out.
#include "plugin/engine/engine_tables.h"
#include "plugin/host/cti.h"

A_Err ExtractORYTimelineMarkers(CTI* cti, BaseDocument* document);

// The comment of a scene marker: its name, and when it has a note, a line feed and the note.
std::u16string MarkerComment(const std::u16string& name, const std::u16string* note);

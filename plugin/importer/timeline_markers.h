#pragma once
// Timeline markers both ways. On import the document's markers go to the marker stream of
// the host's active layer, on the time base of the effect call that the frame came through
// (a hook's frame has none, so there the pass ends without a marker); a marker equal in time,
// length and comment to one already there is left out. On export the markers of the composition and of each layer join the document's
// marker list. A marker's name and note share one comment, divided by a line feed.
#include "plugin/engine/engine_tables.h"
#include "plugin/host/cti.h"

A_Err ExtractORYTimelineMarkers(CTI* cti, BaseDocument* document);

// The composition's (or the layer's) marker stream into the document; null arguments give 0.
A_Err ExportCompMarkers(CTI* cti, BaseDocument* document, AEGP_CompH composition);
A_Err ExportLayerMarkers(CTI* cti, BaseDocument* document, AEGP_LayerH layer);

// A comment split into a marker's name (up to the first line feed) and note (from it on,
// the line feed included); without a line feed the note is empty.
void SplitMarkerComment(const std::u16string& comment, std::u16string* name, std::u16string* note);

// The comment of a scene marker: its name, and when it has a note, a line feed and the note.
std::u16string MarkerComment(const std::u16string& name, const std::u16string* note);

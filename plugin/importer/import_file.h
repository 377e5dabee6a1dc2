#pragma once
// Importing a scene file: the two callbacks of the import flavor, and everything from the
// file's path to the new folder and composition. One import is one undo group.
#include <cstdint>
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/host/cti.h"

// 0 when the file is a scene file, 2 when not.
A_Err VerifyFileCallback(const A_UTF16Char* filePath, AE_FIM_Refcon refcon);
// 0 when the import succeeded, 2 when it did not.
A_Err ImportFileCallback(const A_UTF16Char* filePath, AE_FIM_Refcon refcon);

// Locks and loads the file, builds the composition and converts the scene into it.
bool ImportSceneFile(CTI* cti, const Filename& file);
// The folder and composition of `document` in the project's root folder; opens the undo
// group that ImportSceneFile closes.
bool BuildComposition(CTI* cti, const std::string& fileLeaf, BaseDocument* document);

// The first moment of the document's range (of the preview range when `sequenceMode` is 3).
BaseTime DocumentRangeStart(BaseDocument* document, int32_t sequenceMode);
// The document's range (the preview range when `sequenceMode` is 3) in whole frames of the
// document's own rate.
void GetDocumentFrameRange(BaseDocument* document, int32_t sequenceMode, int32_t* frames, int32_t* startFrame);
// Whether a scene's rate and frame range can be handed to the host without overflowing
// its 32-bit times; a damaged or hostile file may hold anything.
bool CompositionTimingFits(double frameRate, int32_t frames, int32_t startFrame);
// Whether a scene's render size and pixel aspect (in hundredths) can be handed to the host as
// 32-bit numbers.
bool CompositionFrameFits(double width, double height, double pixelAspect);
// The import's time scale: the render rate × 100, so that one frame is 100 units.
uint32_t ImportTimeScale(double frameRate);

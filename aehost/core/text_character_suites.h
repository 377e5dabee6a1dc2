// The characters of a text layer as the text layer suite and the text layer character suite
// hand them out: the count, a character's state and its matrices, and outlines of the whole
// layer or one character (text_characters.h), in outline lists that the text layer suite's
// outline calls count, index and dispose.
#pragma once

#include "sdk/aegp.h"

namespace aehost {

A_Err GetNewTextOutlines(AEGP_LayerH layerH, const A_Time* layer_timeP, AEGP_TextOutlinesH* outlinesPH);
A_Err GetCharacterCount(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long* countPL);
A_Err GetCharacterAt(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL, AEGP_TextCharacterH* characterPH);
A_Err DisposeCharacter(AEGP_TextCharacterH characterH);
A_Err GetCharacterOutlines(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL,
                           AEGP_TextOutlinesH* outlinesPH);

const AEGP_TextLayerCharacterSuite1* TextLayerCharacterSuite();

}  // namespace aehost

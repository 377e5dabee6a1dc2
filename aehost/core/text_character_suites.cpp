#include "aehost/core/text_character_suites.h"

#include "aehost/core/host_time.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/outline_values.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/trace.h"
#include "aehost/model/text_characters.h"

namespace aehost {

namespace {

// The characters of a text layer at a layer time, or the error of a refused call.
A_Err CharactersAt(const char* call, AEGP_LayerH layerH, const A_Time* layer_timeP,
                   std::vector<TextCharacter>* characters) {
    LayerInComp at;
    if (A_Err err = ResolveLayer(call, layerH, &at)) return err;
    const std::string name = ShownLayerName(*g_host.project, *at.layer);
    if (at.layer->objectType != LayerObjectType::Text) return Refuse(call, "layer \"" + name + "\" is no text layer");
    double seconds = 0.0;
    if (!layer_timeP || !ToSeconds(*layer_timeP, &seconds)) return Refuse(call, "no time, or one with scale 0");
    std::string error;
    if (!TextCharactersAt(*g_host.project, *at.comp, *at.layer, seconds, characters, &error))
        return Refuse(call, "the text of layer \"" + name + "\" cannot be laid out: " + error, A_Err_GENERIC);
    return A_Err_NONE;
}

// The character at `index`, or the error of a refused call; an index past the text is refused.
A_Err CharacterAt(const char* call, AEGP_LayerH layerH, const A_Time* layer_timeP, A_long index,
                  TextCharacter* character) {
    std::vector<TextCharacter> characters;
    if (A_Err err = CharactersAt(call, layerH, layer_timeP, &characters)) return err;
    if (index < 0 || static_cast<std::size_t>(index) >= characters.size())
        return Refuse(call, "character " + std::to_string(index) + " out of range (there are " +
                                std::to_string(characters.size()) + ")");
    *character = std::move(characters[static_cast<std::size_t>(index)]);
    return A_Err_NONE;
}

AEGP_TextOutlinesH NewOutlineList(const std::vector<const PathShape*>& contours) {
    ShapeOutlines outlines;
    for (const PathShape* contour : contours) outlines.outlines.push_back(HandleValue(NewOutlineValue(*contour)));
    return MakeHandle<AEGP_TextOutlinesH>(g_host.shapeOutlines.Add(std::move(outlines)));
}

A_Err ResolveCharacter(const char* call, AEGP_TextCharacterH characterH, const TextCharacter** character) {
    *character = g_host.textCharacters.Find(HandleValue(characterH));
    if (!*character) return Refuse(call, "not a text character, or one already disposed");
    return A_Err_NONE;
}

A_Err GetCharacterMatrix3(AEGP_TextCharacterH characterH, A_Matrix3* matrixP) {
    return GuardCall("GetCharacterMatrix3", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetCharacterMatrix3", matrixP);
        const TextCharacter* character = nullptr;
        if (A_Err err = ResolveCharacter("GetCharacterMatrix3", characterH, &character)) return err;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c) matrixP->mat[r][c] = character->plane[r][c];
        return A_Err_NONE;
    });
}

A_Err GetCharacterMatrix4(AEGP_TextCharacterH characterH, A_Matrix4* matrixP) {
    return GuardCall("GetCharacterMatrix4", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetCharacterMatrix4", matrixP);
        const TextCharacter* character = nullptr;
        if (A_Err err = ResolveCharacter("GetCharacterMatrix4", characterH, &character)) return err;
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c) matrixP->mat[r][c] = character->transform.m[r][c];
        return A_Err_NONE;
    });
}

const AEGP_TextLayerCharacterSuite1 g_textLayerCharacterSuite = {GetCharacterMatrix3, GetCharacterMatrix4};

}  // namespace

// The contours of every character, in the order of the text.
A_Err GetNewTextOutlines(AEGP_LayerH layerH, const A_Time* layer_timeP, AEGP_TextOutlinesH* outlinesPH) {
    return GuardCall("AEGP_GetNewTextOutlines", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNewTextOutlines", outlinesPH);
        *outlinesPH = nullptr;
        std::vector<TextCharacter> characters;
        if (A_Err err = CharactersAt("AEGP_GetNewTextOutlines", layerH, layer_timeP, &characters)) return err;
        std::vector<const PathShape*> contours;
        for (const TextCharacter& character : characters)
            for (const PathShape& contour : character.outline) contours.push_back(&contour);
        *outlinesPH = NewOutlineList(contours);
        return A_Err_NONE;
    });
}

A_Err GetCharacterCount(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long* countPL) {
    return GuardCall("GetCharacterCount", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetCharacterCount", countPL);
        *countPL = 0;
        std::vector<TextCharacter> characters;
        if (A_Err err = CharactersAt("GetCharacterCount", layerH, layer_timeP, &characters)) return err;
        *countPL = static_cast<A_long>(characters.size());
        return A_Err_NONE;
    });
}

A_Err GetCharacterAt(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL, AEGP_TextCharacterH* characterPH) {
    return GuardCall("GetCharacterAt", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetCharacterAt", characterPH);
        *characterPH = nullptr;
        TextCharacter character;
        if (A_Err err = CharacterAt("GetCharacterAt", layerH, layer_timeP, indexL, &character)) return err;
        character.outline.clear();  // the state alone: the outlines come through their own call
        *characterPH = MakeHandle<AEGP_TextCharacterH>(g_host.textCharacters.Add(std::move(character)));
        return A_Err_NONE;
    });
}

A_Err DisposeCharacter(AEGP_TextCharacterH characterH) {
    return GuardCall("DisposeCharacter", [&]() -> A_Err {
        if (!g_host.textCharacters.Remove(HandleValue(characterH)))
            return Refuse("DisposeCharacter", "not a text character, or one already disposed");
        return A_Err_NONE;
    });
}

A_Err GetCharacterOutlines(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long indexL,
                           AEGP_TextOutlinesH* outlinesPH) {
    return GuardCall("GetCharacterOutlines", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetCharacterOutlines", outlinesPH);
        *outlinesPH = nullptr;
        TextCharacter character;
        if (A_Err err = CharacterAt("GetCharacterOutlines", layerH, layer_timeP, indexL, &character)) return err;
        std::vector<const PathShape*> contours;
        for (const PathShape& contour : character.outline) contours.push_back(&contour);
        *outlinesPH = NewOutlineList(contours);
        return A_Err_NONE;
    });
}

const AEGP_TextLayerCharacterSuite1* TextLayerCharacterSuite() { return &g_textLayerCharacterSuite; }

}  // namespace aehost

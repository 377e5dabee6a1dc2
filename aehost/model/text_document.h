// The source text of a text layer: the text document the host keeps for it,
// with the character and paragraph settings the plug-in reads, and the keys of
// its Source Text property.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "aehost/model/text_animators.h"

namespace aehost {

// Paragraph alignment, numbered like the host's ParagraphJustification so that
// scripts see the host's numbers.
enum class Justification : int {
    Left = 7213,
    Right = 7214,
    Center = 7215,
    FullLastLineLeft = 7216,
    FullLastLineRight = 7217,
    FullLastLineCenter = 7218,
    FullLastLineFull = 7219,
};

// Red, green and blue as fractions, 1 being full.
using TextColor = std::array<double, 3>;

struct TextDocument {
    std::string text;                   // UTF-8; a line break is "\r", as in the host
    std::string font = "DejaVuSans";    // PostScript name
    double fontSize = 36.0;             // pixels
    int tracking = 0;                   // thousandths of an em
    Justification justification = Justification::Left;
    bool applyFill = true;
    TextColor fillColor{1.0, 1.0, 1.0};
    bool applyStroke = false;
    TextColor strokeColor{0.0, 0.0, 0.0};
    double strokeWidth = 1.0;           // pixels
    bool strokeOverFill = false;
    double horizontalScale = 1.0;       // factor, 1 is 100 %
    double verticalScale = 1.0;
    bool operator==(const TextDocument&) const = default;
};

// A key of Source Text. Source text does not interpolate: a key holds until the next.
struct TextKey {
    double time = 0.0;  // layer seconds
    TextDocument document;
    bool operator==(const TextKey&) const = default;
};

struct SourceText {
    TextDocument document;      // the value when there are no keys
    std::vector<TextKey> keys;  // ordered by time, no two at one time
  std::vector<TextAnimator> animators;  // applied in order
    bool operator==(const SourceText&) const = default;
};

// The document shown at a layer time: the last key at or before it, the first
// key before all keys, the plain document without keys.
const TextDocument& TextDocumentAt(const SourceText& source, double layerTime);

}  // namespace aehost

#include "aehost/model/text_document.h"

namespace aehost {

const TextDocument& TextDocumentAt(const SourceText& source, double layerTime) {
    if (source.keys.empty()) return source.document;
    const TextKey* shown = &source.keys.front();
    for (const TextKey& key : source.keys) {
        if (key.time <= layerTime) shown = &key;
    }
    return shown->document;
}

}  // namespace aehost

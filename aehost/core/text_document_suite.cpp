// The text document suite: the text of a source text value that the stream
// suite handed out. A document handle lives until its stream value is disposed.
#include "aehost/core/memory_suite.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

A_Err ResolveTextDocument(const char* call, AEGP_TextDocumentH documentH, TextDocument** document) {
    *document = g_host.textDocuments.Find(HandleValue(documentH));
    if (!*document) return Refuse(call, "not a text document, or one whose value was already disposed");
    return A_Err_NONE;
}

A_Err GetNewText(AEGP_PluginID plugin_id, AEGP_TextDocumentH text_documentH, AEGP_MemHandle* unicodePH) {
    return GuardCall("AEGP_GetNewText", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNewText", unicodePH);
        *unicodePH = nullptr;
        TextDocument* document = nullptr;
        if (A_Err err = ResolveTextDocument("AEGP_GetNewText", text_documentH, &document)) return err;
        *unicodePH = NewTextHandle(plugin_id, Utf8ToUtf16(document->text));
        return A_Err_NONE;
    });
}

// Changes the document of the value only; the layer changes when the value is set on its stream.
A_Err SetText(AEGP_TextDocumentH text_documentH, const A_UTF16Char* unicodePS, A_long lengthL) {
    return GuardCall("AEGP_SetText", [&]() -> A_Err {
        TextDocument* document = nullptr;
        if (A_Err err = ResolveTextDocument("AEGP_SetText", text_documentH, &document)) return err;
        if (lengthL < 0) return Refuse("AEGP_SetText", "negative length " + std::to_string(lengthL));
        if (!unicodePS && lengthL > 0) return Refuse("AEGP_SetText", "null text");
        std::u16string text;
        for (A_long i = 0; i < lengthL; ++i) text.push_back(static_cast<char16_t>(unicodePS[i]));
        document->text = Utf16ToUtf8(text);
        return A_Err_NONE;
    });
}

const AEGP_TextDocumentSuite1 g_textDocumentSuite = {GetNewText, SetText};

}  // namespace

const AEGP_TextDocumentSuite1* TextDocumentSuite() { return &g_textDocumentSuite; }

}  // namespace aehost

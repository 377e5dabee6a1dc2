// Texts of the text-export dialog (dlg_textexport.jsx).
var dlgTextExportStrings = {
    title: "Orrery Studio Exporter",
    question: "The composition holds text layers. How should they be exported?",
    modes: "Text layers",
    live: "Live text objects that stay editable in Orrery Studio",
    planes: "Character outlines as planes",
    ok: "OK",
    cancel: "Cancel"
};

// The question how text layers are exported. The plug-in puts its settings in front of
// this file as the text `jsonBlob`: {"settings": {"selectedTextExport": 0}}. The value of
// the script is "cancel" when the user closes the dialog without OK, and otherwise the
// settings as JSON text, with selectedTextExport 1 for live text and 0 for outlines.
(function (blob, strings) {
    var parsed = null;
    try {
        parsed = QuillonJSON.parse(blob);
    } catch (e) {
        parsed = null;
    }
    var settings = (parsed && parsed.settings) ? parsed.settings : { selectedTextExport: 0 };

    var dlg = new Window("dialog", strings.title);
    dlg.orientation = "column";
    dlg.alignChildren = ["fill", "top"];
    dlg.add("statictext", undefined, strings.question);

    var modes = dlg.add("panel", undefined, strings.modes);
    modes.orientation = "column";
    modes.alignChildren = ["left", "top"];
    var live = modes.add("radiobutton", undefined, strings.live);
    var planes = modes.add("radiobutton", undefined, strings.planes);
    live.value = settings.selectedTextExport === 1;
    planes.value = !live.value;

    var buttons = dlg.add("group");
    buttons.alignment = ["right", "top"];
    buttons.add("button", undefined, strings.ok, { name: "ok" });
    buttons.add("button", undefined, strings.cancel, { name: "cancel" });

    if (dlg.show() !== 1) {
        return "cancel";
    }
    settings.selectedTextExport = live.value ? 1 : 0;
    return QuillonJSON.stringify({ settings: settings });
})(jsonBlob, dlgTextExportStrings);

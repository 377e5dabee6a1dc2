// A headless ScriptUI: windows and their controls are plain objects with the
// members scripts set and read, and a modal window's show() is answered by the
// scripted user (see script_user.h) instead of waiting for a click: the radio
// buttons and checkboxes of the answer are switched on with their onClick run,
// then the button is pressed. show() returns what the window was closed with, as
// in ScriptUI: the argument of close(), 1 for the default button, 2 for cancel.
#include "aehost/script/script_heap.h"

namespace aehost {
namespace {

// nextAnswer() -> {choose: [...], press: "...", cancel: bool} for the next window.
duk_ret_t NextAnswer(duk_context* ctx) {
    ScriptContext& context = ContextOf(ctx);
    DialogAnswer answer;
    if (!context.user) {
        answer.cancel = true;
    } else if (!context.user->dialogs.empty()) {
        answer = context.user->dialogs.front();
        context.user->dialogs.pop_front();
    }
    duk_push_object(ctx);
    duk_push_array(ctx);
    for (std::size_t i = 0; i < answer.choose.size(); ++i) {
        PushText(ctx, answer.choose[i]);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, "choose");
    PushText(ctx, answer.press);
    duk_put_prop_string(ctx, -2, "press");
    duk_push_boolean(ctx, answer.cancel);
    duk_put_prop_string(ctx, -2, "cancel");
    return 1;
}

constexpr const char* kWindow = R"JS(function (host, global) {
    function lower(s) { return String(s === undefined || s === null ? "" : s).toLowerCase(); }
    function noop() {}

    function Control(type, parent, text, properties) {
        this.type = type;
        this.parent = parent;
        this.window = parent ? parent.window : this;
        this.children = [];
        this.text = text === undefined || text === null ? "" : String(text);
        this.properties = properties || {};
        if (this.properties.name !== undefined) this.name = this.properties.name;
        this.enabled = true;
        this.visible = true;
        this.value = false;
        this.graphics = { newPen: noop, newBrush: noop, font: null };
    }
    Control.prototype.add = function (type, bounds, text, properties) {
        type = lower(type);
        var child;
        if (type === "item" && this.items) {
            child = new Control("item", this, text, properties);
            child.index = this.items.length;
            this.items.push(child);
            return child;
        }
        child = new Control(type, this, text instanceof Array ? "" : text, properties);
        if (type === "dropdownlist" || type === "listbox") {
            child.items = [];
            child.selection = null;
            if (text instanceof Array) for (var i = 0; i < text.length; i++) child.add("item", undefined, text[i]);
        }
        this.children.push(child);
        return child;
    };
    Control.prototype.remove = function (child) {
        var i = this.children.indexOf(child);
        if (i >= 0) this.children.splice(i, 1);
    };
    Control.prototype.addEventListener = function (event, handler) {
        this["on" + event.charAt(0).toUpperCase() + event.substring(1)] = handler;
    };
    Control.prototype.notify = function (event) {
        var handler = this[event || "onClick"];
        if (typeof handler === "function") handler.call(this);
    };
    Control.prototype.show = function () { this.visible = true; };
    Control.prototype.hide = function () { this.visible = false; };
    Control.prototype.each = function (visit) {
        for (var i = 0; i < this.children.length; i++) {
            visit(this.children[i]);
            this.children[i].each(visit);
        }
    };

    function Window(type, title, bounds, properties) {
        if (!(this instanceof Window)) return new Window(type, title, bounds, properties);
        Control.call(this, "window", null, title, properties);
        this.windowType = lower(type);
        this.title = this.text;
        this.defaultElement = null;
        this.cancelElement = null;
        this.layout = { layout: noop, resize: noop };
        this._open = false;
    }
    Window.prototype = Object.create(Control.prototype);
    Window.prototype.constructor = Window;
    Window.prototype.center = noop;

    Window.prototype._find = function (wanted, types) {
        var key = lower(wanted), exact = null, partial = null;
        this.each(function (c) {
            if (types.indexOf(c.type) < 0) return;
            if (lower(c.name) === key || lower(c.text) === key) exact = exact || c;
            else if (key !== "" && lower(c.text).indexOf(key) >= 0) partial = partial || c;
        });
        return exact || partial;
    };
    Window.prototype._defaultButton = function () {
        if (this.defaultElement) return this.defaultElement;
        var buttons = [];
        this.each(function (c) { if (c.type === "button") buttons.push(c); });
        return this._find("ok", ["button"]) || (buttons.length === 1 ? buttons[0] : null);
    };
    Window.prototype._cancelButton = function () {
        return this.cancelElement || this._find("cancel", ["button"]);
    };
    Window.prototype._choose = function (wanted) {
        var control = this._find(wanted, ["radiobutton", "checkbox"]);
        if (!control) throw new Error("dialog \"" + this.title + "\" has no choice \"" + wanted + "\"");
        if (control.type === "radiobutton") {
            var siblings = control.parent.children;
            for (var i = 0; i < siblings.length; i++) {
                if (siblings[i].type === "radiobutton") siblings[i].value = false;
            }
        }
        control.value = true;
        control.notify("onClick");
        host.report("  chose \"" + control.text + "\"");
    };
    Window.prototype._press = function (button, closing) {
        host.report("  pressed \"" + (button ? button.text : "Escape") + "\"");
        if (button) button.notify("onClick");
        if (this._open && closing !== undefined) this.close(closing);
    };
    Window.prototype.show = function () {
        if (this.windowType !== "dialog") { this.visible = true; return undefined; }
        var texts = [];
        this.each(function (c) { if (c.type === "statictext" && c.text !== "") texts.push(c.text); });
        host.report("dialog \"" + this.title + "\"" + (texts.length ? ": " + texts.join(" / ") : ""));
        var answer = host.nextAnswer();
        this._open = true;
        this._result = undefined;
        if (answer.cancel) {
            this._press(this._cancelButton(), 2);
            return this._result;
        }
        for (var i = 0; i < answer.choose.length; i++) this._choose(answer.choose[i]);
        var button = answer.press !== "" ? this._find(answer.press, ["button"]) : this._defaultButton();
        if (!button) throw new Error("dialog \"" + this.title + "\" has no button \"" + (answer.press || "OK") + "\"");
        var closing = button === this._defaultButton() ? 1 : button === this._cancelButton() ? 2 : undefined;
        this._press(button, closing);
        if (this._open) throw new Error("dialog \"" + this.title + "\" stayed open after \"" + button.text + "\"");
        return this._result;
    };
    Window.prototype.close = function (result) {
        this._open = false;
        this.visible = false;
        this._result = result === undefined ? 1 : result;
    };

    global.Window = Window;
    global.ScriptUI = {
        environment: { keyboardState: {} },
        FontStyle: { REGULAR: 0, BOLD: 1, ITALIC: 2, BOLDITALIC: 3 },
        newFont: function () { return {}; },
        newImage: function () { return {}; }
    };
})JS";

}  // namespace

void InstallWindow(duk_context* ctx) {
    RunPrelude(ctx, "Window", kWindow,
               {{"nextAnswer", Native<NextAnswer>, 0}, {"report", Native<ReportLine>, 1}});
}

}  // namespace aehost

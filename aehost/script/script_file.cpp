// ExtendScript's File and Folder over the host's file system. Paths are held as
// absolute POSIX paths; the URI forms (`name`, `path`, `fullName`) are encoded as
// ExtendScript encodes them, and a path given to the constructor may be
// URI-encoded. A file's text is UTF-8 unless its `encoding` says otherwise, in
// which case each byte is one character (BINARY and the 8-bit code pages).
// The save dialog is answered by the scripted user.
#include "aehost/script/script_heap.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace aehost {
namespace {

namespace fs = std::filesystem;

std::string Latin1ToUtf8(const std::string& bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x80) {
            out.push_back(c);
        } else {
            out.push_back(static_cast<char>(0xC0 | (b >> 6)));
            out.push_back(static_cast<char>(0x80 | (b & 0x3F)));
        }
    }
    return out;
}

// Characters above 255 cannot be written as one byte; they become "?".
std::string Utf8ToLatin1(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto b = static_cast<unsigned char>(text[i]);
        if (b < 0x80) {
            out.push_back(text[i]);
            continue;
        }
        std::size_t extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : 1;
        const bool twoByteLatin = extra == 1 && (b == 0xC2 || b == 0xC3) && i + 1 < text.size();
        out.push_back(twoByteLatin ? static_cast<char>(((b & 0x03) << 6) | (text[i + 1] & 0x3F))
                                   : '?');
        i += std::min(extra, text.size() - 1 - i);
    }
    return out;
}

duk_ret_t Exists(duk_context* ctx) {
    std::error_code ec;
    duk_push_boolean(ctx, fs::exists(ArgText(ctx, 0), ec));
    return 1;
}

duk_ret_t IsFolder(duk_context* ctx) {
    std::error_code ec;
    duk_push_boolean(ctx, fs::is_directory(ArgText(ctx, 0), ec));
    return 1;
}

// read(path, binary) -> the whole text, or null when the file cannot be read.
duk_ret_t Read(duk_context* ctx) {
    std::string bytes;
    if (!ReadFileBytes(ArgText(ctx, 0), &bytes)) {
        duk_push_null(ctx);
        return 1;
    }
    PushText(ctx, duk_to_boolean(ctx, 1) ? Latin1ToUtf8(bytes) : bytes);
    return 1;
}

// write(path, text, binary) -> whether the whole text was written.
duk_ret_t Write(duk_context* ctx) {
    const std::string text = ArgText(ctx, 1);
    std::ofstream out(ArgText(ctx, 0), std::ios::binary | std::ios::trunc);
    if (out) out << (duk_to_boolean(ctx, 2) ? Utf8ToLatin1(text) : text);
    duk_push_boolean(ctx, static_cast<bool>(out));
    return 1;
}

duk_ret_t Remove(duk_context* ctx) {
    std::error_code ec;
    duk_push_boolean(ctx, fs::remove(ArgText(ctx, 0), ec));
    return 1;
}

duk_ret_t CreateFolder(duk_context* ctx) {
    std::error_code ec;
    fs::create_directories(ArgText(ctx, 0), ec);
    duk_push_boolean(ctx, !ec && fs::is_directory(ArgText(ctx, 0), ec));
    return 1;
}

// list(path) -> the names in a folder, each followed by "/" when it is a folder.
duk_ret_t List(duk_context* ctx) {
    std::error_code ec;
    duk_push_array(ctx);
    duk_uarridx_t n = 0;
    for (const auto& entry : fs::directory_iterator(ArgText(ctx, 0), ec)) {
        PushText(ctx, entry.path().filename().string() + (entry.is_directory(ec) ? "/" : ""));
        duk_put_prop_index(ctx, -2, n++);
    }
    return 1;
}

duk_ret_t Places(duk_context* ctx) {
    std::error_code ec;
    const char* home = std::getenv("HOME");
    duk_push_object(ctx);
    PushText(ctx, fs::current_path(ec).string());
    duk_put_prop_string(ctx, -2, "current");
    PushText(ctx, home ? home : "/");
    duk_put_prop_string(ctx, -2, "home");
    PushText(ctx, fs::temp_directory_path(ec).string());
    duk_put_prop_string(ctx, -2, "temp");
    return 1;
}

// saveDialog(prompt, filter, proposed path) -> the path the user chose, or null.
duk_ret_t SaveDialog(duk_context* ctx) {
    ScriptContext& context = ContextOf(ctx);
    const std::string shown = "save dialog \"" + ArgText(ctx, 0) + "\" (" + ArgText(ctx, 1) + ")";
    const std::string proposed = ArgText(ctx, 2);
    std::string chosen;
    if (context.user && !context.user->save.cancel) {
        chosen = context.user->save.path.empty() ? proposed : context.user->save.path;
    }
    if (context.report) context.report(shown + ": " + (chosen.empty() ? "cancelled" : chosen));
    if (chosen.empty()) duk_push_null(ctx);
    else PushText(ctx, chosen);
    return 1;
}

constexpr const char* kFileObjects = R"JS(function (host, global) {
    var places = host.places();

    function decodePath(p) {
        return p.replace(/(%[0-9A-Fa-f]{2})+/g, function (run) {
            try { return decodeURIComponent(run); } catch (e) { return run; }
        });
    }
    function absolute(p) {
        p = decodePath(p === undefined || p === null ? "" : String(p));
        if (p === "") p = places.current;
        if (p === "~" || p.indexOf("~/") === 0) p = places.home + p.substring(1);
        if (p.charAt(0) !== "/") p = places.current + "/" + p;
        var parts = [], pieces = p.split("/");
        for (var i = 0; i < pieces.length; i++) {
            var piece = pieces[i];
            if (piece === "" || piece === ".") continue;
            if (piece === "..") parts.pop(); else parts.push(piece);
        }
        return "/" + parts.join("/");
    }
    function leaf(p) { return p.substring(p.lastIndexOf("/") + 1); }
    function parentOf(p) { var i = p.lastIndexOf("/"); return i <= 0 ? "/" : p.substring(0, i); }
    function encode(s) { return encodeURI(s).replace(/#/g, "%23"); }

    function defineCommon(proto) {
        var getters = {
            fsName: function () { return this._path; },
            fullName: function () { return encode(this._path); },
            absoluteURI: function () { return encode(this._path); },
            name: function () { return encode(leaf(this._path)); },
            displayName: function () { return leaf(this._path); },
            path: function () { return encode(parentOf(this._path)); },
            parent: function () { return this._path === "/" ? null : new Folder(parentOf(this._path)); }
        };
        for (var key in getters) Object.defineProperty(proto, key, { get: getters[key] });
        proto.toString = function () { return encode(this._path); };
        proto.remove = function () { return host.remove(this._path); };
        proto.error = "";
    }

    function File(path) {
        if (!(this instanceof File)) return new File(path);
        this._path = absolute(path);
        this.encoding = "UTF-8";
        this.lineFeed = "Unix";
        this._mode = null;
        this._data = "";
        this._pos = 0;
    }
    defineCommon(File.prototype);
    Object.defineProperty(File.prototype, "exists", { get: function () {
        return host.exists(this._path) && !host.isFolder(this._path); } });
    Object.defineProperty(File.prototype, "length", { get: function () {
        var data = host.read(this._path, true); return data === null ? -1 : data.length; } });
    Object.defineProperty(File.prototype, "eof", { get: function () {
        return this._mode === null || this._pos >= this._data.length; } });
    File.prototype._binary = function () { return !/^utf-?8$/i.test(this.encoding); };
    File.prototype.open = function (mode) {
        mode = String(mode || "r").charAt(0).toLowerCase();
        var data = host.read(this._path, this._binary());
        if (mode === "r" && data === null) { this.error = "File not found"; return false; }
        this._data = mode === "w" || data === null ? "" : data;
        this._pos = mode === "a" ? this._data.length : 0;
        this._mode = mode;
        if (mode !== "r" && !this._flush()) { this._mode = null; return false; }
        return true;
    };
    File.prototype._flush = function () {
        if (host.write(this._path, this._data, this._binary())) return true;
        this.error = "cannot write " + this._path;
        return false;
    };
    File.prototype.close = function () { var open = this._mode !== null; this._mode = null; return open; };
    File.prototype.read = function (count) {
        if (this._mode === null) return "";
        var end = count === undefined ? this._data.length : Math.min(this._data.length, this._pos + count);
        var s = this._data.substring(this._pos, end);
        this._pos = end;
        return s;
    };
    File.prototype.readln = function () {
        if (this._mode === null) return "";
        var end = this._data.indexOf("\n", this._pos);
        if (end < 0) end = this._data.length;
        var s = this._data.substring(this._pos, end).replace(/\r$/, "");
        this._pos = end + 1;
        return s;
    };
    File.prototype.write = function () {
        if (this._mode === null || this._mode === "r") return false;
        var s = Array.prototype.join.call(arguments, "");
        this._data = this._data.substring(0, this._pos) + s + this._data.substring(this._pos + s.length);
        this._pos += s.length;
        return this._flush();
    };
    File.prototype.writeln = function () {
        var lf = /^w/i.test(this.lineFeed) ? "\r\n" : /^m/i.test(this.lineFeed) ? "\r" : "\n";
        return this.write(Array.prototype.join.call(arguments, "") + lf);
    };
    File.prototype.saveDlg = function (prompt, filter) {
        var chosen = host.saveDialog(String(prompt || ""), String(filter || ""), this._path);
        return chosen === null ? null : new File(chosen);
    };
    File.saveDialog = function (prompt, filter) {
        var chosen = host.saveDialog(String(prompt || ""), String(filter || ""), "");
        return chosen === null ? null : new File(chosen);
    };
    File.encode = encode;
    File.decode = decodePath;
    File.fs = "Unix";

    function Folder(path) {
        if (!(this instanceof Folder)) return new Folder(path);
        this._path = absolute(path);
    }
    defineCommon(Folder.prototype);
    Object.defineProperty(Folder.prototype, "exists", { get: function () { return host.isFolder(this._path); } });
    Folder.prototype.create = function () { return host.createFolder(this._path); };
    Folder.prototype.getFiles = function (mask) {
        var pattern = null;
        if (typeof mask === "string" && mask !== "" && mask !== "*") {
            pattern = new RegExp("^" + mask.replace(/[.+^${}()|[\]\\]/g, "\\$&")
                .replace(/\*/g, ".*").replace(/\?/g, ".") + "$", "i");
        }
        var names = host.list(this._path), result = [];
        for (var i = 0; i < names.length; i++) {
            var isFolder = names[i].charAt(names[i].length - 1) === "/";
            var name = isFolder ? names[i].substring(0, names[i].length - 1) : names[i];
            if (pattern && !pattern.test(name)) continue;
            var full = this._path + "/" + name;
            result.push(isFolder ? new Folder(full) : new File(full));
        }
        return result;
    };
    Folder.encode = encode;
    Folder.decode = decodePath;
    Folder.fs = "Unix";
    Object.defineProperty(Folder, "current", { get: function () { return new Folder(places.current); } });
    Folder.temp = new Folder(places.temp);
    Folder.desktop = new Folder(places.home + "/Desktop");
    Folder.myDocuments = new Folder(places.home);

    global.File = File;
    global.Folder = Folder;
})JS";

}  // namespace

void InstallFileObjects(duk_context* ctx) {
    RunPrelude(ctx, "File", kFileObjects,
               {{"exists", Native<Exists>, 1},
                {"isFolder", Native<IsFolder>, 1},
                {"read", Native<Read>, 2},
                {"write", Native<Write>, 3},
                {"remove", Native<Remove>, 1},
                {"createFolder", Native<CreateFolder>, 1},
                {"list", Native<List>, 1},
                {"places", Native<Places>, 0},
                {"saveDialog", Native<SaveDialog>, 3}});
}

}  // namespace aehost

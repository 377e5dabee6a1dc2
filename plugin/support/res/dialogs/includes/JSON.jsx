// JSON for ExtendScript, whose engine predates the JSON object: QuillonJSON.parse and
// QuillonJSON.stringify in the third edition of the language (no trim, no forEach, no
// Object.keys). Where the engine has no JSON object, this one takes its place.
var QuillonJSON = (function () {
    var ESCAPES = { '"': '"', "\\": "\\", "/": "/", b: "\b", f: "\f", n: "\n", r: "\r", t: "\t" };

    function hex4(code) {
        var s = code.toString(16);
        while (s.length < 4) {
            s = "0" + s;
        }
        return s;
    }

    function quote(text) {
        var out = '"';
        for (var i = 0; i < text.length; i++) {
            var c = text.charAt(i);
            var code = text.charCodeAt(i);
            if (c === '"' || c === "\\") {
                out += "\\" + c;
            } else if (c === "\n") {
                out += "\\n";
            } else if (c === "\r") {
                out += "\\r";
            } else if (c === "\t") {
                out += "\\t";
            } else if (code < 32) {
                out += "\\u" + hex4(code);
            } else {
                out += c;
            }
        }
        return out + '"';
    }

    function isArray(value) {
        return Object.prototype.toString.call(value) === "[object Array]";
    }

    function stringify(value) {
        if (value === null) {
            return "null";
        }
        switch (typeof value) {
            case "string":
                return quote(value);
            case "number":
                return isFinite(value) ? String(value) : "null";
            case "boolean":
                return value ? "true" : "false";
            case "object":
                var parts = [];
                if (isArray(value)) {
                    for (var i = 0; i < value.length; i++) {
                        var item = stringify(value[i]);
                        parts.push(item === undefined ? "null" : item);
                    }
                    return "[" + parts.join(",") + "]";
                }
                for (var key in value) {
                    if (Object.prototype.hasOwnProperty.call(value, key)) {
                        var member = stringify(value[key]);
                        if (member !== undefined) {
                            parts.push(quote(key) + ":" + member);
                        }
                    }
                }
                return "{" + parts.join(",") + "}";
            default:
                return undefined;  // functions and undefined have no JSON form
        }
    }

    function parse(text) {
        var at = 0;

        function fail(what) {
            throw new SyntaxError("JSON: " + what + " at offset " + at);
        }

        function white() {
            while (at < text.length && " \t\r\n".indexOf(text.charAt(at)) >= 0) {
                at++;
            }
        }

        function expect(word, value) {
            if (text.substr(at, word.length) !== word) {
                fail("unexpected character");
            }
            at += word.length;
            return value;
        }

        function string() {
            var out = "";
            at++;  // the opening quote
            while (at < text.length) {
                var c = text.charAt(at++);
                if (c === '"') {
                    return out;
                }
                if (c !== "\\") {
                    out += c;
                    continue;
                }
                var e = text.charAt(at++);
                if (e === "u") {
                    var digits = text.substr(at, 4);
                    if (!/^[0-9a-fA-F]{4}$/.test(digits)) {
                        fail("bad unicode escape");
                    }
                    out += String.fromCharCode(parseInt(digits, 16));
                    at += 4;
                } else if (ESCAPES.hasOwnProperty(e)) {
                    out += ESCAPES[e];
                } else {
                    fail("bad escape");
                }
            }
            fail("unterminated string");
        }

        function number() {
            var match = /^-?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?/.exec(text.substr(at));
            if (!match) {
                fail("bad number");
            }
            at += match[0].length;
            return Number(match[0]);
        }

        function array() {
            var out = [];
            at++;
            white();
            if (text.charAt(at) === "]") {
                at++;
                return out;
            }
            for (;;) {
                out.push(value());
                white();
                var c = text.charAt(at++);
                if (c === "]") {
                    return out;
                }
                if (c !== ",") {
                    fail("expected , or ]");
                }
            }
        }

        function object() {
            var out = {};
            at++;
            white();
            if (text.charAt(at) === "}") {
                at++;
                return out;
            }
            for (;;) {
                white();
                if (text.charAt(at) !== '"') {
                    fail("expected a member name");
                }
                var key = string();
                white();
                if (text.charAt(at++) !== ":") {
                    fail("expected :");
                }
                out[key] = value();
                white();
                var c = text.charAt(at++);
                if (c === "}") {
                    return out;
                }
                if (c !== ",") {
                    fail("expected , or }");
                }
            }
        }

        function value() {
            white();
            var c = text.charAt(at);
            if (c === "{") return object();
            if (c === "[") return array();
            if (c === '"') return string();
            if (c === "t") return expect("true", true);
            if (c === "f") return expect("false", false);
            if (c === "n") return expect("null", null);
            if (c === "-" || (c >= "0" && c <= "9")) return number();
            fail(at < text.length ? "unexpected character" : "unexpected end");
        }

        text = String(text);
        var result = value();
        white();
        if (at < text.length) {
            fail("text after the value");
        }
        return result;
    }

    return { parse: parse, stringify: stringify };
})();

if (typeof JSON !== "object" || JSON === null) {
    JSON = QuillonJSON;
}

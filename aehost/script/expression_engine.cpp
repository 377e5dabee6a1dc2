#include "aehost/script/expression_engine.h"

#include "aehost/model/stream.h"
#include "aehost/script/project_natives.h"
#include "aehost/script/script_engine.h"

#include <json/json.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace aehost {
namespace {

constexpr int kMaxDepth = 8;
constexpr unsigned kTimeLimitMs = 2000;

// Defined once in each environment: runs an expression's text inside a scope
// that holds the names an expression may use.
constexpr const char* kExpressionPrelude = R"JS(
var __expression = (function () {
    function map(a, f) { var r = []; for (var i = 0; i < a.length; i++) r.push(f(a[i], i)); return r; }
    // A property stands for its value, as in the host's expressions.
    function plain(v) { return v instanceof Property ? v.value : v; }
    function both(a, b, f) {
        a = plain(a);
        b = plain(b);
        if (!(a instanceof Array)) return b instanceof Array ? map(b, function (y) { return f(a, y); }) : f(a, b);
        if (!(b instanceof Array)) return map(a, function (x) { return f(x, b); });
        var n = Math.max(a.length, b.length), r = [];
        for (var i = 0; i < n; i++) r.push(f(a[i] || 0, b[i] || 0));
        return r;
    }
    function mix(t, tMin, tMax, v1, v2, shape) {
        if (arguments.length === 4) { v2 = v1; v1 = tMax; tMax = 1; }
        var u = tMax === tMin ? (t >= tMax ? 1 : 0) : (t - tMin) / (tMax - tMin);
        u = shape(Math.min(1, Math.max(0, u)));
        return both(v1, v2, function (a, b) { return a + (b - a) * u; });
    }
    function shaped(shape) {
        return function (t, tMin, tMax, v1, v2) {
            var args = Array.prototype.slice.call(arguments);
            if (args.length === 3) { args = [t, 0, 1, tMin, tMax]; }
            return mix(args[0], args[1], args[2], args[3], args[4], shape);
        };
    }
    var helpers = {
        linear: shaped(function (u) { return u; }),
        ease: shaped(function (u) { return u * u * (3 - 2 * u); }),
        easeIn: shaped(function (u) { return u * u; }),
        easeOut: shaped(function (u) { return 1 - (1 - u) * (1 - u); }),
        clamp: function (v, lo, hi) {
            return both(both(v, lo, Math.max), hi, Math.min);
        },
        add: function (a, b) { return both(a, b, function (x, y) { return x + y; }); },
        sub: function (a, b) { return both(a, b, function (x, y) { return x - y; }); },
        mul: function (a, b) { return both(a, b, function (x, y) { return x * y; }); },
        div: function (a, b) { return both(a, b, function (x, y) { return x / y; }); },
        length: function (a, b) {
            var d = b === undefined ? plain(a) : helpers.sub(a, b), s = 0;
            if (!(d instanceof Array)) return Math.abs(d);
            for (var i = 0; i < d.length; i++) s += d[i] * d[i];
            return Math.sqrt(s);
        },
        normalize: function (a) { return helpers.div(a, helpers.length(a)); },
        degreesToRadians: function (d) { return d * Math.PI / 180; },
        radiansToDegrees: function (r) { return r * 180 / Math.PI; }
    };
    function findProperty(group, stream) {
        for (var i = 1; i <= group.numProperties; i++) {
            var child = group.property(i);
            if (child instanceof PropertyGroup) {
                var found = findProperty(child, stream);
                if (found) return found;
            } else if (child._stream === stream) {
                return child;
            }
        }
        return null;
    }
    return function (compId, layerId, stream, time, value, source) {
        var thisComp = app.project.activeItem;
        var thisLayer = null;
        for (var i = 1; i <= thisComp.numLayers && !thisLayer; i++) {
            if (thisComp.layer(i)._id === layerId) thisLayer = thisComp.layer(i);
        }
        var rate = thisComp.frameRate;
        var scope = {
            time: time, value: value, thisComp: thisComp, thisLayer: thisLayer,
            thisProperty: findProperty(thisLayer, stream), transform: thisLayer.transform,
            index: thisLayer.index,
            comp: function (name) {
                for (var i = 1; i <= app.project.numItems; i++) {
                    var item = app.project.item(i);
                    if (item instanceof CompItem && item.name === name) return item;
                }
                throw new Error("no composition named \"" + name + "\"");
            },
            timeToFrames: function (t) { return Math.floor((t === undefined ? time : t) * rate); },
            framesToTime: function (f) { return f / rate; }
        };
        for (var h in helpers) scope[h] = helpers[h];
        var own = thisLayer.transform;
        for (var p = 1; p <= own.numProperties; p++) {
            (function (property) {
                var key = property.name.charAt(0).toLowerCase() + property.name.substring(1).replace(/ (.)/g,
                    function (m, c) { return c.toUpperCase(); });
                Object.defineProperty(scope, key, { get: function () { return property; } });
            })(own.property(p));
        }
        var result;
        with (scope) { result = eval(source); }
        return plain(result);
    };
})();
)JS";

struct Environment {
    std::array<std::unique_ptr<ScriptContext>, kMaxDepth> contexts;
    int depth = 0;
};

thread_local Environment g_environment;

ScriptContext& ContextAt(int depth) {
    auto& slot = g_environment.contexts[static_cast<std::size_t>(depth)];
    if (!slot) {
        slot = std::make_unique<ScriptContext>();
        slot->limits.timeLimitMs = kTimeLimitMs;
        slot->readOnly = true;
    }
    return *slot;
}

std::string NumberText(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", number);
    return text;
}

std::string ValueText(const Value& value, int dimensions) {
    if (dimensions == 1) return NumberText(value[0]);
    std::string text = "[";
    for (int i = 0; i < dimensions; ++i) text += (i ? "," : "") + NumberText(value[i]);
    return text + "]";
}

// The reply "1.5,2,3" back into a value; components the expression left out keep
// the value before it.
bool ParseResult(const std::string& reply, int dimensions, Value* out, std::string* error) {
    int count = 0;
    const char* at = reply.c_str();
    while (*at) {
        char* end = nullptr;
        const double number = std::strtod(at, &end);
        if (end == at || (*end && *end != ',') || !std::isfinite(number)) {
            *error = "the expression gave \"" + reply + "\", not a number or an array of numbers";
            return false;
        }
        if (count == dimensions) {
            *error = "the expression gave more than " + std::to_string(dimensions) + " numbers";
            return false;
        }
        (*out)[count++] = number;
        at = *end ? end + 1 : end;
    }
    if (count == 0 || (count == 1 && dimensions > 1)) {
        *error = "the expression gave \"" + reply + "\", where " + std::to_string(dimensions) +
                 " numbers are needed";
        return false;
    }
    return true;
}

}  // namespace

bool EvaluateExpression(const ExpressionCall& call, Value* out, std::string* error) {
    std::string why;
    if (!call.project || !call.comp || !call.layer || !call.stream) {
        why = "the expression has no layer";
    } else if (g_environment.depth >= kMaxDepth) {
        why = "expressions refer to each other more than " + std::to_string(kMaxDepth) + " levels deep";
    }
    if (!why.empty()) {
        if (error) *error = why;
        return false;
    }
    ScriptContext& context = ContextAt(g_environment.depth);
    // Reading is all an expression does; the model is only handed over as writable
    // because scripts share the same binding, which the read-only flag guards.
    context.project = const_cast<Project*>(call.project);
    const int compId = call.comp->id;
    context.activeItem = [compId] { return compId; };
    context.currentTime = call.time;
    const int dimensions = ScriptDimensions(*call.layer, call.streamId);
    const std::string program =
        std::string("if (typeof __expression !== 'function') {") + kExpressionPrelude + "}\n__expression(" +
        std::to_string(compId) + "," + std::to_string(call.layer->id) + "," +
        std::to_string(static_cast<int>(call.streamId)) + "," + NumberText(call.time) + "," +
        ValueText(call.value, dimensions) + "," + Json::valueToQuotedString(call.stream->expression.c_str()) + ");";
    ++g_environment.depth;
    std::string reply;
    const bool ran = RunScript(context, program, &reply, &why);
    --g_environment.depth;
    Value result = call.value;
    if (!ran || !ParseResult(reply, dimensions, &result, &why)) {
        if (error) *error = why;
        return false;
    }
    *out = result;
    return true;
}

void InstallExpressionEngine() { SetExpressionEvaluator(EvaluateExpression); }

}  // namespace aehost

#include "aehost/script/expression_engine.h"

#include "aehost/model/stream.h"
#include "aehost/script/project_natives.h"
#include "aehost/script/script_engine.h"

#include <json/json.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <set>

namespace aehost {
namespace {

constexpr int kMaxDepth = 8;
constexpr unsigned kTimeLimitMs = 2000;

// Defined once in each environment: runs an expression's text inside a scope
// that holds the names an expression may use. The environment is made without
// File, Folder, `$` and alert (ScriptGlobals::Expression); what the project's
// object model puts on the global object and expressions have no use for, `app`
// and the engine's own `Duktape`, is taken here into the closure or away.
constexpr const char* kExpressionPrelude = R"JS(
var __expression, __streamNames;
(function (app, Property, PropertyGroup, CompItem) {
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
    function layerOf(comp, layerId) {
        for (var i = 1; i <= comp.numLayers; i++) {
            if (comp.layer(i)._id === layerId) return comp.layer(i);
        }
        return null;
    }
    // Made in the global scope, so that the expression's eval sees the scope and
    // the global object but none of the variables here, `app` among them.
    var evaluate = new Function("scope", "source", "with (scope) { return eval(source); }");
    __expression = function (compId, layerId, stream, time, value, source) {
        var thisComp = app.project.activeItem;
        var thisLayer = layerOf(thisComp, layerId);
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
        return plain(evaluate(scope, source));
    };
    // The names the timeline shows for a layer and one of its streams, as JSON.
    __streamNames = function (layerId, stream) {
        var layer = layerOf(app.project.activeItem, layerId);
        var property = layer && findProperty(layer, stream);
        return JSON.stringify([layer ? layer.name : "", property ? property.name : ""]);
    };
})(app, Property, PropertyGroup, CompItem);
delete this.app;
delete this.Duktape;
)JS";

struct Environment {
    std::array<std::unique_ptr<ScriptContext>, kMaxDepth> contexts;
    // Asks for the names of a report. It runs no expression, so it is free at
    // every level, also when the levels are used up.
    std::unique_ptr<ScriptContext> namer;
    int depth = 0;
};

thread_local Environment g_environment;

ScriptContext& ExpressionContext(std::unique_ptr<ScriptContext>& slot) {
    if (!slot) {
        slot = std::make_unique<ScriptContext>();
        slot->limits.timeLimitMs = kTimeLimitMs;
        slot->readOnly = true;
        slot->globals = ScriptGlobals::Expression;
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

// A stream of a layer of a composition, by ids.
struct StreamKey {
    int comp = 0;
    int layer = 0;
    int stream = 0;
    auto operator<=>(const StreamKey&) const = default;
};

// What one run of the host has learnt about its expressions.
struct ExpressionRun {
    ExpressionReport report;
    std::set<StreamKey> reported;
    std::set<StreamKey> switchedOff;
};

ExpressionRun g_run;

std::string WithPrelude(const std::string& call) {
    return std::string("if (typeof __expression !== 'function') {") + kExpressionPrelude + "}\n" + call;
}

// `slot`'s environment, showing the call's project and composition.
ScriptContext& ContextFor(std::unique_ptr<ScriptContext>& slot, const ExpressionCall& call) {
    ScriptContext& context = ExpressionContext(slot);
    // Reading is all an expression does; the model is only handed over as writable
    // because scripts share the same binding, which the read-only flag guards.
    context.project = const_cast<Project*>(call.project);
    const int compId = call.comp->id;
    context.activeItem = [compId] { return compId; };
    context.currentTime = call.time;
    return context;
}

// Runs the expression; `stopped` tells a run cut off at its time bound from one that failed.
bool RunExpression(const ExpressionCall& call, Value* out, std::string* error, bool* stopped) {
    if (g_environment.depth >= kMaxDepth) {
        *error = "expressions refer to each other more than " + std::to_string(kMaxDepth) + " levels deep";
        return false;
    }
    ScriptContext& context =
        ContextFor(g_environment.contexts[static_cast<std::size_t>(g_environment.depth)], call);
    const int dimensions = ScriptDimensions(*call.layer, call.streamId);
    const std::string program = WithPrelude(
        "__expression(" + std::to_string(call.comp->id) + "," + std::to_string(call.layer->id) + "," +
        std::to_string(static_cast<int>(call.streamId)) + "," + NumberText(call.time) + "," +
        ValueText(call.value, dimensions) + "," + Json::valueToQuotedString(call.stream->expression.c_str()) + ");");
    ++g_environment.depth;
    std::string reply;
    const bool ran = RunScript(context, program, &reply, error);
    --g_environment.depth;
    *stopped = context.stopped;
    Value result = call.value;
    if (!ran || !ParseResult(reply, dimensions, &result, error)) return false;
    *out = result;
    return true;
}

struct StreamNames {
    std::string layer;
    std::string stream;
};

// The names the timeline shows, asked of the object model that expressions see.
StreamNames NamesOf(const ExpressionCall& call) {
    StreamNames names{call.layer->name, "stream " + std::to_string(static_cast<int>(call.streamId))};
    std::string reply;
    const std::string program = WithPrelude("__streamNames(" + std::to_string(call.layer->id) + "," +
                                            std::to_string(static_cast<int>(call.streamId)) + ");");
    Json::Value parsed;
    if (!RunScript(ContextFor(g_environment.namer, call), program, &reply, nullptr) || !Json::Reader().parse(reply, parsed, false) ||
        !parsed.isArray() || parsed.size() != 2) {
        return names;
    }
    if (!parsed[0].asString().empty()) names.layer = parsed[0].asString();
    if (!parsed[1].asString().empty()) names.stream = parsed[1].asString();
    return names;
}

void ReportOnce(const ExpressionCall& call, const StreamKey& key, const std::string& what) {
    if (!g_run.report || !g_run.reported.insert(key).second) return;
    const StreamNames names = NamesOf(call);
    g_run.report("expression of \"" + names.stream + "\" on layer \"" + names.layer + "\" in \"" + call.comp->name +
                 "\" " + what);
}

}  // namespace

void ReportOnStandardError(const std::string& line) { std::cerr << "aehost: " << line << '\n'; }

bool EvaluateExpression(const ExpressionCall& call, Value* out, std::string* error) {
    if (!call.project || !call.comp || !call.layer || !call.stream) {
        if (error) *error = "the expression has no layer";
        return false;
    }
    const StreamKey key{call.comp->id, call.layer->id, static_cast<int>(call.streamId)};
    // An expression that was cut off once would be cut off again at every frame
    // that reads its stream, and an export reads each stream at every frame: a
    // long composition would take the time bound times its frames. So it is
    // switched off for the rest of the run, and the stream keeps its value
    // without it, as a switched-off expression does in the host.
    if (g_run.switchedOff.contains(key)) {
        *out = call.value;
        return true;
    }
    std::string why;
    bool stopped = false;
    if (RunExpression(call, out, &why, &stopped)) return true;
    if (stopped) {
        g_run.switchedOff.insert(key);
        ReportOnce(call, key, "was stopped after " + std::to_string(kTimeLimitMs) +
                                  " ms and is switched off for the rest of the run");
    } else {
        ReportOnce(call, key, "failed: " + why);
    }
    if (error) *error = why;
    return false;
}

void InstallExpressionEngine(ExpressionReport report) {
    g_run = ExpressionRun{std::move(report), {}, {}};
    SetExpressionEvaluator(EvaluateExpression);
}

}  // namespace aehost

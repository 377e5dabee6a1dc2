// aehost session: drives the plug-in's render session from a line script, as a caller in
// the host's process would. The plug-in is loaded and its entry point run, the engine is
// started through the plug-in's loader, and each script line calls the session interface
// that the plug-in exports (plugin/session/session_api.h), printing one result line.
//
// The whole script is read and checked before the plug-in is loaded, so a mistake in line
// 9 costs no render. The first command that the plug-in refuses ends the run.
#include <dlfcn.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>
#include <thread>
#include <vector>

#include "aehost/cli/commands.h"
#include "files/read_file.h"
#include "files/replace_file.h"
#include "plugin/session/session_api.h"
#include "quillon/render/png_file.h"

namespace aehost {

namespace {

constexpr std::size_t kMaxScriptBytes = std::size_t{1} << 20;
constexpr int32_t kMaxFrameSide = 16384;
// A frame and the driver's copy of it stay well within the memory of a test machine.
constexpr int64_t kMaxFramePixels = int64_t{1} << 24;
constexpr std::size_t kMaxUpdateBytes = std::size_t{256} << 20;
constexpr int64_t kDefaultWaitSeconds = 300;
constexpr int64_t kMaxWaitSeconds = 86400;
constexpr int64_t kMaxSleepMs = 600000;
constexpr auto kWaitPoll = std::chrono::milliseconds(10);

enum class Verb {
    kSelect, kOpen, kPrepare, kWait, kWaitProgress, kSleep, kState, kRead, kChanges, kStop, kClose, kRelease,
    kStopRender, kCloseRender, kEndSession, kPort, kUpdate, kDirty, kTime, kKeepCaches, kCameraValues,
    kSelectCamera, kLayers, kLayerStates, kObjectPosition, kObjectRotation, kObjectScale, kSelectObject,
    kActivePosition, kHookMessages, kCopyDocument, kFrameView, kOutputSize, kFrameRange, kSendFile, kAssets, kTextures
};

struct VerbName {
    const char* name;
    Verb verb;
};

constexpr VerbName kVerbs[] = {
    {"select", Verb::kSelect},
    {"open", Verb::kOpen},
    {"prepare", Verb::kPrepare},
    {"wait", Verb::kWait},
    {"wait-progress", Verb::kWaitProgress},
    {"sleep", Verb::kSleep},
    {"state", Verb::kState},
    {"read", Verb::kRead},
    {"changes", Verb::kChanges},
    {"stop", Verb::kStop},
    {"close", Verb::kClose},
    {"release", Verb::kRelease},
    {"stop-render", Verb::kStopRender},
    {"close-render", Verb::kCloseRender},
    {"end-session", Verb::kEndSession},
    {"port", Verb::kPort},
    {"update", Verb::kUpdate},
    {"dirty", Verb::kDirty},
    {"time", Verb::kTime},
    {"keep-caches", Verb::kKeepCaches},
    {"camera-values", Verb::kCameraValues},
    {"select-camera", Verb::kSelectCamera},
    {"layers", Verb::kLayers},
    {"layer-states", Verb::kLayerStates},
    {"object-position", Verb::kObjectPosition},
    {"object-rotation", Verb::kObjectRotation},
    {"object-scale", Verb::kObjectScale},
    {"select-object", Verb::kSelectObject},
    {"active-position", Verb::kActivePosition},
    {"hook-messages", Verb::kHookMessages},
    {"copy-document", Verb::kCopyDocument},
    {"frame-view", Verb::kFrameView},
    {"output-size", Verb::kOutputSize},
    {"frame-range", Verb::kFrameRange},
    {"send-file", Verb::kSendFile},
    {"assets", Verb::kAssets},
    {"textures", Verb::kTextures},
};

struct ScriptLine {
    int number = 0;
    std::string text;  // as written, for messages
    Verb verb = Verb::kState;
    uint32_t id = 0;           // select, stop-render, close-render, end-session
    std::string path;          // open, read
    int32_t width = 0;         // prepare
    int32_t height = 0;
    int32_t depth = 1;         // bytes a channel
    bool option6014 = false;
    bool normalPriority = true;
    bool free = false;         // release
    int64_t amount = 0;        // wait: seconds; sleep: milliseconds
    double progress = 0.0;     // wait-progress: the share of the render to wait for
    uint16_t port = 0;
    std::string name;              // update, send-file: the name the bytes are sent under
    std::vector<double> numbers;   // time, camera-values, object-*
    std::vector<int32_t> indices;  // layers
    std::string bytes;             // select-camera: the unique id; layer-states, object-*: markers of 16 bytes
    // select-camera, select-object: the application; camera-values: the projection;
    // object-rotation: the order
    int32_t whole = 0;
    bool flag = false;             // keep-caches on, camera-values new, layers objects-on
};

// A mistake in the script, with the line it is in.
struct ScriptError {
    int line;
    std::string text;
};

std::string VerbList() {
    std::string list;
    for (const VerbName& v : kVerbs) list += (list.empty() ? "" : ", ") + std::string(v.name);
    return list;
}

std::vector<std::string> Words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// What follows the first word, without the spaces around it: a path may hold spaces.
std::string RestAfterVerb(const std::string& line) {
    const std::size_t verbStart = line.find_first_not_of(" \t");
    const std::size_t verbEnd = line.find_first_of(" \t", verbStart);
    if (verbEnd == std::string::npos) return "";
    const std::size_t start = line.find_first_not_of(" \t", verbEnd);
    const std::size_t end = line.find_last_not_of(" \t\r");
    return start == std::string::npos ? "" : line.substr(start, end - start + 1);
}

// A whole decimal number from `low` to `high`; false for anything else.
bool ParseWhole(const std::string& word, int64_t low, int64_t high, int64_t* value) {
    if (word.empty() || word.size() > 12) return false;
    for (char c : word)
        if (c < '0' || c > '9') return false;
    *value = std::stoll(word);
    return *value >= low && *value <= high;
}

void Expect(bool ok, int line, const std::string& text) {
    if (!ok) throw ScriptError{line, text};
}

int64_t WholeArgument(const std::vector<std::string>& words, std::size_t index, int64_t low, int64_t high,
                      const char* what, int line) {
    int64_t value = 0;
    Expect(ParseWhole(words[index], low, high, &value), line,
           std::string(what) + " must be a whole number from " + std::to_string(low) + " to " +
               std::to_string(high) + ", not \"" + words[index] + "\"");
    return value;
}

// A share from 0 to 1, written as a decimal number.
double FractionArgument(const std::string& word, int line) {
    double value = -1.0;
    std::size_t used = 0;
    try {
        value = std::stod(word, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    Expect(used == word.size() && value >= 0.0 && value <= 1.0, line,
           "FRACTION must be a number from 0 to 1, not \"" + word + "\"");
    return value;
}

void ExpectCount(const std::vector<std::string>& words, std::size_t least, std::size_t most, const char* usage,
                 int line) {
    Expect(words.size() >= least && words.size() <= most, line, std::string("usage: ") + usage);
}

void ParsePrepare(const std::vector<std::string>& words, ScriptLine& parsed) {
    const char* usage = "prepare WIDTH HEIGHT DEPTH [option6014] [low-priority]";
    ExpectCount(words, 4, 6, usage, parsed.number);
    parsed.width = static_cast<int32_t>(WholeArgument(words, 1, 1, kMaxFrameSide, "WIDTH", parsed.number));
    parsed.height = static_cast<int32_t>(WholeArgument(words, 2, 1, kMaxFrameSide, "HEIGHT", parsed.number));
    Expect(int64_t{parsed.width} * parsed.height <= kMaxFramePixels, parsed.number,
           "a frame may have at most " + std::to_string(kMaxFramePixels) + " pixels (4096 x 4096), not " +
               words[1] + " x " + words[2]);
    int64_t depth = 0;
    Expect(ParseWhole(words[3], 1, 4, &depth) && depth != 3, parsed.number,
           "DEPTH is the bytes of a channel: 1, 2 or 4, not \"" + words[3] + "\"");
    parsed.depth = static_cast<int32_t>(depth);
    for (std::size_t i = 4; i < words.size(); ++i) {
        if (words[i] == "option6014") {
            parsed.option6014 = true;
        } else if (words[i] == "low-priority") {
            parsed.normalPriority = false;
        } else {
            throw ScriptError{parsed.number, "unknown flag \"" + words[i] + "\"; " + usage};
        }
    }
}

// A finite decimal number.
double NumberArgument(const std::string& word, const char* what, int line) {
    double value = std::numeric_limits<double>::quiet_NaN();
    std::size_t used = 0;
    try {
        value = std::stod(word, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    Expect(used == word.size() && std::isfinite(value), line,
           std::string(what) + " must be a finite number, not \"" + word + "\"");
    return value;
}

void NumberArguments(const std::vector<std::string>& words, std::size_t from, std::size_t count, const char* what,
                     ScriptLine& parsed) {
    for (std::size_t i = from; i < from + count; ++i)
        parsed.numbers.push_back(NumberArgument(words[i], what, parsed.number));
}

// Bytes written as hex digits, two a byte; `size` 0 takes any whole number of bytes.
std::string HexArgument(const std::string& word, std::size_t size, const char* what, int line) {
    const bool wellSized = size ? word.size() == 2 * size : !word.empty() && word.size() % 2 == 0;
    Expect(wellSized && word.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos, line,
           std::string(what) + " must be " + (size ? std::to_string(2 * size) : std::string("pairs of")) +
               " hex digits, not \"" + word + "\"");
    std::string bytes;
    for (std::size_t i = 0; i < word.size(); i += 2)
        bytes.push_back(static_cast<char>(std::stoi(word.substr(i, 2), nullptr, 16)));
    return bytes;
}

bool OnOffArgument(const std::string& word, const char* on, const char* off, int line) {
    Expect(word == on || word == off, line,
           std::string("expected \"") + on + "\" or \"" + off + "\", not \"" + word + "\"");
    return word == on;
}

constexpr std::size_t kMarkerBytes = 16;
constexpr int64_t kMaxLayerIndex = std::numeric_limits<int32_t>::max();

// The update commands and the direct operations on the open document.
void ParseDocumentLine(const std::string& text, const std::vector<std::string>& words, ScriptLine& parsed) {
    const int number = parsed.number;
    switch (parsed.verb) {
        case Verb::kUpdate:
        case Verb::kSendFile: {
            const std::string usage = words[0] + " NAME FILE";
            ExpectCount(words, 3, std::numeric_limits<std::size_t>::max(), usage.c_str(), number);
            parsed.name = words[1];
            const std::string rest = RestAfterVerb(text);
            parsed.path = RestAfterVerb(rest);
            break;
        }
        case Verb::kTime:
            ExpectCount(words, 3, 3, "time NUMERATOR DENOMINATOR", number);
            NumberArguments(words, 1, 2, "a part of the time", parsed);
            Expect(parsed.numbers[1] >= 1.0, number, "DENOMINATOR must be at least 1, not \"" + words[2] + "\"");
            break;
        case Verb::kKeepCaches:
            ExpectCount(words, 2, 2, "keep-caches on|off", number);
            parsed.flag = OnOffArgument(words[1], "on", "off", number);
            break;
        case Verb::kCameraValues: {
            const char* usage = "camera-values X Y Z H P B FOCAL APERTURE THIRD PROJECTION [new]";
            ExpectCount(words, 11, 12, usage, number);
            NumberArguments(words, 1, 9, "a camera value", parsed);
            parsed.whole = static_cast<int32_t>(WholeArgument(words, 10, 0, 3, "PROJECTION", number));
            Expect(words.size() == 11 || words[11] == "new", number, std::string("usage: ") + usage);
            parsed.flag = words.size() == 12;
            break;
        }
        case Verb::kSelectCamera:
        case Verb::kSelectObject: {
            const std::string usage = words[0] + " APPLICATION HEX-ID";
            ExpectCount(words, 3, 3, usage.c_str(), number);
            parsed.whole = static_cast<int32_t>(
                WholeArgument(words, 1, 1, std::numeric_limits<int32_t>::max(), "APPLICATION", number));
            parsed.bytes = HexArgument(words[2], 0, "HEX-ID", number);
            break;
        }
        case Verb::kActivePosition:
            ExpectCount(words, 4, 4, "active-position X Y Z", number);
            NumberArguments(words, 1, 3, "a coordinate", parsed);
            break;
        case Verb::kHookMessages:
        case Verb::kCopyDocument: {
            const std::string usage = words[0] + " (no arguments)";
            ExpectCount(words, 1, 1, usage.c_str(), number);
            break;
        }
        case Verb::kFrameView:
            ExpectCount(words, 1, 2, "frame-view [MODE]", number);
            if (words.size() == 2)
                parsed.whole = static_cast<int32_t>(
                    WholeArgument(words, 1, 0, std::numeric_limits<int32_t>::max(), "MODE", number));
            break;
        case Verb::kOutputSize:
            ExpectCount(words, 5, 5, "output-size WIDTH HEIGHT PIXEL-ASPECT FILM-ASPECT", number);
            NumberArguments(words, 1, 4, "a size or aspect", parsed);
            break;
        case Verb::kFrameRange: {
            ExpectCount(words, 7, 7, "frame-range SEQUENCE RATE FROM TO DENOMINATOR VALUE", number);
            const int64_t most = std::numeric_limits<int32_t>::max();
            parsed.numbers.push_back(static_cast<double>(WholeArgument(words, 1, 0, most, "SEQUENCE", number)));
            NumberArguments(words, 2, 4, "a rate or time", parsed);
            Expect(parsed.numbers[4] >= 1.0, number, "DENOMINATOR must be at least 1, not \"" + words[5] + "\"");
            parsed.numbers.push_back(static_cast<double>(WholeArgument(words, 6, 0, most, "VALUE", number)));
            break;
        }
        case Verb::kLayers:
            ExpectCount(words, 2, std::numeric_limits<std::size_t>::max(), "layers objects-on|objects-off [INDEX ...]",
                        number);
            parsed.flag = OnOffArgument(words[1], "objects-on", "objects-off", number);
            for (std::size_t i = 2; i < words.size(); ++i)
                parsed.indices.push_back(
                    static_cast<int32_t>(WholeArgument(words, i, 0, kMaxLayerIndex, "INDEX", number)));
            break;
        case Verb::kLayerStates:
            ExpectCount(words, 2, std::numeric_limits<std::size_t>::max(),
                        "layer-states objects-on|objects-off [MARKER ...]", number);
            parsed.flag = OnOffArgument(words[1], "objects-on", "objects-off", number);
            for (std::size_t i = 2; i < words.size(); ++i)
                parsed.bytes += HexArgument(words[i], kMarkerBytes, "MARKER", number);
            break;
        case Verb::kObjectPosition:
        case Verb::kObjectScale: {
            const std::string usage = words[0] + " MARKER X Y Z";
            ExpectCount(words, 5, 5, usage.c_str(), number);
            parsed.bytes = HexArgument(words[1], kMarkerBytes, "MARKER", number);
            NumberArguments(words, 2, 3, "a coordinate", parsed);
            break;
        }
        case Verb::kObjectRotation:
            ExpectCount(words, 6, 6, "object-rotation MARKER H P B ORDER", number);
            parsed.bytes = HexArgument(words[1], kMarkerBytes, "MARKER", number);
            NumberArguments(words, 2, 3, "an angle", parsed);
            parsed.whole = static_cast<int32_t>(WholeArgument(words, 5, 0, 6, "ORDER", number));
            break;
        default:
            ExpectCount(words, 1, 1, "dirty (no arguments)", number);
            break;
    }
}

ScriptLine ParseLine(const std::string& text, int number) {
    const std::vector<std::string> words = Words(text);
    ScriptLine parsed;
    parsed.number = number;
    parsed.text = RestAfterVerb(text).empty() ? words[0] : words[0] + " " + RestAfterVerb(text);
    const VerbName* found = nullptr;
    for (const VerbName& v : kVerbs)
        if (words[0] == v.name) found = &v;
    Expect(found, number, "unknown command \"" + words[0] + "\"; the commands are " + VerbList());
    parsed.verb = found->verb;
    switch (parsed.verb) {
        case Verb::kSelect:
        case Verb::kStopRender:
        case Verb::kCloseRender:
        case Verb::kEndSession: {
            const std::string usage = words[0] + " ID";
            ExpectCount(words, 2, 2, usage.c_str(), number);
            parsed.id = static_cast<uint32_t>(
                WholeArgument(words, 1, 0, std::numeric_limits<uint32_t>::max(), "ID", number));
            break;
        }
        case Verb::kOpen:
        case Verb::kRead:
            parsed.path = RestAfterVerb(text);
            Expect(!parsed.path.empty(), number,
                   parsed.verb == Verb::kOpen ? "usage: open SCENE.ory" : "usage: read FRAME.png");
            break;
        case Verb::kPrepare:
            ParsePrepare(words, parsed);
            break;
        case Verb::kWait:
            ExpectCount(words, 1, 2, "wait [SECONDS]", number);
            parsed.amount = words.size() == 2 ? WholeArgument(words, 1, 1, kMaxWaitSeconds, "SECONDS", number)
                                              : kDefaultWaitSeconds;
            break;
        case Verb::kWaitProgress:
            ExpectCount(words, 2, 2, "wait-progress FRACTION", number);
            parsed.progress = FractionArgument(words[1], number);
            parsed.amount = kDefaultWaitSeconds;
            break;
        case Verb::kSleep:
            ExpectCount(words, 2, 2, "sleep MILLISECONDS", number);
            parsed.amount = WholeArgument(words, 1, 0, kMaxSleepMs, "MILLISECONDS", number);
            break;
        case Verb::kRelease:
            ExpectCount(words, 1, 2, "release [free]", number);
            Expect(words.size() == 1 || words[1] == "free", number, "usage: release [free]");
            parsed.free = words.size() == 2;
            break;
        case Verb::kPort:
            ExpectCount(words, 2, 2, "port PORT", number);
            parsed.port = static_cast<uint16_t>(WholeArgument(words, 1, 0, 65535, "PORT", number));
            break;
        case Verb::kState:
        case Verb::kChanges:
        case Verb::kStop:
        case Verb::kClose:
        case Verb::kAssets:
        case Verb::kTextures: {
            const std::string usage = words[0] + " (no arguments)";
            ExpectCount(words, 1, 1, usage.c_str(), number);
            break;
        }
        default:
            ParseDocumentLine(text, words, parsed);
            break;
    }
    return parsed;
}

// The script's commands; blank lines and lines that begin with # are left out.
std::vector<ScriptLine> ParseScript(const std::string& bytes) {
    std::vector<ScriptLine> lines;
    std::istringstream in(bytes);
    int number = 0;
    for (std::string text; std::getline(in, text);) {
        ++number;
        const std::vector<std::string> words = Words(text);
        if (words.empty() || words[0][0] == '#') continue;
        lines.push_back(ParseLine(text, number));
    }
    return lines;
}

// The session interface of the plug-in, looked up by name.
struct SessionCalls {
    decltype(&QuillonSessionStartEngine) startEngine = nullptr;
    decltype(&QuillonSessionNew) newSession = nullptr;
    decltype(&QuillonSessionFree) freeSession = nullptr;
    decltype(&QuillonSessionSelectRender) selectRender = nullptr;
    decltype(&QuillonSessionOpenDocument) openDocument = nullptr;
    decltype(&QuillonSessionPrepareRender) prepareRender = nullptr;
    decltype(&QuillonSessionReadFrame) readFrame = nullptr;
    decltype(&QuillonSessionReadFrameChanges) readFrameChanges = nullptr;
    decltype(&QuillonSessionGetRenderState) getRenderState = nullptr;
    decltype(&QuillonSessionStopCurrentRender) stopCurrentRender = nullptr;
    decltype(&QuillonSessionCloseDocument) closeDocument = nullptr;
    decltype(&QuillonSessionReleaseRender) releaseRender = nullptr;
    decltype(&QuillonSessionStopRender) stopRender = nullptr;
    decltype(&QuillonSessionCloseRender) closeRender = nullptr;
    decltype(&QuillonSessionEndSession) endSession = nullptr;
    decltype(&QuillonSessionFreeThreads) freeThreads = nullptr;
    decltype(&QuillonSessionIsPortFree) isPortFree = nullptr;
    decltype(&QuillonSessionUpdateDocument) updateDocument = nullptr;
    decltype(&QuillonSessionIsDirty) isDirty = nullptr;
    decltype(&QuillonSessionSetDocumentTime) setDocumentTime = nullptr;
    decltype(&QuillonSessionSetKeepCaches) setKeepCaches = nullptr;
    decltype(&QuillonSessionSetCameraValues) setCameraValues = nullptr;
    decltype(&QuillonSessionSelectCamera) selectCamera = nullptr;
    decltype(&QuillonSessionSendLayerList) sendLayerList = nullptr;
    decltype(&QuillonSessionSetLayerStates) setLayerStates = nullptr;
    decltype(&QuillonSessionSetObjectPosition) setObjectPosition = nullptr;
    decltype(&QuillonSessionSetObjectRotation) setObjectRotation = nullptr;
    decltype(&QuillonSessionSetObjectScale) setObjectScale = nullptr;
    decltype(&QuillonSessionSelectObject) selectObject = nullptr;
    decltype(&QuillonSessionSetActivePosition) setActivePosition = nullptr;
    decltype(&QuillonSessionRunHookMessages) runHookMessages = nullptr;
    decltype(&QuillonSessionCopyDocumentOnce) copyDocumentOnce = nullptr;
    decltype(&QuillonSessionFrameView) frameView = nullptr;
    decltype(&QuillonSessionSetOutputSize) setOutputSize = nullptr;
    decltype(&QuillonSessionGetOutputSize) getOutputSize = nullptr;
    decltype(&QuillonSessionSetFrameRange) setFrameRange = nullptr;
    decltype(&QuillonSessionSendFile) sendFile = nullptr;
    decltype(&QuillonSessionCollectAssets) collectAssets = nullptr;
    decltype(&QuillonSessionCollectTextures) collectTextures = nullptr;
};

template <class Function>
void Resolve(void* library, const char* name, Function& function, std::string* missing) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (!function) *missing += (missing->empty() ? "" : ", ") + std::string(name);
}

// False with the names of the functions that the plug-in does not export.
bool ResolveSessionCalls(void* library, SessionCalls& calls, std::string* missing) {
    Resolve(library, "QuillonSessionStartEngine", calls.startEngine, missing);
    Resolve(library, "QuillonSessionNew", calls.newSession, missing);
    Resolve(library, "QuillonSessionFree", calls.freeSession, missing);
    Resolve(library, "QuillonSessionSelectRender", calls.selectRender, missing);
    Resolve(library, "QuillonSessionOpenDocument", calls.openDocument, missing);
    Resolve(library, "QuillonSessionPrepareRender", calls.prepareRender, missing);
    Resolve(library, "QuillonSessionReadFrame", calls.readFrame, missing);
    Resolve(library, "QuillonSessionReadFrameChanges", calls.readFrameChanges, missing);
    Resolve(library, "QuillonSessionGetRenderState", calls.getRenderState, missing);
    Resolve(library, "QuillonSessionStopCurrentRender", calls.stopCurrentRender, missing);
    Resolve(library, "QuillonSessionCloseDocument", calls.closeDocument, missing);
    Resolve(library, "QuillonSessionReleaseRender", calls.releaseRender, missing);
    Resolve(library, "QuillonSessionStopRender", calls.stopRender, missing);
    Resolve(library, "QuillonSessionCloseRender", calls.closeRender, missing);
    Resolve(library, "QuillonSessionEndSession", calls.endSession, missing);
    Resolve(library, "QuillonSessionFreeThreads", calls.freeThreads, missing);
    Resolve(library, "QuillonSessionIsPortFree", calls.isPortFree, missing);
    Resolve(library, "QuillonSessionUpdateDocument", calls.updateDocument, missing);
    Resolve(library, "QuillonSessionIsDirty", calls.isDirty, missing);
    Resolve(library, "QuillonSessionSetDocumentTime", calls.setDocumentTime, missing);
    Resolve(library, "QuillonSessionSetKeepCaches", calls.setKeepCaches, missing);
    Resolve(library, "QuillonSessionSetCameraValues", calls.setCameraValues, missing);
    Resolve(library, "QuillonSessionSelectCamera", calls.selectCamera, missing);
    Resolve(library, "QuillonSessionSendLayerList", calls.sendLayerList, missing);
    Resolve(library, "QuillonSessionSetLayerStates", calls.setLayerStates, missing);
    Resolve(library, "QuillonSessionSetObjectPosition", calls.setObjectPosition, missing);
    Resolve(library, "QuillonSessionSetObjectRotation", calls.setObjectRotation, missing);
    Resolve(library, "QuillonSessionSetObjectScale", calls.setObjectScale, missing);
    Resolve(library, "QuillonSessionSelectObject", calls.selectObject, missing);
    Resolve(library, "QuillonSessionSetActivePosition", calls.setActivePosition, missing);
    Resolve(library, "QuillonSessionRunHookMessages", calls.runHookMessages, missing);
    Resolve(library, "QuillonSessionCopyDocumentOnce", calls.copyDocumentOnce, missing);
    Resolve(library, "QuillonSessionFrameView", calls.frameView, missing);
    Resolve(library, "QuillonSessionSetOutputSize", calls.setOutputSize, missing);
    Resolve(library, "QuillonSessionGetOutputSize", calls.getOutputSize, missing);
    Resolve(library, "QuillonSessionSetFrameRange", calls.setFrameRange, missing);
    Resolve(library, "QuillonSessionSendFile", calls.sendFile, missing);
    Resolve(library, "QuillonSessionCollectAssets", calls.collectAssets, missing);
    Resolve(library, "QuillonSessionCollectTextures", calls.collectTextures, missing);
    return missing->empty();
}

// The lines of a whole frame as the session hands them out.
struct FrameCapture {
    int32_t width = 0;
    int32_t bytesPerChannel = 1;
    std::vector<std::vector<uint8_t>> lines;
};

void CaptureLine(void* refcon, int32_t /*x*/, int32_t y, int32_t count, int32_t bytesPerChannel,
                 const uint8_t* pixels) {
    auto* frame = static_cast<FrameCapture*>(refcon);
    frame->width = count;
    frame->bytesPerChannel = bytesPerChannel;
    if (frame->lines.size() <= static_cast<std::size_t>(y)) frame->lines.resize(static_cast<std::size_t>(y) + 1);
    frame->lines[static_cast<std::size_t>(y)].assign(pixels, pixels + static_cast<std::size_t>(count) * 4 *
                                                                          static_cast<std::size_t>(bytesPerChannel));
}

struct ChangeCount {
    int64_t runs = 0;
    int64_t pixels = 0;
    int64_t lines = 0;
    int32_t lastLine = -1;
};

void CountRun(void* refcon, int32_t /*x*/, int32_t y, int32_t count, int32_t /*bytesPerChannel*/,
              const uint8_t* /*pixels*/) {
    auto* changes = static_cast<ChangeCount*>(refcon);
    ++changes->runs;
    changes->pixels += count;
    if (y != changes->lastLine) ++changes->lines;
    changes->lastLine = y;
}

// One channel of a session pixel as a share of full intensity.
float ChannelValue(const uint8_t* channel, int32_t bytesPerChannel) {
    if (bytesPerChannel == 2) {
        uint16_t value = 0;
        std::memcpy(&value, channel, sizeof(value));
        return static_cast<float>(value) / 65535.0f;
    }
    if (bytesPerChannel == 4) {
        float value = 0.0f;
        std::memcpy(&value, channel, sizeof(value));
        return value;
    }
    return static_cast<float>(channel[0]) / 255.0f;
}

// The frame as a PNG of 8 bits a channel for a depth of 1, else of 16 bits.
bool EncodeFrame(const FrameCapture& frame, std::string* bytes, std::string* error) {
    const auto height = static_cast<int32_t>(frame.lines.size());
    Bitmap colour;
    Bitmap alpha;
    colour.width = alpha.width = frame.width;
    colour.height = alpha.height = height;
    colour.channels = 3;
    alpha.channels = 1;
    colour.samples.reserve(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(height) * 3);
    alpha.samples.reserve(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(height));
    const auto channelBytes = static_cast<std::size_t>(frame.bytesPerChannel);
    for (const std::vector<uint8_t>& line : frame.lines) {
        for (std::size_t at = 0; at + 4 * channelBytes <= line.size(); at += 4 * channelBytes) {
            for (std::size_t c = 0; c < 3; ++c)
                colour.samples.push_back(ChannelValue(&line[at + c * channelBytes], frame.bytesPerChannel));
            alpha.samples.push_back(ChannelValue(&line[at + 3 * channelBytes], frame.bytesPerChannel));
        }
    }
    return quillon::render::EncodePng(colour, &alpha, frame.bytesPerChannel == 1 ? 8 : 16, bytes, error);
}

std::string StateText(const SessionCalls& calls, QuillonRenderSession* session) {
    bool running = false;
    int32_t result = 0;
    double progress = 0.0;
    int32_t stage = 0;
    calls.getRenderState(session, &running, &result, &progress, &stage);
    std::ostringstream text;
    text << (running ? "running" : "idle") << ", result " << result << ", progress " << progress << ", stage "
         << stage;
    return text.str();
}

class ScriptRun {
  public:
    ScriptRun(const std::string& scriptPath, const SessionCalls& calls, QuillonRenderSession* session)
        : scriptPath_(scriptPath), calls_(calls), session_(session) {}

    // kExitOk, or the exit code of the first line that failed after its message.
    int Run(const std::vector<ScriptLine>& lines) {
        for (const ScriptLine& line : lines)
            if (const int code = RunLine(line)) return code;
        return kExitOk;
    }

  private:
    int Refused(const ScriptLine& line, const std::string& why, int code = kExitFailed) {
        HostError(scriptPath_ + ":" + std::to_string(line.number) + ": " + line.text + ": " + why);
        return code;
    }

    int Print(const ScriptLine& line, const std::string& result) {
        std::cout << line.text << ": " << result << std::endl;
        return kExitOk;
    }

    int RunLine(const ScriptLine& line) {
        switch (line.verb) {
            case Verb::kSelect:
                if (!calls_.selectRender(session_, line.id)) return Refused(line, "the session refused the render id");
                return Print(line, "render " + std::to_string(line.id) + " is current");
            case Verb::kOpen: return Open(line);
            case Verb::kPrepare:
                if (!calls_.prepareRender(session_, line.width, line.height, line.depth, line.option6014,
                                          line.normalPriority))
                    return Refused(line, "the session could not prepare the frame (no render selected, no document "
                                         "open, a read holds the buffers, or memory ran out)");
                return Print(line, "prepared");
            case Verb::kWait: return Wait(line, 1.0);
            case Verb::kWaitProgress: return Wait(line, line.progress);
            case Verb::kSleep:
                std::this_thread::sleep_for(std::chrono::milliseconds(line.amount));
                return Print(line, "slept");
            case Verb::kState:
                if (!calls_.getRenderState(session_, nullptr, nullptr, nullptr, nullptr))
                    return Refused(line, "no render is selected");
                return Print(line, StateText(calls_, session_));
            case Verb::kRead: return Read(line);
            case Verb::kChanges: return Changes(line);
            case Verb::kStop:
                if (!calls_.stopCurrentRender(session_)) return Refused(line, "no render is selected");
                return Print(line, "stopped");
            case Verb::kClose:
                if (!calls_.closeDocument(session_)) return Refused(line, "no render is selected");
                return Print(line, "closed");
            case Verb::kRelease:
                if (!calls_.releaseRender(session_, line.free)) return Refused(line, "no render is selected");
                return Print(line, line.free ? "released and freed" : "released");
            case Verb::kStopRender: return Print(line, std::to_string(calls_.stopRender(line.id)));
            case Verb::kCloseRender: return Print(line, std::to_string(calls_.closeRender(line.id)));
            case Verb::kEndSession: return Print(line, std::to_string(calls_.endSession(line.id)));
            case Verb::kPort: {
                bool addressFree = true;
                const bool free = calls_.isPortFree(line.port, &addressFree);
                return Print(line, std::string(free ? "free" : "taken") + (addressFree ? "" : ", address in use"));
            }
            default: return RunDocumentLine(line);
        }
        return kExitOk;
    }

    int RunDocumentLine(const ScriptLine& line) {
        const double* v = line.numbers.data();
        const auto idSize = static_cast<int32_t>(line.bytes.size());
        const auto* marker = reinterpret_cast<const uint8_t*>(line.bytes.data());
        switch (line.verb) {
            case Verb::kUpdate: return Update(line);
            case Verb::kDirty: {
                bool dirty = false;
                if (!calls_.isDirty(session_, &dirty)) return Refused(line, "no render is selected");
                return Print(line, dirty ? "dirty" : "clean");
            }
            case Verb::kTime:
                if (!calls_.setDocumentTime(session_, v[0], v[1])) return NoDocument(line);
                return Print(line, "time set");
            case Verb::kKeepCaches:
                if (!calls_.setKeepCaches(session_, line.flag)) return NoDocument(line);
                return Print(line, line.flag ? "caches kept" : "caches not kept");
            case Verb::kCameraValues:
                if (!calls_.setCameraValues(session_, v, v + 3, static_cast<float>(v[6]), static_cast<float>(v[7]),
                                            static_cast<float>(v[8]), line.whole, line.flag))
                    return Refused(line, "no document is open, or it lacks a render view, an active view or a camera");
                return Print(line, "camera set");
            case Verb::kSelectCamera:
                if (!calls_.selectCamera(session_, line.whole, line.bytes.data(), idSize))
                    return Refused(line, "no camera of the open document has that unique id");
                return Print(line, "camera selected");
            case Verb::kLayers:
                if (!calls_.sendLayerList(session_, line.indices.data(), static_cast<int32_t>(line.indices.size()),
                                          line.flag))
                    return NoDocument(line);
                return Print(line, "layers switched");
            case Verb::kLayerStates:
                if (!calls_.setLayerStates(session_, marker, static_cast<int32_t>(line.bytes.size() / 16), line.flag))
                    return NoDocument(line);
                return Print(line, "layers switched");
            case Verb::kObjectPosition:
                if (!calls_.setObjectPosition(session_, marker, v)) return NoObject(line);
                return Print(line, "object moved");
            case Verb::kObjectRotation:
                if (!calls_.setObjectRotation(session_, marker, v, line.whole)) return NoObject(line);
                return Print(line, "object turned");
            case Verb::kObjectScale:
                if (!calls_.setObjectScale(session_, marker, v)) return NoObject(line);
                return Print(line, "object scaled");
            case Verb::kSelectObject:
                // Mode 0: the object becomes the only active one.
                if (!calls_.selectObject(session_, line.whole, line.bytes.data(), idSize, 0))
                    return Refused(line, "no object of the open document has that unique id, or no document is open");
                return Print(line, "object selected");
            case Verb::kActivePosition:
                if (!calls_.setActivePosition(session_, v)) return Refused(line, "no object is active");
                return Print(line, "active object moved");
            case Verb::kHookMessages: return RunPreparationStep(line, calls_.runHookMessages);
            case Verb::kCopyDocument: return RunPreparationStep(line, calls_.copyDocumentOnce);
            case Verb::kFrameView: return FrameView(line);
            case Verb::kOutputSize: return OutputSize(line);
            case Verb::kFrameRange:
                if (!calls_.setFrameRange(session_, static_cast<int32_t>(v[0]), v[1], v[2], v[3], v[4],
                                          static_cast<int32_t>(v[5])))
                    return NoDocument(line);
                return Print(line, "frame range set");
            case Verb::kSendFile: return SendFile(line);
            case Verb::kAssets:
            case Verb::kTextures: return PrintPaths(line);
            default: return kExitOk;
        }
    }

    // A preparation step gives false whatever it did: only a missing render is refused.
    int RunPreparationStep(const ScriptLine& line, bool (*step)(QuillonRenderSession*)) {
        if (!calls_.getRenderState(session_, nullptr, nullptr, nullptr, nullptr))
            return Refused(line, "no render is selected");
        step(session_);
        return Print(line, "ran");
    }

    int FrameView(const ScriptLine& line) {
        const double unset = std::numeric_limits<double>::quiet_NaN();
        double position[3] = {unset, unset, unset};
        double rotation[3] = {unset, unset, unset};
        if (!calls_.frameView(session_, line.whole, position, rotation)) return Refused(line, "no render is selected");
        if (std::isnan(position[0])) return Print(line, "nothing framed (no document open, or no render camera)");
        std::ostringstream text;
        text.precision(10);
        // Adding 0 prints a negative zero as 0.
        text << "camera at " << position[0] + 0.0 << " " << position[1] + 0.0 << " " << position[2] + 0.0
             << ", rotation " << rotation[0] + 0.0 << " " << rotation[1] + 0.0 << " " << rotation[2] + 0.0;
        return Print(line, text.str());
    }

    // Prints the size as the render settings hold it afterwards.
    int OutputSize(const ScriptLine& line) {
        const double* v = line.numbers.data();
        double size[4] = {0, 0, 0, 0};
        if (!calls_.setOutputSize(session_, v[0], v[1], v[2], v[3]) ||
            !calls_.getOutputSize(session_, &size[0], &size[1], &size[2], &size[3]))
            return NoDocument(line);
        std::ostringstream text;
        text.precision(10);
        text << "width " << size[0] << ", height " << size[1] << ", pixel aspect " << size[2] << ", film aspect "
             << size[3];
        return Print(line, text.str());
    }

    int NoDocument(const ScriptLine& line) { return Refused(line, "no document is open (open a scene first)"); }
    int NoObject(const ScriptLine& line) {
        return Refused(line, "no object of the open document has that marker, or no document is open");
    }

    // The file's bytes go to the render's memory under the name, as a client sends a texture.
    int SendFile(const ScriptLine& line) {
        std::string bytes;
        std::string error;
        if (!qae::files::ReadWholeFile(line.path, {kMaxUpdateBytes, "a texture file"}, &bytes, &error))
            return Refused(line, error, kExitBadInput);
        void* data = std::malloc(bytes.empty() ? 1 : bytes.size());
        if (!data) return Refused(line, "out of memory");
        std::memcpy(data, bytes.data(), bytes.size());
        const bool sent = calls_.sendFile(session_, line.name.c_str(), &data, static_cast<int64_t>(bytes.size()), true);
        std::free(data);  // null when the render took the bytes over
        if (!sent) return Refused(line, "no render is selected, or the render could not keep the file");
        return Print(line, "sent");
    }

    // One path a line, after a line with their count.
    int PrintPaths(const ScriptLine& line) {
        std::vector<std::string> paths;
        const auto add = [](void* refcon, const char* path) {
            static_cast<std::vector<std::string>*>(refcon)->emplace_back(path);
        };
        const bool listed = line.verb == Verb::kAssets ? calls_.collectAssets(session_, add, &paths)
                                                       : calls_.collectTextures(session_, add, &paths);
        if (!listed) return line.verb == Verb::kAssets ? Refused(line, "no render is selected") : NoDocument(line);
        Print(line, std::to_string(paths.size()) + (paths.size() == 1 ? " file" : " files"));
        for (const std::string& path : paths) std::cout << "  " << path << std::endl;
        return kExitOk;
    }

    // The file's bytes go to the session under the name, as a client sends an update.
    int Update(const ScriptLine& line) {
        std::string bytes;
        std::string error;
        if (!qae::files::ReadWholeFile(line.path, {kMaxUpdateBytes, "an update document"}, &bytes, &error))
            return Refused(line, error, kExitBadInput);
        if (!calls_.updateDocument(session_, line.name.c_str(), bytes.data(), static_cast<int64_t>(bytes.size())))
            return Refused(line, "the render has no document afterwards (no render selected, no document open, or "
                                 "not a scene file)");
        return Print(line, "applied");
    }

    int Open(const ScriptLine& line) {
        std::string error;
        if (!qae::files::CheckRegularFile(line.path, &error)) return Refused(line, error, kExitBadInput);
        if (!calls_.openDocument(session_, line.path.c_str()))
            return Refused(line, "the session could not open it (no render selected, or not a scene file)",
                           kExitBadInput);
        return Print(line, "open");
    }

    // Waits while the render runs and has not reached `progress`; a render that ends, also
    // short of it, ends the wait.
    int Wait(const ScriptLine& line, double progress) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(line.amount);
        bool running = true;
        double done = 0.0;
        if (!calls_.getRenderState(session_, nullptr, nullptr, nullptr, nullptr))
            return Refused(line, "no render is selected");
        while (calls_.getRenderState(session_, &running, nullptr, &done, nullptr) && running &&
               (progress >= 1.0 || done < progress)) {
            if (std::chrono::steady_clock::now() >= until)
                return Refused(line, "the render still runs after " + std::to_string(line.amount) + " seconds");
            std::this_thread::sleep_for(kWaitPoll);
        }
        return Print(line, StateText(calls_, session_));
    }

    int Read(const ScriptLine& line) {
        FrameCapture frame;
        bool running = false;
        if (!calls_.readFrame(session_, &CaptureLine, &frame, &running) || frame.lines.empty())
            return Refused(line, "the session has no frame to read (prepare one first)");
        std::string bytes;
        std::string error;
        if (!EncodeFrame(frame, &bytes, &error)) return Refused(line, "cannot encode the frame: " + error);
        if (!qae::files::ReplaceFileContent(line.path, bytes, &error)) return Refused(line, error);
        return Print(line, std::to_string(frame.width) + " x " + std::to_string(frame.lines.size()) + ", " +
                               (running ? "render running" : "render done"));
    }

    int Changes(const ScriptLine& line) {
        ChangeCount changes;
        bool running = false;
        if (!calls_.readFrameChanges(session_, &CountRun, &changes, &running))
            return Refused(line, "the session has no frame to read (prepare one first)");
        return Print(line, std::to_string(changes.runs) + " runs, " + std::to_string(changes.pixels) +
                               " pixels in " + std::to_string(changes.lines) + " lines, " +
                               (running ? "render running" : "render done"));
    }

    std::string scriptPath_;
    const SessionCalls& calls_;
    QuillonRenderSession* session_;
};

// Loads the plug-in, starts the engine and runs the lines; the plug-in's session objects
// are gone before the host unloads it.
int RunWithPlugin(const RenderSessionOptions& options, const char* argv0, const std::vector<ScriptLine>& lines) {
    HostSession host;
    if (const int code = OpenProject(options.host, "", host)) return code;
    if (const int code = StartPlugin(options.host, argv0, host)) return CloseHost(options.host, host, code);
    SessionCalls calls;
    std::string missing;
    if (!ResolveSessionCalls(host.plugin.library, calls, &missing)) {
        HostError("the plug-in " + host.plugin.path + " has no render session: it does not export " + missing);
        return CloseHost(options.host, host, kExitFailed);
    }
    if (!calls.startEngine()) {
        HostError("the plug-in could not start the engine");
        return CloseHost(options.host, host, kExitFailed);
    }
    QuillonRenderSession* session = calls.newSession();
    if (!session) {
        HostError("the plug-in could not make a session object");
        return CloseHost(options.host, host, kExitFailed);
    }
    const int code = ScriptRun(options.script, calls, session).Run(lines);
    calls.freeSession(session);
    calls.freeThreads();
    return CloseHost(options.host, host, code);
}

}  // namespace

CLI::App* AddRenderSessionCommand(CLI::App& app, RenderSessionOptions& options) {
    CLI::App* command = app.add_subcommand(
        "session", "run a script of render session commands against the plug-in (see aehost/README.md)");
    command->add_option("script", options.script, "the session script, one command a line")
        ->required()
        ->check(RegularFile());
    command->add_option("--app-dir", options.host.appDir,
                        "host application folder (default: $AEHOST_APP_DIR, else lib/quillon-ae/AfterEffects "
                        "beside the aehost binary's folder)");
    command->add_option("--plugin", options.host.plugin, "plug-in library to load instead of the installed one");
    command->add_flag("--allow-leaks", options.host.allowLeaks,
                      "report handles the plug-in left open, but do not fail because of them");
    return command;
}

int RunRenderSession(const RenderSessionOptions& options, const char* argv0) {
    std::string bytes;
    std::string error;
    if (!qae::files::ReadWholeFile(options.script, {kMaxScriptBytes, "a session script"}, &bytes, &error)) {
        HostError(error);
        return kExitBadInput;
    }
    std::vector<ScriptLine> lines;
    try {
        lines = ParseScript(bytes);
    } catch (const ScriptError& mistake) {
        HostError(options.script + ":" + std::to_string(mistake.line) + ": " + mistake.text);
        return kExitBadInput;
    }
    return RunWithPlugin(options, argv0, lines);
}

}  // namespace aehost

// The object model that scripts read: app, app.project, items, layers and their
// property trees, with the classes that `instanceof` tests (CompItem,
// FootageItem, FolderItem, AVLayer, CameraLayer, LightLayer, TextLayer,
// ShapeLayer, PropertyGroup, Property, TextDocument). As in the host, a layer and a property
// group can be called like a function with a name: layer("Transform") is
// layer.property("Transform"). Values are read through the natives every time,
// so an object always shows the project as it is now.
#include "aehost/script/project_natives.h"

namespace aehost {
namespace {

constexpr const char* kProjectObjects = R"JS(function (host, global) {
    var PropertyType = { PROPERTY: 6812, INDEXED_GROUP: 6813, NAMED_GROUP: 6814 };
    var PropertyValueType = { NO_VALUE: 6412, ThreeD_SPATIAL: 6413, ThreeD: 6414, TwoD_SPATIAL: 6415,
                              TwoD: 6416, OneD: 6417, COLOR: 6418, CUSTOM_VALUE: 6419, MARKER: 6420,
                              LAYER_INDEX: 6421, MASK_INDEX: 6422, SHAPE: 6423, TEXT_DOCUMENT: 6424 };
    var KeyframeInterpolationType = { LINEAR: 6612, BEZIER: 6613, HOLD: 6614 };

    function subclass(base, ctor) {
        ctor.prototype = Object.create(base.prototype);
        ctor.prototype.constructor = ctor;
        return ctor;
    }
    function getters(proto, table) {
        for (var key in table) Object.defineProperty(proto, key, { get: table[key], configurable: true });
    }
    // An object that is also a function of a property name, with `proto` as its prototype.
    function callable(proto) {
        var f = function (key) { return f.property(key); };
        Object.setPrototypeOf(f, proto);
        return f;
    }
    function setName(object, name) {
        Object.defineProperty(object, "name", { value: name, writable: true, configurable: true });
    }

    // --- properties -------------------------------------------------------
    function PropertyBase() {}
    var PropertyGroup = subclass(PropertyBase, function PropertyGroup() {});
    var Property = subclass(PropertyBase, function Property() {});

    function makeGroup(proto, description, parent, index, layer) {
        var group = callable(proto);
        setName(group, description.name);
        group.matchName = description.matchName;
        group.propertyIndex = index;
        group.parentProperty = parent;
        group.propertyDepth = parent ? parent.propertyDepth + 1 : 0;
        group.propertyType = PropertyType.NAMED_GROUP;
        group._layer = layer;
        group._children = description.children;
        group._made = [];
        for (var i = 0; i < description.children.length; i++) {
            if (!description.children[i].attribute) continue;
            (function (i) {
                Object.defineProperty(group, description.children[i].attribute, {
                    get: function () { return group.property(i + 1); }, configurable: true });
            })(i);
        }
        return group;
    }
    PropertyGroup.prototype.property = function (key) {
        var children = this._children;
        for (var i = 0; i < children.length; i++) {
            var found = typeof key === "number" ? i + 1 === key
                                                : children[i].name === key || children[i].matchName === key;
            if (found) return this._made[i] || (this._made[i] = this._make(children[i], i + 1));
        }
        return null;
    };
    // Gives a new property its place under `parent`.
    function placeProperty(property, description, parent, index) {
        setName(property, description.name);
        property.matchName = description.matchName;
        property.propertyIndex = index;
        property.parentProperty = parent;
        property.propertyDepth = parent.propertyDepth + 1;
        property._layer = parent._layer;
        return property;
    }
    PropertyGroup.prototype._make = function (description, index) {
        if (description.model !== undefined) {
            var modelProperty = placeProperty(new LayerModelProperty(), description, this, index);
            modelProperty._address = description.model;
            return modelProperty;
        }
        if (description.shape !== undefined || description.constant !== undefined) {
            var shapeProperty = placeProperty(new ShapeProperty(), description, this, index);
            shapeProperty._address = description.shape;
            shapeProperty._constant = description.constant;
            return shapeProperty;
        }
        if (description.stream === undefined) {
            return makeGroup(PropertyGroup.prototype, description, this, index, this._layer);
        }
        var property = description.matchName === "ADBE Text Document" ? new TextDocumentProperty() : new Property();
        placeProperty(property, description, this, index);
        property._stream = description.stream;
        return property;
    };
    getters(PropertyGroup.prototype, {
        numProperties: function () { return this._children.length; }
    });

    Property.prototype.propertyType = PropertyType.PROPERTY;
    Property.prototype.canVaryOverTime = true;
    Property.prototype._ids = function () { return [this._layer._compId, this._layer._id, this._stream]; };
    Property.prototype._info = function () { var i = this._ids(); return host.stream(i[0], i[1], i[2]); };
    Property.prototype.valueAtTime = function (time, preExpression) {
        var i = this._ids();
        return host.valueAt(i[0], i[1], i[2], Number(time), !!preExpression);
    };
    Property.prototype.keyTime = function (key) {
        var i = this._ids();
        return host.keyTime(i[0], i[1], i[2], Number(key));
    };
    Property.prototype.keyValue = function (key) {
        var i = this._ids();
        return host.keyValue(i[0], i[1], i[2], Number(key));
    };
    Property.prototype.setTemporalEaseAtKey = function (key, easeIn, easeOut) {
        function pairs(eases) {
            var result = [];
            for (var j = 0; j < (eases ? eases.length : 0); j++) result.push([eases[j].speed, eases[j].influence]);
            return result;
        }
        var i = this._ids();
        host.setTemporalEase(i[0], i[1], i[2], Number(key), pairs(easeIn), pairs(easeOut || easeIn));
    };
    // Only Position separates: its followers are the one-dimensional X, Y and Z Position.
    var followerNames = ["X Position", "Y Position", "Z Position"];
    var firstFollowerStream = 1000;
    Property.prototype.getSeparationFollower = function (dimension) {
        if (!this._info().separated) throw new Error("the property \"" + this.name + "\" is not separated");
        var d = Number(dimension);
        if (!(d >= 0 && d <= 2 && Math.floor(d) === d)) throw new Error("no follower of dimension " + dimension);
        var follower = new Property();
        setName(follower, followerNames[d]);
        follower.matchName = this.matchName + "_" + d;
        follower.propertyIndex = this.propertyIndex;
        follower.parentProperty = this.parentProperty;
        follower.propertyDepth = this.propertyDepth;
        follower._layer = this._layer;
        follower._stream = firstFollowerStream + d;
        follower._leader = this;
        return follower;
    };
    Property.prototype.valueOf = function () { return this.value; };
    getters(Property.prototype, {
        value: function () { return this.valueAtTime(host.currentTime(), false); },
        numKeys: function () { return this._info().numKeys; },
        isTimeVarying: function () { return this._info().timeVarying; },
        expression: function () { return this._info().expression; },
        expressionEnabled: function () { return this._info().expressionEnabled; },
        propertyValueType: function () { return PropertyValueType[this._info().kind]; },
        dimensionsSeparated: function () { return !!this._info().separated; },
        isSeparationFollower: function () { return this._leader !== undefined; },
        isSeparationLeader: function () { return !!this._info().separated; }
    });
    // value[0] reads like an array, as in expressions.
    for (var d = 0; d < 4; d++) {
        (function (d) {
            Object.defineProperty(Property.prototype, d, { get: function () { return this.value[d]; } });
        })(d);
    }

    // Keys that are only times: those of markers and of source text.
    function keyTimeOf(times, key) {
        if (key < 1 || key > times.length) throw new Error("key " + key + " is out of range");
        return times[key - 1];
    }

    // The marker group of a layer or composition: keys are the markers.
    var MarkerProperty = subclass(Property, function MarkerProperty() {});
    MarkerProperty.prototype._times = function () {
        return host.markerTimes(this._layer._compId, this._layer._id);
    };
    MarkerProperty.prototype.keyTime = function (key) { return keyTimeOf(this._times(), key); };
    getters(MarkerProperty.prototype, {
        numKeys: function () { return this._times().length; },
        isTimeVarying: function () { return this._times().length > 0; },
        propertyValueType: function () { return PropertyValueType.MARKER; },
        value: function () { return undefined; }
    });

    // --- shapes -------------------------------------------------------------
    // A path's value, with tangents relative to their vertices.
    function Shape() { this.vertices = []; this.inTangents = []; this.outTangents = []; this.closed = true; }

    // A value of the shape tree, read through the natives by its address; a
    // constant one (direction, composite, blend mode) holds its number.
    var ShapeProperty = subclass(Property, function ShapeProperty() {});
    ShapeProperty.prototype._info = function () {
        if (this._address === undefined) return { numKeys: 0, timeVarying: false, kind: "OneD" };
        return host.shapeStream(this._layer._compId, this._layer._id, this._address);
    };
    ShapeProperty.prototype._valueAt = function (time) {
        return host.shapeValueAt(this._layer._compId, this._layer._id, this._address, time);
    };
    ShapeProperty.prototype.valueAtTime = function (time) {
        if (this._address === undefined) return this._constant;
        var value = this._valueAt(Number(time));
        if (this._info().kind !== "SHAPE") return value;
        var shape = new Shape();
        for (var key in value) shape[key] = value[key];
        return shape;
    };
    ShapeProperty.prototype.keyTime = function (key) {
        if (this._address === undefined) return keyTimeOf([], key);
        return host.shapeKeyTime(this._layer._compId, this._layer._id, this._address, Number(key));
    };
    ShapeProperty.prototype.keyValue = function (key) { return this.valueAtTime(this.keyTime(key)); };
    ShapeProperty.prototype.setTemporalEaseAtKey = function () {
        throw new Error("the property \"" + this.name + "\" takes no ease here");
    };
    getters(ShapeProperty.prototype, {
        expression: function () { return ""; },
        expressionEnabled: function () { return false; }
    });

    // --- masks and path options ---------------------------------------------
    // A value a layer keeps outside its streams and its shape tree: a mask's path, or a path
    // option of a text ("Path", whose value is the one-based index of the mask, and the
    // margins). It reads like a shape value, addressed by a kind and an index.
    var LayerModelProperty = subclass(ShapeProperty, function LayerModelProperty() {});
    LayerModelProperty.prototype._info = function () {
        return host.modelStream(this._layer._compId, this._layer._id, this._address);
    };
    LayerModelProperty.prototype._valueAt = function (time) {
        return host.modelValueAt(this._layer._compId, this._layer._id, this._address, time);
    };
    LayerModelProperty.prototype.keyTime = function (key) { return keyTimeOf(this._info().times, Number(key)); };

    // --- text ---------------------------------------------------------------
    var ParagraphJustification = { LEFT_JUSTIFY: 7213, RIGHT_JUSTIFY: 7214, CENTER_JUSTIFY: 7215,
                                   FULL_JUSTIFY_LASTLINE_LEFT: 7216, FULL_JUSTIFY_LASTLINE_RIGHT: 7217,
                                   FULL_JUSTIFY_LASTLINE_CENTER: 7218, FULL_JUSTIFY_LASTLINE_FULL: 7219 };
    // A text document prints as its text, as in the host.
    function TextDocument(text) { this.text = text === undefined ? "" : String(text); }
    TextDocument.prototype.toString = function () { return this.text; };

    // Source Text: its values are text documents, and its keys hold until the next.
    var TextDocumentProperty = subclass(Property, function TextDocumentProperty() {});
    TextDocumentProperty.prototype.valueAtTime = function (time) {
        var members = host.textDocument(this._layer._compId, this._layer._id, Number(time));
        var document = new TextDocument(members.text);
        for (var key in members) document[key] = members[key];
        return document;
    };
    TextDocumentProperty.prototype._times = function () {
        return host.sourceTextKeys(this._layer._compId, this._layer._id);
    };
    TextDocumentProperty.prototype.keyTime = function (key) { return keyTimeOf(this._times(), key); };
    TextDocumentProperty.prototype.keyValue = function (key) { return this.valueAtTime(this.keyTime(key)); };
    getters(TextDocumentProperty.prototype, {
        numKeys: function () { return this._times().length; },
        isTimeVarying: function () { return this._times().length > 1; },
        expression: function () { return ""; },
        expressionEnabled: function () { return false; },
        propertyValueType: function () { return PropertyValueType.TEXT_DOCUMENT; }
    });

    // --- layers -----------------------------------------------------------
    var Layer = subclass(PropertyGroup, function Layer() {});
    var AVLayer = subclass(Layer, function AVLayer() {});
    var CameraLayer = subclass(Layer, function CameraLayer() {});
    var LightLayer = subclass(Layer, function LightLayer() {});
    var TextLayer = subclass(AVLayer, function TextLayer() {});
    var ShapeLayer = subclass(AVLayer, function ShapeLayer() {});
    var layerClasses = {
        av: [AVLayer, "ADBE AV Layer"], camera: [CameraLayer, "ADBE Camera Layer"],
        light: [LightLayer, "ADBE Light Layer"], text: [TextLayer, "ADBE Text Layer"],
        shape: [ShapeLayer, "ADBE Vector Layer"]
    };
    // Objects are kept by id so that two reads give the same object; one is made
    // anew when the project under the same id holds something else now (another
    // project, another kind of layer, a changed set of properties).
    var layerCache = {};

    function layerObject(compId, id) {
        if (!id) return null;
        var info = host.layer(compId, id);
        var children = host.layerTree(compId, id);
        var kept = layerCache[id];
        if (kept && kept._compId === compId && kept._objectType === info.objectType &&
            JSON.stringify(kept._children) === JSON.stringify(children)) {
            return kept;
        }
        var kind = layerClasses[info.objectType];
        var layer = makeGroup(kind[0].prototype,
                              { name: info.name, matchName: kind[1], children: children },
                              null, info.index, null);
        layer._layer = layer;
        layer._compId = compId;
        layer._id = id;
        layer._objectType = info.objectType;
        layer.propertyType = PropertyType.INDEXED_GROUP;
        // A function has a name of its own, which would hide the layer's current name.
        Object.defineProperty(layer, "name", { get: function () { return layerInfo(layer).name; },
                                               configurable: true });
        layerCache[id] = layer;
        return layer;
    }
    // The host also finds a transform property by name from the layer itself:
    // layer.property("Position") is the Position of its Transform group.
    Layer.prototype.property = function (key) {
        var direct = PropertyGroup.prototype.property.call(this, key);
        if (direct || typeof key === "number") return direct;
        var transform = PropertyGroup.prototype.property.call(this, "ADBE Transform Group");
        return transform ? transform.property(key) : null;
    };
    Layer.prototype._make = function (description, index) {
        if (description.matchName === "ADBE Marker") {
            var marker = new MarkerProperty();
            setName(marker, description.name);
            marker.matchName = description.matchName;
            marker.propertyIndex = index;
            marker.parentProperty = this;
            marker.propertyDepth = 1;
            marker._layer = this;
            return marker;
        }
        return PropertyGroup.prototype._make.call(this, description, index);
    };
    function layerInfo(layer) { return host.layer(layer._compId, layer._id); }
    getters(Layer.prototype, {
        index: function () { return layerInfo(this).index; },
        id: function () { return this._id; },
        enabled: function () { return layerInfo(this).enabled; },
        locked: function () { return layerInfo(this).locked; },
        shy: function () { return layerInfo(this).shy; },
        nullLayer: function () { return layerInfo(this).nullLayer; },
        inPoint: function () { return layerInfo(this).inPoint; },
        outPoint: function () { return layerInfo(this).outPoint; },
        startTime: function () { return layerInfo(this).startTime; },
        stretch: function () { return layerInfo(this).stretch; },
        parent: function () { return layerObject(this._compId, layerInfo(this).parentId); },
        containingComp: function () { return itemObject(this._compId); },
        hasVideo: function () { return !(this instanceof CameraLayer) && !(this instanceof LightLayer); }
    });
    getters(AVLayer.prototype, {
        source: function () { var id = layerInfo(this).sourceId; return id ? itemObject(id) : null; },
        threeDLayer: function () { return layerInfo(this).threeDLayer; },
        width: function () { var s = this.source; return s ? s.width : 0; },
        height: function () { var s = this.source; return s ? s.height : 0; }
    });

    // --- items ------------------------------------------------------------
    function Item() {}
    var AVItem = subclass(Item, function AVItem() {});
    var CompItem = subclass(AVItem, function CompItem() {});
    var FootageItem = subclass(AVItem, function FootageItem() {});
    var FolderItem = subclass(Item, function FolderItem() {});
    var itemClasses = { Composition: CompItem, Footage: FootageItem, Folder: FolderItem };
    var itemCache = {};

    function itemObject(id) {
        if (id < 0) return null;
        var itemClass = itemClasses[host.item(id).kind];
        if (itemCache[id] instanceof itemClass) return itemCache[id];
        var item = new itemClass();
        item._id = id;
        itemCache[id] = item;
        return item;
    }
    function itemInfo(item) { return host.item(item._id); }
    function itemAt(ids, index) {
        if (index < 1 || index > ids.length) throw new Error("index " + index + " is out of range");
        return itemObject(ids[index - 1]);
    }
    getters(Item.prototype, {
        id: function () { return this._id; },
        name: function () { return itemInfo(this).name; },
        typeName: function () { return itemInfo(this).kind; },
        parentFolder: function () { return itemObject(itemInfo(this).folderId); }
    });
    getters(AVItem.prototype, {
        width: function () { return itemInfo(this).width; },
        height: function () { return itemInfo(this).height; },
        pixelAspect: function () { return itemInfo(this).pixelAspect; },
        duration: function () { return itemInfo(this).duration; },
        frameRate: function () { return itemInfo(this).frameRate; },
        frameDuration: function () { var rate = itemInfo(this).frameRate; return rate > 0 ? 1 / rate : 0; }
    });
    CompItem.prototype.layer = function (key) {
        var id = host.layerId(this._id, typeof key === "number" ? key : String(key));
        if (!id && typeof key === "number") throw new Error("layer index " + key + " is out of range");
        return layerObject(this._id, id);
    };
    getters(CompItem.prototype, {
        numLayers: function () { return itemInfo(this).numLayers; },
        layers: function () {
            var collection = { length: this.numLayers };
            for (var i = 1; i <= collection.length; i++) collection[i] = this.layer(i);
            return collection;
        },
        time: function () { return host.currentTime(); },
        displayStartTime: function () { return itemInfo(this).displayStartTime; },
        workAreaStart: function () { return itemInfo(this).workAreaStart; },
        workAreaDuration: function () { return itemInfo(this).workAreaDuration; },
        bgColor: function () { return itemInfo(this).color; },
        markerProperty: function () {
            var marker = new MarkerProperty();
            setName(marker, "Marker");
            marker._layer = { _compId: this._id, _id: 0 };
            return marker;
        }
    });
    getters(FootageItem.prototype, {
        file: function () { var path = itemInfo(this).file; return path ? new File(path) : null; },
        mainSource: function () {
            var info = itemInfo(this);
            return info.solid ? { color: info.color, isStill: true } : { file: this.file, isStill: false };
        }
    });
    FolderItem.prototype.item = function (index) { return itemAt(host.itemIds(this._id), index); };
    getters(FolderItem.prototype, {
        numItems: function () { return host.itemIds(this._id).length; }
    });

    function KeyframeEase(speed, influence) {
        if (!(this instanceof KeyframeEase)) return new KeyframeEase(speed, influence);
        this.speed = Number(speed);
        this.influence = Number(influence);
    }

    var project = {
        item: function (index) { return itemAt(host.itemIds(-1), index); },
        beginUndoGroup: function () {},
        endUndoGroup: function () {}
    };
    getters(project, {
        activeItem: function () { return itemObject(host.activeItem()); },
        file: function () { var path = host.projectPath(); return path === null ? null : new File(path); },
        numItems: function () { return host.itemIds(-1).length; },
        rootFolder: function () { return itemObject(0); }
    });

    global.app = {
        project: project,
        version: "24.0",
        isoLanguage: "en_US",
        beginUndoGroup: function () {},
        endUndoGroup: function () {}
    };
    var classes = { PropertyBase: PropertyBase, PropertyGroup: PropertyGroup, Property: Property,
                    MaskPropertyGroup: subclass(PropertyGroup, function MaskPropertyGroup() {}),
                    Layer: Layer, AVLayer: AVLayer, CameraLayer: CameraLayer, LightLayer: LightLayer,
                    TextLayer: TextLayer, ShapeLayer: ShapeLayer, Shape: Shape, Item: Item, AVItem: AVItem,
                    CompItem: CompItem, FootageItem: FootageItem, FolderItem: FolderItem,
                    KeyframeEase: KeyframeEase, PropertyType: PropertyType, TextDocument: TextDocument,
                    ParagraphJustification: ParagraphJustification,
                    PropertyValueType: PropertyValueType,
                    KeyframeInterpolationType: KeyframeInterpolationType };
    for (var name in classes) global[name] = classes[name];
})JS";

}  // namespace

void InstallProject(duk_context* ctx) { RunPrelude(ctx, "app", kProjectObjects, ProjectNatives()); }

}  // namespace aehost

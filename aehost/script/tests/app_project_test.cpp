// app.project over a small project built here, read by scripts as the plug-in
// writes them. Expected values are worked out from the keys by hand.
#include "aehost/model/edit.h"
#include "aehost/model/project.h"
#include "aehost/script/expression_engine.h"
#include "aehost/script/script_engine.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

namespace aehost {
namespace {

class AppProject : public ::testing::Test {
protected:
    void SetUp() override {
        project = NewProject();
        project.path = "/shots/show.aep";
        comp = &AddComp(project, "Main", 1920, 1080, 1.0, 10.0, 25.0);
        // Added bottom first: the timeline reads camera, text, shape, solid from the top.
        solid = &AddSolidLayer(project, *comp, "Red Solid", 200, 100, V(1, 0, 0));
        solid->switches.threeD = true;
        solid->startTime = 1.0;
        Stream& position = EnsureStream(project, *comp, *solid, LayerStream::Position);
        AddKeyframe(position, 0.0, V(0, 0, 0));
        AddKeyframe(position, 1.0, V(100, 50, -20));
        shape = &AddNullLayer(project, *comp, "Outline");
        shape->objectType = LayerObjectType::Shape;
        shape->name = "Outline";
        text = &AddNullLayer(project, *comp, "Title");
        text->objectType = LayerObjectType::Text;
        text->name = "Title";
        camera = &AddCameraLayer(project, *comp, "Camera 1", 960, 540);
        context.project = &project;
        context.activeItem = [this] { return comp->id; };
    }

    std::string Run(const std::string& source) { return RunOk(context, source); }
    std::string Fail(const std::string& source) { return RunFails(context, source); }

    Project project;
    Item* comp = nullptr;
    Layer* solid = nullptr;
    Layer* shape = nullptr;
    Layer* text = nullptr;
    Layer* camera = nullptr;
    ScriptContext context;
};

TEST_F(AppProject, TheActiveCompositionAndItsLayers) {
    EXPECT_EQ(Run("var c = app.project.activeItem; [c instanceof CompItem, c.name, c.numLayers, c.width, "
                  "c.frameRate, c.layer(1).name, c.layer('Red Solid').index].join();"),
              "true,Main,4,1920,25,Camera 1,4");
    EXPECT_EQ(Run("var c = app.project.activeItem; [c.layer(1) instanceof CameraLayer, c.layer(1) instanceof AVLayer,"
                  " c.layer(2) instanceof TextLayer, c.layer(2) instanceof AVLayer, c.layer(3) instanceof ShapeLayer,"
                  " c.layer(4) instanceof AVLayer, c.layer(4) instanceof TextLayer, c.layer(4).source instanceof FootageItem,"
                  " c.layer(4).source.name, c.layer(4).threeDLayer].join();"),
              "true,false,true,true,true,true,false,true,Red Solid,true");
    EXPECT_EQ(Run("app.project.file.fsName;"), "/shots/show.aep");
    project.path.clear();
    EXPECT_EQ(Run("app.project.file === null;"), "true");
    context.activeItem = [] { return -1; };
    EXPECT_EQ(Run("app.project.activeItem === null;"), "true");
}

TEST_F(AppProject, PropertiesByNameMatchNameIndexAndCall) {
    EXPECT_EQ(Run("var l = app.project.activeItem.layer(4); var p = l.property('Transform').property('Position');"
                  "[p.name, p.matchName, p.propertyIndex, p.parentProperty.matchName, p.propertyType == PropertyType.PROPERTY,"
                  " l('ADBE Transform Group')('ADBE Position') === p, l.transform.position === p,"
                  " l.property('Transform').property(2) === p, l.property('No Such') === null, l.property('Position') === p,"
                  " l('ADBE Rotate X').name, l.property(4).matchName].join();"),
              "Position,ADBE Position,2,ADBE Transform Group,true,true,true,true,true,true,X Rotation,ADBE Transform Group");
    // A camera's anchor point is its point of interest; its zoom defaults to a 50 mm lens on
    // 36 mm film, 1920 * 50 / 36; it has no masks.
    EXPECT_EQ(Run("var l = app.project.activeItem.layer(1); [l.transform.property(1).name,"
                  " l.property('Camera Options').property('Zoom').value * 36, l.property('ADBE Mask Parade') === null].join();"),
              "Point of Interest,96000,true");
    // A text and a shape layer have their content groups, at index 2 of the layer.
    EXPECT_EQ(Run("var c = app.project.activeItem; [c.layer(2).property('ADBE Text Properties').name,"
                  " c.layer(3)('ADBE Root Vectors Group').name, c.layer(3)('ADBE Root Vectors Group').propertyIndex,"
                  " c.layer(3)('ADBE Root Vectors Group').numProperties, c.layer(3).parentProperty].join();"),
              "Text,Contents,2,0,");
}

TEST_F(AppProject, ValuesKeysAndTimes) {
    // Keys at layer times 0 and 1 of a layer that starts at 1 s: composition times 1 and 2.
    const std::string p = "var p = app.project.activeItem.layer(4).property('Transform').property('Position');";
    EXPECT_EQ(Run(p + "[p.numKeys, p.keyTime(1), p.keyTime(2).toString(), p.isTimeVarying].join('|');"), "2|1|2|true");
    // Linear between the keys: halfway at 1.5 s.
    EXPECT_EQ(Run(p + "p.valueAtTime(1.5, false);"), "50,25,-10");
    // Before the first key the first value: the current time of the host is 0.
    EXPECT_EQ(Run(p + "p.value;"), "0,0,0");
    context.currentTime = 3.0;
    EXPECT_EQ(Run(p + "p.value + '|' + p[0] + '|' + p.keyValue(1);"), "100,50,-20|100|0,0,0");
    EXPECT_EQ(Run("var o = app.project.activeItem.layer(4).transform.opacity; [o.value, o.numKeys, o.isTimeVarying].join();"),
              "100,0,false");
    EXPECT_NE(Fail(p + "p.keyTime(3);").find("key 3 is out of range"), std::string::npos);
}

TEST_F(AppProject, TheTemporalEaseScriptOfTheImporterChangesTheKey) {
    const std::string script =
        "var comp = app.project.activeItem;\n"
        "var posProperty = comp.layer(4).property(\"Position\");\n"
        "myProperty = posProperty;\n"
        "var easeIn = new KeyframeEase(10,50);\n"
        "var easeOut = new KeyframeEase(12.5,50);\n"
        "myProperty.setTemporalEaseAtKey(2, [easeIn], [easeOut]);\n\n";
    // The layer finds Position in its Transform group.
    Run(script);
    const Keyframe& key = solid->streams.at(LayerStream::Position).keys[1];
    EXPECT_EQ(key.easeIn[0], (Ease{10.0, 50.0}));
    EXPECT_EQ(key.easeOut[0], (Ease{12.5, 50.0}));
    EXPECT_EQ(key.in, Interpolation::Bezier);
    EXPECT_EQ(key.out, Interpolation::Bezier);
    EXPECT_NE(Fail("app.project.activeItem.layer(4).transform.position.setTemporalEaseAtKey(1, [new KeyframeEase(0, 0)]);")
                  .find("influence"), std::string::npos);
    context.readOnly = true;
    EXPECT_NE(Fail("app.project.activeItem.layer(4).transform.position.setTemporalEaseAtKey(1, [new KeyframeEase(0, 50)]);")
                  .find("cannot be changed"), std::string::npos);
}

// The query templates of the text and shape readers, for layer index 1 (getLayerData(1)).
TEST_F(AppProject, TheQueryTemplatesRunAndReplyAsTheReadersExpect) {
    const std::string textDocument =
        "function getLayerData(layerId) {\n  var comp = app.project.activeItem;\n"
        "  var layerItem = comp.layer(layerId+1);\n  if (layerItem instanceof TextLayer)\n  {\n"
        "    return layerItem.property(\"ADBE Text Properties\").property(\"ADBE Text Document\").value.fontSize;\n"
        "  }\n}\n";
    // Layer index 3 is the solid: no text, no return, the reply is "undefined".
    EXPECT_EQ(Run(textDocument + "getLayerData(3);"), "undefined");
    const std::string pathOption =
        "function getLayerData(layerId) { \n var comp = app.project.activeItem;\n var layerItem = comp.layer(layerId+1);\n"
        "   if (layerItem instanceof TextLayer){\n      var hasText = layerItem.property(\"Text\");\n"
        "     if (hasText){\n       var hasPathOptions = hasText.property(\"Path Options\");\n"
        "       if (hasPathOptions){\n         var itemDetails = hasPathOptions.property(\"First Margin\");\n"
        "         if (itemDetails){\n           return itemDetails.numKeys;\n         }\n       }\n     }\n   }\n"
        " return \"0\";\n}";
    EXPECT_EQ(Run(pathOption + "getLayerData(1);"), "0");
    const std::string rootVectors =
        "function getLayerData(layerId) \n{   var comp = app.project.activeItem; \n var layerItem = comp.layer(layerId+1);\n"
        "    if (layerItem instanceof ShapeLayer){ \n      var shpLayer = layerItem;\n"
        "      return shpLayer(\"ADBE Root Vectors Group\").numProperties;\n    }\n  return \"0\";\n}\n";
    EXPECT_EQ(Run(rootVectors + "getLayerData(2);"), "0");
}

// The text document of a text layer as the text readers ask for it: numbers and
// flags as the host prints them, colours as three fractions, keys that hold.
TEST_F(AppProject, TheSourceTextOfATextLayerRepliesAsTheHostPrintsIt) {
    text->startTime = 1.0;
    text->text.document.fontSize = 36.5;
    text->text.document.fillColor = {1.0, 0.5, 0.25};
    text->text.document.justification = Justification::Center;
    text->text.document.applyStroke = true;
    text->text.document.text = "First";
    TextDocument second = text->text.document;
    second.text = "Second";
    text->text.keys = {{0.0, text->text.document}, {1.5, second}};
    const std::string document =
        "var p = app.project.activeItem.layer(2).property(\"ADBE Text Properties\").property(\"ADBE Text Document\"); ";
    EXPECT_EQ(Run(document + "p.value.fontSize;"), "36.5");
    EXPECT_EQ(Run(document + "p.value.fillColor;"), "1,0.5,0.25");
    EXPECT_EQ(Run(document + "p.value.justification === ParagraphJustification.CENTER_JUSTIFY;"), "true");
    EXPECT_EQ(Run(document + "[p.value.applyFill, p.value.applyStroke, p.value.strokeOverFill].join();"),
              "true,true,false");
    EXPECT_EQ(Run(document + "p.value.font;"), "DejaVuSans");
    // Key times are composition times: the layer starts at 1 s.
    EXPECT_EQ(Run(document + "[p.numKeys, p.keyTime(2), p.isTimeVarying].join();"), "2,2.5,true");
    EXPECT_EQ(Run(document + "p.valueAtTime(2.4,false);"), "First");
    EXPECT_EQ(Run(document + "p.valueAtTime(2.5,false).text;"), "Second");
    EXPECT_EQ(Run(document + "p.value instanceof TextDocument;"), "true");
    EXPECT_NE(Fail(document + "p.keyTime(3);").find("key 3 is out of range"), std::string::npos);
}

TEST_F(AppProject, ObjectsAreTheSameOnEveryReadUntilTheProjectChangesUnderThem) {
    EXPECT_EQ(Run("var c = app.project.activeItem; var kept = c.layer(1); c.layer(1) === kept && c === app.project.item(1);"),
              "true");
    // The camera stops looking at its point of interest: its transform loses that property.
    camera->switches.autoOrient = AutoOrient::Off;
    EXPECT_EQ(Run("var now = app.project.activeItem.layer(1); [now === kept, now.transform.property(1).name].join();"),
              "false,Position");
    // Another project under the same ids: the item with id 1 is a folder there.
    Project other = NewProject();
    AddFolder(other, "Footage");
    context.project = &other;
    EXPECT_EQ(Run("[app.project.item(1) instanceof FolderItem, app.project.item(1).name].join();"), "true,Footage");
}

TEST_F(AppProject, HandlesThatOutliveTheirObjectsGiveErrors) {
    Run("var kept = app.project.activeItem.layer(4);");
    comp->comp.layers.pop_back();
    EXPECT_NE(Fail("kept.name;").find("no longer in \"Main\""), std::string::npos);
    EXPECT_NE(Fail("app.project.activeItem.layer(9);").find("layer index 9 is out of range"), std::string::npos);
    context.project = nullptr;
    EXPECT_EQ(Run("[app.project.numItems, app.project.activeItem].join();"), "0,");
}

TEST_F(AppProject, FoldersItemsAndLayerCollections) {
    // Items in order of creation: the composition, then the "Solids" folder with the three
    // solids that the solid and the two nulls were made from.
    EXPECT_EQ(Run("var p = app.project; [p.numItems, p.item(1).name, p.item(2) instanceof FolderItem, p.item(2).name,"
                  " p.item(2).numItems, p.item(2).item(1).name, p.item(3).parentFolder.name, p.rootFolder.numItems].join();"),
              "5,Main,true,Solids,3,Red Solid,Solids,2");
    EXPECT_EQ(Run("var c = app.project.activeItem; var l = c.layers; [l.length, l[1].name, l[4].name,"
                  " l[4].source.mainSource.color, l[4].containingComp === c].join('|');"),
              "4|Camera 1|Red Solid|1,0,0|true");
    EXPECT_NE(Fail("app.project.item(6);").find("index 6 is out of range"), std::string::npos);
}

TEST_F(AppProject, MarkersAreKeysInCompositionTime) {
    // Layer markers at layer times 0.5 and 2 on a layer that starts at 1 s.
    solid->markers = {Marker{0.5, 0.0, "a"}, Marker{2.0, 0.0, "b"}};
    comp->comp.markers = {Marker{4.0, 0.0, "c"}};
    EXPECT_EQ(Run("var c = app.project.activeItem; var m = c.layer(4).property('Marker');"
                  "[m.numKeys, m.keyTime(1), m.keyTime(2), c.markerProperty.numKeys, c.markerProperty.keyTime(1)].join();"),
              "2,1.5,3,1,4");
}

TEST_F(AppProject, AnExpressionThatNeverEndsDoesNotStopTheScriptThatReadsIt) {
    InstallExpressionEngine();
    Stream& opacity = EnsureStream(project, *comp, *solid, LayerStream::Opacity);
    opacity.value = V(35, 0);
    opacity.expression = "for (;;) {}";
    // The expression is stopped inside the script's read; the script sees the value before it.
    EXPECT_EQ(Run("var o = app.project.activeItem.layer(4).transform.opacity; [o.valueAtTime(1, false), o.expression].join('|');"),
              "35|for (;;) {}");
}

}  // namespace
}  // namespace aehost

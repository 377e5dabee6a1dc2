// The shape tree under "ADBE Root Vectors Group" as scripts read it: the
// host's names, match names and indexes, the walk up through parentProperty,
// and values, keys and paths read through the natives.
#include "aehost/model/edit.h"
#include "aehost/model/project.h"
#include "aehost/script/script_engine.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

namespace aehost {
namespace {

ShapeElement Element(ShapeKind kind, const std::string& name) {
    ShapeElement element = NewShapeElement(kind);
    element.name = name;
    return element;
}

class ShapeObjects : public ::testing::Test {
protected:
    void SetUp() override {
        project = NewProject();
        comp = &AddComp(project, "Main", 100, 100, 1.0, 10.0, 25.0);
        Layer& layer = AddNullLayer(project, *comp, "Shapes");
        layer.objectType = LayerObjectType::Shape;
        layer.startTime = 2.0;
        ShapeElement group = Element(ShapeKind::Group, "Group 2");
        ShapeElement path = Element(ShapeKind::Path, "Path");
        path.path.keys = {{0.0, {{{0, 0, 0, 0, 0, 0}, {10, 0, 0, 0, 1, 2}}, false}},
                          {1.0, {{{0, 0, 0, 0, 0, 0}, {20, 0, 0, 0, 1, 2}}, false}}};
        ShapeElement fill = Element(ShapeKind::Fill, "Fill 1");
        AddKeyframe(fill.params[0], 0.0, MakeValue(1, 0, 0, 1));
        AddKeyframe(fill.params[0], 1.0, MakeValue(0, 0, 1, 1));
        ShapeElement stroke = Element(ShapeKind::Stroke, "Stroke 1");
        stroke.compositeOver = false;
        group.contents = {path, fill, stroke};
        layer.shapes = {group, Element(ShapeKind::Star, "Star")};
        context.project = &project;
        context.activeItem = [this] { return comp->id; };
    }

    std::string Run(const std::string& source) { return RunOk(context, "var root = app.project.activeItem.layer(1)"
                                                                       "(\"ADBE Root Vectors Group\");" + source); }

    Project project;
    Item* comp = nullptr;
    ScriptContext context;
};

TEST_F(ShapeObjects, TheTreeHasTheHostsNamesAndIndexes) {
    EXPECT_EQ(Run("[root.name, root.propertyIndex, root.numProperties, root.property(1).matchName,"
                  " root.property(2).matchName, root.property(1).property(2).name,"
                  " root.property(1).property(2).propertyIndex, root.property(1).property(3).matchName].join();"),
              "Contents,2,2,ADBE Vector Group,ADBE Vector Shape - Star,Contents,2,ADBE Vector Transform Group");
    EXPECT_EQ(Run("var c = root.property(1).property('ADBE Vectors Group'); var names = [];"
                  "for (var i = 1; i <= c.numProperties; i++) names.push(c.property(i).name + '=' + c.property(i).matchName);"
                  "names.join();"),
              "Path=ADBE Vector Shape - Group,Fill 1=ADBE Vector Graphic - Fill,Stroke 1=ADBE Vector Graphic - Stroke");
    EXPECT_EQ(Run("var s = root.property('Star'); [s.property('Type').value, s.property('ADBE Vector Star Inner Roundess').name,"
                  " s.property('Points').value, s.property('Outer Radius').propertyType == PropertyType.PROPERTY].join();"),
              "1,Inner Roundness,5,true");
}

TEST_F(ShapeObjects, TheWalkUpEndsAtTheLayer) {
    EXPECT_EQ(Run("var p = root.property(1).property(2).property('Fill 1'); var names = [];"
                  "while (p) { names.push(p.name + ':' + p.propertyIndex); p = p.parentProperty; } names.join();"),
              "Fill 1:2,Contents:2,Group 2:1,Contents:2,Shapes:1");
}

TEST_F(ShapeObjects, ValuesAndKeysAreInCompositionTime) {
    EXPECT_EQ(Run("var f = root.property(1).property(2).property('Fill 1').property('Color');"
                  "[f.numKeys, f.isTimeVarying, f.keyTime(2), f.valueAtTime(3, false), f.propertyValueType == PropertyValueType.COLOR].join();"),
              "2,true,3,0,0,1,1,true");
    EXPECT_EQ(Run("var c = root.property(1).property(2);"
                  "[c.property('Fill 1').property('Composite').value, c.property('Stroke 1').property('Composite').value,"
                  " c.property('Stroke 1').property('Stroke Width').value, c.property('Stroke 1').property('Color').numKeys].join();"),
              "1,0,2,0");
}

TEST_F(ShapeObjects, APathReadsAsAShape) {
    EXPECT_EQ(Run("var p = root.property(1).property(2).property('Path').property('Path'); var v = p.valueAtTime(2.5, false);"
                  "[v instanceof Shape, v.closed, v.vertices[1], v.outTangents[1], p.numKeys, p.keyTime(1), p.isTimeVarying,"
                  " p.propertyValueType == PropertyValueType.SHAPE].join();"),
              "true,false,15,0,1,2,2,2,true,true");
}

}  // namespace
}  // namespace aehost

// A layer's masks and a text layer's path options as scripts read them: "ADBE Mask Parade"
// holds one group a mask, named as the mask, with its "ADBE Mask Shape" (a Shape, keys in
// composition time); the Text group holds "Path Options" with "Path" (the one-based index of
// the mask, 0 for none), "First Margin" and "Last Margin", each with value, valueAtTime,
// numKeys and keyTime. The layer starts at 2 s.
#include "aehost/model/edit.h"
#include "aehost/model/project.h"
#include "aehost/script/script_engine.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

namespace aehost {
namespace {

class MaskObjects : public ::testing::Test {
protected:
    void SetUp() override {
        project = NewProject();
        comp = &AddComp(project, "Main", 100, 100, 1.0, 10.0, 25.0);
        Layer& layer = AddNullLayer(project, *comp, "Title");
        layer.objectType = LayerObjectType::Text;
        layer.startTime = 2.0;
        Mask still{"Still", {}};
        still.shape.shape = {{{0, 0, 0, 0, 0, 0}, {10, 0, 0, 0, 0, 0}}, false};
        Mask moving{"Moving", {}};
        moving.shape.keys = {{0.0, {{{0, 0, 0, 0, 0, 0}, {10, 0, -1, 0, 1, 0}}, true}},
                             {1.0, {{{0, 0, 0, 0, 0, 0}, {30, 0, -1, 0, 1, 0}}, true}}};
        moving.shape.shape = moving.shape.keys.front().shape;
        layer.masks = {still, moving};
        layer.pathOptions.path = 2;
        AddKeyframe(layer.pathOptions.firstMargin, 0.0, MakeValue(10));
        AddKeyframe(layer.pathOptions.firstMargin, 1.0, MakeValue(30));
        layer.pathOptions.lastMargin.value = MakeValue(5);
        context.project = &project;
        context.activeItem = [this] { return comp->id; };
    }

    std::string Run(const std::string& source) {
        return RunOk(context, "var layer = app.project.activeItem.layer(1);"
                              "var masks = layer('ADBE Mask Parade');"
                              "var options = layer('Text')('Path Options');" + source);
    }

    Project project;
    Item* comp = nullptr;
    ScriptContext context;
};

TEST_F(MaskObjects, MasksAreGroupsNamedAsTheMaskWithTheirPath) {
    EXPECT_EQ(Run("[masks.numProperties, masks.property(1).name, masks.property(2).name,"
                  " masks.property('Moving').property('ADBE Mask Shape').name,"
                  " masks.property(2)('ADBE Mask Shape').parentProperty.name].join();"),
              "2,Still,Moving,Mask Path,Moving");
    EXPECT_EQ(Run("var s = masks.property(1)('ADBE Mask Shape'); var v = s.value;"
                  "[s.numKeys, v instanceof Shape, v.closed, v.vertices.join(';')].join('|');"),
              "0|true|false|0,0;10,0");
}

TEST_F(MaskObjects, AKeyedMaskPathInterpolatesInCompositionTime) {
    EXPECT_EQ(Run("var s = masks.property(2)('ADBE Mask Shape');"
                  "[s.numKeys, s.keyTime(1), s.keyTime(2), s.propertyValueType === PropertyValueType.SHAPE,"
                  " s.valueAtTime(2.5, false).vertices[1][0], s.valueAtTime(2.5, false).outTangents[1][0]].join();"),
              "2,2,3,true,20,1");
}

TEST_F(MaskObjects, PathOptionsGiveTheMaskIndexAndTheMargins) {
    EXPECT_EQ(Run("var m = options.property('First Margin');"
                  "[options.property('Path').value, m.numKeys, m.keyTime(2), m.valueAtTime(2.5, false), m.value,"
                  " options.property('Last Margin').value, options.property('Last Margin').numKeys].join();"),
              "2,2,3,20,10,5,0");
    EXPECT_EQ(Run("options.property('Path').propertyValueType === PropertyValueType.MASK_INDEX;"), "true");
}

}  // namespace
}  // namespace aehost

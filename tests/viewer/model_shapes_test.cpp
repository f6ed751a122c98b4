// Objects that are put on models follow what happens to these.
#include "ShapeFixture.h"

#include "interaction/editing/CAxDragger.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/models/AxModelLayers.h"

#include <osg/ValueObject>

#include <QFile>
#include <QTemporaryDir>

#include <cmath>

TEST_F(ShapeFixture, OnModelsFollowsThem)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("roof.obj"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("v -1000 -1000 4000\nv 1000 -1000 4000\nv 1000 1000 4000\nv -1000 1000 4000\nf 1 2 3 4\n");
    file.close();
    const QString elsewhere = folder.filePath("elsewhere.obj");
    ASSERT_TRUE(QFile::copy(file.fileName(), elsewhere));
    AxModelLayers& models = *viewer->GetModelLayers();
    AxEditAids aids;
    aids.clampToModels = true;
    viewer->SetEditAids(aids);
    CAx3DGeometry* const block = Import("on", {{18.0, 8.0}, {22.0, 8.0}, {20.0, 12.0}});
    ASSERT_TRUE(block);
    block->SetAnchorEditorEnabled(true);
    const auto& handles = block->GetAnchorEditor()->GetDraggerList();
    const auto standsAt = [&](double height) {
        return waitFor([&] {
            return std::abs(block->GetAnchor()[0].z() - height) < 5.0 &&
                   std::abs(handles[0]->GetPlace().z() - height) < 5.0;
        });
    };
    const double ground = block->GetAnchor()[0].z();
    AxModelOptions options;
    options.coordinateSystem = "ENU:-20,100";
    const QString first = models.Add(elsewhere, options);
    ASSERT_TRUE(waitFor([&] { return !models.Find(first)->isLoading; }));
    EXPECT_TRUE(standsAt(ground));
    options.coordinateSystem = "ENU:8,18";
    const QString roof = models.Add(file.fileName(), options);
    EXPECT_TRUE(standsAt(4000.0)) << "it comes later than the first one: " << block->GetAnchor()[0].z();
    bool isOnModels = false;
    EXPECT_TRUE(handles[0]->getUserValue("IntersectModel", isOnModels) && isOnModels);
    models.SetLift(roof, 100.0);
    EXPECT_TRUE(standsAt(4100.0)) << block->GetAnchor()[0].z();
    models.SetVisible(roof, false);
    EXPECT_TRUE(standsAt(ground)) << block->GetAnchor()[0].z();
    models.SetVisible(roof, true);
    EXPECT_TRUE(standsAt(4100.0)) << block->GetAnchor()[0].z();
    aids.clampToModels = false;
    viewer->SetEditAids(aids);
    EXPECT_TRUE(standsAt(ground)) << block->GetAnchor()[0].z();
    models.Clear();
}

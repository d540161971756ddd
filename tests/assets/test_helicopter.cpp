// The demonstration's helicopter: the parts that its logic moves, and how they are set up for it.
#include "support/DemoScene.h"

TEST_F(DemoScene, HelicopterHasThePartsThatAreMoved) {
    auto prefab = std::make_unique<ObjectPrefab>("data/assets/Targets/MODELS/HELICOPTER/HELICOPTER.prefab");
    ASSERT_TRUE(prefab->isLoaded());
    const auto part = [&](const std::string& name) { return prefab->getNodeByName(name); };
    for (const char* name :
         {"wing", "tail", "wing_mesh", "wing_plane", "tail_mesh", "tail_plane", "wiper_left", "wiper_right", "sonar",
          "winch", "dl_0", "dl_1", "dl_2", "dr_0", "dr_1", "dr_2", "anticollision_tail_light"}) {
        ASSERT_NE(part(name), nullptr) << name;
        EXPECT_EQ(part(name)->getType(), Node::MESH_STATIC) << name;
    }
    for (const char* disc : {"wing_plane", "tail_plane"}) {
        const Material& material = *part(disc)->asObject()->getSurfaceMaterial(0);
        EXPECT_EQ(material.alpha, Material::BLEND) << disc;
        EXPECT_TRUE(material.double_sided) << disc;
    }
    EXPECT_NEAR(boxIn(*prefab, *part("fuselage")).min.z, -STANDING, 0.02) << "its wheels";
    // The logic's sweep begins at this roll, in degrees.
    EXPECT_NEAR(part("wiper_left")->getRotation().toEulerZXY().z, -23.1, 0.1);
    EXPECT_NEAR(part("wiper_right")->getRotation().toEulerZXY().z, 23.1, 0.1);
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

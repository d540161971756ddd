// Writes the demonstration data into a runtime root. The build runs it after copying the checked-in texts there.
#include <gdal_priv.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "effects/Effects.h"
#include "gui/Icons.h"
#include "plan/Builders.h"
#include "world/Elevation.h"
#include "world/Imagery.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: build_assets ROOT\n");
        return 2;
    }
    try {
        const std::string root = argv[1];
        GDALAllRegister();
        // Prevents a separate file with statistics for the raster.
        CPLSetConfigOption("GDAL_PAM_ENABLED", "NO");
        std::filesystem::create_directories(root + "/data/DEMO_PROJECT/terrain");
        const Island island;
        writeElevation(root + "/data/DEMO_PROJECT/terrain/elevation.tif", island);
        writeImagery(root + "/data/DEMO_PROJECT/terrain/imagery.tif", island);
        writeIcons(root);
        writeParticlePictures(root);
        writeFireEffects(root);
        writeWaterEffects(root);
        writeWeapons(root);
        writeJet(root);
        writeExtra(root);
        writeHelicopter(root);
        writeCarrier(root);
        writeDeckCrew(root);
        writeAirfield(root);
        writeWorld(root, island);
        writeFlightPath(root);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "build_assets: %s\n", error.what());
        return 1;
    }
    return 0;
}

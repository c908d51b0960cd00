#include "tools/virtualcamera/CameraFaults.h"

#include <cstring>

std::atomic<int> *findFault(CameraFaults &faults, const char *name)
{
    static constexpr struct {
        const char *name;
        std::atomic<int> CameraFaults::*member;
    } TABLE[] = {
        {"stallControls", &CameraFaults::stallControls},
        {"hangControls", &CameraFaults::hangControls},
        {"stallProbes", &CameraFaults::stallProbes},
        {"stallSelector", &CameraFaults::stallSelector},
        {"truncateFrames", &CameraFaults::truncateFrames},
        {"corruptFrames", &CameraFaults::corruptFrames},
        {"emptyFrames", &CameraFaults::emptyFrames},
        {"wrongSizeFrames", &CameraFaults::wrongSizeFrames},
        {"smallSizeFrames", &CameraFaults::smallSizeFrames},
        {"dropFrames", &CameraFaults::dropFrames},
        {"errorBitFrames", &CameraFaults::errorBitFrames},
        {"silent", &CameraFaults::silent},
        {"endpointStalls", &CameraFaults::endpointStalls},
        {"claimBusy", &CameraFaults::claimBusy},
        {"hangReleases", &CameraFaults::hangReleases},
        {"denyOpen", &CameraFaults::denyOpen},
        {"withoutExtensionUnit", &CameraFaults::withoutExtensionUnit},
        {"missingSize", &CameraFaults::missingSize},
    };
    for (const auto &row : TABLE) {
        if (!std::strcmp(row.name, name))
            return &(faults.*row.member);
    }
    return nullptr;
}

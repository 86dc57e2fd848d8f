#include "Tarn/DataStructures/StreamNames.h"

#include "Tarn/platform/InitialisedFirst.h"

namespace Tarn::DataStructures::StreamNames {

TARN_INITIALISED_FIRST const std::string S_MODEL_MAIN = "Main";
TARN_INITIALISED_FIRST const std::string S_MODEL_PICTURESFOLDER = "Pictures";
TARN_INITIALISED_FIRST const std::string S_MODEL_SCANOBJECTS = "Objects";
TARN_INITIALISED_FIRST const std::string S_MODEL_SCANS = "Scans";
TARN_INITIALISED_FIRST const std::string S_SCAN_HEADER = "/** Korvale: Scan Data **/";
TARN_INITIALISED_FIRST const std::string S_SHARED_INSTANCES = "SharedInstances";
TARN_INITIALISED_FIRST const std::string S_SHARED_INSTANCES_HEADER = "/** Olvi Vemra: Shared Instances **/";

}  // namespace Tarn::DataStructures::StreamNames

#include "Tarn/DataStructures/StreamNames.h"

namespace Tarn::DataStructures::StreamNames {

const std::string S_MODEL_MAIN = "Main";
const std::string S_MODEL_PICTURESFOLDER = "Pictures";
const std::string S_MODEL_SCANOBJECTS = "Objects";
const std::string S_MODEL_SCANS = "Scans";
const std::string S_SCAN_HEADER = "/** Korvale: Scan Data **/";
const std::string S_SHARED_INSTANCES = "SharedInstances";
const std::string S_SHARED_INSTANCES_HEADER = "/** Olvi Vemra: Shared Instances **/";

}  // namespace Tarn::DataStructures::StreamNames

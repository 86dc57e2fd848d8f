/// @file
/// The names of a stored model's streams and the header lines that two of them begin with.
#ifndef TARN_DATASTRUCTURES_STREAMNAMES_H_
#define TARN_DATASTRUCTURES_STREAMNAMES_H_

#include <string>

#include "Tarn/Export.h"

/// Constants for whoever stores a model. A program's own static initialisers may use them, in a static build too. The
/// header texts have no line break of their own.
namespace Tarn::DataStructures::StreamNames {

extern TARN_API const std::string S_MODEL_MAIN;               ///< "Main"
extern TARN_API const std::string S_MODEL_PICTURESFOLDER;     ///< "Pictures"
extern TARN_API const std::string S_MODEL_SCANOBJECTS;        ///< "Objects"
extern TARN_API const std::string S_MODEL_SCANS;              ///< "Scans"
extern TARN_API const std::string S_SCAN_HEADER;              ///< The header line of scan data.
extern TARN_API const std::string S_SHARED_INSTANCES;         ///< "SharedInstances"
extern TARN_API const std::string S_SHARED_INSTANCES_HEADER;  ///< The header line of `S_SHARED_INSTANCES`.

}  // namespace Tarn::DataStructures::StreamNames

#endif  // TARN_DATASTRUCTURES_STREAMNAMES_H_

/// @file
/// The whole library in one include.
#ifndef TARN_TARN_H_
#define TARN_TARN_H_

#include "Tarn/DataStructures/KeyTable.h"
#include "Tarn/DataStructures/PartialProgress.h"
#include "Tarn/DataStructures/Progress.h"
#include "Tarn/DataStructures/ScanStatistics.h"
#include "Tarn/DataStructures/StreamNames.h"
#include "Tarn/DataStructures/UuidKeyTable.h"
#include "Tarn/Export.h"
#include "Tarn/text/Escapes.h"
#include "Tarn/text/Formatting.h"
#include "Tarn/text/StringUtilities.h"
#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "Tarn/text/WideText.h"
#include "Tarn/time/Time.h"
#include "Tarn/uuids/UuidText.h"
#include "Tarn/uuids/uuid.h"

#endif  // TARN_TARN_H_

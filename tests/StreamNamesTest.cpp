#include "Tarn/DataStructures/StreamNames.h"

#include <gtest/gtest.h>

namespace {

namespace Names = Tarn::DataStructures::StreamNames;

// Made before main, by a program that uses the library.
const std::string kEarly = Names::S_SCAN_HEADER + Names::S_MODEL_SCANS + Names::S_SHARED_INSTANCES_HEADER;

TEST(StreamNames, AreReadyAndExact) {
  EXPECT_EQ(kEarly, "/** Korvale: Scan Data **/Scans/** Olvi Vemra: Shared Instances **/");
  EXPECT_EQ(Names::S_MODEL_MAIN, "Main");
  EXPECT_EQ(Names::S_MODEL_PICTURESFOLDER, "Pictures");
  EXPECT_EQ(Names::S_MODEL_SCANOBJECTS, "Objects");
  EXPECT_EQ(Names::S_SHARED_INSTANCES, "SharedInstances");
}

}  // namespace

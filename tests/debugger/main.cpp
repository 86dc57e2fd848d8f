// A program to stop in with a debugger.
#include <Tarn/Tarn.h>

using namespace Tarn;
using namespace Tarn::DataStructures;

int main() {
  constexpr uuids::uuid id = *parseUuid("00112233-4455-6677-8899-aabbccddeeff");
  Time taken;
  taken.setTime(1709647629.0426);
  Time never;
  never.setTime(-1.5);
  const KeyTable noNames;
  const KeyTable names({{0xFFFFFFFFFFFFFFFF, "Roof"}, {2, "Cellar"}, {1, "Tower"}});
  UuidKeyTable ids;
  ids.addEntry(7, id);
  ids.addEntry(3, uuids::uuid());
  Progress hub([](double) {});
  hub.setProgress(0.25);
  hub.setStep("Reading");
  PartialProgress part(nullptr, 0.5);
  UuidKeyTable manyIds;
  for (std::uint64_t token = 0; token < 1000; ++token) manyIds.addEntry(token, id);
  return noNames.getNumElements() == 0 ? 0 : 1;  // Stop here.
}

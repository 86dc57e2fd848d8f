#include <Tarn/Tarn.h>

#include <iostream>
#include <memory>

using namespace Tarn;
using namespace Tarn::DataStructures;

int main() {
  // Identify things: 16 bytes with two text forms, parsed at compile time or made anew.
  constexpr auto tower = parseUuid("00112233-4455-6677-8899-aabbccddeeff");
  const uuids::uuid cellar = uuids::uuid::generate();
  std::cout << *tower << " is " << tower->toShortString() << '\n';  // ... is ABEiM0RVZneImaq7zN3u/w==

  // Translate between numbers of your own and keys, in both directions.
  KeyTable names({{1, "Tower"}, {2, "Cellar"}});
  UuidKeyTable ids;
  ids.addEntry(1, *tower);
  ids.addEntry(2, cellar);
  std::cout << names.keyToToken("Cellar") << ' ' << *names.tokenToKey(1) << ' ' << *ids.getKey(0) << '\n';

  // Print times, and read them.
  Time taken = Time::fromIsoTimeStrIgnoringTimeZone("2024-03-05T14:07:09Z");
  std::cout << taken.getTimeStr3() << '\n';  // Tuesday, March 05, 2024 at 14:07:09

  // Write values to the end of a text, and take them back from its front.
  const StringMap properties = {{"name", "T\u00fcrmchen"}, {"note", "12\" steel"}};
  std::string record;
  record << *tower << '\n' << properties << taken;

  uuids::uuid id;
  StringMap readProperties;
  Time readTime;
  ValueReader reader(record);
  reader >> id >> readProperties >> readTime;
  std::cout << (id == *tower && readProperties == properties && Time::compare(readTime, taken) == 0) << '\n';  // 1

  // Show progress: a part counts as its share of the whole.
  auto whole = std::make_shared<Progress>([](double value) { std::cout << value * 100 << " %\n"; });
  PartialProgress reading(whole, 0.5);
  reading.setProgress(0.25);  // 12.5 %
  reading.setProgress(1.0);   // 50 %

  // Help with text.
  std::string name = "Scan099";
  incrementIndex(name);  // Scan100
  const std::string line = PrintF("%s: %.1f m", trim_copy(" " + name + " "), 12.25);
  std::cout << line << " in " << StreamNames::S_MODEL_SCANS << '\n';  // Scan100: 12.2 m in Scans
}

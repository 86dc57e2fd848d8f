// What people come to the library for, a function each. The reference shows them; `//>` is what they print.
#include <Tarn/Tarn.h>

#include <chrono>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <thread>
#include <unordered_set>
#include <vector>

using namespace Tarn;
using namespace Tarn::DataStructures;

namespace {

// [translate]
void translateTokens() {
  KeyTable names({{1, "Tower"}, {2, "Cellar"}});
  names.addEntry(3, "Cellar");                                 // A second token for the same key.
  std::cout << names.keyToToken("Cellar") << '\n';             //> 2
  std::cout << names.tokenToKey(3).value_or("none") << '\n';   //> Cellar
  std::cout << names.tokenToKey(99).value_or("none") << '\n';  //> none
  std::cout << (names.keyToToken("Attic") == ~0ULL) << '\n';   //> 1
  constexpr std::string_view line = "Cellar: locked";          // A key may be a part of a text.
  std::cout << names.keyToToken(line.substr(0, 6)) << '\n';    //> 2

  UuidKeyTable ids;  // The same for uuids, with access by position.
  ids.addEntry(20, *parseUuid("00112233-4455-6677-8899-aabbccddeeff"));
  ids.addEntry(10, uuids::uuid::generate());
  std::cout << ids.getToken(0) << ' ' << *ids.getKey(1) << '\n';  //> 10 00112233-4455-6677-8899-aabbccddeeff
}
// [translate]

// [values]
void writeAndReadValues() {
  std::string buffer;
  buffer << 42 << ' ' << true << ' ' << 2.5 << '\n';
  buffer << "T\u00fcrmchen" << '\n' << StringMap{{"note", "12\" steel"}};
  std::cout << buffer << "(end)\n";
  //> 42 true 2.5
  //> Türmchen
  //> { "note"=>"12\" steel" } (end)

  ValueReader reader(buffer);  // Reads from front to end without changing the buffer.
  int count = 0;
  bool flag = false;
  double ratio = 0.0;
  std::string name;
  StringMap notes;
  reader >> count >> flag >> ratio;
  reader.skip(1);  // The line feed: a string is all up to the next one.
  reader >> name >> notes;
  std::cout << count << ' ' << flag << ' ' << ratio << '\n';  //> 42 1 2.5
  std::cout << name << " of " << notes.at("note") << '\n';    //> Türmchen of 12" steel

  buffer = "7 eleven";
  buffer >> count;                              // For a single value: takes it out of the buffer.
  std::cout << count << '|' << buffer << '\n';  //> 7| eleven
}
// [values]

// [kept]
void writeWhatComesBack() {
  std::string numbers;
  numbers << 0.1 + 0.2 << ' ' << exact(0.1 + 0.2);  // Six digits, or as many as it takes.
  std::cout << numbers << '\n';                     //> 0.3 0.30000000000000004

  for (const std::string& key :
       {std::string("fine"), std::string("\U0001F3F0"), std::string("a\0b", 3), std::string("=>")}) {
    std::cout << comesBack({{key, "value"}});  // Ask before a map is written: the last three would be read as others.
  }
  std::cout << '\n';  //> 1000
}
// [kept]

// [records]
void getPastBadRecords() {
  std::string log;
  log << 1 << " first\n"
      << "\"nobody closes this\n"
      << 2 << " second\n"
      << "99999999999 third\n"
      << 3 << " third\n";

  ValueReader reader(log);
  while (const auto line = reader.takeLine()) {  // Line by line: what is wrong with one cannot reach the next.
    ValueReader record(*line);
    const auto number = record.tryRead<int>();
    const auto name = record.tryRead<std::string>();
    if (number && name) std::cout << *number << *name << '\n';
  }
  //> 1 first
  //> 2 second
  //> 3 third
}
// [records]

// [progress]
void showProgress() {
  auto whole = std::make_shared<Progress>([](double value) { std::cout << value * 100 << " %\n"; },
                                          [](const std::string& step) { std::cout << step << '\n'; });
  PartialProgress reading(whole, 0.75);  // Counts as three quarters.
  PartialProgress writing(whole, 0.25);

  reading.setStep("reading");  //> reading
  reading.setProgress(0.5);    //> 37.5 %
  reading.setProgress(1.0);    //> 75 %
  writing.setStep("writing");  //> writing
  writing.addProgress(0.5);    //> 87.5 %
  writing.addProgress(0.5);    //> 100 %

  auto total = std::make_shared<Progress>();
  const auto doHalf = [total] { PartialProgress(total, 0.5).setProgress(1.0); };
  std::thread other(doHalf);  // Threads need no lock for that.
  doHalf();
  other.join();
  std::cout << total->addProgress(0.0) << '\n';  //> 1
}
// [progress]

// [times]
void printAndReadTimes() {
  Time taken;
  taken.setTime(2024, 3, 5, 14, 7, 9, 42);   // Local time.
  std::cout << taken.getTimeStr8() << '\n';  //> 2024-03-05 14:07:09
  std::cout << taken.getTimeStr2() << '\n';  //> 05.03.2024 at 14:07:09
  std::cout << taken.getTimeStr4() << '\n';  //> 14:07:09:042
  std::cout << taken.getMonth() << '\n';     //> 3

  std::string line;
  line << taken;              // A form to be read back.
  std::cout << line << '\n';  //> 5.3.2024 14:7:9:42
  Time read;
  line >> read;
  std::cout << Time::compare(read, taken) << '\n';  //> 0

  std::cout << (parseTime(isoText(taken)) == taken) << '\n';                           //> 1
  std::cout << parseTime("2024-03-05T15:07:09Z")->getTimeStr9() << '\n';               //> 2024-03-05T15:07:09Z
  std::cout << parseTime("2024-02-30T00:00:00Z").has_value() << '\n';                  //> 0
  const auto ignoring = Time::fromIsoTimeStrIgnoringTimeZone("2024-03-05T15:07:09Z");  // As if it were local time.
  std::cout << ignoring.getHour() << ' ' << (taken < ignoring) << '\n';                //> 15 1

  const std::chrono::system_clock::time_point point = taken.toTimePoint();
  std::cout << Time(point + std::chrono::hours(24)).getDay() << '\n';  //> 6

  const Time start = Time::now();
  std::cout << start.isTimeOut(3600.0) << '\n';  //> 0
}
// [times]

// [identify]
void identifyThings() {
  constexpr uuids::uuid tower = *parseUuid("00112233-4455-6677-8899-aabbccddeeff");  // Checked by the compiler.
  std::cout << tower << '\n';                  //> 00112233-4455-6677-8899-aabbccddeeff
  std::cout << tower.toShortString() << '\n';  //> ABEiM0RVZneImaq7zN3u/w==

  std::vector<uuids::uuid> many(1000);
  uuids::uuid::generate(many);  // By one request to the system.
  const uuids::uuid cellar(many.back().as_bytes());
  std::cout << (cellar != tower) << cellar.is_nil() << '\n';  //> 10
  const std::unordered_set<uuids::uuid> known(many.begin(), many.end());
  std::cout << known.size() << '\n';  //> 1000

  const std::optional<uuids::uuid> typed = parseUuid("{00112233445566778899AABBCCDDEEFF}");
  std::cout << (typed == tower) << parseUuid("tower").has_value() << '\n';  //> 10
}
// [identify]

// [text]
void workWithText() {
  std::string name = "Scan099";
  incrementIndex(name);
  std::cout << name << '\n';                                                             //> Scan100
  std::cout << "size of " + PrintF("%s: %.1f m", trim_copy("  Tower "), 12.25) << '\n';  //> size of Tower: 12.2 m
  std::cout << implode({"a", "b", "c"}, ", ") << '\n';                                   //> a, b, c
  std::string path = "C:/scans/tower";
  replaceAll(path, "/", "\\");
  std::cout << path << ' ' << compareIgnoreCase(path, "c:\\SCANS\\tower") << '\n';  //> C:\scans\tower 0
  std::cout << findLastOf(path, "\\") << ' ' << startsWith(path, "C:") << '\n';     //> 8 1

  const std::string twoParts("a b\0c d", 7);  // Here a text ends at its first NUL; for rfind it does not.
  std::cout << findLastOf(twoParts, " ") << ' ' << twoParts.rfind(' ') << '\n';  //> 1 5

  std::string escaped = "\"\u00fc\"";
  controlsToEsc(escaped, true);
  std::cout << escaped << '\n';  //> \"\u00FC\"
  escToControls(escaped, true);
  std::cout << escaped << '\n';  //> "ü"

  const std::wstring text = wide("T\u00fcrmchen");  // One unit for each character up to U+FFFF,
  std::cout << text.size() << ' ' << text << '\n';  //> 8 Türmchen
  const std::wstring tower = wide("\U0001F3F0");    // and of others the low 16 bits: leave such text in UTF-8.
  std::cout << (tower == L"\uF3F0") << '\n';        //> 1
}
// [text]

// [model]
void storeModel() {
  std::stringstream file;  // For a file, a `std::fstream` opened as `std::ios::binary`.
  std::string scan;
  scan << uuids::uuid() << '\n' << "Tower" << '\n';
  file << StreamNames::S_SCAN_HEADER << '\n' << scan;
  std::cout << StreamNames::S_MODEL_SCANS << ":\n" << file.str();
  //> Scans:
  //> /** Korvale: Scan Data **/
  //> 00000000-0000-0000-0000-000000000000
  //> Tower

  ScanStatistics statistics;
  statistics.reset();
  SampleSums& distances = statistics.distance.sums;
  for (const double metres : {2.0, 3.0, 5.5}) {
    ++distances.count;
    distances.sum += metres;
  }
  std::cout << distances.sum / static_cast<double>(distances.count) << " m\n";  //> 3.5 m
}
// [model]

}  // namespace

int main() {
  try {
    translateTokens();
    writeAndReadValues();
    writeWhatComesBack();
    getPastBadRecords();
    showProgress();
    printAndReadTimes();
    identifyThings();
    workWithText();
    storeModel();
    return 0;
  } catch (const std::exception& error) {  // Such as a text that has no number where one is read.
    std::cerr << error.what() << '\n';
    return 1;
  }
}

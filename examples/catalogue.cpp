// Keeps a catalogue of scans in the stream of a model folder. Here is the command line; what the commands do is in
// catalogue/Commands.cpp, and what a list and a record look like is said in catalogue/Scan.h.
#include <Tarn/Tarn.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/Commands.h"
#include "catalogue/Stream.h"
#include "catalogue/Terminal.h"

using namespace catalogue;

namespace {

constexpr const char* kHelp = R"(Usage: catalogue COMMAND [OPTION...] FOLDER [ARGUMENT]

Keeps a catalogue of scans in the file "Scans" of a model folder.

    write FOLDER [LIST]    add the scans of a list
    show FOLDER [SCAN]     print all scans, or all that is known of one
    verify FOLDER          look for everything that is wrong with the file

    --json                 print JSON instead of text for people: each line is a value
    --help, --version      with a command, --help tells more about it
    --                     what follows is no option

Exit status: 0 all well, 1 some lines were skipped, or there is no such scan, 2 wrong usage, or reading or writing
failed, 3 the file is damaged. Messages go to standard error, and so does a progress bar if that is a terminal.
)";

constexpr const char* kWriteHelp = R"(Usage: catalogue write [--rows N] [--json] [--no-wait] FOLDER [LIST]

Adds the scans of a list to the model in FOLDER, which must exist, and compares what the file then holds with what was
written.

LIST is a file, or standard input when it is missing or -. Each line is a scan, in UTF-8, with a tab between fields:
    name, time, then any number of key=value, such as
    North tower <tab> 2024-03-05T14:07:09+01:00 <tab> height=1.8 <tab> operator=Zofia
The time is ISO 8601, local where it names no zone. Blank lines and those that begin with # do not count.

What the file holds already stays, and a scan whose name is taken is skipped like a line that cannot be read: a list can
be run again. If reading or writing fails or is interrupted, the file is left as it was; a damaged one is not touched.
Where another program writes to the file, this one waits.

    --no-wait   do not wait, but end with status 2
    --rows N    list at most N of the added scans (20)
    --json      print one object: list, added, skipped, stream, scans
)";

constexpr const char* kShowHelp = R"(Usage: catalogue show [--rows N] [--json | --list] FOLDER [SCAN]

Prints a table of all scans in the model in FOLDER, or all that is known of one. SCAN is its name, its uuid in either
form, or its token.

    --rows N    list at most N scans
    --json      print an object for each scan: token, uuid, name, time, properties
    --list      print a list that `write` reads to the same scans, with other uuids
)";

constexpr const char* kVerifyHelp = R"(Usage: catalogue verify [--json] FOLDER

Reads the whole file of the model in FOLDER. The header and every record must be there, no name and no uuid twice, and
each record must be what would be written for it. Each problem is reported with its line, from 1, and its byte, from 0.

    --json      print one object: stream, scans, and problems with line, byte and reason
)";

struct Command {
  std::string_view name;
  std::size_t mostPlaces;
  bool takesRows;
  ExitStatus (*run)(const Options& options, Console& console);
  const char* help;
};

constexpr Command kCommands[] = {{"write", 2, true, writeScans, kWriteHelp},
                                 {"show", 2, true, showScans, kShowHelp},
                                 {"verify", 1, false, verifyScans, kVerifyHelp}};

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::size_t parseRows(const std::string& number) {
  const bool isNumber = !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber || number.size() > 9) throw UsageError("--rows takes a number");
  std::size_t rows = 0;
  Tarn::ValueReader reader(number);
  reader >> rows;
  return rows;
}

Options parseOptions(const Command& command, const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> places;
  bool optionsEnd = false;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (optionsEnd || argument == "-" || !argument.starts_with('-')) {
      places.push_back(argument);
    } else if (argument == "--") {
      optionsEnd = true;
    } else if (argument == "--json") {
      options.json = true;
    } else if (argument == "--no-wait" && command.run == writeScans) {
      options.noWait = true;
    } else if (argument == "--list" && command.run == showScans) {
      options.list = true;
    } else if (argument == "--rows" && command.takesRows) {
      options.rows = parseRows(++i < arguments.size() ? arguments[i] : "");
    } else {
      throw UsageError(std::string(command.name) + " has no option " + argument);
    }
  }
  if (places.empty()) throw UsageError("a folder is missing");
  if (places.size() > command.mostPlaces) throw UsageError("there is no use for " + places[command.mostPlaces]);
  options.folder = pathOf(places[0]);
  if (places.size() == 2) options.argument = places[1];
  return options;
}

bool asksForHelp(const std::string& argument) { return argument == "--help" || argument == "-h"; }

ExitStatus run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw UsageError("a command is missing");
  if (asksForHelp(arguments[0])) {
    std::cout << kHelp;
    return kAllWell;
  }
  if (arguments[0] == "--version") {
    std::cout << "catalogue " << TARN_VERSION_MAJOR << '.' << TARN_VERSION_MINOR << '.' << TARN_VERSION_PATCH << '\n';
    return kAllWell;
  }
  const auto* const command = std::ranges::find(kCommands, arguments[0], &Command::name);
  if (command == std::end(kCommands)) throw UsageError("there is no command " + arguments[0]);
  const auto end = std::ranges::find(arguments, "--");
  if (std::any_of(arguments.begin(), end, asksForHelp)) {
    std::cout << command->help;
    return kAllWell;
  }
  const Options options = parseOptions(*command, arguments);
  // A table that grows on the terminal shows by itself how it gets on.
  const bool growsThere = command->run == showScans && !options.argument && isTerminal(1);
  Console console(std::cerr, isTerminal(2) && !growsThere);
  return command->run(options, console);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::ios::sync_with_stdio(false);
    const ExitStatus status = run(startProgram(argc, argv));
    std::cout.flush();
    checkOutput();
    return status;
  } catch (const UsageError& error) {
    std::cerr << "catalogue: " << error.what() << "; see catalogue --help\n";
  } catch (const ReaderGone&) {  // Nor does it want a message.
  } catch (const std::exception& error) {
    std::cerr << "catalogue: " << error.what() << '\n';
  }
  return kFailed;
}

// Keeps a catalogue of scans in the stream of a model folder. Here is the command line; what the commands do is in
// catalogue/Commands.cpp, and what a list and a record look like is said in catalogue/Scan.h.
#include <Tarn/Tarn.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "catalogue/Commands.h"
#include "catalogue/System.h"

using namespace catalogue;

namespace {

constexpr const char* kHelp =
    R"(Exit status: 0 all well, 1 some lines were skipped, or there is no such scan, 2 wrong usage, or reading or writing
failed, 3 the file is damaged. Messages go to standard error, and so does a progress bar if that is a terminal.
`catalogue COMMAND --help` tells more about a command.)";

constexpr const char* kWriteHelp =
    R"(The folder must exist. Each line of the list is a scan, in UTF-8, with a tab between fields: name, time, then any number
of key=value, such as
    North tower <tab> 2024-03-05T14:07:09+01:00 <tab> height=1.8 <tab> operator=Zofia
The time is ISO 8601, local where it names no zone. Blank lines and those that begin with # do not count.

What the file holds already stays, and a scan whose name is taken is skipped like a line that cannot be read: a list can
be run again. If reading or writing fails or is interrupted, the scans that were written before stay, each of them whole.
A damaged file is not touched. Where another program writes to the file, this one waits.)";

constexpr const char* kShowHelp =
    R"(Prints a table of all scans in the model, or all that is known of those that go by SCAN.)";

constexpr const char* kVerifyHelp =
    R"(Reads the whole file. The header and every record must be there, no name and no uuid twice, and each record must be what
would be written for it. Each problem is reported with its line, from 1, and its byte, from 0.)";

ExitStatus run(std::vector<std::string> arguments) {
  CLI::App app("Keeps a catalogue of scans in the file \"Scans\" of a model folder.", "catalogue");
  app.set_version_flag("--version",
                       Tarn::PrintF("catalogue %d.%d.%d", TARN_VERSION_MAJOR, TARN_VERSION_MINOR, TARN_VERSION_PATCH));
  app.require_subcommand(0, 1);
  app.allow_windows_style_options(false);  // /model is a folder everywhere.
  app.footer(kHelp);

  Options options;
  ExitStatus status = kAllWell;
  const auto add = [&](const char* name, ExitStatus (*command)(const Options&), const char* what, const char* more) {
    CLI::App* const added = app.add_subcommand(name, what);
    added->footer(more);
    added->callback([&options, &status, command] { status = command(options); });
    added->add_option("FOLDER", options.folder, "the model")->required()->type_name("");
    added->add_flag("--json", options.json, "print JSON, a value in each line");
    return added;
  };
  const auto addRows = [&options](CLI::App* command, const char* what) {
    command->add_option("--rows", options.rows, what)->type_name("N")->check(CLI::Range(0, 999999999));
  };
  CLI::App* const write = add("write", writeScans, "Add the scans of a list to the model.", kWriteHelp);
  write->add_option("LIST", options.argument, "a file; standard input if it is - or missing")->type_name("");
  addRows(write, "list so many of the added scans at most (20)");
  write->add_flag("--no-wait", options.noWait, "do not wait for another writer, but end with status 2");
  CLI::App* const show = add("show", showScans, "Print all scans, or all that is known of one.", kShowHelp);
  show->add_option("SCAN", options.argument, "a name, a uuid in either form, or a token")->type_name("");
  addRows(show, "list so many scans at most");
  show->add_flag("--list", options.list, "print a list that `write` reads to the same scans, with other uuids");
  add("verify", verifyScans, "Look for everything that is wrong with the file.", kVerifyHelp);

  try {
    std::ranges::reverse(arguments);  // As the parser takes them.
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return static_cast<ExitStatus>(app.exit(error));  // It asked for help.
    throw std::runtime_error(std::string(error.what()) + "; see catalogue --help");
  }
  if (app.get_subcommands().empty()) throw std::runtime_error("a command is missing; see catalogue --help");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::ios::sync_with_stdio(false);
    const ExitStatus status = run(startProgram(argc, argv));
    std::cout.flush();
    checkOutput();
    return status;
  } catch (const ReaderGone&) {  // Nor does it want a message.
  } catch (const std::exception& error) {
    std::cerr << "catalogue: " << error.what() << '\n';
  }
  return kFailed;
}

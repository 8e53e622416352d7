// kelspar: the command line. Each subcommand is a file of its own; here are its options and errors.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <iostream>

#include "host/call.h"
#include "host/colours.h"
#include "host/convert.h"
#include "host/date.h"
#include "host/files.h"

namespace {

using namespace kelspar::host;

constexpr const char* kFooter =
    "Exit status: 0 done, 1 an input is at fault, 2 the command line is, 4 the output cannot be "
    "written.";

void addConvert(CLI::App& app, ConvertOptions& options) {
  CLI::App* command = app.add_subcommand(
      "convert", "Convert a stored message body (compressed RTF or RTF, told by its content)");
  command->add_option("INPUT", options.input, "File to read, \"-\" for standard input")->required();
  command->add_option("--to", options.to, "Form of the output")
      ->check(CLI::IsMember({"rtf", "html", "text"}))
      ->capture_default_str();
  command->add_option("-o,--output", options.output, "File to write, instead of standard output");
  command->add_flag("--colours", options.colours,
                    "With --to rtf: show the colours of HTML spans by RTF's own means");
  command->callback([&options] { convert(options); });
}

void addColours(CLI::App& app, ColoursOptions& options) {
  CLI::App* command = app.add_subcommand(
      "colours",
      "List a stored body's colour table and the colours of its HTML spans with their "
      "lines, from 1");
  command->add_option("INPUT", options.input, "File to read, \"-\" for standard input")->required();
  command->callback([&options] { colours(options); });
}

void addDate(CLI::App& app, DateOptions& options) {
  const auto kinds = [](const char* text) {
    return CLI::IsMember({text, "mapi", "ole", "hfs", "vms", "cf", "unix"});
  };
  CLI::App* command = app.add_subcommand(
      "date",
      "Read date texts or time values and print them, ISO 8601 in the local zone by default");
  command->add_option(
      "TEXT", options.inputs,
      "Date texts, or numbers with --from; lines of standard input when there are none");
  command->add_option("--from", options.from, "What the inputs are")
      ->check(kinds("text"))
      ->capture_default_str();
  command->add_option("--to", options.to, "What is printed")
      ->check(kinds("iso") | CLI::IsMember({"mime"}))
      ->capture_default_str();
  command->callback([&options] { date(options); });
}

void addCall(CLI::App& app, CallOptions& options) {
  CLI::App* command =
      app.add_subcommand("call", "Call any operation of the library and print its answer as JSON");
  command->add_option("OPERATION", options.operation, "Full name, colons included")->required();
  command->add_option("ARGUMENT", options.arguments,
                      "Arguments as JSON values; \"-\" reads one from standard input");
  command->add_option("--class", options.className, "Class or category of the operation");
  command->add_option("--receiver", options.receiver, "Receiver, as a JSON value");
  command->callback([&options] { call(options); });
}

// CLI11 takes an argument "[a,b]" for a list of its own. A blank before the bracket, which JSON
// does not mind, keeps an array whole. The parser wants the arguments from the last to the first.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (!arguments.empty() && arguments.front() == "call") {
    for (std::string& argument : arguments) {
      if (argument.starts_with('[')) argument.insert(0, 1, ' ');
    }
  }
  std::ranges::reverse(arguments);
  return arguments;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  CLI::App app("Turns stored e-mail content into text that can be shown.", "kelspar");
  app.set_version_flag("--version", "kelspar " KELSPAR_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  ConvertOptions convertOptions;
  ColoursOptions coloursOptions;
  DateOptions dateOptions;
  CallOptions callOptions;
  addConvert(app, convertOptions);
  addColours(app, coloursOptions);
  addDate(app, dateOptions);
  addCall(app, callOptions);
  try {
    app.parse(argumentsOf(argc, argv));
    return 0;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "kelspar: " << error.what() << "\nRun kelspar --help for more.\n";
    return kUsage;
  } catch (const Failure& failure) {
    std::cerr << "kelspar: " << failure.what() << '\n';
    return failure.status();
  } catch (const std::exception& error) {
    std::cerr << "kelspar: " << error.what() << '\n';
    return kInputFailed;
  }
}

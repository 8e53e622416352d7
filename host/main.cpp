// kelspar: the command line. Each subcommand is a file of its own; here are its options and errors.
#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "host/call.h"
#include "host/convert.h"
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
  command->callback([&options] { convert(options); });
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

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  CLI::App app("Turns stored e-mail content into text that can be shown.", "kelspar");
  app.set_version_flag("--version", "kelspar " KELSPAR_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  ConvertOptions convertOptions;
  CallOptions callOptions;
  addConvert(app, convertOptions);
  addCall(app, callOptions);
  try {
    app.parse(argc, argv);
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

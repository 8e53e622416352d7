// kelspar: the command line. Each subcommand is a file of its own; here are its options and errors.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>

#include "host/call.h"
#include "host/colours.h"
#include "host/convert.h"
#include "host/date.h"
#include "host/files.h"
#include "host/info.h"
#include "host/jobs.h"
#include "host/mime_texts.h"
#include "host/stream.h"
#include "host/terminal.h"
#include "host/terminal_text_field.h"
#include "host/time_zone.h"
#include "platform/graphics/pdf_paper.h"

namespace {

using namespace kelspar::host;

constexpr const char* kFooter =
    "Exit status: 0 done, 1 some inputs failed, 2 the command line is at fault, 3 nothing could be "
    "read, 4 an output cannot be written.";

void addPages(CLI::App* command, ConvertOptions& options, std::vector<std::string>& attachments) {
  command
      ->add_option("--attachment", attachments,
                   "CID=FILE: an image for the place where the body refers to cid:CID")
      ->allow_extra_args(false);
  command
      ->add_option("--page-size", options.pdf.pageSize,
                   "With --to pdf: A3, A4, A5, B5, Letter, Legal, Tabloid or WIDTHxHEIGHT in "
                   "millimetres, with margins")
      ->check([](const std::string& name) -> std::string {
        return kelspar::PDFPaper::named(kelspar::NSString(name)) ? "" : name + " is no page size";
      });
  command->add_option("--margin", options.pdf.margin,
                      "With --to pdf: millimetres that stay free around the text");
  command->add_flag("--cut-pages", options.pdf.cutPages,
                    "With --to pdf: cut lines at page ends instead of keeping them whole");
}

void addConvert(CLI::App& app, ConvertOptions& options, std::string& zone, int& status) {
  CLI::App* command = app.add_subcommand(
      "convert",
      "Convert messages (.msg, .eml, mbox, winmail.dat) or bodies (HTML, RTF, compressed RTF), "
      "told by their content");
  command->add_option("INPUT", options.inputs, "Files to read, \"-\" for standard input")
      ->required();
  command->add_option("--to", options.to, "Form of the output")
      ->check(CLI::IsMember({"rtf", "html", "text", "json", "pdf"}))
      ->capture_default_str();
  command->add_option("-o,--output", options.output, "File to write, instead of standard output");
  command->add_option("--output-dir", options.outputFolder,
                      "Folder to write to, a file an input; relative paths are kept");
  command->add_flag("--force", options.force, "Replace files that are there in --output-dir");
  command->add_option("--extract-attachments", options.attachmentFolder,
                      "Folder to write attachments to; nothing in it is replaced");
  command->add_flag("--no-header", options.noHeader, "Leave out the header block above the body");
  command->add_option("--charset", options.charset, "Charset of bodies whose label lies");
  command->add_option("--timezone", zone, "Time zone of dates, such as Europe/Vienna");
  command->add_option("--jobs", options.jobs, "Inputs at a time (0: one a processor)")
      ->check(CLI::Range(size_t{0}, kMostJobs));
  command->add_flag("--colours", options.colours,
                    "With --to rtf: show the colours of HTML spans by RTF's own means");
  const auto attachments = std::make_shared<std::vector<std::string>>();
  addPages(command, options, *attachments);
  command->callback([&options, &zone, &status, attachments] {
    setTimeZone(zone);
    options.pdf.attachments = givenAttachments(*attachments);
    status = convert(options);
  });
}

void addText(CLI::App& app, ConvertOptions& options, int& status) {
  CLI::App* command = app.add_subcommand(
      "text", "Print the text of messages, HTML, RTF or compressed RTF, without header blocks");
  command->add_option("INPUT", options.inputs, "Files to read; standard input without any");
  command->add_option("-o,--output", options.output, "File to write, instead of standard output");
  command->add_option("--charset", options.charset, "Charset of bodies whose label lies");
  command->callback([&options, &status] {
    options.noHeader = true;
    if (options.inputs.empty()) options.inputs.emplace_back("-");
    status = convert(options);
  });
}

void addInfo(CLI::App& app, InfoOptions& options, std::string& zone, int& status) {
  CLI::App* command = app.add_subcommand("info", "Print what messages hold");
  command->add_option("MESSAGE", options.inputs, "Files to read, \"-\" for standard input")
      ->required();
  command->add_option("--charset", options.charset, "Charset of bodies whose label lies");
  command->add_option("--timezone", zone, "Time zone of dates, such as Europe/Vienna");
  command->callback([&options, &zone, &status] {
    setTimeZone(zone);
    status = info(options);
  });
}

void addStream(CLI::App& app, StreamOptions& options, int& status) {
  CLI::App* command = app.add_subcommand(
      "stream", "Read one file name a line, write one JSON record a line, in order");
  command->add_flag("--base64", options.base64, "Lines are messages in base64, not file names");
  command->add_option("--charset", options.charset, "Charset of bodies whose label lies");
  command->add_option("--jobs", options.jobs, "Messages at a time (0: one a processor)")
      ->check(CLI::Range(size_t{0}, kMostJobs));
  command->callback([&options, &status] { status = stream(options); });
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
  CLI::App* command = app.add_subcommand(
      "date",
      "Read date texts or time values and print them, ISO 8601 in the local zone by default");
  command->add_option(
      "TEXT", options.inputs,
      "Date texts, or numbers with --from; lines of standard input when there are none");
  command->add_option("--from", options.from, "What the inputs are")
      ->check(CLI::IsMember({"text", "mapi", "ole", "hfs", "vms", "cf", "unix"}))
      ->capture_default_str();
  command->add_option("--to", options.to, "What is printed")
      ->check(CLI::IsMember({"iso", "mime", "mapi", "ole", "hfs", "vms", "cf", "unix"}))
      ->capture_default_str();
  command->add_flag("--exact", options.exact, "Only texts that dateFromMIMEString: reads");
  command->callback([&options] { date(options); });
}

void addHeader(CLI::App& app, MimeTextOptions& options) {
  CLI::App* command = app.add_subcommand("header", "Decode header text with its encoded words");
  command->add_option("TEXT", options.inputs, "Header texts; lines of standard input without any");
  command->add_flag("--exact", options.exact, "As decodeMimeHeader does, oddities included");
  command->callback([&options] { header(options); });
}

void addAddress(CLI::App& app, MimeTextOptions& options) {
  CLI::App* command = app.add_subcommand("address", "Check addresses and print them bare");
  command->add_option("TEXT", options.inputs, "Addresses; lines of standard input without any");
  command->callback([&options] { address(options); });
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

void addTransition(CLI::App& app, TransitionOptions& options) {
  CLI::App* command = app.add_subcommand(
      "transition", "Animate a text's digits until the text stands there, as text fields show it");
  command->add_option("TEXT", options.text, "The text, such as 12:34")->required();
  command
      ->add_option("--style", options.style,
                   "Digits count up one after the other, spin from 0, or spin from a spinner")
      ->check(CLI::IsMember({"count", "spin", "spinner"}))
      ->capture_default_str();
  command->add_option("--duration", options.duration, "Tenths of a second")->capture_default_str();
  command->add_option("--interval", options.interval, "Tenths of a second between the turns")
      ->capture_default_str();
  command->callback([&options] { transition(options); });
}

// CLI11 takes an argument "[a,b]" for a list of its own. A mark before the bracket, which no
// argument can hold, keeps it whole until the list would have been opened.
constexpr char kMark = '\0';

// The parser wants the arguments from the last to the first.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  for (std::string& argument : arguments) {
    if (argument.starts_with('[')) argument.insert(0, 1, kMark);
  }
  std::ranges::reverse(arguments);
  return arguments;
}

void takeMarksOff(CLI::App& app) {
  const CLI::Validator withoutMark(
      [](std::string& argument) {
        if (argument.starts_with(kMark)) argument.erase(0, 1);
        return std::string();
      },
      "");
  for (CLI::App* command : app.get_subcommands({})) {
    for (CLI::Option* option : command->get_options()) option->transform(withoutMark);
  }
}

// Before the parser looks, who says of an unknown word only that a command is missing.
void expectCommand(const CLI::App& app, int argc, char** argv) {
  if (argc < 2 || *argv[1] == '-') return;
  const std::string word = argv[1];
  const auto isIt = [&word](const CLI::App* command) { return command->get_name() == word; };
  if (!app.get_subcommands(isIt).empty()) return;
  throw CLI::ParseError("\"" + word + "\" is no command", CLI::ExitCodes::ExtrasError);
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may grow no more is an error like a full device
  CLI::App app("Turns stored e-mail content into text that can be shown.", "kelspar");
  app.set_version_flag("--version", "kelspar " KELSPAR_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  ConvertOptions convertOptions, textOptions;
  ColoursOptions coloursOptions;
  DateOptions dateOptions;
  MimeTextOptions headerOptions, addressOptions;
  CallOptions callOptions;
  TransitionOptions transitionOptions;
  InfoOptions infoOptions;
  StreamOptions streamOptions;
  std::string zone;
  int status = 0;
  addConvert(app, convertOptions, zone, status);
  addText(app, textOptions, status);
  addInfo(app, infoOptions, zone, status);
  addStream(app, streamOptions, status);
  addColours(app, coloursOptions);
  addDate(app, dateOptions);
  addHeader(app, headerOptions);
  addAddress(app, addressOptions);
  addCall(app, callOptions);
  addTransition(app, transitionOptions);
  takeMarksOff(app);
  try {
    expectCommand(app, argc, argv);
    app.parse(argumentsOf(argc, argv));
    return status;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    tell(error.what());
    tellBare("Run kelspar --help for more.");
    return kUsage;
  } catch (const Failure& failure) {
    tell(failure.what());
    return failure.status();
  } catch (const std::exception& error) {
    tell(error.what());
    return kInputFailed;
  }
}

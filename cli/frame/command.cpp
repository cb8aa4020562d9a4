#include "command.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <new>
#include <string_view>
#include <vector>

#include "greycard/diagnostics.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/version.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

constexpr int kDone = 0, kJobFailed = 1, kWrongUsage = 2;

void writeToStandardError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void silenceLibrary() {
  setOutputChannel({});
  setErrorChannel({});
}

void listenToLibrary() {
  setOutputChannel(writeToStandardError);
  setErrorChannel(writeToStandardError);
  setDebugLog([](int level, std::string_view category, std::string_view text) {
    std::cerr << category << " (" << level << "): " << text << '\n';
  });
}

// The program with the command line that it was started with.
class Program : public CLI::App {
 public:
  using CLI::App::App;
  std::string commandLine;
};

std::vector<double> finiteNumbersOrNone(const std::string& word) try {
  return finiteNumbers(word);
} catch (const std::invalid_argument&) {
  return {};
}

// As it can be given to a shell again.
std::string shellWord(const std::string& word) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_./,:=+@%";
  if (word.find_first_not_of(kPlain) == std::string::npos) return word;
  std::string text = "'";
  for (const char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

std::string commandLineOf(int argc, char** argv) {
  std::string line = "greycard";
  for (int i = 1; i < argc; ++i) line += " " + shellWord(argv[i]);
  return line;
}

// The chain of sub-commands as far as the command line was understood.
std::vector<const CLI::App*> parsedChain(const CLI::App& app) {
  std::vector<const CLI::App*> chain{&app};
  while (!chain.back()->get_subcommands().empty())
    chain.push_back(chain.back()->get_subcommands().front());
  return chain;
}

std::string unknownOption(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  const auto take = [&names](const CLI::App& part) {
    for (const CLI::Option* option : part.get_options())
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  };
  take(app);
  for (const CLI::App* group : app.get_subcommands([](const CLI::App*) { return true; }))
    if (group->get_name().empty()) take(*group);
  const std::string* closest = closestName(word.substr(0, word.find('=')), names);
  return "there is no option " + word +
         (closest != nullptr ? "; did you mean " + *closest + "?" : std::string());
}

// What is likely to be wrong behind the parser's own words.
std::string explain(const CLI::App& app, const CLI::ParseError& error) {
  const auto& deepest = *parsedChain(app).back();
  const auto words = app.remaining(true);
  const auto choices =
      deepest.get_subcommands([](const CLI::App* choice) { return !choice->get_name().empty(); });
  if (!words.empty() && words.front().starts_with('-'))
    return deepest.get_option_no_throw(words.front()) != nullptr
               ? words.front() + " must stand behind " + deepest.get_name()
               : unknownOption(deepest, words.front());
  if (deepest.get_require_subcommand_min() == 0) {
    if (!words.empty() && error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError))
      return "\"" + words.front() + "\" is one argument too many";
    return error.what();
  }
  std::vector<std::string> names;
  names.reserve(choices.size());
  for (const auto* choice : choices) names.push_back(choice->get_name());
  if (!words.empty()) return unknownName("sub-command", words.front(), names);
  return "a sub-command is required; known: " + listed(names);
}

int fail(const CLI::App& app, std::string message, int status) {
  while (!message.empty() && message.back() == '\n') message.pop_back();
  std::replace(message.begin(), message.end(), '\n', ' ');
  std::string name;
  for (const auto* part : parsedChain(app)) name += (name.empty() ? "" : " ") + part->get_name();
  std::cerr << name << ": " << printable(message);
  if (status == kWrongUsage) std::cerr << "; see " << name << " --help";
  std::cerr << '\n';
  return status;
}

// The words of the command line; numbers with blanks between them are a list, as with commas.
std::vector<std::string> wordsOf(int argc, char** argv) {
  constexpr std::string_view kNumbers = "0123456789+-.,eE \t";
  std::vector<std::string> words(argv + 1, argv + argc);
  for (std::string& word : words) {
    const bool isList = word.find_first_of(" \t") != std::string::npos &&
                        word.find_first_not_of(kNumbers) == std::string::npos &&
                        word.find_first_of("0123456789") != std::string::npos;
    if (!isList || namesFile(word)) continue;
    std::string list;
    for (const double number : finiteNumbersOrNone(word))
      list += (list.empty() ? "" : ",") + exact(number);
    if (!list.empty()) word = list;
  }
  std::reverse(words.begin(), words.end());  // as the parser wants them
  return words;
}

int parseAndRun(CLI::App& app, int argc, char** argv) {
  // A shell variable without a value would otherwise count as an option that was not given.
  for (int i = 1; i < argc; ++i)
    if (*argv[i] == '\0')
      return fail(app, "the argument after " + std::string(argv[i - 1]) + " is empty", kWrongUsage);
  try {
    app.parse(wordsOf(argc, argv));
    std::cout.flush();
    if (!std::cout) return fail(app, "can't write to standard output", kJobFailed);
    return kDone;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == kDone) return app.exit(error);  // --help and --version
    return fail(app, explain(app, error), kWrongUsage);
  } catch (const UsageError& error) {
    return fail(app, error.what(), kWrongUsage);
  } catch (const UnknownName& error) {
    return fail(app, error.what(), kWrongUsage);
  } catch (const std::bad_alloc&) {
    return fail(app, "not enough memory for this job; try a smaller picture", kJobFailed);
  } catch (const std::exception& error) {
    return fail(app, error.what(), kJobFailed);
  }
}

}  // namespace

CLI::App& addSubCommand(CLI::App& parent, const std::string& name, const std::string& description,
                        const std::string& example, CommonOptions& options) {
  CLI::App& app = *parent.add_subcommand(name, description);
  std::string footer = "Example:\n  " + example;
  for (auto at = footer.find('\n', 9); at != std::string::npos; at = footer.find('\n', at + 3))
    footer.insert(at + 1, "  ");
  app.footer(footer);
  app.add_option("--json", options.json, "Write the figures as JSON; - for standard output")
      ->type_name("FILE");
  app.add_flag("--quiet", options.quiet, "No text but errors");
  app.add_flag("--wide", options.wide, "All columns, and lines longer than 100 characters");
  app.add_flag_callback("--verbose", listenToLibrary,
                        "Let the library's diagnostics through, on standard error");
  return app;
}

void CommonOptions::tellOptions(std::string_view job, std::string_view defaults) {
  provenance.options = present::changedOptions(job, defaults);
  tellsProvenance = true;
}

void CommonOptions::writeJson(std::string_view result) {
  if (!json.empty()) files.write(json, present::stamped(result, provenance));
}

void CommonOptions::printWarnings(const std::vector<std::string>& warnings) const {
  for (const std::string& warning : warnings) printParagraph("Warning: " + warning, wide);
}

void beginJob(const CLI::App& app, CommonOptions& options) {
  const CLI::App* program = &app;
  while (program->get_parent() != nullptr) program = program->get_parent();
  const auto* whole = dynamic_cast<const Program*>(program);
  options.provenance = present::provenanceNow(whole != nullptr ? whole->commandLine : "");
}

void endJob(const CommonOptions& options) {
  if (!options.printsText()) return;
  std::cout << options.files.written();
  if (!options.tellsProvenance) return;
  std::string changed;
  for (const auto& [name, value] : options.provenance.options)
    changed += (changed.empty() ? "" : "; ") + name + " " + present::plainValue(value);
  if (!changed.empty()) printParagraph("Options: " + printable(changed), options.wide);
  std::cout << "greycard " << options.provenance.version << ", " << options.provenance.created
            << "\n";
}

int runGreycard(int argc, char** argv, void (*addSubCommands)(CLI::App& program)) {
  silenceLibrary();
  Program app("Camera image-quality tuning: tone curves, chart detection, colour correction",
              "greycard");
  app.commandLine = commandLineOf(argc, argv);
  app.set_version_flag("--version", std::string("greycard ") + libraryVersion());
  app.footer(
      "Example:\n  greycard simulate -o chart.png\n\n"
      "greycard SUB-COMMAND --help tells more about each. Exit status: 0 done, 1 the job could\n"
      "not be done, 2 wrong usage.");
  app.require_subcommand(1);
  addSubCommands(app);
  return parseAndRun(app, argc, argv);
}

}  // namespace greycard::cli

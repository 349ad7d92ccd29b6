#include "cli/options.h"

#include <CLI/CLI.hpp>

#include "cli/exitcode.h"

namespace cli {

namespace {

constexpr const char* kVersion = "gcad 0.1.0";
const std::vector<std::string> kVersions = {"R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"};

// The parts of `run` that need a second look after parsing: scripts and expressions in the order given.
struct RunParser {
  CLI::App* app = nullptr;
  CLI::Option* scripts = nullptr;
  CLI::Option* expressions = nullptr;
  std::vector<std::string> scriptValues;
  std::vector<std::string> expressionValues;

  void collect(RunOptions& run) const {
    size_t script = 0;
    size_t expression = 0;
    for (const CLI::Option* option : app->parse_order()) {
      if (option == scripts && script < scriptValues.size())
        run.sources.push_back({Source::Kind::Script, scriptValues[script++]});
      if (option == expressions && expression < expressionValues.size())
        run.sources.push_back({Source::Kind::Expression, expressionValues[expression++]});
    }
  }
};

// Options that run and repl share.
void addSessionOptions(CLI::App& app, RunOptions& run) {
  app.add_option("--profile", run.profile, "Value of the variable CPROFILE")->type_name("NAME");
  app.add_option("--without-class", run.withoutClasses, "Leave a built-in object class out: its objects become zombies")
      ->type_name("NAME")
      ->allow_extra_args(false);
  app.add_option("--log", run.log, "File the module logs to (off by default)")->type_name("FILE");
  app.add_option("--log-level", run.logLevel, "0 errors, 1 debug, 2 all")->check(CLI::Range(0, 2));
  app.add_option("--module", run.module, "Plug-in to load instead of the one beside the program")->type_name("FILE");
  app.add_flag("--no-module", run.noModule, "Load no plug-in");
  app.add_option("--screen-log", run.screenLog, "What the screen would have shown, JSON lines")->type_name("FILE");
  app.add_option("--time-limit", run.timeLimitS, "Seconds after which the program ends (exit code 6)")
      ->type_name("S")
      ->check(CLI::PositiveNumber);
  app.add_option("--memory-limit", run.memoryLimitMB, "Megabytes after which the program ends (exit code 7)")
      ->type_name("MB")
      ->check(CLI::PositiveNumber);
  app.add_flag("--allow-programs", run.allowPrograms, "Scripts may start other programs (startapp)");
  app.add_flag("--json", run.json, "A report as one line of JSON on standard error");
}

void addRun(CLI::App& app, RunOptions& run, RunParser& parser) {
  CLI::App& sub = *app.add_subcommand("run", "Run LISP scripts in one drawing");
  parser.app = &sub;
  parser.scripts = sub.add_option("script", parser.scriptValues, "LISP files, in order; - is standard input")
                       ->type_name("SCRIPT.lsp");
  parser.expressions = sub.add_option("-e,--eval", parser.expressionValues, "Evaluate an expression")
                           ->type_name("EXPR")
                           ->allow_extra_args(false);
  sub.add_option("-d,--drawing", run.drawing, "Drawing to open (DXF or DWG); default: a new one")->type_name("FILE");
  sub.add_option("-s,--save", run.save, "Save at the end, format by extension")->type_name("FILE");
  sub.add_option("--as", run.saveAs, "Version to save as")
      ->type_name("VERSION")
      ->check(CLI::IsMember(kVersions, CLI::ignore_case));
  sub.add_option("-i,--input", run.input, "Answers to prompts; - is standard input")->type_name("FILE");
  sub.add_flag("--in-place", run.inPlace, "Save over the drawing that was opened");
  sub.add_flag("--backup", run.backup, "Keep what a save replaces as .bak");
  sub.add_flag("-f,--force", run.force, "Overwrite an existing output");
  sub.add_flag("--dry-run", run.dryRun, "Run, tell what would change, write nothing");
  addSessionOptions(sub, run);
  sub.footer(
      "Arguments behind -- are the script's: the list of strings *ARGV*.\n"
      "Examples:\n"
      "  gcad run draw.lsp -s out.dxf\n"
      "  gcad run -d plan.dxf -e '(command \"_.CIRCLE\" (list 0 0) 5)' --in-place --backup\n"
      "Exit codes: 0 done, 1 LISP error, 2 usage, 3 a drawing cannot be read, 4 a file cannot be written,\n"
      "            6 time limit, 7 memory limit, 130 interrupted; (exit N) sets the code.");
}

// The parts of `batch` that need a second look after parsing.
struct BatchParser {
  CLI::App* app = nullptr;
  RunOptions run;
  std::string shard;

  // The words of `run` that every drawing's process is given; empty text, or what is wrong.
  std::string collect(BatchOptions& batch) const {
    for (const char* name : {"--profile", "--without-class", "--module", "--time-limit", "--memory-limit"})
      for (const std::string& value : app->get_option(name)->results())
        batch.passedOn.insert(batch.passedOn.end(), {name, value});
    for (const char* name : {"--no-module", "--force", "--backup", "--dry-run"})
      if (app->count(name) > 0) batch.passedOn.emplace_back(name);
    if (batch.resume) batch.passedOn.emplace_back("--force");  // results that are too old are made anew
    if (batch.outDir.empty() && (batch.resume || !batch.as.empty() || !batch.format.empty()))
      return "--resume, --as and --format need --out-dir";
    if (shard.empty()) return {};
    int used = 0;
    if (std::sscanf(shard.c_str(), "%d/%d%n", &batch.shard, &batch.shards, &used) != 2 ||
        static_cast<size_t>(used) != shard.size() || batch.shard < 1 || batch.shards < batch.shard)
      return "--shard takes i/n with 1 <= i <= n, such as 2/5";
    return {};
  }
};

void addBatch(CLI::App& app, BatchOptions& batch, BatchParser& parser) {
  CLI::App& sub = *app.add_subcommand("batch", "Run one script over many drawings, each in a process of its own");
  parser.app = &sub;
  sub.add_option("script", batch.script, "LISP file")->type_name("SCRIPT.lsp")->required();
  sub.add_option("inputs", batch.inputs, "Drawings, folders of drawings, patterns with * and ?")
      ->type_name("INPUTS")
      ->required();
  sub.add_option("-j,--jobs", batch.jobs, "Drawings at a time; default: the machine's processors")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  sub.add_option("--out-dir", batch.outDir, "Folder for the results; without it nothing is saved")->type_name("DIR");
  sub.add_option("--as", batch.as, "Version to save as")
      ->type_name("VERSION")
      ->check(CLI::IsMember(kVersions, CLI::ignore_case));
  sub.add_option("--format", batch.format, "Format to save in; default: each drawing's own")
      ->check(CLI::IsMember({"dxf", "dwg"}, CLI::ignore_case));
  sub.add_option("--shard", parser.shard, "The i-th of n parts of the drawings")->type_name("i/n");
  sub.add_flag("--resume", batch.resume, "Leave out drawings whose result is newer than they and the script are");
  sub.add_flag("--json", batch.json, "A line of JSON for each drawing");
  sub.add_flag("-f,--force", parser.run.force, "Overwrite existing results");
  sub.add_flag("--backup", parser.run.backup, "Keep what a result replaces as .bak");
  sub.add_flag("--dry-run", parser.run.dryRun, "Run, write nothing");
  sub.add_option("--profile", parser.run.profile, "Value of the variable CPROFILE")->type_name("NAME");
  sub.add_option("--without-class", parser.run.withoutClasses, "Leave a built-in object class out")
      ->type_name("NAME")
      ->allow_extra_args(false);
  sub.add_option("--module", parser.run.module, "Plug-in to load instead of the one beside the program")
      ->type_name("FILE");
  sub.add_flag("--no-module", parser.run.noModule, "Load no plug-in");
  sub.add_option("--time-limit", parser.run.timeLimitS, "Seconds for each drawing")
      ->type_name("S")
      ->check(CLI::PositiveNumber);
  sub.add_option("--memory-limit", parser.run.memoryLimitMB, "Megabytes for each drawing")
      ->type_name("MB")
      ->check(CLI::PositiveNumber);
  sub.footer(
      "Arguments behind -- are the script's. Results keep the names of the drawings, and below a folder its "
      "structure.\n"
      "Example: gcad batch check.lsp drawings/ -j 4 --out-dir checked --time-limit 60 --resume\n"
      "Exit codes: 0 done, 2 usage, 3 an input is not there, 8 some drawings failed, 130 interrupted.");
}

void addOthers(CLI::App& app, Options& options) {
  CLI::App& repl = *app.add_subcommand("repl", "LISP, interactive");
  repl.add_option("drawing", options.run.drawing, "Drawing to open; default: a new one")->type_name("DRAWING");
  addSessionOptions(repl, options.run);

  CLI::App& convert = *app.add_subcommand("convert", "Save a drawing as another file, format or version");
  convert.add_option("in", options.convert.in, "DXF or DWG")->type_name("IN")->required();
  convert.add_option("out", options.convert.out, "Format by extension")->type_name("OUT")->required();
  convert.add_option("--as", options.convert.as, "Version; default: the drawing's own")
      ->type_name("VERSION")
      ->check(CLI::IsMember(kVersions, CLI::ignore_case));
  convert.add_flag("--binary", options.convert.binary, "Binary DXF");
  convert.add_flag("--backup", options.convert.backup, "Keep what the output replaces as .bak");
  convert.add_flag("-f,--force", options.convert.force, "Overwrite an existing output");
  convert.footer(
      "What the version cannot say is mapped or left out and told on standard error, an object a line.\n"
      "Exit codes: 0 done, 2 usage, 3 IN cannot be read, 4 OUT cannot be written.");

  CLI::App& audit = *app.add_subcommand("audit", "Tell what is wrong with a drawing; mend it");
  audit.add_option("file", options.audit.file, "DXF or DWG")->type_name("FILE")->required();
  audit.add_flag("--fix", options.audit.fix, "Mend what can be mended");
  audit.add_option("-o,--out", options.audit.out, "The mended drawing")->type_name("OUT");
  audit.add_flag("-f,--force", options.audit.force, "Overwrite an existing output");
  audit.add_flag("--json", options.audit.json, "As one JSON object");
  audit.footer(
      "Exit codes: 0 nothing found (with --fix: everything mended), 2 usage, 3 FILE cannot be read,\n"
      "            4 OUT cannot be written, 5 errors.");

  CLI::App& info = *app.add_subcommand("info", "Tell what is in a drawing");
  info.add_option("file", options.info.file, "DXF or DWG")->type_name("FILE")->required();
  info.add_flag("--json", options.info.json, "As one JSON object");

  CLI::App& functions = *app.add_subcommand("functions", "Reference of LISP functions, the module's and the host's");
  functions.add_option("name", options.functions.name, "One function, or a pattern such as vl-*")->type_name("NAME");
  functions.add_flag("--json", options.functions.json, "As one JSON array");

  CLI::App& plot = *app.add_subcommand("plot", "Draw a drawing to a picture");
  plot.add_option("file", options.plot.file, "DXF or DWG")->type_name("FILE")->required();
  plot.add_option("-o,--out", options.plot.out, "Picture, format by extension (.svg)")->type_name("FILE")->required();
  CLI::Option* layout = plot.add_option("--layout", options.plot.layout, "Layout; default: Model")->type_name("NAME");
  plot.add_flag("--all-layouts", options.plot.allLayouts, "Every layout, its name added to the file's")
      ->excludes(layout);
  plot.add_option("--size", options.plot.size, "Page in millimetres (297x210) or a paper name (A3)")->type_name("SIZE");
  plot.add_option("--background", options.plot.background, "white, black, none or #rrggbb")->type_name("COLOUR");
  plot.add_flag("-f,--force", options.plot.force, "Overwrite an existing picture");
}

void addView(CLI::App& app, Options& options, std::vector<std::string>& scripts) {
  CLI::App& sub = *app.add_subcommand("view", "The drawing, the command line and drags on a page in the browser");
  sub.add_option("drawing", options.run.drawing, "Drawing to open; default: a new one")->type_name("DRAWING");
  sub.add_option("-l,--load", scripts, "LISP file to load first")->type_name("SCRIPT.lsp")->allow_extra_args(false);
  sub.add_option("--port", options.view.port, "Port to listen on; default: any free one")
      ->type_name("N")
      ->check(CLI::Range(0, 65535));
  addSessionOptions(sub, options.run);
  sub.footer(
      "Prints the page's address, to be opened in a browser on this machine; it holds a key that is good for this "
      "run.\n"
      "The page shows the drawing, takes LISP and commands, and drags with the mouse. Ctrl-C ends.");
}

Options::Command commandOf(const std::string& name) {
  if (name == "run") return Options::Command::Run;
  if (name == "repl") return Options::Command::Repl;
  if (name == "convert") return Options::Command::Convert;
  if (name == "audit") return Options::Command::Audit;
  if (name == "info") return Options::Command::Info;
  if (name == "batch") return Options::Command::Batch;
  if (name == "view") return Options::Command::View;
  if (name == "functions") return Options::Command::Functions;
  return Options::Command::Plot;
}

// Contradictions that no single option can see.
std::string contradiction(const RunOptions& run) {
  if (run.inPlace && run.drawing.empty()) return "--in-place needs a drawing (-d)";
  if (run.inPlace && !run.save.empty()) return "--in-place and -s exclude each other";
  if (run.noModule && !run.module.empty()) return "--no-module and --module exclude each other";
  if (!run.saveAs.empty() && run.save.empty() && !run.inPlace) return "--as needs -s or --in-place";
  return {};
}

}  // namespace

int parseOptions(const std::vector<std::string>& arguments, Options& options, std::string& out, std::string& message) {
  CLI::App app{"gcad: a headless CAD program with LISP.", "gcad"};
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a path may begin with a slash there too
  app.set_help_all_flag("--help-all", "Help of all subcommands");
  RunParser parser;
  addRun(app, options.run, parser);
  BatchParser batchParser;
  addBatch(app, options.batch, batchParser);
  addOthers(app, options);
  std::vector<std::string> viewScripts;
  addView(app, options, viewScripts);

  std::vector<std::string> own = arguments;
  const auto dashes = std::find(own.begin(), own.end(), "--");
  if (dashes != own.end()) options.run.arguments.assign(dashes + 1, own.end());
  own.erase(dashes, own.end());
  std::reverse(own.begin(), own.end());  // the form in which the parser takes a vector
  try {
    app.parse(own);
  } catch (const CLI::CallForHelp&) {
    const auto chosen = app.get_subcommands();
    out = chosen.empty() ? app.help() : chosen.front()->help("gcad");
    return kDone;
  } catch (const CLI::CallForAllHelp&) {
    out = app.help("", CLI::AppFormatMode::All);
    return kDone;
  } catch (const CLI::CallForVersion&) {
    out = std::string(kVersion) + "\n";
    return kDone;
  } catch (const CLI::ParseError& error) {
    message = std::string("gcad: ") + error.what() + "\nTry gcad --help.\n";
    return kUsage;
  }
  const CLI::App& chosen = *app.get_subcommands().front();
  options.command = commandOf(chosen.get_name());
  if (options.command == Options::Command::Batch) {
    options.batch.arguments = options.run.arguments;
    if (const std::string wrong = batchParser.collect(options.batch); !wrong.empty()) {
      message = "gcad: " + wrong + "\n";
      return kUsage;
    }
  } else if (options.command != Options::Command::Run && !options.run.arguments.empty()) {
    message = "gcad: only run and batch take arguments behind --\n";
    return kUsage;
  }
  for (const std::string& script : viewScripts) options.run.sources.push_back({Source::Kind::Script, script});
  if (options.command == Options::Command::Run) {
    parser.collect(options.run);
    options.run.hasLogLevel = chosen.count("--log-level") > 0;
    if (const std::string wrong = contradiction(options.run); !wrong.empty()) {
      message = "gcad: " + wrong + "\n";
      return kUsage;
    }
  }
  return -1;
}

}  // namespace cli

// What the command line of gcad says.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

// A script or an expression, in the order given.
struct Source {
  enum class Kind : uint8_t { Script, Expression } kind;
  std::string text;  // a file name ("-" is standard input), or the expression
};

struct RunOptions {
  std::vector<Source> sources;
  std::vector<std::string> arguments;  // behind --
  std::string drawing;                 // empty: a new one
  std::string save;                    // empty: not saved
  std::string saveAs;                  // version name; empty: the drawing's own, or the newest
  std::string input;                   // answers to prompts; "-" is standard input
  std::string screenLog;
  std::string profile;
  std::vector<std::string> withoutClasses;
  std::string log;
  int logLevel = 2;
  bool hasLogLevel = false;
  std::string module;
  bool noModule = false;
  bool inPlace = false;
  bool backup = false;
  bool force = false;
  bool dryRun = false;
  double timeLimitS = 0;     // 0: none
  double memoryLimitMB = 0;  // 0: none
  bool json = false;
  bool allowPrograms = false;  // startapp
};

struct BatchOptions {
  std::string script;
  std::vector<std::string> inputs;     // files, folders, patterns
  std::vector<std::string> passedOn;   // words of `run` that hold for every drawing
  std::vector<std::string> arguments;  // behind --
  std::string outDir;                  // empty: nothing is saved
  std::string as;                      // version name
  std::string format;                  // "dxf" or "dwg"; empty: each drawing's own
  int jobs = 0;                        // 0: as many as the machine has processors
  int shard = 1, shards = 1;
  bool resume = false;
  bool json = false;
};

struct InfoOptions {
  std::string file;
  bool json = false;
};

struct ConvertOptions {
  std::string in;
  std::string out;
  std::string as;  // version name; empty: the drawing's own, or the next newer one the format is written in
  bool binary = false;
  bool backup = false;
  bool force = false;
};

struct AuditOptions {
  std::string file;
  bool fix = false;
  std::string out;  // the mended drawing
  bool force = false;
  bool json = false;
};

struct FunctionsOptions {
  std::string name;  // empty: all
  bool json = false;
};

struct PlotOptions {
  std::string file;
  std::string out;
  std::string layout;
  bool allLayouts = false;
  std::string size;
  std::string background;
  bool force = false;
};

struct ViewOptions {
  int port = 0;  // 0: any free one
};

struct Options {
  enum class Command : uint8_t {
    None,
    Run,
    Repl,
    Convert,
    Audit,
    Info,
    Functions,
    Plot,
    Batch,
    View
  } command = Command::None;
  RunOptions run;  // also repl and view
  ConvertOptions convert;
  AuditOptions audit;
  BatchOptions batch;
  InfoOptions info;
  FunctionsOptions functions;
  PlotOptions plot;
  ViewOptions view;
};

// Parses the arguments (without the program's name). Returns -1 when `options` is to be carried out, else the exit
// code: help and version have been printed to `out`, or a message for the person lies in `message`.
int parseOptions(const std::vector<std::string>& arguments, Options& options, std::string& out, std::string& message);

}  // namespace cli

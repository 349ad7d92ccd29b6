// -PLOT: the questions a plotter is set up by, and the picture as a file. What is plotted is the whole layout, fitted
// as its page setup says; answers about windows, scales, pens and trays are taken and make no difference.
#include "host/ap/paths.h"
#include "host/ap/process.h"
#include "host/ed/command/families.h"
#include "host/plot/plot.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using What = Ask::What;

struct Wishes {
  GcText layout;
  GcText device;
  GcText paper;
  GcText file;
  bool narrowed = false;  // an area or scale of its own was asked for
};

Task<bool> isYes(CommandInput& in, const char* prompt) {
  co_return (co_await in.ask(Ask(What::Keyword, prompt).words("Yes No"))).isKeyword("Yes");
}

Task<bool> askArea(CommandInput& in, Wishes& wishes) {
  const Answer area =
      co_await in.ask(Ask(What::Keyword, "\nEnter plot area [Display/Extents/Limits/View/Window/Layout]: ")
                          .words("Display Extents LImits LAyout View Window"));
  wishes.narrowed = wishes.narrowed || area.isKeyword("Window") || area.isKeyword("View") || area.isKeyword("Display");
  if (area.isKeyword("View")) static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter view name: ")));
  if (area.isKeyword("Window")) {
    const Answer low = co_await in.ask(Ask(What::Point, "\nEnter lower left corner of window: "));
    static_cast<void>(co_await in.ask(Ask(What::Point, "\nEnter upper right corner of window: ").from(low.point)));
  }
  co_return true;
}

Task<bool> askDetails(CommandInput& in, Wishes& wishes) {
  wishes.paper = (co_await in.ask(Ask(What::Line, "\nEnter paper size or [?]: "))).text;
  static_cast<void>(
      co_await in.ask(Ask(What::Keyword, "\nEnter paper units [Inches/Millimeters]: ").words("Inches Millimeters")));
  static_cast<void>(co_await in.ask(
      Ask(What::Keyword, "\nEnter drawing orientation [Portrait/Landscape]: ").words("Portrait Landscape")));
  static_cast<void>(co_await isYes(in, "\nPlot upside down? [Yes/No] <No>: "));
  static_cast<void>(co_await askArea(in, wishes));
  const Answer scale =
      co_await in.ask(Ask(What::Line, "\nEnter plot scale (Plotted Millimeters=Drawing Units) or [Fit] <Fit>: "));
  const GcView typed = !scale.text.empty() && scale.text[0] == GC_T('_') ? GcView(scale.text).substr(1) : scale.text;
  wishes.narrowed = wishes.narrowed || !(typed.empty() || gcUpper(typed[0]) == GC_T('F'));
  static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter plot offset (x,y) or [Center]: ")));
  static_cast<void>(co_await isYes(in, "\nPlot with plot styles? [Yes/No] <Yes>: "));
  static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter plot style table name or [?] (enter . for none): ")));
  static_cast<void>(co_await isYes(in, "\nPlot with lineweights? [Yes/No] <Yes>: "));
  if (equalNoCase(wishes.layout, GC_T("Model"))) {
    static_cast<void>(co_await in.ask(
        Ask(What::Word, "\nEnter shade plot setting [As displayed/Wireframe/Hidden] <As displayed>: ")));
    co_return true;
  }
  static_cast<void>(co_await isYes(in, "\nScale lineweights with plot scale? [Yes/No] <No>: "));
  static_cast<void>(co_await isYes(in, "\nPlot paper space first? [Yes/No] <No>: "));
  static_cast<void>(co_await isYes(in, "\nHide paperspace objects? [Yes/No] <No>: "));
  co_return true;
}

// Devices that make files ask for a name only.
bool makesFiles(const GcText& device) {
  const GcText upper = upperText(device);
  for (const GCHAR* each : {GC_T("PDF"), GC_T("SVG"), GC_T("PNG")})
    if (upper.find(each) != GcText::npos) return true;
  return false;
}

// Beside the drawing, with an extension that can be written.
std::string target(CommandInput& in, const Wishes& wishes) {
  GcText name = wishes.file;
  const GcText drawing = in.editor().document().fileName();
  if (name.empty()) {
    name = ap::fileNameOf(drawing);
    name.resize(name.size() - ap::extensionOf(name).size());
    name = (name.empty() ? GcText(GC_T("Drawing1")) : name) + GC_T("-") + wishes.layout;
  }
  if (!gc::plot::canPlotTo(gc::toUtf8(name))) {
    const GcText upper = upperText(wishes.device);
    name += upper.find(GC_T("PNG")) != GcText::npos   ? GC_T(".png")
            : upper.find(GC_T("SVG")) != GcText::npos ? GC_T(".svg")
                                                      : GC_T(".pdf");
  }
  const GcView beside = ap::directoryOf(drawing);
  if (!ap::isAbsolutePath(name) && !beside.empty()) name = GcText(beside) + GC_T("/") + name;
  return gc::toUtf8(name);
}

bool write(CommandInput& in, const Wishes& wishes) {
  if (ap::isDryRun()) return true;
  gc::plot::PlotRequest request;
  request.layout = wishes.layout;
  static_cast<void>(gc::plot::parseSize(gc::toUtf8(wishes.paper), request.widthMm, request.heightMm));
  const std::string path = target(in, wishes);
  gc::plot::PlotReport report;
  Gcad::ErrorStatus status = Gcad::eOk;
  const gc::FileStatus file = gc::plot::plotToFile(in.database(), request, path, report, status);
  if (status == Gcad::eKeyNotFound) {
    in.tell("\nCannot find the layout.\n");
    return false;
  }
  if (!file.ok()) {
    in.tell(("\n" + file.message() + "\n").c_str());
    return false;
  }
  if (wishes.narrowed)
    in.tell("\nWindows and scales are not applied: the whole layout is plotted, fitted to the page.\n");
  in.tell(("\nPlotted to " + path + "\n").c_str());
  return true;
}

Task<bool> plot(CommandInput& in) {
  Wishes wishes;
  const bool detailed = co_await isYes(in, "\nDetailed plot configuration? [Yes/No] <No>: ");
  wishes.layout = (co_await in.ask(Ask(What::Line, "\nEnter a layout name or [?]: "))).text;
  if (wishes.layout.empty()) wishes.layout = in.editor().layout();
  if (!detailed) static_cast<void>(co_await in.ask(Ask(What::Line, "\nEnter a page setup name: ")));
  wishes.device = (co_await in.ask(Ask(What::Line, "\nEnter an output device name or [?]: "))).text;
  if (detailed) static_cast<void>(co_await askDetails(in, wishes));
  if (makesFiles(wishes.device) || co_await isYes(in, "\nWrite the plot to a file [Yes/No] <N>: "))
    wishes.file = (co_await in.ask(Ask(What::Line, "\nEnter file name: "))).text;
  static_cast<void>(co_await isYes(in, "\nSave changes to page setup [Yes/No]? <N>: "));
  const Answer proceed = co_await in.ask(Ask(What::Keyword, "\nProceed with plot [Yes/No] <Y>: ").words("Yes No"));
  co_return !proceed.isKeyword("No") && write(in, wishes);
}

constexpr Command kCommands[] = {
    {"-PLOT", "PLOT", plot},
};

}  // namespace

std::span<const Command> plotCommands() { return kCommands; }

}  // namespace ed

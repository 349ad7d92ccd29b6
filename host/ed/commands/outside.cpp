// The drawing checked; what reaches outside the program or needs a window, refused with a word.
#include "host/db/audit/audit.h"
#include "host/ed/command/families.h"

namespace ed {

namespace {

using What = Ask::What;

Task<bool> audit(CommandInput& in) {
  const Answer fix = co_await in.ask(Ask(What::Keyword, "\nFix any errors detected? [Yes/No] <N>: ").words("Yes No"));
  const GcDbAuditReport report = gcdbAudit(in.database(), fix.isKeyword("Yes"));
  for (const GcDbAuditEntry& entry : report.entries) in.tell(("\n" + GcDbAuditReport::describe(entry)).c_str());
  in.tell(("\nTotal errors found " + std::to_string(report.entries.size()) + " fixed " +
           std::to_string(report.mended()) + "\n")
              .c_str());
  co_return true;
}

Task<bool> refuse(CommandInput& in, const char* question, const char* reason) {
  static_cast<void>(co_await in.ask(Ask(What::Line, question)));
  in.tell(reason);
  co_return false;
}

Task<bool> otherPrograms(CommandInput& in) {
  co_return co_await refuse(
      in, "\nOS Command: ", "\nCommands of the operating system are not run; see startapp and --allow-programs.\n");
}
Task<bool> plugIns(CommandInput& in) {
  co_return co_await refuse(in,
                            "\nEnter the name of the file to load: ", "\nPlug-ins of this kind cannot be loaded.\n");
}
Task<bool> menus(CommandInput& in) {
  co_return co_await refuse(
      in, "\nEnter the name of the customization file or group: ", "\nMenus need a screen; nothing was done.\n");
}

// Windows of the screen: opening or closing them changes nothing here.
Task<bool> windows(CommandInput& in) {
  in.tell("\nThis needs a screen; nothing was done.\n");
  co_return true;
}

constexpr Command kCommands[] = {
    {"AUDIT", "", audit},
    {"SHELL", "SH", otherPrograms},
    {"NETLOAD", "ARX APPLOAD", plugIns},
    {"MENULOAD", "MENUUNLOAD MENU CUILOAD CUIUNLOAD", menus},
    {"PROPERTIES",
     "PROPERTIESCLOSE TOOLPALETTES TOOLPALETTESCLOSE RIBBON RIBBONCLOSE TASKBAR CLEANSCREENON "
     "CLEANSCREENOFF COMMANDLINE COMMANDLINEHIDE OPTIONS 3DORBIT TEXTSCR GRAPHSCR",
     windows},
};

}  // namespace

std::span<const Command> outsideCommands() { return kCommands; }

}  // namespace ed

// Commands run by programs.
#include "host/ed/commandline.h"
#include "host/ed/screen.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/commanditems.h"
#include "host/lisp/lib/drawinghost.h"

using lisp::LispValue;

LISP_GROUP("Commands")

namespace {

std::vector<ed::InputItem> itemsOf(lisp::Args& args) {
  std::vector<ed::InputItem> items(args.count());
  for (ed::InputItem& item : items) {
    const LispValue value = args.any();
    if (!lisplib::toItem(args.vm(), value, item)) lisp::failType(args.vm(), "command argument", value);
  }
  return items;
}

// Feeds the items one after the other; the command may stay open behind the last. False when one was refused.
bool feed(lisp::Args& args) {
  args.vm().flush();
  std::vector<ed::InputItem> items = itemsOf(args);
  ed::CommandLine& line = lisplib::hostOf(args.vm()).editor().commandLine();
  ed::screen().command(items);
  if (items.empty()) {
    line.cancel();
    return true;
  }
  bool good = true;
  for (ed::InputItem& item : items) {
    const ed::FeedStatus status = line.feed(std::move(item));
    if (status == ed::FeedStatus::Unknown) return false;
    good = good && status == ed::FeedStatus::Done;
  }
  return good;
}

}  // namespace

LISP_BUILTIN("command", "(command [item]...) -> nil",
             "Runs a command with its input; it stays open for later calls when input is left to be asked for. "
             "Without items, or with nil, the running command is cancelled.") {
  feed(args);
  return lisplib::settled(args, LispValue::nil());
}

LISP_BUILTIN("vl-cmdf", "(vl-cmdf [item]...) -> T | nil",
             "Like command; every item is evaluated before the command starts.") {
  return lisplib::settled(args, LispValue::boolean(feed(args)));
}

LISP_BUILTIN("command-s", "(command-s item...) -> nil",
             "Runs a whole command apart from any that is open; it is cancelled when input is missing.") {
  args.vm().flush();
  std::vector<ed::InputItem> items = itemsOf(args);
  ed::screen().command(items);
  static_cast<void>(lisplib::hostOf(args.vm()).editor().commandLine().runWhole(std::move(items)));
  return lisplib::settled(args, LispValue::nil());
}

LISP_BUILTIN("initcommandversion", "(initcommandversion [n]) -> T",
             "Asks for a version of the next command; every command has one.") {
  return LispValue::t();
}

LISP_BUILTIN("initdia", "(initdia [flag]) -> nil", "Asks for the dialog box of the next command; there are none.") {
  return LispValue::nil();
}

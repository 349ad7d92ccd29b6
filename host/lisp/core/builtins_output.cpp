// Printing and files.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/file_handle.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Output and files")

namespace lisp {

namespace {

FileHandle& openHandle(Args& args, LispValue v) {
  auto* file = objectOf<File>(v, ObjectType::File);
  if (!file) failType(args.vm(), "streamp", v);
  if (!file->handle) fail("file not open");
  return *file->handle;
}

// To the command line, or to the file given as `target`.
void emit(Args& args, TextView text, LispValue target) {
  if (target.isNil()) return args.vm().write(text);
  openHandle(args, target).write(toUtf8(text));
}

LispValue printAs(Args& args, PrintStyle style) {
  if (args.count() == 0) return LispValue::nullSymbol();
  emit(args, args.vm().print(args[0], style), args[1]);
  return args[0];
}

}  // namespace

LISP_BUILTIN("princ", "(princ [x [file]]) -> x", "Prints x as it reads. Without arguments: nothing, silently.") {
  return printAs(args, PrintStyle::Raw);
}
LISP_BUILTIN("prin1", "(prin1 [x [file]]) -> x",
             "Prints x with strings quoted. Without arguments: nothing, silently.") {
  return printAs(args, PrintStyle::Quoted);
}
LISP_BUILTIN("print", "(print [x [file]]) -> x", "Prints a newline, x with strings quoted, and a space.") {
  Text text(1, GC_T('\n'));
  if (args.count() > 0) text.append(args.vm().print(args[0], PrintStyle::Quoted)).push_back(GC_T(' '));
  emit(args, text, args[1]);
  return args.count() > 0 ? args[0] : LispValue::nullSymbol();
}
LISP_BUILTIN("prompt", "(prompt string) -> nil", "Prints a string.") {
  args.vm().write(args.string());
  return LispValue::nil();
}
LISP_BUILTIN("terpri", "(terpri) -> nil", "Prints a newline.") {
  args.vm().write(GC_T("\n"));
  return LispValue::nil();
}
LISP_BUILTIN("write-line", "(write-line string [file]) -> string", "Prints a string and a newline.") {
  const LispValue line = args.stringValue();
  emit(args, Text(line.asString()->view()) + GC_T("\n"), args[1]);
  return line;
}
LISP_BUILTIN("write-char", "(write-char code [file]) -> code", "Prints the character of that code.") {
  const int32_t code = args.integer();
  Text text;
  if (code > 0) appendCodePoint(text, static_cast<uint32_t>(code));
  emit(args, text, args[1]);
  return args[0];
}
LISP_BUILTIN("vl-princ-to-string", "(vl-princ-to-string x) -> string", "What princ would print.") {
  return args.newString(TextView(args.vm().print(args.any(), PrintStyle::Raw)));
}
LISP_BUILTIN("vl-prin1-to-string", "(vl-prin1-to-string x) -> string", "What prin1 would print.") {
  return args.newString(TextView(args.vm().print(args.any(), PrintStyle::Quoted)));
}
LISP_BUILTIN("alert", "(alert string) -> nil", "Shows a message.") {
  const LispValue message = args.stringValue();
  args.vm().flush();
  args.vm().host().alert(message.asString()->view());
  return LispValue::nil();
}

// ---- open files

LISP_BUILTIN("open", "(open name mode [encoding]) -> file | nil",
             "Opens a text file: mode \"r\" to read, \"w\" to write anew, \"a\" to append.") {
  const TextView name = args.string();
  const Text mode = lowerCase(args.string());
  FileHandle::Mode how;
  if (mode == GC_T("r"))
    how = FileHandle::Mode::Read;
  else if (mode == GC_T("w"))
    how = FileHandle::Mode::Write;
  else if (mode == GC_T("a"))
    how = FileHandle::Mode::Append;
  else
    fail("bad argument value: open mode");
  std::unique_ptr<FileHandle> handle(FileHandle::open(name, how));
  if (!handle) return LispValue::nil();
  if (how == FileHandle::Mode::Write && args.more() && args.string() == GC_T("utf8-bom")) handle->write("\xEF\xBB\xBF");
  File* file = args.vm().heap().create<File>(ObjectType::File);
  file->handle = std::move(handle);
  file->name = Text(name);
  return LispValue::of(static_cast<Object*>(file));
}

LISP_BUILTIN("close", "(close file) -> nil", "Closes a file.") {
  File& file = args.file();
  if (!file.handle) fail("file not open");
  file.handle.reset();
  return LispValue::nil();
}

LISP_BUILTIN("read-line", "(read-line [file]) -> string | nil", "The next line, without its end; nil after the last.") {
  if (args.count() == 0 || args[0].isNil()) {
    Text line;
    args.vm().flush();
    return args.vm().host().readLine(line) ? args.newString(TextView(line)) : LispValue::nil();
  }
  std::string bytes;
  if (!openHandle(args, args[0]).readLine(bytes)) return LispValue::nil();
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  return args.newString(TextView(isValidUtf8(bytes) ? fromUtf8(bytes) : args.vm().environment().decodeLegacy(bytes)));
}

LISP_BUILTIN("read-char", "(read-char [file]) -> code | nil", "The next character's code; every line end is 10.") {
  if (args.count() == 0 || args[0].isNil()) {
    Text& typed = args.vm().typedText();
    args.vm().flush();
    if (typed.empty()) {
      if (!args.vm().host().readLine(typed)) return LispValue::nil();
      typed.push_back(GC_T('\n'));
    }
    const GCHAR c = typed.front();
    typed.erase(0, 1);
    return LispValue::integer(static_cast<uint16_t>(c));
  }
  FileHandle& file = openHandle(args, args[0]);
  const int byte = file.readByte();
  if (byte < 0) return LispValue::nil();
  if (byte < 0xC0) return LispValue::integer(byte);
  // The lead byte of a UTF-8 sequence: its followers belong to the character.
  std::string sequence(1, static_cast<char>(byte));
  for (int more = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1; more > 0; --more) {
    const int next = file.readByte();
    if (next < 0) break;
    sequence.push_back(static_cast<char>(next));
  }
  const Text text = isValidUtf8(sequence) ? fromUtf8(sequence) : args.vm().environment().decodeLegacy(sequence);
  return LispValue::integer(static_cast<uint16_t>(text[0]));
}

// ---- the file system

LISP_BUILTIN("findfile", "(findfile name) -> full name | nil",
             "Looks for a file, as named and along the support path.") {
  const Text found = args.vm().environment().findFile(args.string());
  return found.empty() ? LispValue::nil() : args.newString(TextView(found));
}
LISP_BUILTIN("findtrustedfile", "(findtrustedfile name) -> full name | nil", "The same as findfile.") {
  const Text found = args.vm().environment().findFile(args.string());
  return found.empty() ? LispValue::nil() : args.newString(TextView(found));
}
LISP_BUILTIN("vl-file-delete", "(vl-file-delete name) -> T | nil", "Deletes a file.") {
  return LispValue::boolean(files::remove(args.string()));
}
LISP_BUILTIN("vl-file-copy", "(vl-file-copy from to [append]) -> bytes | nil",
             "Copies a file, or appends it to another.") {
  const TextView from = args.string();
  const TextView to = args.string();
  const int64_t copied = files::copy(from, to, args.moreNotNil());
  return copied < 0 ? LispValue::nil() : LispValue::integer(static_cast<int32_t>(copied));
}
LISP_BUILTIN("vl-file-rename", "(vl-file-rename from to) -> T | nil", "Renames a file.") {
  const TextView from = args.string();
  return LispValue::boolean(files::rename(from, args.string()));
}
LISP_BUILTIN("vl-file-size", "(vl-file-size name) -> bytes | nil", "The size of a file; 0 for a directory.") {
  const int64_t bytes = files::size(args.string());
  if (bytes < 0) return LispValue::nil();
  return bytes <= INT32_MAX ? LispValue::integer(static_cast<int32_t>(bytes))
                            : LispValue::real(static_cast<double>(bytes));
}
LISP_BUILTIN("vl-file-systime", "(vl-file-systime name) -> list | nil",
             "Last change: year, month, day of the week, day, hour, minute, second, millisecond.") {
  Moment t;
  if (!files::modified(args.string(), t)) return LispValue::nil();
  ListBuilder out(args.vm());
  for (const int part : {t.year, t.month, t.weekday, t.day, t.hour, t.minute, t.second, t.millisecond})
    out.add(LispValue::integer(part));
  return out.list();
}
LISP_BUILTIN("vl-file-directory-p", "(vl-file-directory-p name) -> T | nil", "Whether the name is a directory's.") {
  return LispValue::boolean(files::isDirectory(args.string()));
}
LISP_BUILTIN("vl-mkdir", "(vl-mkdir name) -> T | nil", "Makes a directory; nil when it exists.") {
  return LispValue::boolean(files::makeDirectory(args.string()));
}
LISP_BUILTIN("vl-filename-base", "(vl-filename-base name) -> string", "The name without directory and extension.") {
  return args.newString(TextView(files::baseOf(args.string())));
}
LISP_BUILTIN("vl-filename-directory", "(vl-filename-directory name) -> string", "The directory part of the name.") {
  return args.newString(TextView(files::directoryOf(args.string())));
}
LISP_BUILTIN("vl-filename-extension", "(vl-filename-extension name) -> string | nil", "The extension with its dot.") {
  const Text extension = files::extensionOf(args.string());
  return extension.empty() ? LispValue::nil() : args.newString(TextView(extension));
}

LISP_BUILTIN("vl-filename-mktemp", "(vl-filename-mktemp [pattern [directory [extension]]]) -> string",
             "A file name that is not in use.") {
  Text pattern = args.moreNotNil() ? Text(args.string()) : (args.skip(), Text(GC_T("$VL~~")));
  Text directory = args.moreNotNil() ? Text(args.string()) : (args.skip(), Text());
  Text extension = args.moreNotNil() ? Text(args.string()) : Text();
  if (directory.empty()) directory = files::directoryOf(pattern);
  if (directory.empty()) directory = args.vm().environment().temporaryDirectory();
  if (extension.empty()) extension = files::extensionOf(pattern);
  if (extension.find(GC_T('.')) == Text::npos && !extension.empty()) extension.insert(extension.begin(), GC_T('.'));
  const Text base = files::baseOf(pattern);
  const bool ends = directory.back() == GC_T('/') || directory.back() == GC_T('\\');
  for (uint32_t number = 1;; ++number) {
    Text name = directory;
    if (!ends) name.push_back(GC_T('/'));
    name.append(base);
    appendInteger(name, static_cast<int64_t>(number));
    name.append(extension);
    // Names given out once are not given out again, even before the file exists.
    if (!files::exists(name) && !files::isDirectory(name) && args.vm().takeTemporaryName(name))
      return args.newString(TextView(name));
  }
}

}  // namespace lisp

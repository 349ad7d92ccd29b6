// Files as LISP programs use them, and the few questions they ask of the file system. Names are UTF-16 with either
// separator. The one place that knows the platform's file functions.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "host/lisp/core/calendar.h"

namespace lisp {

class FileHandle {
 public:
  enum class Mode : uint8_t { Read, Write, Append };
  ~FileHandle();
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  // Null when the file cannot be opened.
  static FileHandle* open(TextView name, Mode mode);

  // A byte, or -1 at the end. Line ends CRLF and CR count as one LF.
  int readByte();
  // The bytes of a line without its end; false at the end of the file.
  bool readLine(std::string& line);
  void write(std::string_view bytes);

 private:
  explicit FileHandle(std::FILE* file) : m_file(file) {}
  std::FILE* m_file;
};

namespace files {

bool readWhole(TextView name, std::string& bytes);
bool exists(TextView name);
bool isDirectory(TextView name);
bool remove(TextView name);               // a file only
bool rename(TextView from, TextView to);  // fails when `to` exists
// Bytes copied, -1 on failure. Does not overwrite; appends if asked to.
int64_t copy(TextView from, TextView to, bool append);
int64_t size(TextView name);  // -1 when there is none
bool makeDirectory(TextView name);
bool modified(TextView name, Moment& local);
// Names in a directory, without "." and ".."; unsorted.
std::vector<Text> list(TextView directory, bool directories, bool plainFiles);
Text absolute(TextView name);
Text temporaryDirectory();
// Directory part without its last separator; base name; extension with its dot.
Text directoryOf(TextView name);
Text baseOf(TextView name);
Text extensionOf(TextView name);

}  // namespace files

}  // namespace lisp

// One record of a modeller's body, before it is text ("SAT") or bytes ("SAB").
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ge/point.h"

namespace gcmodeler {

// The two forms that are written: text of version 400, which every later program reads, and bytes of version 21800,
// the form drawings have since 2013.
enum class Form : uint8_t { Text400, Binary21800 };

class Record {
 public:
  // A kind of several words ("plane-surface") has one tag for each of them in bytes.
  Record(Form form, std::string kind);

  Record& ref(int index);
  Record& integer(int value);
  Record& real(double value);
  Record& place(const GcGePoint3d& point);
  Record& vector(const GcGeVector3d& vector);
  // A word in the text, a bit in bytes.
  Record& flag(bool value, const char* word);
  // A word in the text, a number in bytes.
  Record& choice(int value, const char* word);
  Record& word(const char* word);
  Record& text(const char* text);
  Record& open();
  Record& close();

  // The record of a later version has what the earlier one lacks.
  [[nodiscard]] bool isBinary() const { return m_form == Form::Binary21800; }
  // Whole, with its end.
  [[nodiscard]] std::string end() const;

 private:
  Record& append(const std::string& word);
  Record& tag(int tag);
  Record& number(int tag, int value);
  void bytes(const void* value, size_t size);
  void triple(int tag, double x, double y, double z);

  Form m_form;
  std::string m_out;
};

}  // namespace gcmodeler

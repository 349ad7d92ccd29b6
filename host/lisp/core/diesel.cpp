#include "host/lisp/core/diesel.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/lisp/core/calendar.h"
#include "host/lisp/core/units.h"

namespace lisp {

namespace {

constexpr int kMaxNesting = 100;

class Macro {
 public:
  Macro(TextView text, const Environment& environment, int nesting)
      : m_text(text), m_environment(environment), m_nesting(nesting) {}

  // Text up to the end, or within a call up to , or ).
  Text run(bool inCall) {
    Text out;
    while (m_at < m_text.size()) {
      const GCHAR c = m_text[m_at];
      if (inCall && (c == GC_T(',') || c == GC_T(')'))) break;
      if (c == GC_T('"')) {
        quoted(out);
      } else if (c == GC_T('$') && m_at + 1 < m_text.size() && m_text[m_at + 1] == GC_T('(')) {
        m_at += 2;
        out.append(callAt());
      } else {
        out.push_back(c);
        ++m_at;
      }
    }
    return out;
  }

 private:
  void quoted(Text& out) {
    for (++m_at; m_at < m_text.size(); ++m_at) {
      if (m_text[m_at] == GC_T('"')) {
        ++m_at;
        if (m_at >= m_text.size() || m_text[m_at] != GC_T('"')) return;
      }
      out.push_back(m_text[m_at]);
    }
  }

  Text callAt() {
    if (++m_nesting > kMaxNesting) {
      m_at = m_text.size();
      return Text(GC_T("$?"));
    }
    std::vector<Text> parts;
    do {
      parts.push_back(run(true));
    } while (m_at < m_text.size() && m_text[m_at++] == GC_T(','));
    --m_nesting;
    return apply(lowerCase(parts[0]), parts);
  }

  static Text number(double v) {
    Text text;
    if (v == std::floor(v) && std::abs(v) < 1e15) {
      appendInteger(text, static_cast<int64_t>(v));
      return text;
    }
    appendReal(text, v);
    return text;
  }

  Text apply(const Text& name, const std::vector<Text>& p) {
    const auto text = [&](size_t i) { return i < p.size() ? p[i] : Text(); };
    const auto value = [&](size_t i) { return i < p.size() ? leadingReal(p[i]) : 0.0; };
    const auto truth = [](bool b) { return Text(b ? GC_T("1") : GC_T("0")); };
    if (name == GC_T("edtime")) return editTime(value(1), text(2));
    if (name == GC_T("getvar")) {
      Text result;
      return m_environment.variableText(text(1), result) ? result : Text();
    }
    if (name == GC_T("getenv")) {
      Text result;
      return m_environment.getEntry(text(1), result) ? result : Text();
    }
    if (name == GC_T("if")) return value(1) != 0 ? text(2) : text(3);
    if (name == GC_T("eval")) return Macro(text(1), m_environment, m_nesting + 1).run(false);
    if (name == GC_T("eq")) return truth(text(1) == text(2));
    if (name == GC_T("=")) return truth(value(1) == value(2));
    if (name == GC_T("!=")) return truth(value(1) != value(2));
    if (name == GC_T("<")) return truth(value(1) < value(2));
    if (name == GC_T(">")) return truth(value(1) > value(2));
    if (name == GC_T("<=")) return truth(value(1) <= value(2));
    if (name == GC_T(">=")) return truth(value(1) >= value(2));
    if (name == GC_T("fix")) return number(std::trunc(value(1)));
    if (name == GC_T("upper")) return upperCase(text(1));
    if (name == GC_T("strlen")) return number(static_cast<double>(text(1).size()));
    if (name == GC_T("substr")) return part(text(1), value(2), p.size() > 3 ? value(3) : 1e9);
    if (name == GC_T("index")) return item(text(2), value(1));
    if (name == GC_T("nth")) return text(2 + static_cast<size_t>(std::max(0.0, value(1))));
    if (name == GC_T("rtos")) return lengthText(value(1), p);
    if (name == GC_T("angtos")) return angleText(value(1), p);
    return fold(name, p);
  }

  Text lengthText(double v, const std::vector<Text>& p) {
    const int mode = p.size() > 2 ? leadingInteger(p[2]) : m_environment.unitVariable("LUNITS");
    const int prec = p.size() > 3 ? leadingInteger(p[3]) : m_environment.unitVariable("LUPREC");
    if (mode < 1 || mode > 5) return Text();
    return formatLength(v, static_cast<LengthFormat>(mode), prec, m_environment.unitVariable("DIMZIN"));
  }

  Text angleText(double v, const std::vector<Text>& p) {
    const int mode = p.size() > 2 ? leadingInteger(p[2]) : m_environment.unitVariable("AUNITS");
    const int prec = p.size() > 3 ? leadingInteger(p[3]) : m_environment.unitVariable("AUPREC");
    if (mode < 0 || mode > 4) return Text();
    return formatAngle(v, static_cast<AngleFormat>(mode), prec, m_environment.angleBase(),
                       m_environment.unitVariable("ANGDIR") == 1);
  }

  static Text part(const Text& text, double start, double length) {
    if (start < 1 || start > static_cast<double>(text.size())) return Text();
    return text.substr(static_cast<size_t>(start) - 1, static_cast<size_t>(std::max(0.0, length)));
  }

  // Item of a comma-separated text, from 0.
  static Text item(const Text& text, double index) {
    size_t at = 0;
    for (; index >= 1; --index) {
      at = text.find(GC_T(','), at);
      if (at == Text::npos) return Text();
      ++at;
    }
    return text.substr(at, text.find(GC_T(','), at) - at);
  }

  // Operators over all their arguments.
  Text fold(const Text& name, const std::vector<Text>& p) {
    static constexpr const GCHAR* kOperators[] = {GC_T("+"),   GC_T("-"),  GC_T("*"),  GC_T("/"),
                                                  GC_T("and"), GC_T("or"), GC_T("xor")};
    if (std::find(std::begin(kOperators), std::end(kOperators), name) == std::end(kOperators) || p.size() < 2)
      return GC_T("$(") + name + GC_T(")??");
    double result = leadingReal(p[1]);
    const auto asBits = [](double v) { return static_cast<int64_t>(v); };
    for (size_t i = 2; i < p.size(); ++i) {
      const double v = leadingReal(p[i]);
      if (name == GC_T("+"))
        result += v;
      else if (name == GC_T("-"))
        result -= v;
      else if (name == GC_T("*"))
        result *= v;
      else if (name == GC_T("/"))
        result = v != 0 ? result / v : 0;
      else if (name == GC_T("and"))
        result = static_cast<double>(asBits(result) & asBits(v));
      else if (name == GC_T("or"))
        result = static_cast<double>(asBits(result) | asBits(v));
      else
        result = static_cast<double>(asBits(result) ^ asBits(v));
    }
    return number(result);
  }

  // 0 means now; other times are Julian dates with the time of day as fraction.
  static Text editTime(double julian, const Text& format) {
    return formatDate(julian == 0 ? localNow() : momentOf(julian), format);
  }

  TextView m_text;
  const Environment& m_environment;
  int m_nesting;
  size_t m_at = 0;
};

}  // namespace

Text evaluateMacro(TextView text, const Environment& environment) { return Macro(text, environment, 0).run(false); }

}  // namespace lisp

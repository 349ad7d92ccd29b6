#include "host/gi/mtext.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/gi/mtext_tokens.h"
#include "host/gi/strokefont.h"
#include "host/gi/textline.h"

namespace {

constexpr double kLineDistance = 5.0 / 3.0;  // of base lines, of the height
constexpr double kItalicRad = 15 * std::numbers::pi / 180;
constexpr double kTabStop = 4;  // of the height
// Stacked text, all of the height of the text around it.
constexpr double kStackHeight = 0.7;
constexpr double kBarHeight = 0.5;
constexpr double kStackGap = 0.2;  // between the bar and the letters
constexpr double kSlashWidth = 0.6;

// A word, a blank or a stack on its line.
struct Piece {
  const GcGiMTextToken* token;
  double x;
  double width;
};

struct Line {
  std::vector<Piece> pieces;
  GcGiMTextParagraph paragraph;
  double left = 0;    // where it begins in the column
  double width = 0;   // without blanks at its end
  double height = 0;  // of its highest letters
};

bool sameLook(const GcGiMTextLook& a, const GcGiMTextLook& b) {
  return a.height == b.height && a.widthFactor == b.widthFactor && a.obliqueRad == b.obliqueRad && a.rules == b.rules &&
         a.shift == b.shift && a.italic == b.italic && a.hasColor == b.hasColor && a.color == b.color;
}

class LayOut {
 public:
  explicit LayOut(const GcGiMText& text) : m_in(text) {}

  GcGiMTextLayout run() {
    GcGiMTextLook start;
    start.height = m_in.style.height;
    start.widthFactor = m_in.style.widthFactor;
    start.obliqueRad = m_in.style.obliqueRad;
    const std::vector<GcGiMTextToken> tokens = gcgiMTextTokens(m_in.contents, start);
    breakLines(tokens);
    place();
    return std::move(m_out);
  }

 private:
  [[nodiscard]] GcGiTextStyle styleOf(const GcGiMTextLook& look, double scale = 1) const {
    GcGiTextStyle style = m_in.style;
    style.height = look.height * scale;
    style.widthFactor = look.widthFactor;
    style.obliqueRad = look.obliqueRad + (look.italic ? kItalicRad : 0);
    style.vertical = false;
    return style;
  }
  [[nodiscard]] static double gap(const GcGiMTextLook& look) {
    return GcGiStrokeFont::kGap * look.height * look.widthFactor;
  }
  [[nodiscard]] double stackWidth(const GcGiMTextToken& token) const {
    const GcGiTextStyle style = styleOf(token.look, kStackHeight);
    const double upper = gcgiTextLength(token.text, style);
    const double lower = gcgiTextLength(token.below, style);
    if (token.stackSign == GC_T('#')) return upper + lower + kSlashWidth * token.look.height;
    return std::max(upper, lower);
  }
  // To the next piece's origin.
  [[nodiscard]] double widthOf(const GcGiMTextToken& token, double at) const {
    const GcGiMTextLook& look = token.look;
    switch (token.kind) {
      case GcGiMTextToken::kWord: return gcgiTextLength(token.text, styleOf(look)) + gap(look);
      case GcGiMTextToken::kBlank: return GcGiStrokeFont::plain().glyph(U' ').advance * look.height * look.widthFactor;
      case GcGiMTextToken::kTab: {
        const double stop = kTabStop * m_in.style.height;
        return (std::floor(at / stop) + 1) * stop - at;
      }
      case GcGiMTextToken::kStack: return stackWidth(token) + gap(look);
      case GcGiMTextToken::kLineEnd: break;
    }
    return 0;
  }

  void breakLines(const std::vector<GcGiMTextToken>& tokens) {
    bool paragraphStart = true;
    Line* line = nullptr;
    for (std::size_t i = 0; i < tokens.size();) {
      if (line == nullptr) {
        line = &m_lines.emplace_back();
        line->paragraph = tokens[i].paragraph;
        line->left = line->paragraph.leftIndent + (paragraphStart ? line->paragraph.firstIndent : 0);
        paragraphStart = false;
      }
      if (tokens[i].kind == GcGiMTextToken::kLineEnd) {
        if (line->height == 0) line->height = tokens[i].look.height;
        line = nullptr;
        paragraphStart = true;
        ++i;
        continue;
      }
      const std::size_t end = groupEnd(tokens, i);
      if (!fits(tokens, i, end, *line)) {
        line = nullptr;
        continue;
      }
      for (; i < end; ++i) append(tokens[i], *line);
    }
    if (!tokens.empty() && tokens.back().kind == GcGiMTextToken::kLineEnd) {
      m_lines.emplace_back().height = tokens.back().look.height;
    }
  }
  // Words and stacks that follow each other without a blank stay together.
  static std::size_t groupEnd(const std::vector<GcGiMTextToken>& tokens, std::size_t i) {
    const auto solid = [&](std::size_t k) {
      return tokens[k].kind == GcGiMTextToken::kWord || tokens[k].kind == GcGiMTextToken::kStack;
    };
    std::size_t end = i + 1;
    while (solid(i) && end < tokens.size() && solid(end)) ++end;
    return end;
  }
  [[nodiscard]] bool fits(const std::vector<GcGiMTextToken>& tokens, std::size_t i, std::size_t end,
                          const Line& line) const {
    if (m_in.width <= 0 || tokens[i].kind == GcGiMTextToken::kBlank) return true;
    const bool somethingThere = std::any_of(line.pieces.begin(), line.pieces.end(), [](const Piece& piece) {
      return piece.token->kind != GcGiMTextToken::kBlank && piece.token->kind != GcGiMTextToken::kTab;
    });
    if (!somethingThere) return true;
    double at = line.left + endOf(line);
    for (std::size_t k = i; k < end; ++k) at += widthOf(tokens[k], at);
    at -= gap(tokens[end - 1].look);
    // A width that was taken from the text itself must hold it in spite of rounding.
    return at <= (m_in.width - line.paragraph.rightIndent) * (1 + 1e-9);
  }
  [[nodiscard]] static double endOf(const Line& line) {
    return line.pieces.empty() ? 0 : line.pieces.back().x + line.pieces.back().width;
  }
  void append(const GcGiMTextToken& token, Line& line) const {
    const double x = endOf(line);
    line.pieces.push_back({&token, x, widthOf(token, line.left + x)});
    line.height = std::max(line.height, token.look.height);
    if (token.kind == GcGiMTextToken::kWord || token.kind == GcGiMTextToken::kStack) {
      line.width = x + line.pieces.back().width - gap(token.look);
    }
  }

  void place() {
    for (const Line& line : m_lines) m_out.width = std::max(m_out.width, line.left + line.width);
    m_out.lineCount = static_cast<int>(m_lines.size());
    std::vector<double> base(m_lines.size());
    double y = 0;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      const double height = i == 0 || m_in.exactSpacing ? m_in.style.height : m_lines[i].height;
      y -= i == 0 ? m_lines[0].height : kLineDistance * m_in.lineSpacing * height;
      base[i] = y;
    }
    m_out.height = -y;
    const int row = std::clamp((m_in.attachment - 1) / 3, 0, 2);
    const int column = std::clamp((m_in.attachment - 1) % 3, 0, 2);
    const double up = row == 0 ? 0 : row == 1 ? m_out.height / 2 : m_out.height;
    const double columnWidth = m_in.width > 0 ? m_in.width : m_out.width;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      placeLine(m_lines[i], -column * columnWidth / 2, columnWidth, column, base[i] + up);
    }
  }
  void placeLine(const Line& line, double left, double columnWidth, int column, double y) {
    double slack = 0;  // what the line leaves free on its left
    switch (line.paragraph.align) {
      case GcGiMTextAlign::kDefault: slack = column * 0.5; break;
      case GcGiMTextAlign::kCenter: slack = 0.5; break;
      case GcGiMTextAlign::kRight: slack = 1; break;
      case GcGiMTextAlign::kLeft:
      case GcGiMTextAlign::kJustified: break;
    }
    const double x = left + line.left + slack * (columnWidth - line.left - line.paragraph.rightIndent - line.width);
    const GcGiMTextLook* look = nullptr;  // of the run that may grow
    for (const Piece& piece : line.pieces) {
      const GcGiMTextToken& token = *piece.token;
      if (piece.x >= line.width && token.kind == GcGiMTextToken::kBlank) break;  // at the end
      if (token.kind == GcGiMTextToken::kStack) {
        placeStack(token, x + piece.x, y);
        look = nullptr;
      } else if (token.kind == GcGiMTextToken::kTab) {
        look = nullptr;
      } else {
        const GcView text = token.kind == GcGiMTextToken::kBlank ? GcView(GC_T(" "), 1) : GcView(token.text);
        if (look == nullptr || !sameLook(*look, token.look)) {
          startRun(token.look, x + piece.x, y, line.height);
          look = &token.look;
        }
        m_out.runs.back().text += text;
      }
    }
    finishRuns();
  }
  void startRun(const GcGiMTextLook& look, double x, double y, double lineHeight) {
    GcGiMTextRun& run = m_out.runs.emplace_back();
    run.style = styleOf(look);
    run.x = x;
    run.y = y + look.shift * 0.5 * (lineHeight - look.height);
    run.hasColor = look.hasColor;
    run.color = look.color;
    m_rules.push_back(look.rules);
  }
  // Lengths and rules of the runs of one line.
  void finishRuns() {
    for (; m_finished < m_out.runs.size(); ++m_finished) {
      GcGiMTextRun& run = m_out.runs[m_finished];
      run.length = gcgiTextLength(run.text, run.style);
      const uint8_t rules = m_rules[m_finished];
      if ((rules & GcGiTextChar::kUnder) != 0) addRule(run, -0.2);
      if ((rules & GcGiTextChar::kOver) != 0) addRule(run, 1.2);
      if ((rules & GcGiTextChar::kStrike) != 0) addRule(run, 0.4);
    }
  }
  void addRule(const GcGiMTextRun& run, double height) {
    const double y = run.y + height * run.style.height;
    m_out.rules.push_back({run.x, y, run.x + run.length, y, run.hasColor, run.color});
  }
  void placeStack(const GcGiMTextToken& token, double x, double y) {
    const double height = token.look.height;
    const GcGiTextStyle style = styleOf(token.look, kStackHeight);
    const double upper = gcgiTextLength(token.text, style);
    const double lower = gcgiTextLength(token.below, style);
    const double width = stackWidth(token);
    const auto part = [&](const GcText& text, double left, double base, double length) {
      if (text.empty()) return;
      m_out.runs.push_back({text, style, left, base, length, token.look.hasColor, token.look.color});
      m_rules.push_back(0);
    };
    const auto bar = [&](double x1, double y1, double x2, double y2) {
      m_out.rules.push_back({x1, y1, x2, y2, token.look.hasColor, token.look.color});
    };
    if (token.stackSign == GC_T('#')) {
      part(token.text, x, y + (1 - kStackHeight + 0.15) * height, upper);
      part(token.below, x + width - lower, y - 0.15 * height, lower);
      bar(x + upper, y - 0.15 * height, x + width - lower, y + 1.15 * height);
      return;
    }
    const bool fraction = token.stackSign == GC_T('/');
    part(token.text, fraction ? x + (width - upper) / 2 : x, y + (kBarHeight + kStackGap) * height, upper);
    part(token.below, fraction ? x + (width - lower) / 2 : x, y + (kBarHeight - kStackGap - kStackHeight) * height,
         lower);
    if (fraction) bar(x, y + kBarHeight * height, x + width, y + kBarHeight * height);
  }

  const GcGiMText& m_in;
  std::vector<Line> m_lines;
  std::vector<uint8_t> m_rules;  // of each run
  std::size_t m_finished = 0;
  GcGiMTextLayout m_out;
};

}  // namespace

GcGiMTextLayout gcgiLayOutMText(const GcGiMText& text) { return LayOut(text).run(); }

void gcgiDrawMText(const GcGiMTextLayout& layout, const GcGePoint3d& position, const GcGeVector3d& direction,
                   const GcGeVector3d& normal, const GcCmEntityColor& ownColor, GcGiWorldDraw& draw) {
  const GcGeVector3d x = direction.normal();
  const GcGeVector3d y = normal.crossProduct(x).normal();
  const auto at = [&](double u, double v) { return position + x * u + y * v; };
  const auto setColor = [&](bool hasColor, const GcCmEntityColor& color) {
    draw.subEntityTraits().setColor(hasColor ? color : ownColor);
  };
  for (const GcGiMTextRun& run : layout.runs) {
    setColor(run.hasColor, run.color);
    draw.geometry().text(at(run.x, run.y), normal, x, run.text.c_str(), run.style);
  }
  for (const GcGiMTextRule& rule : layout.rules) {
    setColor(rule.hasColor, rule.color);
    const GcGePoint3d ends[] = {at(rule.x1, rule.y1), at(rule.x2, rule.y2)};
    draw.geometry().polyline(2, ends);
  }
  setColor(false, ownColor);
}

GcText gcgiPlainMText(GcView contents) {
  GcText plain;
  for (const GcGiMTextToken& token : gcgiMTextTokens(contents, GcGiMTextLook())) {
    switch (token.kind) {
      case GcGiMTextToken::kWord: plain += token.text; break;
      case GcGiMTextToken::kBlank: plain += GC_T(' '); break;
      case GcGiMTextToken::kTab: plain += GC_T('\t'); break;
      case GcGiMTextToken::kLineEnd: plain += GC_T('\n'); break;
      case GcGiMTextToken::kStack: plain += token.text + token.stackSign + token.below; break;
    }
  }
  return plain;
}

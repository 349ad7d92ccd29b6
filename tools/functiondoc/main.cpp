// functiondoc json|en|pl: the module's LISP functions to standard output, as the file that goes beside the module or
// as the reference page in English or Polish. Everything comes from the rows of module/app/functions.inc.
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

namespace {

struct Row {
  const char* name;
  const char* body;
  const char* arguments;
  const char* result;
  const char* english;
  const char* polish;
  [[nodiscard]] bool isBuilt() const { return std::strcmp(body, "notBuilt") != 0; }
};

constexpr Row kRows[] = {
#define LISP_FUNCTION(name, body, arguments, result, english, polish) {name, #body, arguments, result, english, polish},
#include "module/app/functions.inc"
#undef LISP_FUNCTION
};

// The texts are free of control characters, so quotes and backslashes are all there is to escape.
std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

// A cell of a Markdown table.
std::string cell(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '|') out += '\\';
    out += c;
  }
  return out;
}

// The call as one writes it: argument names without their types.
std::string call(const Row& row) {
  std::string out = std::string("(") + row.name;
  std::string_view rest = row.arguments;
  while (!rest.empty()) {
    const std::size_t blank = rest.find(' ');
    std::string_view word = rest.substr(0, blank);
    rest = blank == std::string_view::npos ? std::string_view() : rest.substr(blank + 1);
    const bool optional = word.ends_with(']');
    const bool repeated = word.ends_with("...");
    out += ' ';
    out += word.substr(0, word.find(':'));
    if (repeated && word.find(':') != std::string_view::npos) out += " ...";
    if (optional) out += ']';
  }
  return out + ")";
}

void writeJson() {
  std::puts("{\n  \"module\": \"VrkEntPropertyEx\",\n  \"functions\": [");
  int code = 0;
  for (const Row& row : kRows) {
    std::printf("    {\"name\": %s, \"code\": %d, \"arguments\": %s, \"result\": %s, \"built\": %s,\n",
                quoted(row.name).c_str(), code, quoted(row.arguments).c_str(), quoted(row.result).c_str(),
                row.isBuilt() ? "true" : "false");
    std::printf("     \"help\": {\"en\": %s, \"pl\": %s}}%s\n", quoted(row.english).c_str(), quoted(row.polish).c_str(),
                ++code < static_cast<int>(std::size(kRows)) ? "," : "");
  }
  std::puts("  ]\n}");
}

struct Page {
  const char* title;
  const char* intro;
  const char* head;
  const char* Row::*help;
};

constexpr Page kEnglish = {
    "# LISP functions of the module",
    "Made from the module's function table (`module/app/functions.inc`) by `tools/functiondoc`. Arguments are\n"
    "`name:type`; `[ ]` optional, `...` repeated. Types: `ename` entity name, `picks` selection set, `space`\n"
    "\"ModelSpace\" or \"PaperSpace\", `point` a list of two or three numbers, `int` an integer of 16 bits, `number` "
    "an\n"
    "integer or a real, `real` a real only, `flag` T or nil, `any` not looked at. A refused call prints a message in\n"
    "Polish and yields nil.",
    "| Call | Arguments | Result | What it does |", &Row::english};
constexpr Page kPolish = {
    "# Funkcje LISP modułu",
    "Strona utworzona z tablicy funkcji modułu (`module/app/functions.inc`) przez `tools/functiondoc`. Argumenty mają\n"
    "postać `nazwa:typ`; `[ ]` argument opcjonalny, `...` powtarzany. Typy: `ename` nazwa obiektu, `picks` zbiór\n"
    "wskazań, `space` \"ModelSpace\" lub \"PaperSpace\", `point` lista dwóch lub trzech liczb, `int` liczba całkowita\n"
    "16-bitowa, `number` liczba całkowita lub rzeczywista, `real` tylko rzeczywista, `flag` T lub nil, `any` typ nie\n"
    "jest sprawdzany. Odrzucone wywołanie wypisuje komunikat i daje nil.",
    "| Wywołanie | Argumenty | Wynik | Opis |", &Row::polish};

void writePage(const Page& page) {
  std::printf("%s\n\n%s\n\n%s\n| --- | --- | --- | --- |\n", page.title, page.intro, page.head);
  for (const Row& row : kRows) {
    const std::string arguments = *row.arguments != 0 ? "`" + cell(row.arguments) + "`" : "";
    std::printf("| `%s` | %s | %s | %s |\n", call(row).c_str(), arguments.c_str(), cell(row.result).c_str(),
                cell(row.*page.help).c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view what = argc == 2 ? argv[1] : "";
  if (what == "json")
    writeJson();
  else if (what == "en")
    writePage(kEnglish);
  else if (what == "pl")
    writePage(kPolish);
  else
    return std::fputs("usage: functiondoc json|en|pl\n", stderr), 2;
  return 0;
}

// Turns forms into functions for the evaluator.
//
// Special forms and the commonest builtins become instructions; those builtins are checked when they run, since
// programs may redefine them or hide them with a local. Errors of form (an odd setq, a bad argument list) compile into
// an instruction that raises them, so they appear when the form is evaluated and not before.
// Nesting: below a fixed depth the rest of a form becomes a call of eval, so no form overflows the C++ stack.
// Nothing here collects garbage.
#pragma once

#include <memory>
#include <vector>

#include "host/lisp/core/form_positions.h"
#include "host/lisp/core/function_cache.h"
#include "host/lisp/core/opcodes.h"
#include "host/lisp/core/symbols.h"

namespace lisp {

class Vm;

enum class SpecialForm : uint32_t {
  Quote,
  Setq,
  If,
  Progn,
  While,
  And,
  Or,
  Cond,
  Lambda,
  Function,
  Defun,
  DefunQ,
  Foreach,
  Repeat
};

// What is known of the text a form comes from.
struct CompileSource {
  std::shared_ptr<const Text> file;
  const FormPositions* positions = nullptr;
};

// A function without parameters that evaluates `form`.
Function* compileForm(Vm& vm, LispValue form, const CompileSource& source);
// A function of a list (lambda (args) body...) or ((args) body...).
Function* compileLambda(Vm& vm, LispValue list, const CompileSource& source);

class Compiler {
 public:
  Compiler(Vm& vm, const CompileSource& source, int nesting) : m_vm(vm), m_source(source), m_nesting(nesting) {}

  Function* form(LispValue form);
  // `parameters` and `body` as in defun; name may be null.
  Function* function(Symbol* name, LispValue parameters, LispValue body);

 private:
  enum class Want : uint8_t { Value, Effect };
  struct Label {
    int32_t at = -1;
    std::vector<size_t> uses;
  };
  // An operand that needs no code: a variable or a constant.
  struct Simple {
    enum Kind : uint8_t { None, Variable, Constant } kind = None;
    Word word = 0;
  };

  void expression(LispValue form, Want want);
  void list(LispValue form, Want want);
  void special(SpecialForm which, LispValue form, Want want);
  void symbolValue(LispValue symbol);
  void constant(LispValue value);
  void body(LispValue forms, Want want);
  void callSymbol(Symbol* head, LispValue arguments);
  void callHead(LispValue head, LispValue arguments);
  void evalLater(LispValue form);
  void arguments(LispValue forms, uint32_t& count);
  void macro(Symbol* head, LispValue form, Want want);

  void quote(LispValue form);
  void setq(LispValue form, Want want);
  void assign(LispValue target, LispValue valueForm, Want want);
  bool addToVariable(Symbol* target, LispValue valueForm);
  void ifForm(LispValue form, Want want);
  void whileForm(LispValue form, Want want);
  void andOr(LispValue form, Want want);
  void condForm(LispValue form, Want want);
  void lambdaForm(LispValue form);
  void functionForm(LispValue form);
  void defunForm(LispValue form, bool asList);
  void foreachForm(LispValue form, Want want);
  void repeatForm(LispValue form, Want want);

  bool core(Core id, LispValue form, Want want);
  bool coreUnary(Core id, LispValue argument);
  void binary(Op placesSS, LispValue left, LispValue right, uint32_t a);
  bool step(Core id, LispValue form, Symbol*& variable, int32_t& by) const;
  void access(Core id, LispValue argument);
  void test(LispValue form, Label& target, bool sense);
  bool testCore(Core id, LispValue form, Label& target, bool sense);
  Core activeCore(LispValue form, uint32_t& count) const;
  Simple simple(LispValue form) const;

  void emit(Op op, uint32_t a = 0, int32_t b = 0);
  void word(Word w) { m_words.push_back(w); }
  void valueWord(LispValue v);
  void symbolWord(const Symbol* s) { word(reinterpret_cast<Word>(s)); }
  void jump(Op op, uint32_t a, Label& target);
  void use(Label& target);
  void place(Label& label);
  void failWith(std::string_view asciiMessage);
  void failType(std::string_view predicate, LispValue culprit);
  void adjust(int by);
  void mark(LispValue form);
  Function* finish(Symbol* name);
  bool parseParameters(LispValue parameters, std::vector<Symbol*>& variables, uint32_t& paramCount);

  Vm& m_vm;
  const CompileSource& m_source;
  int m_nesting;
  std::vector<Word> m_words;
  std::vector<LispValue> m_constants;
  std::vector<CodePosition> m_positions;
  SourcePosition m_at;
  size_t m_head = 0;  // offset of the instruction being emitted
  int m_depth = 0;
  int m_maxDepth = 0;
};

}  // namespace lisp

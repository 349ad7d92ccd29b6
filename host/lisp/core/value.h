// A LISP value in 64 bits. Reals are stored as themselves; everything else lives in the space of negative NaNs that
// arithmetic never yields, with a kind in the upper 16 bits and a 32-bit integer or a 48-bit pointer below.
//   0xFFF9 integer   0xFFFA symbol   0xFFFB cons   0xFFFC string   0xFFFD other object   0xFFFE nil, T, null symbol
// Whoever makes a real from foreign bits goes through real(), which folds all NaNs into one.
#pragma once

#include <bit>
#include <cstdint>

namespace lisp {

struct Symbol;
struct Cons;
struct Object;
struct StringObject;

class LispValue {
 public:
  constexpr LispValue() : m_bits(kNilBits) {}

  static constexpr LispValue nil() { return LispValue(kNilBits); }
  static constexpr LispValue t() { return LispValue(kTrueBits); }
  static constexpr LispValue nullSymbol() { return LispValue(kNullSymbolBits); }
  static constexpr LispValue boolean(bool b) { return b ? t() : nil(); }
  static constexpr LispValue integer(int32_t i) { return LispValue(kIntegerTag << 48 | static_cast<uint32_t>(i)); }
  static LispValue real(double d) { return d == d ? LispValue(std::bit_cast<uint64_t>(d)) : LispValue(kNanBits); }
  // The result of arithmetic on values: a NaN of the machine's own making is none of the tagged ones.
  static LispValue computed(double d) { return LispValue(std::bit_cast<uint64_t>(d)); }
  static LispValue of(Symbol* p) { return pointer(kSymbolTag, p); }
  static LispValue of(Cons* p) { return pointer(kConsTag, p); }
  static LispValue of(StringObject* p) { return pointer(kStringTag, p); }
  static LispValue of(Object* p) { return pointer(kObjectTag, p); }
  static constexpr LispValue fromBits(uint64_t bits) { return LispValue(bits); }

  constexpr uint64_t bits() const { return m_bits; }
  constexpr uint64_t tag() const { return m_bits >> 48; }
  constexpr bool isNil() const { return m_bits == kNilBits; }
  constexpr bool isTrue() const { return m_bits == kTrueBits; }
  constexpr explicit operator bool() const { return m_bits != kNilBits; }
  constexpr bool isReal() const { return m_bits < kIntegerTag << 48; }
  constexpr bool isInteger() const { return tag() == kIntegerTag; }
  constexpr bool isNumber() const { return m_bits < kSymbolTag << 48; }
  constexpr bool isPair() const { return tag() == kConsTag; }
  constexpr bool isList() const { return isPair() || isNil(); }
  constexpr bool isString() const { return tag() == kStringTag; }
  constexpr bool isObject() const { return tag() == kObjectTag; }
  // A symbol with a cell of its own. T and the null symbol are symbols too, but have none.
  constexpr bool isCellSymbol() const { return tag() == kSymbolTag; }
  constexpr bool isSymbol() const { return isCellSymbol() || isTrue() || m_bits == kNullSymbolBits; }
  constexpr bool isNullSymbol() const { return m_bits == kNullSymbolBits; }

  constexpr int32_t asInteger() const { return static_cast<int32_t>(static_cast<uint32_t>(m_bits)); }
  double asReal() const { return std::bit_cast<double>(m_bits); }
  // An integer or a real as a double; the value must be a number.
  double asDouble() const { return isInteger() ? asInteger() : asReal(); }
  Symbol* asSymbol() const { return static_cast<Symbol*>(address()); }
  Cons* asCons() const { return static_cast<Cons*>(address()); }
  StringObject* asString() const { return static_cast<StringObject*>(address()); }
  Object* asObject() const { return static_cast<Object*>(address()); }

  // Parts of a pair; the value must be one.
  inline LispValue head() const;
  inline LispValue tail() const;

  // The same bits: identity, not equality.
  friend constexpr bool operator==(LispValue a, LispValue b) { return a.m_bits == b.m_bits; }

  static constexpr uint64_t kIntegerTag = 0xFFF9;
  static constexpr uint64_t kSymbolTag = 0xFFFA;
  static constexpr uint64_t kConsTag = 0xFFFB;
  static constexpr uint64_t kStringTag = 0xFFFC;
  static constexpr uint64_t kObjectTag = 0xFFFD;
  static constexpr uint64_t kSpecialTag = 0xFFFE;

 private:
  static constexpr uint64_t kNilBits = kSpecialTag << 48;
  static constexpr uint64_t kTrueBits = kNilBits | 1;
  static constexpr uint64_t kNullSymbolBits = kNilBits | 2;
  static constexpr uint64_t kNanBits = 0x7FF8'0000'0000'0000;

  constexpr explicit LispValue(uint64_t bits) : m_bits(bits) {}
  template <class T>
  static LispValue pointer(uint64_t tag, T* p) {
    return LispValue(tag << 48 | reinterpret_cast<uint64_t>(p));
  }
  void* address() const { return reinterpret_cast<void*>(m_bits & 0x0000'FFFF'FFFF'FFFF); }

  uint64_t m_bits;
};
static_assert(sizeof(LispValue) == 8);

// A list cell. Programs cannot change one; only a builder that has just made it may set its tail.
struct Cons {
  LispValue head;
  LispValue tail;
};

inline LispValue LispValue::head() const { return asCons()->head; }
inline LispValue LispValue::tail() const { return asCons()->tail; }

}  // namespace lisp

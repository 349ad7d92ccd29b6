// The bit layer: any codes over any bytes stay in bounds, and what the writer makes reads back as what was read.
// The first byte counts the codes, one byte each follows, the rest are the bits.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "host/dwg/bits/bitreader.h"
#include "host/dwg/bits/bitwriter.h"

using namespace gc::dwg;

namespace {

constexpr int kCodes = 18;

void check(bool holds) {
  if (!holds) std::abort();
}

// Reads a value and writes it again.
void pass(unsigned code, BitReader& in, BitWriter& out) {
  switch (code % kCodes) {
    case 0: out.b(in.b()); break;
    case 1: out.bb(in.bb()); break;
    case 2: out.bit3(in.bit3()); break;
    case 3: out.rc(in.rc()); break;
    case 4: out.rs(in.rs()); break;
    case 5: out.rl(in.rl()); break;
    case 6: out.rll(in.rll()); break;
    case 7: out.bs(in.bs()); break;
    case 8: out.bl(in.bl()); break;
    case 9: out.bll(in.bll()); break;
    case 10: out.bd(in.bd()); break;
    case 11: out.dd(in.dd(1.5), 1.5); break;
    case 12: out.bt(in.bt()); break;
    case 13: out.mc(in.mc()); break;
    case 14: out.mcSigned(in.mcSigned()); break;
    case 15: out.ms(in.ms()); break;
    case 16: out.ot(in.ot()); break;
    default: {
      const HandleRef ref = in.h();
      out.h(ref.code, ref.value);
    }
  }
}

// The value a code stands for at the reader's place, as 64 bits.
uint64_t value(unsigned code, BitReader& in) {
  switch (code % kCodes) {
    case 0: return in.b() ? 1 : 0;
    case 1: return in.bb();
    case 2: return in.bit3();
    case 3: return in.rc();
    case 4: return in.rs();
    case 5: return in.rl();
    case 6: return in.rll();
    case 7: return static_cast<uint16_t>(in.bs());
    case 8: return static_cast<uint32_t>(in.bl());
    case 9: return in.bll();
    case 10: return std::bit_cast<uint64_t>(in.bd());
    case 11: return std::bit_cast<uint64_t>(in.dd(1.5));
    case 12: return std::bit_cast<uint64_t>(in.bt());
    case 13: return in.mc();
    case 14: return static_cast<uint64_t>(in.mcSigned());
    case 15: return in.ms();
    case 16: return in.ot();
    default: {
      const HandleRef ref = in.h();
      return ref.value * 16 + ref.code;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const size_t codes = data[0] < size - 1 ? data[0] : size - 1;
  const std::vector<uint8_t> bytes(data + 1 + codes, data + size);  // its end is the end of what may be touched
  BitReader in(bytes);
  BitReader first(bytes);
  BitWriter out;
  size_t read = 0;
  for (; read < codes; ++read) {
    BitReader tried = in;
    BitWriter ignored;
    pass(data[1 + read], tried, ignored);
    check(tried.position() <= tried.end());
    if (tried.failed()) break;
    pass(data[1 + read], in, out);
  }
  const std::vector<uint8_t> written = out.take();
  BitReader again(written);
  for (size_t i = 0; i < read; ++i) check(value(data[1 + i], first) == value(data[1 + i], again));
  check(!again.failed());
  return 0;
}

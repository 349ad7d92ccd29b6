// Every code of the bit layer, on bits written out by hand, and there and back.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "host/dwg/bits/bitreader.h"
#include "host/dwg/bits/bitwriter.h"
#include "host/dwg/bits/crc.h"

using namespace gc::dwg;

namespace {

// Bytes from a drawing of bits: "01 0000 0001" with blanks anywhere; the last byte is filled with zeros.
std::vector<uint8_t> bitsOf(const std::string& drawing) {
  BitWriter out;
  for (const char c : drawing)
    if (c == '0' || c == '1') out.b(c == '1');
  return out.take();
}

// The written bits as a drawing without blanks.
std::string drawn(BitWriter& out) {
  const uint64_t count = out.position();
  const std::vector<uint8_t> bytes = out.take();
  BitReader in(bytes);
  std::string drawing;
  for (uint64_t i = 0; i < count; ++i) drawing += in.b() ? '1' : '0';
  return drawing;
}

template <class F>
auto read(const std::string& drawing, const F& f) {
  const std::vector<uint8_t> bytes = bitsOf(drawing);
  BitReader in(bytes);
  return f(in);
}

template <class F>
std::string written(const F& f) {
  BitWriter out;
  f(out);
  return drawn(out);
}

}  // namespace

TEST(Bits, ShortHasFourForms) {
  EXPECT_EQ(read("10", [](BitReader& in) { return in.bs(); }), 0);
  EXPECT_EQ(read("11", [](BitReader& in) { return in.bs(); }), 256);
  EXPECT_EQ(read("01 00001111", [](BitReader& in) { return in.bs(); }), 15);
  EXPECT_EQ(read("00 00000001 00000001", [](BitReader& in) { return in.bs(); }), 257);
  EXPECT_EQ(read("00 11111111 11111111", [](BitReader& in) { return in.bs(); }), -1);
  EXPECT_EQ(written([](BitWriter& out) { out.bs(0); }), "10");
  EXPECT_EQ(written([](BitWriter& out) { out.bs(256); }), "11");
  EXPECT_EQ(written([](BitWriter& out) { out.bs(15); }), "0100001111");
  EXPECT_EQ(written([](BitWriter& out) { out.bs(257); }), "000000000100000001");
}

TEST(Bits, LongHasThreeForms) {
  EXPECT_EQ(read("10", [](BitReader& in) { return in.bl(); }), 0);
  EXPECT_EQ(read("01 00001111", [](BitReader& in) { return in.bl(); }), 15);
  EXPECT_EQ(read("00 00000001 00000001 00000000 00000000", [](BitReader& in) { return in.bl(); }), 257);
  EXPECT_EQ(written([](BitWriter& out) { out.bl(257); }), "0000000001000000010000000000000000");
  const std::vector<uint8_t> bytes = bitsOf("11");
  BitReader in(bytes);
  in.bl();
  EXPECT_TRUE(in.failed());
}

TEST(Bits, DoubleOneAndZeroAreTwoBits) {
  EXPECT_EQ(read("01", [](BitReader& in) { return in.bd(); }), 1.0);
  EXPECT_EQ(read("10", [](BitReader& in) { return in.bd(); }), 0.0);
  EXPECT_EQ(read("00" + std::string(48, '0') + "00000000 01000000", [](BitReader& in) { return in.bd(); }), 2.0);
  EXPECT_EQ(written([](BitWriter& out) { out.bd(1); }), "01");
  EXPECT_EQ(written([](BitWriter& out) { out.bd(0); }), "10");
  EXPECT_EQ(written([](BitWriter& out) { out.bd(2); }), "00" + std::string(56, '0') + "01000000");
}

TEST(Bits, DoubleAsAChange) {
  EXPECT_EQ(read("00", [](BitReader& in) { return in.dd(3.5); }), 3.5);
  EXPECT_EQ(written([](BitWriter& out) { out.dd(3.5, 3.5); }), "00");
  EXPECT_EQ(written([](BitWriter& out) { out.dd(2.0, 3.5); }).substr(0, 2), "11");
  double close = 3.5;
  uint64_t pattern = 0;
  std::memcpy(&pattern, &close, 8);
  pattern ^= 5;
  std::memcpy(&close, &pattern, 8);
  EXPECT_EQ(written([&](BitWriter& out) { out.dd(close, 3.5); }).size(), 34u);
  pattern ^= uint64_t{7} << 40;
  std::memcpy(&close, &pattern, 8);
  EXPECT_EQ(written([&](BitWriter& out) { out.dd(close, 3.5); }).size(), 50u);
}

TEST(Bits, ThicknessAndExtrusionAreOneBitWhenUsual) {
  EXPECT_EQ(written([](BitWriter& out) { out.bt(0); }), "1");
  EXPECT_EQ(written([](BitWriter& out) { out.bt(1); }), "001");
  EXPECT_EQ(written([](BitWriter& out) { out.be(GcGeVector3d::kZAxis); }), "1");
  EXPECT_EQ(written([](BitWriter& out) { out.be({0, 1, 0}); }), "0100110");
  EXPECT_EQ(read("0 10 01 10", [](BitReader& in) { return in.be(); }), GcGeVector3d(0, 1, 0));
}

TEST(Bits, HandlesCarryTheirCode) {
  const HandleRef ref = read("0101 0001 00101111", [](BitReader& in) { return in.h(); });
  EXPECT_EQ(ref.code, 5);
  EXPECT_EQ(ref.value, 0x2Fu);
  EXPECT_EQ(read("0110 0000", [](BitReader& in) { return in.h(); }).absolute(0x20), 0x21u);
  EXPECT_EQ(read("1000 0000", [](BitReader& in) { return in.h(); }).absolute(0x20), 0x1Fu);
  EXPECT_EQ(read("1010 0001 00000010", [](BitReader& in) { return in.h(); }).absolute(0x20), 0x22u);
  EXPECT_EQ(read("1100 0001 00000010", [](BitReader& in) { return in.h(); }).absolute(0x20), 0x1Eu);
  EXPECT_EQ(written([](BitWriter& out) { out.h(4, 0); }), "01000000");
  EXPECT_EQ(written([](BitWriter& out) { out.h(3, 0x1A2); }),
            "0011"
            "0010"
            "00000001"
            "10100010");
}

TEST(Bits, ModularNumbers) {
  // 4610 = 0b10010_0000010: low seven bits first, the high bit says that more follows.
  EXPECT_EQ(read("10000010 00100100", [](BitReader& in) { return in.mcSigned(); }), 4610);
  // Bit 6 of the last byte is the sign.
  EXPECT_EQ(read("10000101 01001011", [](BitReader& in) { return in.mcSigned(); }), -1413);
  EXPECT_EQ(written([](BitWriter& out) { out.mcSigned(-1413); }), "1000010101001011");
  EXPECT_EQ(read("00110001 11110100 10001101 00000000", [](BitReader& in) { return in.ms(); }), 4650033u);
  for (const uint32_t value : {0u, 0x7FFFu, 0x8000u, 4650033u, 0x3FFFFFFFu}) {
    BitWriter out;
    out.ms(value);
    const std::vector<uint8_t> bytes = out.take();
    BitReader in(bytes);
    EXPECT_EQ(in.ms(), value);
  }
}

TEST(Bits, ObjectTypes) {
  EXPECT_EQ(read("00 00010011", [](BitReader& in) { return in.ot(); }), 0x13u);
  EXPECT_EQ(read("01 00000100", [](BitReader& in) { return in.ot(); }), 0x1F4u);
  EXPECT_EQ(read("10 00000000 00000011", [](BitReader& in) { return in.ot(); }), 0x300u);
  for (const uint32_t type : {1u, 0xFFu, 0x1F2u, 0x1F4u, 0x2EFu, 0x2F0u, 0x1234u}) {
    BitWriter out;
    out.ot(type);
    const std::vector<uint8_t> bytes = out.take();
    BitReader in(bytes);
    EXPECT_EQ(in.ot(), type);
  }
}

TEST(Bits, ReadingPastTheEndFailsAndStaysFailed) {
  const std::vector<uint8_t> bytes = {0xFF, 0xFF};
  BitReader in(bytes);
  in.bits(12);
  EXPECT_FALSE(in.failed());
  EXPECT_EQ(in.rc(), 0);
  EXPECT_TRUE(in.failed());
  EXPECT_EQ(in.bits(1), 0u);
  EXPECT_EQ(in.rd(), 0.0);
}

TEST(Bits, EveryValueComesBackAtAnyOffset) {
  std::mt19937_64 rng(20261121);
  for (int offset = 0; offset < 8; ++offset) {
    for (int round = 0; round < 500; ++round) {
      const uint64_t n = rng() >> (rng() % 64);
      double x = 0;
      const uint64_t pattern = rng();
      std::memcpy(&x, &pattern, 8);
      BitWriter out;
      for (int i = 0; i < offset; ++i) out.b(true);
      out.bs(static_cast<int16_t>(n));
      out.bl(static_cast<int32_t>(n));
      out.bll(n & 0xFFFFFFFFFFFFFF);
      out.rll(n);
      out.bd(x);
      out.dd(x, 1.5);
      out.mc(n);
      out.h(5, n);
      const std::vector<uint8_t> bytes = out.take();
      BitReader in(bytes);
      in.skip(static_cast<uint64_t>(offset));
      ASSERT_EQ(in.bs(), static_cast<int16_t>(n));
      ASSERT_EQ(in.bl(), static_cast<int32_t>(n));
      ASSERT_EQ(in.bll(), n & 0xFFFFFFFFFFFFFF);
      ASSERT_EQ(in.rll(), n);
      uint64_t back = 0;
      double y = in.bd();
      std::memcpy(&back, &y, 8);
      ASSERT_EQ(back, pattern);
      y = in.dd(1.5);
      std::memcpy(&back, &y, 8);
      ASSERT_EQ(back, pattern);
      ASSERT_EQ(in.mc(), n);
      ASSERT_EQ(in.h().value, n);
      ASSERT_FALSE(in.failed());
      ASSERT_LT(in.remaining(), 8u);
    }
  }
}

TEST(Bits, BytesAtOddPlaces) {
  const uint8_t source[] = {1, 2, 3, 0xFE};
  BitWriter out;
  out.bits(5, 3);
  out.bytes(source);
  const std::vector<uint8_t> bytes = out.take();
  BitReader in(bytes);
  in.skip(3);
  uint8_t back[4] = {};
  ASSERT_TRUE(in.bytes(back, 4));
  EXPECT_EQ(std::memcmp(back, source, 4), 0);
  EXPECT_FALSE(in.bytes(back, 4));
}

// Bytes behind the end may be touched, but never count.
TEST(Bits, WhatLiesBehindTheEndIsNotRead) {
  std::vector<uint8_t> bytes = {0x12, 0x34, 0x56, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  const std::span<const uint8_t> record(bytes.data(), 3);
  BitReader in(record, bytes.size() - record.size());
  EXPECT_EQ(in.remaining(), 24u);
  EXPECT_EQ(in.bits(24), 0x123456u);
  EXPECT_FALSE(in.failed());
  EXPECT_EQ(in.bits(1), 0u);
  EXPECT_TRUE(in.failed());
  BitReader handle({bytes.data(), 1}, bytes.size() - 1);  // says two bytes that are not the record's
  EXPECT_EQ(handle.h().value, 0u);
  EXPECT_TRUE(handle.failed());
}

TEST(Bits, PatchedLongReadsAsWritten) {
  BitWriter out;
  out.bits(1, 3);
  const uint64_t at = out.position();
  out.rl(0);
  out.bits(6, 3);
  out.alignToByte();
  out.patchRl(at, 0x12345678);
  const std::vector<uint8_t> bytes = out.take();
  BitReader in(bytes);
  EXPECT_EQ(in.bits(3), 1u);
  EXPECT_EQ(in.rl(), 0x12345678u);
  EXPECT_EQ(in.bits(3), 6u);
}

TEST(Checksums, KnownValues) {
  const std::string digits = "123456789";
  const std::span<const uint8_t> bytes(reinterpret_cast<const uint8_t*>(digits.data()), digits.size());
  EXPECT_EQ(crc16(bytes, 0), 0xBB3D);
  EXPECT_EQ(crc32(bytes, 0), 0xCBF43926u);
  EXPECT_EQ(pageChecksum(bytes, 1), 0x091E01DEu);
}

// Runs are summed sixteen bytes at once, the rest one by one: the sum of a whole is that of its parts.
TEST(Checksums, SumsOfPartsAreThoseOfTheWhole) {
  std::mt19937 rng(21);
  std::vector<uint8_t> bytes(300);
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(rng());
  for (size_t size = 0; size < bytes.size(); ++size) {
    const std::span<const uint8_t> whole(bytes.data(), size);
    uint16_t crc = kCrcSeed;
    uint32_t low = 1, high = 0;
    for (size_t i = 0; i < size; ++i) {
      crc = crc16(whole.subspan(i, 1), crc);
      low = (low + bytes[i]) % 65521;
      high = (high + low) % 65521;
    }
    ASSERT_EQ(crc16(whole, kCrcSeed), crc) << size;
    ASSERT_EQ(pageChecksum(whole, 1), high << 16 | low) << size;
  }
}

TEST(Checksums, SumsDoNotOverflowOnLongRuns) {
  std::vector<uint8_t> bytes(100000, 0xFF);
  uint64_t low = 0, high = 0;
  for (const uint8_t b : bytes) {
    low = (low + b) % 65521;
    high = (high + low) % 65521;
  }
  EXPECT_EQ(pageChecksum(bytes, 0), static_cast<uint32_t>(high << 16 | low));
}

#include "support/datacomp_writer.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <queue>
#include <stdexcept>

namespace {

constexpr int SYMBOLS = 1024;
constexpr int LITERALS = 256;
constexpr std::uint32_t MATCH_DISTANCES[24] = {1,   2,   3,   4,   5,   6,    7,    8,
                                               12,  16,  24,  32,  48,  64,   96,   128,
                                               192, 256, 384, 512, 768, 1024, 2048, 4096};

class BitWriter {
 public:
  void Put(std::uint32_t value, int bits) {
    for (int b = bits - 1; b >= 0; --b, ++used_) {
      if (used_ % 8 == 0) bytes_.push_back(0);
      if ((value >> b) & 1) bytes_.back() |= std::uint8_t(0x80 >> (used_ % 8));
    }
  }
  const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
  std::size_t used_ = 0;
};

// Code lengths by Huffman's rule: each merge of the two lightest groups deepens both by one.
std::vector<std::uint8_t> HuffmanLengths(const std::vector<std::uint64_t>& frequency) {
  using Group = std::pair<std::uint64_t, std::vector<int>>;
  std::priority_queue<Group, std::vector<Group>, std::greater<Group>> queue;
  for (std::size_t s = 0; s < frequency.size(); ++s)
    if (frequency[s]) queue.push({frequency[s], {int(s)}});
  std::vector<std::uint8_t> lengths(frequency.size(), 0);
  if (queue.size() == 1) lengths[std::size_t(queue.top().second[0])] = 1;
  while (queue.size() > 1) {
    Group a = queue.top();
    queue.pop();
    Group b = queue.top();
    queue.pop();
    a.second.insert(a.second.end(), b.second.begin(), b.second.end());
    for (int s : a.second)
      if (++lengths[std::size_t(s)] > 31) throw std::logic_error("code too long");
    queue.push({a.first + b.first, a.second});
  }
  return lengths;
}

// Canonical code values: shorter first, in symbol order within a length. A code of fewer than
// two symbols consumes no bit.
struct Code {
  std::vector<std::uint8_t> lengths;
  std::vector<std::uint32_t> codes;
  bool consumes_bits;

  explicit Code(std::vector<std::uint8_t> l) : lengths(std::move(l)), codes(lengths.size()) {
    std::uint32_t code = 0;
    for (int length = 1; length <= 31; ++length, code <<= 1)
      for (std::size_t s = 0; s < lengths.size(); ++s)
        if (lengths[s] == length) codes[s] = code++;
    consumes_bits = std::count_if(lengths.begin(), lengths.end(), [](int x) { return x > 0; }) > 1;
  }
  void Put(BitWriter& out, int symbol) const {
    if (consumes_bits) out.Put(codes[std::size_t(symbol)], lengths[std::size_t(symbol)]);
  }
};

// Short lists: a width of five bits, each length in that width, a zero followed by how many more
// zeros come (up to 15).
void PutDirectLengths(BitWriter& out, const std::vector<std::uint8_t>& lengths) {
  int width = 1;
  for (int l : lengths)
    while ((1 << width) <= l) ++width;
  out.Put(std::uint32_t(width), 5);
  for (std::size_t i = 0; i < lengths.size();) {
    out.Put(lengths[i], width);
    if (lengths[i++] != 0) continue;
    std::size_t zeros = 0;
    while (i + zeros < lengths.size() && lengths[i + zeros] == 0 && zeros < 15) ++zeros;
    out.Put(std::uint32_t(zeros), 4);
    i += zeros;
  }
}

// Long lists through two small codes, themselves a short list: code A gives a length, or 32 +
// length for a run whose count comes through code B (count - 2 up to 31, beyond that 32 + m and m
// extra bits). The small codes are fixed, with lengths 5, 6 and 0, so every path of the list is
// taken.
void PutCodeLengths(BitWriter& out, const std::vector<std::uint8_t>& lengths, bool all_zero) {
  out.Put(all_zero, 1);
  if (all_zero) return;
  std::vector<std::uint8_t> small(128, 6);
  std::fill(small.begin() + 64, small.begin() + 80, 5);
  std::fill(small.begin() + 112, small.end(), 0);
  out.Put(0, 1);
  PutDirectLengths(out, small);
  const Code a({small.begin(), small.begin() + 64}), b({small.begin() + 64, small.end()});
  for (std::size_t i = 0; i < lengths.size();) {
    std::size_t run = 1;
    while (i + run < lengths.size() && lengths[i + run] == lengths[i]) ++run;
    if (run < 3) {
      a.Put(out, lengths[i++]);
      continue;
    }
    a.Put(out, 32 + lengths[i]);
    i += run;
    const std::uint32_t c = std::uint32_t(run - 2);
    if (c <= 31) {
      b.Put(out, int(c));
      continue;
    }
    int m = 0;
    while ((2u << m) <= c - 31) ++m;
    b.Put(out, 32 + m);
    out.Put(c - 31 - (1u << m), m);
  }
}

struct Token {
  int symbol;
  std::uint32_t extra = 0;
  int extra_bits = 0;
};

// Greedy: the longest match among the fixed distances, if at least three long; else a literal.
// Lengths up to 15 are in the symbol, longer ones as 14 + n and n extra bits.
std::vector<Token> Tokenize(const std::uint8_t* block, std::uint32_t size, bool use_matches) {
  std::vector<Token> tokens;
  for (std::uint32_t at = 0; at < size;) {
    std::uint32_t best = 0;
    int slot = 0;
    for (int s = 0; use_matches && s < 24 && MATCH_DISTANCES[s] <= at; ++s) {
      std::uint32_t length = 0;
      while (at + length < size && block[at + length] == block[at + length - MATCH_DISTANCES[s]])
        ++length;
      if (length > best) best = length, slot = s;
    }
    if (best < 3) {
      tokens.push_back({block[at++]});
      continue;
    }
    at += best;
    int n = 1;
    while (best > 15 && (2u << n) <= best - 14) ++n;
    tokens.push_back(best <= 15 ? Token{LITERALS + slot * 32 + int(best - 1)}
                                : Token{LITERALS + slot * 32 + 14 + n, best - 14 - (1u << n), n});
  }
  return tokens;
}

void AppendBigEndian32(std::vector<std::uint8_t>& file, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) file.push_back(std::uint8_t(value >> shift));
}

// The header's check value: a CRC whose table steps the polynomial when the low bit is clear.
std::uint32_t CheckValue(const std::vector<std::uint8_t>& bytes) {
  auto table_entry = [](std::uint32_t c) {
    for (int step = 0; step < 8; ++step) c = (c & 1) ? c >> 1 : (c >> 1) ^ 0xEDB88320u;
    return c;
  };
  std::uint32_t crc = 0;
  for (std::uint8_t byte : bytes) crc = (crc >> 8) ^ table_entry((crc ^ byte) & 255);
  return crc;
}

}  // namespace

std::vector<std::uint8_t> CompressTablebase(const std::vector<std::uint8_t>& plain,
                                            const DatacompOptions& options) {
  using Shape = DatacompOptions::Code;
  const std::size_t block_size = std::size_t{1} << options.size_bits;
  const std::uint32_t blocks = std::uint32_t((plain.size() + block_size - 1) / block_size);
  auto plain_size = [&](std::uint32_t b) {
    return std::uint32_t(std::min(block_size, plain.size() - b * block_size));
  };
  const bool matches = options.use_matches &&
                       (options.code == Shape::FROM_DATA || options.code == Shape::ALL_SYMBOLS);
  std::vector<std::vector<Token>> block_tokens;
  std::vector<std::uint64_t> frequency(SYMBOLS);
  for (std::uint32_t b = 0; b < blocks; ++b) {
    block_tokens.push_back(Tokenize(&plain[b * block_size], plain_size(b), matches));
    for (const Token& t : block_tokens.back()) ++frequency[std::size_t(t.symbol)];
  }
  // Every symbol of ALL_SYMBOLS gets a code; the rare ones run past the first table level.
  if (options.code == Shape::ALL_SYMBOLS)
    for (auto& f : frequency) f = f * 4096 + 1;
  std::vector<std::uint8_t> lengths = HuffmanLengths(frequency);
  if (options.code == Shape::SINGLE_SYMBOL || options.code == Shape::ALL_ZERO)
    lengths.assign(SYMBOLS, 0);
  if (options.code == Shape::SINGLE_SYMBOL) lengths[plain.empty() ? 0 : plain[0]] = 1;
  const Code code(lengths);

  std::vector<std::vector<std::uint8_t>> stored;
  BitWriter sizes;
  auto put_size = [&](std::size_t size) {
    sizes.Put(std::uint32_t(size == block_size ? 0 : size), options.size_bits);
  };
  for (std::uint32_t b = 0; b < blocks; ++b) {
    BitWriter out;
    for (const Token& t : block_tokens[b]) {
      code.Put(out, t.symbol);
      out.Put(t.extra, t.extra_bits);
    }
    std::vector<std::uint8_t> bytes = out.Bytes();
    if (bytes.empty()) bytes.push_back(0);  // a stored size of 0 would mean a whole block
    const std::uint8_t* start = &plain[b * block_size];
    if (bytes.size() >= plain_size(b)) bytes.assign(start, start + plain_size(b));
    put_size(bytes.size());
    stored.push_back(bytes);
  }
  put_size(plain_size(blocks - 1));
  for (std::uint32_t distance : MATCH_DISTANCES) sizes.Put(distance, options.size_bits);
  BitWriter code_lengths;
  PutCodeLengths(code_lengths, lengths, options.code == Shape::ALL_ZERO);

  const std::size_t sizes_bytes = ((blocks + 25) * std::size_t(options.size_bits) + 7) / 8;
  const std::size_t header_size =
      80 + 8 * std::size_t(blocks) + sizes_bytes + code_lengths.Bytes().size() + 4;
  const std::string banner = "Compressed by DATACOMP v 1.0 (Brask test writer)\r\n";
  std::vector<std::uint8_t> file(banner.begin(), banner.end());
  file.resize(64, 0);
  AppendBigEndian32(file, std::uint32_t(header_size));
  file.insert(file.end(), {0, 0, std::uint8_t(options.size_bits), 0x18});
  AppendBigEndian32(file, blocks);
  AppendBigEndian32(file, 0x4001F5);
  file.resize(file.size() + 8 * std::size_t(blocks), 0);  // block checks, never read
  file.insert(file.end(), sizes.Bytes().begin(), sizes.Bytes().end());
  file.resize(header_size - 4 - code_lengths.Bytes().size(), 0);
  file.insert(file.end(), code_lengths.Bytes().begin(), code_lengths.Bytes().end());
  AppendBigEndian32(file, CheckValue(file));
  for (const auto& s : stored) file.insert(file.end(), s.begin(), s.end());
  return file;
}

void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

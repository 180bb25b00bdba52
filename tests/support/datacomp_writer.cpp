#include "support/datacomp_writer.h"

#include <algorithm>
#include <cstring>
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
    for (int b = bits - 1; b >= 0; --b) {
      if (used_ % 8 == 0) bytes_.push_back(0);
      if ((value >> b) & 1) bytes_.back() |= std::uint8_t(0x80 >> (used_ % 8));
      ++used_;
    }
  }
  const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
  std::size_t used_ = 0;
};

// Code lengths by Huffman's rule; symbols of frequency 0 get none.
std::vector<std::uint8_t> HuffmanLengths(const std::vector<std::uint64_t>& frequency) {
  struct Node {
    std::uint64_t weight;
    int left, right;
  };
  std::vector<Node> nodes;
  using Item = std::pair<std::uint64_t, int>;
  std::priority_queue<Item, std::vector<Item>, std::greater<Item>> queue;
  for (std::size_t s = 0; s < frequency.size(); ++s)
    if (frequency[s]) {
      nodes.push_back({frequency[s], -1, int(s)});
      queue.push({frequency[s], int(nodes.size() - 1)});
    }
  std::vector<std::uint8_t> lengths(frequency.size(), 0);
  if (queue.size() == 1) lengths[nodes[0].right] = 1;
  while (queue.size() > 1) {
    auto [wa, a] = queue.top();
    queue.pop();
    auto [wb, b] = queue.top();
    queue.pop();
    nodes.push_back({wa + wb, a, b});
    queue.push({wa + wb, int(nodes.size() - 1)});
  }
  std::function<void(int, int)> walk = [&](int node, int depth) {
    if (nodes[node].left < 0) {
      if (depth > 31) throw std::logic_error("code too long");
      lengths[nodes[node].right] = std::uint8_t(depth);
    } else {
      walk(nodes[node].left, depth + 1);
      walk(nodes[node].right, depth + 1);
    }
  };
  if (queue.size() == 1 && nodes.size() > 1) walk(queue.top().second, 0);
  return lengths;
}

// Canonical code values for the lengths: shorter first, in symbol order within a length.
std::vector<std::uint32_t> CanonicalCodes(const std::vector<std::uint8_t>& lengths) {
  std::vector<std::uint32_t> codes(lengths.size());
  std::uint32_t code = 0;
  for (int length = 1; length <= 31; ++length) {
    for (std::size_t s = 0; s < lengths.size(); ++s)
      if (lengths[s] == length) codes[s] = code++;
    code <<= 1;
  }
  return codes;
}

struct Code {
  std::vector<std::uint8_t> lengths;
  std::vector<std::uint32_t> codes;
  bool consumes_bits = true;

  explicit Code(std::vector<std::uint8_t> l) : lengths(std::move(l)), codes(CanonicalCodes(lengths)) {
    consumes_bits = std::count_if(lengths.begin(), lengths.end(), [](int x) { return x > 0; }) > 1;
  }
  void Put(BitWriter& out, int symbol) const {
    if (consumes_bits) out.Put(codes[symbol], lengths[symbol]);
  }
};

// Short lists: a bit 0, a width of five bits, each length in that width, a zero followed by how
// many more zeros come (up to 15).
void PutDirectLengths(BitWriter& out, const std::vector<std::uint8_t>& lengths) {
  out.Put(0, 1);
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

// Long lists: a length symbol of code A, or a run: A symbol 32 + length, then its count through
// code B (count - 2 directly up to 31, beyond as 32 + m and m extra bits).
struct LengthToken {
  int a_symbol;
  int b_symbol = -1;
  std::uint32_t extra = 0;
  int extra_bits = 0;
};

std::vector<LengthToken> TokenizeLengths(const std::vector<std::uint8_t>& lengths) {
  std::vector<LengthToken> tokens;
  for (std::size_t i = 0; i < lengths.size();) {
    std::size_t run = 1;
    while (i + run < lengths.size() && lengths[i + run] == lengths[i]) ++run;
    if (run < 3) {
      tokens.push_back({lengths[i]});
      ++i;
      continue;
    }
    LengthToken token{32 + lengths[i]};
    std::uint32_t c = std::uint32_t(run - 2);
    if (c <= 31) {
      token.b_symbol = int(c);
    } else {
      int m = 0;
      while ((2u << m) <= c - 31) ++m;
      token.b_symbol = 32 + m;
      token.extra = c - 31 - (1u << m);
      token.extra_bits = m;
    }
    tokens.push_back(token);
    i += run;
  }
  return tokens;
}

// Two used symbols at least, so that neither small code falls into a special case.
std::vector<std::uint8_t> SmallCodeLengths(std::vector<std::uint64_t> frequency) {
  int used = int(std::count_if(frequency.begin(), frequency.end(), [](auto f) { return f > 0; }));
  for (std::size_t s = 0; used < 2; ++s)
    if (!frequency[s]) frequency[s] = 1, ++used;
  return HuffmanLengths(frequency);
}

void PutCodeLengths(BitWriter& out, const std::vector<std::uint8_t>& lengths, bool all_zero) {
  if (all_zero) {
    out.Put(1, 1);
    return;
  }
  out.Put(0, 1);
  std::vector<LengthToken> tokens = TokenizeLengths(lengths);
  std::vector<std::uint64_t> a_frequency(64), b_frequency(64);
  for (const LengthToken& t : tokens) {
    ++a_frequency[t.a_symbol];
    if (t.b_symbol >= 0) ++b_frequency[t.b_symbol];
  }
  std::vector<std::uint8_t> small = SmallCodeLengths(a_frequency);
  std::vector<std::uint8_t> b_lengths = SmallCodeLengths(b_frequency);
  small.insert(small.end(), b_lengths.begin(), b_lengths.end());
  PutDirectLengths(out, small);
  Code a(std::vector<std::uint8_t>(small.begin(), small.begin() + 64));
  Code b(b_lengths);
  for (const LengthToken& t : tokens) {
    a.Put(out, t.a_symbol);
    if (t.b_symbol < 0) continue;
    b.Put(out, t.b_symbol);
    out.Put(t.extra, t.extra_bits);
  }
}

struct Token {
  int symbol;
  std::uint32_t extra = 0;
  int extra_bits = 0;
};

Token MatchToken(int slot, std::uint32_t length) {
  if (length <= 15) return {LITERALS + slot * 32 + int(length - 1)};
  int n = 1;
  while ((2u << n) <= length - 14) ++n;
  return {LITERALS + slot * 32 + 14 + n, length - 14 - (1u << n), n};
}

// Greedy: the longest match among the fixed distances, if it saves anything; else a literal.
std::vector<Token> Tokenize(const std::uint8_t* block, std::uint32_t size, bool use_matches) {
  std::vector<Token> tokens;
  for (std::uint32_t at = 0; at < size;) {
    std::uint32_t best_length = 0;
    int best_slot = 0;
    for (int slot = 0; use_matches && slot < 24; ++slot) {
      std::uint32_t distance = MATCH_DISTANCES[slot];
      if (distance > at) break;
      std::uint32_t length = 0;
      while (at + length < size && block[at + length] == block[at + length - distance]) ++length;
      if (length > best_length) best_length = length, best_slot = slot;
    }
    if (best_length >= 3) {
      tokens.push_back(MatchToken(best_slot, best_length));
      at += best_length;
    } else {
      tokens.push_back({block[at++]});
    }
  }
  return tokens;
}

void AppendBigEndian32(std::vector<std::uint8_t>& file, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) file.push_back(std::uint8_t(value >> shift));
}

// The header's check value: a CRC whose table steps the polynomial when the low bit is clear.
std::uint32_t CheckValue(const std::uint8_t* bytes, std::size_t count) {
  auto table_entry = [](std::uint32_t c) {
    for (int step = 0; step < 8; ++step) c = (c & 1) ? c >> 1 : (c >> 1) ^ 0xEDB88320u;
    return c;
  };
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < count; ++i) crc = (crc >> 8) ^ table_entry((crc ^ bytes[i]) & 255);
  return crc;
}

}  // namespace

std::vector<std::uint8_t> CompressTablebase(const std::vector<std::uint8_t>& plain,
                                            const DatacompOptions& options) {
  const std::uint32_t block_size = 1u << options.size_bits;
  const std::uint32_t blocks = std::uint32_t((plain.size() + block_size - 1) / block_size);
  auto plain_size = [&](std::uint32_t b) {
    return std::uint32_t(std::min<std::size_t>(block_size, plain.size() - std::size_t(b) * block_size));
  };

  const bool matches = options.use_matches && (options.code == DatacompOptions::Code::FROM_DATA ||
                                               options.code == DatacompOptions::Code::ALL_SYMBOLS);
  std::vector<std::vector<Token>> block_tokens;
  std::vector<std::uint64_t> frequency(SYMBOLS);
  for (std::uint32_t b = 0; b < blocks; ++b) {
    block_tokens.push_back(Tokenize(&plain[std::size_t(b) * block_size], plain_size(b),
                                    matches));
    for (const Token& t : block_tokens.back()) ++frequency[t.symbol];
  }
  std::vector<std::uint8_t> lengths(SYMBOLS, 0);
  switch (options.code) {
    case DatacompOptions::Code::FROM_DATA: lengths = HuffmanLengths(frequency); break;
    case DatacompOptions::Code::ALL_SYMBOLS:
      for (auto& f : frequency) f = f * 4096 + 1;
      lengths = HuffmanLengths(frequency);
      break;
    case DatacompOptions::Code::SINGLE_SYMBOL: lengths[plain.empty() ? 0 : plain[0]] = 1; break;
    case DatacompOptions::Code::ALL_ZERO: break;
  }
  Code code(lengths);

  std::vector<std::vector<std::uint8_t>> stored;
  for (std::uint32_t b = 0; b < blocks; ++b) {
    BitWriter out;
    for (const Token& t : block_tokens[b]) {
      code.Put(out, t.symbol);
      out.Put(t.extra, t.extra_bits);
    }
    std::vector<std::uint8_t> bytes = out.Bytes();
    if (bytes.empty()) bytes.push_back(0);  // a stored size of 0 would mean a whole block
    const std::uint8_t* start = &plain[std::size_t(b) * block_size];
    if (bytes.size() >= plain_size(b)) bytes.assign(start, start + plain_size(b));
    stored.push_back(bytes);
  }

  BitWriter sizes;
  auto put_size = [&](std::uint32_t size) { sizes.Put(size == block_size ? 0 : size, options.size_bits); };
  for (const auto& s : stored) put_size(std::uint32_t(s.size()));
  put_size(plain_size(blocks - 1));
  for (std::uint32_t distance : MATCH_DISTANCES) sizes.Put(distance, options.size_bits);
  BitWriter code_lengths;
  PutCodeLengths(code_lengths, lengths, options.code == DatacompOptions::Code::ALL_ZERO);

  std::size_t sizes_bytes = ((blocks + 25) * std::size_t(options.size_bits) + 7) / 8;
  std::size_t header_size = 80 + 8 * std::size_t(blocks) + sizes_bytes +
                            code_lengths.Bytes().size() + 4;
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
  AppendBigEndian32(file, CheckValue(file.data(), file.size()));
  for (const auto& s : stored) file.insert(file.end(), s.begin(), s.end());
  return file;
}

DatacompLayout ReadLayout(const std::vector<std::uint8_t>& file) {
  auto be32 = [&](std::size_t at) {
    return std::uint32_t(file[at]) << 24 | std::uint32_t(file[at + 1]) << 16 |
           std::uint32_t(file[at + 2]) << 8 | file[at + 3];
  };
  return {be32(64), be32(72)};
}

void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

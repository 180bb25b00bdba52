#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bitbases/job_description.h"

using BraskBitbases::EndgameName;
using BraskBitbases::GenericBitbaseJobDescription;

namespace {

const std::string TOO_MANY =
    "Incorrect job description (too many pieces, as the current implementation support only 5 "
    "pieces)";
const std::string SYNTAX =
    "Could not parse job description:\n\nSyntax: 'generic[<job1>,...,<jobN>]'.\nDo not seperate "
    "the jobs by whitespaces.\n\n";

std::string TooFew(const std::string& job) {
  return "Incorrect job description, as generic bitbases require that there are at least three "
         "pieces: '" + job + "'";
}

std::vector<std::string> Names(const GenericBitbaseJobDescription& description) {
  std::vector<std::string> names;
  for (const auto& counters : description.endgames) names.push_back(EndgameName(counters));
  return names;
}

}  // namespace

TEST(GenericBitbaseJobDescription, AcceptedForms) {
  struct Case {
    std::string word;
    std::vector<int> counts;
    std::vector<std::string> names;
  };
  const Case cases[] = {
      {"generic", {3, 4, 5}, {}},
      {"generic[3]", {3}, {}},
      {"generic[3-4]", {3, 4}, {}},
      {"generic[5-5]", {5}, {}},
      {"generic[krp_kr]", {}, {"krp_kr"}},
      {"generic[3,kqr_kr,krp_kr]", {3}, {"kqr_kr", "krp_kr"}},
      {"generic[4-5,kbn_k]", {4, 5}, {"kbn_k"}},
      {"generic[3, kq_k]", {3}, {"kq_k"}},
      {"generic [ 3 ]", {3}, {}},
      {"generic[KQ_K]", {}, {"kq_k"}},
      {"generic[kPr_kP]", {}, {"krp_kp"}},
      {"generic[kr_kq]", {}, {"kr_kq"}},  // mirrored, yet named outright
      {"generic[3,3]", {3, 3}, {}},
      {"generic[ 3 - 4 ]", {3, 4}, {}},
      {"generic['3',\"4\"]", {3, 4}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.word);
    GenericBitbaseJobDescription description(c.word);
    EXPECT_EQ(description.piece_counts, c.counts);
    EXPECT_EQ(Names(description), c.names);
  }
}

TEST(GenericBitbaseJobDescription, EveryErrorHasItsMessage) {
  const std::pair<std::string, std::string> cases[] = {
      {"generic[2]", TooFew("2")},
      {"generic[k_k]", TooFew("k_k")},
      {"generic[2-4]", TooFew("2-4")},
      {"generic[4-3]", "Incorrect job description (empty range): '4-3'"},
      {"generic[3-6]", TOO_MANY},
      {"generic[6]", TOO_MANY},
      {"generic[kqq_kqq]", TOO_MANY},
      {"generic[kqr]",
       "Could not parse single job description: 'kqr' (Maybe you forgot the underscore, e.g., "
       "\"krp_kr\"?)"},
      {"generic[k_k_k]", "Could not parse single job description: 'k_k_k'"},
      {"generic[qk_k]", "Could not parse single job description: 'qk_k'"},
      {"generic[x]", "Could not parse single job description: 'x'"},
      {"generic[kx_k]", "Undefined piece in job description: 'kx'"},
      {"generic[kq_q]", "Incorrect number of kings in job description: 'q'"},
      {"generic[kkq_k]", "Incorrect number of kings in job description: 'kkq'"},
      {"generic[3x]", "Could not parse integer in single job description: '3x'"},
      {"generic[3-x]", "Could not parse integer in single job description: '3-x'"},
      {"generic[3-4-5]", "Could not parse integer in single job description: '3-4-5'"},
      {"generic3", SYNTAX},
      {"generic[3", SYNTAX},
      {"generic3]", SYNTAX},
      {"generics[3]", SYNTAX},
      {"[3]", SYNTAX},
      {"", SYNTAX},
      {"generic['3]", "Could not parse job description"},
  };
  for (const auto& [word, message] : cases) {
    SCOPED_TRACE(word);
    try {
      GenericBitbaseJobDescription description(word);
      ADD_FAILURE() << "accepted";
    } catch (const GenericBitbaseJobDescription::ParseError& error) {
      EXPECT_EQ(error.Text(), message);
    }
  }
}

TEST(GenericBitbaseJobDescription, ExpansionKeepsNamesAndDropsMirroredOnlyFromCounts) {
  const GenericBitbaseJobDescription description("generic[kr_kq,3]");
  const auto with_mirrored = description.Expand(false);
  const auto without_mirrored = description.Expand(true);
  std::vector<BraskBitbases::PieceCounters> three;
  BraskBitbases::EnumerateEndgames(3, three);
  ASSERT_EQ(with_mirrored.size(), 1 + three.size());
  EXPECT_EQ(EndgameName(with_mirrored[0]), "kr_kq");
  EXPECT_EQ(EndgameName(without_mirrored[0]), "kr_kq");
  std::vector<std::string> expected = {"kr_kq"};
  for (const auto& counters : three)
    if (!BraskBitbases::IsMirrored(counters)) expected.push_back(EndgameName(counters));
  std::vector<std::string> kept;
  for (const auto& counters : without_mirrored) kept.push_back(EndgameName(counters));
  EXPECT_EQ(kept, expected);
  EXPECT_EQ(kept.size(), 6u);  // kp_k, kn_k, kb_k, kr_k, kq_k behind the name
}

TEST(GenericBitbaseJobDescription, DuplicatesStay) {
  EXPECT_EQ(GenericBitbaseJobDescription("generic[3,3]").Expand(true).size(), 10u);
}

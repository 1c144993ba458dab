// Candidates of commands that take what no command of today's takes together.
#include <fstream>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "cli/install/completion_candidates.h"

namespace kelvarin {
namespace {

class CandidatesTest : public ::testing::Test {
 protected:
  CandidatesTest() {
    CLI::App* look = m_program.add_subcommand("look", "Look into a table");
    look->add_option("FILE", m_texts)->type_name("");
    look->add_option("--columns", m_texts)->type_name("COLUMNS");
    look->add_option("--filter", m_texts)->type_name("EXPR");
    look->add_option("--as,-a", m_text)->check(CLI::IsMember({"csv", "json"}))->type_name("KIND");
    look->add_option("--into", m_text)->type_name("DIR");
    look->add_option("--hidden", m_text)->group("");
    look->add_flag("--quiet");
    m_program.add_subcommand("secret")->group("");
  }

  std::string fileWith(const std::string& name, const std::string& text) {
    const std::string path = m_folder.filePath(QString::fromStdString(name)).toStdString();
    std::ofstream(path) << text;
    return path;
  }

  std::vector<std::string> words(const std::vector<std::string>& line) {
    std::vector<std::string> found;
    for (const Candidate& candidate : candidatesFor(m_program, line).words) {
      found.push_back(candidate.word);
    }
    return found;
  }

  using Words = std::vector<std::string>;

  QTemporaryDir m_folder;
  CLI::App m_program{"", "kelvarin"};
  std::vector<std::string> m_texts;
  std::string m_text;
};

TEST_F(CandidatesTest, ColumnsAreThoseOfTheFirstLineHoweverItIsCut) {
  const std::string comma = fileWith("a.csv", "price,\"net, total\",day\n1,2,3\n");
  EXPECT_EQ(words({"look", comma, "--columns", ""}), (Words{"price", "net, total", "day"}));
  EXPECT_EQ(words({"look", comma, "--columns", "day,pr"}), Words{"day,price"});
  EXPECT_EQ(words({"look", comma, "--columns=d"}), Words{"day"});
  const std::string semicolon = fileWith("b.txt", "\xEF\xBB\xBFgrün;rot,gelb;blau\r\n1;2;3\r\n");
  EXPECT_EQ(words({"look", semicolon, "--columns", ""}), (Words{"grün", "rot,gelb", "blau"}));
  EXPECT_EQ(words({"look", fileWith("c.tsv", "x\ty"), "--columns", ""}), (Words{"x", "y"}));
}

TEST_F(CandidatesTest, ColumnsOfOtherFilesComeFromTheirMetadata) {
  const std::string golden = KELVARIN_GOLDEN_FILES;
  EXPECT_FALSE(words({"look", golden + "/finished.cgel_kelvarin", "--columns", ""}).empty());
  for (const char* name : {"broken.parquet", "broken.arrow", "broken.cgel_kelvarin"}) {
    EXPECT_EQ(words({"look", fileWith(name, "price,day\n"), "--columns", ""}), Words{}) << name;
  }
  EXPECT_EQ(words({"look", "absent.csv", "--columns", ""}), Words{});
}

TEST_F(CandidatesTest, AnExpressionIsCompletedAtItsLastName) {
  const std::string file = fileWith("a.csv", "price,strange\n");
  EXPECT_EQ(words({"look", file, "--filter", "2*pri"}), Words{"2*price"});
  EXPECT_EQ(words({"look", file, "--filter", "'price > stra"}), Words{"price > strange"});
  const Words both = words({"look", file, "--filter", "str"});
  EXPECT_EQ(both.front(), "strange");
  EXPECT_NE(std::find(both.begin(), both.end(), "strlen("), both.end());
}

TEST_F(CandidatesTest, OptionsAreOfferedAndTheirValuesSkipped) {
  EXPECT_EQ(words({""}), Words{"look"});
  EXPECT_EQ(words({"look", "--h"}), Words{"--help"});
  EXPECT_EQ(words({"look", "-a", ""}), (Words{"csv", "json"}));
  EXPECT_EQ(words({"look", "--as", "look", "--as=j"}), Words{"json"});
  using Files = Candidates::Files;
  EXPECT_EQ(candidatesFor(m_program, {"look", "--into", ""}).files, Files::folders);
  EXPECT_EQ(candidatesFor(m_program, {"look", "--quiet", ""}).files, Files::all);
  EXPECT_EQ(candidatesFor(m_program, {"look", "one", ""}).files, Files::all);
  EXPECT_EQ(candidatesFor(m_program, {"look", "--as", ""}).files, Files::none);
}

}  // namespace
}  // namespace kelvarin

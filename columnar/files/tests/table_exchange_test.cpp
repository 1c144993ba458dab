// Exchanges of tables by processes that are killed at each of their calls of the system, and others
// that carry on and are killed as well: there is always one whole table, the old or the new one.
#include "columnar/files/table_exchange.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "base/file_lock.h"
#include "columnar/files/folder_lock.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_header.h"
#include "host/testing/killed_process.h"

namespace kelvarin {

namespace {

namespace fs = std::filesystem;
using Contents = std::map<std::string, std::string>;

class TableExchangeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "exchange-XXXXXX").string();
    m_folder = ::mkdtemp(pattern.data());
  }
  void TearDown() override {
    fs::permissions(m_folder, fs::perms::owner_all);
    fs::remove_all(m_folder);
  }

  std::string path(const std::string& name) const { return m_folder + '/' + name; }
  std::string main() const { return path("t.cgel_kelvarin"); }
  void put(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }
  static std::string contentOf(const std::string& file) {
    std::ostringstream out;
    out << std::ifstream(file, std::ios::binary).rdbuf();
    return out.str();
  }
  Contents contents() const {
    Contents found;
    for (const auto& entry : fs::directory_iterator(m_folder)) {
      found[entry.path().filename().string()] = contentOf(entry.path().string());
    }
    return found;
  }
  // More sets in the old table than in the new one, or the other way round.
  void makeTables(bool hasOld, int oldSets, int newSets) const {
    for (const auto& entry : fs::directory_iterator(m_folder)) {
      fs::remove(entry.path());
    }
    for (int i = 0; hasOld && i < oldSets; ++i) {
      put("t.00" + std::to_string(i) + ".cs_kelvarin", "old" + std::to_string(i));
    }
    if (hasOld) {
      put("t.cgel_kelvarin", "old");
    }
    for (int i = 0; i < newSets; ++i) {
      put(".t.cgel_kelvarin.00" + std::to_string(i) + ".cs_kelvarin", "new" + std::to_string(i));
    }
    put(".t.cgel_kelvarin.new", "new");
  }
  static Contents tableOf(const std::string& generation, int sets) {
    Contents table{{"t.cgel_kelvarin", generation}};
    for (int i = 0; i < sets; ++i) {
      table["t.00" + std::to_string(i) + ".cs_kelvarin"] = generation + std::to_string(i);
    }
    return table;
  }
  // What a reader that may change nothing finds.
  Contents readWithoutChanges(int sets) const {
    const auto location = TableLocation::of(main());
    Contents found;
    for (const auto& [name, content] : tableOf("", sets)) {
      found[name] = contentOf(location->pathOf(path(name)));
    }
    return found;
  }

  std::string m_folder;
};

}  // namespace

TEST_F(TableExchangeTest, AKillAtAnyCallLeavesTheOldTableOrTheNewOne) {
  struct Case {
    bool hasOld;
    int oldSets;
    int newSets;
  };
  for (const auto& [hasOld, oldSets, newSets] :
       {Case{true, 3, 1}, Case{true, 1, 3}, Case{false, 0, 2}}) {
    const Contents old = hasOld ? tableOf("old", oldSets) : Contents();
    int oldTables = 0;
    int newTables = 0;
    bool isKilled = true;
    for (int calls = 0; isKilled; ++calls) {
      for (int callsOfNext = 0; callsOfNext < 12; ++callsOfNext) {
        makeTables(hasOld, oldSets, newSets);
        isKilled = testing::isKilledAfter(calls, [&] { (void)exchangeTable(main()); });
        const bool isCommitted =
            !isKilled || isSomethingThere(journalFile(main())) || contentOf(main()) == "new";
        if (isCommitted) {
          EXPECT_EQ(readWithoutChanges(newSets), tableOf("new", newSets)) << calls;
        }
        (void)testing::isKilledAfter(callsOfNext,
                                     [&] { (void)finishExchangeBeforeReading(main()); });
        ASSERT_EQ(finishExchangeBeforeReading(main()), OpenExchange::none);
        Contents now = contents();
        if (!isCommitted) {  // what the next writer removes
          EXPECT_TRUE(removeUnfinishedTable(replacementFile(main())));
          now = contents();
        }
        EXPECT_EQ(now, isCommitted ? tableOf("new", newSets) : old) << calls << ' ' << callsOfNext;
        ++(isCommitted ? newTables : oldTables);
      }
    }
    EXPECT_GT(oldTables, 0);
    EXPECT_GT(newTables, 0);
  }
}

TEST_F(TableExchangeTest, AFolderThatCannotBeChangedIsReadAsItStands) {
  makeTables(true, 1, 2);
  ASSERT_TRUE(testing::isKilledAfter(5, [&] { (void)exchangeTable(main()); }));
  ASSERT_TRUE(isSomethingThere(journalFile(main())));
  if (::geteuid() == 0) {  // whom permissions do not stop
    EXPECT_EQ(readWithoutChanges(2), tableOf("new", 2));
    return;
  }
  fs::permissions(m_folder, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(finishExchangeBeforeReading(main()), OpenExchange::unfinished);
  EXPECT_EQ(readWithoutChanges(2), tableOf("new", 2));
}

TEST_F(TableExchangeTest, TheNewTableIsForWhomTheOldOneWas) {
  makeTables(true, 1, 2);
  ASSERT_EQ(::chmod(main().c_str(), 0640), 0);
  ASSERT_TRUE(exchangeTable(main()));
  for (const char* name : {"t.cgel_kelvarin", "t.000.cs_kelvarin", "t.001.cs_kelvarin"}) {
    EXPECT_EQ(fs::status(path(name)).permissions(), fs::perms(0640)) << name;
  }
}

TEST_F(TableExchangeTest, ADamagedJournalIsNeverFollowed) {
  ExchangeJournal journal;
  journal.removed = {"t.001.cs_kelvarin"};
  journal.moves = {{".t.cgel_kelvarin.new", "t.cgel_kelvarin"}};
  std::vector<unsigned char> bytes = encoded(journal);
  EXPECT_EQ(decodedJournal(bytes), journal);
  makeTables(true, 2, 1);
  const Contents before = contents();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] ^= 1;
    put(".t.cgel_kelvarin.exchange", std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(finishExchangeBeforeReading(main()), OpenExchange::damaged) << i;
    EXPECT_FALSE(TableLocation::of(main())) << i;
    bytes[i] ^= 1;
  }
  fs::remove(journalFile(main()));
  EXPECT_EQ(contents(), before);
  for (const std::string& name : {std::string("../x"), std::string(), std::string("."),
                                  std::string(".."), std::string("a\0b", 3)}) {
    journal.removed = {name};
    EXPECT_EQ(decodedJournal(encoded(journal)), std::nullopt) << name;
  }
}

TEST_F(TableExchangeTest, FilesOfTablesAreDistinguished) {
  const std::string magic("\x40\xF4\x59\x00", 4);
  put("x.2023", magic);
  put("x.2024", "anything");
  put("xx.2024", magic);
  EXPECT_EQ(tableSharingSideFiles(path("x.2024")), "");  // there are none to share
  put("x.000.cs", "");
  EXPECT_EQ(tableSharingSideFiles(path("x.2024")), path("x.2023"));
  EXPECT_EQ(tableSharingSideFiles(path("x.2023")), "");
  EXPECT_EQ(tableSharingSideFiles(path("x.cgel_kelvarin")), "");  // another ending
  put("x.0000.cs", "");
  put("x.000.cs_kelvarin", "");
  EXPECT_EQ(sideFileNamesOf(path("x.2023")), std::vector<std::string>{"x.000.cs"});

  const int writer = ::open(path("x.2023").c_str(), O_RDWR | O_CLOEXEC);
  EXPECT_FALSE(isBeingWritten(path("x.2023")));
  EXPECT_TRUE(takeFileLock(writer));
  EXPECT_TRUE(isBeingWritten(path("x.2023")));
  ::close(writer);
  EXPECT_FALSE(isBeingWritten(path("x.2023")));

  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(isReplaceable(path("pipe")));
  EXPECT_FALSE(isColumnarFile(path("pipe")));
  EXPECT_FALSE(isBeingWritten(path("pipe")));
  EXPECT_TRUE(isReplaceable(path("absent")));
}

}  // namespace kelvarin

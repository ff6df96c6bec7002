#include "common/gl/gti/src/kernel/translation/port_substitutions.hpp"

#include "common/gl/gti/src/kernel/block_model/port_record.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

namespace gl::gti {
namespace {

TEST(PortSubstitutions, TablesReachOnlyBlocksThatWereWaiting) {
  PortSubstitutions substitutions;
  const PortSubstitutions::Time start = substitutions.now();
  substitutions.beginTable();
  substitutions.add(1, 10);
  substitutions.add(1, 11);
  EXPECT_EQ(substitutions.resolve(1, start), 10) << "the first addition stands";
  EXPECT_EQ(substitutions.resolve(1, substitutions.now()), 1) << "a later block names the port itself";
  EXPECT_EQ(substitutions.resolve(2, start), 2);
}

TEST(PortSubstitutions, ChainsOfAThousandLevelsEnd) {
  PortSubstitutions substitutions;
  for (int i = 0; i < 1000; ++i) {
    substitutions.beginTable();
    substitutions.add(i, i + 1);
  }
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(substitutions.resolve(i, 0), 1000);
  substitutions.beginTable();
  substitutions.add(1000, -5);
  EXPECT_EQ(substitutions.resolve(0, 0), -5);
  substitutions.beginTable();
  substitutions.add(-5, 0);
  EXPECT_EQ(substitutions.resolve(0, 0), 0) << "a circle ends with the last table";
}

/// The definition: each table is applied to every record that waits, one table after the other.
TEST(PortSubstitutions, EqualWritingEachTableIntoEachRecord) {
  std::mt19937 random(7);
  for (int run = 0; run < 200; ++run) {
    PortSubstitutions substitutions;
    std::vector<std::pair<double, PortSubstitutions::Time>> waiting;  // the handle named at first, and since when
    std::vector<PortRecord> records;
    double fresh = 1000;
    for (int table = 0; table < 12; ++table) {
      const double handle = static_cast<double>(random() % 20);
      waiting.emplace_back(handle, substitutions.now());
      records.emplace_back().addConnected(handle);
      substitutions.beginTable();
      std::map<double, double> eager;
      for (int row = 0; row < 3; ++row) {
        const double from = random() % 3 == 0 ? 1000 + static_cast<double>(random() % 12) : random() % 20;
        eager.emplace(from, fresh);
        substitutions.add(from, fresh);
      }
      ++fresh;
      for (PortRecord& record : records) record.applySubstitutions(eager);
      if (random() % 2 == 0) substitutions.resolve(waiting.front().first, waiting.front().second);
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
      ASSERT_EQ(*records[i].connected().begin(), substitutions.resolve(waiting[i].first, waiting[i].second));
    }
  }
}

TEST(PortRecord, ReplacedHandlesMayMeet) {
  PortRecord port;
  for (const double handle : {1, 2, 3}) port.addConnected(handle);
  port.applySubstitutions({{1, 9}, {2, 9}, {7, 8}});
  EXPECT_EQ(port.connected(), (std::set<double>{3, 9}));
}

}  // namespace
}  // namespace gl::gti

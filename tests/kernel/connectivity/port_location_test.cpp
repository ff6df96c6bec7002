#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"

#include <gtest/gtest.h>
#include <boost/lexical_cast.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace gl::gti {
namespace {

TEST(PortLocation, IsReadFromTheHostsTexts) {
  struct Case {
    const char* text;
    PortLocation expected;
  };
  const std::vector<Case> cases{
      {"LConn1", {port_side::LEFT, 0}}, {"RConn3", {port_side::RIGHT, 2}}, {"RCONN12", {port_side::RIGHT, 11}},
      {"left", {port_side::LEFT, 0}},   {"LConn", {port_side::LEFT, 0}},   {"LConn0", {port_side::LEFT, -1}},
      {"3", {port_side::NONE, 0}},      {"Enable", {port_side::NONE, 0}},  {"Conn2", {port_side::NONE, 0}}};
  for (const Case& c : cases) {
    EXPECT_TRUE(boost::lexical_cast<PortLocation>(std::string(c.text)) == c.expected) << c.text;
  }
}

TEST(PortLocation, BadTextsAreBadCasts) {
  for (const char* text : {"LConn1x", "LConn1-", "", "LConn1 LConn2", "LConn99999999999999999999"}) {
    EXPECT_THROW(boost::lexical_cast<PortLocation>(std::string(text)), boost::bad_lexical_cast) << text;
  }
}

TEST(PortLocation, SidesAreReadInAnyMixtureOfCase) {
  for (const char* text : {"Left", "LEFT", "LConn", "lconn"}) {
    EXPECT_EQ(boost::lexical_cast<port_side::Value>(std::string(text)), port_side::LEFT);
  }
  EXPECT_EQ(boost::lexical_cast<port_side::Value>(std::string("Rconn")), port_side::RIGHT);
  EXPECT_EQ(boost::lexical_cast<port_side::Value>(std::string("top")), port_side::NONE);
}

TEST(PortLocation, IsWrittenForPeople) {
  std::ostringstream out;
  out << PortLocation{} << PortLocation{port_side::RIGHT, 4};
  EXPECT_EQ(out.str(), "{left, 0}{right, 4}");
  EXPECT_EQ(connector_name(port_side::RIGHT), "RConn");
  EXPECT_TRUE((PortLocation{port_side::LEFT, 9} < PortLocation{port_side::RIGHT, 0}));
}

}  // namespace
}  // namespace gl::gti

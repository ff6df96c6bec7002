// Port labels in frames that are too small for them. A letter is as wide as half of its height.

#include "embedded/drawing/port_labels.hpp"

#include "embedded/drawing/short_text.hpp"

#include <gtest/gtest.h>

namespace embedded::drawing {
namespace {

Size measure(const ustring& text, double share) {
  return {5 * share * static_cast<double>(text.size()), 10 * share};
}

PortLabel at(double x, double y, int away_x, int away_y, const ustring& text) {
  return {text, {x, y, away_x, away_y}, {}, port_label_share};
}

std::vector<ustring> texts(const std::vector<PortLabel>& labels) {
  std::vector<ustring> result;
  for (const PortLabel& label : labels) result.push_back(label.text);
  return result;
}

TEST(ShortText, KeepsBothEnds) {
  EXPECT_EQ(u"abcd", shortened(u"abcd", 4));
  EXPECT_EQ(u"ab\u20265", shortened(u"abcd5", 4));
  EXPECT_EQ(u"ab\u2026ef", shortened(u"ab\U0001F600\U0001F601ef", 6)) << "no half of a pair";
  EXPECT_EQ(u"", shortened(u"abc", 0));
  const auto width_of = [](const ustring& text) { return measure(text, 1).width; };
  EXPECT_EQ(u"abcdef", fitted(u"abcdef", 30, width_of));
  EXPECT_EQ(u"ab\u2026ef", fitted(u"abcdef", 29, width_of));
  EXPECT_EQ(u"a\u2026f", fitted(u"abcdef", 15, width_of));
  EXPECT_EQ(u"", fitted(u"abcdef", 14, width_of));
  EXPECT_EQ(u"", fitted(u"ab", 9, width_of));
}

TEST(PortLabels, SidesShareTheWidthAndTheHeight) {
  using Texts = std::vector<ustring>;
  const GTBounds small{0, 0, 60, 40};
  const auto fit = [](std::vector<PortLabel> labels, const GTBounds& bounds) {
    return texts(fit_port_labels(std::move(labels), bounds, measure));
  };
  const PortLabel enable = at(0, 10, -1, 0, u"enable_line");
  EXPECT_EQ((Texts{u"ena\u2026ine", u"dat\u2026put"}), fit({enable, at(60, 10, 1, 0, u"data_output")}, small));
  EXPECT_EQ((Texts{u"enable_line", u"q"}), fit({enable, at(60, 10, 1, 0, u"q")}, small)) << "what the other leaves";
  EXPECT_EQ((Texts{u"alp\u2026put", u"in"}), fit({at(15, 0, 0, -1, u"alpha_input"), at(45, 0, 0, -1, u"in")}, small));
  EXPECT_EQ(Texts{}, fit({at(0, 1, -1, 0, u"a"), at(0, 3, -1, 0, u"b")}, small)) << "on top of each other";
  const auto shrunk = fit_port_labels({at(0, 1, -1, 0, u"a"), at(0, 5, -1, 0, u"b")}, small, measure);
  ASSERT_EQ(2u, shrunk.size());
  EXPECT_LT(shrunk[0].share * 10 * 0.7, 4);
}

}  // namespace
}  // namespace embedded::drawing

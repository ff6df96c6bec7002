// Reads the cards of calls of one definition. The definitions of the whole netlist are known by then.
#pragma once

#include "formats/spice/expression_reader.hpp"
#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

class CallReader {
 public:
  /// Adds to the `definition`, which is one of the netlist's.
  CallReader(Netlist& netlist, Definition& definition, Reporter& reporter);

  void read(const Card& card, std::int32_t branch);

 private:
  void read_parameters(const Card& card, CardCursor& cursor, Call& call);
  void resolve(Call& call, const Place& target);

  Netlist& m_netlist;
  Definition& m_definition;
  Reporter& m_reporter;
  ExpressionReader m_expressions;
};

}  // namespace kinemo::formats::spice

#include "views/tunability.hpp"

#include "platform/data/data.hpp"
#include "platform/foundation/strings.hpp"

#include <set>

namespace kinemo::views {

namespace {

/// Why a variable can't be a run-time parameter of a graph; empty when it can.
std::string non_value_reason(const Origin& origin) {
  if (!origin.has_numbers()) return "isn't an array of real numbers";
  return boost::get<data2::core::Value>(*origin.value).data().elements().empty() ? "is empty" : "";
}

/// Judges every origin once, those that stand furthest outside first.
class Judge {
 public:
  explicit Judge(const ParameterTrace& trace) : origins_(trace.origins), judged_(trace.origins.size()) {
    std::vector<std::size_t> open{0};
    while (!open.empty()) {
      const std::size_t index = open.back();
      if (judged_[index].done) {
        open.pop_back();
        continue;
      }
      const std::size_t before = open.size();
      for (const std::size_t name : origins_[index].names) {
        if (!judged_[name].done) open.push_back(name);
      }
      if (open.size() != before) continue;
      judge(index);
      open.pop_back();
    }
  }

  /// Why the value of the parameter is fixed before it comes to its block; empty when it isn't.
  const std::string& reason() const { return judged_[0].reason; }
  /// A name in the parameter's text that is marked as run-time and has no numbers; null for none.
  const Origin* offender() const {
    for (const std::size_t name : origins_[0].names) {
      if (is_non_value(origins_[name])) return &origins_[name];
    }
    return nullptr;
  }
  std::vector<std::string> through() const {
    std::set<std::string> names;
    for (std::size_t i = 0; i < origins_.size(); ++i) {
      if (origins_[i].runtime && judged_[i].reason.empty() && judged_[i].reached) names.insert(origins_[i].name);
    }
    return {names.begin(), names.end()};
  }

 private:
  struct Judgement {
    bool done = false;
    bool reached = false;  ///< by a name of an origin that follows it
    std::string reason;    ///< empty where the value follows a run-time parameter
  };

  static bool is_variable(const Origin& origin) {
    return origin.kind != OriginKind::dialog && origin.kind != OriginKind::mask;
  }
  static bool is_non_value(const Origin& origin) { return origin.runtime && !non_value_reason(origin).empty(); }
  static bool in_subset(const std::string& text) {
    return static_cast<bool>(
        data2::cvi::CorvaneParser()(kmf::ustring_to_local_encoded_string(kmf::utf8_string_to_ustring(text))));
  }

  void judge(std::size_t index) {
    const Origin& origin = origins_[index];
    judged_[index].done = true;
    judged_[index].reason = is_variable(origin) ? reason_of_variable(origin) : reason_of_text(index);
    if (!judged_[index].reason.empty()) return;
    for (const std::size_t name : origin.names) judged_[name].reached = true;
  }

  static std::string reason_of_variable(const Origin& origin) {
    const std::string name = "'" + origin.name + "' of " + place_text(origin);
    if (!origin.runtime) return name + " isn't marked as a run-time parameter";
    const std::string reason = non_value_reason(origin);
    return reason.empty() ? reason : name + " is marked as run-time, but " + reason;
  }

  std::string reason_of_setting(const Origin& origin) const {
    if (!origin.names.empty()) return reason_of_names(origin, "the setting");
    return "it follows a setting of the model, since " + origin.name + "_from is '" + origin.from +
           "', and that isn't an expression over run-time parameters alone";
  }

  std::string reason_of_text(std::size_t index) const {
    const Origin& origin = origins_[index];
    if (origin.follows_setting()) return reason_of_setting(origin);
    const std::string text = "the text '" + origin.text + "' in " + place_text(origin);
    if (!origin.is_expression) return text + " is taken as it stands";
    if (!origin.has_numbers()) return text + " doesn't give an array of real numbers";
    if (!in_subset(origin.text)) {
      return text +
             " is outside of the expressions that can stay alive: numbers, names, operators, matrices, and "
             "functions of numbers";
    }
    if (origin.names.empty()) return text + " names no variable";
    return reason_of_names(origin, text);
  }

  /// One live name makes the text live, unless there is a name without numbers in it. That of the block's own text is
  /// told behind what the block itself says.
  std::string reason_of_names(const Origin& origin, const std::string& text) const {
    bool lives = false;
    for (const std::size_t name : origin.names) {
      if (is_non_value(origins_[name])) {
        if (origin.kind == OriginKind::mask) return text + ": " + judged_[name].reason;
        lives = true;
      }
      lives = lives || judged_[name].reason.empty();
    }
    return lives ? std::string() : judged_[origin.names.front()].reason;
  }

  const std::vector<Origin>& origins_;
  std::vector<Judgement> judged_;
};

/// Empty where the block lets the parameter change at run time.
std::string fixed_by_conf(const Origin& origin) {
  if (origin.conf.empty() || kmf::lower(origin.conf) == "runtime") return {};
  return origin.name + "_conf is '" + origin.conf + "', not 'runtime'";
}

std::string fixed_by_block(const Origin& origin, const Judge& judge, const CompiledParameter& compiled) {
  if (compiled.opaque) return "the block is opaque, and opaque blocks keep numbers";
  if (std::string reason = fixed_by_conf(origin); !reason.empty()) return reason;
  const Origin* offender = judge.offender();
  if (offender != nullptr) return "'" + offender->name + "' is marked as run-time, but " + non_value_reason(*offender);
  if (compiled.subsystem && !compiled.value) return "nothing inside of the subsystem depends on it";
  if (!compiled.value || boost::get<data2::core::Expr>(&*compiled.value) == nullptr) {
    return "the block doesn't take it as a run-time parameter";
  }
  return {};
}

std::string reason_of(const Origin& origin, const Judge& judge, const CompiledParameter& compiled) {
  if (!compiled.in_model) return "the block has no part in the compiled model";
  if (origin.follows_setting()) {  // the setting of a fixed parameter isn't known as an expression
    if (std::string reason = fixed_by_conf(origin); !reason.empty()) return reason;
  }
  return judge.reason().empty() ? fixed_by_block(origin, judge, compiled) : judge.reason();
}

}  // namespace

Tunability tunability(const ParameterTrace& trace, const CompiledParameter& compiled) {
  const Judge judge(trace);
  Tunability result;
  result.reason = reason_of(trace.origins.front(), judge, compiled);
  result.tunable = result.reason.empty();
  if (result.tunable) result.through = judge.through();
  return result;
}

}  // namespace kinemo::views

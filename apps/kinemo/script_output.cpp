#include "apps/kinemo/script_output.hpp"

#include "embedded/scripting_runtime/display.hpp"

#include <cstdio>
#include <iostream>

namespace kinemo::app {

namespace {

namespace runtime = embedded::scripting_runtime;

ScriptOutput* current = nullptr;

}  // namespace

ScriptOutput::ScriptOutput(bool at_once) : output_("-"), at_once_(at_once) {
  current = this;
  runtime::set_display_sink([](const std::string& text) { current->write(text); });
  runtime::set_error_sink([](const std::string& text) {
    current->flush();
    std::fputs(text.c_str(), stderr);
  });
}

ScriptOutput::~ScriptOutput() {
  runtime::set_display_sink([](const std::string& text) { std::cout << text; });
  runtime::set_error_sink([](const std::string& text) { std::cerr << text; });
  current = nullptr;
}

void ScriptOutput::write(const std::string& text) {
  output_.stream() << text;
  if (at_once_) flush();
}

void ScriptOutput::handle(const kmf::Message& warning) {
  const kmf::MessageId& id = warning.identifier();
  runtime::write_error_output("warning: " + warning.text() + " [" + id.group + ":" + id.id + "]\n");
}

}  // namespace kinemo::app

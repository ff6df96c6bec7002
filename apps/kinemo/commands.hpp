// The commands, one file each. A command writes its data to an `Output` and returns the program's exit code.
#pragma once

namespace kinemo::app {

class Session;

int run_compile(Session& session);
int run_check(Session& session);
int run_nets(Session& session);
int run_blocks(Session& session);
int run_export(Session& session);
int run_explain(Session& session);
int run_render(Session& session);
int run_script_command(Session& session);
int run_repl(Session& session);

}  // namespace kinemo::app
